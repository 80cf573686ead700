#pragma once

#include "model/IProcessBlock.h"
#include "standalone/model_service/documents/UuidTable.h"

#include <memory>
#include <string>

namespace standalone {

struct SequenceContent;

/// Where a block stands.
struct BlockPlace
{
    const std::string& uuid() const { return block->uuid; }

    std::shared_ptr<IProcessBlock> block;
    IProcessBlock* parent = nullptr; ///< null at the top of a flow
    SequenceContent* sequence = nullptr;
    int flow = 0;      ///< InitialFlow, MainFlow or EndFlow
    int lastIndex = 0; ///< among its siblings when it was last told: where to look first
};

/// The places of all blocks of a document, by the blocks' uuids.
using BlockPlaces = UuidTable<BlockPlace>;

} // namespace standalone
