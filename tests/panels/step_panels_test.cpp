// The panels of the steps: what is loaded, when which edit reaches the block and the model, and the
// keyboard alone: the order of the controls, whole entries, and the picker.

#include "panels/loop_variables.h"
#include "panels/wgtCondition.h"
#include "panels/wgtFor.h"
#include "tests/panels/StepPanelFixture.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "variables/wgtEntryValue.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSpinBox>

namespace {

/// All that a panel writes into a block: "a == b", or "a ==[7] b" for arrays; "fixed 0 10 1
/// i;i=0;;" or "custom ..."; "a = b"; code, with "own file" behind it.
std::string print(const IProcessBlock& block)
{
    const auto* condition = dynamic_cast<const ConditionProcessBlock*>(&block);
    const auto* loop = dynamic_cast<const ForProcessBlock*>(&block);
    const auto* expression = dynamic_cast<const ExpressionProcessBlock*>(&block);
    if (condition) {
        const std::string size = "[" + std::to_string(condition->getArraySize()) + "]";
        return condition->getFun1() + " " + condition->getOperator() +
               (condition->getOperatorIsArray() ? size : "") + " " + condition->getFun2();
    }
    if (loop)
        return (loop->getCustom() ? "custom " : "fixed ") + std::to_string(loop->getBeginValue()) +
               " " + std::to_string(loop->getEndValue()) + " " +
               std::to_string(loop->getStepValue()) + " " + loop->getVariableName() + ";" +
               loop->getFun1() + ";" + loop->getFun2() + ";" + loop->getFun3();
    if (expression)
        return expression->leftValue + " = " + expression->rightExpression;
    const auto& statement = dynamic_cast<const StatementProcessBlock&>(block);
    return statement.customCode() + (statement.getSplitFile() ? " own file" : "");
}

const int stepTypesWithPanel[] = {step_type::If,       step_type::ElseIf, step_type::While,
                                  step_type::DoWhile,  step_type::For,    step_type::Expression,
                                  step_type::Statement};

/// Fields, what is typed into them, and the block afterwards.
const rows::Table<int, const char*, const char*, const char*> textFields{
    {"if", step_type::If, "editLeftValue", "speed", "speed == "},
    {"if, right", step_type::If, "editRightValue", "f(1) + 2", " == f(1) + 2"},
    {"else if", step_type::ElseIf, "editRightValue", "x", " == x"},
    {"while", step_type::While, "editLeftValue", "x", "x == "},
    {"do while", step_type::DoWhile, "editLeftValue", "x", "x == "},
    {"for, rounds", step_type::For, "timesSpin", "42", "fixed 0 42 1 i;;;"},
    {"for, variable", step_type::For, "valueLineEdit", "k_2", "fixed 0 10 1 k_2;;;"},
    {"expression, left", step_type::Expression, "editLeftValue", "y", "y = "},
    {"expression, right", step_type::Expression, "editRightValue", "a*(b+1)", " = a*(b+1)"},
    {"statement", step_type::Statement, "textEdit", "f();", "f();"}};

/// What a person does with the picker that opens next, and what he sees in it: he types over what
/// stands in its box, and accepts or gives up.
class PickerAnswer : public QObject
{
public:
    explicit PickerAnswer(const char* typed, bool accepts = true)
    {
        QTimer::singleShot(0, this, [this, typed, accepts] {
            QWidget* dialog = QApplication::activeModalWidget();
            QVERIFY(dialog);
            auto* box = dialog->findChild<QTextEdit*>(text("textEdit"));
            seen = text("seen: ") + box->toPlainText();
            box->setPlainText(text(typed));
            if (accepts)
                dialog->findChild<QAbstractButton*>(text("btnOk"))->click();
            else
                dialog->close();
        });
    }

    QString seen; ///< empty if it didn't open
};

/// Reads what the base class keeps for itself and its panels.
struct Peek : IBlockControl
{
    static QString sequenceOf(const IBlockControl* panel) { return panel->*(&Peek::m_sequenceId); }
};

void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
{
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
}

void enter(const char* keys)
{
    QTest::keyClicks(QApplication::focusWidget(), text(keys));
}

QString focusName()
{
    const QWidget* widget = QApplication::focusWidget();
    return widget ? widget->objectName() : QString();
}

} // namespace

