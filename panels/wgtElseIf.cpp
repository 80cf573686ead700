#include "panels/wgtElseIf.h"

#include "model/blocks/ConditionProcessBlock.h"

void wgtElseIf::loadBlock(std::shared_ptr<IProcessBlock> block)
{
    takeBlock(std::dynamic_pointer_cast<ElseIfProcessBlock>(block));
}

void wgtElseIf::setSequenceId(const QString& sequenceId)
{
    IBlockControl::setSequenceId(sequenceId);
}

#include "moc_wgtElseIf.cpp"
