#pragma once

#include "standalone/model_service/documents/property_json.h"

#include <memory>
#include <string>
#include <vector>

class IProcessBlock;

namespace standalone {

/// Writes blocks with their children; collects their kinds in a table for the document's head.
class BlockWriter
{
public:
    explicit BlockWriter(KindTable& kinds) : m_kinds(kinds) {}

    void write(std::string& json, const std::vector<std::shared_ptr<IProcessBlock>>& blocks);

private:
    void write(std::string& json, const IProcessBlock& block);

    KindTable& m_kinds;
};

} // namespace standalone
