// A run on the run tab: reports become rows, in order, through calls of sequences and to the end.

#include "logic/LogicView.h"
#include "logic/rows/logic_roles.h"
#include "logic/run/RunInbox.h"
#include "tests/logic/LogicFixture.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include <QAbstractItemModelTester>
#include <QLabel>
#include <QProgressBar>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTest>
#include <QThread>
#include <QTreeView>

#include <thread>

class RunViewTest : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void rowsOfARun();
    void oneStepAfterTheOther();
    void reportsOfAnotherThread();
    void oneTickIsLikeMany();
    void calledSequence();
    void enteredAnewAndReturned();
    void secondStart();
    void reportsBetweenRuns();
    void finishedRow();
    void endOfARun();
    void doubleClickLeadsToTheStep();

private:
    void start() { m_view->setRunMode(true, m_applet->appName, m_main, text("运行中")); }
    void startSub() { m_view->setRunMode(true, m_applet->appName, m_sub, QString()); }
    void stop() { m_view->setRunMode(false, QString(), QString(), QString()); }
    void showMain()
    {
        m_view->addNewModelSlot(m_main);
        m_view->showSequence(m_main);
    }
    void report(const QString& uuid, double progress, int result = 0)
    {
        m_view->notifyRunState(m_main, uuid, result, progress);
    }
    void reportSub(const QString& uuid, double progress, int result = 0)
    {
        m_view->notifyRunState(m_sub, uuid, result, progress);
    }
    void land() { m_view->onRunTimerTimeout(); }

    /// Names and states of the steps on screen, with a row's bar as its value.
    QString rows(const QModelIndex& parent = QModelIndex()) const
    {
        QStringList steps;
        const QAbstractItemModel* model = m_tree->model();
        for (int row = 0; row < model->rowCount(parent); ++row) {
            const QModelIndex name = model->index(row, 0, parent);
            const QModelIndex state = name.siblingAtColumn(logic_columns::State);
            QString step = name.data().toString();
            const auto* bar = qobject_cast<QProgressBar*>(m_tree->indexWidget(state));
            if (bar)
                step += QStringLiteral(" %1%").arg(bar->value());
            else if (!state.data().toString().isEmpty())
                step += QLatin1Char(' ') + state.data().toString();
            if (parent.isValid())
                steps.append(step);
            else if (model->rowCount(name) > 0)
                steps.append(rows(name));
        }
        return steps.join(QLatin1String(", "));
    }
    QColor colourOf(const char* name) const
    {
        const QModelIndexList found =
            m_tree->model()->match(m_tree->model()->index(0, 0), Qt::DisplayRole, text(name), 1,
                                   Qt::MatchExactly | Qt::MatchRecursive);
        const QModelIndex state = found.value(0).siblingAtColumn(logic_columns::State);
        return state.data(Qt::BackgroundRole).value<QBrush>().color();
    }
    QString currentName() const { return m_tree->currentIndex().data().toString(); }

    std::unique_ptr<LogicFixture> m_applet;
    std::unique_ptr<LogicView> m_view;
    QTreeView* m_tree = nullptr;
    QTabWidget* m_tabs = nullptr;
    QString m_main, m_sub, m_a, m_b, m_call, m_c, m_x, m_y;
};

/// Main: a, b, call, c. Sub: x, y.
void RunViewTest::init()
{
    m_view.reset();
    m_applet.reset();
    m_applet = std::make_unique<LogicFixture>();
    m_main = m_applet->addSequence("Main");
    m_sub = m_applet->addSequence("Sub");
    m_a = m_applet->add(m_main, m_applet->initial, step_type::Delay, "a");
    m_b = m_applet->add(m_main, m_applet->main, step_type::Delay, "b");
    m_call = m_applet->addCall(m_main, m_applet->main, m_sub, "call");
    m_c = m_applet->add(m_main, m_applet->end, step_type::Delay, "c");
    m_x = m_applet->add(m_sub, m_applet->main, step_type::Delay, "x");
    m_y = m_applet->add(m_sub, m_applet->main, step_type::Delay, "y");
    m_view = std::make_unique<LogicView>();
    m_view->setCAppletName(m_applet->appName);
    m_view->resize(900, 500);
    m_view->show();
    m_tree = m_view->findChild<QTreeView*>(text("runTreeView"));
    m_tabs = m_view->findChild<QTabWidget*>(text("tabWidget"));
}

void RunViewTest::rowsOfARun()
{
    const QString off = m_applet->add(m_main, m_applet->main, step_type::If, "off");
    m_applet->add(m_main, off, step_type::Delay, "inside");
    m_applet->setEnabled(off, 0);
    QVERIFY(!m_tabs->isTabEnabled(1));
    start();
    QVERIFY(m_tabs->isTabEnabled(1) && m_view->isRunTabShown());
    QVERIFY(m_view->progressHandle() >= 0);
    QCOMPARE(rows(), text("a, b, call, c"));
    QVERIFY(!m_tree->model()->index(0, 0).data(Qt::CheckStateRole).isValid());
    QCOMPARE(m_tree->model()->columnCount(), 4);
    QAbstractItemModelTester tester(m_tree->model(),
                                    QAbstractItemModelTester::FailureReportingMode::QtTest);
    report(off, 0.0); // has no row
    report(m_a, 0.0);
    report(m_a, 100.0);
    land();
    QCOMPARE(rows(), text("a 执行成功, b, call, c"));
}