class StepPanelsTest : public QObject
{
    Q_OBJECT
private slots:
    void loadingWritesNothing();
    void anotherClassLeavesThePanelEmpty();
    void typedTextReachesItsStepOnce();
    void pauseWritesTypedText();
    void choicesAreWrittenAtOnce();
    void choiceWhileATextWaits();
    void arrayComparison();
    void operatorThatIsNotOnOffer();
    void forCountsFromZero();
    void forKeepsTheOtherWay();
    void forRefusesWrongCharacters();
    void embeddedForOnlyTells();
    void ownFileWarns();
    void loopVariablesOfAStep();
    void tabOrder();
    void codeBoxIsLeftBackwards();
    void conditionByKeys();
    void picking();
    void editorGoesUnderTheOpenPicker();
    void sequenceOfThePicker();
};

void StepPanelsTest::loadingWritesNothing()
{
    StepPanelFixture f;
    std::vector<std::shared_ptr<IProcessBlock>> blocks;
    for (int stepType : stepTypesWithPanel) {
        blocks.push_back(f.add(stepType));
        blocks.push_back(f.add(stepType));
        if (auto condition = std::dynamic_pointer_cast<ConditionProcessBlock>(blocks.back())) {
            condition->setFun1("a[0]");
            condition->setFun2("中文");
            condition->setOperator("!=", true, 7);
        }
    }
    const auto foreign = f.add<IfProcessBlock>(step_type::If);
    foreign->setOperator("<>", false, 0);
    const auto shifted = f.add<ForProcessBlock>(step_type::For);
    shifted->setRangeValue(3, 10, 2);
    shifted->setVariableName("9 不合规", false);
    const auto custom = f.add<ForProcessBlock>(step_type::For);
    custom->setCustom(true);
    custom->setFun1("int i = 初");
    const auto expression = f.add<ExpressionProcessBlock>(step_type::Expression);
    expression->rightExpression = "a +\n b";
    const auto statement = f.add<StatementProcessBlock>(step_type::Statement);
    statement->setCustomCode("\tf();\n\n");
    statement->setSplitFile(true);
    blocks.insert(blocks.end(), {foreign, shifted, custom, expression, statement});

    const QString before = f.json();
    for (int round = 0; round < 2; ++round) {
        for (const auto& block : blocks) {
            f.control.showBlock(block);
            QVERIFY(f.panel() && f.panel()->stepType() == block->stepType());
        }
    }
    f.control.showBlock(nullptr);
    for (const IBlockControl* panel : f.control.findChildren<IBlockControl*>())
        QVERIFY(!panel->isTimerActive());
    QCOMPARE(f.takeTold() + f.messages, QStringList());
    QCOMPARE(f.json(), before);
}

void StepPanelsTest::anotherClassLeavesThePanelEmpty()
{
    StepPanelFixture f;
    for (int stepType : stepTypesWithPanel) {
        const auto block = f.show(stepType);
        IBlockControl* panel = f.panel();
        QSignalSpy written(panel, &IBlockControl::updateProcessData);
        panel->loadBlock(std::make_shared<PlainProcessBlock>(stepType));
        panel->saveBlock();
        QVERIFY(written.isEmpty());
        panel->loadBlock(block);
        panel->saveBlock();
        QCOMPARE(written.count(), 1);
    }
}

