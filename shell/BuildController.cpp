#include "shell/BuildController.h"

#include "shell/LogicMaster.h"
#include "shell/applet_folders.h"
#include "shell/notify_callbacks.h"
#include "shell/output_text.h"

#include "model/applet_name.h"
#include "model/services/capplet.h"
#include "model/services/diagnosis.h"
#include "model/services/host.h"
#include "model/services/process_edit.h"
#include "model/services/processedit.h"

#include <QCoreApplication>

namespace processedit = sdk_ui_interface::processedit;

namespace {

constexpr int KindRun = 0;

/// The texts are the editor's, whichever of its parts says them.
struct EditorTexts
{
    Q_DECLARE_TR_FUNCTIONS(ProcessEditWidget)
};

} // namespace

BuildController::BuildController(const QString& businessName, BuildView& view, QObject* parent)
    : QObject(parent), m_view(view), m_businessName(businessName)
{
}

void BuildController::runCurrent()
{
    build(Target::Current);
}

void BuildController::runMain()
{
    build(Target::Main);
}

void BuildController::compileMain()
{
    // Cleared by the next compile that succeeds: a press that is refused or skipped leaves it.
    m_compileOnly = true;
    build(Target::CompileOnly);
}

void BuildController::build(Target target)
{
    if (refuseBoundPanel())
        return;
    const bool current = target == Target::Current;
    const bool compileOnly = target == Target::CompileOnly;
    m_editedPlace = m_view.place();
    const QString sequenceId = current ? m_editedPlace.sequenceId : mainSequence();
    if (!current && !sequenceId.isEmpty())
        m_view.showSequence(sequenceId);
    m_runPlace = m_view.place();
    applyRebuildRule(target, sequenceId);
    m_lastBuildKind = KindRun;
    m_view.flushPanels();
    if (m_prepare)
        m_prepare();
    if (m_check &&
        !m_check(sequenceId, m_appName, LogicMaster::instance()->jsonPath(m_appName), false)
             .isEmpty()) {
        tellFinished(false);
        return;
    }

    QString text;
    bool skipped = false;
    if (!LogicMaster::instance()->compile(m_appName, sequenceId, text, false, skipped, current,
                                          !compileOnly)) {
        tellFinished(false);
        m_view.warn(EditorTexts::tr("警告"), text);
        return;
    }
    if (!skipped) {
        m_compilingApp = m_appName;
        m_view.showEditTab();
        m_view.setPanelsEnabled(false);
        emit compileStarted();
    } else if (compileOnly) {
        tellFinished(true);
    } else {
        runSkipped(target, sequenceId, text);
    }
    emit output(true, text);
    if (!compileOnly || !skipped)
        m_view.setToolBarState(ProcessEditToolBar::State::Started);
    if (!compileOnly)
        emit runStarted();
}

bool BuildController::refuseBoundPanel() const
{
    if (!LogicMaster::instance()->isPanelBound(m_appName))
        return false;
    getWindowManager()->showNotice(
        IWindowManager::NoticeWarning,
        EditorTexts::tr(
            "当前流程已绑定到面板且处于运行模式，请在面板退出运行模式后重新运行该流程。"));
    return true;
}

QString BuildController::mainSequence() const
{
    for (const SequenceInfo& info : processedit::getAllSequenceByAppName(m_appName)) {
        if (info.isMain)
            return QString::fromStdString(info.id);
    }
    return QString();
}

void BuildController::applyRebuildRule(Target target, const QString& sequenceId)
{
    if (target != Target::CompileOnly && m_businessName == QLatin1String("Diagnosis"))
        return;
    if (!applet_folders::moduleExists(m_appName) || m_lastBuildKind != KindRun ||
        m_lastBuiltSequenceId != sequenceId)
        process_edit::appNeedUpdate(appletNameBytes(m_appName));
}

