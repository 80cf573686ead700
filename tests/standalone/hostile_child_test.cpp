// Children that are no runner: they say what none may, say more than anybody can take, or don't
// die. The editor's event loop goes on, its memory stays, and the log has one line about it.

#include "tests/standalone/runtime_harness.h"
#include "tests/support/child_processes.h"
#include "tests/support/resident_memory.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include "model/services/applet_runtime.h"
#include "model/services/processedit.h"
#include "protocol/protocol.h"
#include "standalone/runtime/RunBacklog.h"
#include "standalone/runtime/applet_paths.h"
#include "standalone/runtime/runtime.h"
#include "standalone/variables/SystemVariables.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTimer>
#include <QtTest>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <sys/ptrace.h>
#include <thread>
#include <unistd.h>
#include <vector>

using namespace run_events;
namespace service = sdk_ui_interface::processedit;

namespace {

// The child's side

using Record = std::function<std::size_t(unsigned char* out, uint32_t number)>;

const std::string someText(60, 'x'); // a name too

/// By its name, what a child writes to its report channel without end. Their numbers begin at 0.
const std::map<std::string, Record>& floods()
{
    using namespace protocol;
    using std::uint32_t;
    const auto named = [](Record other) -> Record {
        return [other](unsigned char* out, uint32_t number) {
            return number == 0 ? putText(out, 0, "id", 2) : other(out, number);
        };
    };
    const auto log = [](const std::string& line) -> Record {
        return [line](unsigned char* out, uint32_t) {
            return putLog(out, 1, line.data(), line.size());
        };
    };
    const auto request = [](RequestKind kind, uint32_t step) -> Record {
        return [kind, step](unsigned char* out, uint32_t number) {
            Texts texts(textCount(kind), someText);
            if (kind == WriteVariable)
                texts.back() += std::to_string(number);
            return putRequest(out, 1 + step * number, kind, texts);
        };
    };
    static const std::map<std::string, Record> all = {
        {"reports", named([](unsigned char* out, uint32_t number) {
             return putBlock(out, 0, 0, 1.0 / number, 0);
         })},
        {"sequences", named([](unsigned char* out, uint32_t number) {
             return number % 2 ? putSequence(out, 0, false) : putTemplateSequence(out, 0, 0, false);
         })},
        {"log", log(someText)},
        {"long log", log(std::string(MaxText, 'x'))},
        {"questions", request(AskYesNo, 1)},
        {"the same notice", request(ShowNotice, 0)},
        {"reads", request(ReadVariable, 1)},
        {"writes", request(WriteVariable, 1)},
        {"reads out of order", request(ReadVariable, 2)},
        {"identifiers",
         [](unsigned char* out, uint32_t number) {
             return putText(out, number, someText.data(), number % 2 ? 0 : someText.size());
         }},
        {"answers",
         [](unsigned char* out, uint32_t number) {
             return putAnswer(out, number, 0, someText.data(), someText.size());
         }},
        {"stopped unasked",
         [](unsigned char* out, uint32_t) { return putEnd(out, protocol::Stopped); }},
        {"writes answered", request(WriteVariable, 1)},
    };
    return all;
}

void writeAll(int file, const unsigned char* data, std::size_t size)
{
    while (size > 0) {
        const ssize_t written = ::write(file, data, size);
        if (written <= 0)
            ::_exit(1);
        data += written;
        size -= std::size_t(written);
    }
}

/// A child of the kind that its first argument names; the others are a runner's.
int playHostileChild(QCoreApplication& application)
{
    const QStringList arguments = application.arguments();
    if (arguments.size() != 7)
        return 2;
    const std::string kind = arguments[1].toStdString();
    const int reports = arguments[4].toInt();
    const int commands = arguments[5].toInt();
    if (kind == "sits") {
        // Takes no stop, and ends with the editor.
        const std::string line = "pid " + std::to_string(getpid()) + "\n";
        writeAll(STDOUT_FILENO, reinterpret_cast<const unsigned char*>(line.data()), line.size());
        char byte;
        while (::read(commands, &byte, 1) > 0) {
        }
        return 0;
    }
    // Each then waits for the answer to the last; the first command is the start.
    const bool takesAnswers = kind == "writes answered";
    const std::size_t most = takesAnswers ? 1 : 1 << 15;
    char answer[protocol::MaxRecord];
    if (takesAnswers && ::read(commands, answer, sizeof answer) <= 0)
        return 1;
    std::vector<unsigned char> bytes;
    if (kind == "output" || kind == "lines")
        bytes.assign(1 << 16, kind == "lines" ? '\n' : 'x');
    for (std::uint32_t number = 0;;) {
        if (bytes.empty() || floods().count(kind)) {
            bytes.clear();
            while (bytes.size() < most) {
                unsigned char record[protocol::MaxRecord];
                const std::size_t size = floods().at(kind)(record, number++);
                bytes.insert(bytes.end(), record, record + size);
            }
        }
        writeAll(floods().count(kind) ? reports : STDOUT_FILENO, bytes.data(), bytes.size());
        if (takesAnswers && ::read(commands, answer, sizeof answer) <= 0)
            return 1;
    }
}

/// Holds the process of its argument as a debugger does that has stopped itself: the process ends
/// for nobody else. Further arguments: the options of ptrace.
int playTracer(QCoreApplication& application)
{
    const QStringList arguments = application.arguments();
    if (ptrace(PTRACE_SEIZE, pid_t(arguments[1].toInt()), nullptr, arguments[2].toLong()) != 0)
        return 1;
    std::puts("holds");
    std::fflush(stdout);
    return application.exec();
}

const bool areParts = test_program::addPart("hostile_part", playHostileChild) &&
                      test_program::addPart("tracer", playTracer);

// The editor's side: a host that queues one event for everything it is told

QObject* receiver = nullptr; ///< on the GUI thread
std::atomic<int> told{0};
int arrived = 0;
QStringList errorLines;
QList<int> events;

void tell(const QString& text)
{
    ++told;
    QMetaObject::invokeMethod(
        receiver,
        [text] {
            uint sum = 0;
            for (uint turn = 0; turn < 600; ++turn) // as long as a row takes
                sum += qHash(text.leftRef(40), turn);
            arrived += sum != 0;
        },
        Qt::QueuedConnection);
}

void onBlock(const char*, const char*, const char* id, double progress, int)
{
    tell(QString::fromUtf8(id) + QString::number(progress));
}
void onSequence(const char*, const char* id, bool)
{
    tell(QString::fromUtf8(id));
}
void onTemplateSequence(const char*, const char* templateId, const char*, bool)
{
    tell(QString::fromUtf8(templateId));
}
void onLog(const char*, DrelLogLevel level, const char* text)
{
    const QString line = QString::fromUtf8(text);
    tell(line);
    if (level == LogError)
        QMetaObject::invokeMethod(
            receiver, [line] { errorLines << line; }, Qt::QueuedConnection);
}
void onRunEvent(void*, int event)
{
    QMetaObject::invokeMethod(
        receiver, [event] { events << event; }, Qt::QueuedConnection);
}

/// Hears of a variable's changes as one in a user interface does.
class ChangeListener : public IVariateListener
{
public:
    ChangeListener() { standalone::SystemVariables::instance().addListener(this); }
    ~ChangeListener() override { standalone::SystemVariables::instance().removeListener(this); }

private:
    void onVariateDirectChange(Operation, SystemVarDef variable) override { tell(variable.name); }
};

/// Both cores have other things to do.
class BusyCores
{
public:
    ~BusyCores()
    {
        m_isOver = true;
        for (std::thread& thread : m_threads)
            thread.join();
    }

private:
    std::atomic<bool> m_isOver{false};
    std::thread m_threads[2] = {std::thread([this] { spin(); }), std::thread([this] { spin(); })};
    void spin() const
    {
        while (!m_isOver) {
        }
    }
};

} // namespace

class HostileChildTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void floodIsBounded_data();
    void floodIsBounded();
    void childThatDoesNotDie_data();
    void childThatDoesNotDie();

private:
    bool start(const QString& kind);

    static constexpr qint64 MostGrowth = qint64(64) << 20;
    const QString m_appName = text("hostile");
    std::unique_ptr<RuntimeHarness> m_harness;
    std::unique_ptr<QObject> m_receiver;
};

void HostileChildTest::init()
{
    m_harness = std::make_unique<RuntimeHarness>();
    m_receiver = std::make_unique<QObject>();
    receiver = m_receiver.get();
    CallbackFuncsImp::m_cb = onBlock;
    CallbackFuncsImp::m_seqCb = onSequence;
    CallbackFuncsImp::m_tempSeqCb = onTemplateSequence;
    told = 0;
    arrived = 0;
    errorLines.clear();
    events.clear();
}

void HostileChildTest::cleanup()
{
    m_harness.reset();
    m_receiver.reset();
    standalone::setRunnerPath(QString());
}

bool HostileChildTest::start(const QString& kind)
{
    const QString program = m_harness->projectPath() + QStringLiteral("/runner");
    QFile script(program);
    QFile module(standalone::appletModulePath(m_appName));
    if (!script.open(QIODevice::WriteOnly) ||
        !QDir().mkpath(standalone::appletModuleFolder(m_appName)) ||
        !module.open(QIODevice::WriteOnly))
        return false;
    script.write(QStringLiteral("#!/bin/sh\nexec '%1' hostile_part '%2' \"$@\"\n")
                     .arg(QCoreApplication::applicationFilePath(), kind)
                     .toUtf8());
    script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    script.close();
    standalone::setRunnerPath(program);
    capplet_sdk::registerLogCallBack("hostile", onLog);
    return service::runCApplet(m_appName, QStringLiteral("main"), onRunEvent);
}

