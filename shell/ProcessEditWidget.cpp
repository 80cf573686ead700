#include "shell/ProcessEditWidget.h"

#include "edits/DocumentEdits.h"
#include "shell/ProcessEditParts.h"
#include "shell/WidgetBuildView.h"
#include "shell/bridge/LogicMaster.h"
#include "shell/bridge/ProcessEditNotifyTool.h"
#include "shell/bridge/RunFeedHub.h"
#include "shell/bridge/notify_callbacks.h"
#include "shell/documents/AppletStorage.h"
#include "shell/documents/default_tables.h"
#include "shell/documents/exchange_drops.h"
#include "shell/documents/variable_use.h"
#include "shell/run/BuildController.h"
#include "shell/run/ProcessEditToolBar.h"

#include "logic/run/RunInbox.h"
#include "model/dialogs/EmptyHint.h"
#include "model/dialogs/user_dialogs.h"
#include "model/mime_types.h"
#include "model/services/applet_runtime.h"
#include "model/services/host.h"
#include "model/services/processedit.h"
#include "model/services/widget_bases.h"
#include "panels/wgtCommonControl.h"
#include "panels/wgtGeneralSetting.h"

#include <QDragEnterEvent>
#include <QHeaderView>
#include <QMimeData>
#include <QTabBar>

namespace processedit = sdk_ui_interface::processedit;

namespace {

constexpr int StretchFactors[] = {2, 5, 4};

} // namespace

ProcessEditWidget::ProcessEditWidget(const QString& businessName, QWidget* parent)
    : QWidget(parent), m(std::make_unique<ProcessEditParts>())
{
    qRegisterMetaType<QList<QPair<QString, QString>>>("QList<QPair<QString,QString>>");
    qRegisterMetaType<logicBlockType>("logicBlockType");
    LogicMaster::instance();
    m->businessName = businessName;
    m->ui.setupUi(this);
    default_tables::loadOnce();
    initUI();
    connectSignals();
}

void ProcessEditWidget::initUI()
{
    m->loading = new LoadingUI(this);
    m->ui.treeWidget->setHeaderHidden(true);
    m->ui.treeWidget->setIconSize(
        StyleManager::toolbarButtonIconSize(ProcessEditToolBar::IconSize));
    m->ui.treeWidget->initStepList();
    new EmptyHint(m->ui.treeWidget,
                  tr("没有步骤类型，请检查步骤类型表：\n%1").arg(default_tables::stepTable()));
    m->commonControl = new wgtCommonControl(this);
    m->commonControl->hide();
    m->generalSetting = new wgtGeneralSetting(this);
    m->generalSetting->hide();
    m->toolBar = new ProcessEditToolBar;
    m->ui.func_menue_layout->addWidget(m->toolBar);

    const auto icon = [](const QString& path) {
        return StyleManager::scaledToolbarIcon(path, ProcessEditToolBar::IconSize);
    };
    m->ui.import_toolButton->setIcon(icon(QStringLiteral(":/icon/存读/import_2.png")));
    m->ui.export_toolButton->setIcon(icon(QStringLiteral(":/icon/存读/export_2.png")));
    const QSize tipSize = StyleManager::toolbarButtonIconSize(16);
    m->ui.tip_label->setPixmap(QIcon(QStringLiteral(":/icon/状态/tipinfo.png")).pixmap(tipSize));
    m->ui.tip_label->setToolTip(tr(
        "模板内容以添加时的内容为准。\r\n通过右侧序列列表中选中拖入到此处或者选中序列右键菜单选择"
        "添加至模板进行添加模板操作"));
    m->ui.widget_para->setStyleSheet(QStringLiteral("#widget_para{border:none}"));

    m->ui.treeWidget->expandAll();
    QList<int> sizes;
    for (int index = 0; index < m->ui.splitter->count(); ++index) {
        m->ui.splitter->setStretchFactor(index, StretchFactors[index]);
        sizes.append(StretchFactors[index] * 100);
    }
    m->ui.splitter->setSizes(sizes);
    for (int handle : {1, 2})
        m->ui.splitter->handle(handle)->installEventFilter(this);

    m->ui.tabWidget->tabBar()->setAcceptDrops(true);
    m->ui.tabWidget->tabBar()->installEventFilter(this);
    setAcceptDrops(true);
    installEventFilter(this);

    RunFeedHub::instance()->add(m->ui.center_wgt->inbox());
    m->storage = new AppletStorage([this] { m->shown.flushPanels(); }, this);
    m->buildView = std::make_unique<WidgetBuildView>(*m, this);
    m->build = new BuildController(m->businessName, *m->buildView, this);
}