void RunViewTest::oneStepAfterTheOther()
{
    start();
    report(m_a, 0.0);
    land();
    QCOMPARE(rows(), text("a 0%, b, call, c"));
    QCOMPARE(currentName(), text("a"));
    report(m_a, 55.5);
    land();
    QCOMPARE(rows(), text("a 55%, b, call, c"));
    // a says nothing of its end: the start of b closes it.
    report(m_b, 0.0);
    land();
    QCOMPARE(rows(), text("a 执行成功, b 0%, call, c"));
    QCOMPARE(colourOf("a"), QColor(187, 237, 196));
    report(m_b, 40.0, -1);
    land();
    QCOMPARE(rows(), text("a 执行成功, b 执行失败, call, c"));
    QCOMPARE(colourOf("b"), QColor(241, 178, 185));
    QTRY_VERIFY(m_tree->findChildren<QProgressBar*>().isEmpty());
}

/// Lands by itself, and every signal is emitted on the view's own thread.
void RunViewTest::reportsOfAnotherThread()
{
    start();
    QList<double> told;
    connect(m_view.get(), &LogicView::sigProcessPrograss, this, [&told, this](double progress) {
        QCOMPARE(QThread::currentThread(), thread());
        told.append(progress);
    });
    std::thread runner([this] {
        report(m_a, 0.0);
        report(m_b, 0.0);
        m_view->inbox()->line(text("any"), text("line"));
    });
    runner.join();
    QCOMPARE(told.size(), 0);
    QTRY_COMPARE(rows(), text("a 执行成功, b 0%, call, c"));
    constexpr double OfB = (1 / 6.0) * 100.0;
    QCOMPARE(told, QList<double>({OfB})); // the newest only
    // What this thread reports is told at once.
    report(m_a, 0.0);
    report(m_b, 0.0);
    QCOMPARE(told, QList<double>({OfB, 0.0, OfB}));
    stop();
    // Log lines come without a run, too.
    QSignalSpy lines(m_view.get(), &LogicView::sigLogLine);
    m_view->inbox()->line(text("any"), text("line"));
    QTRY_COMPARE(lines.count(), 1);
}

void RunViewTest::oneTickIsLikeMany()
{
    for (const bool eachTick : {true, false}) {
        start();
        const std::tuple<QString, double, int> reports[] = {
            {m_a, 0.0, 0},    {m_a, 30.0, 0}, {m_b, 0.0, 0},   {m_b, 60.0, -1}, {m_a, 100.0, 0},
            {m_call, 0.0, 0}, {m_c, 0.0, 0},  {m_b, 100.0, 0}, {m_c, 20.0, 0}};
        for (const auto& [uuid, progress, result] : reports) {
            report(uuid, progress, result);
            if (eachTick)
                land();
        }
        land();
        QCOMPARE(rows(), text("a 执行成功, b 执行成功, call 执行成功, c 20%"));
        QCOMPARE(currentName(), text("c"));
    }
}

void RunViewTest::calledSequence()
{
    QSignalSpy progress(m_view.get(), &LogicView::sigProcessPrograss);
    QSignalSpy changes(m_view.get(), &LogicView::sigRunSequenceChanged);
    showMain();
    start();
    report(m_a, 100.0);
    report(m_call, 0.0);
    m_view->notifyGoto(m_sub, false, QString());
    land();
    QCOMPARE(rows(), text("x, y"));
    const auto* name = m_view->findChild<QLabel*>(text("runSequenceLabel"));
    QVERIFY(name->isVisible());
    QCOMPARE(name->text(), text("序列: Sub"));
    QCOMPARE(m_view->runSequenceId(), m_sub);
    m_view->showEditTab();
    QVERIFY(!name->isVisible());
    m_tabs->setCurrentIndex(1);
    QVERIFY(name->isVisible());
    reportSub(m_x, 0.0);
    reportSub(m_x, 100.0);
    reportSub(m_y, 0.0);
    land();
    QCOMPARE(rows(), text("x 执行成功, y 0%"));
    reportSub(m_y, 100.0);
    m_view->notifyGoto(m_sub, true, QString());
    land();
    QCOMPARE(rows(), text("x 执行成功, y 执行成功"));
    report(m_call, 50.0);
    land();
    QCOMPARE(rows(), text("a 执行成功, b, call 50%, c"));
    report(m_call, 100.0);
    land();
    QCOMPARE(rows(), text("a 执行成功, b, call 执行成功, c"));
    // The blocks of the run in their order: a, b, call, x, y, c.
    QCOMPARE(progress.last().first().toDouble(), 100.0 / 6.0 + (2 / 6.0) * 100.0);
    QVERIFY(!name->isVisible()); // back in the sequence that is edited
    QCOMPARE(m_view->runSequenceId(), m_main);
    stop();
    QCOMPARE(m_view->runSequenceId(), QString());
    QCOMPARE(changes.count(), 4); // start, call, return, end
}

