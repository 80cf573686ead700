// The rows of the variable panel: adding, removing, copying, moving, and what other sequences see.

#include "tests/support/print_tree.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"
#include "tests/variables/VariablePanelFixture.h"

#include <QMenu>
#include <QMimeData>
#include <QScrollBar>

using namespace variable_rows;

namespace {

QStringList namesOf(const std::vector<processVariable>& variables)
{
    QStringList names;
    for (const processVariable& variable : variables)
        names.append(QString::fromStdString(variable.name));
    return names;
}

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
    VariablePanelFixture f;
    f.make(SequenceVariable, "a");
    f.make(SequenceVariable, "b", "s32", "0", f.second);
    f.make(ProcessVariable, "p");
    f.make(GlobalVariable, "g");
    f.panel.reloadSequenceVariables(f.first);
    QStringList header;
    for (int column = 0; column < f.tree->model()->columnCount(); ++column)
        header.append(f.tree->model()->headerData(column, Qt::Horizontal).toString());
    QCOMPARE(header.join(QLatin1Char(' ')), text("名称 值 类型 备注"));
    QStringList titles;
    for (int scope = 0; scope < 3; ++scope) {
        titles.append(f.group(scope).data().toString());
        QCOMPARE(f.group(scope).data(ScopeRole).toInt(), scope);
        QVERIFY(uuidOf(f.group(scope)).isEmpty() && f.tree->isExpanded(f.group(scope)));
        QVERIFY(!(f.group(scope).flags() & Qt::ItemIsDragEnabled));
    }
    QCOMPARE(titles.join(QLatin1Char(' ')), text("序列变量 流程变量 全局变量"));
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
    VariablePanelFixture f;
    f.panel.reloadSequenceVariables(f.first);
    f.panel.addVariableSlot(); // without a current row
    QVERIFY(f.told.isEmpty());
    const QStringList told[] = {{text("modified")},
                                {text("shared 0"), text("modified")},
                                {text("shared 1"), text("modified")}};
    for (int scope = 0; scope < 3; ++scope) {
        f.told.clear();
        f.select({f.group(scope)});
        f.panel.addVariableSlot();
        QCOMPARE(f.told, told[scope]);
        QVERIFY(f.tree->isExpanded(f.group(scope)));              // which was empty
        f.select({f.tree->model()->index(0, 0, f.group(scope))}); // beside a row of the group
        f.panel.addVariableSlot();
        QCOMPARE(f.tree->model()->rowCount(f.group(scope)), 2);
        for (int row = 0; row < 2; ++row) {
            const processVariable added =
                f.record(uuidOf(f.tree->model()->index(row, 0, f.group(scope))));
            QCOMPARE(int(added.scope), scope);
            QVERIFY(!added.name.empty());
        }
    }
    f.panel.showSequence(f.second);
    QCOMPARE(f.tree->model()->rowCount(f.group(SequenceVariable)), 0);
    QCOMPARE(f.tree->model()->rowCount(f.group(ProcessVariable)), 2);
}

void VariablePanelTest::removing()
{
    VariablePanelFixture f;
    QStringList uuids;
    for (const char* name : {"a", "b", "c", "d", "e"})
        uuids.append(f.make(SequenceVariable, name));
    const QString process = f.make(ProcessVariable, "p");
    const QString global = f.make(GlobalVariable, "g");
    f.panel.reloadSequenceVariables(f.second);
    f.panel.reloadSequenceVariables(f.first);
    f.panel.removeSelectedVariables();
    QVERIFY(f.told.isEmpty());
    f.select({f.cell(uuids[3]), f.group(0), f.cell(uuids[0]), f.cell(uuids[1])});
    f.panel.removeSelectedVariables();
    QCOMPARE(f.names(), text("c e | p | g"));
    QCOMPARE(f.told, QStringList{text("modified")});
    QVERIFY(f.record(uuids[3]).uuid.empty());
    f.select({f.cell(process), f.cell(global), f.cell(uuids[4])});
    f.told.clear();
    f.panel.removeSelectedVariables();
    QCOMPARE(f.told, QStringList({text("shared 1 p,g,e"), text("modified")}));
    QCOMPARE(f.names(), text("c |  | "));
    f.panel.showSequence(f.second);
    QCOMPARE(f.names(), text(" |  | "));
    QVERIFY(f.messages.isEmpty());
}

