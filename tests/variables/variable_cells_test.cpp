// Editing the cells of the variable panel, and lengths: what is refused, what comes back, what the
// model service gets and who is told.

#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/variables/VariablePanelFixture.h"
#include "variables/LengthDialog.h"
#include "variables/VarValueLineEdit.h"
#include "variables/varTreeDelegate.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QStandardItemModel>
#include <QTimer>

using namespace variable_rows;

namespace {

/// Presses the length button of a row. Sets the dialog's spin box, if it comes, and leaves it;
/// returns the label and the highest number that it took, empty if none came.
QString pressLength(VariablePanelFixture& f, const char* name, int length,
                    QDialogButtonBox::StandardButton leave = QDialogButtonBox::Ok)
{
    QString seen;
    QTimer answer;
    QObject::connect(&answer, &QTimer::timeout, &f.panel, [&] {
        auto* dialog = qobject_cast<LengthDialog*>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        auto* box = dialog->findChild<QSpinBox*>();
        seen = dialog->windowTitle() + QLatin1Char('|') + dialog->findChild<QLabel*>()->text() +
               QLatin1Char('|') + QString::number(box->value());
        box->setValue(length);
        dialog->findChild<QDialogButtonBox*>()->button(leave)->click();
    });
    answer.start(0);
    const QRect button = varTreeDelegate::lengthButtonRect(f.tree->visualRect(f.cell(name)));
    QTest::mouseClick(f.tree->viewport(), Qt::LeftButton, {}, button.center());
    for (int turn = 0; turn < 20; ++turn)
        QCoreApplication::processEvents();
    return seen;
}

} // namespace

class VariableCellsTest : public QObject
{
    Q_OBJECT
private slots:
    void editors();
    void refusedNames();
    void values();
    void anotherTypeResetsTheValue();
    void typesThatAreNotChosenStay();
    void sharedVariablesAreTold();
    void unchangedCellsTellNothing();
    void leavingWithoutTheKeyboard();
    void compositeValuesHaveADoor();
    void lockedRows();
    void refreshWaitsForTheEditor();
    void lengthIsChanged();
    void lengthOfALockedVariable();
    void lengthIsNotChanged();
};

void VariableCellsTest::editors()
{
    VariablePanelFixture f("list:u8*=1,2");
    QVERIFY(f.isActive);
    QVERIFY(!f.edit(f.group(0)));
    f.tree->expandAll(); // which the double click has undone

    auto* name = qobject_cast<QLineEdit*>(f.edit(f.cell("list", NameColumn)));
    QVERIFY(name && name->hasFocus());
    QCOMPARE(name->placeholderText(), text("需以字母或下划线开头"));
    QVERIFY(name->inputMethodHints().testFlag(Qt::ImhHiddenText));
    name->clear();
    QTest::keyClicks(name, text("1a 234567890123456789012345"));
    QCOMPARE(name->text(), text("a2345678901234567890"));

    auto* value = qobject_cast<VarValueLineEdit*>(f.edit(f.cell("list", ValueColumn)));
    QVERIFY(value && value->hasFocus());
    QVERIFY(!f.tree->indexWidget(f.cell("list", NameColumn)));
    QCOMPARE(value->text(), text("1,2"));
    value->clear();
    QTest::keyClicks(value, text("300,2"));
    QCOMPARE(value->text(), text("30,2"));

    auto* type = qobject_cast<QComboBox*>(f.edit(f.cell("list", TypeColumn)));
    QVERIFY(type && type->count() > 1);
    QCOMPARE(type->currentText(), text("u8*"));

    auto* remark = qobject_cast<QLineEdit*>(f.edit(f.cell("list", RemarkColumn)));
    QVERIFY(remark && !remark->validator());
    QCOMPARE(f.selectedNames(), QString());
}

void VariableCellsTest::refusedNames()
{
    const char* taken = "warning|有重名变量，请重新命名";
    const rows::Table<const char*> table{{"", "warning|名称不能为空"},
                                         {"b", taken},
                                         {"p", taken},
                                         {"g", taken},
                                         {"a", ""},
                                         {"other", ""}}; // of another sequence
    for (const auto& [name, message] : table) {
        const rows::Named named(name);
        VariablePanelFixture f("a b | p | g");
        f.make("other", f.second);
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Tab}) {
            f.messages.clear();
            f.type(f.cell("a"), name, key);
            QCOMPARE(f.messages.join(u';'), text(message)); // once
            const QString left = text(*message ? "a" : name);
            QCOMPARE(f.shown("a", NameColumn), left);
            QCOMPARE(QString::fromStdString(f.record("a").name), left);
        }
    }
}

