#include "panels/ConditionPanel.h"

#include "panels/DelayedWrite.h"
#include "panels/wgtCondition.h"

#include <QVBoxLayout>

ConditionPanel::ConditionPanel(QWidget* parent) : IBlockControl(parent), m_editor(new wgtCondition)
{
    m_editor->setObjectName(QStringLiteral("widget"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_editor);
    connect(m_editor, &wgtCondition::timerStart, m_timer, qOverload<>(&QTimer::start));
    connect(m_editor, &wgtCondition::updateProcessData, this, &ConditionPanel::onCondWgtUpdate);
}

void ConditionPanel::saveBlock()
{
    m_timer->stop();
    if (m_block)
        m_editor->saveBlock();
}

void ConditionPanel::setCAppletName(const QString& appName)
{
    IBlockControl::setCAppletName(appName);
    m_editor->setCAppletName(appName);
}

void ConditionPanel::setSequenceId(const QString& sequenceId)
{
    IBlockControl::setSequenceId(sequenceId);
    m_editor->setSequenceId(sequenceId);
}

void ConditionPanel::onCondWgtUpdate()
{
    if (!m_block)
        return;
    handBack(m_block, [this] { m_block->setCondition(m_editor->condition()); });
}

void ConditionPanel::takeBlock(std::shared_ptr<ConditionProcessBlock> block)
{
    m_block = std::move(block);
    if (!m_block)
        return;
    // Not a copy of the block: that would keep its children alive.
    ConditionProcessBlock condition;
    condition.setCondition(*m_block);
    m_editor->setConditionBlock(condition);
}

#include "moc_ConditionPanel.cpp"
