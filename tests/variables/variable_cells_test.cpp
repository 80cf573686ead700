// Editing the cells of the variable panel, and lengths: what is refused, what comes back, what the
// model service gets and who is told.

#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"
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
QString pressLength(VariablePanelFixture& f, const QString& uuid, int length,
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
    const QRect button = varTreeDelegate::lengthButtonRect(f.tree->visualRect(f.cell(uuid)));
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
    VariablePanelFixture f;
    const QString uuid = f.make(SequenceVariable, "list", "u8*", "1,2");
    f.panel.reloadSequenceVariables(f.first);
    QVERIFY(f.isActive);
    QVERIFY(!f.edit(f.group(0)));
    f.tree->expandAll(); // which the double click has undone

    auto* name = qobject_cast<QLineEdit*>(f.edit(f.cell(uuid, NameColumn)));
    QVERIFY(name && name->hasFocus());
    QCOMPARE(name->placeholderText(), text("需以字母或下划线开头"));
    QVERIFY(name->inputMethodHints().testFlag(Qt::ImhHiddenText));
    name->clear();
    QTest::keyClicks(name, text("1a 234567890123456789012345"));
    QCOMPARE(name->text(), text("a2345678901234567890"));

    auto* value = qobject_cast<VarValueLineEdit*>(f.edit(f.cell(uuid, ValueColumn)));
    QVERIFY(value && value->hasFocus());
    QVERIFY(!f.tree->indexWidget(f.cell(uuid, NameColumn)));
    QCOMPARE(value->text(), text("1,2"));
    value->clear();
    QTest::keyClicks(value, text("300,2"));
    QCOMPARE(value->text(), text("30,2"));

    auto* type = qobject_cast<QComboBox*>(f.edit(f.cell(uuid, TypeColumn)));
    QVERIFY(type);
    QCOMPARE(type->count(), 32);
    QCOMPARE(type->currentText(), text("u8*"));
    QCOMPARE(type->currentData().toInt(), int(DrelU8Ptr));
    QCOMPARE(type->itemData(0, Qt::ToolTipRole).toString(), text("u8"));

    auto* remark = qobject_cast<QLineEdit*>(f.edit(f.cell(uuid, RemarkColumn)));
    QVERIFY(remark && !remark->validator());
    QCOMPARE(f.tree->selectionModel()->selectedIndexes().size(), 0);
}

void VariableCellsTest::refusedNames()
{
    const rows::Table<QString, QString> table{
        {"empty", QString(), text("warning|名称不能为空")},
        {"sequence", text("b"), text("warning|有重名变量，请重新命名")},
        {"process", text("p"), text("warning|有重名变量，请重新命名")},
        {"global", text("g"), text("warning|有重名变量，请重新命名")},
        {"its own", text("a"), QString()},
        {"another case", text("B"), QString()},
        {"another sequence's", text("other"), QString()}};
    for (const auto& [row, name, message] : table) {
        const rows::Named named(row);
        VariablePanelFixture f;
        const QString uuid = f.make(SequenceVariable, "a");
        f.make(SequenceVariable, "b");
        f.make(SequenceVariable, "other", "s32", "0", f.second);
        f.make(ProcessVariable, "p");
        f.make(GlobalVariable, "g");
        f.panel.reloadSequenceVariables(f.first);
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Tab}) {
            f.messages.clear();
            f.type(f.cell(uuid), name, key);
            QCOMPARE(f.messages.join(QLatin1Char(';')), message); // once
            const QString expected = message.isEmpty() ? name : text("a");
            QCOMPARE(f.shown(uuid, NameColumn), expected);
            QCOMPARE(QString::fromStdString(f.record(uuid).name), expected);
        }
    }
}