void VariableCellsTest::values()
{
    const rows::Table<const char*, const char*, const char*, Qt::Key, const char*> table{
        {"number", "u32", "7", "12", Qt::Key_Return, "12"},
        {"cleared number", "u32", "7", "", Qt::Key_Return, "7"},
        {"cleared array", "u8*", "1,2", "", Qt::Key_Return, "1,2"},
        {"cleared text", "string", "abc", "", Qt::Key_Return, ""},
        {"trailing comma", "u8*", "1", "1,2,", Qt::Key_Return, "1,2,0"},
        {"trailing comma, Tab", "u8*", "1", "1,2,", Qt::Key_Tab, "1,2,0"},
        {"taken back", "u32", "7", "12", Qt::Key_Escape, "7"}};
    for (const auto& [row, type, former, keys, leave, stored] : table) {
        const rows::Named named(row);
        VariablePanelFixture f(qPrintable(text("a:%1=%2").arg(text(type), text(former))));
        f.type(f.cell("a", ValueColumn), keys, leave);
        QCOMPARE(f.value("a"), text(stored));
        QCOMPARE(f.shown("a", ValueColumn), text(stored));
        QCOMPARE(f.takeTold(), text(qstrcmp(stored, former) == 0 ? "" : "modified"));
    }
}

void VariableCellsTest::anotherTypeResetsTheValue()
{
    VariablePanelFixture f("a:u8=12");
    for (const char* type : {"string", "PDrelCan"}) {
        auto* box = qobject_cast<QComboBox*>(f.edit(f.cell("a", TypeColumn)));
        QVERIFY(box);
        box->setCurrentText(text(type));
        QTest::keyClick(box, Qt::Key_Return);
        QTRY_COMPARE(f.shown("a", TypeColumn), text(type));
        QTRY_COMPARE(f.value("a"), text("0"));
        QCOMPARE(f.takeTold(), text("modified"));
        QCOMPARE(f.record("a").type, std::string(type));
        QCOMPARE(f.shown("a", ValueColumn), text("0"));
        QCOMPARE(f.cell("a").data(LengthRole).toInt(), f.record("a").length);
        QCOMPARE(f.cell("a").data(CompositeRole).toBool(), qstrcmp(type, "PDrelCan") == 0);
    }
}

void VariableCellsTest::typesThatAreNotChosenStay()
{
    VariablePanelFixture f("alias:int=1 notOffered:bool=1");
    for (const char* name : {"alias", "notOffered"}) {
        const QString type = f.shown(name, TypeColumn);
        QWidget* box = f.edit(f.cell(name, TypeColumn));
        QVERIFY(box);
        QTest::keyClick(box, Qt::Key_Return);
        QTRY_VERIFY(!f.tree->indexWidget(f.cell(name, TypeColumn)));
        QCOMPARE(f.shown(name, TypeColumn), type);
        QCOMPARE(f.value(name), text("1"));
        QCOMPARE(f.takeTold(), QString());
    }
}

void VariableCellsTest::sharedVariablesAreTold()
{
    VariablePanelFixture f(" | p | g");
    f.panel.reloadSequenceVariables(f.second);
    f.panel.reloadSequenceVariables(f.first);
    f.type(f.cell("p"), "p2");
    QCOMPARE(f.takeTold(), text("shared 0 p2; modified"));
    f.type(f.cell("g", RemarkColumn), "remark");
    QCOMPARE(f.takeTold(), text("shared 1 g; modified"));
    // The sequence that wasn't on screen follows.
    f.panel.showSequence(f.second);
    QCOMPARE(f.names(), text(" | p2 | g"));
}

void VariableCellsTest::unchangedCellsTellNothing()
{
    VariablePanelFixture f(" | | g:u8=5");
    for (int column = 0; column < ColumnCount; ++column) {
        QWidget* editor = f.edit(f.cell("g", column));
        QVERIFY(editor);
        QTest::keyClick(editor, Qt::Key_Return);
        QTRY_VERIFY(!f.tree->indexWidget(f.cell("g", column)));
        QCOMPARE(f.takeTold(), QString());
    }
    QVERIFY(f.messages.isEmpty());
}

void VariableCellsTest::leavingWithoutTheKeyboard()
{
    VariablePanelFixture f("a:u8*=1 b");
    const auto begin = [&f](const char* keys) { f.begin(f.cell("a", ValueColumn), keys); };
    begin("1,");
    QTest::mouseClick(f.tree->viewport(), Qt::LeftButton, {},
                      f.tree->visualRect(f.cell("b")).center());
    QTRY_COMPARE(f.value("a"), text("1,0"));
    begin("2,");
    f.panel.flushPending();
    QCOMPARE(f.value("a"), text("2,0"));
    begin("3");
    f.panel.showSequence(f.second);
    QCOMPARE(f.value("a"), text("3"));
    f.panel.showSequence(f.first);
    begin("4");
    f.panel.removeSequenceModels({f.first}); // gone, and its variables with it
    QVERIFY(!f.tree->model());
    f.panel.flushPending();
    QCOMPARE(f.value("a"), text("3"));
}