void ProcessEditWidget::connectSignals()
{
    connectPanels();
    connectSequences();
    connectPalette();
    connectLogicMaster();
    connectBuild();
}

void ProcessEditWidget::connectPanels()
{
    const LogicView* logicView = m->ui.center_wgt;
    connect(logicView, &LogicView::processItemClicked, this,
            &ProcessEditWidget::processItemClickedSlot, Qt::QueuedConnection);
    connect(logicView, &LogicView::sigItemDbClick, this,
            &ProcessEditWidget::sigItemDBClickFromLoigcView);
    connect(logicView, &LogicView::sigCurrentTabChanged, this,
            &ProcessEditWidget::onLogicWidgetTabChanged);
    connect(logicView, &LogicView::sigRunSequenceChanged, this,
            [this] { m->shown.showRunVariables(); });
    connect(logicView, &LogicView::sigUpdateProcessWidgetWidth, this,
            &ProcessEditWidget::onSaveProcessTreeWidthSlot);
    connect(logicView, &LogicView::sigProcessPrograss, this,
            &ProcessEditWidget::sigProcessPrograss);
    connect(logicView, &LogicView::sigLogLine, this, &ProcessEditWidget::onAppletLog);
    connect(logicView, &LogicView::sigUdsRuntimeStaleRequired, this, [this] {
        if (m->onRuntimeStale)
            m->onRuntimeStale(m->appName);
    });
    connect(m->ui.widget_para, &wgtLocalVariable::sigUpdateVarTreeWidth, this,
            &ProcessEditWidget::onSaveVarTreeWidthSlot);
    connect(m->ui.splitter, &QSplitter::splitterMoved, this, &ProcessEditWidget::onSplitterMoved);
    connect(m->toolBar, &ProcessEditToolBar::defaultFunctionClicked, this,
            &ProcessEditWidget::onToolWidgetButtonClickedSlot);
    connect(m->commonControl, &wgtCommonControl::updateTreeProcessData, m->generalSetting,
            &wgtGeneralSetting::refreshPreview);
    connect(&DocumentEdits::instance(), &DocumentEdits::changed, this,
            [this](const DocumentChange& change) {
                if (change.appName == m->appName)
                    variable_use::recordChange(change);
            });
}

void ProcessEditWidget::connectLogicMaster()
{
    LogicMaster* master = LogicMaster::instance();
    connect(master, &LogicMaster::sigModify, this, &ProcessEditWidget::sigAuthoringModified);
    connect(master, &LogicMaster::sigRename, this,
            [this](const QString& oldName, const QString& newName) {
                if (m->appName != oldName)
                    return;
                nameParts(newName);
                capplet_sdk::registerLogCallBack(newName.toLocal8Bit().constData(),
                                                 notify_callbacks::logText);
            });
    connect(master, &LogicMaster::waitCAppletStop, this, [this](const QString& appName) {
        if (appName == m->appName)
            m->loading->showLoading(tr("正在等待小程序停止"), tr("提示"));
    });
    connect(master, &LogicMaster::sigUpdateTemplateWidget, this,
            [this] { m->ui.template_treeView->reload(); });
    connect(master, &LogicMaster::sigUpdateQuickStep, this, &ProcessEditWidget::onUpdateQuickStep,
            Qt::DirectConnection);
    connect(
        ProcessEditNotifyTool::instance(), &ProcessEditNotifyTool::systemUdsVarChange, this,
        [this](const QStringList& appNames) {
            if (!appNames.contains(m->appName))
                return;
            const QStringList blocks = LogicMaster::instance()->udsBlocks(m->appName);
            m->ui.center_wgt->refreshRows(QSet<QString>(blocks.begin(), blocks.end()));
        },
        Qt::QueuedConnection);
}

