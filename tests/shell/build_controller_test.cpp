#include "shell/BuildController.h"

#include "model/process_blocks.h"
#include "shell/LogicMaster.h"
#include "standalone/host/Host.h"
#include "tests/support/applet_fixture.h"
#include "tests/support/test_program.h"
#include "tests/support/told_context.h"

#include <QTextCodec>
#include <QtTest>

namespace processedit = sdk_ui_interface::processedit;
using applet_fixture::ScopedApplet;

namespace {

// Records what the build road does to its window, in order.
class RecordingView : public BuildView
{
public:
    QStringList calls;
    EditPlace shown;
    QString chosenInTheRun; ///< a step

    EditPlace place() const override { return shown; }
    void showSequence(const QString& id) override
    {
        calls << QStringLiteral("show");
        if (id != shown.sequenceId)
            shown = {id, QString()};
    }
    void goTo(const EditPlace& place) override
    {
        calls << QStringLiteral("goTo:%1:%2").arg(place.sequenceId, place.stepId);
    }
    void flushPanels() override { calls << QStringLiteral("flush"); }
    void showEditTab() override { calls << QStringLiteral("editTab"); }
    void setPanelsEnabled(bool on) override
    {
        calls << (on ? QStringLiteral("enable") : QStringLiteral("disable"));
    }
    void setToolBarState(ProcessEditToolBar::State state) override
    {
        static const char* const names[] = {"idle", "started", "running"};
        calls << QString::fromLatin1(names[int(state)]);
    }
    void setRunMode(bool running, const QString&, const QString&) override
    {
        calls << (running ? QStringLiteral("runMode") : QStringLiteral("endRunMode"));
        if (!chosenInTheRun.isEmpty())
            shown.stepId = chosenInTheRun;
    }
    void updateRunTreeWidth() override {}
    void finishRunRow(bool) override {}
    void setReportingApp(const QString& name) override
    {
        calls << QStringLiteral("report:") + name;
    }
    void hideWaiting() override {}
    void saveAll() override { calls << QStringLiteral("save"); }
    void warn(const QString& title, const QString& text) override
    {
        calls << QStringLiteral("warn:%1:%2").arg(title, text);
    }
    bool ask(const QString&, const QString&) override
    {
        calls << QStringLiteral("ask");
        return true;
    }
};

} // namespace

class BuildControllerTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();
    void refusals_data();
    void refusals();
    void boundPanelIsANotice();
    void checkCallbackRefuses();
    void compileRunAndSkip();
    void backAfterARun_data();
    void backAfterARun();
    void compileErrorKeepsTheEditorUsable();
    void resultOfAnotherWindow();
    void stopAsksInALocaleOfItsOwn_data();
    void stopAsksInALocaleOfItsOwn();

private:
    QString makeSequence(const char* code);

    void makeApplet(const QString& name);

    QString m_name;
    QTextCodec* const m_codec = QTextCodec::codecForLocale();
    QTemporaryDir m_project;
    RecordingView m_view;
    std::unique_ptr<BuildController> m_build;
    std::unique_ptr<ScopedApplet> m_applet;
    QList<bool> m_outcomes;
};

void BuildControllerTest::initTestCase()
{
    QVERIFY(m_project.isValid());
    standalone::Host::instance().setProjectPath(m_project.path());
}

void BuildControllerTest::init()
{
    makeApplet(QStringLiteral("build_test"));
}

void BuildControllerTest::makeApplet(const QString& name)
{
    m_name = name;
    m_view = RecordingView();
    m_outcomes.clear();
    m_applet = std::make_unique<ScopedApplet>(m_name);
    m_build = std::make_unique<BuildController>(QStringLiteral("Test"), m_view, nullptr);
    m_build->setAppName(m_name);
    m_build->setFinishedCallback([this](bool success) { m_outcomes << success; });
    LogicMaster* master = LogicMaster::instance();
    master->createApplet(m_name, m_project.path() + QLatin1Char('/'));
    connect(master, &LogicMaster::NotifyCompileResultSig, m_build.get(),
            &BuildController::onCompileResult, Qt::QueuedConnection);
    connect(master, &LogicMaster::NotifyRunResultSig, m_build.get(), &BuildController::onRunResult,
            Qt::QueuedConnection);
}

void BuildControllerTest::cleanup()
{
    m_build.reset();
    LogicMaster::instance()->removeApplet(m_name, true);
    m_applet.reset();
    QTextCodec::setCodecForLocale(m_codec);
}