void HostileChildTest::floodIsBounded_data()
{
    QTest::addColumn<QString>("fault");
    // They may say all that, until they are stopped.
    for (const char* kind :
         {"reports", "sequences", "log", "long log", "output", "lines", "writes answered"})
        QTest::newRow(kind) << QString();
    const std::pair<const char*, const char*> faults[] = {
        {"questions", "前一个请求还没有应答"},
        {"the same notice", "前一个请求还没有应答"},
        {"reads", "应答没有被取走"},
        {"writes", "应答没有被取走"},
        {"reads out of order", "请求的编号不连续"},
        {"identifiers", "标识的数量超过上限"},
        {"answers", "未知的记录类型"},
        {"stopped unasked", "没有停止请求就报告了停止"}};
    for (const auto& [kind, fault] : faults)
        QTest::newRow(kind) << text(fault);
}

void HostileChildTest::floodIsBounded()
{
    QFETCH(QString, fault);
    const bool isSlow = qstrcmp(QTest::currentDataTag(), "writes answered") == 0;
    const int enough =
        isSlow ? 1000 : 4 * int(standalone::RunBacklog::Most / standalone::RunBacklog::CostOfEach);
    system_variate::SystemVarInfo variable;
    variable.name = QString::fromStdString(someText);
    variable.category = TextCategory;
    const auto result = standalone::SystemVariables::instance().define(variable);
    QCOMPARE(result, standalone::SystemVariables::Done);
    const ChangeListener listener;
    int turns = 0;
    qint64 most = 0;
    QTimer clock;
    connect(&clock, &QTimer::timeout, this, [&] {
        ++turns;
        most = std::max(most, test_support::residentBytes(getpid()));
    });
    clock.start(5);
    const qint64 before = test_support::residentBytes(getpid());
    const BusyCores busy;

    QVERIFY(start(QString::fromUtf8(QTest::currentDataTag())));
    if (fault.isEmpty()) {
        QTRY_VERIFY_WITH_TIMEOUT(arrived > enough && turns > 20, Patience);
        QVERIFY(events.isEmpty());
        QVERIFY(service::stopCApplet(m_appName, false));
    }
    QTRY_COMPARE_WITH_TIMEOUT(events, QList<int>{fault.isEmpty() ? Stopped : Crashed}, Patience);
    QTRY_COMPARE_WITH_TIMEOUT(arrived, told.load(), Patience); // nothing is lost on the way
    const int turnsAtEnd = turns;
    QTRY_VERIFY_WITH_TIMEOUT(turns > turnsAtEnd + 3, Patience);

    QVERIFY2(most - before < MostGrowth || !test_support::isFreedMemoryReused,
             qPrintable(QString::number((most - before) >> 20)));
    QCOMPARE(errorLines.size(), 1);
    const QString reason = fault.isEmpty() ? QStringLiteral("没有响应停止请求") : fault;
    QVERIFY2(errorLines.first().contains(reason) && !errorLines.first().contains(u'\n'),
             qPrintable(errorLines.first()));
    QVERIFY(!QApplication::activeModalWidget());
}

void HostileChildTest::childThatDoesNotDie_data()
{
    QTest::addColumn<int>("options");
    QTest::addColumn<bool>("isStopped"); // else the editor quits
    QTest::newRow("dead for its debugger only, stopped") << 0 << true;
    QTest::newRow("held before its end, quit") << int(PTRACE_O_TRACEEXIT) << false;
}

void HostileChildTest::childThatDoesNotDie()
{
    QFETCH(int, options);
    QFETCH(bool, isStopped);
    qint64 pid = 0;
    QVERIFY(start(QStringLiteral("sits")));
    const auto child = [&] {
        for (const qint64 found : test_support::childProcesses(getpid(), "run_tests"))
            pid = found;
        return pid != 0 && told > 0;
    };
    QTRY_VERIFY_WITH_TIMEOUT(child(), Patience);
    QProcess tracer;
    tracer.start(QCoreApplication::applicationFilePath(),
                 {text("tracer"), QString::number(pid), QString::number(options)});
    QTRY_VERIFY_WITH_TIMEOUT(tracer.canReadLine() || tracer.state() == QProcess::NotRunning,
                             Patience);
    if (tracer.state() == QProcess::NotRunning)
        QSKIP("This system lets no process be held");

    if (isStopped) {
        QVERIFY(service::stopCApplet(m_appName, false));
        QTRY_COMPARE_WITH_TIMEOUT(events, QList<int>{Stopped}, Patience);
        QCOMPARE(errorLines.size(), 1);
        QVERIFY2(errorLines.first().contains(QStringLiteral("无法结束")),
                 qPrintable(errorLines.first()));
    } else {
        standalone::shutdownRuntime();
    }
    const QString process = QStringLiteral("/proc/%1").arg(pid);
    QVERIFY(QFile::exists(process));
    tracer.kill();
    QTRY_COMPARE_WITH_TIMEOUT(tracer.state(), QProcess::NotRunning, Patience);
    QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists(process), Patience); // somebody waited for it
}

PE_WIDGET_TEST("hostile_child", HostileChildTest)
#include "hostile_child_test.moc"