void ProcessEditWidget::connectBuild()
{
    const BuildController* build = m->build;
    connect(
        ProcessEditNotifyTool::instance(), &ProcessEditNotifyTool::runFinishSignal, this,
        [this](const QString& appName, const QString&, int event) {
            if (event == processedit::RunStopped && appName == m->build->runningApp())
                m->ui.center_wgt->noteStop();
        },
        Qt::QueuedConnection);
    connect(LogicMaster::instance(), &LogicMaster::NotifyCompileResultSig, this,
            &ProcessEditWidget::onNotifyCompileResult, Qt::QueuedConnection);
    connect(LogicMaster::instance(), &LogicMaster::NotifyRunResultSig, this,
            &ProcessEditWidget::onNotifyRunResult, Qt::QueuedConnection);
    connect(build, &BuildController::compileStarted, this, &ProcessEditWidget::sigCompileStart);
    connect(build, &BuildController::compileFinished, this, &ProcessEditWidget::sigCompileFinish);
    connect(build, &BuildController::runStarted, this, &ProcessEditWidget::sigRunStart);
    connect(build, &BuildController::runFinished, this, &ProcessEditWidget::sigRunFinish);
    connect(build, &BuildController::output, this, &ProcessEditWidget::notifyRunResultSig);
    connect(m->storage, &AppletStorage::refused, this, &ProcessEditWidget::sigSave);
}

QWidget* ProcessEditWidget::getToolMenuBar()
{
    return m->toolBar;
}

QWidget* ProcessEditWidget::getControlWgt()
{
    return m->commonControl;
}

QWidget* ProcessEditWidget::getSettingWgt()
{
    return m->generalSetting;
}

void ProcessEditWidget::addExtraToolBarFunction(QWidget* widget)
{
    m->toolBar->addExtraToolBarFunction(widget);
}

void ProcessEditWidget::removeExtraToolBarFunction(QWidget* widget)
{
    m->toolBar->removeExtraToolBarFunction(widget);
}

void ProcessEditWidget::onToolWidgetButtonClickedSlot(int funcType)
{
    switch (funcType) {
    case ProcessEditToolBar::Save:
        saveFromButton();
        break;
    case ProcessEditToolBar::RunCurrent:
        m->build->runCurrent();
        break;
    case ProcessEditToolBar::RunMain:
        m->build->runMain();
        break;
    case ProcessEditToolBar::Stop:
        m->build->stop();
        break;
    case ProcessEditToolBar::Compile:
        m->build->compileMain();
        break;
    case ProcessEditToolBar::OpenCodeFolder:
        openCodeFolder();
        break;
    case ProcessEditToolBar::ToVci:
    case ProcessEditToolBar::Import:
    case ProcessEditToolBar::Export:
        showUnavailable();
        break;
    default:
        break;
    }
}

void ProcessEditWidget::onNotifyCompileResult(CAppCompileResult result, QString outputInfo)
{
    m->ui.center_wgt->onRunTimerTimeout(); // what was said before it is told before it
    m->build->onCompileResult(result, outputInfo);
}

void ProcessEditWidget::onNotifyRunResult(QString appName, bool isSuccessed, QString outputInfo)
{
    m->ui.center_wgt->onRunTimerTimeout(); // the same
    m->build->onRunResult(appName, isSuccessed, outputInfo);
}

void ProcessEditWidget::onNotifyStateResult(QString cappname, QString seqUuid, QString blockuuid,
                                            double iProgress, int result)
{
    m->ui.center_wgt->inbox()->reportOf(cappname, seqUuid, blockuuid, iProgress, result);
}