QString BuildControllerTest::makeSequence(const char* code)
{
    const QString id = processedit::createSeuqence(m_name, QStringLiteral("main_seq"));
    SequenceInfo info = processedit::getSequence(m_name, id);
    info.isMain = true;
    processedit::updateSequence(m_name, info);
    auto step = applet_fixture::addStep<StatementProcessBlock>(m_name, id, QStringLiteral("1"),
                                                               step_type::Statement, "语句一");
    step->setCustomCode(code);
    processedit::updateProcess(m_name, id, step);
    m_view.shown.sequenceId = id;
    return id;
}

void BuildControllerTest::refusals_data()
{
    QTest::addColumn<bool>("hasSequence");
    QTest::addColumn<QString>("press");
    QTest::addColumn<QString>("warning");
    const QString none = QStringLiteral("无序列信息，请添加序列");
    const QString noMain = QStringLiteral("未选择主序列，请选择主序列后再次运行");
    QTest::newRow("current, no sequence") << false << QStringLiteral("current") << none;
    QTest::newRow("main, no sequence") << false << QStringLiteral("main") << none;
    QTest::newRow("compile, no sequence") << false << QStringLiteral("compile") << none;
    QTest::newRow("main, none chosen") << true << QStringLiteral("main") << noMain;
    QTest::newRow("compile, none chosen") << true << QStringLiteral("compile") << noMain;
    QTest::newRow("current, none shown")
        << true << QStringLiteral("current") << QStringLiteral("未选择序列，请选择序列后再次运行");
}

void BuildControllerTest::refusals()
{
    QFETCH(bool, hasSequence);
    QFETCH(QString, press);
    QFETCH(QString, warning);
    if (hasSequence) {
        const QString id = makeSequence("");
        SequenceInfo info = processedit::getSequence(m_name, id);
        info.isMain = false;
        processedit::updateSequence(m_name, info);
        m_view.shown = EditPlace();
    }
    if (press == QLatin1String("current"))
        m_build->runCurrent();
    else if (press == QLatin1String("main"))
        m_build->runMain();
    else
        m_build->compileMain();
    QCOMPARE(m_view.calls,
             QStringList({QStringLiteral("flush"), QStringLiteral("warn:警告:") + warning}));
    QCOMPARE(m_outcomes, QList<bool>{false});

    const ToldContext context;
    m_build->compileMain();
    const QString told = m_view.calls.last();
    QVERIFY2(told.startsWith(QStringLiteral("warn:ProcessEditWidget:警告:LogicMaster:")),
             qPrintable(told));
}

void BuildControllerTest::boundPanelIsANotice()
{
    makeSequence("");
    LogicMaster::instance()->setPanelBound(m_name, true);
    QSignalSpy notices(&standalone::Host::instance(), &standalone::Host::noticeShown);
    m_build->runMain();
    QCOMPARE(notices.count(), 1);
    QCOMPARE(notices.at(0).at(0).toInt(), 2);
    QVERIFY(m_view.calls.isEmpty());
    QVERIFY(m_outcomes.isEmpty());
}

void BuildControllerTest::checkCallbackRefuses()
{
    const QString id = makeSequence("");
    QString checked;
    m_build->setCheckCallback(
        [&checked](const QString& sequence, const QString&, const QString& path, bool) {
            checked = sequence + QLatin1Char('|') + path;
            return QList<int>{7};
        });
    QStringList order;
    m_build->setPrepareCallback([this, &order] { order = m_view.calls; });
    m_build->runCurrent();
    QCOMPARE(checked, id + QLatin1Char('|') + m_project.path() + QLatin1Char('/'));
    QCOMPARE(order, QStringList{QStringLiteral("flush")});
    QCOMPARE(m_outcomes, QList<bool>{false});
    QCOMPARE(m_view.calls, order);
}

