#include "model/IProcessBlock.h"

IProcessBlock::IProcessBlock(logicBlockType baseType, int stepType)
    : m_baseType(baseType), m_stepType(stepType)
{
}

IProcessBlock::~IProcessBlock() = default;

int IProcessBlock::stepType() const
{
    return m_stepType;
}

logicBlockType IProcessBlock::baseType() const
{
    return m_baseType;
}

std::shared_ptr<IProcessBlock> IProcessBlock::clone() const
{
    auto copy = copyAlone();
    for (auto& child : copy->children)
        child = child->clone();
    return copy;
}
