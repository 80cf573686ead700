#include "shell/bridge/notify_callbacks.h"

#include "model/services/processedit.h"
#include "shell/bridge/LogicMaster.h"
#include "shell/bridge/ProcessEditNotifyTool.h"

#include <cstring>

namespace notify_callbacks {

namespace {

// Identifiers of the run layer pass the translator, which leaves them alone where it knows none.
QString runText(const char* text)
{
    return QObject::tr(text);
}

constexpr int RunEnded = 1;
constexpr int RunCrashed = 3;

} // namespace

QString recodeCompilerMessage(const char* message)
{
    static const char splitWord[] = "generated";
    if (!message)
        return QString();
    const char* word = std::strstr(message, splitWord);
    if (!word)
        return QString::fromUtf8(message);
    const auto headLength = static_cast<int>(word - message);
    return QString::fromUtf8(message, headLength) + QLatin1String(splitWord) +
           QString::fromUtf8(word + sizeof(splitWord) - 1);
}

void compileFinished(compileResult result, quint64 elapsed, const char* appName,
                     const char* message)
{
    CAppCompileResult finished;
    finished.appName = QString::fromLocal8Bit(appName);
    const auto run = LogicMaster::instance()->takePendingCompile(finished.appName);
    const auto vci = LogicMaster::instance()->takePendingVciCompile(finished.appName);
    finished.sequenceId = run.sequenceId;
    finished.runAfterCompile = run.flag;
    finished.toVciAfterCompile = vci.flag;
    finished.message = recodeCompilerMessage(message);
    finished.result = result;
    finished.elapsed = elapsed;
    emit ProcessEditNotifyTool::instance()->compileFinishSignal(finished);
}

void runEvent(void* runInfo, int event)
{
    if (!runInfo || event < RunEnded || event > RunCrashed)
        return;
    const auto* run = static_cast<const sdk_ui_interface::processedit::RunInfo*>(runInfo);
    emit ProcessEditNotifyTool::instance()->runFinishSignal(
        QString::fromLocal8Bit(run->appName.c_str()), QString::fromStdString(run->sequenceId),
        event);
}

void blockState(const char* appName, const char* sequenceId, const char* blockId, double progress,
                int result)
{
    emit ProcessEditNotifyTool::instance()->runStateSignal(
        QString::fromLocal8Bit(appName), runText(sequenceId), runText(blockId), progress, result);
}

void sequenceEntry(const char* appName, const char* sequenceId, bool isEnd)
{
    emit ProcessEditNotifyTool::instance()->gotoSequenceSignal(QString::fromLocal8Bit(appName),
                                                               runText(sequenceId), isEnd);
}

void templateSequenceEntry(const char* appName, const char* templateId, const char* sequenceId,
                           bool isEnd)
{
    emit ProcessEditNotifyTool::instance()->gotoTemplateSequenceSignal(
        QString::fromLocal8Bit(appName), runText(templateId), runText(sequenceId), isEnd);
}

void logText(const char* appName, DrelLogLevel level, const char* text)
{
    emit ProcessEditNotifyTool::instance()->cAppletLogSignal(QString::fromLocal8Bit(appName), level,
                                                             QString::fromUtf8(text));
}

} // namespace notify_callbacks
