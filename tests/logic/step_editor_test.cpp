// Steps added to a loaded sequence: rows and blocks afterwards, what becomes current, and what the
// view tells. Which places are right is the structure rules' own test.

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
    void init()
    {
        e.reset();
        e = std::make_unique<EditFixture>();
    }
    void addedStepIsShown();
    void addedWithoutACurrentRow();
    void refusedSilently();
    void refusedWithABox();
    void failedCreationChangesNothing();
    void droppedSteps();
    void addedStepIsEnabledWithItsParents();
    void quickStepWithChildren();
    void selectedStepsBecomeQuickSteps();
    void appendedStatements();
    void newDiagnosticStep();
    void kindsOfOneStepType();
    void editedDiagnosticStep();

private:
    std::unique_ptr<EditFixture> e;
};

void StepEditorTest::addedStepIsShown()
{
    QStringList uuids;
    for (int i = 0; i < 100; ++i)
        uuids.append(e->add(e->applet.main, step_type::Delay, "a"));
    e->view.resize(700, 400);
    e->view.show();
    e->show();
    QSignalSpy clicked(&e->view, &LogicView::processItemClicked);
    e->setCurrent(uuids.last());
    e->tree->scrollToTop();
    e->addStep(step_type::For);

    const QModelIndex current = e->tree->currentIndex();
    QCOMPARE(current.data(logic_roles::StepType).toInt(), step_type::For);
    QCOMPARE(current.row(), 100);
    QCOMPARE(current.siblingAtRow(101).data(logic_roles::StepType).toInt(), step_type::EndFor);
    QCOMPARE(e->tree->selectionModel()->selectedRows(), QModelIndexList({current}));
    QVERIFY(e->tree->isExpanded(current));
    QVERIFY(e->isInSight(current));
    QCOMPARE(clicked.last(), QVariantList({int(BasicStep), e->currentUuid()}));
    QCOMPARE(e->modified.count(), 1);
    auto* table = e->view.findChild<QTableView*>(text("tableView"));
    QCOMPARE(table->model()->rowCount(), 105);
    QCOMPARE(table->verticalScrollBar()->value(), e->tree->verticalScrollBar()->value());

    e->addStep(step_type::Delay); // into the new loop
    QCOMPARE(e->tree->currentIndex().parent(), current);
    QVERIFY(e->isInSight(e->tree->currentIndex()));
    QVERIFY(e->showsTheService());
}

void StepEditorTest::addedWithoutACurrentRow()
{
    e->view.addStep(BasicStep, step_type::Delay, QString(), false, false); // nothing is shown yet
    e->show();
    e->addStep(step_type::If);
    QCOMPARE(e->rows(), lines("[x] 初始流程\n[x] 主流程\n  [x] if\n  [x] endif\n[x] 结束流程"));
    e->view.addStep(NoBlock, step_type::None, text("folder"), false, false);
    QCOMPARE(e->modified.count(), 1);
    QCOMPARE(e->boxes, QStringList());
}

void StepEditorTest::refusedSilently()
{
    e->add(e->applet.main, step_type::If, "if");
    const QString branch = e->add(e->applet.main, step_type::Else, "else");
    e->add(e->applet.main, step_type::EndIf, "endif");
    e->show();
    e->setCurrent(branch);
    const QStringList before = e->rows();
    e->addStep(step_type::Else);
    QVERIFY2(QToolTip::text().contains(text("else")), qPrintable(QToolTip::text()));
    e->addStep(step_type::Break);
    QVERIFY2(QToolTip::text().contains(text("break")), qPrintable(QToolTip::text()));
    QCOMPARE(e->boxes, QStringList());
    QCOMPARE(e->rows(), before);
    QCOMPARE(e->modified.count(), 0);
}

void StepEditorTest::refusedWithABox()
{
    e->show();
    e->setCurrent(e->applet.main);
    e->addStep(step_type::Else, true);
    QCOMPARE(e->boxes, QStringList({text("警告:添加失败")}));
    QCOMPARE(e->rows(), lines("[x] 初始流程\n[x] 主流程\n[x] 结束流程"));
    const ToldContext context;
    e->addStep(step_type::Else, true);
    QCOMPARE(e->boxes.last(), text("LogicView:警告:LogicView:添加失败"));
}

void StepEditorTest::failedCreationChangesNothing()
{
    e->show();
    QSignalSpy clicked(&e->view, &LogicView::processItemClicked);
    e->addStep(step_type::QuickStepFolder);
    QCOMPARE(e->boxes, QStringList({text("警告:添加步骤失败")}));
    QCOMPARE(e->rows(), lines("[x] 初始流程\n[x] 主流程\n[x] 结束流程"));
    QCOMPARE(e->modified.count() + clicked.count(), 0);
}