void VariableCellsTest::compositeValuesHaveADoor()
{
    VariablePanelFixture f("can:PDrelCan={}");
    QVERIFY(!f.edit(f.cell("can", ValueColumn)));
    QStringList opened;
    f.panel.setCompositeEditor([&opened](const QString& id, DrelVarType type) {
        opened.append(id + QString::number(type));
    });
    QVERIFY(!f.edit(f.cell("can", ValueColumn)));
    QCOMPARE(opened, QStringList{f.uuid("can") + QString::number(DrelCanPtr)});
    QVERIFY(f.edit(f.cell("can", NameColumn)));
}

void VariableCellsTest::lockedRows()
{
    processVariable locked;
    locked.type = "u8*";
    locked.isLocked = true;
    for (const bool isEditable : {true, false}) {
        locked.isEditable = isEditable;
        const QList<QStandardItem*> row = makeVariable(locked);
        for (int column = 0; column < ColumnCount; ++column) {
            QVERIFY(!row[column]->isSelectable());
            QCOMPARE(row[column]->isEnabled(), column == ValueColumn && isEditable);
        }
        qDeleteAll(row);
    }
    locked.isLocked = false;
    locked.scope = FixedVariable;
    const QList<QStandardItem*> fixed = makeVariable(locked);
    QVERIFY(fixed.first()->isSelectable() && !fixed.first()->isDragEnabled());
    qDeleteAll(fixed);
}

void VariableCellsTest::refreshWaitsForTheEditor()
{
    VariablePanelFixture f("a:u8=1");
    QLineEdit* line = f.begin(f.cell("a", ValueColumn), "12");
    f.make(" | | fromElsewhere", f.first);
    f.panel.refreshSequences({});
    QCOMPARE(f.tree->indexWidget(f.cell("a", ValueColumn)), line);
    QTest::keyClick(line, Qt::Key_Return);
    QTRY_COMPARE(f.names(), text("a |  | fromElsewhere"));
    QCOMPARE(f.shown("a", ValueColumn), text("12"));
    QCOMPARE(f.value("a"), text("12"));
}

void VariableCellsTest::lengthIsChanged()
{
    VariablePanelFixture f("word:string=abcd | | list:u8*=1,2,3,4");
    f.takeTold();
    QCOMPARE(pressLength(f, "list", 2), text("修改长度|变量: list (类型: u8*, 最大长度: 64)|64"));
    QCOMPARE(f.value("list"), text("1,2"));
    QCOMPARE(f.record("list").length, 2);
    QCOMPARE(f.shown("list", ValueColumn), text("1,2"));
    QCOMPARE(f.cell("list").data(LengthRole).toInt(), 2);
    QCOMPARE(f.takeTold(), text("shared 1 list; modified"));
    QCOMPARE(f.messages, QStringList{text("信息|变量 list 的长度已修改为 2")});
    QVERIFY(pressLength(f, "word", 999).contains(text("最大长度: 256")));
    QCOMPARE(f.record("word").length, 256);
    pressLength(f, "word", 2);
    QCOMPARE(f.value("word"), text("ab"));
    QCOMPARE(f.takeTold(), text("modified"));
}

void VariableCellsTest::lengthOfALockedVariable()
{
    VariablePanelFixture f(" | list:u8*=1,2,3");
    f.lock("list");
    f.panel.reloadSequenceVariables(f.first);
    QVERIFY(!f.edit(f.cell("list", NameColumn)));
    QVERIFY(!pressLength(f, "list", 2).isEmpty());
    QCOMPARE(f.shown("list", ValueColumn), text("1,2"));
    f.type(f.cell("list", ValueColumn), "7,8");
    QCOMPARE(f.value("list"), text("7,8"));
}

void VariableCellsTest::lengthIsNotChanged()
{
    VariablePanelFixture f("list:u8*=1,2,3,4 number:u8=1");
    f.takeTold();
    QVERIFY(!pressLength(f, "list", 2, QDialogButtonBox::Cancel).isEmpty());
    QVERIFY(!pressLength(f, "list", f.record("list").length).isEmpty());
    QVERIFY(pressLength(f, "number", 2).isEmpty()); // no button
    QCOMPARE(f.value("list"), text("1,2,3,4"));
    auto* model = qobject_cast<QStandardItemModel*>(f.tree->model());
    model->itemFromIndex(f.cell("list"))->setData(false, EditableRole);
    QVERIFY(pressLength(f, "list", 2).isEmpty()); // a disabled one
    model->itemFromIndex(f.cell("list"))->setData(true, EditableRole);
    QCOMPARE(f.takeTold() + f.messages.join(u';'), QString());
    f.remove("list");
    pressLength(f, "list", 2);
    QCOMPARE(f.messages, QStringList{text("错误|变量不存在")});
}

PE_WIDGET_TEST("variable_cells", VariableCellsTest)
#include "variable_cells_test.moc"
