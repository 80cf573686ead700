#include "shell/bridge/notify_callbacks.h"

#include "model/services/processedit.h"
#include "shell/bridge/LogicMaster.h"
#include "shell/bridge/ProcessEditNotifyTool.h"
#include "standalone/variables/SystemVariables.h"
#include "tests/support/test_program.h"

#include <QtTest>

#include <thread>

class NotifyCallbacksTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { LogicMaster::instance(); }
    void recodesCompilerText_data();
    void recodesCompilerText();
    void runEvents_data();
    void runEvents();
    void finishedCompileWithoutEntry();
    void stateIsDirect();
    void systemVariableNobodyUses();
};

void NotifyCallbacksTest::recodesCompilerText_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("expected");
    QTest::newRow("plain") << QByteArray("错误: x") << QStringLiteral("错误: x");
    QTest::newRow("empty") << QByteArray() << QString();
    QTest::newRow("split") << QByteArray("前 generated 后") << QStringLiteral("前 generated 后");
    QTest::newRow("word last") << QByteArray("warnings generated")
                               << QStringLiteral("warnings generated");
    QTest::newRow("only the first counts")
        << QByteArray("a generated b generated c") << QStringLiteral("a generated b generated c");
    // A character cut off by the word doesn't take what follows it with it.
    QTest::newRow("cut character") << QByteArray("\xe9\x94generated\xe5\x90\x8e")
                                   << QString(QChar(0xfffd)) + QStringLiteral("generated后");
}

void NotifyCallbacksTest::recodesCompilerText()
{
    QFETCH(QByteArray, text);
    const QString recoded = notify_callbacks::recodeCompilerMessage(text.constData());
    QFETCH(QString, expected);
    if (qstrcmp(QTest::currentDataTag(), "cut character") == 0)
        QVERIFY2(recoded.endsWith(expected.mid(1)), qPrintable(recoded));
    else
        QCOMPARE(recoded, expected);
}

void NotifyCallbacksTest::runEvents_data()
{
    QTest::addColumn<int>("event");
    QTest::addColumn<bool>("isNull");
    QTest::addColumn<int>("signalCount");
    QTest::newRow("other event") << 0 << false << 0;
    QTest::newRow("ended") << 1 << false << 1;
    QTest::newRow("crashed") << 3 << false << 1;
    QTest::newRow("beyond") << 4 << false << 0;
    QTest::newRow("no record") << 1 << true << 0;
}

void NotifyCallbacksTest::runEvents()
{
    QFETCH(int, event);
    QFETCH(bool, isNull);
    sdk_ui_interface::processedit::RunInfo info{"nobody", "seq"};
    QSignalSpy spy(ProcessEditNotifyTool::instance(), &ProcessEditNotifyTool::runFinishSignal);
    notify_callbacks::runEvent(isNull ? nullptr : &info, event);
    QTEST(int(spy.count()), "signalCount");
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
