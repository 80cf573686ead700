// A loaded sequence on the edit tab: its rows, what their cells hold, and how they follow blocks.

#include "edits/DocumentEdits.h"
#include "logic/LogicView.h"
#include "logic/rows/CustonStandModel.h"
#include "logic/rows/flow_loader.h"
#include "logic/rows/logic_roles.h"
#include "logic/rows/step_rows.h"
#include "tests/logic/LogicFixture.h"
#include "tests/support/print_tree.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTableView>
#include <QTest>
#include <QTreeView>

using test_support::printTree;

namespace {

const QList<int> AllColumns{0, 1, 2};

} // namespace

class EditViewTest : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void rowsOfASequence();
    void cellData();
    void flowBoxesFollowTheirSteps();
    void checkBoxReachesTheBlock();
    void clickOnAnIf();
    void flowBoxOfManyRows();
    void syncWritesWhatDiffers();
    void refreshKeepsTheStaleMark();
    void renamedSequencesShowInCalls();
    void reloadingAndRemoving();
    void unknownSequencesChangeNothing();
    void clearedFlows();
    void clicksNameTheBlock();
    void panelsFollowTheCurrentRow();
    void tableStandsBesideTheTree();
    void columnWidths();
    void cellsOfARun();
    void narrowTreeScrolls();
    void deepTree();

private:
    QStandardItem* row(const QString& uuid) const
    {
        auto* model = qobject_cast<CustonStandModel*>(m_view->editModel(m_sequence));
        return model ? model->rowOf(uuid) : nullptr;
    }
    QModelIndex cell(const QString& uuid, int column) const
    {
        return row(uuid)->index().siblingAtColumn(column);
    }
    void show()
    {
        m_view->addNewModelSlot(m_sequence);
        m_view->showSequence(m_sequence);
    }

    std::unique_ptr<LogicFixture> m_applet;
    std::unique_ptr<LogicView> m_view;
    QString m_sequence;
};

void EditViewTest::init()
{
    m_view.reset();
    m_applet.reset();
    m_applet = std::make_unique<LogicFixture>();
    m_sequence = m_applet->addSequence("Main");
    m_view = std::make_unique<LogicView>();
    m_view->setCAppletName(m_applet->appName);
}

void EditViewTest::rowsOfASequence()
{
    m_applet->add(m_sequence, m_applet->initial, step_type::Delay, "first");
    const QString branch = m_applet->add(m_sequence, m_applet->main, step_type::If, "decide");
    const QString inner = m_applet->add(m_sequence, branch, step_type::While, "again");
    m_applet->add(m_sequence, inner, step_type::Break, "leave");
    m_applet->add(m_sequence, branch, step_type::EndWhile, "again end");
    m_applet->add(m_sequence, m_applet->main, step_type::EndIf, "decide end");
    m_applet->setEnabled(branch, 1);
    m_applet->add(m_sequence, m_applet->end, step_type::Buzz, "last");
    show();

    const QStringList expected{text("[x] 初始流程"),      text("  [x] first"),
                               text("[x] 主流程"),        text("  [-] decide"),
                               text("    [x] again"),     text("      [x] leave"),
                               text("    [x] again end"), text("  [x] decide end"),
                               text("[x] 结束流程"),      text("  [x] last")};
    QCOMPARE(printTree(*m_view->editModel(m_sequence)), expected);
    QCOMPARE(m_view->currentSequenceId(), m_sequence);
    QAbstractItemModelTester tester(m_view->editModel(m_sequence),
                                    QAbstractItemModelTester::FailureReportingMode::QtTest);
}

