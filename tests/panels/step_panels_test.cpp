// The panels of the steps: what is loaded, and when which edit reaches the block and the model.

#include "panels/loop_variables.h"
#include "panels/wgtFor.h"
#include "tests/panels/StepPanelFixture.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QSpinBox>

namespace {

using Read = std::string (*)(const IProcessBlock& block);

template <class Block> const Block& as(const IProcessBlock& block)
{
    return dynamic_cast<const Block&>(block);
}

std::string left(const IProcessBlock& block)
{
    return as<ConditionProcessBlock>(block).getFun1();
}
std::string right(const IProcessBlock& block)
{
    return as<ConditionProcessBlock>(block).getFun2();
}
/// As "==", or "==[7]" for arrays.
std::string comparison(const IProcessBlock& block)
{
    const auto& condition = as<ConditionProcessBlock>(block);
    return condition.getOperator() + (condition.getOperatorIsArray()
                                          ? "[" + std::to_string(condition.getArraySize()) + "]"
                                          : std::string());
}
std::string range(const IProcessBlock& block)
{
    const auto& loop = as<ForProcessBlock>(block);
    return std::to_string(loop.getBeginValue()) + " " + std::to_string(loop.getEndValue()) + " " +
           std::to_string(loop.getStepValue());
}
std::string code(const IProcessBlock& block)
{
    return as<StatementProcessBlock>(block).customCode();
}

const std::vector<int>& stepTypesWithPanel()
{
    static const std::vector<int> types = {
        step_type::If,  step_type::ElseIf,     step_type::While,    step_type::DoWhile,
        step_type::For, step_type::Expression, step_type::Statement};
    return types;
}

} // namespace

Q_DECLARE_METATYPE(Read)

class StepPanelsTest : public QObject
{
    Q_OBJECT
private slots:
    void loopVariablesOfAStep();
    void loadingWritesNothing();
    void anotherClassLeavesThePanelEmpty();
    void typedTextReachesItsStepOnce_data();
    void typedTextReachesItsStepOnce();
    void pauseWritesTypedText_data() { typedTextReachesItsStepOnce_data(); }
    void pauseWritesTypedText();
    void choicesAreWrittenAtOnce_data();
    void choicesAreWrittenAtOnce();
    void choiceWhileATextWaits();
    void arrayComparison();
    void operatorThatIsNotOnOffer();
    void forCountsFromZero();
    void forKeepsTheOtherWay();
    void forRefusesWrongCharacters();
    void embeddedForOnlyTells();
    void ownFileWarns();
};