void VariableCellsTest::values()
{
    const rows::Table<QString, QString, QString, Qt::Key, QString> table{
        {"number", text("u32"), text("7"), text("12"), Qt::Key_Return, text("12")},
        {"out of range", text("u8"), text("7"), text("256"), Qt::Key_Return, text("25")},
        {"cleared number", text("u32"), text("7"), text(""), Qt::Key_Return, text("7")},
        {"cleared number, Tab", text("u32"), text("7"), text(""), Qt::Key_Tab, text("7")},
        {"unfinished", text("s32"), text("7"), text("-"), Qt::Key_Return, text("7")},
        {"cleared array", text("u8*"), text("1,2"), text(""), Qt::Key_Return, text("1,2")},
        {"cleared text", text("string"), text("abc"), text(""), Qt::Key_Return, text("")},
        {"trailing comma", text("u8*"), text("1"), text("1,2,"), Qt::Key_Return, text("1,2,0")},
        {"trailing comma, Tab", text("u8*"), text("1"), text("1,2,"), Qt::Key_Tab, text("1,2,0")},
        {"taken back", text("u32"), text("7"), text("12"), Qt::Key_Escape, text("7")}};
    for (const auto& [row, type, former, keys, leave, stored] : table) {
        const rows::Named named(row);
        VariablePanelFixture f;
        const QByteArray typeBytes = type.toUtf8();
        const QString uuid =
            f.make(SequenceVariable, "a", typeBytes.constData(), former.toUtf8().constData());
        f.panel.reloadSequenceVariables(f.first);
        f.type(f.cell(uuid, ValueColumn), keys, leave);
        QCOMPARE(QString::fromStdString(f.record(uuid).value), stored);
        QCOMPARE(f.shown(uuid, ValueColumn), stored);
        QCOMPARE(f.told.count(text("modified")), stored == former ? 0 : 1);
    }
}

void VariableCellsTest::anotherTypeResetsTheValue()
{
    VariablePanelFixture f;
    const QString uuid = f.make(SequenceVariable, "a", "u8", "12");
    f.panel.reloadSequenceVariables(f.first);
    for (const char* type : {"string", "PDrelCan"}) {
        auto* box = qobject_cast<QComboBox*>(f.edit(f.cell(uuid, TypeColumn)));
        QVERIFY(box);
        box->setCurrentText(text(type));
        QTest::keyClick(box, Qt::Key_Return);
        QTRY_COMPARE(f.told, QStringList{text("modified")});
        const processVariable record = f.record(uuid);
        QCOMPARE(record.type, std::string(type));
        QCOMPARE(record.value, std::string("0"));
        QCOMPARE(f.shown(uuid, ValueColumn), text("0"));
        QCOMPARE(f.cell(uuid).data(LengthRole).toInt(), record.length);
        QCOMPARE(f.cell(uuid).data(CompositeRole).toBool(), text(type) == text("PDrelCan"));
    }
}

void VariableCellsTest::typesThatAreNotChosenStay()
{
    const rows::Table<QString> table{{"alias", text("int")}, {"not offered", text("bool")}};
    for (const auto& [row, type] : table) {
        const rows::Named named(row);
        VariablePanelFixture f;
        const QString uuid = f.make(SequenceVariable, "a", type.toUtf8().constData(), "1");
        f.panel.reloadSequenceVariables(f.first);
        QWidget* box = f.edit(f.cell(uuid, TypeColumn));
        QVERIFY(box);
        QTest::keyClick(box, Qt::Key_Return);
        QTRY_VERIFY(!f.tree->indexWidget(f.cell(uuid, TypeColumn)));
        QCOMPARE(f.shown(uuid, TypeColumn), type);
        QCOMPARE(f.record(uuid).value, std::string("1"));
        QVERIFY(f.told.isEmpty());
    }
}