void EditViewTest::cellData()
{
    const QString code = m_applet->add(m_sequence, m_applet->main, step_type::Statement, "code");
    m_applet->get<StatementProcessBlock>(code)->setCustomCode("a = 1;\nb = 2;");
    const QString line = m_applet->add(m_sequence, m_applet->main, step_type::Statement, "line");
    m_applet->get<StatementProcessBlock>(line)->setCustomCode("a = 1;");
    const QString loop = m_applet->add(m_sequence, m_applet->main, step_type::For, "loop");
    const QString close = m_applet->add(m_sequence, m_applet->main, step_type::EndFor, "close");
    show();

    QCOMPARE(cell(code, 1).data().toString(), text("a = 1;..."));
    QCOMPARE(cell(code, 1).data(Qt::ToolTipRole).toString(), text("a = 1;\nb = 2;"));
    QCOMPARE(cell(line, 1).data().toString(), text("a = 1;"));
    QCOMPARE(cell(line, 1).data(Qt::ToolTipRole).toString(), cell(line, 1).data().toString());
    for (int column : AllColumns) {
        const QModelIndex index = cell(code, column);
        QCOMPARE(index.data(logic_roles::BaseType).toInt(), int(BasicStep));
        QCOMPARE(index.data(logic_roles::StepType).toInt(), step_type::Statement);
        QCOMPARE(index.data(logic_roles::BlockUuid).toString(), code);
        QVERIFY(index.flags().testFlag(Qt::ItemIsAutoTristate));
        QVERIFY(index.flags().testFlag(Qt::ItemIsUserCheckable));
        const Qt::ItemFlags both = Qt::ItemIsDragEnabled | Qt::ItemIsDropEnabled;
        QCOMPARE(index.flags() & both, Qt::ItemIsDragEnabled);
        QCOMPARE(cell(loop, column).flags() & both, both);
        QCOMPARE(cell(close, column).flags() & both, Qt::ItemFlags());
    }
    QVERIFY(!row(code)->icon().isNull());
    QCOMPARE(row(code)->icon().cacheKey(), row(line)->icon().cacheKey());
    QVERIFY(!cell(code, 1).data(Qt::CheckStateRole).isValid());

    const QStandardItem* flow = row(m_applet->main);
    QCOMPARE(flow->data(logic_roles::BaseType).toInt(), int(MainFlow));
    QVERIFY(!flow->data(logic_roles::StepType).isValid());
    QVERIFY(flow->isCheckable() && !flow->isDragEnabled());
}

void EditViewTest::flowBoxesFollowTheirSteps()
{
    const QString a = m_applet->add(m_sequence, m_applet->initial, step_type::Delay, "a");
    const QString b = m_applet->add(m_sequence, m_applet->main, step_type::Delay, "b");
    m_applet->add(m_sequence, m_applet->main, step_type::Delay, "c");
    m_applet->setEnabled(a, 0);
    m_applet->setEnabled(b, 0);
    show();
    QCOMPARE(printTree(*m_view->editModel(m_sequence)),
             QStringList({text("[ ] 初始流程"), text("  [ ] a"), text("[-] 主流程"),
                          text("  [ ] b"), text("  [x] c"), text("[x] 结束流程")}));
}

void EditViewTest::checkBoxReachesTheBlock()
{
    const QString uuid = m_applet->add(m_sequence, m_applet->main, step_type::Delay, "a");
    show();
    QSignalSpy modified(&DocumentEdits::instance(), &DocumentEdits::modified);
    row(uuid)->setCheckState(Qt::Unchecked);
    QCOMPARE(m_applet->get<IProcessBlock>(uuid)->enableState, 0);
    QCOMPARE(modified.count(), 1);
    row(uuid)->setText(text("only a text"));
    QCOMPARE(modified.count(), 1);
}

