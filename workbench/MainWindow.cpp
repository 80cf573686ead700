#include "workbench/MainWindow.h"

#include "model/dialogs/user_dialogs.h"
#include "model/services/host.h"
#include "model/services/processedit.h"
#include "model/services/widget_bases.h"
#include "shell/ProcessEditWidget.h"
#include "shell/bridge/ProcessEditNotifyTool.h"
#include "shell/documents/applet_documents.h"
#include "shell/run/ProcessEditToolBar.h"
#include "standalone/host/Host.h"
#include "standalone/model_service/stores/project_tables.h"
#include "standalone/runtime/runtime.h"
#include "workbench/OutputPane.h"
#include "workbench/ProgressDisplay.h"
#include "workbench/ProjectLock.h"
#include "workbench/SystemVariablePane.h"
#include "workbench/application_icon.h"
#include "workbench/step_locator.h"

#include <QAction>
#include <QCloseEvent>
#include <QComboBox>
#include <QDesktopServices>
#include <QDockWidget>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QSettings>
#include <QShortcut>
#include <QSignalBlocker>
#include <QStackedWidget>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>
#include <QUrl>

namespace processedit = sdk_ui_interface::processedit;

namespace {

const QString geometryKey = QStringLiteral("window/geometry");
const QString stateKey = QStringLiteral("window/state");
constexpr int StateVersion = 2;
constexpr int NoticeMs = 15000;

/// A key of the window that presses a button of the editor's tool bar.
struct EditorKey
{
    int function;
    int key;
    const char* button;
    int runEntry; ///< of the run button's menu; negative for a plain button

    QKeySequence sequence() const { return QKeySequence(key); }
};

constexpr EditorKey editorKeys[] = {
    {ProcessEditToolBar::Save, Qt::CTRL + Qt::Key_S, "saveBtn", -1},
    {ProcessEditToolBar::RunMain, Qt::Key_F5, "runBtn", 1},
    {ProcessEditToolBar::RunCurrent, Qt::CTRL + Qt::Key_F5, "runBtn", 0},
    {ProcessEditToolBar::Stop, Qt::SHIFT + Qt::Key_F5, "stopBtn", -1},
    {ProcessEditToolBar::Compile, Qt::Key_F7, "compileBtn", -1},
};

QString withKeys(const QString& text, const QKeySequence& keys)
{
    const QString suffix = QStringLiteral(" (%1)").arg(keys.toString(QKeySequence::NativeText));
    return keys.isEmpty() || text.endsWith(suffix) ? text : text + suffix;
}

} // namespace

MainWindow::MainWindow()
    : m_projectBar(new QToolBar(tr("工程"))), m_editorBar(new QToolBar(tr("编辑"))),
      m_appletBox(new QComboBox), m_output(new OutputPane(tr("编译和运行的输出显示在此处"))),
      m_log(new OutputPane(tr("暂无日志"))), m_progress(new ProgressDisplay),
      m_readOnlyOffer(new QToolButton), m_centre(new QStackedWidget)
{
    setObjectName(QStringLiteral("workbench"));
    setDockNestingEnabled(true);
    auto* noApplet = new QLabel(tr("当前工程没有打开的小程序。\n请选择或新建一个小程序。"));
    noApplet->setAlignment(Qt::AlignCenter);
    m_centre->addWidget(noApplet);
    // One central widget for good: without one the docks would take its place, and keep it.
    setCentralWidget(m_centre);
    buildActions();
    buildMenus();
    buildDocks();
    m_readOnlyOffer->setObjectName(QStringLiteral("readOnlyOffer"));
    m_readOnlyOffer->setText(tr("只读：另存副本"));
    m_readOnlyOffer->hide();
    connect(m_readOnlyOffer, &QToolButton::clicked, this, &MainWindow::saveCopy);
    statusBar()->addPermanentWidget(m_readOnlyOffer);
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
    m_projectBar->setObjectName(QStringLiteral("projectBar"));
    m_projectBar->setIconSize(StyleManager::toolbarButtonIconSize(26));
    addToolBar(m_projectBar);
    const auto add = [this](const char* icon, const QString& text, void (MainWindow::*act)(),
                            const QKeySequence& keys = QKeySequence()) {
        QAction* action = m_projectBar->addAction(applicationIcon(icon), text, this, act);
        action->setShortcut(keys);
        action->setToolTip(withKeys(text, keys));
        return action;
    };
    add("open_project", tr("打开工程"), &MainWindow::chooseProject, QKeySequence::Open);
    m_appletBox->setObjectName(QStringLiteral("appletBox"));
    m_appletBox->setMinimumContentsLength(18);
    m_appletBox->setToolTip(tr("小程序"));
    m_projectBar->addWidget(m_appletBox);
    connect(m_appletBox, &QComboBox::textActivated, this, &MainWindow::chooseApplet);
    add("applet_new", tr("新建小程序"), &MainWindow::createApplet, QKeySequence::New);
    m_appletActions = {add("applet_rename", tr("重命名小程序"), &MainWindow::renameApplet),
                       add("applet_remove", tr("删除小程序"), &MainWindow::removeApplet),
                       add("applet_reload", tr("重新加载"), &MainWindow::reloadApplet),
                       add("applet_save_copy", tr("另存副本"), &MainWindow::saveCopy,
                           Qt::CTRL + Qt::SHIFT + Qt::Key_S)};
    m_editorBar->setObjectName(QStringLiteral("editorBar"));
    addToolBar(m_editorBar);

    for (const EditorKey& key : editorKeys)
        connect(new QShortcut(key.sequence(), this), &QShortcut::activated, this,
                [this, function = key.function] { pressFunction(function); });
}

