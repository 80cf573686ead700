// A run on the run tab: reports become rows, in order, through calls of sequences and to the end.

#include "logic/LogicView.h"
#include "logic/logic_roles.h"
#include "tests/logic/LogicFixture.h"
#include "tests/support/print_tree.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include <QAbstractItemModelTester>
#include <QLabel>
#include <QProgressBar>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTest>
#include <QTreeView>

using test_support::printTree;

class RunViewTest : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void rowsOfARun();
    void oneStepAfterTheOther();
    void failureBeforeTheEnd();
    void timerLandsReports();
    void oneTickIsLikeMany();
    void calledSequence();
    void callWithoutAWaitingReport();
    void enteredAnewAndReturned();
    void secondStart();
    void reportsBetweenRuns();
    void finishedRow_data();
    void finishedRow();
    void endOfARun_data();
    void endOfARun();
    void doubleClickLeadsToTheStep();

private:
    void start() { m_view->setRunMode(true, m_applet->appName, m_main, text("运行中")); }
    void stop() { m_view->setRunMode(false, QString(), QString(), QString()); }
    void report(const QString& uuid, double progress, int result = 0)
    {
        m_view->notifyRunState(m_main, uuid, result, progress);
    }
    void land() { m_view->onRunTimerTimeout(); }

    /// Names and states of the rows on screen, with a row's bar as its value.
    QStringList rows(const QModelIndex& parent = QModelIndex()) const
    {
        QStringList lines;
        const QAbstractItemModel* model = m_tree->model();
        for (int row = 0; row < model->rowCount(parent); ++row) {
            const QModelIndex name = model->index(row, 0, parent);
            const QModelIndex state = name.siblingAtColumn(logic_columns::State);
            QString line = name.data().toString();
            const auto* bar = qobject_cast<QProgressBar*>(m_tree->indexWidget(state));
            if (bar)
                line += QStringLiteral(" %1%").arg(bar->value());
            else if (!state.data().toString().isEmpty())
                line += QLatin1Char(' ') + state.data().toString();
            if (parent.isValid())
                lines.append(line);
            lines += rows(name);
        }
        return lines;
    }
    QColor colourOf(const QString& name) const
    {
        const QModelIndexList found =
            m_tree->model()->match(m_tree->model()->index(0, 0), Qt::DisplayRole, name, 1,
                                   Qt::MatchExactly | Qt::MatchRecursive);
        const QModelIndex state = found.value(0).siblingAtColumn(logic_columns::State);
        return state.data(Qt::BackgroundRole).value<QBrush>().color();
    }

    std::unique_ptr<LogicFixture> m_applet;
    std::unique_ptr<LogicView> m_view;
    QTreeView* m_tree = nullptr;
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
}

void RunViewTest::rowsOfARun()
{
    const QString off = m_applet->add(m_main, m_applet->main, step_type::If, "off");
    m_applet->add(m_main, off, step_type::Delay, "inside");
    m_applet->setEnabled(off, 0);
    auto* tabs = m_view->findChild<QTabWidget*>(text("tabWidget"));
    QVERIFY(!tabs->isTabEnabled(1));
    start();
    QVERIFY(tabs->isTabEnabled(1) && m_view->isRunTabShown());
    QVERIFY(m_view->progressHandle() >= 0);
    QCOMPARE(rows(), QStringList({text("a"), text("b"), text("call"), text("c")}));
    QCOMPARE(printTree(*m_tree->model()).first(), text("初始流程")); // and no check box
    QCOMPARE(m_tree->model()->columnCount(), 4);
    QAbstractItemModelTester tester(m_tree->model(),
                                    QAbstractItemModelTester::FailureReportingMode::QtTest);
    report(off, 0.0); // has no row
    report(m_a, 0.0);
    report(m_a, 100.0);
    land();
    QCOMPARE(rows().first(), text("a 执行成功"));
}

void RunViewTest::oneStepAfterTheOther()
{
    start();
    report(m_a, 0.0);
    land();
    QCOMPARE(rows().first(), text("a 0%"));
    QCOMPARE(m_tree->currentIndex().data().toString(), text("a"));
    report(m_a, 55.5);
    land();
    QCOMPARE(rows().first(), text("a 55%"));
    // a says nothing of its end: the start of b closes it.
    report(m_b, 0.0);
    land();
    QCOMPARE(rows(), QStringList({text("a 执行成功"), text("b 0%"), text("call"), text("c")}));
    QCOMPARE(colourOf(text("a")), QColor(187, 237, 196));
    report(m_b, 100.0, -1);
    land();
    QCOMPARE(rows().at(1), text("b 执行失败"));
    QCOMPARE(colourOf(text("b")), QColor(241, 178, 185));
}

