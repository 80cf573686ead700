#include "panels/wgtDoWhile.h"

#include "model/blocks/ConditionProcessBlock.h"

void wgtDoWhile::loadBlock(std::shared_ptr<IProcessBlock> block)
{
    takeBlock(std::dynamic_pointer_cast<DoWhileProcessBlock>(block));
}

#include "moc_wgtDoWhile.cpp"