void VariablePanelTest::removingAGroupKeepsTheLocked()
{
    VariablePanelFixture f;
    f.make(ProcessVariable, "p");
    const QString locked = f.make(ProcessVariable, "locked");
    f.make(ProcessVariable, "q");
    f.make(SequenceVariable, "a");
    processVariable record = f.record(locked);
    record.isLocked = true;
    process_edit::updateVariable(f.appName.toStdString(), record, ProcessVariable);
    f.panel.reloadSequenceVariables(f.first);
    f.select({f.tree->model()->index(0, 0, f.group(SequenceVariable))});
    f.panel.removeAllVariables(); // on a variable row
    QVERIFY(f.told.isEmpty());
    f.select({f.group(ProcessVariable)});
    f.panel.removeAllVariables();
    QCOMPARE(f.names(), text("a | locked | "));
    QCOMPARE(f.told, QStringList({text("shared 0 q,p"), text("modified")}));
    QCOMPARE(namesOf(process_edit::getAllCAppletVariable(f.appName.toStdString())),
             QStringList{text("locked")});
}

void VariablePanelTest::copiesArePastedAcrossSequences()
{
    VariablePanelFixture f;
    const QString a = f.make(SequenceVariable, "a", "u8", "7");
    const QString b = f.make(SequenceVariable, "b", "string", "x");
    const QString there = f.make(SequenceVariable, "there", "s32", "0", f.second);
    f.make(SequenceVariable, "last", "s32", "0", f.second);
    f.panel.reloadSequenceVariables(f.first);
    f.select({f.cell(b), f.cell(a), f.group(2)});
    f.panel.copyVariable();
    process_edit::removeVariables(f.appName.toStdString(), {b.toStdString()});
    f.panel.showSequence(f.second);
    f.select({f.cell(there)});
    f.told.clear();
    f.panel.pasteVariable();
    QCOMPARE(f.names(), text("there b a last |  | "));
    QCOMPARE(f.selectedNames(), QStringList({text("b"), text("a")}));
    QCOMPARE(f.told, QStringList{text("modified")});
    const processVariable pasted = f.record(uuidOf(f.tree->model()->index(2, 0, f.group(0))));
    QVERIFY(pasted.uuid != a.toStdString());
    QCOMPARE(pasted.value, std::string("7"));
    QCOMPARE(pasted.ownerId, f.second.toStdString());
    f.told.clear();
    f.select({f.group(GlobalVariable)});
    f.panel.pasteVariable();
    QCOMPARE(f.told.size(), 2);
    QVERIFY(f.told.first().startsWith(text("shared 1 ")));
    QCOMPARE(process_edit::getAllGlobalVariable().size(), std::size_t(2));
    f.tree->selectionModel()->clear();
    f.panel.pasteVariable(); // nowhere
    QCOMPARE(process_edit::getAllGlobalVariable().size(), std::size_t(2));
}

