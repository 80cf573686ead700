#pragma once

#include "standalone/model_service/property_json.h"

#include <QJsonArray>
#include <QJsonObject>

#include <memory>
#include <vector>

class IProcessBlock;

namespace standalone {

/// Writes blocks with their children; collects their kinds in a table for the document's head.
class BlockWriter
{
public:
    explicit BlockWriter(KindTable& kinds) : m_kinds(kinds) {}

    QJsonArray write(const std::vector<std::shared_ptr<IProcessBlock>>& blocks);
    QJsonObject write(const IProcessBlock& block);

private:
    KindTable& m_kinds;
};

} // namespace standalone