void VariableCellsTest::sharedVariablesAreTold()
{
    VariablePanelFixture f;
    const QString process = f.make(ProcessVariable, "p");
    const QString global = f.make(GlobalVariable, "g");
    f.panel.reloadSequenceVariables(f.second);
    f.panel.reloadSequenceVariables(f.first);
    f.type(f.cell(process), text("p2"));
    QCOMPARE(f.told, QStringList({text("shared 0 p2"), text("modified")}));
    f.type(f.cell(global, RemarkColumn), text("remark"));
    QCOMPARE(f.told, QStringList({text("shared 1 g"), text("modified")}));
    // The sequence that wasn't on screen follows.
    f.panel.showSequence(f.second);
    QCOMPARE(f.names(), text(" | p2 | g"));
}

void VariableCellsTest::unchangedCellsTellNothing()
{
    VariablePanelFixture f;
    const QString uuid = f.make(GlobalVariable, "g", "u8", "5");
    f.panel.reloadSequenceVariables(f.first);
    for (int column = 0; column < ColumnCount; ++column) {
        QWidget* editor = f.edit(f.cell(uuid, column));
        QVERIFY(editor);
        QTest::keyClick(editor, Qt::Key_Return);
        QTRY_VERIFY(!f.tree->indexWidget(f.cell(uuid, column)));
    }
    QVERIFY(f.told.isEmpty() && f.messages.isEmpty());
}

void VariableCellsTest::leavingWithoutTheKeyboard()
{
    VariablePanelFixture f;
    const QString uuid = f.make(SequenceVariable, "a", "u8*", "1");
    const QString other = f.make(SequenceVariable, "b");
    f.panel.reloadSequenceVariables(f.first);
    const auto begin = [&f, &uuid](const char* keys) {
        auto* line = qobject_cast<QLineEdit*>(f.edit(f.cell(uuid, ValueColumn)));
        line->clear();
        QTest::keyClicks(line, text(keys));
    };
    begin("1,");
    QTest::mouseClick(f.tree->viewport(), Qt::LeftButton, {},
                      f.tree->visualRect(f.cell(other)).center());
    QTRY_COMPARE(f.record(uuid).value, std::string("1,0"));
    begin("2,");
    f.panel.flushPending();
    QCOMPARE(f.record(uuid).value, std::string("2,0"));
    begin("3");
    f.panel.showSequence(f.second);
    QCOMPARE(f.record(uuid).value, std::string("3"));
    f.panel.showSequence(f.first);
    begin("4");
    f.panel.removeSequenceModels({f.first}); // gone, and its variables with it
    QVERIFY(!f.tree->model());
    f.panel.flushPending();
    QCOMPARE(f.record(uuid).value, std::string("3"));
}

void VariableCellsTest::compositeValuesHaveADoor()
{
    VariablePanelFixture f;
    const QString uuid = f.make(SequenceVariable, "can", "PDrelCan", "{}");
    f.panel.reloadSequenceVariables(f.first);
    QVERIFY(!f.edit(f.cell(uuid, ValueColumn)));
    QStringList opened;
    f.panel.setCompositeEditor([&opened](const QString& id, DrelVarType type) {
        opened.append(id + QString::number(type));
    });
    QVERIFY(!f.edit(f.cell(uuid, ValueColumn)));
    QCOMPARE(opened, QStringList{uuid + QString::number(DrelCanPtr)});
    QVERIFY(f.edit(f.cell(uuid, NameColumn)));
}

void VariableCellsTest::lockedRows()
{
    VariablePanelFixture f;
    processVariable locked;
    locked.uuid = "locked";
    locked.name = "sys";
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
    VariablePanelFixture f;
    const QString uuid = f.make(SequenceVariable, "a", "u8", "1");
    f.panel.reloadSequenceVariables(f.first);
    auto* line = qobject_cast<QLineEdit*>(f.edit(f.cell(uuid, ValueColumn)));
    line->clear();
    QTest::keyClicks(line, text("12"));
    f.make(GlobalVariable, "fromElsewhere");
    f.panel.refreshSequences({});
    QCOMPARE(f.tree->indexWidget(f.cell(uuid, ValueColumn)), line);
    QTest::keyClick(line, Qt::Key_Return);
    QTRY_COMPARE(f.names(), text("a |  | fromElsewhere"));
    QCOMPARE(f.shown(uuid, ValueColumn), text("12"));
    QCOMPARE(f.record(uuid).value, std::string("12"));
}

