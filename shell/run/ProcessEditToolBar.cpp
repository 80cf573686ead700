#include "shell/run/ProcessEditToolBar.h"

#include "model/colour_rules.h"
#include "model/services/widget_bases.h"

#include <QAction>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QToolButton>

namespace {

constexpr int RunButtonWidth = 40;
constexpr int RowHeight = 28;

QFrame* makeSeparator()
{
    auto* line = new QFrame;
    line->setFrameShape(QFrame::VLine);
    line->setFrameShadow(QFrame::Sunken);
    return line;
}

} // namespace

ProcessEditToolBar::ProcessEditToolBar(QWidget* parent)
    : QWidget(parent), m_layout(new QHBoxLayout(this)), m_staleBadge(new QLabel),
      m_extraWidget(new QWidget), m_extraLayout(new QHBoxLayout(m_extraWidget)),
      m_extraSeparator(makeSeparator())
{
    m_layout->setContentsMargins(4, 0, 4, 0);
    m_saveBtn =
        addButton(QStringLiteral("saveBtn"), tr("保存"), QStringLiteral(":/icon/存读/save_2.png"));
    m_toVciBtn = addButton(QStringLiteral("toVciBtn"), tr("转换VCI"),
                           QStringLiteral(":/icon/功能/vci_code.png"));
    m_openCodeBtn = addButton(QStringLiteral("openCodeBtn"), tr("打开代码生成路径"),
                              QStringLiteral(":/icon/打开退出/folder_2.png"));
    m_importBtn = addButton(QStringLiteral("importBtn"), tr("导入"),
                            QStringLiteral(":/icon/存读/import_2.png"));
    m_exportBtn = addButton(QStringLiteral("exportBtn"), tr("导出"),
                            QStringLiteral(":/icon/存读/export_2.png"));
    m_layout->addWidget(makeSeparator());
    addRunButton();
    m_pauseBtn = addButton(QStringLiteral("pauseBtn"), tr("暂停"),
                           QStringLiteral(":/icon/启停/pause_2.png"));
    m_stopBtn =
        addButton(QStringLiteral("stopBtn"), tr("停止"), QStringLiteral(":/icon/启停/stop.png"));
    m_compileBtn = addButton(QStringLiteral("compileBtn"), tr("编译"),
                             QStringLiteral(":/icon/功能/compile.png"));

    m_staleBadge->setObjectName(QStringLiteral("staleBadge"));
    m_staleBadge->setText(tr("运行层已过期，请重新编译"));
    m_staleBadge->setStyleSheet(QStringLiteral("color: %1; font-weight: bold;")
                                    .arg(colour_rules::warning(palette()).name()));
    m_staleBadge->hide();
    m_layout->addWidget(m_staleBadge);

    m_extraSeparator->hide();
    m_layout->addWidget(m_extraSeparator);
    m_extraWidget->setStyleSheet(QStringLiteral("border:none;"));
    m_extraLayout->setContentsMargins(0, 0, 0, 0);
    m_extraLayout->addSpacerItem(new QSpacerItem(40, 20, QSizePolicy::Expanding));
    m_layout->addWidget(m_extraWidget, 1);

    const int height = StyleManager::scaleToolbarHeight(RowHeight);
    setMinimumHeight(height);
    setMaximumHeight(height);
    setState(State::Idle);
}

QToolButton* ProcessEditToolBar::addButton(const QString& name, const QString& text,
                                           const QString& iconPath)
{
    auto* button = new QToolButton;
    button->setObjectName(name);
    const int side = StyleManager::scaleToolbarSize(IconSize);
    button->setFixedSize(side, side);
    button->setAutoRaise(true);
    button->setText(text);
    button->setToolTip(text);
    button->setIcon(StyleManager::scaledToolbarIcon(iconPath, IconSize));
    button->setIconSize(StyleManager::toolbarButtonIconSize(IconSize));
    connect(button, &QToolButton::clicked, this, &ProcessEditToolBar::onToolBtnClicked);
    m_layout->addWidget(button);
    return button;
}

