#include "tests/standalone/runtime_harness.h"

#include "tests/standalone/compiling.h"

#include "model/services/applet_runtime.h"
#include "model/services/process_edit.h"
#include "model/services/processedit.h"
#include "standalone/host/Host.h"
#include "standalone/model_service/stores/AppletStore.h"
#include "standalone/runtime/runtime.h"

#include <QMap>
#include <QSemaphore>
#include <QTest>

#include <algorithm>
#include <mutex>

namespace {

struct Recorded
{
    QStringList reports;
    QStringList log;
    QList<int> events;
};

std::mutex mutex; // the standard one: a thread sanitizer knows it
QMap<QString, Recorded> recorded;

void onBlock(const char* appName, const char*, const char* blockId, double progress, int result)
{
    const std::lock_guard<std::mutex> lock(mutex);
    QString line = QString::fromUtf8(blockId) + u':' + QString::number(progress);
    if (result < 0)
        line += u'!' + QString::number(result);
    recorded[QString::fromLocal8Bit(appName)].reports << line;
}

void onSequence(const char* appName, const char* id, bool isEnd)
{
    const std::lock_guard<std::mutex> lock(mutex);
    recorded[QString::fromLocal8Bit(appName)].reports
        << (isEnd ? u'<' : u'>') + QString::fromUtf8(id);
}

void onTemplateSequence(const char* appName, const char* templateId, const char* id, bool isEnd)
{
    const std::lock_guard<std::mutex> lock(mutex);
    recorded[QString::fromLocal8Bit(appName)].reports
        << (isEnd ? u'<' : u'>') + QString::fromUtf8(templateId) + u'/' + QString::fromUtf8(id);
}

void onLog(const char* appName, DrelLogLevel level, const char* text)
{
    const std::lock_guard<std::mutex> lock(mutex);
    recorded[QString::fromLocal8Bit(appName)].log
        << QString::number(level) + u' ' + QString::fromUtf8(text);
}

void onRunEvent(void* info, int event)
{
    const auto* record = static_cast<sdk_ui_interface::processedit::RunInfo*>(info);
    const std::lock_guard<std::mutex> lock(mutex);
    recorded[QString::fromLocal8Bit(record->appName.c_str())].events << event;
}

} // namespace

RuntimeHarness::RuntimeHarness()
{
    standalone::Host::instance().setProjectPath(m_folder.path());
    CallbackFuncsImp::m_cb = onBlock;
    CallbackFuncsImp::m_seqCb = onSequence;
    CallbackFuncsImp::m_tempSeqCb = onTemplateSequence;
    recorded.clear();
}

RuntimeHarness::~RuntimeHarness()
{
    standalone::shutdownRuntime();
    CallbackFuncsImp::m_cb = nullptr;
    CallbackFuncsImp::m_seqCb = nullptr;
    CallbackFuncsImp::m_tempSeqCb = nullptr;
}

QString RuntimeHarness::build(const QString& appName, const codegen::AppletSource& source)
{
    const auto answer = compiling::compile(standalone::CompileService::instance(),
                                           compiling::request(source, appName));
    if (answer.start == standalone::CompileService::Refused)
        return QStringLiteral("not started");
    const bool isGood =
        answer.start == standalone::CompileService::Skipped || answer.result == CompileSucceeded;
    return isGood ? QString() : answer.message;
}

void RuntimeHarness::putIntoModel(const QString& appName, const codegen::AppletSource& source)
{
    const std::string name = appName.toLocal8Bit().toStdString();
    const auto define = [&name](processVariableType scope, const std::string& owner,
                                const std::vector<processVariable>& variables) {
        for (const processVariable& wanted : variables) {
            processVariable made =
                process_edit::getVariable(process_edit::addVariable(name, scope, owner));
            made.name = wanted.name;
            made.type = wanted.type;
            made.value = wanted.value;
            process_edit::updateVariable(name, made, 0);
        }
    };
    define(GlobalVariable, {}, source.globalVariables);
    define(ProcessVariable, name, source.applet.variables);
    for (const codegen::SequenceSource& sequence : source.applet.sequences) {
        standalone::SequenceContent content;
        content.head = sequence.info;
        content.flows = sequence.flows;
        standalone::appletStore().findOrMake(appName).addSequence(std::move(content));
        define(SequenceVariable, sequence.info.id, sequence.variables);
    }
}

QString RuntimeHarness::buildFromModel(const QString& appName, const QString& sequenceId)
{
    QSemaphore finished;
    QString failure;
    bool isSkipped = false;
    const auto onFinished = [&](compileResult result, quint64, const char*, const char* message) {
        if (result != CompileSucceeded)
            failure = QString::fromUtf8(message);
        finished.release();
    };
    if (!sdk_ui_interface::processedit::compileCApplet(appName, sequenceId, false, false,
                                                       onFinished, isSkipped))
        return QStringLiteral("refused");
    if (isSkipped)
        return QStringLiteral("skipped");
    finished.acquire();
    if (failure.isEmpty())
        process_edit::setCompileSucessState(appName.toLocal8Bit().toStdString());
    return failure;
}

bool RuntimeHarness::start(const QString& appName, const QString& sequenceId)
{
    capplet_sdk::registerLogCallBack(appName.toLocal8Bit().constData(), onLog);
    return sdk_ui_interface::processedit::runCApplet(appName, sequenceId, onRunEvent);
}

bool RuntimeHarness::launch(const QString& appName, const codegen::AppletSource& source)
{
    {
        const std::lock_guard<std::mutex> lock(mutex);
        recorded.remove(appName);
    }
    const QString failure = build(appName, source);
    if (!failure.isEmpty())
        qWarning("%s", qPrintable(failure));
    return failure.isEmpty() && start(appName);
}

int RuntimeHarness::end(const QString& appName)
{
    const auto isOver = [&appName] { return events(appName).size() == 1; };
    return QTest::qWaitFor(isOver, run_events::Patience) ? events(appName).first() : 0;
}

int RuntimeHarness::stopped(const QString& appName)
{
    return sdk_ui_interface::processedit::stopCApplet(appName, false) ? end(appName) : 0;
}

int RuntimeHarness::run(const QString& appName, const codegen::AppletSource& source)
{
    return launch(appName, source) ? end(appName) : 0;
}

bool RuntimeHarness::hasSaid(const QString& appName, const QString& line)
{
    return QTest::qWaitFor(
        [&] {
            const QStringList lines = logLines(appName);
            return line.isEmpty() ? !lines.isEmpty() : lines.contains(line);
        },
        run_events::Patience);
}

QStringList RuntimeHarness::reports(const QString& appName)
{
    const std::lock_guard<std::mutex> lock(mutex);
    return recorded[appName].reports;
}

QStringList RuntimeHarness::lastOfEach(QStringList reports)
{
    std::reverse(reports.begin(), reports.end());
    reports.removeDuplicates();
    std::reverse(reports.begin(), reports.end());
    return reports;
}

QStringList RuntimeHarness::logLines(const QString& appName)
{
    const std::lock_guard<std::mutex> lock(mutex);
    return recorded[appName].log;
}

QString RuntimeHarness::log(const QString& appName)
{
    return logLines(appName).join(u'|');
}

QList<int> RuntimeHarness::events(const QString& appName)
{
    const std::lock_guard<std::mutex> lock(mutex);
    return recorded[appName].events;
}