void EditViewTest::clickOnAnIf()
{
    const QString branch = m_applet->add(m_sequence, m_applet->main, step_type::If, "if");
    const QString inner = m_applet->add(m_sequence, branch, step_type::Delay, "delay");
    const QString other = m_applet->add(m_sequence, m_applet->main, step_type::Else, "else");
    const QString jump = m_applet->add(m_sequence, m_applet->main, step_type::Goto, "goto");
    const QString close = m_applet->add(m_sequence, m_applet->main, step_type::EndIf, "endif");
    m_view->resize(900, 400);
    m_view->show();
    show();
    auto* tree = m_view->findChild<QTreeView*>(text("treeView"));
    const auto clickBox = [&](const QString& uuid) {
        const QRect rect = tree->visualRect(row(uuid)->index());
        QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier,
                          QPoint(rect.left() + 10, rect.center().y()));
    };
    QSignalSpy modified(&DocumentEdits::instance(), &DocumentEdits::modified);
    QSignalSpy rowChanges(m_view->editModel(m_sequence), &QAbstractItemModel::dataChanged);
    clickBox(branch);
    QCOMPARE(printTree(*m_view->editModel(m_sequence)),
             QStringList({text("[x] 初始流程"), text("[-] 主流程"), text("  [ ] if"),
                          text("    [ ] delay"), text("  [x] else"), text("  [x] goto"),
                          text("  [ ] endif"), text("[x] 结束流程")}));
    const auto states = [&] {
        QList<int> states;
        for (const QString& uuid : {branch, inner, other, jump, close})
            states.append(m_applet->get<IProcessBlock>(uuid)->enableState);
        return states;
    };
    QCOMPARE(states(), QList<int>({0, 0, 2, 2, 0}));
    QCOMPARE(modified.count(), 1);
    // The boxes that followed are not announced: each would pass for a click.
    bool isJumpTold = false;
    for (const QList<QVariant>& change : qAsConst(rowChanges)) {
        const auto roles = change.at(2).value<QVector<int>>();
        if (roles.isEmpty() || roles.contains(Qt::CheckStateRole))
            QCOMPARE(change.at(0).toModelIndex(), row(branch)->index());
        isJumpTold = isJumpTold || change.at(0).toModelIndex() == cell(jump, 1);
    }
    QVERIFY(isJumpTold);

    clickBox(m_applet->main);
    QCOMPARE(states(), QList<int>({2, 2, 2, 2, 2}));
    QCOMPARE(row(inner)->checkState(), Qt::Checked);
    clickBox(m_applet->main);
    QCOMPARE(states(), QList<int>({0, 0, 0, 0, 0}));
    QCOMPARE(modified.count(), 3);
}

void EditViewTest::flowBoxOfManyRows()
{
    constexpr int Loops = 2500;
    for (int i = 0; i < Loops; ++i) {
        const QString loop = m_applet->add(m_sequence, m_applet->main, step_type::For, "for");
        m_applet->add(m_sequence, loop, step_type::Delay, "delay");
        m_applet->add(m_sequence, loop, step_type::Break, "break");
        m_applet->add(m_sequence, m_applet->main, step_type::EndFor, "endfor");
    }
    show();
    QSignalSpy modified(&DocumentEdits::instance(), &DocumentEdits::modified);
    for (const Qt::CheckState state : {Qt::Unchecked, Qt::Checked}) {
        row(m_applet->main)->setCheckState(state);
        const auto blocks = sdk_ui_interface::processedit::getAllProcessBySequenceID(
            m_applet->appName, m_sequence, IProcessBlock::MainFlowBlocks);
        QCOMPARE(int(blocks.size()), 4 * Loops);
        for (const auto& block : blocks) {
            QCOMPARE(block->enableState, int(state));
            QCOMPARE(row(QString::fromStdString(block->uuid))->checkState(), state);
        }
    }
    QCOMPARE(modified.count(), 2);
}

void EditViewTest::syncWritesWhatDiffers()
{
    const QString branch = m_applet->add(m_sequence, m_applet->main, step_type::If, "a");
    const QString inner = m_applet->add(m_sequence, branch, step_type::Delay, "b");
    show();
    QSignalSpy modified(&DocumentEdits::instance(), &DocumentEdits::modified);
    m_view->syncCheckStatesToSdk();
    QCOMPARE(modified.count(), 0);
    m_applet->setEnabled(inner, 0);
    m_view->syncCheckStatesToSdk();
    QCOMPARE(m_applet->get<IProcessBlock>(inner)->enableState, 2);
    QCOMPARE(modified.count(), 1);
}

void EditViewTest::refreshKeepsTheStaleMark()
{
    const QString uuid = m_applet->add(m_sequence, m_applet->main, step_type::Statement, "a");
    m_applet->get<StatementProcessBlock>(uuid)->setCustomCode("x = 1;");
    const QString other = m_applet->add(m_sequence, m_applet->main, step_type::Break, "b");
    show();
    const QString plain = cell(other, 1).data().toString();
    m_view->setRuntimeStaleBlockUuids({uuid});
    m_view->setRuntimeStaleBlockUuids({uuid});
    QCOMPARE(cell(uuid, 1).data().toString(), text("x = 1; [需重新编译]"));
    QCOMPARE(cell(other, 1).data().toString(), plain);

    m_applet->get<StatementProcessBlock>(uuid)->setCustomCode("x = 2;");
    m_applet->get<StatementProcessBlock>(uuid)->name = "renamed";
    m_view->refreshRow(uuid);
    QCOMPARE(row(uuid)->text(), text("renamed"));
    QCOMPARE(cell(uuid, 1).data().toString(), text("x = 2; [需重新编译]"));

    m_view->setRuntimeStaleBlockUuids({other});
    QCOMPARE(cell(uuid, 1).data().toString(), text("x = 2;"));
    QCOMPARE(cell(other, 1).data().toString(), plain + text(" [需重新编译]"));
    m_view->addNewModelSlot(m_sequence); // a model loaded later has the marks too
    QCOMPARE(cell(other, 1).data().toString(), plain + text(" [需重新编译]"));
}

