#include "workbench/MainWindow.h"

#include "model/dialogs/user_dialogs.h"
#include "model/services/host.h"
#include "model/services/processedit.h"
#include "model/services/widget_bases.h"
#include "shell/ProcessEditNotifyTool.h"
#include "shell/ProcessEditToolBar.h"
#include "shell/ProcessEditWidget.h"
#include "standalone/host/Host.h"
#include "standalone/model_service/project_tables.h"
#include "workbench/OutputPane.h"
#include "workbench/ProgressDisplay.h"
#include "workbench/SystemVariablePane.h"
#include "workbench/application_icon.h"
#include "workbench/step_locator.h"

#include <QAction>
#include <QCloseEvent>
#include <QComboBox>
#include <QDockWidget>
#include <QLabel>
#include <QSettings>
#include <QShortcut>
#include <QSignalBlocker>
#include <QStackedWidget>
#include <QStatusBar>
#include <QToolBar>

namespace processedit = sdk_ui_interface::processedit;

namespace {

const QString geometryKey = QStringLiteral("window/geometry");
const QString stateKey = QStringLiteral("window/state");
constexpr int StateVersion = 2;
constexpr int NoticeMs = 15000;

} // namespace

MainWindow::MainWindow()
    : m_editorBar(new QToolBar(tr("编辑"))), m_appletBox(new QComboBox),
      m_output(new OutputPane(tr("编译和运行的输出显示在此处"))),
      m_log(new OutputPane(tr("暂无日志"))), m_progress(new ProgressDisplay),
      m_centre(new QStackedWidget)
{
    setObjectName(QStringLiteral("workbench"));
    setDockNestingEnabled(true);
    auto* noApplet = new QLabel(tr("当前工程没有打开的小程序。\n请选择或新建一个小程序。"));
    noApplet->setAlignment(Qt::AlignCenter);
    m_centre->addWidget(noApplet);
    // One central widget for good: without one the docks would take its place, and keep it.
    setCentralWidget(m_centre);
    buildActions();
    buildDocks();
    statusBar()->addPermanentWidget(m_progress);
    connectHost();
    restoreWindow();
    showTitle();
}

MainWindow::~MainWindow()
{
    closeEditor();
}

void MainWindow::buildActions()
{
    auto* bar = addToolBar(tr("工程"));
    bar->setObjectName(QStringLiteral("projectBar"));
    bar->setIconSize(StyleManager::toolbarButtonIconSize(26));
    bar->addAction(applicationIcon("open_project"), tr("打开工程"), this,
                   &MainWindow::chooseProject);
    m_appletBox->setObjectName(QStringLiteral("appletBox"));
    m_appletBox->setMinimumContentsLength(18);
    m_appletBox->setToolTip(tr("小程序"));
    bar->addWidget(m_appletBox);
    connect(m_appletBox, &QComboBox::textActivated, this, &MainWindow::chooseApplet);
    bar->addAction(applicationIcon("applet_new"), tr("新建小程序"), this,
                   &MainWindow::createApplet);
    m_appletActions = {bar->addAction(applicationIcon("applet_rename"), tr("重命名小程序"), this,
                                      &MainWindow::renameApplet),
                       bar->addAction(applicationIcon("applet_remove"), tr("删除小程序"), this,
                                      &MainWindow::removeApplet),
                       bar->addAction(applicationIcon("applet_reload"), tr("重新加载"), this,
                                      &MainWindow::reloadApplet),
                       bar->addAction(applicationIcon("applet_save_copy"), tr("另存副本"), this,
                                      &MainWindow::saveCopy)};
    m_editorBar->setObjectName(QStringLiteral("editorBar"));
    addToolBar(m_editorBar);

    const auto addShortcut = [this](const QKeySequence& keys, int function) {
        connect(new QShortcut(keys, this), &QShortcut::activated, this,
                [this, function] { pressFunction(function); });
    };
    addShortcut(QKeySequence::Save, ProcessEditToolBar::Save);
    addShortcut(Qt::Key_F5, ProcessEditToolBar::RunMain);
    addShortcut(Qt::CTRL + Qt::Key_F5, ProcessEditToolBar::RunCurrent);
    addShortcut(Qt::SHIFT + Qt::Key_F5, ProcessEditToolBar::Stop);
    addShortcut(Qt::Key_F7, ProcessEditToolBar::Compile);
}

void MainWindow::buildDocks()
{
    auto* outputDock =
        addDock(QStringLiteral("outputDock"), tr("输出"), Qt::BottomDockWidgetArea, m_output);
    auto* logDock = addDock(QStringLiteral("logDock"), tr("日志"), Qt::BottomDockWidgetArea, m_log);
    auto* variables = new SystemVariablePane;
    connect(variables, &SystemVariablePane::refused, this,
            [this](const QString& reason) { showNotice(IWindowManager::NoticeWarning, reason); });
    auto* variableDock = addDock(QStringLiteral("systemVariableDock"), tr("系统变量"),
                                 Qt::BottomDockWidgetArea, variables);
    tabifyDockWidget(outputDock, logDock);
    tabifyDockWidget(logDock, variableDock);
    outputDock->raise();
    m_controlDock =
        addDock(QStringLiteral("controlDock"), tr("步骤属性"), Qt::BottomDockWidgetArea, nullptr);
    m_settingDock =
        addDock(QStringLiteral("settingDock"), tr("通用设置"), Qt::BottomDockWidgetArea, nullptr);
    sayThatDocksAreEmpty();
}