void StepPanelsTest::typedTextReachesItsStepOnce()
{
    for (const auto& [name, stepType, control, typed, stored] : textFields) {
        const rows::Named named(name);
        StepPanelFixture f;
        // A copy: the model knows only what is handed back to it.
        const auto first = f.add(stepType)->clone();
        const auto second = f.add(stepType);
        const std::string untouched = print(*second);
        f.control.showBlock(first);
        f.type(control, text(typed));
        QVERIFY(f.panel()->isTimerActive());
        QCOMPARE(f.takeTold(), QStringList());
        f.control.showBlock(second); // the same panel
        QVERIFY(!f.panel()->isTimerActive());
        QVERIFY(f.shown(control) != text(typed));
        const QString uuid = uuidOf(first);
        for (const auto& block :
             {first, sdk_ui_interface::processedit::getProcess(f.appName, uuid)})
            QCOMPARE(print(*block), std::string(stored));
        f.show(step_type::Break);
        f.control.setSequenceId(QString());
        QCOMPARE(f.takeTold(), QStringList{uuid});
        QCOMPARE(print(*second), untouched);
        f.control.showBlock(first);
        QCOMPARE(f.shown(control), text(typed));
    }
}

void StepPanelsTest::pauseWritesTypedText()
{
    for (const auto& [name, stepType, control, typed, stored] : textFields) {
        const rows::Named named(name);
        StepPanelFixture f;
        const auto block = f.show(stepType);
        auto* timer = f.panel()->findChild<QTimer*>(QString(), Qt::FindDirectChildrenOnly);
        QCOMPARE(timer->interval(), 1000);
        QVERIFY(timer->isSingleShot());
        timer->setInterval(0);
        f.type(control, text(typed));
        QTRY_VERIFY(!timer->isActive());
        QCOMPARE(print(*block), std::string(stored));
        QCOMPARE(f.takeTold(), QStringList{uuidOf(block)}); // key events don't let a timer fire
    }
}

void StepPanelsTest::choicesAreWrittenAtOnce()
{
    const rows::Table<int, const char*, Qt::Key, const char*> table{
        {"if", step_type::If, "conditionComboBox", Qt::Key_End, " <= "},
        {"else if", step_type::ElseIf, "conditionComboBox", Qt::Key_End, " <= "},
        {"while", step_type::While, "conditionComboBox", Qt::Key_End, " <= "},
        {"do while", step_type::DoWhile, "conditionComboBox", Qt::Key_End, " <= "},
        {"array size", step_type::If, "lenSpinBox", Qt::Key_Up, " ==[2] "},
        {"custom", step_type::For, "customCycle", Qt::Key_Space, "custom 0 10 1 i;;;"},
        {"own file", step_type::Statement, "checkBox", Qt::Key_Space, " own file"}};
    for (const auto& [row, stepType, control, key, stored] : table) {
        const rows::Named named(row);
        StepPanelFixture f;
        const auto block = f.add(stepType);
        if (const auto condition = std::dynamic_pointer_cast<ConditionProcessBlock>(block))
            condition->setOperator("==", true, 1);
        f.control.showBlock(block);
        QTest::keyClick(f.find(control), key);
        QCOMPARE(print(*block), std::string(stored));
        QCOMPARE(f.takeTold(), QStringList{uuidOf(block)});
        QVERIFY(!f.panel()->isTimerActive());
    }
}

void StepPanelsTest::choiceWhileATextWaits()
{
    const rows::Table<int, int> table{{"if", step_type::If, 1},
                                      {"else if", step_type::ElseIf, 2},
                                      {"while", step_type::While, 2},
                                      {"do while", step_type::DoWhile, 2}};
    for (const auto& [row, stepType, writes] : table) {
        const rows::Named named(row);
        StepPanelFixture f;
        const auto block = f.show(stepType);
        f.type("editLeftValue", text("speed"));
        f.find<QComboBox>("conditionComboBox")->setCurrentIndex(4);
        QCOMPARE(print(*block), std::string("speed > "));
        QCOMPARE(f.panel()->isTimerActive(), writes == 2);
        f.control.flushPending();
        QCOMPARE(f.takeTold().count(), writes);
        QCOMPARE(print(*block), std::string("speed > "));
    }
}