void BuildControllerTest::compileRunAndSkip()
{
    makeSequence("log_info(\"hello\");");
    QSignalSpy finished(m_build.get(), &BuildController::runFinished);
    QSignalSpy output(m_build.get(), &BuildController::output);
    m_build->runMain();
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 60000);
    const QString report = QStringLiteral("report:");
    QCOMPARE(
        m_view.calls,
        QStringList({QStringLiteral("show"), QStringLiteral("flush"), QStringLiteral("editTab"),
                     QStringLiteral("disable"), QStringLiteral("started"), QStringLiteral("enable"),
                     QStringLiteral("save"), report + m_name, QStringLiteral("runMode"),
                     QStringLiteral("running"), report, QStringLiteral("endRunMode"),
                     QStringLiteral("idle")}));
    QCOMPARE(output.at(0).at(1).toString(), QStringLiteral("即将开始编译"));
    QVERIFY2(output.at(1).at(1).toString().endsWith(QStringLiteral("编译成功\n即将开始运行\n")),
             qPrintable(output.at(1).at(1).toString()));
    QVERIFY(output.last().at(1).toString().startsWith(m_name + QStringLiteral(" 运行结束\n")));

    m_view.calls.clear();
    m_build->runMain();
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 2, 60000);
    QCOMPARE(m_view.calls.mid(0, 5),
             QStringList({QStringLiteral("show"), QStringLiteral("flush"), report + m_name,
                          QStringLiteral("runMode"), QStringLiteral("started")}));
    QCOMPARE(m_outcomes, QList<bool>({true, true}));
}

void BuildControllerTest::backAfterARun_data()
{
    QTest::addColumn<bool>("isElsewhere");
    QTest::addColumn<QString>("chosen");
    QTest::addColumn<bool>("goesBack");
    QTest::newRow("from another sequence") << true << QString() << true;
    QTest::newRow("another step chosen in the run") << true << QStringLiteral("step") << false;
    QTest::newRow("from the main sequence") << false << QString() << false;
}

void BuildControllerTest::backAfterARun()
{
    QFETCH(bool, isElsewhere);
    QFETCH(QString, chosen);
    QFETCH(bool, goesBack);
    makeSequence("");
    if (isElsewhere)
        m_view.shown = {QStringLiteral("other"), QStringLiteral("here")};
    m_view.chosenInTheRun = chosen;
    QSignalSpy finished(m_build.get(), &BuildController::runFinished);
    m_build->runMain();
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 60000);
    const QString way = m_view.calls.at(m_view.calls.size() - 2);
    QCOMPARE(way, goesBack ? QStringLiteral("goTo:other:here") : QStringLiteral("endRunMode"));
}

void BuildControllerTest::compileErrorKeepsTheEditorUsable()
{
    makeSequence("this is no code;");
    QSignalSpy finished(m_build.get(), &BuildController::runFinished);
    QSignalSpy output(m_build.get(), &BuildController::output);
    m_build->compileMain();
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 60000);
    QTRY_COMPARE(m_outcomes, QList<bool>{false});
    const QString text = output.last().at(1).toString();
    QVERIFY2(text.contains(QStringLiteral("main_seq编译失败\n")), qPrintable(text));
    QVERIFY2(text.contains(QLatin1String("error")), qPrintable(text));
    QCOMPARE(m_view.calls.mid(m_view.calls.size() - 2),
             QStringList({QStringLiteral("enable"), QStringLiteral("idle")}));
    QVERIFY(m_build->compilingApp().isEmpty());
}

void BuildControllerTest::resultOfAnotherWindow()
{
    QSignalSpy finished(m_build.get(), &BuildController::compileFinished);
    CAppCompileResult other;
    other.appName = QStringLiteral("somebody");
    other.result = CompileSucceeded;
    m_build->onCompileResult(other, QString());
    QCOMPARE(finished.count(), 1);
    QVERIFY(m_view.calls.isEmpty());
    QVERIFY(m_outcomes.isEmpty());
}

void BuildControllerTest::stopAsksInALocaleOfItsOwn_data()
{
    QTest::addColumn<QByteArray>("codec");
    QTest::newRow("UTF-8") << QByteArray("UTF-8");
    QTest::newRow("GBK") << QByteArray("GBK");
}

/// The names of runners are in the encoding of the locale.
void BuildControllerTest::stopAsksInALocaleOfItsOwn()
{
    QFETCH(QByteArray, codec);
    cleanup();
    QTextCodec::setCodecForLocale(QTextCodec::codecForName(codec));
    makeApplet(QStringLiteral("检测"));
    makeSequence("while (true) {}");
    m_build->runMain();
    QTRY_COMPARE_WITH_TIMEOUT(m_view.calls.value(m_view.calls.size() - 1),
                              QStringLiteral("running"), 60000);
    m_view.calls.clear();
    m_build->stop();
    QCOMPARE(m_view.calls, QStringList{QStringLiteral("ask")});
    QTRY_COMPARE_WITH_TIMEOUT(m_outcomes.size(), 1, 60000);
}

PE_WIDGET_TEST("build_controller_test", BuildControllerTest)
#include "build_controller_test.moc"
