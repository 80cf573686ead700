// The rows of the variable panel: adding, removing, copying, moving, and what other sequences see.

#include "tests/support/print_tree.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/variables/VariablePanelFixture.h"

#include <QMenu>
#include <QMimeData>
#include <QScrollBar>

using namespace variable_rows;

namespace {

/// Drags rows and drops them before child @p row of @p parent, as the view does.
bool drop(const VariablePanelFixture& f, const QModelIndexList& rows, const QModelIndex& parent,
          int row)
{
    QAbstractItemModel* model = f.tree->model();
    const std::unique_ptr<QMimeData> data(model->mimeData(rows));
    return model->canDropMimeData(data.get(), Qt::MoveAction, row, 0, parent) &&
           !model->dropMimeData(data.get(), Qt::MoveAction, row, 0, parent);
}

} // namespace

class VariablePanelTest : public QObject
{
    Q_OBJECT
private slots:
    void groups();
    void adding();
    void removing();
    void removingAGroupKeepsTheLocked();
    void copiesArePastedAcrossSequences();
    void dragData();
    void moving();
    void movesChangeScopeAndOwner();
    void givenVariables();
    void contextMenu();
    void clicksNeverMixRows();
    void copyKeysAreForTheWindow();
    void refreshKeepsWhatThePersonSees();
    void columnWidths();
    void variablesOfARun();
};

void VariablePanelTest::groups()
{
    VariablePanelFixture f("a | p | g");
    f.make("b", f.second);
    QString header;
    for (int column = 0; column < f.tree->model()->columnCount(); ++column)
        header += f.tree->model()->headerData(column, Qt::Horizontal).toString();
    QCOMPARE(header, text("名称值类型备注"));
    QString titles;
    for (int scope = 0; scope < 3; ++scope) {
        titles += f.group(scope).data().toString();
        QVERIFY(uuidOf(f.group(scope)).isEmpty() && f.tree->isExpanded(f.group(scope)));
        QVERIFY(!(f.group(scope).flags() & Qt::ItemIsDragEnabled));
    }
    QCOMPARE(titles, text("序列变量流程变量全局变量"));
    QCOMPARE(f.names(), text("a | p | g"));
    f.panel.showSequence(f.second);
    QCOMPARE(f.names(), text("b | p | g"));
    f.panel.removeSequenceModels({f.second});
    QVERIFY(!f.tree->model());
    f.panel.showSequence(QString());
    QVERIFY(!f.tree->model());
}

void VariablePanelTest::adding()
{
    VariablePanelFixture f("");
    f.panel.addVariableSlot(); // without a current row
    QCOMPARE(f.takeTold(), QString());
    const char* told[] = {"modified", "shared 0; modified", "shared 1; modified"};
    for (int scope = 0; scope < 3; ++scope) {
        f.select({f.group(scope)});
        f.panel.addVariableSlot();
        QCOMPARE(f.takeTold(), text(told[scope]));
        QVERIFY(f.tree->isExpanded(f.group(scope)));              // which was empty
        f.select({f.tree->model()->index(0, 0, f.group(scope))}); // beside a row of the group
        f.panel.addVariableSlot();
        f.takeTold();
        for (int row = 0; row < 2; ++row) {
            const QModelIndex index = f.tree->model()->index(row, 0, f.group(scope));
            const processVariable added = process_edit::getVariable(uuidOf(index).toStdString());
            QCOMPARE(int(added.scope), scope);
            QCOMPARE(QString::fromStdString(added.name), index.data().toString());
        }
    }
    f.panel.showSequence(f.second);
    QCOMPARE(f.tree->model()->rowCount(f.group(SequenceVariable)), 0);
    QCOMPARE(f.tree->model()->rowCount(f.group(ProcessVariable)), 2);
}

void VariablePanelTest::removing()
{
    VariablePanelFixture f("a b c d e | p | g");
    f.panel.reloadSequenceVariables(f.second);
    f.panel.reloadSequenceVariables(f.first);
    f.panel.removeSelectedVariables();
    QCOMPARE(f.takeTold(), QString());
    f.select({f.cell("d"), f.group(0), f.cell("a"), f.cell("b")});
    f.panel.removeSelectedVariables();
    QCOMPARE(f.names(), text("c e | p | g"));
    QCOMPARE(f.takeTold(), text("modified"));
    QVERIFY(f.record("d").uuid.empty());
    f.select({f.cell("p"), f.cell("g"), f.cell("e")});
    f.panel.removeSelectedVariables();
    QCOMPARE(f.takeTold(), text("shared 1 p,g,e; modified"));
    QCOMPARE(f.names(), text("c |  | "));
    f.panel.showSequence(f.second);
    QCOMPARE(f.names(), text(" |  | "));
}