void StepPanelsTest::arrayComparison()
{
    StepPanelFixture f;
    const auto block = f.add<IfProcessBlock>(step_type::If);
    block->setOperator("==", true, 7);
    f.control.showBlock(block);
    auto* sign = f.find<QComboBox>("conditionComboBox");
    auto* length = f.find<QSpinBox>("lenSpinBox");
    QCOMPARE(sign->currentText(), text("==(数组)"));
    QVERIFY(length->isVisible() && f.find("lenLabel")->isVisible());
    f.type("editLeftValue", text("a"));
    f.control.flushPending();
    QCOMPARE(print(*block), std::string("a ==[7] "));
    length->setValue(300);
    QCOMPARE(print(*block), std::string("a ==[256] "));
    sign->setCurrentText(text(">"));
    QVERIFY(!length->isVisible() && !f.find("lenLabel")->isVisible());
    QCOMPARE(print(*block), std::string("a > "));
    QCOMPARE(block->getArraySize(), 256);
}

void StepPanelsTest::operatorThatIsNotOnOffer()
{
    StepPanelFixture f;
    const auto block = f.add<WhileProcessBlock>(step_type::While);
    block->setOperator("<>", false, 1);
    f.control.showBlock(block);
    QCOMPARE(block->getOperator(), std::string("<>"));
    f.type("editRightValue", text("2"));
    f.control.flushPending();
    QCOMPARE(block->getOperator(), std::string("=="));
}

void StepPanelsTest::forCountsFromZero()
{
    StepPanelFixture f;
    const auto block = f.add<ForProcessBlock>(step_type::For);
    block->setRangeValue(3, 10, 2);
    block->setVariableName("n", false);
    f.control.showBlock(block);
    QCOMPARE(f.find<QSpinBox>("timesSpin")->value(), 7);
    QCOMPARE(f.find<QSpinBox>("timesSpin")->maximum(), 9999999);
    f.panel()->saveBlock();
    QCOMPARE(print(*block), std::string("fixed 0 7 1 n;;;"));
    QVERIFY(!block->isNeedDefine());
}

void StepPanelsTest::forKeepsTheOtherWay()
{
    StepPanelFixture f;
    const auto block = f.add<ForProcessBlock>(step_type::For);
    block->setRangeValue(3, 10, 1);
    f.control.showBlock(block);
    QVERIFY(f.find("fixedWidget")->isEnabled() && !f.find("customWidget")->isEnabled());
    f.find<QAbstractButton>("customCycle")->click();
    QVERIFY(!f.find("fixedWidget")->isEnabled() && f.find("customWidget")->isEnabled());
    QCOMPARE(print(*block), std::string("custom 3 10 1 i;;;"));
    f.type("timesLineEdit_init", text("int k = 0"));
    f.type("timesLineEdit_ver", text("k < 3"));
    f.type("timesLineEdit_add", text("k += 1"));
    f.control.flushPending();
    f.find<QAbstractButton>("fixedCycle")->click();
    QCOMPARE(print(*block), std::string("fixed 0 7 1 i;int k = 0;k < 3;k += 1"));
    QCOMPARE(f.takeTold().count(), 3);
}

void StepPanelsTest::forRefusesWrongCharacters()
{
    StepPanelFixture f;
    f.show(step_type::For);
    f.type("valueLineEdit", text("1a-b"));
    QCOMPARE(f.shown("valueLineEdit"), text("ab"));
    f.find<QAbstractButton>("customCycle")->click();
    for (const char* name : {"timesLineEdit_init", "timesLineEdit_ver", "timesLineEdit_add"}) {
        // Chinese comes from an input method, not from keys.
        for (const char* part : {"i", "中", " += ", "文1", "1;"}) {
            QInputMethodEvent event;
            event.setCommitString(text(part));
            QCoreApplication::sendEvent(f.find(name), &event);
        }
        QCOMPARE(f.shown(name), text("i += 1;"));
    }
}

