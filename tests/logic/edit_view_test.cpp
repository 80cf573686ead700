// A loaded sequence on the edit tab: its rows, what their cells hold, and how they follow blocks.

#include "logic/rows/flow_loader.h"
#include "logic/rows/step_rows.h"
#include "tests/logic/EditFixture.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"

#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QScrollBar>
#include <QTabWidget>
#include <QTest>

class EditViewTest : public QObject
{
    Q_OBJECT
private slots:
    void rowsOfASequence();
    void cellData();
    void clickOnAnIf();
    void syncWritesWhatDiffers();
    void refreshKeepsTheStaleMark();
    void renamedSequencesShowInCalls();
    void reloadingAndRemoving();
    void clearedFlows();
    void clicksNameTheBlock();
    void panelsFollowTheCurrentRow();
    void tableStandsBesideTheTree();
    void columnWidths();
    void cellsOfARun();
    void narrowTreeScrolls();
    void deepTree();
};

void EditViewTest::rowsOfASequence()
{
    EditFixture e("off- | if~[while[break] endwhile-] endif last- | buzz");
    QCOMPARE(step_trees::print(*e.model()),
             text("-: off- | ~: if~[while[break] endwhile-] endif last- | buzz"));
    QCOMPARE(e.view.currentSequenceId(), e.sequence);
    QAbstractItemModelTester tester(e.model(),
                                    QAbstractItemModelTester::FailureReportingMode::QtTest);
}

void EditViewTest::cellData()
{
    EditFixture e("statement line for endfor");
    e.block<StatementProcessBlock>("statement")->setCustomCode("a = 1;\nb = 2;");
    const auto toolTip = [&e](const char* step) {
        return e.cell(step, 1).data(Qt::ToolTipRole).toString();
    };
    QCOMPARE(e.description("statement"), text("a = 1;..."));
    QCOMPARE(toolTip("statement"), text("a = 1;\nb = 2;"));
    QVERIFY(!e.description("line").isEmpty());
    QCOMPARE(toolTip("line"), e.description("line"));
    const Qt::ItemFlags both = Qt::ItemIsDragEnabled | Qt::ItemIsDropEnabled;
    for (int column : {0, 1, 2}) {
        const QModelIndex index = e.cell("statement", column);
        QCOMPARE(index.data(logic_roles::BaseType).toInt(), int(BasicStep));
        QCOMPARE(index.data(logic_roles::StepType).toInt(), step_type::Statement);
        QCOMPARE(index.data(logic_roles::BlockUuid).toString(), e.id("statement"));
        QVERIFY(index.flags().testFlag(Qt::ItemIsAutoTristate));
        QVERIFY(index.flags().testFlag(Qt::ItemIsUserCheckable));
        QCOMPARE(index.flags() & both, Qt::ItemIsDragEnabled);
        QCOMPARE(e.cell("for", column).flags() & both, both);
        QCOMPARE(e.cell("endfor", column).flags() & both, Qt::ItemFlags());
    }
    QVERIFY(!e.row("statement")->icon().isNull());
    QVERIFY(!e.cell("statement", 1).data(Qt::CheckStateRole).isValid());

    const QStandardItem* flow = e.row(e.applet.main);
    QCOMPARE(flow->data(logic_roles::BaseType).toInt(), int(MainFlow));
    QVERIFY(!flow->data(logic_roles::StepType).isValid());
    QVERIFY(flow->isCheckable() && !flow->isDragEnabled());
}

void EditViewTest::clickOnAnIf()
{
    EditFixture e("if[a] else goto endif");
    e.view.resize(900, 400);
    e.view.show();
    const auto clickBox = [&](const QString& step) {
        const QRect rect = e.tree->visualRect(e.row(step)->index());
        QTest::mouseClick(e.tree->viewport(), Qt::LeftButton, Qt::NoModifier,
                          QPoint(rect.left() + 10, rect.center().y()));
    };
    QSignalSpy rowChanges(e.model(), &QAbstractItemModel::dataChanged);
    clickBox(text("if"));
    QCOMPARE(e.steps(), text(" | ~: if-[a-] else goto endif- | "));
    QCOMPARE(e.modified.count(), 1);
    // The boxes that followed are not announced: each would pass for a click.
    bool isJumpTold = false;
    for (const QList<QVariant>& change : qAsConst(rowChanges)) {
        const auto roles = change.at(2).value<QVector<int>>();
        if (roles.isEmpty() || roles.contains(Qt::CheckStateRole))
            QCOMPARE(change.at(0).toModelIndex(), e.cell("if"));
        isJumpTold = isJumpTold || change.at(0).toModelIndex() == e.cell("goto", 1);
    }
    QVERIFY(isJumpTold);

    clickBox(e.applet.main);
    QCOMPARE(e.steps(), text(" | if[a] else goto endif | "));
    clickBox(e.applet.main);
    QCOMPARE(e.steps(), text(" | -: if-[a-] else- goto- endif- | "));
    QCOMPARE(e.modified.count(), 3);
    e.row("a")->setText(text("only a text"));
    QCOMPARE(e.modified.count(), 3);
}