void RunViewTest::failureBeforeTheEnd()
{
    start();
    report(m_a, 0.0);
    report(m_a, 40.0, -3);
    land();
    QCOMPARE(rows().first(), text("a 执行失败"));
    QTRY_VERIFY(m_tree->findChildren<QProgressBar*>().isEmpty());
}

void RunViewTest::timerLandsReports()
{
    start();
    report(m_a, 0.0);
    QTRY_COMPARE(rows().first(), text("a 0%"));
    stop();
}

void RunViewTest::oneTickIsLikeMany()
{
    struct Report
    {
        QString uuid;
        double progress;
        int result;
    };
    const std::vector<Report> reports{{m_a, 0.0, 0},   {m_a, 30.0, 0},  {m_b, 0.0, 0},
                                      {m_b, 60.0, -1}, {m_a, 100.0, 0}, {m_call, 0.0, 0},
                                      {m_c, 0.0, 0},   {m_b, 100.0, 0}, {m_c, 20.0, 0}};
    start();
    for (const Report& each : reports) {
        report(each.uuid, each.progress, each.result);
        land();
    }
    const QStringList oneByOne = rows();
    const QString current = m_tree->currentIndex().data().toString();
    start();
    for (const Report& each : reports)
        report(each.uuid, each.progress, each.result);
    land();
    QCOMPARE(rows(), oneByOne);
    QCOMPARE(m_tree->currentIndex().data().toString(), current);
    QCOMPARE(oneByOne, QStringList({text("a 执行成功"), text("b 执行成功"), text("call 执行成功"),
                                    text("c 20%")}));
}

void RunViewTest::calledSequence()
{
    QSignalSpy progress(m_view.get(), &LogicView::sigProcessPrograss);
    QSignalSpy changes(m_view.get(), &LogicView::sigRunSequenceChanged);
    m_view->addNewModelSlot(m_main);
    m_view->showSequence(m_main);
    start();
    report(m_a, 100.0);
    report(m_call, 0.0);
    m_view->notifyGoto(m_sub, false, QString());
    land();
    QCOMPARE(rows(), QStringList({text("x"), text("y")}));
    const auto* name = m_view->findChild<QLabel*>(text("runSequenceLabel"));
    QVERIFY(name->isVisible());
    QCOMPARE(name->text(), text("序列: Sub"));
    QCOMPARE(m_view->runSequenceId(), m_sub);
    m_view->showEditTab();
    QVERIFY(!name->isVisible());
    m_view->findChild<QTabWidget*>(text("tabWidget"))->setCurrentIndex(1);
    QVERIFY(name->isVisible());
    m_view->notifyRunState(m_sub, m_x, 0, 0.0);
    m_view->notifyRunState(m_sub, m_x, 0, 100.0);
    m_view->notifyRunState(m_sub, m_y, 0, 0.0);
    land();
    QCOMPARE(rows(), QStringList({text("x 执行成功"), text("y 0%")}));
    m_view->notifyRunState(m_sub, m_y, 0, 100.0);
    m_view->notifyGoto(m_sub, true, QString());
    land();
    QCOMPARE(rows(), QStringList({text("x 执行成功"), text("y 执行成功")}));
    report(m_call, 50.0);
    land();
    QCOMPARE(rows(), QStringList({text("a 执行成功"), text("b"), text("call 50%"), text("c")}));
    report(m_call, 100.0);
    land();
    QCOMPARE(rows().at(2), text("call 执行成功"));
    // The blocks of the run in their order: a, b, call, x, y, c.
    QCOMPARE(progress.last().first().toDouble(), 100.0 / 6.0 + (2 / 6.0) * 100.0);
    QVERIFY(!name->isVisible()); // back in the sequence that is edited
    QCOMPARE(m_view->runSequenceId(), m_main);
    stop();
    QCOMPARE(m_view->runSequenceId(), QString());
    QCOMPARE(changes.count(), 4); // start, call, return, end
}

void RunViewTest::callWithoutAWaitingReport()
{
    start();
    report(m_call, 0.0);
    land();
    m_view->notifyGoto(m_sub, false, QString());
    land();
    QCOMPARE(rows(), QStringList({text("x"), text("y")}));
    // The caller comes back with its running row.
    report(m_b, 0.0);
    land();
    QCOMPARE(rows(), QStringList({text("a"), text("b 0%"), text("call 执行成功"), text("c")}));
}

void RunViewTest::enteredAnewAndReturned()
{
    start();
    for (int pass = 0; pass < 2; ++pass) {
        report(m_call, 0.0);
        m_view->notifyGoto(m_sub, false, QString());
        land();
        QCOMPARE(rows(), QStringList({text("x"), text("y")}));
        QCOMPARE(colourOf(text("x")).alpha(), pass == 0 ? 255 : 0);
        m_view->notifyRunState(m_sub, m_x, -1, 100.0);
        land();
        QCOMPARE(rows(), QStringList({text("x 执行失败"), text("y")}));
        report(m_call, 100.0, -1);
        land();
    }
    QCOMPARE(rows().at(2), text("call 执行失败"));
}