void VariablePanelTest::removingAGroupKeepsTheLocked()
{
    VariablePanelFixture f("a | p locked q");
    f.lock("locked");
    f.select({f.cell("p")});
    f.panel.removeAllVariables(); // on a variable row
    QCOMPARE(f.takeTold(), QString());
    f.select({f.group(ProcessVariable)});
    f.panel.removeAllVariables();
    QCOMPARE(f.names(), text("a | locked | "));
    QCOMPARE(f.takeTold(), text("shared 0 q,p; modified"));
    QVERIFY(f.record("q").uuid.empty() && !f.record("locked").uuid.empty());
}

void VariablePanelTest::copiesArePastedAcrossSequences()
{
    VariablePanelFixture f("a:u8=7 b:string=x");
    f.make("there last", f.second);
    f.select({f.cell("b"), f.cell("a"), f.group(2)});
    f.panel.copyVariable();
    f.remove("b");
    f.panel.showSequence(f.second);
    f.select({f.cell("there")});
    f.panel.pasteVariable();
    QCOMPARE(f.names(), text("there b a last |  | "));
    QCOMPARE(f.selectedNames(), text("b a"));
    QCOMPARE(f.takeTold(), text("modified"));
    const QString uuid = uuidOf(f.tree->model()->index(2, 0, f.group(0)));
    const processVariable pasted = process_edit::getVariable(uuid.toStdString());
    QVERIFY(uuid != f.uuid("a"));
    QCOMPARE(pasted.value, std::string("7"));
    QCOMPARE(pasted.ownerId, f.second.toStdString());
    f.select({f.group(GlobalVariable)});
    f.panel.pasteVariable();
    QVERIFY(f.takeTold().startsWith(text("shared 1 ")));
    QCOMPARE(process_edit::getAllGlobalVariable().size(), std::size_t(2));
    f.tree->selectionModel()->clear();
    f.panel.pasteVariable(); // nowhere
    QCOMPARE(process_edit::getAllGlobalVariable().size(), std::size_t(2));
}

void VariablePanelTest::dragData()
{
    VariablePanelFixture f("a | | g");
    const QAbstractItemModel* model = f.tree->model();
    const std::unique_ptr<QMimeData> data(model->mimeData(
        {f.cell("g"), f.cell("g", ValueColumn), f.group(1), f.cell("a"), f.cell("a", 3)}));
    QStringList formats = data->formats();
    formats.sort();
    QCOMPARE(formats, lines("application/uuidVec\napplication/x-qabstractitemmodeldatalist\n"
                            "application/x-qstandarditemmodeldatalist"));
    QCOMPARE(QString::fromUtf8(data->data(text("application/uuidVec"))),
             f.uuid("g") + QLatin1Char(',') + f.uuid("a"));
    QVERIFY(!model->canDropMimeData(data.get(), Qt::CopyAction, 0, 0, f.group(0)));
    QVERIFY(!model->canDropMimeData(data.get(), Qt::MoveAction, -1, 0, f.cell("a")));
    QMimeData foreign;
    foreign.setText(f.uuid("a"));
    QVERIFY(!model->canDropMimeData(&foreign, Qt::MoveAction, 0, 0, f.group(0)));
    QCOMPARE(f.tree->dragDropMode(), QAbstractItemView::InternalMove);
}

void VariablePanelTest::moving()
{
    const rows::Table<const char*, int, int, const char*, const char*> table{
        // -1: between the groups
        {"down", "a", 0, 2, "b a c d | p q | g", "modified"},
        {"several around the place", "d a", 0, 2, "b d a c | p q | g", "modified"},
        {"on the group", "b", 0, -1, "a c d b | p q | g", "modified"},
        {"into another group", "b c", 1, 1, "a d | p b c q | g", "shared 0 b,c; modified"},
        {"from the global ones", "g", 0, 0, "g a b c d | p q | ", "shared 1 g; modified"},
        {"from two groups", "p a", 0, 4, "b c d p a | q | g", "shared 0 p,a; modified"},
        {"between two groups", "g", -1, 1, "a b c d g | p q | ", "shared 1 g; modified"}};
    for (const auto& [rowName, dragged, group, row, names, told] : table) {
        const rows::Named named(rowName);
        VariablePanelFixture f("a b c d | p q | g");
        QStringList expected = text(dragged).split(u' ');
        QModelIndexList rows;
        for (const QString& name : qAsConst(expected))
            rows.append(f.cell(qPrintable(name)));
        f.takeTold();
        QVERIFY(drop(f, rows, group < 0 ? QModelIndex() : f.group(group), row));
        QCOMPARE(f.names(), text(names));
        QCOMPARE(f.takeTold(), text(told));
        QStringList selected = f.selectedNames().split(u' ');
        selected.sort();
        expected.sort();
        QCOMPARE(selected, expected);
    }
}