void BuildController::runSkipped(Target target, const QString& sequenceId, QString& text)
{
    tellFinished(true);
    setRunningApp(m_appName);
    text = EditorTexts::tr("内容无更新, 跳过编译即将运行。");
    if (target == Target::Current)
        m_view.setRunMode(true, m_appName, sequenceId);
    ResetCycleTaskEnable();
    const bool started = processedit::runCApplet(m_appName, sequenceId, notify_callbacks::runEvent);
    if (!started) {
        text += EditorTexts::tr("运行失败");
        if (target == Target::Current)
            m_view.setRunMode(false, m_appName, sequenceId);
        setRunningApp(QString());
    }
    // The main sequence's run shows after its start, and also after a failed one.
    if (target == Target::Main)
        m_view.setRunMode(true, m_appName, sequenceId);
    m_view.updateRunTreeWidth();
}

void BuildController::onCompileResult(CAppCompileResult result, QString outputInfo)
{
    const bool success = result.result == CompileSucceeded;
    emit compileFinished(success);
    if (result.appName != m_appName && result.appName != m_compilingApp)
        return;
    if (!success || !result.toVciAfterCompile)
        m_view.setPanelsEnabled(true);
    if (!success) {
        outputInfo += output_text::rule();
        m_view.setToolBarState(ProcessEditToolBar::State::Idle);
        m_compilingApp.clear();
        emit runFinished();
    } else {
        m_lastBuiltSequenceId = result.sequenceId;
        m_view.saveAll();
        if (m_compileOnly) {
            outputInfo += output_text::rule();
            m_view.setToolBarState(ProcessEditToolBar::State::Idle);
            m_compilingApp.clear();
            emit runFinished();
            m_compileOnly = false;
        } else if (result.runAfterCompile) {
            startAfterCompile(result, outputInfo);
        }
    }
    emit output(success, outputInfo);
    tellFinished(success);
}

void BuildController::startAfterCompile(const CAppCompileResult& result, QString& text)
{
    m_compilingApp.clear();
    text += EditorTexts::tr("即将开始运行\n");
    setRunningApp(result.appName);
    m_view.setRunMode(true, result.appName, result.sequenceId);
    m_view.updateRunTreeWidth();
    ResetCycleTaskEnable();
    if (processedit::runCApplet(result.appName, result.sequenceId, notify_callbacks::runEvent)) {
        m_view.setToolBarState(ProcessEditToolBar::State::Running);
    } else {
        text += EditorTexts::tr("运行失败\n");
        m_view.setToolBarState(ProcessEditToolBar::State::Idle);
    }
}

void BuildController::stop()
{
    const QString appName = m_compilingApp.isEmpty() ? m_runningApp : m_compilingApp;
    const auto state = processedit::getCAppletRunState(appName);
    if (!state.first.empty() && state.second == AppletRunning) {
        int status = -1;
        sdk_ui_interface::capplet::getStatusRunnerFunction(
            QString::fromLocal8Bit(state.first.c_str()), status);
        if (status == 0 &&
            !m_view.ask(EditorTexts::tr("警告"),
                        EditorTexts::tr("当前流程正在运行，若存在死循环，强制停止流程可能会导致"
                                        "未知的风险（有可能会卡死），是否继续？")))
            return;
    }
    if (!appName.isEmpty())
        LogicMaster::instance()->stopApplet(appName, false, false);
}

void BuildController::onRunResult(QString appName, bool success, QString outputInfo)
{
    if (appName != m_appName && appName != m_runningApp)
        return;
    m_view.hideWaiting();
    setRunningApp(QString());
    m_view.finishRunRow(success);
    m_view.setRunMode(false, appName, QString());
    goBack();
    m_view.setToolBarState(ProcessEditToolBar::State::Idle);
    emit output(success, outputInfo);
    emit runFinished();
}

/// To where its user was before the run, unless he has chosen something else since.
void BuildController::goBack()
{
    if (!(m_editedPlace == m_runPlace) && m_view.place() == m_runPlace)
        m_view.goTo(m_editedPlace);
    m_runPlace = m_editedPlace;
}

void BuildController::setRunningApp(const QString& appName)
{
    m_runningApp = appName;
    m_view.setReportingApp(appName);
}

void BuildController::tellFinished(bool success) const
{
    if (m_finished)
        m_finished(success);
}

#include "moc_BuildController.cpp"
