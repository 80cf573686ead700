#include "shell/bridge/LogicMaster.h"

#include "edits/DocumentEdits.h"
#include "model/applet_name.h"
#include "model/services/applet_runtime.h"
#include "shell/bridge/ProcessEditNotifyTool.h"
#include "shell/bridge/VciTransThread.h"
#include "shell/bridge/notify_callbacks.h"
#include "shell/bridge/output_text.h"

#include "model/services/capplet.h"
#include "model/services/process_edit.h"
#include "model/services/processedit.h"

#include <QDebug>
#include <QMutexLocker>
#include <QTimer>

namespace capplet = sdk_ui_interface::capplet;
namespace processedit = sdk_ui_interface::processedit;

namespace {

constexpr int AfterRunDelay = 100; // ms; the runner's thread has left its callback by then
constexpr int ConversionCancelled = -2;

} // namespace

LogicMaster* LogicMaster::instance()
{
    static LogicMaster master;
    return &master;
}

LogicMaster::LogicMaster()
{
    qRegisterMetaType<CAppCompileResult>("CAppCompileResult");
    qRegisterMetaType<QVector<QPair<QString, QString>>>("QVector<QPair<QString,QString>>");
    qRegisterMetaType<QVector<QPair<QString, QString>>>("QVector<QPair<QString,QString> >");

    connect(&DocumentEdits::instance(), &DocumentEdits::modified, this, &LogicMaster::sigModify);
    const ProcessEditNotifyTool* tool = ProcessEditNotifyTool::instance();
    connect(tool, &ProcessEditNotifyTool::compileFinishSignal, this, &LogicMaster::onCompileFinish,
            Qt::QueuedConnection);
    connect(tool, &ProcessEditNotifyTool::runFinishSignal, this, &LogicMaster::onRunFinish,
            Qt::QueuedConnection);
    connect(tool, &ProcessEditNotifyTool::runStateSignal, this, &LogicMaster::onRunState,
            Qt::DirectConnection);
    connect(tool, &ProcessEditNotifyTool::gotoSequenceSignal, this, &LogicMaster::onGotoSequence,
            Qt::DirectConnection);
    connect(tool, &ProcessEditNotifyTool::gotoTemplateSequenceSignal, this,
            &LogicMaster::onGotoTemplateSequence, Qt::DirectConnection);
    connect(tool, &ProcessEditNotifyTool::systemVarChange, this, &LogicMaster::refreshUsers,
            Qt::QueuedConnection);

    CallbackFuncsImp::m_cb = notify_callbacks::blockState;
    CallbackFuncsImp::m_seqCb = notify_callbacks::sequenceEntry;
    CallbackFuncsImp::m_tempSeqCb = notify_callbacks::templateSequenceEntry;
}

LogicMaster::~LogicMaster() = default;

bool LogicMaster::compile(const QString& appName, const QString& sequenceId, QString& message,
                          bool forVci, bool& skipped, bool currentSequence, bool runAfter)
{
    if (processedit::getAllSequenceByAppName(appName).empty()) {
        message = tr("无序列信息，请添加序列");
        return false;
    }
    if (sequenceId.isEmpty()) {
        message = currentSequence ? tr("未选择序列，请选择序列后再次运行")
                                  : tr("未选择主序列，请选择主序列后再次运行");
        return false;
    }
    const auto state = processedit::getCAppletRunState(appName);
    bool started = false;
    {
        // Held over the start: a fast compiler may be done before the entries stand.
        QMutexLocker lock(&m_compileMutex);
        started = processedit::compileCApplet(appName, sequenceId, forVci, currentSequence,
                                              notify_callbacks::compileFinished, skipped);
        if (started && !skipped) {
            m_pendingCompiles[appName] = {sequenceId, !forVci && runAfter};
            m_pendingVciCompiles[appName] = {sequenceId, forVci};
        }
    }
    if (!started) {
        const bool idle = state.first.empty() || state.second == AppletStopped;
        message = idle ? tr("编译未成功开始, 请检查流程内容。")
                       : tr("流程正在运行中, 请等待流程结束后再次运行。");
        return false;
    }
    if (!skipped)
        message = tr("即将开始编译");
    else if (forVci || !runAfter)
        message = tr("内容无更新, 跳过编译。");
    return true;
}

LogicMaster::PendingCompile LogicMaster::takePendingCompile(const QString& appName)
{
    QMutexLocker lock(&m_compileMutex);
    return m_pendingCompiles.take(appName);
}

LogicMaster::PendingCompile LogicMaster::takePendingVciCompile(const QString& appName)
{
    QMutexLocker lock(&m_compileMutex);
    return m_pendingVciCompiles.take(appName);
}

void LogicMaster::onCompileFinish(CAppCompileResult result)
{
    const SequenceInfo sequence = processedit::getSequence(result.appName, result.sequenceId);
    QString text = result.message + QLatin1Char('\n') + tr("编译用时") +
                   QString::number(result.elapsed / 1000.0, 'g', 6) + tr("秒\n") +
                   QString::fromStdString(sequence.name);
    if (result.result != CompileSucceeded) {
        text += tr("编译失败\n");
        finishPendingRemoval(result.appName);
    } else {
        text += tr("编译成功\n");
        process_edit::setCompileSucessState(appletNameBytes(result.appName));
    }
    emit NotifyCompileResultSig(result, text);
}

void LogicMaster::stopApplet(const QString& appName, bool, bool removeAfterStop)
{
    VciTransThread* thread = m_vciThreads.value(appName);
    if (thread && thread->isRunning()) {
        thread->cancel();
        addVciThread(appName);
        emit vciTransFinish(ConversionCancelled, appName);
        return;
    }
    if (removeAfterStop) {
        m_pendingRemoval.append(appName);
        if (processedit::getCAppletRunState(appName).second == AppletRunning)
            emit waitCAppletStop(appName);
    }
    processedit::stopCApplet(appName, false);
}

void LogicMaster::onRunFinish(QString appName, QString, int result)
{
    QTimer::singleShot(AfterRunDelay, this,
                       [this, appName, result] { finishRun(appName, result); });
}

void LogicMaster::finishRun(const QString& appName, int event)
{
    capplet::removeRunnerFunction(appName);
    capplet::unloadCAppletMp(appName);
    if (event != processedit::RunCrashed)
        finishPendingRemoval(appName);
    QString text = appName;
    if (event == processedit::RunFinished)
        text += tr(" 运行结束\n") + output_text::rule();
    else if (event == processedit::RunStopped)
        text += tr(" 运行中止\n") + output_text::rule();
    else
        text += tr(" 运行崩溃, 即将停止运行\n");
    emit NotifyRunResultSig(appName, event != processedit::RunCrashed, text);
}

void LogicMaster::onRunState(QString cappname, QString seqUuid, QString blockuuid, double iProgress,
                             int result)
{
    emit NotifyRunStateSig(cappname, seqUuid, blockuuid, iProgress, result);
}

void LogicMaster::onGotoSequence(QString cappname, QString gotoSeqUuid, bool isEnd)
{
    emit NotifyGotoSequenceSig(cappname, gotoSeqUuid, isEnd);
}

void LogicMaster::onGotoTemplateSequence(QString cappname, QString templateid, QString gotoSeqUuid,
                                         bool isEnd)
{
    emit NotifyGotoTemplateSequenceSig(cappname, templateid, gotoSeqUuid, isEnd);
}

void LogicMaster::getVariableSlot(int type)
{
    if (type < 1 || type > 4)
        qDebug() << "Unknown operation type!";
}

#include "moc_LogicMaster.cpp"