void VariablePanelTest::movesChangeScopeAndOwner()
{
    VariablePanelFixture f("a:u8=7");
    const std::string owners[] = {f.second.toStdString(), f.appName.toStdString(), std::string()};
    for (const int scope : {ProcessVariable, GlobalVariable, SequenceVariable}) {
        QVERIFY(drop(f, {f.cell("a")}, f.group(scope), 0));
        QCOMPARE(int(f.record("a").scope), scope);
        QCOMPARE(f.record("a").ownerId, owners[scope]);
        QCOMPARE(f.value("a"), text("7"));
        f.panel.showSequence(f.second); // into which the last drop goes
        QCOMPARE(f.cell("a").parent(), f.group(scope));
    }
    f.panel.showSequence(f.first);
    QVERIFY(!f.cell("a").isValid());
}

void VariablePanelTest::givenVariables()
{
    VariablePanelFixture f(" | p:u8=1");
    f.panel.addVarToCurrentView(text("a"), text(" 12 "), DrelU16, SequenceVariable, false);
    QCOMPARE(f.names(), text("a | p | "));
    QCOMPARE(f.takeTold(), text("modified"));
    f.panel.addVarToCurrentView(text("p"), QString(), DrelString, SequenceVariable, false);
    QCOMPARE(f.names(), text("a | p | "));
    QCOMPARE(f.shown("p", ValueColumn) + f.shown("p", TypeColumn), text("NULLstring"));
    QCOMPARE(f.cell("p").data(LengthRole).toInt(), f.record("p").length);
    QCOMPARE(f.takeTold(), text("shared 0 p; modified"));
    f.panel.addVarToCurrentView(text("p"), text("1.50"), DrelDouble, GlobalVariable, true);
    QCOMPARE(f.names(), text("a | p | p"));
    f.takeTold();
    f.panel.addVarToCurrentView(text("1a"), text("1"), DrelU8, SequenceVariable, true);
    QCOMPARE(f.takeTold(), QString());
    f.panel.removeAllModels();
    f.panel.addVarToCurrentView(text("q"), text("1"), DrelU8, ProcessVariable, true);
    f.panel.showSequence(f.second);
    QCOMPARE(f.names(), text(" | p q | p"));
}

void VariablePanelTest::contextMenu()
{
    VariablePanelFixture f("a");
    const auto entries = [&f](const QModelIndex& index) {
        const std::unique_ptr<QMenu> menu(
            f.panel.makeContextMenu(f.tree->visualRect(index).center()));
        QStringList texts{menu->title()};
        for (const QAction* action : menu->actions())
            texts.append((action->isEnabled() ? text("+") : text("-")) + action->text());
        return QString(texts.join(u' '));
    };
    QCOMPARE(entries(f.cell("a")), text("Context Menu +添加变量 +删除选中变量 +复制选中变量 "
                                        "-粘贴已复制的变量"));
    f.select({f.cell("a")});
    f.panel.copyVariable();
    QCOMPARE(entries(f.group(1)), text("Context Menu +添加变量 +删除所有变量 +粘贴已复制的变量"));
    QVERIFY(!f.panel.makeContextMenu(QPoint(20, f.tree->viewport()->height() - 3)));
    f.panel.setReadOnly(true);
    QVERIFY(!f.panel.makeContextMenu(f.tree->visualRect(f.cell("a")).center())->isEnabled());
}

void VariablePanelTest::clicksNeverMixRows()
{
    VariablePanelFixture f("a b");
    const auto click = [&f](const QModelIndex& index) {
        QTest::mouseClick(f.tree->viewport(), Qt::LeftButton, Qt::ControlModifier,
                          f.tree->visualRect(index).topLeft() + QPoint(3, 3));
        return f.selectedNames();
    };
    QCOMPARE(click(f.cell("a")), text("a"));
    QCOMPARE(click(f.cell("b")), text("a b"));
    QCOMPARE(click(f.group(1)), text("流程变量"));
    QCOMPARE(click(f.group(2)), text("流程变量 全局变量"));
    QCOMPARE(click(f.cell("b")), text("b"));
}

