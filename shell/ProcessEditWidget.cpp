#include "shell/ProcessEditWidget.h"

#include "shell/AppletLogFeed.h"
#include "shell/BuildController.h"
#include "shell/LatestProgress.h"
#include "shell/LogicMaster.h"
#include "shell/ProcessEditNotifyTool.h"
#include "shell/ProcessEditParts.h"
#include "shell/ProcessEditToolBar.h"
#include "shell/RunReportGate.h"
#include "shell/WidgetBuildView.h"
#include "shell/default_tables.h"

#include "model/dialogs/user_dialogs.h"
#include "model/services/host.h"
#include "model/services/processedit.h"
#include "model/services/widget_bases.h"
#include "panels/wgtCommonControl.h"
#include "panels/wgtGeneralSetting.h"

#include <QEvent>
#include <QHeaderView>
#include <QUrl>

namespace processedit = sdk_ui_interface::processedit;

namespace {

constexpr int IconSize = 26;
constexpr int StretchFactors[] = {2, 5, 4};
const QList<int> runTabSizes{0, 700, 300};

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
    m->ui.treeWidget->setIconSize(StyleManager::toolbarButtonIconSize(IconSize));
    m->ui.treeWidget->initStepList();
    m->commonControl = new wgtCommonControl(this);
    m->commonControl->hide();
    m->generalSetting = new wgtGeneralSetting(this);
    m->generalSetting->hide();
    m->toolBar = new ProcessEditToolBar;
    m->ui.func_menue_layout->addWidget(m->toolBar);