void MainWindow::clearDocks()
{
    delete m_controlDock->widget();
    delete m_settingDock->widget();
}

void MainWindow::sayThatDocksAreEmpty()
{
    clearDocks();
    for (QDockWidget* dock : {m_controlDock, m_settingDock}) {
        auto* word = new QLabel(tr("没有打开的小程序"));
        word->setAlignment(Qt::AlignCenter);
        word->setEnabled(false);
        dock->setWidget(word);
    }
}

QDockWidget* MainWindow::addDock(const QString& name, const QString& title, Qt::DockWidgetArea area,
                                 QWidget* content)
{
    auto* dock = new QDockWidget(title, this);
    dock->setObjectName(name);
    dock->setFeatures(QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable);
    if (content)
        dock->setWidget(content);
    addDockWidget(area, dock);
    return dock;
}

void MainWindow::connectHost()
{
    const standalone::Host& host = standalone::Host::instance();
    connect(&host, &standalone::Host::errorLogged, this,
            [this](const QString& text) { showNotice(IWindowManager::NoticeWarning, text); });
    connect(&host, &standalone::Host::noticeShown, this, &MainWindow::showNotice);
    connect(m_output, &OutputPane::stepActivated, this,
            [this](const QString& sequenceId, const QString& stepId) {
                if (!m_editor || !showStep(*m_editor, sequenceId, stepId))
                    statusBar()->showMessage(tr("该步骤已不存在"), NoticeMs);
            });
    // One progress is one run.
    connect(&host, &standalone::Host::progressCreated, this,
            [this] { m_progress->start(tr("正在运行"), true); });
    connect(
        ProcessEditNotifyTool::instance(), &ProcessEditNotifyTool::runFinishSignal, this,
        [this](const QString& appName, const QString&, int event) {
            if (appName == m_applet)
                m_outcome = event == 1   ? tr("运行结束")
                            : event == 2 ? tr("运行中止")
                                         : tr("运行崩溃");
        },
        Qt::QueuedConnection);
}

void MainWindow::openProject(const ProjectFolder& project)
{
    closeEditor();
    if (m_project.path() != project.path())
        standalone::forgetProjectTables();
    m_project = project;
    m_applet.clear();
    standalone::Host::instance().setProjectPath(project.path());
    refreshApplets();
    showTitle();
}

void MainWindow::openApplet(const QString& name)
{
    closeEditor();
    m_applet = name;
    m_editor = new ProcessEditWidget(QStringLiteral("Workbench"), this);
    m_editor->createCApplet(name);
    const QString folder = m_project.appletFolder(name);
    m_editor->setProcessJsonAndVciPath(folder, folder + QStringLiteral("vci/"));
    m_editor->setSettingPath(folder);
    connectEditor();
    m_editor->load(false);

    m_editorBar->addWidget(m_editor->getToolMenuBar());
    clearDocks();
    m_controlDock->setWidget(m_editor->getControlWgt());
    m_settingDock->setWidget(m_editor->getSettingWgt());
    m_centre->setCurrentIndex(m_centre->addWidget(m_editor));
    for (QWidget* part : {m_editor->getToolMenuBar(), m_editor->getControlWgt(),
                          m_editor->getSettingWgt(), static_cast<QWidget*>(m_editor)})
        part->show();

    setWindowModified(false);
    refreshApplets();
    showTitle();
    emit appletOpened(name);
}

void MainWindow::connectEditor()
{
    connect(m_editor, &ProcessEditWidget::sigAuthoringModified, this, [this] {
        setWindowModified(true);
        if (m_isBuilt)
            m_editor->setRuntimeStaleHint(true);
    });
    m_editor->setOnAuthoringSavedCallback([this](const QString&) { setWindowModified(false); });
    m_editor->setOnRuntimeStaleCallback(
        [this](const QString&) { m_editor->setRuntimeStaleHint(true); });
    // Queued: it may come in the middle of what a compile has started.
    connect(m_editor, &ProcessEditWidget::sigSave, this, &MainWindow::offerAnotherPlace,
            Qt::QueuedConnection);
    connect(m_editor, &ProcessEditWidget::notifyRunResultSig, this,
            [this](bool success, const QString& text) { m_output->append(text, !success); });
    connect(m_editor, &ProcessEditWidget::sigProcessPrograss, m_progress,
            &ProgressDisplay::setProgress);
    connectBuild();
}