void VariablePanelTest::copyKeysAreForTheWindow()
{
    class Window : public QWidget
    {
    public:
        int keys = 0;

    protected:
        void keyPressEvent(QKeyEvent* event) override
        {
            keys += event->matches(QKeySequence::Copy) || event->matches(QKeySequence::Paste);
        }
    };
    Window window;
    VariablePanelFixture f("a"); // goes first
    f.select({f.group(0)});
    f.panel.setParent(&window);
    for (const QKeySequence::StandardKey key : {QKeySequence::Copy, QKeySequence::Paste})
        QTest::keySequence(f.tree, QKeySequence(key));
    QCOMPARE(window.keys, 2);
}

void VariablePanelTest::refreshKeepsWhatThePersonSees()
{
    QString variables;
    for (int i = 0; i < 60; ++i)
        variables += QStringLiteral("v%1 ").arg(i);
    VariablePanelFixture f(qPrintable(variables + text("| p")));
    f.tree->setExpanded(f.group(1), false);
    f.select({f.cell("v3"), f.cell("v40")});
    f.tree->selectionModel()->setCurrentIndex(f.cell("v40", TypeColumn),
                                              QItemSelectionModel::NoUpdate);
    f.tree->verticalScrollBar()->setValue(25);
    f.make(" | | g", f.first);
    f.remove("v3");
    f.panel.refreshSequences({f.second}); // another one: nothing happens
    QVERIFY(f.cell("v3").isValid());
    f.panel.refreshSequences({f.first});
    QVERIFY(!f.cell("v3").isValid());
    QCOMPARE(f.tree->model()->rowCount(f.group(2)), 1);
    QCOMPARE(f.selectedNames(), text("v40"));
    QCOMPARE(f.tree->currentIndex(), f.cell("v40", TypeColumn));
    QCOMPARE(f.tree->verticalScrollBar()->value(), 25);
    QVERIFY(!f.tree->isExpanded(f.group(1)));
    QVERIFY(f.tree->isExpanded(f.group(0)) && f.tree->isExpanded(f.group(2)));
    QCOMPARE(f.takeTold(), QString());
}

void VariablePanelTest::columnWidths()
{
    VariablePanelFixture f;
    QStringList widths;
    QObject::connect(&f.panel, &wgtLocalVariable::sigUpdateVarTreeWidth, &f.panel,
                     [&widths](const QStringList& list) { widths = list; });
    f.panel.reloadSequenceVariables(f.first);
    f.panel.setColumnWidths({110, 70, 60, 200});
    f.panel.setColumnWidths({1, 2});
    f.panel.setColumnWidths({110, 70, 0, 200}); // a column that was never seen
    QCOMPARE(f.tree->columnWidth(2), 60);
    QVERIFY(widths.isEmpty());
    f.panel.showSequence(f.second);
    QCOMPARE(f.tree->columnWidth(0), 110);
    f.tree->header()->resizeSection(1, 95);
    QCOMPARE(widths.size(), 4);
    widths.removeLast(); // follows the width of the panel
    QCOMPARE(widths, lines("110\n95\n60"));
    f.panel.showSequence(f.first);
    QCOMPARE(f.tree->columnWidth(1), 95);
}

void VariablePanelTest::variablesOfARun()
{
    VariablePanelFixture f("a | p");
    f.make("b", f.second);
    const auto* run = f.panel.findChild<QTreeView*>(text("runTreeView"));
    const auto names = [run] { return test_support::printTree(*run->model()).join(u' '); };
    f.panel.showRunSequence(f.second, nullptr);
    QVERIFY(run->isVisible() && !f.tree->isVisible());
    QCOMPARE(names(), text("序列变量   b 流程变量   p 全局变量"));

    auto owner = std::make_shared<processTemplateInfo>();
    for (const char* sequence : {"T1", "T2"}) {
        processVariable variable;
        variable.name = std::string("of") + sequence;
        variable.ownerId = sequence;
        owner->sequenceVariables.push_back(variable);
    }
    f.panel.showRunSequence(text("T2"), owner);
    QCOMPARE(names(), text("序列变量   ofT2 流程变量 全局变量"));

    // What is being typed goes on.
    f.panel.showRunSequence(QString(), nullptr);
    QVERIFY(f.tree->isVisible());
    QWidget* line = f.edit(f.cell("a", ValueColumn));
    f.panel.showRunSequence(f.second, nullptr);
    QVERIFY(line->isVisible());
    QTest::keyClick(line, Qt::Key_Return);
    QTRY_VERIFY(run->isVisible());
}

PE_WIDGET_TEST("variable_panel", VariablePanelTest)
#include "variable_panel_test.moc"