    const auto icon = [](const QString& path) {
        return StyleManager::scaledToolbarIcon(path, IconSize);
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

    m->gate = std::make_shared<RunReportGate>(m->ui.center_wgt);
    m->logFeed = std::make_shared<AppletLogFeed>(
        this, [this](const QString& appName, const QString& text) { onAppletLog(appName, text); });
    m->progress = new LatestProgress(this);
    m->buildView = std::make_unique<WidgetBuildView>(*m, this, [this] {
        save(QString());
        saveShared();
    });
    m->build = new BuildController(m->businessName, *m->buildView, this);
}

void ProcessEditWidget::connectSignals()
{
    connectPanels();
    connectLogicMaster();
    connectBuild();
}

void ProcessEditWidget::connectPanels()
{
    const LogicView* logicView = m->ui.center_wgt;
    connect(m->ui.sequenceWidget, &wgtSequenceTable::currentSequenceChanged, this,
            &ProcessEditWidget::currentSequenceChangedSlot);
    connect(m->ui.sequenceWidget, &wgtSequenceTable::sigModified, LogicMaster::instance(),
            &LogicMaster::sigModify);
    connect(logicView, &LogicView::processItemClicked, this,
            &ProcessEditWidget::processItemClickedSlot, Qt::QueuedConnection);
    connect(logicView, &LogicView::sigItemDbClick, this,
            &ProcessEditWidget::sigItemDBClickFromLoigcView);
    connect(logicView, &LogicView::sigCurrentTabChanged, this,
            &ProcessEditWidget::onLogicWidgetTabChanged);
    connect(logicView, &LogicView::sigUpdateProcessWidgetWidth, this,
            &ProcessEditWidget::onSaveProcessTreeWidthSlot);
    // Emitted on the reporting thread, from behind the gate: this widget is there then.
    connect(logicView, &LogicView::sigProcessPrograss, m->progress, &LatestProgress::put,
            Qt::DirectConnection);
    connect(m->progress, &LatestProgress::changed, this, &ProcessEditWidget::sigProcessPrograss);
    connect(logicView, &LogicView::sigModified, LogicMaster::instance(), &LogicMaster::sigModify);
    connect(logicView, &LogicView::sigUdsRuntimeStaleRequired, this, [this] {
        if (m->onRuntimeStale)
            m->onRuntimeStale(m->appName);
    });
    connect(m->ui.widget_para, &wgtLocalVariable::sigUpdateVarTreeWidth, this,
            &ProcessEditWidget::onSaveVarTreeWidthSlot);
    connect(m->ui.splitter, &QSplitter::splitterMoved, this, &ProcessEditWidget::onSplitterMoved);
    connect(m->toolBar, &ProcessEditToolBar::defaultFunctionClicked, this,
            &ProcessEditWidget::onToolWidgetButtonClickedSlot);
    connect(m->commonControl, &wgtCommonControl::updateTreeProcessData, this,
            [this](const QString& blockUuid) {
                m->generalSetting->refreshPreview(blockUuid);
                tellBlockChanged(blockUuid);
            });
    connect(m->generalSetting, &wgtGeneralSetting::updateTreeProcessData, this,
            &ProcessEditWidget::tellBlockChanged);
}

void ProcessEditWidget::connectLogicMaster()
{
    LogicMaster* master = LogicMaster::instance();
    connect(master, &LogicMaster::sigModify, this, &ProcessEditWidget::sigAuthoringModified);
    connect(master, &LogicMaster::sigRename, this,
            [this](const QString& oldName, const QString& newName) {
                if (m->appName == oldName)
                    nameParts(newName);
            });
    connect(master, &LogicMaster::waitCAppletStop, this, [this](const QString& appName) {
        if (appName == m->appName)
            m->loading->showLoading(tr("正在等待小程序停止"), tr("提示"));
    });
    connect(master, &LogicMaster::sigUpdateTemplateWidget, this,
            [this] { m->ui.template_treeView->reload(); });
    connect(master, &LogicMaster::sigUpdateQuickStep, m->ui.treeWidget,
            &StepTree::onUpdateQuickStep, Qt::DirectConnection);

    // These come on the runner's thread: only the gate and the log feed, which outlive this widget,
    // may be touched.
    const auto gate = m->gate;
    connect(
        master, &LogicMaster::NotifyRunStateSig, this,
        [gate](const QString& appName, const QString& sequenceId, const QString& blockUuid,
               double progress,
               int result) { gate->report(appName, sequenceId, blockUuid, progress, result); },
        Qt::DirectConnection);
    connect(
        master, &LogicMaster::NotifyGotoSequenceSig, this,
        [gate](const QString& appName, const QString& sequenceId, bool isEnd) {
            gate->sequenceChange(appName, sequenceId, isEnd, QString());
        },
        Qt::DirectConnection);
    connect(
        master, &LogicMaster::NotifyGotoTemplateSequenceSig, this,
        [gate](const QString& appName, const QString& templateId, const QString& sequenceId,
               bool isEnd) { gate->sequenceChange(appName, sequenceId, isEnd, templateId); },
        Qt::DirectConnection);
    const auto logFeed = m->logFeed;
    connect(
        ProcessEditNotifyTool::instance(), &ProcessEditNotifyTool::cAppletLogSignal, this,
        [logFeed](const QString& appName, int, const QString& message) {
            logFeed->put(appName, message);
        },
        Qt::DirectConnection);
}

void ProcessEditWidget::connectBuild()
{
    const BuildController* build = m->build;
    connect(LogicMaster::instance(), &LogicMaster::NotifyCompileResultSig, this,
            &ProcessEditWidget::onNotifyCompileResult, Qt::QueuedConnection);
    connect(LogicMaster::instance(), &LogicMaster::NotifyRunResultSig, this,
            &ProcessEditWidget::onNotifyRunResult, Qt::QueuedConnection);
    connect(build, &BuildController::compileStarted, this, &ProcessEditWidget::sigCompileStart);
    connect(build, &BuildController::compileFinished, this, &ProcessEditWidget::sigCompileFinish);
    connect(build, &BuildController::runStarted, this, &ProcessEditWidget::sigRunStart);
    connect(build, &BuildController::runFinished, this, &ProcessEditWidget::sigRunFinish);
    connect(build, &BuildController::output, this, &ProcessEditWidget::notifyRunResultSig);
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
        getWindowManager()->showNotice(IWindowManager::NoticeWarning, tr("该功能暂未开放"));
        break;
    default:
        break;
    }
}

void ProcessEditWidget::onNotifyCompileResult(CAppCompileResult result, QString outputInfo)
{
    m->build->onCompileResult(result, outputInfo);
}

void ProcessEditWidget::onNotifyRunResult(QString appName, bool isSuccessed, QString outputInfo)
{
    m->build->onRunResult(appName, isSuccessed, outputInfo);
}

void ProcessEditWidget::onNotifyStateResult(QString cappname, QString seqUuid, QString blockuuid,
                                            double iProgress, int result)
{
    m->gate->report(cappname, seqUuid, blockuuid, iProgress, result);
}

void ProcessEditWidget::onGotoSequence(QString cappname, QString gotoSeqUuid, bool isEnd)
{
    m->gate->sequenceChange(cappname, gotoSeqUuid, isEnd, QString());
}