void EditViewTest::syncWritesWhatDiffers()
{
    EditFixture e("if[a]");
    e.view.syncCheckStatesToSdk();
    QCOMPARE(e.modified.count(), 0);
    e.applet.setEnabled(e.id("a"), 0);
    e.view.syncCheckStatesToSdk();
    QCOMPARE(e.block("a")->enableState, 2);
    QCOMPARE(e.modified.count(), 1);
}

void EditViewTest::refreshKeepsTheStaleMark()
{
    EditFixture e("statement break");
    const auto code = e.block<StatementProcessBlock>("statement");
    code->setCustomCode("x = 1;");
    const QString plain = e.description("break");
    e.view.setRuntimeStaleBlockUuids({e.id("statement")});
    e.view.setRuntimeStaleBlockUuids({e.id("statement")});
    QCOMPARE(e.description("statement"), text("x = 1; [需重新编译]"));
    QCOMPARE(e.description("break"), plain);

    code->setCustomCode("x = 2;");
    code->name = "renamed";
    e.view.refreshRow(e.id("statement"));
    QCOMPARE(e.row("statement")->text(), text("renamed"));
    QCOMPARE(e.description("statement"), text("x = 2; [需重新编译]"));

    e.view.setRuntimeStaleBlockUuids({e.id("break")});
    QCOMPARE(e.description("statement"), text("x = 2;"));
    QCOMPARE(e.description("break"), plain + text(" [需重新编译]"));
    e.view.addNewModelSlot(e.sequence); // a model loaded later has the marks too
    QCOMPARE(e.description("break"), plain + text(" [需重新编译]"));
}

void EditViewTest::renamedSequencesShowInCalls()
{
    EditFixture e;
    const QString called = e.applet.addSequence("Called");
    const QString call = e.applet.addCall(e.sequence, e.applet.main, called, "call");
    e.show();
    const QModelIndex description = e.row(call)->index().siblingAtColumn(1);
    QVERIFY(description.data().toString().contains(text("Called")));
    SequenceInfo info = sdk_ui_interface::processedit::getSequence(e.applet.appName, called);
    info.name = "Renamed";
    sdk_ui_interface::processedit::updateSequence(e.applet.appName, info);
    e.view.refreshSequenceNames();
    QVERIFY(description.data().toString().contains(text("Renamed")));
}

void EditViewTest::reloadingAndRemoving()
{
    EditFixture e("a");
    const QString second = e.applet.addSequence("Second");
    e.view.addNewModelSlot(second);
    e.make("b");
    e.view.addNewModelSlot(e.sequence);
    QCOMPARE(e.tree->model(), e.model());
    QCOMPARE(e.steps(), text(" | a b | "));

    e.view.showSequence(text("unknown"));
    e.view.addNewModelSlot(text("unknown"));
    QVERIFY(!e.view.editModel(text("unknown")));
    QCOMPARE(e.view.currentSequenceId(), e.sequence);

    e.clicked.clear();
    e.view.removeModelSlot({second});
    QCOMPARE(e.clicked.count(), 0);
    e.view.removeModelSlot({e.sequence, text("unknown")});
    QCOMPARE(e.clicked.count(), 1);
    QCOMPARE(e.clicked.first(), QVariantList({-1, QString()}));
    QVERIFY(e.view.currentSequenceId().isEmpty());
    e.view.removeAllModelSlot();
    QCOMPARE(e.clicked.count(), 2);
}

void EditViewTest::clearedFlows()
{
    EditFixture e("a-");
    e.view.clearCurrentSequenceRows();
    QCOMPARE(e.block("a")->enableState, 0); // the box was not clicked
    QCOMPARE(e.modified.count(), 0);
    QCOMPARE(step_trees::print(*e.model()), text(" |  | "));
    QVERIFY(!e.row("a"));
    QCOMPARE(e.tableRows(), 3);
}