void EditViewTest::renamedSequencesShowInCalls()
{
    const QString called = m_applet->addSequence("Called");
    const QString call = m_applet->addCall(m_sequence, m_applet->main, called, "call");
    show();
    QVERIFY(cell(call, 1).data().toString().contains(text("Called")));
    SequenceInfo info = sdk_ui_interface::processedit::getSequence(m_applet->appName, called);
    info.name = "Renamed";
    sdk_ui_interface::processedit::updateSequence(m_applet->appName, info);
    m_view->refreshSequenceNames();
    QVERIFY(cell(call, 1).data().toString().contains(text("Renamed")));
}

void EditViewTest::reloadingAndRemoving()
{
    m_applet->add(m_sequence, m_applet->main, step_type::Delay, "a");
    const QString second = m_applet->addSequence("Second");
    show();
    m_view->addNewModelSlot(second);
    m_applet->add(m_sequence, m_applet->main, step_type::Delay, "b");
    m_view->addNewModelSlot(m_sequence);
    auto* tree = m_view->findChild<QTreeView*>(text("treeView"));
    QCOMPARE(tree->model(), m_view->editModel(m_sequence));
    QCOMPARE(row(m_applet->main)->rowCount(), 2);

    QSignalSpy clicked(m_view.get(), &LogicView::processItemClicked);
    m_view->removeModelSlot({second});
    QCOMPARE(clicked.count(), 0);
    m_view->removeModelSlot({m_sequence, text("unknown")});
    QCOMPARE(clicked.count(), 1);
    QCOMPARE(clicked.first(), QVariantList({-1, QString()}));
    QVERIFY(m_view->currentSequenceId().isEmpty());
    m_view->removeAllModelSlot();
    QCOMPARE(clicked.count(), 2);
}

void EditViewTest::unknownSequencesChangeNothing()
{
    show();
    m_view->showSequence(text("unknown"));
    QCOMPARE(m_view->currentSequenceId(), m_sequence);
    m_view->addNewModelSlot(text("unknown"));
    QVERIFY(!m_view->editModel(text("unknown")));
}

void EditViewTest::clearedFlows()
{
    const QString uuid = m_applet->add(m_sequence, m_applet->main, step_type::Delay, "a");
    m_applet->setEnabled(uuid, 0);
    show();
    QSignalSpy modified(&DocumentEdits::instance(), &DocumentEdits::modified);
    m_view->clearCurrentSequenceRows();
    QCOMPARE(m_applet->get<IProcessBlock>(uuid)->enableState, 0); // the box was not clicked
    QCOMPARE(modified.count(), 0);
    QCOMPARE(printTree(*m_view->editModel(m_sequence)),
             QStringList({text("[x] 初始流程"), text("[x] 主流程"), text("[x] 结束流程")}));
    QVERIFY(!row(uuid));
    QCOMPARE(m_view->findChild<QTableView*>(text("tableView"))->model()->rowCount(), 3);
}

void EditViewTest::clicksNameTheBlock()
{
    const QString uuid = m_applet->add(m_sequence, m_applet->main, step_type::Delay, "a");
    show();
    auto* tree = m_view->findChild<QTreeView*>(text("treeView"));
    QSignalSpy clicked(m_view.get(), &LogicView::processItemClicked);
    const QModelIndex step = row(uuid)->index();
    const QModelIndex flow = row(m_applet->main)->index();
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier,
                      tree->visualRect(step.siblingAtColumn(1)).center());
    QCOMPARE(clicked.takeFirst(), QVariantList({int(BasicStep), uuid}));
    // A flow and a step can't be selected together: the one that was clicked stays.
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::ControlModifier,
                      tree->visualRect(flow.siblingAtColumn(1)).center());
    QCOMPARE(clicked.takeFirst(), QVariantList({int(MainFlow), m_applet->main}));
    QCOMPARE(tree->selectionModel()->selectedRows(), QModelIndexList({flow}));
}