void MainWindow::buildMenus()
{
    QMenu* project = menuBar()->addMenu(tr("工程(&P)"));
    for (QAction* action : m_projectBar->actions()) {
        if (!action->text().isEmpty())
            project->addAction(action);
    }
    // A hidden tool bar has no place of its own to be brought back from.
    QMenu* view = menuBar()->addMenu(tr("视图(&V)"));
    view->setObjectName(QStringLiteral("viewMenu"));
    for (QToolBar* bar : {m_projectBar, m_editorBar}) {
        QAction* toggle = bar->toggleViewAction();
        toggle->setText(tr("%1工具栏").arg(bar->windowTitle()));
        view->addAction(toggle);
    }
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
    connect(m_output, &OutputPane::recordActivated, this, [this](const QString& file) {
        const auto opens = [](const QString& path) {
            return QDesktopServices::openUrl(QUrl::fromLocalFile(path));
        };
        const QFileInfo record(file);
        if (!record.exists())
            statusBar()->showMessage(tr("该文件已不存在: %1").arg(file), NoticeMs);
        else if (!opens(file) && !opens(record.path()))
            statusBar()->showMessage(tr("无法打开 %1").arg(file), NoticeMs);
    });
    // One progress is one run.
    connect(&host, &standalone::Host::progressCreated, this,
            [this] { m_progress->start(tr("正在运行"), true); });
    connect(
        ProcessEditNotifyTool::instance(), &ProcessEditNotifyTool::runFinishSignal, this,
        [this](const QString& appName, const QString&, int event) {
            if (appName != m_applet)
                return;
            m_outcome = event == processedit::RunFinished  ? tr("运行结束")
                        : event == processedit::RunStopped ? tr("运行中止")
                                                           : tr("运行崩溃");
            m_isFailure = event == processedit::RunCrashed;
            if (event != processedit::RunFinished)
                m_progress->holdProgress();
        },
        Qt::QueuedConnection);
}

bool MainWindow::openProject(const ProjectFolder& project)
{
    if (!lockProject(project))
        return false;
    closeEditor();
    if (m_project.path() != project.path())
        standalone::forgetProjectTables();
    m_project = project;
    m_isReadOnlyTold = false;
    m_applet.clear();
    standalone::Host::instance().setProjectPath(project.path());
    refreshApplets();
    showTitle();
    return true;
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
    tellKeys();

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
    if (!isGoodEnough(folder))
        return;
    tellIfReadOnly();
    emit appletOpened(name);
}

bool MainWindow::isGoodEnough(const QString& folder)
{
    const auto damage = applet_documents::damageRead(folder);
    if (!damage)
        return true;
    const QDateTime backup = applet_documents::wholeBackup(folder);
    const QString text = tr("小程序 %1 的流程文件已损坏: %2\n\n"
                            "可以读取其中的 %3 个序列、%4 个步骤。损坏的文件已另存，不会丢失。")
                             .arg(m_applet, damage->fault)
                             .arg(damage->sequences)
                             .arg(damage->steps);
    const QString usePart = tr("打开可读取的部分");
    const QString useBackup =
        tr("使用 %1 的备份").arg(backup.toString(QStringLiteral("yyyy-MM-dd HH:mm")));
    QStringList choices{usePart, tr("不打开")};
    if (backup.isValid())
        choices.prepend(useBackup);
    const QString chosen =
        choices.value(user_dialogs::choose(this, tr("流程文件已损坏"), text, choices));
    if (chosen == usePart)
        return true;
    const QString name = m_applet;
    leaveApplet();
    if (chosen != useBackup)
        return false;
    const QString complaint = applet_documents::restoreBackup(folder);
    if (complaint.isEmpty())
        openApplet(name);
    else
        complain(complaint);
    return false;
}