void ProcessEditWidget::onGotoTemplateSequence(QString cappname, QString templateid,
                                               QString gotoSeqUuid, bool isEnd)
{
    m->gate->sequenceChange(cappname, gotoSeqUuid, isEnd, templateid);
}

void ProcessEditWidget::onAppletLog(const QString& appName, const QString& message)
{
    const bool isOurs = appName == m->appName || appName == m->build->runningApp();
    if (!message.isEmpty() && isOurs && !LogicMaster::instance()->isPanelBound(appName))
        emit notifyRunResultSig(true, message);
}

void ProcessEditWidget::processItemClickedSlot(int baseType, QString blockuuid)
{
    m->generalSetting->flushPending();
    m->commonControl->flushPending();
    if (baseType == NoBlock) {
        m->generalSetting->showNothingSelected();
        m->commonControl->showNothingSelected();
        return;
    }
    const auto block = processedit::getProcess(m->appName, blockuuid);
    m->generalSetting->loadGeneral(block);
    m->commonControl->showBlock(block);
}

void ProcessEditWidget::currentSequenceChangedSlot(QString sequenceId)
{
    m->commonControl->flushPending();
    m->commonControl->showNothingSelected();
    m->generalSetting->flushPending();
    m->generalSetting->showNothingSelected();
    m->commonControl->setSequenceId(sequenceId);
    m->generalSetting->setSequenceId(sequenceId);
    m->ui.center_wgt->showSequence(sequenceId);
    m->ui.widget_para->showSequence(sequenceId);
}

void ProcessEditWidget::onLogicWidgetTabChanged(int index)
{
    const bool edit = index == 0;
    m->ui.treeWidget->setEnabled(edit);
    m->ui.attribute_tab->setTabEnabled(1, edit);
    m->commonControl->setEnabled(edit);
    m->generalSetting->setEnabled(edit);
    if (!edit && !m->inRunTab) {
        m->inRunTab = true;
        m->splitterSizes = m->ui.splitter->sizes();
        m->ui.splitter->setSizes(runTabSizes);
        m->ui.attribute_tab->setCurrentIndex(0);
        m->ui.splitter->handle(1)->setEnabled(false);
    } else if (edit && m->inRunTab) {
        m->ui.splitter->setSizes(m->splitterSizes);
        m->ui.splitter->handle(1)->setEnabled(true);
        m->inRunTab = false;
    }
    m->ui.splitter->refresh();
    emit sigPrcoessMode(index);
}

void ProcessEditWidget::tellBlockChanged(const QString& blockUuid)
{
    m->ui.center_wgt->refreshRow(blockUuid);
    emit LogicMaster::instance()->sigModify();
}

bool ProcessEditWidget::eventFilter(QObject* watched, QEvent* event)
{
    // A handle that was let go after a move.
    if (event->type() == QEvent::MouseButtonRelease && !m->inRunTab &&
        qobject_cast<QSplitterHandle*>(watched) &&
        m->ui.splitter->sizes() != m->settings.splitterSizes())
        saveSplitterSizes();
    return QWidget::eventFilter(watched, event);
}

void ProcessEditWidget::onSplitterMoved(int, int)
{
    if (!m->inRunTab)
        m->splitterSizes = m->ui.splitter->sizes();
}

void ProcessEditWidget::loadSplitterSizes()
{
    m->settings.open(LogicMaster::instance()->settingPath(m->appName));
    const QList<int> sizes = m->settings.splitterSizes();
    if (sizes.size() >= m->ui.splitter->count()) {
        m->splitterSizes = sizes;
        m->ui.splitter->setSizes(sizes);
    }
    m->ui.widget_para->setColumnWidths(m->settings.variableWidths());
    m->ui.center_wgt->setEditColumnWidths(m->settings.editTreeWidths());
    updateProcessRunWidth();
}

void ProcessEditWidget::saveSplitterSizes()
{
    m->splitterSizes = m->ui.splitter->sizes();
    m->settings.setSplitterSizes(m->splitterSizes);
}

void ProcessEditWidget::updateProcessRunWidth()
{
    m->ui.center_wgt->setRunColumnWidths(m->settings.runTreeWidths());
}

void ProcessEditWidget::onSaveVarTreeWidthSlot(QStringList widthList)
{
    m->settings.setVariableWidths(widthList);
}

void ProcessEditWidget::onSaveProcessTreeWidthSlot(QStringList widthList, bool isRun)
{
    m->settings.setTreeWidths(widthList, isRun);
}
