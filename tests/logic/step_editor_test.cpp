// Steps added to a loaded sequence, removed from it and moved in it: rows and blocks afterwards,
// what becomes current, and what the view tells. Which places are right is the structure rules' own
// test.

#include "model/blocks/UdsProcessBlock.h"
#include "model/uds_records.h"
#include "tests/logic/EditFixture.h"
#include "tests/support/test_program.h"
#include "tests/support/told_context.h"

#include <QScrollBar>
#include <QTest>
#include <QToolTip>

using namespace sdk_ui_interface;
using test_support::printTree;

class StepEditorTest : public QObject
{
    Q_OBJECT
private slots:
    void addedStepIsShown();
    void addedWithoutACurrentRow();
    void refusals();
    void droppedSteps();
    void addedStepIsEnabledWithItsParents();
    void quickStepWithChildren();
    void selectedStepsBecomeQuickSteps();
    void appendedStatements();
    void newDiagnosticStep();
    void kindsOfOneStepType();
    void editedDiagnosticStep();
    void removedStructure();
    void deleteKey();
    void removedSteps();
    void removedTargetLeavesJumps();
    void emptiedFlows();
    void movedRows();
    void movedUnderADisabledStep();
};

void StepEditorTest::addedStepIsShown()
{
    EditFixture e(EditFixture::numbered(100));
    e.view.resize(700, 400);
    e.view.show();
    e.setCurrent("s99");
    e.tree->scrollToTop();
    e.addStep(step_type::For);

    const QModelIndex current = e.tree->currentIndex();
    QCOMPARE(current.data(logic_roles::StepType).toInt(), step_type::For);
    QCOMPARE(current.row(), 100);
    QCOMPARE(current.siblingAtRow(101).data(logic_roles::StepType).toInt(), step_type::EndFor);
    QCOMPARE(e.tree->selectionModel()->selectedRows(), QModelIndexList({current}));
    QVERIFY(e.tree->isExpanded(current));
    QVERIFY(e.isInSight(current));
    QCOMPARE(e.clicked.last(), QVariantList({int(BasicStep), e.currentUuid()}));
    QCOMPARE(e.modified.count(), 1);
    QCOMPARE(e.tableRows(), 105);
    QCOMPARE(e.table->verticalScrollBar()->value(), e.tree->verticalScrollBar()->value());

    e.addStep(step_type::Delay); // into the new loop
    QCOMPARE(e.tree->currentIndex().parent(), current);
    QVERIFY(e.isInSight(e.tree->currentIndex()));
    QVERIFY(e.showsTheService());
}

void StepEditorTest::addedWithoutACurrentRow()
{
    EditFixture e;
    e.addStep(step_type::Delay); // nothing is shown yet
    e.show();
    e.addStep(step_type::If);
    QCOMPARE(e.steps(), text(" | if endif | "));
    e.view.addStep(NoBlock, step_type::None, text("folder"), false, false);
    QCOMPARE(e.modified.count(), 1);
    QCOMPARE(e.boxes, QStringList());
}

void StepEditorTest::refusals()
{
    EditFixture e("if else endif");
    const QString before = e.steps();
    e.setCurrent("else");
    const int clicks = e.clicked.count();
    e.addStep(step_type::Else); // what breaks a rule is told in passing
    QVERIFY2(QToolTip::text().contains(text("else")), qPrintable(QToolTip::text()));
    e.addStep(step_type::Break);
    QVERIFY2(QToolTip::text().contains(text("break")), qPrintable(QToolTip::text()));
    QCOMPARE(e.boxes, QStringList());
    e.addStep(step_type::QuickStepFolder); // none that the service makes
    QCOMPARE(e.boxes, QStringList{text("警告:添加步骤失败")});
    QCOMPARE(e.clicked.count(), clicks);
    e.setCurrent(e.applet.main);
    e.addStep(step_type::Else, true); // a drop without a place
    QCOMPARE(e.boxes.last(), text("警告:添加失败"));
    QCOMPARE(e.steps(), before);
    QCOMPARE(e.modified.count(), 0);
    const ToldContext context;
    e.addStep(step_type::Else, true);
    QCOMPARE(e.boxes.last(), text("LogicView:警告:LogicView:添加失败"));
}

