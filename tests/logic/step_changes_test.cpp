// Steps removed from a loaded sequence and moved in it: rows and blocks afterwards, what becomes
// current, and what the view tells.

#include "tests/logic/EditFixture.h"
#include "tests/support/test_program.h"

#include <QTest>
#include <QToolTip>

using namespace sdk_ui_interface;
using test_support::printTree;

class StepChangesTest : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        e.reset();
        e = std::make_unique<EditFixture>();
    }
    void removedStructure();
    void deleteKey();
    void removedSteps();
    void removedTargetLeavesJumps();
    void emptiedFlows();
    void movedRows();
    void movedUnderADisabledStep();
    void refusedMove();

private:
    std::unique_ptr<EditFixture> e;
};

void StepChangesTest::removedStructure()
{
    const QString above = e->add(e->applet.main, step_type::Delay, "above");
    const QString branch = e->add(e->applet.main, step_type::If, "if");
    const QString inner = e->add(branch, step_type::Delay, "inner");
    e->add(e->applet.main, step_type::Else, "else");
    const QString close = e->add(e->applet.main, step_type::EndIf, "endif");
    e->add(e->applet.main, step_type::Delay, "below");
    e->show();
    e->setCurrent(close);
    QSignalSpy clicked(&e->view, &LogicView::processItemClicked);
    e->view.removeRowSlot();
    QCOMPARE(e->rows(), lines("[x] 初始流程\n[x] 主流程\n  [x] above\n  [x] below\n[x] 结束流程"));
    QVERIFY(!e->applet.get<IProcessBlock>(inner));
    QCOMPARE(e->currentUuid(), above);
    QCOMPARE(e->tree->selectionModel()->selectedRows(), QModelIndexList({e->row(above)->index()}));
    QCOMPARE(clicked.last(), QVariantList({int(BasicStep), above}));
    QCOMPARE(e->modified.count(), 1);
    QCOMPARE(e->tableRows(), 5);
}

void StepChangesTest::deleteKey()
{
    const QString a = e->add(e->applet.main, step_type::Delay, "a");
    e->add(e->applet.main, step_type::Delay, "b");
    e->show();
    e->tree->selectAll();
    QTest::keyClick(e->tree, Qt::Key_Delete);
    QCOMPARE(e->row(e->applet.main)->rowCount(), 2);
    e->setCurrent(a);
    QTest::keyClick(e->tree, Qt::Key_Delete);
    QCOMPARE(e->rows(), lines("[x] 初始流程\n[x] 主流程\n  [x] b\n[x] 结束流程"));
    e->setCurrent(e->applet.main);
    QTest::keyClick(e->tree, Qt::Key_Delete);
    QCOMPARE(e->row(e->applet.main)->rowCount(), 1);
}

void StepChangesTest::removedSteps()
{
    const QString loop = e->add(e->applet.main, step_type::For, "for");
    const QString off = e->add(loop, step_type::Delay, "off");
    const QString on = e->add(loop, step_type::Delay, "on");
    e->add(e->applet.main, step_type::EndFor, "endfor");
    e->applet.setEnabled(off, 0);
    e->applet.setEnabled(loop, 1);
    e->show();
    // What is left says what the parent is.
    e->setCurrent(on);
    e->view.removeRowSlot();
    QCOMPARE(e->rows(), lines("[x] 初始流程\n[ ] 主流程\n  [ ] for\n    [ ] off\n  [ ] endfor\n"
                              "[x] 结束流程"));
    e->view.removeRowSlot(); // the last of its parent
    QVERIFY(!e->tree->currentIndex().isValid());
    e->view.removeRowSlot();
    e->setCurrent(loop);
    e->view.removeRowSlot();
    QCOMPARE(e->rows(), lines("[x] 初始流程\n[x] 主流程\n[x] 结束流程"));
    QCOMPARE(e->modified.count(), 3);
}

void StepChangesTest::removedTargetLeavesJumps()
{
    const QString loop = e->add(e->applet.main, step_type::For, "for");
    const QString jump = e->add(loop, step_type::Goto, "goto");
    const QString target = e->add(e->applet.main, step_type::Delay, "target");
    e->applet.get<GotoProcessBlock>(jump)->targetUuid = target.toStdString();
    e->show();
    const QPersistentModelIndex description = e->row(loop)->child(0)->index().siblingAtColumn(1);
    e->view.setRuntimeStaleBlockUuids({jump});
    QSignalSpy changes(description.model(), &QAbstractItemModel::dataChanged);
    e->setCurrent(target);
    e->view.removeRowSlot();
    bool isTold = false;
    for (const QList<QVariant>& change : qAsConst(changes))
        isTold = isTold || change.at(0).toModelIndex() == description;
    QVERIFY(isTold);
    QCOMPARE(description.data().toString(),
             QString::fromStdString(e->applet.get<GotoProcessBlock>(jump)->description()) +
                 text(" [需重新编译]"));
}