void MainWindow::leaveApplet()
{
    closeEditor();
    m_applet.clear();
    refreshApplets();
    showTitle();
}

void MainWindow::connectEditor()
{
    connect(m_editor, &ProcessEditWidget::sigAuthoringModified, this, [this] {
        setWindowModified(true);
        if (m_isBuilt)
            showStale(true);
    });
    m_editor->setOnAuthoringSavedCallback([this](const QString& name) {
        setWindowModified(false);
        statusBar()->showMessage(tr("已保存 %1processInfo.pedt").arg(m_project.appletFolder(name)),
                                 NoticeMs);
    });
    m_editor->setOnRuntimeStaleCallback([this](const QString&) { showStale(true); });
    // Queued: it may come in the middle of what a compile has started.
    connect(m_editor, &ProcessEditWidget::sigSave, this, &MainWindow::onSaveRefused,
            Qt::QueuedConnection);
    m_editor->setReplacesOthers(m_isUnattended);
    // A compile ends with a save: what it would replace is asked for before it begins.
    m_editor->setCompileCheckCallback([this](const QString&, const QString&, const QString&, bool) {
        return mayReplaceDocument(tr("未保存，也未编译")) ? QList<int>() : QList<int>{0};
    });
    connect(m_editor, &ProcessEditWidget::notifyRunResultSig, this,
            [this](bool success, const QString& text) {
                // A compile's words are in no record.
                const bool hasRunner = !processedit::getCAppletRunState(m_applet).first.empty();
                m_output->append(text, !success,
                                 hasRunner ? standalone::runRecord(m_applet) : QString());
            });
    for (const auto begun : {&ProcessEditWidget::sigCompileStart, &ProcessEditWidget::sigRunStart})
        connect(m_editor, begun, m_output, &OutputPane::followEnd);
    connect(m_editor, &ProcessEditWidget::sigProcessPrograss, m_progress,
            &ProgressDisplay::setProgress);
    connectBuild();
}

void MainWindow::connectBuild()
{
    connect(m_editor, &ProcessEditWidget::sigCompileStart, this, [this] {
        m_outcome = tr("编译完成");
        m_isFailure = false;
        m_progress->start(tr("正在编译"), false);
    });
    // sigCompileFinish also tells of compiles of other applets: only the one awaited counts.
    m_editor->setOnCompileFinishedCallback([this](bool success) {
        if (success) {
            m_isBuilt = true;
            showStale(false);
        } else {
            m_progress->finish(tr("编译失败"), true);
        }
        emit attemptFinished(success);
        // Queued: a run begins after this, and one that can't begin sends no end.
        QMetaObject::invokeMethod(
            this,
            [this] {
                const bool hasRunner = !processedit::getCAppletRunState(m_applet).first.empty();
                if (m_progress->isBusy() && m_editor && !hasRunner)
                    m_progress->finish(tr("运行未能开始"), true);
            },
            Qt::QueuedConnection);
    });
    connect(m_editor, &ProcessEditWidget::sigRunFinish, this,
            [this] { m_progress->finish(m_outcome, m_isFailure); });
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
    m_readOnlyOffer->hide();
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
        return mayReplaceDocument(tr("未保存")) && m_editor->saveApp(m_applet, true, QString());
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

// The editor doesn't know the keys that its host gives it.
void MainWindow::tellKeys()
{
    for (const EditorKey& key : editorKeys) {
        auto* button =
            m_editor->getToolMenuBar()->findChild<QToolButton*>(QLatin1String(key.button));
        if (key.runEntry < 0) {
            button->setToolTip(withKeys(button->toolTip(), key.sequence()));
        } else {
            QAction* entry = button->menu()->actions().at(key.runEntry);
            entry->setToolTip(withKeys(entry->toolTip(), key.sequence()));
        }
    }
}

void MainWindow::showStale(bool isStale)
{
    m_editor->setRuntimeStaleHint(isStale);
    tellKeys();
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

QSize MainWindow::firstSize(const QSize& room)
{
    const QSize wish = StyleManager::scale(QSize(1440, 900));
    // The frame and a task bar want some of the screen too.
    return room.isEmpty() ? wish : wish.boundedTo(room * 0.94);
}

void MainWindow::applyDefaultSizes()
{
    // A screen that nobody sees has any size.
    const bool isSeen = QGuiApplication::platformName() != QLatin1String("offscreen");
    resize(firstSize(isSeen ? screen()->availableSize() : QSize()));
    const int height = qMin(StyleManager::scale(220), this->height() / 4);
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