void VariableCellsTest::lengthIsChanged()
{
    VariablePanelFixture f;
    const QString list = f.make(GlobalVariable, "list", "u8*", "1,2,3,4");
    const QString word = f.make(SequenceVariable, "word", "string", "abcd");
    f.panel.reloadSequenceVariables(f.first);
    f.told.clear();
    QCOMPARE(pressLength(f, list, 2), text("修改长度|变量: list (类型: u8*, 最大长度: 64)|64"));
    QCOMPARE(f.record(list).value, std::string("1,2"));
    QCOMPARE(f.record(list).length, 2);
    QCOMPARE(f.shown(list, ValueColumn), text("1,2"));
    QCOMPARE(f.cell(list).data(LengthRole).toInt(), 2);
    QCOMPARE(f.told, QStringList({text("shared 1 list"), text("modified")}));
    QCOMPARE(f.messages, QStringList{text("信息|变量 list 的长度已修改为 2")});

    f.told.clear();
    QVERIFY(pressLength(f, word, 999).contains(text("最大长度: 256")));
    QCOMPARE(f.record(word).length, 256);
    pressLength(f, word, 2);
    QCOMPARE(f.record(word).value, std::string("ab"));
    QCOMPARE(f.told.last(), text("modified"));
    QVERIFY(!f.told.join(QLatin1Char(' ')).contains(text("shared")));
}

void VariableCellsTest::lengthOfALockedVariable()
{
    VariablePanelFixture f;
    const QString uuid = f.make(ProcessVariable, "list", "u8*", "1,2,3");
    processVariable record = f.record(uuid);
    record.isLocked = true;
    record.isEditable = true;
    process_edit::updateVariable(f.appName.toStdString(), record, ProcessVariable);
    f.panel.reloadSequenceVariables(f.first);
    QVERIFY(!f.edit(f.cell(uuid, NameColumn)));
    QVERIFY(!pressLength(f, uuid, 2).isEmpty());
    QCOMPARE(f.shown(uuid, ValueColumn), text("1,2"));
    f.type(f.cell(uuid, ValueColumn), text("7,8"));
    QCOMPARE(f.record(uuid).value, std::string("7,8"));
}

void VariableCellsTest::lengthIsNotChanged()
{
    VariablePanelFixture f;
    const QString list = f.make(SequenceVariable, "list", "u8*", "1,2,3,4");
    const QString number = f.make(SequenceVariable, "number", "u8", "1");
    f.panel.reloadSequenceVariables(f.first);
    f.told.clear();
    QVERIFY(!pressLength(f, list, 2, QDialogButtonBox::Cancel).isEmpty());
    QVERIFY(!pressLength(f, list, f.record(list).length).isEmpty());
    QVERIFY(pressLength(f, number, 2).isEmpty()); // no button
    QCOMPARE(f.record(list).value, std::string("1,2,3,4"));
    auto* model = qobject_cast<QStandardItemModel*>(f.tree->model());
    model->itemFromIndex(f.cell(list))->setData(false, EditableRole);
    QVERIFY(pressLength(f, list, 2).isEmpty()); // a disabled one
    model->itemFromIndex(f.cell(list))->setData(true, EditableRole);
    QVERIFY(f.told.isEmpty() && f.messages.isEmpty());
    process_edit::removeVariables(f.appName.toStdString(), {list.toStdString()});
    pressLength(f, list, 2);
    QCOMPARE(f.messages, QStringList{text("错误|变量不存在")});
}

PE_WIDGET_TEST("variable_cells", VariableCellsTest)
#include "variable_cells_test.moc"
