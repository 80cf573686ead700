#include "panels/wgtIf.h"

#include "model/blocks/ConditionProcessBlock.h"
#include "panels/DelayedWrite.h"

void wgtIf::loadBlock(std::shared_ptr<IProcessBlock> block)
{
    takeBlock(std::dynamic_pointer_cast<IfProcessBlock>(block));
}

void wgtIf::onCondWgtUpdate()
{
    m_timer->stop();
    ConditionPanel::onCondWgtUpdate();
}

#include "moc_wgtIf.cpp"
#include "panels/DelayedWrite.h"
