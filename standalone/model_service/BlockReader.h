#pragma once

#include <QJsonArray>
#include <QJsonObject>

#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

class IProcessBlock;

namespace standalone {

class KindTable;
class LoadReport;

/// Reads blocks with their children: the twin of BlockWriter. Every block gets a uuid of its own,
/// whatever the text says; a step of an unknown kind becomes a placeholder.
class BlockReader
{
public:
    using Blocks = std::vector<std::shared_ptr<IProcessBlock>>;

    /// Deeper nesting is flattened: the JSON parser refuses texts of more than 1024 levels, and a
    /// document must be readable again once it stands inside another.
    static constexpr int MaxDepth = 200;

    BlockReader(const KindTable& kinds, LoadReport& report);

    /// @p where names the place in reports.
    Blocks read(const QJsonArray& array, const QString& where);

private:
    void readInto(Blocks& blocks, const QJsonArray& array, const QString& where, int depth);
    std::shared_ptr<IProcessBlock> readBlock(const QJsonObject& object, const QString& where,
                                             QJsonArray& children);
    void giveUuid(IProcessBlock& block, const QString& where);

    const KindTable& m_kinds;
    LoadReport& m_report;
    std::unordered_set<std::string> m_uuids;
};

} // namespace standalone