void MainWindow::connectBuild()
{
    connect(m_editor, &ProcessEditWidget::sigCompileStart, this, [this] {
        m_outcome = tr("编译完成");
        m_progress->start(tr("正在编译"), false);
    });
    // sigCompileFinish also tells of compiles of other applets: only the one awaited counts.
    m_editor->setOnCompileFinishedCallback([this](bool success) {
        if (success) {
            m_isBuilt = true;
            m_editor->setRuntimeStaleHint(false);
        } else {
            m_progress->finish(tr("编译失败"));
        }
        emit attemptFinished(success);
        // Queued: a run begins after this, and one that can't begin sends no end.
        QMetaObject::invokeMethod(
            this,
            [this] {
                const bool hasRunner = !processedit::getCAppletRunState(m_applet).first.empty();
                if (m_progress->isBusy() && m_editor && !hasRunner)
                    m_progress->finish(tr("运行未能开始"));
            },
            Qt::QueuedConnection);
    });
    connect(m_editor, &ProcessEditWidget::sigRunFinish, this,
            [this] { m_progress->finish(m_outcome); });
}

void MainWindow::closeEditor()
{
    if (!m_editor)
        return;
    // The parts that the window has taken go with the editor.
    QWidget* const parts[] = {m_editor->getToolMenuBar(), m_editor->getControlWgt(),
                              m_editor->getSettingWgt()};
    delete m_editor;
    m_editor = nullptr;
    for (QWidget* part : parts)
        delete part;
    m_editorBar->clear();
    sayThatDocksAreEmpty();
    m_progress->reset();
    m_isBuilt = false;
    setWindowModified(false);
}

bool MainWindow::mayLeaveApplet()
{
    if (!m_editor)
        return true;
    if (processedit::getCAppletRunState(m_applet).second == AppletRunning &&
        !user_dialogs::question(this, tr("提示"),
                                tr("小程序 %1 正在运行，离开将停止运行，是否继续？").arg(m_applet)))
        return false;
    m_editor->syncAuthoringPanelsToSdk();
    if (!isWindowModified())
        return true;
    const auto choice = user_dialogs::saveOrDiscard(
        this, tr("提示"), tr("小程序 %1 有未保存的修改，是否保存？").arg(m_applet));
    if (choice == user_dialogs::Button::Save)
        return m_editor->saveApp(m_applet, true, QString());
    return choice == user_dialogs::Button::Discard;
}

void MainWindow::pressFunction(int function)
{
    // What the tool bar forbids at the moment the keys don't do either.
    if (!m_editor)
        return;
    const bool isBusy = m_progress->isBusy();
    const bool needsIdle = function == ProcessEditToolBar::RunMain ||
                           function == ProcessEditToolBar::RunCurrent ||
                           function == ProcessEditToolBar::Compile;
    if (!(needsIdle && isBusy))
        m_editor->onToolWidgetButtonClickedSlot(function);
}

void MainWindow::refreshApplets()
{
    const QSignalBlocker blocker(m_appletBox);
    m_appletBox->clear();
    m_appletBox->addItems(m_project.applets());
    m_appletBox->setCurrentIndex(m_appletBox->findText(m_applet));
    for (QAction* action : qAsConst(m_appletActions))
        action->setEnabled(m_editor);
}

void MainWindow::complain(const QString& complaint)
{
    user_dialogs::warning(this, tr("警告"), complaint);
}

void MainWindow::showNotice(int level, const QString& text)
{
    statusBar()->showMessage(text, NoticeMs);
    m_log->append(text, level >= IWindowManager::NoticeWarning);
}

void MainWindow::showTitle()
{
    const QString applet = m_applet.isEmpty() ? tr("无小程序") : m_applet;
    setWindowTitle(tr("%1[*] - %2 - 流程编辑").arg(applet, m_project.name()));
}

void MainWindow::restoreWindow()
{
    const QSettings settings;
    const QByteArray geometry = settings.value(geometryKey).toByteArray();
    if (geometry.isEmpty() || !restoreGeometry(geometry) ||
        !restoreState(m_dockState = settings.value(stateKey).toByteArray(), StateVersion))
        applyDefaultSizes();
}

void MainWindow::applyDefaultSizes()
{
    resize(StyleManager::scale(QSize(1440, 900)));
    const int height = StyleManager::scale(220);
    QDockWidget* outputDock = findChild<QDockWidget*>(QStringLiteral("outputDock"));
    resizeDocks({outputDock, m_controlDock, m_settingDock}, {620, 400, 400}, Qt::Horizontal);
    resizeDocks({outputDock, m_controlDock, m_settingDock}, {height, height, height}, Qt::Vertical);
}

void MainWindow::showEvent(QShowEvent* event)
{
    QMainWindow::showEvent(event);
    // Docks take the sizes that they had in a window only when they are laid out in one.
    if (!m_dockState.isEmpty())
        restoreState(std::exchange(m_dockState, QByteArray()), StateVersion);
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    if (!mayLeaveApplet()) {
        event->ignore();
        return;
    }
    QSettings settings;
    settings.setValue(geometryKey, saveGeometry());
    settings.setValue(stateKey, saveState(StateVersion));
    closeEditor();
    event->accept();
}

#include "moc_MainWindow.cpp"