void StepPanelsTest::embeddedForOnlyTells()
{
    wgtFor form;
    form.setEmbedded();
    QSignalSpy edited(&form, &wgtFor::lineEditTextChangedSig);
    QSignalSpy written(&form, &IBlockControl::updateProcessData);
    LoopRecord record;
    record.count = 5;
    record.variable = text("k");
    record.condition = text("k < 5");
    form.setLoopRecord(record);
    QVERIFY(edited.isEmpty());
    form.setGroupsEnabled(false, true);
    QTest::keyClicks(form.findChild<QWidget*>(text("timesLineEdit_add")), text("k++"));
    form.findChild<QSpinBox*>(text("timesSpin"))->setValue(6);
    QCOMPARE(edited.count(), 4);
    QVERIFY(written.isEmpty() && !form.isTimerActive());
    for (const char* name : {"fixedCycle", "customCycle"})
        QVERIFY(form.findChild<QWidget*>(text(name))->isHidden());
    const LoopRecord read = form.loopRecord();
    QCOMPARE(read.count, 6);
    QCOMPARE(read.variable + read.init + read.condition + read.increment, text("kk < 5k++"));
}

void StepPanelsTest::ownFileWarns()
{
    StepPanelFixture f;
    const auto block = f.show(step_type::Statement);
    auto* box = f.find<QAbstractButton>("checkBox");
    f.type("textEdit", text("f();"));
    QCOMPARE(print(*block), std::string("f();")); // known at once, told after the pause
    QVERIFY(f.takeTold().isEmpty());
    const QString warning = text("注意|单独生成脚本文件时,语句内使用序列变量会引发编译错误");
    box->click();
    box->click();
    QCOMPARE(f.messages, QStringList{warning});
    box->click();
    QCOMPARE(f.messages, QStringList({warning, warning}));
    QCOMPARE(print(*block), std::string("f(); own file"));
    QCOMPARE(f.takeTold().count(), 3);
}

void StepPanelsTest::loopVariablesOfAStep()
{
    StepPanelFixture f;
    const auto add = [&f](const QString& parent, int stepType, const char* name) {
        return applet_fixture::addStep<IProcessBlock>(f.appName, f.sequence, parent, stepType,
                                                      name);
    };
    const auto outer =
        std::dynamic_pointer_cast<ForProcessBlock>(add(text("1"), step_type::For, "outer"));
    const auto branch = add(uuidOf(outer), step_type::If, "branch");
    const auto inner =
        std::dynamic_pointer_cast<ForProcessBlock>(add(uuidOf(branch), step_type::For, "inner"));
    const auto step = add(uuidOf(inner), step_type::Statement, "step");
    outer->setVariableName("n", true);
    inner->setCustom(true);
    inner->setFun1("u8 k = 3");
    const auto names = [&f](const std::shared_ptr<IProcessBlock>& block) {
        std::string all;
        for (const auto& variable : loop_variables::around(f.appName, f.sequence, block->uuid))
            all += variable.type + ' ' + variable.name + ';';
        return all;
    };
    QCOMPARE(names(step), std::string("s32 n;u8 k;"));
    QCOMPARE(names(inner), std::string("s32 n;")); // its own is in its body alone
    QCOMPARE(names(outer), std::string());
    inner->setFun1("k = 3");
    QCOMPARE(names(step), std::string("s32 n;"));
}

void StepPanelsTest::tabOrder()
{
    const rows::Table<int, const char*, const char*> table{
        // clicked first
        {"if", step_type::If, nullptr,
         "editLeftValue left_value_btn conditionComboBox editRightValue right_value_btn"},
        {"for", step_type::For, "fixedCycle", "fixedCycle timesSpin valueLineEdit"},
        {"for, custom", step_type::For, "customCycle",
         "customCycle timesLineEdit_init timesLineEdit_ver timesLineEdit_add"},
        {"expression", step_type::Expression, nullptr,
         "editLeftValue btnLeftValue btnRightValue editRightValue"},
        {"statement", step_type::Statement, nullptr, "checkBox toolButton textEdit"}};
    for (const auto& [row, stepType, clicked, order] : table) {
        const rows::Named named(row);
        StepPanelFixture f;
        QVERIFY(f.isActive);
        f.show(stepType);
        if (clicked)
            f.find<QAbstractButton>(clicked)->click();
        const QStringList names = text(order).split(u' ');
        f.find(qPrintable(names.first()))->setFocus(Qt::TabFocusReason);
        QStringList reached;
        for (int i = 0; i < names.size(); ++i) {
            reached.append(focusName());
            press(Qt::Key_Tab);
        }
        QCOMPARE(reached, names);
    }
}