void EditViewTest::panelsFollowTheCurrentRow()
{
    QStringList uuids{m_applet->initial, m_applet->main};
    for (int i = 0; i < 60; ++i)
        uuids << m_applet->add(m_sequence, m_applet->main, step_type::Delay, "a");
    uuids << m_applet->end;
    m_view->resize(700, 400);
    m_view->show();
    show();
    auto* tree = m_view->findChild<QTreeView*>(text("treeView"));
    QSignalSpy told(m_view.get(), &LogicView::processItemClicked);
    const auto toldUuid = [&] { return told.isEmpty() ? QString() : told.last().at(1).toString(); };
    for (const Qt::Key key :
         {Qt::Key_Down, Qt::Key_End, Qt::Key_PageUp, Qt::Key_Home, Qt::Key_PageDown}) {
        told.clear();
        QTest::keyClick(tree, key);
        QTRY_COMPARE(toldUuid(), tree->currentIndex().data(logic_roles::BlockUuid).toString());
    }
    // A row at the edge scrolls away from under the mouse: no click comes of it.
    tree->scrollTo(row(uuids[30])->index(), QAbstractItemView::PositionAtTop);
    QTest::mousePress(tree->viewport(), Qt::LeftButton, Qt::NoModifier,
                      tree->visualRect(row(uuids[35])->index()).center());
    tree->scrollToTop();
    QTest::mouseRelease(tree->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(300, 5));
    QTRY_COMPARE(toldUuid(), uuids[35]);
    // A jump from a message, once.
    told.clear();
    tree->setCurrentIndex(row(uuids[7])->index());
    m_view->onItemClicked(row(uuids[7])->index());
    QCoreApplication::processEvents();
    QCOMPARE(told.count(), 1);
    QCOMPARE(toldUuid(), uuids[7]);
    // Another sequence begins with none.
    const QString other = m_applet->addSequence("Other");
    m_view->addNewModelSlot(other);
    m_view->showSequence(other);
    QCoreApplication::processEvents();
    QCOMPARE(told.count(), 1);
    QTest::keyClick(tree, Qt::Key_End);
    QTRY_COMPARE(told.count(), 2);
}

void EditViewTest::tableStandsBesideTheTree()
{
    for (int i = 0; i < 100; ++i)
        m_applet->add(m_sequence, m_applet->main, step_type::Delay, "a");
    m_view->resize(700, 400);
    m_view->show();
    show();
    auto* tree = m_view->findChild<QTreeView*>(text("treeView"));
    auto* table = m_view->findChild<QTableView*>(text("tableView"));
    QCOMPARE(table->model()->rowCount(), 103);
    QCOMPARE(table->rowHeight(0), tree->visualRect(row(m_applet->main)->index()).height());
    QTRY_COMPARE(table->verticalScrollBar()->maximum(), tree->verticalScrollBar()->maximum());
    tree->verticalScrollBar()->setValue(40);
    QCOMPARE(table->verticalScrollBar()->value(), 40);
    table->verticalScrollBar()->setValue(7);
    QCOMPARE(tree->verticalScrollBar()->value(), 7);
    const auto standsBeside = [&](int tableRow, const QString& uuid) {
        const QRect treeRow = tree->visualRect(row(uuid)->index());
        const QPoint cellTop(0, table->rowViewportPosition(tableRow));
        return table->viewport()->mapToGlobal(cellTop).y() ==
               tree->viewport()->mapToGlobal(treeRow.topLeft()).y();
    };
    QVERIFY(standsBeside(0, m_applet->initial));
    tree->scrollToBottom();
    QVERIFY(standsBeside(102, m_applet->end));
    // Steps in sight have a button, flows none; a larger window brings more into sight.
    const auto hasButton = [table](int row) {
        return table->indexWidget(table->model()->index(row, 0)) != nullptr;
    };
    QTRY_VERIFY(hasButton(101));
    QVERIFY(!hasButton(102) && !hasButton(50));
    tree->scrollToTop();
    QTRY_VERIFY(hasButton(2));
    QVERIFY(!hasButton(0) && !hasButton(1) && !hasButton(20));
    m_view->resize(700, 900);
    QTRY_VERIFY(hasButton(20));
    m_view->resize(700, 400);

    // A horizontal bar under the tree takes its room from the table too.
    m_view->setEditColumnWidths({600, 600, 600});
    QTRY_VERIFY(tree->horizontalScrollBar()->isVisible());
    QTRY_COMPARE(table->viewport()->height(), tree->viewport()->height());
    tree->scrollToBottom();
    QVERIFY(standsBeside(102, m_applet->end));
    m_view->setEditColumnWidths({100, 100, 100});
    QTRY_COMPARE(table->viewport()->height(), tree->viewport()->height());
}