void ProcessEditToolBar::addRunButton()
{
    m_runBtn = addButton(QStringLiteral("runBtn"), QString(), QString());
    m_runBtn->setFixedSize(StyleManager::scale(RunButtonWidth),
                           StyleManager::scaleToolbarHeight(RowHeight));
    m_runBtn->setPopupMode(QToolButton::MenuButtonPopup);
    auto* menu = new QMenu(m_runBtn);
    m_runBtn->setMenu(menu);
    const QString start = QStringLiteral(":/icon/启停/start.png");
    m_runCurrentAct =
        addRunAction(tr("运行当前序列"), tr("运行"), QStringLiteral(":/icon/启停/runCurrent.png"));
    m_runMainAct =
        addRunAction(tr("运行主序列"), QString(), QStringLiteral(":/icon/启停/runMain.png"));
    menu->addSeparator();
    m_singleTestAct = addRunAction(tr("单次测试(暂未开放)"), tr("单次测试"), start);
    m_loopTestAct = addRunAction(tr("连续测试(暂未开放)"), tr("连续测试"), start);
    m_runBtn->setDefaultAction(m_runCurrentAct);
}

QAction* ProcessEditToolBar::addRunAction(const QString& text, const QString& tip,
                                          const QString& iconPath)
{
    QAction* action =
        m_runBtn->menu()->addAction(StyleManager::scaledToolbarIcon(iconPath, IconSize), text);
    if (!tip.isEmpty())
        action->setToolTip(tip);
    connect(action, &QAction::triggered, this, &ProcessEditToolBar::onEditWidgetRunMenuClicked);
    return action;
}

void ProcessEditToolBar::setState(State state)
{
    const bool idle = state == State::Idle;
    m_runBtn->setEnabled(idle);
    m_pauseBtn->setEnabled(state == State::Running);
    m_stopBtn->setEnabled(!idle);
    m_toVciBtn->setEnabled(idle);
    m_compileBtn->setEnabled(idle);
}

void ProcessEditToolBar::setRuntimeStaleHint(bool stale)
{
    m_staleBadge->setVisible(stale);
    m_compileBtn->setToolTip(stale ? tr("编译（运行层已过期，需重新编译）") : tr("编译"));
}

void ProcessEditToolBar::addExtraToolBarFunction(QWidget* widget)
{
    m_extraSeparator->show();
    m_extraLayout->insertWidget(m_extraLayout->count() - 1, widget);
}

void ProcessEditToolBar::removeExtraToolBarFunction(QWidget* widget)
{
    m_extraLayout->removeWidget(widget);
    // The spacer counts as an item, so in practice the separator stays.
    if (m_extraLayout->count() == 0)
        m_extraSeparator->hide();
}

int ProcessEditToolBar::runFunction() const
{
    const QAction* action = m_runBtn->defaultAction();
    if (action == m_runCurrentAct)
        return RunCurrent;
    if (action == m_runMainAct)
        return RunMain;
    return action == m_singleTestAct ? SingleTest : Stop;
}

void ProcessEditToolBar::onEditWidgetRunMenuClicked()
{
    auto* action = qobject_cast<QAction*>(sender());
    // A press of the button triggers its default action too, which changes nothing here.
    if (m_runBtn->popupMode() == QToolButton::MenuButtonPopup && action &&
        action != m_runBtn->defaultAction())
        m_runBtn->setDefaultAction(action);
}

void ProcessEditToolBar::onToolBtnClicked()
{
    const auto* button = qobject_cast<QToolButton*>(sender());
    if (!button)
        return;
    int function = -1;
    if (button == m_saveBtn)
        function = Save;
    else if (button == m_toVciBtn)
        function = ToVci;
    else if (button == m_runBtn)
        function = runFunction();
    else if (button == m_pauseBtn)
        function = Pause;
    else if (button == m_stopBtn)
        function = Stop;
    else if (button == m_compileBtn)
        function = Compile;
    else if (button == m_importBtn)
        function = Import;
    else if (button == m_exportBtn)
        function = Export;
    else if (button == m_openCodeBtn)
        function = OpenCodeFolder;
    emit defaultFunctionClicked(function);
}

#include "moc_ProcessEditToolBar.cpp"
