#pragma once

#include "model/SequenceInfo.h"
#include "standalone/model_service/json/JsonTree.h"

#include <array>
#include <memory>
#include <string>
#include <vector>

class IProcessBlock;

namespace standalone {

class BlockReader;
class BlockWriter;
class DocumentPlace;
class LoadReport;

/// One sequence with its blocks: what a document holds of it.
struct SequenceContent
{
    using Blocks = std::vector<std::shared_ptr<IProcessBlock>>;

    /// The head with the uuids of the flows' top-level blocks.
    SequenceInfo record() const;

    SequenceInfo head; ///< its flows are not used: flows has them
    std::array<Blocks, 3> flows;
    std::string kept; ///< members that reading left over, as an object
};

void writeSequence(std::string& json, const SequenceContent& sequence, BlockWriter& writer);
/// Fills @p sequence, to which the places of its blocks lead.
void readSequence(SequenceContent& sequence, const JsonValue& object, BlockReader& reader,
                  LoadReport& report, const DocumentPlace& where);

} // namespace standalone
