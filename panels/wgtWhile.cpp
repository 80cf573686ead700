#include "panels/wgtWhile.h"

#include "model/blocks/ConditionProcessBlock.h"

void wgtWhile::loadBlock(std::shared_ptr<IProcessBlock> block)
{
    takeBlock(std::dynamic_pointer_cast<WhileProcessBlock>(block));
}

#include "moc_wgtWhile.cpp"
