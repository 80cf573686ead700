#pragma once

#include "model/IProcessBlock.h"

#include <memory>
#include <string>
#include <type_traits>
#include <typeinfo>

namespace standalone {

/// What a block that was read from a document carries beside its fields, so that it can be written
/// again without loss.
struct StoredMembers
{
    virtual ~StoredMembers() = default;

    /// Members of the block's JSON that this version doesn't know or could not read, as an object;
    /// empty if there are none.
    std::string kept;
};

/// A block of class @p Block as the model service makes it. Copies carry the kept members along.
template <class Block> class StoredBlock final : public Block, public StoredMembers
{
public:
    using Block::Block;
    StoredBlock() = default;

    std::shared_ptr<IProcessBlock> copyAlone() const override
    {
        return std::make_shared<StoredBlock>(*this);
    }
};

/// The way to the class of a block that is most likely a StoredBlock: a dynamic cast looks far
/// around.
struct StoredCast
{
    template <class Target, class Block> static Target* to(Block& block)
    {
        if (typeid(block) == typeid(StoredBlock<std::remove_const_t<Target>>))
            return static_cast<Target*>(&block);
        return dynamic_cast<Target*>(&block);
    }
};

} // namespace standalone