void RunViewTest::secondStart()
{
    start();
    const int handle = m_view->progressHandle();
    report(m_a, 0.0);
    land();
    report(m_a, 100.0); // waits, and belongs to the first run
    m_view->setRunMode(true, m_applet->appName, m_sub, QString());
    QVERIFY(m_view->progressHandle() != handle);
    land();
    QCOMPARE(rows(), QStringList({text("x"), text("y")}));
    start();
    QCOMPARE(rows(), QStringList({text("a"), text("b"), text("call"), text("c")}));
}

/// A run may report before its rows are there; what an earlier run says late is nobody's.
void RunViewTest::reportsBetweenRuns()
{
    start();
    stop();
    report(m_a, 100.0, -1);
    start();
    land();
    QCOMPARE(rows(), QStringList({text("a"), text("b"), text("call"), text("c")}));
    stop();
    report(m_a, 100.0, -1);
    m_view->expectRun();
    report(m_b, 0.0);
    start();
    land();
    QCOMPARE(rows(), QStringList({text("a"), text("b 0%"), text("call"), text("c")}));
}

void RunViewTest::finishedRow_data()
{
    QTest::addColumn<double>("progress");
    QTest::addColumn<int>("result");
    QTest::addColumn<bool>("success");
    QTest::addColumn<QString>("expected");
    QTest::newRow("stopped under way") << 30.0 << 0 << true << text("a 执行成功");
    QTest::newRow("crashed under way") << 30.0 << 0 << false << text("a 执行失败");
    QTest::newRow("ended") << 100.0 << 0 << true << text("a 执行成功");
    QTest::newRow("a failed step of a run that ended") << 50.0 << -1 << true << text("a 执行失败");
}

void RunViewTest::finishedRow()
{
    QFETCH(double, progress);
    QFETCH(int, result);
    QFETCH(bool, success);
    start();
    report(m_a, 0.0);
    report(m_a, progress, result);
    m_view->finishRow(success);
    QTEST(rows().first(), "expected");
    stop();
    QTEST(rows().first(), "expected"); // the rows stay to be read
}

void RunViewTest::endOfARun_data()
{
    QTest::addColumn<double>("progress");
    QTest::addColumn<int>("result");
    QTest::addColumn<QString>("row");
    QTest::addColumn<bool>("complete");
    QTest::newRow("success") << 100.0 << 0 << text("a 执行成功") << true;
    QTest::newRow("under way") << 0.0 << 0 << text("a 执行成功") << true;
    QTest::newRow("failure") << 100.0 << -1 << text("a 执行失败") << false;
}

void RunViewTest::endOfARun()
{
    QFETCH(double, progress);
    QFETCH(int, result);
    QFETCH(bool, complete);
    start();
    report(m_a, progress, result);
    QSignalSpy told(m_view.get(), &LogicView::sigProcessPrograss);
    stop();
    QTEST(rows().first(), "row");
    QCOMPARE(told.count(), complete ? 1 : 0);
    if (complete)
        QCOMPARE(told.first(), QVariantList({100.0, 0}));
    QCOMPARE(m_view->progressHandle(), -1);
    QTRY_VERIFY(m_tree->findChildren<QProgressBar*>().isEmpty());
    stop(); // a second end changes nothing
    QCOMPARE(told.count(), complete ? 1 : 0);
}

void RunViewTest::doubleClickLeadsToTheStep()
{
    m_view->addNewModelSlot(m_main);
    m_view->showSequence(m_main);
    QSignalSpy clicked(m_view.get(), &LogicView::processItemClicked);
    start();
    const QModelIndex flow = m_tree->model()->index(1, 0);
    m_view->onRunDoubleItemClicked(m_tree->model()->index(0, 2, flow));
    QVERIFY(!m_view->isRunTabShown());
    QCOMPARE(clicked.takeLast(), QVariantList({int(BasicStep), m_b}));
    // A row of another sequence has no twin on the edit tab: only the tab changes.
    m_view->setRunMode(true, m_applet->appName, m_sub, QString());
    clicked.clear();
    m_view->onRunDoubleItemClicked(m_tree->model()->index(0, 0, m_tree->model()->index(1, 0)));
    QVERIFY(!m_view->isRunTabShown());
    QCOMPARE(clicked.count(), 0);
}

PE_WIDGET_TEST("logic_run_view", RunViewTest)
#include "run_view_test.moc"
