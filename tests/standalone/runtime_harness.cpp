#include "tests/standalone/runtime_harness.h"

#include "model/services/applet_runtime.h"
#include "model/services/processedit.h"
#include "standalone/compiler/CompileService.h"
#include "standalone/host/Host.h"
#include "standalone/runtime/applet_paths.h"
#include "standalone/runtime/runtime.h"

#include <QMap>
#include <QSemaphore>

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
QStringList runInfoTexts;
int count = 0;

void onBlock(const char* appName, const char*, const char* blockId, double progress, int result)
{
    const std::lock_guard<std::mutex> lock(mutex);
    ++count;
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
    runInfoTexts = QStringList{QString::fromLocal8Bit(record->appName.c_str()),
                               QString::fromStdString(record->sequenceId)};
    recorded[runInfoTexts.first()].events << event;
}

} // namespace

RuntimeHarness::RuntimeHarness()
{
    standalone::Host::instance().setProjectPath(m_folder.path());
    CallbackFuncsImp::m_cb = onBlock;
    CallbackFuncsImp::m_seqCb = onSequence;
    CallbackFuncsImp::m_tempSeqCb = onTemplateSequence;
    recorded.clear();
    count = 0;
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
    QSemaphore finished;
    QString failure;
    standalone::CompileService::Request request;
    request.appName = appName;
    request.targetSequenceId = QString::fromStdString(source.targetSequenceId);
    request.codeFolder = standalone::appletCodeFolder(appName);
    request.modulePath = standalone::appletModulePath(appName);
    request.code = codegen::generate(source);
    request.onFinished = [&](compileResult result, quint64, const char*, const char* message) {
        if (result != CompileSucceeded)
            failure = QString::fromUtf8(message);
        finished.release();
    };
    if (standalone::CompileService::instance().start(std::move(request)) !=
        standalone::CompileService::Started)
        return QStringLiteral("not started");
    finished.acquire();
    return failure;
}

bool RuntimeHarness::start(const QString& appName, const QString& sequenceId)
{
    capplet_sdk::registerLogCallBack(appName.toLocal8Bit().constData(), onLog);
    return sdk_ui_interface::processedit::runCApplet(appName, sequenceId, onRunEvent);
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

QList<int> RuntimeHarness::events(const QString& appName)
{
    const std::lock_guard<std::mutex> lock(mutex);
    return recorded[appName].events;
}

QStringList RuntimeHarness::lastRunInfo()
{
    const std::lock_guard<std::mutex> lock(mutex);
    return runInfoTexts;
}

int RuntimeHarness::reportCount()
{
    const std::lock_guard<std::mutex> lock(mutex);
    return count;
}