void StepEditorTest::droppedSteps()
{
    EditFixture e("first for endfor");
    const QString kept = processedit::addQuickStepInfo(e.applet.appName, e.id("first"));
    CustonStandModel* model = e.model();
    emit model->sigAppendItemNew(e.cell("first"), BasicStep, step_type::Buzz, text("x"), true);
    emit model->sigAppendItemNew(e.cell("for"), BasicStep, step_type::Break, text("x"));
    emit model->sigAppendQuickStepItemNew(e.cell("endfor"), BasicStep, step_type::Delay, kept,
                                          true);
    processedit::removeQuickStepInfo(kept);
    QCOMPARE(e.steps(), text(" | 蜂鸣器 first for[break first] endfor | "));
    QCOMPARE(e.modified.count(), 3);
}

void StepEditorTest::addedStepIsEnabledWithItsParents()
{
    EditFixture e("for-[a-] endfor-");
    e.setCurrent("a");
    e.addStep(step_type::Buzz);
    QCOMPARE(e.steps(), text(" | for~[a- 蜂鸣器] endfor | "));
    QCOMPARE(e.modified.count(), 1);
}

void StepEditorTest::quickStepWithChildren()
{
    EditFixture e("while[if[wait] endif]");
    const QString kept = processedit::addQuickStepInfo(e.applet.appName, e.id("while"));
    processedit::removeProcess(e.applet.appName, e.sequence, e.id("while"));
    e.show();
    e.setCurrent(e.applet.end);
    e.view.addStep(BasicStep, step_type::While, text("again"), false, false, kept);
    processedit::removeQuickStepInfo(kept);
    QCOMPARE(e.steps(), text(" |  | while[if[wait] endif] endwhile"));
    e.view.addStep(BasicStep, step_type::While, text("again"), false, false, kept);
    QCOMPARE(e.boxes, QStringList({text("警告:添加步骤失败")}));
}

void StepEditorTest::selectedStepsBecomeQuickSteps()
{
    EditFixture e("a for hidden nameless");
    e.block("hidden")->property.showInPalette = false;
    e.block("nameless")->property.name.clear();
    QSignalSpy added(&e.view, &LogicView::sigQuickStepsAdded);
    e.setCurrent("hidden");
    e.view.onQucikAddSlot();
    QCOMPARE(added.count(), 0);
    e.tree->selectAll();
    e.view.onQucikAddSlot();
    QCOMPARE(added.count(), 1);
    QStringList names;
    for (const QString& id : added.first().first().toStringList()) {
        names.append(QString::fromStdString(processedit::getQuickStepInfo(id)->name));
        processedit::removeQuickStepInfo(id);
    }
    QCOMPARE(names, lines("a\nfor"));
}