void StepPanelsTest::loadingWritesNothing()
{
    StepPanelFixture f;
    std::vector<std::shared_ptr<IProcessBlock>> blocks;
    for (int stepType : stepTypesWithPanel()) {
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
    QCOMPARE(f.takeTold(), QStringList());
    QCOMPARE(f.messages, QStringList());
    QCOMPARE(f.json(), before);
}

void StepPanelsTest::anotherClassLeavesThePanelEmpty()
{
    StepPanelFixture f;
    for (int stepType : stepTypesWithPanel()) {
        const auto block = f.add(stepType);
        f.control.showBlock(block);
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

void StepPanelsTest::typedTextReachesItsStepOnce_data()
{
    QTest::addColumn<int>("stepType");
    QTest::addColumn<QString>("control");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<Read>("read");
    QTest::addColumn<QString>("stored");
    const auto add = [](const char* name, int stepType, const char* control, const char* typed,
                        Read read, const char* stored = nullptr) {
        QTest::newRow(name) << stepType << control << typed << read << (stored ? stored : typed);
    };
    add("if", step_type::If, "editLeftValue", "speed", left);
    add("if, right", step_type::If, "editRightValue", "f(1) + 2", right);
    add("else if", step_type::ElseIf, "editRightValue", "x", right);
    add("while", step_type::While, "editLeftValue", "x", left);
    add("do while", step_type::DoWhile, "editLeftValue", "x", left);
    add("for, rounds", step_type::For, "timesSpin", "42", range, "0 42 1");
    add("for, variable", step_type::For, "valueLineEdit", "k_2",
        [](const auto& block) { return as<ForProcessBlock>(block).getVariableName(); });
    add("expression, left", step_type::Expression, "editLeftValue", "y",
        [](const auto& block) { return as<ExpressionProcessBlock>(block).leftValue; });
    add("expression, right", step_type::Expression, "editRightValue", "a*(b+1)",
        [](const auto& block) { return as<ExpressionProcessBlock>(block).rightExpression; });
    add("statement", step_type::Statement, "textEdit", "f();", code);
}

void StepPanelsTest::typedTextReachesItsStepOnce()
{
    QFETCH(int, stepType);
    QFETCH(QString, control);
    QFETCH(QString, typed);
    QFETCH(Read, read);
    QFETCH(QString, stored);
    StepPanelFixture f;
    // A copy: the model knows only what is handed back to it.
    const auto first = f.add(stepType)->clone();
    const auto second = f.add(stepType);
    const std::string untouched = read(*second);
    f.control.showBlock(first);
    f.type(control.toLatin1(), typed);
    QVERIFY(f.panel()->isTimerActive());
    QCOMPARE(f.takeTold(), QStringList());
    f.control.showBlock(second); // the same panel
    QVERIFY(!f.panel()->isTimerActive());
    QVERIFY(f.shown(control.toLatin1()) != typed);
    QCOMPARE(read(*first), stored.toStdString());
    QCOMPARE(read(*second), untouched);
    QCOMPARE(read(*sdk_ui_interface::processedit::getProcess(f.appName, uuidOf(first))),
             stored.toStdString());
    f.control.showBlock(f.add(step_type::Break));
    f.control.setSequenceId(QString());
    QCOMPARE(f.takeTold(), QStringList{uuidOf(first)});
    QCOMPARE(read(*second), untouched);
    f.control.showBlock(first);
    QCOMPARE(f.shown(control.toLatin1()), typed);
}

void StepPanelsTest::pauseWritesTypedText()
{
    QFETCH(int, stepType);
    QFETCH(QString, control);
    QFETCH(QString, typed);
    QFETCH(Read, read);
    QFETCH(QString, stored);
    StepPanelFixture f;
    const auto block = f.add(stepType);
    f.control.showBlock(block);
    const auto* timer = f.panel()->findChild<QTimer*>(QString(), Qt::FindDirectChildrenOnly);
    QCOMPARE(timer->interval(), 1000);
    QVERIFY(timer->isSingleShot());
    f.shortenPause();
    f.type(control.toLatin1(), typed);
    QTRY_VERIFY(!timer->isActive());
    QCOMPARE(read(*block), stored.toStdString());
    const QStringList told = f.takeTold(); // key events don't let a timer fire
    QCOMPARE(told, QStringList{uuidOf(block)});
}

void StepPanelsTest::choicesAreWrittenAtOnce_data()
{
    QTest::addColumn<int>("stepType");
    QTest::addColumn<QString>("control");
    QTest::addColumn<int>("key");
    QTest::addColumn<Read>("read");
    QTest::addColumn<QString>("stored");
    const auto add = [](const char* name, int stepType, const char* control, Qt::Key key, Read read,
                        const char* stored) {
        QTest::newRow(name) << stepType << control << int(key) << read << stored;
    };
    for (int stepType : {step_type::If, step_type::ElseIf, step_type::While, step_type::DoWhile})
        add(qPrintable(QString::number(stepType)), stepType, "conditionComboBox", Qt::Key_End,
            comparison, "<=");
    add("array size", step_type::If, "lenSpinBox", Qt::Key_Up, comparison, "==[2]");
    add(
        "for, custom", step_type::For, "customCycle", Qt::Key_Space,
        [](const auto& block) {
            return std::string(as<ForProcessBlock>(block).getCustom() ? "custom" : "fixed");
        },
        "custom");
    add(
        "own file", step_type::Statement, "checkBox", Qt::Key_Space,
        [](const auto& block) {
            return std::string(as<StatementProcessBlock>(block).getSplitFile() ? "own" : "same");
        },
        "own");
}

void StepPanelsTest::choicesAreWrittenAtOnce()
{
    QFETCH(int, stepType);
    QFETCH(QString, control);
    QFETCH(int, key);
    QFETCH(Read, read);
    QFETCH(QString, stored);
    StepPanelFixture f;
    const auto block = f.add(stepType);
    if (control == QLatin1String("lenSpinBox"))
        std::dynamic_pointer_cast<ConditionProcessBlock>(block)->setOperator("==", true, 1);
    f.control.showBlock(block);
    QTest::keyClick(f.find(control.toLatin1()), Qt::Key(key));
    QCOMPARE(read(*block), stored.toStdString());
    QCOMPARE(f.takeTold(), QStringList{uuidOf(block)});
    QVERIFY(!f.panel()->isTimerActive());
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
        const auto block = f.add(stepType);
        f.control.showBlock(block);
        f.type("editLeftValue", QStringLiteral("speed"));
        f.find<QComboBox>("conditionComboBox")->setCurrentIndex(4);
        QCOMPARE(left(*block) + comparison(*block), std::string("speed>"));
        QCOMPARE(f.panel()->isTimerActive(), writes == 2);
        f.control.flushPending();
        QCOMPARE(f.takeTold().count(), writes);
        QCOMPARE(left(*block) + comparison(*block), std::string("speed>"));
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
    QCOMPARE(sign->currentText(), QStringLiteral("==(数组)"));
    QVERIFY(length->isVisible() && f.find("lenLabel")->isVisible());
    f.type("editLeftValue", QStringLiteral("a"));
    f.control.flushPending();
    QCOMPARE(comparison(*block), std::string("==[7]"));
    length->setValue(300);
    QCOMPARE(comparison(*block), std::string("==[256]"));
    sign->setCurrentText(QStringLiteral(">"));
    QVERIFY(!length->isVisible() && !f.find("lenLabel")->isVisible());
    QCOMPARE(comparison(*block), std::string(">"));
    QCOMPARE(block->getArraySize(), 256);
}

void StepPanelsTest::operatorThatIsNotOnOffer()
{
    StepPanelFixture f;
    const auto block = f.add<WhileProcessBlock>(step_type::While);
    block->setOperator("<>", false, 1);
    f.control.showBlock(block);
    QCOMPARE(block->getOperator(), std::string("<>"));
    f.type("editRightValue", QStringLiteral("2"));
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
    QCOMPARE(range(*block), std::string("0 7 1"));
    QCOMPARE(block->getVariableName(), std::string("n"));
    QVERIFY(!block->isNeedDefine());
}

void StepPanelsTest::forKeepsTheOtherWay()
{
    StepPanelFixture f;
    const auto block = f.add<ForProcessBlock>(step_type::For);
    block->setFun1("int k = 0");
    block->setRangeValue(3, 10, 1);
    f.control.showBlock(block);
    QVERIFY(f.find("fixedWidget")->isEnabled() && !f.find("customWidget")->isEnabled());
    f.find<QRadioButton>("customCycle")->click();
    QVERIFY(!f.find("fixedWidget")->isEnabled() && f.find("customWidget")->isEnabled());
    QCOMPARE(range(*block), std::string("3 10 1"));
    f.type("timesLineEdit_ver", QStringLiteral("k < 3"));
    f.control.flushPending();
    QCOMPARE(block->getFun2(), std::string("k < 3"));
    f.find<QRadioButton>("fixedCycle")->click();
    QVERIFY(!block->getCustom());
    QCOMPARE(block->getFun2(), std::string("k < 3"));
    QCOMPARE(range(*block), std::string("0 7 1"));
    QCOMPARE(f.takeTold().count(), 3);
}

void StepPanelsTest::forRefusesWrongCharacters()
{
    StepPanelFixture f;
    const auto block = f.add<ForProcessBlock>(step_type::For);
    f.control.showBlock(block);
    f.type("valueLineEdit", QStringLiteral("1a-b"));
    QCOMPARE(f.find<QLineEdit>("valueLineEdit")->text(), QStringLiteral("ab"));
    f.find<QRadioButton>("customCycle")->click();
    for (const char* name : {"timesLineEdit_init", "timesLineEdit_ver", "timesLineEdit_add"}) {
        // Chinese comes from an input method, not from keys.
        for (const char* part : {"i", "中", " += ", "文1", "1;"}) {
            QInputMethodEvent event;
            event.setCommitString(QString::fromUtf8(part));
            QCoreApplication::sendEvent(f.find(name), &event);
        }
        QCOMPARE(f.find<QLineEdit>(name)->text(), QStringLiteral("i += 1;"));
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
    record.variable = QStringLiteral("k");
    record.condition = QStringLiteral("k < 5");
    form.setLoopRecord(record);
    QVERIFY(edited.isEmpty());
    form.setGroupsEnabled(false, true);
    QTest::keyClicks(form.findChild<QLineEdit*>(QStringLiteral("timesLineEdit_add")),
                     QStringLiteral("k++"));
    form.findChild<QSpinBox*>(QStringLiteral("timesSpin"))->setValue(6);
    QCOMPARE(edited.count(), 4);
    QVERIFY(written.isEmpty() && !form.isTimerActive());
    QVERIFY(form.findChild<QRadioButton*>(QStringLiteral("fixedCycle"))->isHidden());
    QVERIFY(form.findChild<QRadioButton*>(QStringLiteral("customCycle"))->isHidden());
    const LoopRecord read = form.loopRecord();
    QCOMPARE(read.type, 0);
    QCOMPARE(read.count, 6);
    QCOMPARE(read.variable + read.init + read.condition + read.increment,
             QStringLiteral("kk < 5k++"));
}

void StepPanelsTest::ownFileWarns()
{
    StepPanelFixture f;
    const auto block = f.add<StatementProcessBlock>(step_type::Statement);
    f.control.showBlock(block);
    auto* box = f.find<QCheckBox>("checkBox");
    f.type("textEdit", QStringLiteral("f();"));
    QCOMPARE(code(*block), std::string("f();")); // known at once, told after the pause
    QVERIFY(f.takeTold().isEmpty());
    const auto warning = QStringLiteral("注意|单独生成脚本文件时,语句内使用序列变量会引发编译错误");
    box->click();
    QCOMPARE(f.messages, QStringList{warning});
    box->click();
    QCOMPARE(f.messages.count(), 1);
    box->click();
    QCOMPARE(f.messages, QStringList({warning, warning}));
    QVERIFY(block->getSplitFile());
    QCOMPARE(f.takeTold().count(), 3);
    QVERIFY(!f.panel()->isTimerActive());
}

void StepPanelsTest::loopVariablesOfAStep()
{
    StepPanelFixture f;
    const auto add = [&f](const QString& parent, int stepType, const char* name) {
        return applet_fixture::addStep<IProcessBlock>(f.appName, f.sequence, parent, stepType,
                                                      name);
    };
    const auto uuid = [](const auto& block) { return QString::fromStdString(block->uuid); };
    const auto outer =
        std::dynamic_pointer_cast<ForProcessBlock>(add(text("1"), step_type::For, "outer"));
    const auto branch = add(uuid(outer), step_type::If, "branch");
    const auto inner =
        std::dynamic_pointer_cast<ForProcessBlock>(add(uuid(branch), step_type::For, "inner"));
    const auto step = add(uuid(inner), step_type::Statement, "step");
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

PE_WIDGET_TEST("step_panels", StepPanelsTest)
#include "step_panels_test.moc"
