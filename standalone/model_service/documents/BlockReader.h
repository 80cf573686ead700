#pragma once

#include "standalone/model_service/documents/BlockPlaces.h"
#include "standalone/model_service/json/JsonTree.h"

#include <memory>
#include <string>
#include <vector>

struct BaseStepProperty;

namespace standalone {

class DocumentPlace;
class FieldReader;
class KindTable;
class LoadReport;

/// Reads blocks with their children: the twin of BlockWriter. Every block gets a uuid of its own,
/// whatever the text says; a step of an unknown kind becomes a placeholder.
class BlockReader
{
public:
    using Blocks = std::vector<std::shared_ptr<IProcessBlock>>;

    /// Deeper nesting is flattened: other programs' parsers refuse texts of more than some 1000
    /// levels, and the editor's own walks go down by recursion.
    static constexpr int MaxDepth = 200;

    /// Every block that is read is entered into @p places.
    BlockReader(const KindTable& kinds, BlockPlaces& places, LoadReport& report);

    /// Reads an array of blocks for the place @p top. @p where names the array in reports.
    Blocks read(const JsonValue& array, const DocumentPlace& where, const BlockPlace& top = {});

private:
    std::shared_ptr<IProcessBlock> readBlock(const JsonValue& object, const DocumentPlace& where,
                                             JsonValue& children);
    void readProperty(IProcessBlock& block, FieldReader& reader, const DocumentPlace& where) const;
    /// Enters the block under a uuid of its own.
    void enter(const BlockPlace& place, const DocumentPlace& where);

    const KindTable& m_kinds;
    BlockPlaces& m_places;
    LoadReport& m_report;
};

} // namespace standalone