void StepEditorTest::appendedStatements()
{
    EditFixture e;
    e.view.appendStatements({text("early;")}, {}); // nothing is shown yet
    e.make("first");
    e.show();
    e.view.appendStatements({text("a = 1;"), text("b = 1;\nb = 2;")}, {1});
    e.row(e.applet.main)->setCheckState(Qt::Unchecked);
    e.view.appendStatements({text("c = 1;")}, {});
    QCOMPARE(printTree(*e.model(), {0, 1}).mid(2, 4), lines(R"(
  [ ] first | 延时 1000 毫秒
  [ ] 语句 | a = 1;
  [ ] 语句 | b = 1;...
  [ ] 语句 | c = 1;)"));
    QVERIFY(e.showsTheService());
    const QModelIndex second = e.row(e.applet.main)->child(2)->index();
    const QString uuid = second.data(logic_roles::BlockUuid).toString();
    QVERIFY(e.applet.get<StatementProcessBlock>(uuid)->getSplitFile());
    QCOMPARE(second.siblingAtColumn(1).data(Qt::ToolTipRole).toString(), text("b = 1;\nb = 2;"));
    QCOMPARE(e.modified.count(), 3);
    QCOMPARE(e.tableRows(), 7);
}

void StepEditorTest::newDiagnosticStep()
{
    EditFixture e("");
    e.addDiagnosticKinds();
    QSignalSpy added(&e.view, &LogicView::sigUdsBlockAdded);
    QSignalSpy stale(&e.view, &LogicView::sigUdsRuntimeStaleRequired);
    e.addDiagnosticStep(1, "会话");
    QVERIFY(QToolTip::text().contains(text("诊断编辑器"))); // there is none
    QStringList asked;
    bool accept = false;
    e.view.setUdsEditor(
        [&](const QString& appName, const QString& id, int stepType, UDSProcessInfo& info) {
            asked = QStringList{appName, id, QString::number(stepType), info.name, info.json};
            info = {text("进入会话"), text("10 01"),   text("{}"), text("call"),
                    text("task"),     text("declare"), {}};
            return accept;
        });
    e.addDiagnosticStep(1, "会话");
    QCOMPARE(asked, QStringList({e.applet.appName, e.sequence, text("1"), text("会话"),
                                 text("{\"session\":1}")}));
    QCOMPARE(e.steps(), text(" |  | "));
    QCOMPARE(e.modified.count() + added.count() + stale.count(), 0);

    accept = true;
    e.addDiagnosticStep(1, "会话");
    QCOMPARE(printTree(*e.model(), {0, 1})[2], text("  [x] 进入会话 | 10 01"));
    QVERIFY(e.showsTheService());
    const auto block = e.applet.get<UdsProcessBlock>(e.currentUuid());
    QCOMPARE(block->udsConfig() + block->callCode + block->taskCode + block->declareCode +
                 block->property.name,
             std::string("{}calltaskdeclare会话"));
    QCOMPARE(added.first().first().toString(), e.currentUuid());
    QCOMPARE(e.modified.count() + stale.count(), 2);

    e.addDiagnosticStep(7, "unknown");
    QCOMPARE(e.boxes, QStringList({text("警告:添加步骤失败")}));
}

/// Of two kinds of step type 1 the one that is chosen by name says whether steps can stand in it.
void StepEditorTest::kindsOfOneStepType()
{
    EditFixture e("");
    e.addDiagnosticKinds(); // the first one takes none
    BaseStepProperty kind;
    kind.name = "安全会话";
    kind.baseType = DiagnosticStep;
    kind.stepType = 1;
    kind.hasChildren = true;
    process_edit::addCustomStepProperty(e.owner(), {kind});
    e.view.setUdsEditor([](const QString&, const QString&, int, UDSProcessInfo&) { return true; });
    e.view.show();
    e.addDiagnosticStep(1, "安全会话");
    const QString outer = e.currentUuid();
    QVERIFY(e.row(outer)->isDropEnabled());
    e.addStep(step_type::Delay);
    QCOMPARE(e.row(e.currentUuid())->parent(), e.row(outer));
    QVERIFY(e.isInSight(e.tree->currentIndex()));
    QVERIFY(e.showsTheService());
}

void StepEditorTest::editedDiagnosticStep()
{
    EditFixture e("a");
    e.addDiagnosticKinds();
    const QString uuid = e.addDiagnostic(e.applet.main);
    e.applet.get<UdsProcessBlock>(uuid)->setUdsConfig("{1}");
    e.show();
    QSignalSpy doubleClicked(&e.view, &LogicView::sigItemDbClick);
    QSignalSpy removed(&e.view, &LogicView::sigUdsBlockRemoved);
    QSignalSpy added(&e.view, &LogicView::sigUdsBlockAdded);
    e.view.setUdsEditor([&](const QString&, const QString& id, int, UDSProcessInfo& info) {
        const bool isThis = id == uuid && info.json == text("{1}");
        info.name.clear();
        info.text = text("22 F1 90");
        return isThis;
    });
    e.view.setRuntimeStaleBlockUuids({uuid});
    e.view.onItemDoubleClicked(e.row(uuid)->index());
    QCOMPARE(printTree(*e.model(), {0, 1})[3], text("  [x] 读数据 | 22 F1 90 [需重新编译]"));
    QCOMPARE(removed.first(), QVariantList({uuid}));
    QCOMPARE(added.first(), QVariantList({uuid}));
    QCOMPARE(e.modified.count(), 1);
    QCOMPARE(doubleClicked.count(), 0);
    e.view.onItemDoubleClicked(e.cell("a"));
    QCOMPARE(doubleClicked.count(), 1);
}

void StepEditorTest::removedStructure()
{
    EditFixture e("above if[inner] else endif below");
    e.setCurrent("endif");
    e.view.removeRowSlot();
    QCOMPARE(e.steps(), text(" | above below | "));
    QVERIFY(!e.block("inner"));
    QCOMPARE(e.currentUuid(), e.id("above"));
    QCOMPARE(e.tree->selectionModel()->selectedRows(), QModelIndexList({e.cell("above")}));
    QCOMPARE(e.clicked.last(), QVariantList({int(BasicStep), e.id("above")}));
    QCOMPARE(e.modified.count(), 1);
    QCOMPARE(e.tableRows(), 5);
}

void StepEditorTest::deleteKey()
{
    EditFixture e("a b");
    e.tree->selectAll();
    QTest::keyClick(e.tree, Qt::Key_Delete);
    QCOMPARE(e.steps(), text(" | a b | "));
    e.setCurrent("a");
    QTest::keyClick(e.tree, Qt::Key_Delete);
    QCOMPARE(e.steps(), text(" | b | "));
    e.setCurrent(e.applet.main);
    QTest::keyClick(e.tree, Qt::Key_Delete);
    QCOMPARE(e.steps(), text(" | b | "));
}

void StepEditorTest::removedSteps()
{
    EditFixture e("for~[off- on] endfor");
    // What is left says what the parent is.
    e.setCurrent("on");
    e.view.removeRowSlot();
    QCOMPARE(e.steps(), text(" | -: for-[off-] endfor- | "));
    e.view.removeRowSlot(); // the last of its parent
    QVERIFY(!e.tree->currentIndex().isValid());
    e.view.removeRowSlot();
    e.setCurrent("for");
    e.view.removeRowSlot();
    QCOMPARE(e.steps(), text(" |  | "));
    QCOMPARE(e.modified.count(), 3);
}

void StepEditorTest::removedTargetLeavesJumps()
{
    EditFixture e("for[goto] target");
    e.block<GotoProcessBlock>("goto")->targetUuid = e.id("target").toStdString();
    const QModelIndex description = e.cell("goto", 1);
    e.view.setRuntimeStaleBlockUuids({e.id("goto")});
    QSignalSpy changes(e.model(), &QAbstractItemModel::dataChanged);
    e.setCurrent("target");
    e.view.removeRowSlot();
    QVERIFY(std::any_of(changes.begin(), changes.end(), [&](const QList<QVariant>& change) {
        return change.at(0).toModelIndex() == description;
    }));
    QCOMPARE(e.description("goto"),
             QString::fromStdString(e.block("goto")->description()) + text(" [需重新编译]"));
}

void StepEditorTest::emptiedFlows()
{
    EditFixture e(" |  | for");
    e.addDiagnosticKinds();
    const QString inMain = e.addDiagnostic(e.applet.main);
    const QString nested = e.addDiagnostic(e.id("for"));
    const QString inEnd = e.addDiagnostic(e.applet.end);
    e.applet.setEnabled(inMain, 0);
    e.show();
    QSignalSpy removed(&e.view, &LogicView::sigUdsBlockRemoved);
    e.setCurrent(inEnd);
    e.view.removeAllRows(); // not a flow
    QCOMPARE(e.modified.count(), 0);
    e.setCurrent(e.applet.main);
    e.view.removeAllRows();
    QCOMPARE(e.steps(), text(" |  | for[读数据] 读数据"));
    const auto names = [&removed] {
        QStringList uuids;
        while (!removed.isEmpty())
            uuids.append(removed.takeFirst().first().toString());
        return uuids;
    };
    QCOMPARE(names(), QStringList({inMain, inEnd}));
    e.tree->setCurrentIndex(QModelIndex());
    e.view.removeAllRows();
    QCOMPARE(e.steps(), text(" |  | "));
    QCOMPARE(names(), QStringList({nested, inEnd}));
    QCOMPARE(e.modified.count(), 2);
}

void StepEditorTest::movedRows()
{
    EditFixture e("for | a b if else endif c | ");
    QVERIFY(e.drop(text("a"), e.applet.main, 2));
    QCOMPARE(e.steps(), text("for | b a if else endif c | "));
    QVERIFY(e.drop(text("if"), e.applet.main, 1)); // several, up past one
    QCOMPARE(e.steps(), text("for | b if else endif a c | "));
    QVERIFY(e.drop(text("if"), e.applet.main, 6)); // down past two
    QCOMPARE(e.steps(), text("for | b a c if else endif | "));
    QVERIFY(e.drop(text("if"), text("for"), -1)); // to another parent
    QCOMPARE(e.steps(), text("for[if else endif] | b a c | "));
    QCOMPARE(e.currentUuid(), e.id("if"));
    QCOMPARE(e.modified.count(), 4);
}

void StepEditorTest::movedUnderADisabledStep()
{
    EditFixture e("if[inner] else endif for- endfor-");
    QVERIFY(e.drop(text("if"), text("for"), -1));
    QCOMPARE(e.steps(), text(" | -: for-[if-[inner-] else- endif-] endfor- | "));
    QVERIFY(e.tree->isExpanded(e.cell("if")));
}

PE_WIDGET_TEST("logic_step_editor", StepEditorTest)
#include "step_editor_test.moc"