void RunViewTest::enteredAnewAndReturned()
{
    start();
    for (int pass = 0; pass < 2; ++pass) {
        report(m_call, 0.0);
        if (pass == 0)
            land(); // no report waits when the call is told
        m_view->notifyGoto(m_sub, false, QString());
        land();
        QCOMPARE(rows(), text("x, y"));
        QCOMPARE(colourOf("x").alpha(), pass == 0 ? 255 : 0);
        reportSub(m_x, 100.0, -1);
        land();
        QCOMPARE(rows(), text("x 执行失败, y"));
        report(m_call, 100.0, -1);
        land();
        QCOMPARE(rows(), text("a, b, call 执行失败, c"));
    }
    // A caller that says nothing of the call's end comes back with its running row.
    report(m_call, 0.0);
    m_view->notifyGoto(m_sub, false, QString());
    report(m_b, 0.0);
    land();
    QCOMPARE(rows(), text("a, b 0%, call 执行成功, c"));
}

void RunViewTest::secondStart()
{
    start();
    const int handle = m_view->progressHandle();
    report(m_a, 0.0);
    land();
    report(m_a, 100.0); // waits, and belongs to the first run
    startSub();
    QVERIFY(m_view->progressHandle() != handle);
    land();
    QCOMPARE(rows(), text("x, y"));
    start();
    QCOMPARE(rows(), text("a, b, call, c"));
}

/// A run may report before its rows are there; what an earlier run says late is nobody's.
void RunViewTest::reportsBetweenRuns()
{
    start();
    stop();
    report(m_a, 100.0, -1);
    start();
    land();
    QCOMPARE(rows(), text("a, b, call, c"));
    stop();
    report(m_a, 100.0, -1);
    m_view->expectRun();
    report(m_b, 0.0);
    start();
    land();
    QCOMPARE(rows(), text("a, b 0%, call, c"));
}

void RunViewTest::finishedRow()
{
    const rows::Table<double, int, bool, const char*> table{
        {"stopped under way", 30.0, 0, true, "a 执行成功, b, call, c"},
        {"crashed under way", 30.0, 0, false, "a 执行失败, b, call, c"},
        {"a failed step of a run that ended", 50.0, -1, true, "a 执行失败, b, call, c"}};
    for (const auto& [row, progress, result, success, expected] : table) {
        const rows::Named named(row);
        start();
        report(m_a, 0.0);
        report(m_a, progress, result);
        m_view->finishRow(success);
        QCOMPARE(rows(), text(expected));
        stop();
        QCOMPARE(rows(), text(expected)); // the rows stay to be read
    }
}

void RunViewTest::endOfARun()
{
    const rows::Table<double, int, const char*> table{
        {"success", 100.0, 0, "a 执行成功, b, call, c"},
        {"under way", 0.0, 0, "a 执行成功, b, call, c"},
        {"failure", 100.0, -1, "a 执行失败, b, call, c"}};
    for (const auto& [row, progress, result, expected] : table) {
        const rows::Named named(row);
        start();
        report(m_a, progress, result);
        QSignalSpy told(m_view.get(), &LogicView::sigProcessPrograss);
        stop();
        QCOMPARE(rows(), text(expected));
        QCOMPARE(told.count(), result == 0 ? 1 : 0);
        if (result == 0)
            QCOMPARE(told.first(), QVariantList({100.0, 0}));
        QCOMPARE(m_view->progressHandle(), -1);
        QTRY_VERIFY(m_tree->findChildren<QProgressBar*>().isEmpty());
        stop(); // a second end changes nothing
        QCOMPARE(told.count(), result == 0 ? 1 : 0);
    }
}

void RunViewTest::doubleClickLeadsToTheStep()
{
    showMain();
    QSignalSpy clicked(m_view.get(), &LogicView::processItemClicked);
    start();
    const auto doubleClick = [this](int column) {
        const QModelIndex flow = m_tree->model()->index(1, 0);
        m_view->onRunDoubleItemClicked(m_tree->model()->index(0, column, flow));
    };
    doubleClick(2);
    QVERIFY(!m_view->isRunTabShown());
    QCOMPARE(clicked.takeLast(), QVariantList({int(BasicStep), m_b}));
    // A row of another sequence has no twin on the edit tab: only the tab changes.
    startSub();
    clicked.clear();
    doubleClick(0);
    QVERIFY(!m_view->isRunTabShown());
    QCOMPARE(clicked.count(), 0);
}

PE_WIDGET_TEST("logic_run_view", RunViewTest)
#include "run_view_test.moc"