void EditViewTest::columnWidths()
{
    show();
    m_view->resize(1200, 400);
    m_view->show();
    auto* header = m_view->findChild<QTreeView*>(text("treeView"))->header();
    QCOMPARE(header->sectionSize(0), 200);
    QSignalSpy widths(m_view.get(), &LogicView::sigUpdateProcessWidgetWidth);
    m_view->setEditColumnWidths({300, 250, 100});
    m_view->setEditColumnWidths({10, 10});
    m_view->setEditColumnWidths({10, 0, 10});
    QCOMPARE(header->sectionSize(0), 300);
    QCOMPARE(header->sectionSize(1), 250);
    QCOMPARE(widths.count(), 0);
    header->resizeSection(0, 320);
    QCOMPARE(widths.count(), 1);
    QCOMPARE(widths.first().at(0).toStringList().mid(0, 2),
             QStringList({text("320"), text("250")}));
    QCOMPARE(widths.first().at(1).toBool(), false);
    m_view->showSequence(m_sequence);
    QCOMPARE(header->sectionSize(0), 320);
}

void EditViewTest::cellsOfARun()
{
    auto block = std::make_shared<StatementProcessBlock>();
    block->property.editable = false;
    for (const char* code : {"x = 1;\ny = 2;", "x = 1;", ""}) {
        block->setCustomCode(code);
        const QList<QStandardItem*> cells = step_rows::stepRow(*block, step_rows::Purpose::Run);
        QCOMPARE(cells.size(), logic_columns::RunCount);
        const auto shown = [&cells](int column) {
            return cells[column] ? cells[column]->text() : QString();
        };
        const QString description = QString::fromStdString(block->description());
        QCOMPARE(shown(logic_columns::Description).remove(QStringLiteral("...")),
                 description.section(u'\n', 0, 0));
        QCOMPARE(shown(logic_columns::Setting), QString::fromStdString(block->settingText()));
        for (const QStandardItem* cell : cells) {
            QVERIFY(!cell || cell->flags() == cells[0]->flags());
            QVERIFY(!cell || !cell->text().isEmpty() || cell == cells[0]);
        }
        qDeleteAll(cells);
    }
}

void EditViewTest::narrowTreeScrolls()
{
    show();
    m_view->show();
    auto* tree = m_view->findChild<QTreeView*>(text("treeView"));
    const QHeaderView* header = tree->header();
    const QScrollBar* bar = tree->horizontalScrollBar();
    m_view->setEditColumnWidths({320, 260, 200});
    for (int width : {1200, 420, 260, 900}) {
        m_view->resize(width, 400);
        QCoreApplication::processEvents();
        QCOMPARE(header->sectionSize(0), 320);
        QCOMPARE(header->sectionSize(1), 260);
        QVERIFY(header->sectionSize(2) >= 120);
        // The end of the last column comes into sight, and nothing behind it.
        QCOMPARE(bar->maximum(), qMax(0, header->length() - tree->viewport()->width()));
        QCOMPARE(bar->maximum() > 0, width < 700);
    }
    // Wider columns in a window of the same size, as from the settings of an applet.
    m_view->setEditColumnWidths({800, 260, 200});
    QTRY_COMPARE(bar->maximum(), header->length() - tree->viewport()->width());
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
    CustonStandModel model(QString(), m_sequence);
    flow_loader::fill(&model, flows, step_rows::Purpose::Edit);
    int depth = 0;
    const QStandardItem* item = model.rowOf(QStringLiteral("block %1").arg(Depth - 1));
    for (; item; item = item->parent())
        ++depth;
    QCOMPARE(depth, Depth + 1);
}

PE_WIDGET_TEST("logic_edit_view", EditViewTest)
#include "edit_view_test.moc"