void EditViewTest::clicksNameTheBlock()
{
    EditFixture e("a");
    const QModelIndex flow = e.row(e.applet.main)->index();
    const auto click = [&e](const QModelIndex& row, Qt::KeyboardModifiers keys) {
        QTest::mouseClick(e.tree->viewport(), Qt::LeftButton, keys,
                          e.tree->visualRect(row.siblingAtColumn(1)).center());
    };
    click(e.cell("a"), Qt::NoModifier);
    QCOMPARE(e.clicked.takeFirst(), QVariantList({int(BasicStep), e.id("a")}));
    // A flow and a step can't be selected together: the one that was clicked stays.
    click(flow, Qt::ControlModifier);
    QCOMPARE(e.clicked.takeFirst(), QVariantList({int(MainFlow), e.applet.main}));
    QCOMPARE(e.tree->selectionModel()->selectedRows(), QModelIndexList({flow}));
}

void EditViewTest::panelsFollowTheCurrentRow()
{
    EditFixture e(EditFixture::numbered(60));
    e.view.resize(700, 400);
    e.view.show();
    const auto told = [&e] {
        return e.clicked.isEmpty() ? QString() : e.clicked.last().at(1).toString();
    };
    for (const Qt::Key key :
         {Qt::Key_Down, Qt::Key_End, Qt::Key_PageUp, Qt::Key_Home, Qt::Key_PageDown}) {
        e.clicked.clear();
        QTest::keyClick(e.tree, key);
        QTRY_COMPARE(told(), e.currentUuid());
    }
    // A row at the edge scrolls away from under the mouse: no click comes of it.
    e.tree->scrollTo(e.cell("s30"), QAbstractItemView::PositionAtTop);
    QTest::mousePress(e.tree->viewport(), Qt::LeftButton, Qt::NoModifier,
                      e.tree->visualRect(e.cell("s35")).center());
    e.tree->scrollToTop();
    QTest::mouseRelease(e.tree->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(300, 5));
    QTRY_COMPARE(told(), e.id("s35"));
    // A jump from a message, once.
    e.clicked.clear();
    e.setCurrent("s7");
    e.view.onItemClicked(e.cell("s7"));
    QCoreApplication::processEvents();
    QCOMPARE(e.clicked.count(), 1);
    QCOMPARE(told(), e.id("s7"));
    // Another sequence begins with none.
    const QString other = e.applet.addSequence("Other");
    e.view.addNewModelSlot(other);
    e.view.showSequence(other);
    QCoreApplication::processEvents();
    QCOMPARE(e.clicked.count(), 1);
    QTest::keyClick(e.tree, Qt::Key_End);
    QTRY_COMPARE(e.clicked.count(), 2);
}

void EditViewTest::tableStandsBesideTheTree()
{
    EditFixture e(EditFixture::numbered(100));
    e.view.resize(700, 400);
    e.view.show();
    const QScrollBar* treeBar = e.tree->verticalScrollBar();
    QScrollBar* tableBar = e.table->verticalScrollBar();
    QCOMPARE(e.tableRows(), 103);
    QTRY_COMPARE(tableBar->maximum(), treeBar->maximum());
    e.tree->verticalScrollBar()->setValue(40);
    QCOMPARE(tableBar->value(), 40);
    tableBar->setValue(7);
    QCOMPARE(treeBar->value(), 7);
    const auto standsBeside = [&e](int tableRow, const QString& step) {
        const QRect treeRow = e.tree->visualRect(e.row(step)->index());
        const QPoint cellTop(0, e.table->rowViewportPosition(tableRow));
        return e.table->rowHeight(tableRow) == treeRow.height() &&
               e.table->viewport()->mapToGlobal(cellTop).y() ==
                   e.tree->viewport()->mapToGlobal(treeRow.topLeft()).y();
    };
    QVERIFY(standsBeside(0, e.applet.initial));
    e.tree->scrollToBottom();
    QVERIFY(standsBeside(102, e.applet.end));
    // Steps in sight have a button, flows none; a larger window brings more into sight.
    const auto hasButton = [&e](int row) {
        return e.table->indexWidget(e.table->model()->index(row, 0)) != nullptr;
    };
    QTRY_VERIFY(hasButton(101));
    QVERIFY(!hasButton(102) && !hasButton(50));
    e.tree->scrollToTop();
    QTRY_VERIFY(hasButton(2));
    QVERIFY(!hasButton(0) && !hasButton(1) && !hasButton(20));
    e.view.resize(700, 900);
    QTRY_VERIFY(hasButton(20));
    e.view.resize(700, 400);

    // A horizontal bar under the tree takes its room from the table too.
    e.view.setEditColumnWidths({600, 600, 600});
    QTRY_VERIFY(e.tree->horizontalScrollBar()->isVisible());
    QTRY_COMPARE(e.table->viewport()->height(), e.tree->viewport()->height());
    e.tree->scrollToBottom();
    QVERIFY(standsBeside(102, e.applet.end));
    e.view.setEditColumnWidths({100, 100, 100});
    QTRY_COMPARE(e.table->viewport()->height(), e.tree->viewport()->height());
}