void VariablePanelTest::dragData()
{
    VariablePanelFixture f;
    const QString a = f.make(SequenceVariable, "a");
    const QString g = f.make(GlobalVariable, "g");
    f.panel.reloadSequenceVariables(f.first);
    const std::unique_ptr<QMimeData> data(f.tree->model()->mimeData(
        {f.cell(g), f.cell(g, ValueColumn), f.group(1), f.cell(a), f.cell(a, RemarkColumn)}));
    QStringList formats = data->formats();
    formats.sort();
    QCOMPARE(formats, QStringList({text("application/uuidVec"),
                                   text("application/x-qabstractitemmodeldatalist"),
                                   text("application/x-qstandarditemmodeldatalist")}));
    QCOMPARE(data->data(text("application/uuidVec")), (g + QLatin1Char(',') + a).toUtf8());
    const QAbstractItemModel* model = f.tree->model();
    QVERIFY(!model->canDropMimeData(data.get(), Qt::CopyAction, 0, 0, f.group(0)));
    QVERIFY(!model->canDropMimeData(data.get(), Qt::MoveAction, -1, 0, f.cell(a)));
    QMimeData foreign;
    foreign.setText(a);
    QVERIFY(!model->canDropMimeData(&foreign, Qt::MoveAction, 0, 0, f.group(0)));
    QCOMPARE(f.tree->dragDropMode(), QAbstractItemView::InternalMove);
}

void VariablePanelTest::moving()
{
    const QStringList sequenceOnly{text("modified")};
    const rows::Table<QString, int, int, QString, QStringList> table{
        // -1: between the groups
        {"down", text("a"), 0, 2, text("b a c d | p q | g"), sequenceOnly},
        {"up", text("d"), 0, 1, text("a d b c | p q | g"), sequenceOnly},
        {"to its own place", text("b"), 0, 1, text("a b c d | p q | g"), sequenceOnly},
        {"several around the place", text("d a"), 0, 2, text("b d a c | p q | g"), sequenceOnly},
        {"on the group", text("b"), 0, -1, text("a c d b | p q | g"), sequenceOnly},
        {"into another group", text("b c"), 1, 1, text("a d | p b c q | g"),
         QStringList({text("shared 0 b,c"), text("modified")})},
        {"to the global ones", text("a"), 2, 0, text("b c d | p q | a g"),
         QStringList({text("shared 1 a"), text("modified")})},
        {"from the global ones", text("g"), 0, 0, text("g a b c d | p q | "),
         QStringList({text("shared 1 g"), text("modified")})},
        {"from two groups", text("p a"), 0, 4, text("b c d p a | q | g"),
         QStringList({text("shared 0 p,a"), text("modified")})},
        {"between two groups", text("g"), -1, 1, text("a b c d g | p q | "),
         QStringList({text("shared 1 g"), text("modified")})},
        {"into the empty space", text("p"), -1, -1, text("a b c d | q | g p"),
         QStringList({text("shared 1 p"), text("modified")})}};
    for (const auto& [rowName, dragged, group, row, names, told] : table) {
        const rows::Named named(rowName);
        VariablePanelFixture f;
        QHash<QString, QString> uuids;
        for (const char* name : {"a", "b", "c", "d"})
            uuids[text(name)] = f.make(SequenceVariable, name);
        for (const char* name : {"p", "q"})
            uuids[text(name)] = f.make(ProcessVariable, name);
        uuids[text("g")] = f.make(GlobalVariable, "g");
        f.panel.reloadSequenceVariables(f.first);
        QModelIndexList rows;
        for (const QString& name : dragged.split(QLatin1Char(' ')))
            rows.append(f.cell(uuids[name]));
        f.told.clear();
        QVERIFY(drop(f, rows, group < 0 ? QModelIndex() : f.group(group), row));
        QCOMPARE(f.names(), names);
        QCOMPARE(f.told, told);
        QStringList selected = f.selectedNames();
        selected.sort();
        QStringList expected = dragged.split(QLatin1Char(' '));
        expected.sort();
        QCOMPARE(selected, expected);
    }
}

