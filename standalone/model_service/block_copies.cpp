#include "model/process_blocks.h"

namespace {

template <class Block> std::shared_ptr<IProcessBlock> copyOf(const Block& block)
{
    return std::make_shared<Block>(block);
}

} // namespace

std::shared_ptr<IProcessBlock> ApiProcessBlock::copyAlone() const
{
    return copyOf(*this);
}

std::shared_ptr<IProcessBlock> BuzzProcessBlock::copyAlone() const
{
    return copyOf(*this);
}

std::shared_ptr<IProcessBlock> ConditionProcessBlock::copyAlone() const
{
    return copyOf(*this);
}

std::shared_ptr<IProcessBlock> IfProcessBlock::copyAlone() const
{
    return copyOf(*this);
}

std::shared_ptr<IProcessBlock> ElseIfProcessBlock::copyAlone() const
{
    return copyOf(*this);
}

std::shared_ptr<IProcessBlock> WhileProcessBlock::copyAlone() const
{
    return copyOf(*this);
}

std::shared_ptr<IProcessBlock> DoWhileProcessBlock::copyAlone() const
{
    return copyOf(*this);
}

std::shared_ptr<IProcessBlock> DelayProcessBlock::copyAlone() const
{
    return copyOf(*this);
}

std::shared_ptr<IProcessBlock> ExpressionProcessBlock::copyAlone() const
{
    return copyOf(*this);
}

std::shared_ptr<IProcessBlock> ForProcessBlock::copyAlone() const
{
    return copyOf(*this);
}

std::shared_ptr<IProcessBlock> GotoProcessBlock::copyAlone() const
{
    return copyOf(*this);
}

std::shared_ptr<IProcessBlock> PlainProcessBlock::copyAlone() const
{
    return copyOf(*this);
}

std::shared_ptr<IProcessBlock> PopupWindowProcessBlock::copyAlone() const
{
    return copyOf(*this);
}

std::shared_ptr<IProcessBlock> RecvMessageProcessBlock::copyAlone() const
{
    return copyOf(*this);
}

std::shared_ptr<IProcessBlock> SendMessageProcessBlock::copyAlone() const
{
    return copyOf(*this);
}

std::shared_ptr<IProcessBlock> SequenceProcessBlock::copyAlone() const
{
    return copyOf(*this);
}

std::shared_ptr<IProcessBlock> StatementProcessBlock::copyAlone() const
{
    return copyOf(*this);
}

std::shared_ptr<IProcessBlock> UdsProcessBlock::copyAlone() const
{
    return copyOf(*this);
}
