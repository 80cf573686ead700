#include "panels/wgtCommonControl.h"

#include "model/blocks/PlainProcessBlock.h"
#include "panels/IBlockControl.h"
#include "panels/panel_registry.h"
#include "panels/wheel_guard.h"

#include <QLabel>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace {

QLabel* makeLabel(const QString& objectName)
{
    auto* label = new QLabel;
    label->setObjectName(objectName);
    label->setAlignment(Qt::AlignCenter);
    label->setWordWrap(true);
    label->setMargin(12);
    return label;
}

} // namespace

wgtCommonControl::wgtCommonControl(QWidget* parent) : wgtCommonControl(makeBlockPanels(), parent) {}

wgtCommonControl::wgtCommonControl(const QVector<IBlockControl*>& panels, QWidget* parent)
    : QWidget(parent), m_panels(panels), m_stack(new QStackedWidget),
      m_noPanelLabel(makeLabel(QStringLiteral("label_3"))),
      m_messageLabel(makeLabel(QStringLiteral("label_12")))
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_stack);
    layout->addWidget(m_messageLabel);
    m_stack->setObjectName(QStringLiteral("stackedWidget"));
    auto* nonePage = new QWidget;
    nonePage->setObjectName(QStringLiteral("none_page"));
    auto* noneLayout = new QVBoxLayout(nonePage);
    noneLayout->setContentsMargins(0, 0, 0, 0);
    noneLayout->addWidget(m_noPanelLabel);
    m_stack->addWidget(nonePage);
    for (IBlockControl* panel : qAsConst(m_panels)) {
        m_stack->addWidget(panel);
        connect(panel, &IBlockControl::updateProcessData, this,
                &wgtCommonControl::onUpdateProcessData);
    }
    wheel_guard::install(*this);
    m_noPanelLabel->setText(tr("当前未选中步骤节点"));
    showNothingSelected();
}

wgtCommonControl::~wgtCommonControl()
{
    hide(); // what has the focus is written when it goes, which must be while this is whole
}

void wgtCommonControl::setCAppletName(const QString& appName)
{
    m_cappletName = appName;
    for (IBlockControl* panel : qAsConst(m_panels))
        panel->setCAppletName(appName);
}

void wgtCommonControl::setSequenceId(const QString& sequenceId)
{
    flushPending();
    m_sequenceId = sequenceId;
    for (IBlockControl* panel : qAsConst(m_panels))
        panel->setSequenceId(sequenceId);
}

void wgtCommonControl::showBlock(std::shared_ptr<IProcessBlock> block)
{
    flushPending();
    if (!block) {
        showMessage(tr("该节点不可编辑"));
        return;
    }
    if (block->baseType() == NoBlock) {
        showNothingSelected();
        return;
    }
    if (!block->property.editable) {
        showMessage(tr("该节点不可编辑"));
        return;
    }
    m_block = std::move(block);
    m_messageLabel->hide();
    m_stack->show();
    if (IBlockControl* panel = panelFor(*m_block)) {
        m_stack->setCurrentWidget(panel);
        panel->loadBlock(m_block);
    } else {
        showNoPanel(*m_block);
    }
}

void wgtCommonControl::showNothingSelected()
{
    showMessage(tr("当前未选中步骤节点"));
}

void wgtCommonControl::flushPending()
{
    if (!m_block || m_block->baseType() != BasicStep)
        return;
    IBlockControl* panel = panelFor(*m_block);
    if (panel && panel->isTimerActive()) {
        panel->stopTimer();
        panel->saveBlock();
    }
}

void wgtCommonControl::onUpdateProcessData()
{
    if (m_block)
        emit updateTreeProcessData(QString::fromStdString(m_block->uuid));
}

IBlockControl* wgtCommonControl::panelFor(const IProcessBlock& block) const
{
    for (IBlockControl* panel : m_panels) {
        if (panel->baseType() != block.baseType())
            continue;
        if (block.baseType() == DiagnosticStep ||
            (block.baseType() == BasicStep && panel->stepType() == block.stepType()))
            return panel;
    }
    return nullptr;
}

void wgtCommonControl::showMessage(const QString& text)
{
    m_stack->hide();
    m_messageLabel->setText(text);
    m_messageLabel->show();
}

void wgtCommonControl::showNoPanel(const IProcessBlock& block)
{
    m_stack->setCurrentIndex(0);
    const bool hasNothingToSet = dynamic_cast<const PlainProcessBlock*>(&block) != nullptr;
    m_noPanelLabel->setText(
        hasNothingToSet
            ? tr("此步骤类型无需设置属性")
            : tr("此步骤的属性暂为只读：\n\n%1").arg(QString::fromStdString(block.description())));
}

#include "moc_wgtCommonControl.cpp"