void VariablePanelTest::movesChangeScopeAndOwner()
{
    VariablePanelFixture f;
    const QString uuid = f.make(SequenceVariable, "a", "u8", "7");
    f.panel.reloadSequenceVariables(f.first);
    const std::string owners[] = {f.second.toStdString(), f.appName.toStdString(), std::string()};
    f.panel.showSequence(f.first);
    for (const int scope : {ProcessVariable, GlobalVariable, SequenceVariable}) {
        QVERIFY(drop(f, {f.cell(uuid)}, f.group(scope), 0));
        QCOMPARE(int(f.record(uuid).scope), scope);
        QCOMPARE(f.record(uuid).ownerId, owners[scope]);
        QCOMPARE(f.record(uuid).value, std::string("7"));
        f.panel.showSequence(f.second); // into which the last drop goes
        QCOMPARE(f.cell(uuid).parent(), f.group(scope));
    }
    f.panel.showSequence(f.first);
    QVERIFY(!f.cell(uuid).isValid());
}

void VariablePanelTest::givenVariables()
{
    VariablePanelFixture f;
    const QString shared = f.make(ProcessVariable, "p", "u8", "1");
    f.panel.reloadSequenceVariables(f.first);
    f.panel.addVarToCurrentView(text("a"), text(" 12 "), DrelU16, SequenceVariable, false);
    QCOMPARE(f.names(), text("a | p | "));
    QCOMPARE(f.told, QStringList{text("modified")});
    f.told.clear();
    f.panel.addVarToCurrentView(text("p"), QString(), DrelString, SequenceVariable, false);
    QCOMPARE(f.names(), text("a | p | "));
    QCOMPARE(f.shown(shared, ValueColumn), text("NULL"));
    QCOMPARE(f.shown(shared, TypeColumn), text("string"));
    QCOMPARE(f.cell(shared).data(LengthRole).toInt(), f.record(shared).length);
    QCOMPARE(f.told, QStringList({text("shared 0 p"), text("modified")}));
    f.panel.addVarToCurrentView(text("g"), text("1.50"), DrelDouble, GlobalVariable, true);
    QCOMPARE(f.names(), text("a | p | g"));
    f.told.clear();
    f.panel.addVarToCurrentView(text("1a"), text("1"), DrelU8, SequenceVariable, true);
    f.panel.removeAllModels();
    QCOMPARE(f.told.size(), 0);
    f.panel.addVarToCurrentView(text("q"), text("1"), DrelU8, ProcessVariable, true);
    f.panel.showSequence(f.second);
    QCOMPARE(f.names(), text(" | p q | g"));
}

void VariablePanelTest::contextMenu()
{
    VariablePanelFixture f;
    const QString a = f.make(SequenceVariable, "a");
    f.panel.reloadSequenceVariables(f.first);
    const auto entries = [&f](const QModelIndex& index) {
        const std::unique_ptr<QMenu> menu(
            f.panel.makeContextMenu(f.tree->visualRect(index).center()));
        QStringList texts{menu->title()};
        for (const QAction* action : menu->actions())
            texts.append((action->isEnabled() ? text("+") : text("-")) + action->text());
        return QString(texts.join(QLatin1Char(' ')));
    };
    QCOMPARE(entries(f.cell(a)), text("Context Menu +添加变量 +删除选中变量 +复制选中变量 "
                                      "-粘贴已复制的变量"));
    f.select({f.cell(a)});
    f.panel.copyVariable();
    QCOMPARE(entries(f.group(1)), text("Context Menu +添加变量 +删除所有变量 +粘贴已复制的变量"));
    QVERIFY(!f.panel.makeContextMenu(QPoint(20, f.tree->viewport()->height() - 3)));
    f.panel.setReadOnly(true);
    const std::unique_ptr<QMenu> menu(
        f.panel.makeContextMenu(f.tree->visualRect(f.cell(a)).center()));
    QVERIFY(!menu->isEnabled());
}

