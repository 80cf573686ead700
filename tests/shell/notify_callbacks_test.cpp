#include "shell/bridge/notify_callbacks.h"

#include "model/services/processedit.h"
#include "shell/bridge/LogicMaster.h"
#include "shell/bridge/ProcessEditNotifyTool.h"
#include "standalone/variables/SystemVariables.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"

#include <QtTest>

#include <thread>

class NotifyCallbacksTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { LogicMaster::instance(); }
    void recodesCompilerText();
    void runEvents();
    void finishedCompileWithoutEntry();
    void stateIsDirect();
    void systemVariableNobodyUses();
};

void NotifyCallbacksTest::recodesCompilerText()
{
    const rows::Table<QByteArray, QString> table{
        {"plain", QByteArray("错误: x"), QStringLiteral("错误: x")},
        {"empty", QByteArray(), QString()},
        {"split", QByteArray("前 generated 后"), QStringLiteral("前 generated 后")},
        {"word last", QByteArray("warnings generated"), QStringLiteral("warnings generated")},
        {"only the first counts", QByteArray("a generated b generated c"),
         QStringLiteral("a generated b generated c")},
        // A character cut off by the word doesn't take what follows it with it.
        {"cut character", QByteArray("\xe9\x94generated\xe5\x90\x8e"),
         QString(QChar(0xfffd)) + QStringLiteral("generated后")}};
    for (const auto& [row, text, expected] : table) {
        const rows::Named named(row);
        const QString recoded = notify_callbacks::recodeCompilerMessage(text.constData());
        if (qstrcmp(row, "cut character") == 0)
            QVERIFY2(recoded.endsWith(expected.mid(1)), qPrintable(recoded));
        else
            QCOMPARE(recoded, expected);
    }
}

void NotifyCallbacksTest::runEvents()
{
    const rows::Table<int, bool, int> table{{"other event", 0, false, 0},
                                            {"ended", 1, false, 1},
                                            {"crashed", 3, false, 1},
                                            {"beyond", 4, false, 0},
                                            {"no record", 1, true, 0}};
    for (const auto& [row, event, isNull, signalCount] : table) {
        const rows::Named named(row);
        sdk_ui_interface::processedit::RunInfo info{"nobody", "seq"};
        QSignalSpy spy(ProcessEditNotifyTool::instance(), &ProcessEditNotifyTool::runFinishSignal);
        notify_callbacks::runEvent(isNull ? nullptr : &info, event);
        QCOMPARE(int(spy.count()), signalCount);
    }
}

void NotifyCallbacksTest::finishedCompileWithoutEntry()
{
    QSignalSpy spy(ProcessEditNotifyTool::instance(), &ProcessEditNotifyTool::compileFinishSignal);
    notify_callbacks::compileFinished(CompileFailed, 12, "nobody", "x");
    const auto result = spy.at(0).at(0).value<CAppCompileResult>();
    QCOMPARE(result.appName, QStringLiteral("nobody"));
    QVERIFY(result.sequenceId.isEmpty());
    QVERIFY(!result.runAfterCompile && !result.toVciAfterCompile);
    QCOMPARE(result.elapsed, quint64(12));
}

void NotifyCallbacksTest::stateIsDirect()
{
    Qt::HANDLE seenThread = nullptr;
    QObject context;
    connect(
        LogicMaster::instance(), &LogicMaster::NotifyRunStateSig, &context,
        [&seenThread] { seenThread = QThread::currentThreadId(); }, Qt::DirectConnection);
    Qt::HANDLE reporterThread = nullptr;
    std::thread reporter([&reporterThread] {
        reporterThread = QThread::currentThreadId();
        notify_callbacks::blockState("a", "s", "b", 50.0, 0);
    });
    reporter.join();
    QVERIFY(seenThread && seenThread == reporterThread);
}

void NotifyCallbacksTest::systemVariableNobodyUses()
{
    QSignalSpy uses(ProcessEditNotifyTool::instance(), &ProcessEditNotifyTool::systemVarChange);
    QSignalSpy types(ProcessEditNotifyTool::instance(), &ProcessEditNotifyTool::systemUdsVarChange);
    system_variate::SystemVarInfo info;
    info.name = QStringLiteral("speed");
    info.category = DoubleCategory;
    auto& variables = standalone::SystemVariables::instance();
    variables.define(info);
    variables.define(info);
    variables.setValue(info.name, QStringLiteral("3"));
    variables.waitForListeners();
    QCOMPARE(uses.count() + types.count(), 0);
}

PE_TEST("notify_callbacks_test", NotifyCallbacksTest)
#include "notify_callbacks_test.moc"