void StepEditorTest::droppedSteps()
{
    const QString first = e->add(e->applet.main, step_type::Delay, "first");
    const QString loop = e->add(e->applet.main, step_type::For, "for");
    const QString close = e->add(e->applet.main, step_type::EndFor, "endfor");
    const QString kept = processedit::addQuickStepInfo(e->applet.appName, first);
    e->show();
    emit e->model()->sigAppendItemNew(e->row(first)->index(), BasicStep, step_type::Buzz, text("x"),
                                      true);
    emit e->model()->sigAppendItemNew(e->row(loop)->index(), BasicStep, step_type::Break,
                                      text("x"));
    emit e->model()->sigAppendQuickStepItemNew(e->row(close)->index(), BasicStep, step_type::Delay,
                                               kept, true);
    processedit::removeQuickStepInfo(kept);
    QCOMPARE(e->rows(), lines(R"(
[x] 初始流程
[x] 主流程
  [x] 蜂鸣器
  [x] first
  [x] for
    [x] break
    [x] first
  [x] endfor
[x] 结束流程)"));
    QCOMPARE(e->modified.count(), 3);
}

void StepEditorTest::addedStepIsEnabledWithItsParents()
{
    const QString loop = e->add(e->applet.main, step_type::For, "for");
    const QString inner = e->add(loop, step_type::Delay, "delay");
    const QString close = e->add(e->applet.main, step_type::EndFor, "endfor");
    for (const QString& uuid : {loop, inner, close})
        e->applet.setEnabled(uuid, 0);
    e->show();
    e->setCurrent(inner);
    e->addStep(step_type::Buzz);
    QCOMPARE(e->rows(), lines(R"(
[x] 初始流程
[x] 主流程
  [-] for
    [ ] delay
    [x] 蜂鸣器
  [x] endfor
[x] 结束流程)"));
    QCOMPARE(e->modified.count(), 1);
}

void StepEditorTest::quickStepWithChildren()
{
    const QString loop = e->add(e->applet.main, step_type::While, "again");
    const QString inner = e->add(loop, step_type::If, "decide");
    e->add(inner, step_type::Delay, "wait");
    e->add(loop, step_type::EndIf, "decided");
    const QString kept = processedit::addQuickStepInfo(e->applet.appName, loop);
    processedit::removeProcess(e->applet.appName, e->sequence, loop);
    e->show();
    e->setCurrent(e->applet.end);
    e->view.addStep(BasicStep, step_type::While, text("again"), false, false, kept);
    processedit::removeQuickStepInfo(kept);
    QCOMPARE(e->rows(), lines(R"(
[x] 初始流程
[x] 主流程
[x] 结束流程
  [x] again
    [x] decide
      [x] wait
    [x] decided
  [x] endwhile)"));
    e->view.addStep(BasicStep, step_type::While, text("again"), false, false, kept);
    QCOMPARE(e->boxes, QStringList({text("警告:添加步骤失败")}));
}

void StepEditorTest::selectedStepsBecomeQuickSteps()
{
    const QString a = e->add(e->applet.main, step_type::Delay, "a");
    e->add(e->applet.main, step_type::For, "for");
    const QString hidden = e->add(e->applet.main, step_type::EndFor, "endfor");
    const QString nameless = e->add(e->applet.main, step_type::Buzz, "b");
    e->applet.get<IProcessBlock>(nameless)->property.name.clear();
    e->show();
    QSignalSpy added(&e->view, &LogicView::sigQuickStepsAdded);
    e->setCurrent(hidden);
    e->view.onQucikAddSlot();
    QCOMPARE(added.count(), 0);
    e->tree->selectAll();
    e->view.onQucikAddSlot();
    QCOMPARE(added.count(), 1);
    const QStringList ids = added.first().first().toStringList();
    QCOMPARE(ids.size(), 2);
    QVERIFY(!ids.contains(a));
    for (const QString& id : ids) {
        QVERIFY(processedit::getQuickStepInfo(id));
        processedit::removeQuickStepInfo(id);
    }
}

void StepEditorTest::appendedStatements()
{
    e->view.appendStatements({text("early;")}, {}); // nothing is shown yet
    const QString first = e->add(e->applet.main, step_type::Delay, "first");
    e->show();
    e->view.appendStatements({text("a = 1;"), text("b = 1;\nb = 2;")}, {1});
    e->row(first)->parent()->setCheckState(Qt::Unchecked);
    e->view.appendStatements({text("c = 1;")}, {});
    QCOMPARE(printTree(*e->model(), {0, 1}).mid(2, 4), lines(R"(
  [ ] first | 延时 1000 毫秒
  [ ] 语句 | a = 1;
  [ ] 语句 | b = 1;...
  [ ] 语句 | c = 1;)"));
    QVERIFY(e->showsTheService());
    const QStandardItem* second = e->row(e->applet.main)->child(2);
    const auto block =
        e->applet.get<StatementProcessBlock>(second->data(logic_roles::BlockUuid).toString());
    QVERIFY(block->getSplitFile());
    const QModelIndex last = e->row(e->applet.main)->child(2)->index();
    QCOMPARE(last.siblingAtColumn(1).data(Qt::ToolTipRole).toString(), text("b = 1;\nb = 2;"));
    QCOMPARE(e->modified.count(), 3);
    QCOMPARE(e->tableRows(), 7);
}

void StepEditorTest::newDiagnosticStep()
{
    e->addDiagnosticKinds();
    e->show();
    QSignalSpy added(&e->view, &LogicView::sigUdsBlockAdded);
    QSignalSpy stale(&e->view, &LogicView::sigUdsRuntimeStaleRequired);
    const QStringList empty = e->rows();
    e->view.addStep(DiagnosticStep, 1, text("会话"), false, false);
    QVERIFY(QToolTip::text().contains(text("诊断编辑器"))); // there is none
    QStringList asked;
    bool accept = false;
    e->view.setUdsEditor(
        [&](const QString& appName, const QString& id, int stepType, UDSProcessInfo& info) {
            asked = QStringList{appName, id, QString::number(stepType), info.name, info.json};
            info = {text("进入会话"), text("10 01"),   text("{}"), text("call"),
                    text("task"),     text("declare"), {}};
            return accept;
        });
    e->view.addStep(DiagnosticStep, 1, text("会话"), false, false);
    QCOMPARE(asked, QStringList({e->applet.appName, e->sequence, text("1"), text("会话"),
                                 text("{\"session\":1}")}));
    QCOMPARE(e->rows(), empty);
    QCOMPARE(e->modified.count() + added.count() + stale.count(), 0);

    accept = true;
    e->view.addStep(DiagnosticStep, 1, text("会话"), false, false);
    QCOMPARE(printTree(*e->model(), {0, 1})[2], text("  [x] 进入会话 | 10 01"));
    QVERIFY(e->showsTheService());
    const auto block = e->applet.get<UdsProcessBlock>(e->currentUuid());
    QCOMPARE(block->udsConfig(), std::string("{}"));
    QCOMPARE(block->callCode + block->taskCode + block->declareCode,
             std::string("calltaskdeclare"));
    QCOMPARE(block->property.name, std::string("会话"));
    QCOMPARE(added.first().first().toString(), e->currentUuid());
    QCOMPARE(e->modified.count() + stale.count(), 2);

    e->view.addStep(DiagnosticStep, 7, text("unknown"), false, false);
    QCOMPARE(e->boxes, QStringList({text("警告:添加步骤失败")}));
}

/// Of two kinds of step type 1 the one that is chosen by name says whether steps can stand in it.
void StepEditorTest::kindsOfOneStepType()
{
    e->addDiagnosticKinds(); // the first one takes none
    BaseStepProperty kind;
    kind.name = "安全会话";
    kind.baseType = DiagnosticStep;
    kind.stepType = 1;
    kind.hasChildren = true;
    process_edit::addCustomStepProperty(e->owner(), {kind});
    e->view.setUdsEditor([](const QString&, const QString&, int, UDSProcessInfo&) { return true; });
    e->show();
    e->view.show();
    e->view.addStep(DiagnosticStep, 1, text("安全会话"), false, false);
    const QString outer = e->currentUuid();
    QVERIFY(e->row(outer)->isDropEnabled());
    e->addStep(step_type::Delay);
    QCOMPARE(e->row(e->currentUuid())->parent(), e->row(outer));
    QVERIFY(e->isInSight(e->tree->currentIndex()));
    QVERIFY(e->showsTheService());
}

void StepEditorTest::editedDiagnosticStep()
{
    e->addDiagnosticKinds();
    const QString uuid = e->addDiagnostic(e->applet.main);
    const QString plain = e->add(e->applet.main, step_type::Delay, "a");
    e->applet.get<UdsProcessBlock>(uuid)->setUdsConfig("{1}");
    e->show();
    QSignalSpy doubleClicked(&e->view, &LogicView::sigItemDbClick);
    QSignalSpy removed(&e->view, &LogicView::sigUdsBlockRemoved);
    QSignalSpy added(&e->view, &LogicView::sigUdsBlockAdded);
    e->view.setUdsEditor([&](const QString&, const QString& id, int, UDSProcessInfo& info) {
        const bool isThis = id == uuid && info.json == text("{1}");
        info.name.clear();
        info.text = text("22 F1 90");
        return isThis;
    });
    e->view.setRuntimeStaleBlockUuids({uuid});
    e->view.onItemDoubleClicked(e->row(uuid)->index());
    QCOMPARE(printTree(*e->model(), {0, 1})[2], text("  [x] 读数据 | 22 F1 90 [需重新编译]"));
    QCOMPARE(removed.first(), QVariantList({uuid}));
    QCOMPARE(added.first(), QVariantList({uuid}));
    QCOMPARE(e->modified.count(), 1);
    QCOMPARE(doubleClicked.count(), 0);
    e->view.onItemDoubleClicked(e->row(plain)->index());
    QCOMPARE(doubleClicked.count(), 1);
}

PE_WIDGET_TEST("logic_step_editor", StepEditorTest)
#include "step_editor_test.moc"