void StepChangesTest::emptiedFlows()
{
    e->addDiagnosticKinds();
    const QString inMain = e->addDiagnostic(e->applet.main);
    const QString loop = e->add(e->applet.end, step_type::For, "for");
    const QString nested = e->addDiagnostic(loop);
    const QString inEnd = e->addDiagnostic(e->applet.end);
    e->applet.setEnabled(inMain, 0);
    e->show();
    QSignalSpy removed(&e->view, &LogicView::sigUdsBlockRemoved);
    e->setCurrent(inEnd);
    e->view.removeAllRows(); // not a flow
    QCOMPARE(e->modified.count(), 0);
    e->setCurrent(e->applet.main);
    e->view.removeAllRows();
    QCOMPARE(e->rows(), lines("[x] 初始流程\n[x] 主流程\n[x] 结束流程\n  [x] for\n    [x] 读数据\n"
                              "  [x] 读数据"));
    const auto names = [&removed] {
        QStringList uuids;
        while (!removed.isEmpty())
            uuids.append(removed.takeFirst().first().toString());
        return uuids;
    };
    QCOMPARE(names(), QStringList({inMain, inEnd}));
    e->tree->setCurrentIndex(QModelIndex());
    e->view.removeAllRows();
    QCOMPARE(e->rows(), lines("[x] 初始流程\n[x] 主流程\n[x] 结束流程"));
    QCOMPARE(names(), QStringList({nested, inEnd}));
    QCOMPARE(e->modified.count(), 2);
}

void StepChangesTest::movedRows()
{
    QStringList uuids;
    for (const char* name : {"a", "b", "c", "d", "e", "f"})
        uuids.append(e->add(e->applet.main, step_type::Delay, name));
    const QString loop = e->add(e->applet.initial, step_type::For, "for");
    e->show();
    const auto order = [this] {
        return printTree(*e->model()).join(QString()).remove(text("[x]")).remove(QLatin1Char(' '));
    };
    e->moveRows(uuids[1], 1, e->applet.main, 4);
    QCOMPARE(order(), text("初始流程for主流程acdebf结束流程"));
    QVERIFY(e->showsTheService());
    e->moveRows(uuids[0], 3, e->applet.main, 2); // several, down past two
    QCOMPARE(order(), text("初始流程for主流程ebacdf结束流程"));
    QVERIFY(e->showsTheService());
    e->moveRows(uuids[2], 2, e->applet.main, 1); // up
    QCOMPARE(order(), text("初始流程for主流程ecdbaf结束流程"));
    QVERIFY(e->showsTheService());
    e->moveRows(uuids[4], 3, loop, 0); // to another parent
    QCOMPARE(order(), text("初始流程forecd主流程baf结束流程"));
    QVERIFY(e->showsTheService());
    QCOMPARE(e->currentUuid(), uuids[4]);
    QCOMPARE(e->modified.count(), 4);
}

void StepChangesTest::movedUnderADisabledStep()
{
    const QString branch = e->add(e->applet.main, step_type::If, "if");
    const QString inner = e->add(branch, step_type::Delay, "inner");
    e->add(e->applet.main, step_type::Else, "else");
    e->add(e->applet.main, step_type::EndIf, "endif");
    const QString loop = e->add(e->applet.main, step_type::For, "for");
    const QString close = e->add(e->applet.main, step_type::EndFor, "endfor");
    e->applet.setEnabled(loop, 0);
    e->applet.setEnabled(close, 0);
    e->show();
    e->moveRows(branch, 3, loop, 0);
    const QStringList expected = lines(R"(
[x] 初始流程
[ ] 主流程
  [ ] for
    [ ] if
      [ ] inner
    [ ] else
    [ ] endif
  [ ] endfor
[x] 结束流程)");
    QCOMPARE(e->rows(), expected);
    QVERIFY(e->tree->isExpanded(e->row(branch)->index()));
}

void StepChangesTest::refusedMove()
{
    QString parent = e->applet.main;
    for (;;) {
        const QString inner = processedit::createProcess(e->applet.appName, e->sequence, parent,
                                                         BasicStep, step_type::For, -1);
        if (inner.isEmpty())
            break;
        parent = inner; // the service takes no more levels below this one
    }
    const QString step = e->add(e->applet.main, step_type::Delay, "a");
    e->show();
    const QStringList before = e->rows();
    e->moveRows(step, 1, parent, 0);
    QCOMPARE(QToolTip::text(), text("步骤不能移到此处"));
    QTRY_COMPARE(printTree(*e->model()), before);
    QCOMPARE(e->tree->model(), e->model());
}

PE_WIDGET_TEST("logic_step_changes", StepChangesTest)
#include "step_changes_test.moc"
