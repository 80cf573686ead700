#include "shell/bridge/notify_callbacks.h"

#include "model/services/processedit.h"
#include "shell/bridge/LogicMaster.h"
#include "shell/bridge/ProcessEditNotifyTool.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include <QtTest>

#include <thread>

class NotifyCallbacksTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { LogicMaster::instance(); }
    void recodesCompilerText();
    void runEvents();
    void stateIsDirect();
};

void NotifyCallbacksTest::recodesCompilerText()
{
    for (const char* said : {"错误: x", "", "前 generated 后", "a generated b generated c"})
        QCOMPARE(notify_callbacks::recodeCompilerMessage(said), text(said));
    // A character cut off by the word doesn't take what follows it with it.
    const QString cut = notify_callbacks::recodeCompilerMessage("\xe9\x94generated\xe5\x90\x8e");
    QVERIFY2(cut.endsWith(text("generated后")), qPrintable(cut));
}

void NotifyCallbacksTest::runEvents()
{
    sdk_ui_interface::processedit::RunInfo info{"nobody", "seq"};
    QSignalSpy spy(ProcessEditNotifyTool::instance(), &ProcessEditNotifyTool::runFinishSignal);
    for (int event = -1; event < 6; ++event)
        notify_callbacks::runEvent(&info, event);
    notify_callbacks::runEvent(nullptr, 1);
    QList<QVariantList> ends;
    for (int event : {1, 2, 3})
        ends << QVariantList{text("nobody"), text("seq"), event};
    QCOMPARE(spy, ends);
}

void NotifyCallbacksTest::stateIsDirect()
{
    std::thread::id seen;
    QObject context;
    connect(
        LogicMaster::instance(), &LogicMaster::NotifyRunStateSig, &context,
        [&seen] { seen = std::this_thread::get_id(); }, Qt::DirectConnection);
    std::thread reporter([] { notify_callbacks::blockState("a", "s", "b", 50.0, 0); });
    const auto expected = reporter.get_id();
    reporter.join();
    QVERIFY(seen == expected);
}

PE_TEST("notify_callbacks_test", NotifyCallbacksTest)
#include "notify_callbacks_test.moc"