void VariablePanelTest::clicksNeverMixRows()
{
    VariablePanelFixture f;
    const QString a = f.make(SequenceVariable, "a");
    const QString b = f.make(SequenceVariable, "b");
    f.panel.reloadSequenceVariables(f.first);
    const auto click = [&f](const QModelIndex& index) {
        QTest::mouseClick(f.tree->viewport(), Qt::LeftButton, Qt::ControlModifier,
                          f.tree->visualRect(index).topLeft() + QPoint(3, 3));
        return f.selectedNames().join(QLatin1Char(' '));
    };
    QCOMPARE(click(f.cell(a)), text("a"));
    QCOMPARE(click(f.cell(b)), text("a b"));
    QCOMPARE(click(f.group(1)), text("流程变量"));
    QCOMPARE(click(f.group(2)), text("流程变量 全局变量"));
    QCOMPARE(click(f.cell(b)), text("b"));
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
            if (event->matches(QKeySequence::Copy) || event->matches(QKeySequence::Paste))
                ++keys;
        }
    };
    Window window;
    VariablePanelFixture f; // goes first
    f.make(SequenceVariable, "a");
    f.panel.reloadSequenceVariables(f.first);
    f.select({f.group(0)});
    f.panel.setParent(&window);
    for (const QKeySequence::StandardKey key : {QKeySequence::Copy, QKeySequence::Paste})
        QTest::keySequence(f.tree, QKeySequence(key));
    QCOMPARE(window.keys, 2);
}

void VariablePanelTest::refreshKeepsWhatThePersonSees()
{
    VariablePanelFixture f;
    QStringList uuids;
    for (int i = 0; i < 60; ++i)
        uuids.append(f.make(SequenceVariable, qPrintable(text("v%1").arg(i))));
    f.make(ProcessVariable, "p");
    f.panel.reloadSequenceVariables(f.first);
    f.tree->setExpanded(f.group(1), false);
    f.select({f.cell(uuids[3]), f.cell(uuids[40])});
    f.tree->selectionModel()->setCurrentIndex(f.cell(uuids[40], TypeColumn),
                                              QItemSelectionModel::NoUpdate);
    f.tree->verticalScrollBar()->setValue(25);
    f.make(GlobalVariable, "g");
    process_edit::removeVariables(f.appName.toStdString(), {uuids[3].toStdString()});
    f.panel.refreshSequences({f.second}); // another one: nothing happens
    QVERIFY(f.cell(uuids[3]).isValid());
    f.panel.refreshSequences({f.first});
    QVERIFY(!f.cell(uuids[3]).isValid());
    QCOMPARE(f.tree->model()->rowCount(f.group(2)), 1);
    QCOMPARE(f.selectedNames(), QStringList{text("v40")});
    QCOMPARE(f.tree->currentIndex(), f.cell(uuids[40], TypeColumn));
    QCOMPARE(f.tree->verticalScrollBar()->value(), 25);
    QVERIFY(!f.tree->isExpanded(f.group(1)));
    QVERIFY(f.tree->isExpanded(f.group(0)) && f.tree->isExpanded(f.group(2)));
    QVERIFY(f.told.isEmpty());
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
    QCOMPARE(widths.mid(0, 3), QStringList({text("110"), text("95"), text("60")}));
    QCOMPARE(widths.size(), 4);
    f.panel.showSequence(f.first);
    QCOMPARE(f.tree->columnWidth(1), 95);
}

void VariablePanelTest::variablesOfARun()
{
    VariablePanelFixture f;
    const QString edited = f.make(SequenceVariable, "a");
    f.make(SequenceVariable, "b", "s32", "0", f.second);
    f.make(ProcessVariable, "p");
    f.panel.reloadSequenceVariables(f.first);
    const auto* run = f.panel.findChild<QTreeView*>(text("runTreeView"));
    const auto names = [run] {
        return test_support::printTree(*run->model()).join(QLatin1Char(' '));
    };
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
    QWidget* line = f.edit(f.cell(edited, ValueColumn));
    f.panel.showRunSequence(f.second, nullptr);
    QVERIFY(line->isVisible());
    QTest::keyClick(line, Qt::Key_Return);
    QTRY_VERIFY(run->isVisible());
}

PE_WIDGET_TEST("variable_panel", VariablePanelTest)
#include "variable_panel_test.moc"