void EditViewTest::columnWidths()
{
    EditFixture e("");
    e.view.resize(1200, 400);
    e.view.show();
    auto* header = e.tree->header();
    QCOMPARE(header->sectionSize(0), 200);
    QSignalSpy widths(&e.view, &LogicView::sigUpdateProcessWidgetWidth);
    e.view.setEditColumnWidths({300, 250, 100});
    e.view.setEditColumnWidths({10, 10});
    e.view.setEditColumnWidths({10, 0, 10});
    QCOMPARE(header->sectionSize(0), 300);
    QCOMPARE(header->sectionSize(1), 250);
    QCOMPARE(widths.count(), 0);
    header->resizeSection(0, 320);
    QCOMPARE(widths.count(), 1);
    QCOMPARE(widths.first().at(0).toStringList().mid(0, 2), lines("320\n250"));
    QCOMPARE(widths.first().at(1).toBool(), false);
    e.view.showSequence(e.sequence);
    QCOMPARE(header->sectionSize(0), 320);
}

void EditViewTest::cellsOfARun()
{
    const rows::Table<const char*> table{{"x = 1;\ny = 2;", "x = 1;..."}, {"x = 1;", "x = 1;"}};
    for (const auto& [code, shown] : table) {
        StatementProcessBlock block;
        block.property.editable = false;
        block.setCustomCode(code);
        const QList<QStandardItem*> cells = step_rows::stepRow(block, step_rows::Purpose::Run);
        QCOMPARE(cells.size(), logic_columns::RunCount);
        const QStandardItem* description = cells[logic_columns::Description];
        QCOMPARE(description->text(), text(shown));
        QCOMPARE(description->toolTip(), text(code));
        QCOMPARE(description->flags(), cells.first()->flags());
        QVERIFY(!cells[logic_columns::Setting]); // of which there is nothing to say
        qDeleteAll(cells);
    }
}

void EditViewTest::narrowTreeScrolls()
{
    EditFixture e("");
    e.view.show();
    const QHeaderView* header = e.tree->header();
    const QScrollBar* bar = e.tree->horizontalScrollBar();
    e.view.setEditColumnWidths({320, 260, 200});
    for (int width : {1200, 420, 260, 900}) {
        e.view.resize(width, 400);
        QCoreApplication::processEvents();
        QCOMPARE(header->sectionSize(0), 320);
        QCOMPARE(header->sectionSize(1), 260);
        QVERIFY(header->sectionSize(2) >= 120);
        // The end of the last column comes into sight, and nothing behind it.
        QCOMPARE(bar->maximum(), qMax(0, header->length() - e.tree->viewport()->width()));
        QCOMPARE(bar->maximum() > 0, width < 700);
    }
    // Wider columns in a window of the same size, as from the settings of an applet.
    e.view.setEditColumnWidths({800, 260, 200});
    QTRY_COMPARE(bar->maximum(), header->length() - e.tree->viewport()->width());
}

void EditViewTest::deepTree()
{
    constexpr int Depth = 5000;
    flow_loader::SequenceFlows flows;
    flow_loader::Blocks* level = &flows[MainFlow];
    for (int i = 0; i < Depth; ++i) {
        level->push_back(std::make_shared<IfProcessBlock>());
        level->front()->uuid = "block " + std::to_string(i);
        level->front()->property.hasChildren = true;
        level = &level->front()->children;
    }
    CustonStandModel model{QString(), QString()};
    flow_loader::fill(&model, flows, step_rows::Purpose::Edit);
    int depth = 0;
    const QStandardItem* item = model.rowOf(QStringLiteral("block %1").arg(Depth - 1));
    for (; item; item = item->parent())
        ++depth;
    QCOMPARE(depth, Depth + 1);
}

PE_WIDGET_TEST("logic_edit_view", EditViewTest)
#include "edit_view_test.moc"