void ProcessEditWidget::onGotoSequence(QString cappname, QString gotoSeqUuid, bool isEnd)
{
    m->ui.center_wgt->inbox()->sequenceChangeOf(cappname, gotoSeqUuid, isEnd, QString());
}

void ProcessEditWidget::onGotoTemplateSequence(QString cappname, QString templateid,
                                               QString gotoSeqUuid, bool isEnd)
{
    m->ui.center_wgt->inbox()->sequenceChangeOf(cappname, gotoSeqUuid, isEnd, templateid);
}

void ProcessEditWidget::onAppletLog(const QString& appName, const QString& message)
{
    const bool isOurs = appName == m->appName || appName == m->build->runningApp();
    if (!message.isEmpty() && isOurs && !LogicMaster::instance()->isPanelBound(appName))
        emit notifyRunResultSig(true, message);
}

void ProcessEditWidget::processItemClickedSlot(int baseType, QString blockuuid)
{
    m->shown.showStep(baseType, blockuuid);
}

void ProcessEditWidget::currentSequenceChangedSlot(QString sequenceId)
{
    m->shown.showSequence(sequenceId);
}

void ProcessEditWidget::onLogicWidgetTabChanged(int index)
{
    m->shown.showTab(index == 0);
    emit sigPrcoessMode(index);
}

void ProcessEditWidget::showUnavailable()
{
    getWindowManager()->showNotice(IWindowManager::NoticeWarning, tr("该功能暂未开放"));
}

bool ProcessEditWidget::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseButtonRelease:
        // A handle that was let go after a move.
        if (qobject_cast<QSplitterHandle*>(watched))
            m->layout.saveIfMoved();
        break;
    case QEvent::DragEnter: {
        auto* drag = static_cast<QDragEnterEvent*>(event);
        if (watched == this && drag->mimeData()->hasUrls()) {
            drag->acceptProposedAction();
            return true;
        }
        // A sequence on its way to the templates.
        if (watched == m->ui.tabWidget->tabBar() &&
            m->ui.tabWidget->currentIndex() == m->PaletteTab &&
            drag->mimeData()->hasFormat(mime_types::SequenceDrag))
            m->ui.tabWidget->setCurrentIndex(m->TemplateTab);
        break;
    }
    case QEvent::Drop: {
        auto* drop = static_cast<QDropEvent*>(event);
        if (watched == this && drop->mimeData()->hasUrls()) {
            drop->acceptProposedAction();
            takeDrop(*drop->mimeData());
            return true;
        }
        break;
    }
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

void ProcessEditWidget::takeDrop(const QMimeData& data)
{
    if (processedit::getCAppletRunState(m->appName).second != AppletStopped)
        return;
    const QStringList files = exchange_drops::files(data);
    if (files.size() > 1)
        user_dialogs::information(this, tr("导入"), tr("存在多个文件, 即将默认导入第一个文件"));
    if (!files.isEmpty())
        importFile(files.first());
}

void ProcessEditWidget::importFile(const QString&)
{
    showUnavailable();
}

void ProcessEditWidget::onSplitterMoved(int, int)
{
    m->layout.takeSizes();
}

void ProcessEditWidget::loadSplitterSizes()
{
    m->layout.load(LogicMaster::instance()->settingPath(m->appName));
}

void ProcessEditWidget::saveSplitterSizes()
{
    m->layout.save();
}

void ProcessEditWidget::updateProcessRunWidth()
{
    m->layout.loadRunWidths();
}

void ProcessEditWidget::onSaveVarTreeWidthSlot(QStringList widthList)
{
    m->layout.keepVariableWidths(widthList);
}

void ProcessEditWidget::onSaveProcessTreeWidthSlot(QStringList widthList, bool isRun)
{
    m->layout.keepTreeWidths(widthList, isRun);
}

#include "moc_ProcessEditWidget.cpp"