void StepPanelsTest::codeBoxIsLeftBackwards()
{
    StepPanelFixture f;
    QVERIFY(f.isActive);
    const auto block = f.show(step_type::Statement);
    f.find("textEdit")->setFocus(Qt::TabFocusReason);
    press(Qt::Key_Tab);
    enter("f();");
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    QCOMPARE(focusName(), text("toolButton"));
    QCOMPARE(print(*block), std::string("\tf();"));
}

void StepPanelsTest::conditionByKeys()
{
    StepPanelFixture f;
    QVERIFY(f.isActive);
    const auto block = f.show(step_type::DoWhile);
    f.find("editLeftValue")->setFocus(Qt::TabFocusReason);
    enter("data");
    press(Qt::Key_Tab);
    press(Qt::Key_Tab);
    press(Qt::Key_Down);
    press(Qt::Key_Down); // the first comparison of arrays
    press(Qt::Key_Tab);
    enter("8");
    press(Qt::Key_Tab);
    enter("expected");
    f.control.flushPending();
    QCOMPARE(print(*block), std::string("data ==[8] expected"));
}

void StepPanelsTest::picking()
{
    const rows::Table<int, const char*, const char*, bool> table{
        {"if, left", step_type::If, "left_value_btn", "editLeftValue", false},
        {"while, right", step_type::While, "right_value_btn", "editRightValue", false},
        {"expression, left", step_type::Expression, "btnLeftValue", "editLeftValue", false},
        {"expression, right", step_type::Expression, "btnRightValue", "editRightValue", false},
        {"statement", step_type::Statement, "toolButton", "textEdit", true}};
    for (const auto& [row, stepType, button, edit, isWrittenAtOnce] : table) {
        const rows::Named named(row);
        StepPanelFixture f;
        const auto block = f.show(stepType);
        f.type(edit, text("old"));
        f.control.flushPending();
        f.takeTold();

        PickerAnswer rejected("given up", false);
        QTest::keyClick(f.find(button), Qt::Key_Space);
        QCOMPARE(rejected.seen, text("seen: old"));
        QCOMPARE(f.shown(edit), text("old"));
        QVERIFY(!f.panel()->isTimerActive());

        PickerAnswer accepted("f(speed)");
        QTest::keyClick(f.find(button), Qt::Key_Space);
        QCOMPARE(f.shown(edit), text("f(speed)"));
        QCOMPARE(f.panel()->isTimerActive(), !isWrittenAtOnce);
        f.control.flushPending();
        QCOMPARE(f.takeTold(), QStringList{uuidOf(block)});
        QVERIFY(f.json().contains(text("f(speed)")));
        QTest::keyClick(f.find(edit), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(f.shown(edit), text("old"));
    }
}

void StepPanelsTest::editorGoesUnderTheOpenPicker()
{
    StepPanelFixture f;
    const auto block = f.add(step_type::Statement);
    auto control = std::make_unique<wgtCommonControl>();
    control->showBlock(block);
    QTimer::singleShot(0, [&control] { control.reset(); });
    PickerAnswer answer("too late");
    auto* stack = control->findChild<QStackedWidget*>(text("stackedWidget"));
    stack->currentWidget()->findChild<QAbstractButton*>(text("toolButton"))->click();
    QVERIFY(!answer.seen.isEmpty());
    QVERIFY(!control);
    QCOMPARE(print(*block), std::string());
}

void StepPanelsTest::sequenceOfThePicker()
{
    StepPanelFixture f;
    for (int stepType : {step_type::If, step_type::ElseIf, step_type::While, step_type::DoWhile}) {
        f.show(stepType);
        QCOMPARE(Peek::sequenceOf(f.panel()), f.sequence);
        const auto* editor = f.find<wgtCondition>("widget");
        QCOMPARE(Peek::sequenceOf(editor), stepType == step_type::ElseIf ? QString() : f.sequence);
    }
}

PE_WIDGET_TEST("step_panels", StepPanelsTest)
#include "step_panels_test.moc"
