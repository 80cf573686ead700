// The panels with the keyboard alone: the order of the controls, whole entries, and the picker.

#include "panels/wgtCondition.h"
#include "tests/panels/StepPanelFixture.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"
#include "variables/wgtEntryValue.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QPlainTextEdit>

namespace {

/// What a person does with the picker that opens next, and what he sees in it.
class PickerAnswer : public QObject
{
public:
    /// Replaces the text by @p text and accepts.
    explicit PickerAnswer(const QString& text) : m_text(text)
    {
        QTimer::singleShot(0, this, [this] { answer(true); });
    }
    /// Types and gives up.
    struct Rejects
    {
    };
    explicit PickerAnswer(Rejects) : m_text(QStringLiteral("given up"))
    {
        QTimer::singleShot(0, this, [this] { answer(false); });
    }

    bool wasOpen = false;
    QString seen; ///< what the box held

private:
    void answer(bool accepts)
    {
        QWidget* dialog = QApplication::activeModalWidget();
        QVERIFY(dialog);
        wasOpen = true;
        auto* box = dialog->findChild<QTextEdit*>(QStringLiteral("textEdit"));
        seen = box->toPlainText();
        box->setPlainText(m_text);
        if (accepts)
            dialog->findChild<QAbstractButton*>(QStringLiteral("btnOk"))->click();
        else
            dialog->close();
    }

    QString m_text;
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

void enter(const char* text)
{
    QTest::keyClicks(QApplication::focusWidget(), QString::fromUtf8(text));
}

QString focusName()
{
    const QWidget* widget = QApplication::focusWidget();
    return widget ? widget->objectName() : QString();
}

} // namespace

class StepPanelsKeysTest : public QObject
{
    Q_OBJECT
private slots:
    void tabOrder();
    void codeBoxIsLeftBackwards();
    void conditionByKeys();
    void forByKeys();
    void picking();
    void pickedTextCanBeUndone();
    void editorGoesUnderTheOpenPicker();
    void sequenceOfThePicker();
};

void StepPanelsKeysTest::tabOrder()
{
    const rows::Table<int, QString, QString> table{
        // clicked first
        {"if", step_type::If, QString(),
         text("editLeftValue left_value_btn conditionComboBox editRightValue "
              "right_value_btn")},
        {"for", step_type::For, text("fixedCycle"), text("fixedCycle timesSpin valueLineEdit")},
        {"for, custom", step_type::For, text("customCycle"),
         text("customCycle timesLineEdit_init timesLineEdit_ver "
              "timesLineEdit_add")},
        {"expression", step_type::Expression, QString(),
         text("editLeftValue btnLeftValue btnRightValue editRightValue")},
        {"statement", step_type::Statement, QString(), text("checkBox toolButton textEdit")}};
    for (const auto& [row, stepType, choice, order] : table) {
        const rows::Named named(row);
        StepPanelFixture f;
        QTRY_VERIFY(f.control.isActiveWindow());
        f.control.showBlock(f.add(stepType));
        if (!choice.isEmpty())
            f.find<QAbstractButton>(choice.toLatin1())->click();
        const QStringList names = order.split(QLatin1Char(' '));
        f.find(names.first().toLatin1())->setFocus(Qt::TabFocusReason);
        QStringList reached;
        for (int i = 0; i < names.size(); ++i) {
            reached.append(focusName());
            press(Qt::Key_Tab);
        }
        QCOMPARE(reached, names);
    }
}

void StepPanelsKeysTest::codeBoxIsLeftBackwards()
{
    StepPanelFixture f;
    QTRY_VERIFY(f.control.isActiveWindow());
    const auto block = f.add<StatementProcessBlock>(step_type::Statement);
    f.control.showBlock(block);
    f.find("textEdit")->setFocus(Qt::TabFocusReason);
    press(Qt::Key_Tab);
    enter("f();");
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    QCOMPARE(focusName(), QStringLiteral("toolButton"));
    QCOMPARE(block->customCode(), std::string("\tf();"));
}

void StepPanelsKeysTest::conditionByKeys()
{
    StepPanelFixture f;
    QTRY_VERIFY(f.control.isActiveWindow());
    const auto block = f.add<DoWhileProcessBlock>(step_type::DoWhile);
    f.control.showBlock(block);
    f.find("editLeftValue")->setFocus(Qt::TabFocusReason);
    enter("data");
    press(Qt::Key_Tab);
    press(Qt::Key_Tab);
    press(Qt::Key_Down);
    press(Qt::Key_Down); // the first comparison of arrays
    press(Qt::Key_Tab);
    QCOMPARE(focusName(), QStringLiteral("lenSpinBox"));
    enter("8");
    press(Qt::Key_Tab);
    enter("expected");
    f.control.flushPending();
    QCOMPARE(block->getFun1(), std::string("data"));
    QCOMPARE(block->getFun2(), std::string("expected"));
    QCOMPARE(block->getOperator(), std::string("=="));
    QVERIFY(block->getOperatorIsArray());
    QCOMPARE(block->getArraySize(), 8);
}

void StepPanelsKeysTest::forByKeys()
{
    StepPanelFixture f;
    QTRY_VERIFY(f.control.isActiveWindow());
    const auto block = f.add<ForProcessBlock>(step_type::For);
    f.control.showBlock(block);
    f.find("fixedCycle")->setFocus(Qt::TabFocusReason);
    press(Qt::Key_Down);
    QVERIFY(block->getCustom());
    for (const char* text : {"int i = 0", "i < 3", "i += 1"}) {
        press(Qt::Key_Tab);
        enter(text);
    }
    f.control.flushPending();
    QCOMPARE(block->getFun1() + ";" + block->getFun2() + ";" + block->getFun3(),
             std::string("int i = 0;i < 3;i += 1"));
}

void StepPanelsKeysTest::picking()
{
    const rows::Table<int, QString, QString, bool> table{
        {"if, left", step_type::If, text("left_value_btn"), text("editLeftValue"), false},
        {"while, right", step_type::While, text("right_value_btn"), text("editRightValue"), false},
        {"expression, left", step_type::Expression, text("btnLeftValue"), text("editLeftValue"),
         false},
        {"expression, right", step_type::Expression, text("btnRightValue"), text("editRightValue"),
         false},
        {"statement", step_type::Statement, text("toolButton"), text("textEdit"), true}};
    for (const auto& [row, stepType, button, edit, isWrittenAtOnce] : table) {
        const rows::Named named(row);
        StepPanelFixture f;
        const auto block = f.add(stepType);
        f.control.showBlock(block);
        auto* opener = f.find(button.toLatin1());
        const auto text = [&f, &edit = edit] {
            const auto* line = f.find<QLineEdit>(edit.toLatin1());
            return line ? line->text() : f.find<QPlainTextEdit>(edit.toLatin1())->toPlainText();
        };
        f.type(edit.toLatin1(), QStringLiteral("old"));
        f.control.flushPending();
        f.takeTold();

        PickerAnswer rejected{PickerAnswer::Rejects()};
        QTest::keyClick(opener, Qt::Key_Space);
        QVERIFY(rejected.wasOpen);
        QCOMPARE(rejected.seen, QStringLiteral("old"));
        QCOMPARE(text(), QStringLiteral("old"));
        QVERIFY(!f.panel()->isTimerActive());

        PickerAnswer accepted(QStringLiteral("f(speed)"));
        QTest::keyClick(opener, Qt::Key_Space);
        QVERIFY(accepted.wasOpen);
        QCOMPARE(text(), QStringLiteral("f(speed)"));
        QCOMPARE(f.panel()->isTimerActive(), !isWrittenAtOnce);
        f.control.flushPending();
        QCOMPARE(f.takeTold(), QStringList{uuidOf(block)});
        QVERIFY(f.json().contains(QStringLiteral("f(speed)")));
    }
}

void StepPanelsKeysTest::pickedTextCanBeUndone()
{
    StepPanelFixture f;
    f.control.showBlock(f.add(step_type::Expression));
    for (const char* name : {"editLeftValue", "editRightValue"}) {
        const bool isLeft = qstrcmp(name, "editLeftValue") == 0;
        QTest::keyClicks(f.find(name), QStringLiteral("typed"));
        PickerAnswer answer(QStringLiteral("picked"));
        QTest::keyClick(f.find(isLeft ? "btnLeftValue" : "btnRightValue"), Qt::Key_Space);
        QVERIFY(answer.wasOpen);
        QTest::keyClick(f.find(name), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(isLeft ? f.find<QLineEdit>(name)->text()
                        : f.find<QPlainTextEdit>(name)->toPlainText(),
                 QStringLiteral("typed"));
    }
}

void StepPanelsKeysTest::editorGoesUnderTheOpenPicker()
{
    StepPanelFixture f;
    const auto block = f.add<StatementProcessBlock>(step_type::Statement);
    auto control = std::make_unique<wgtCommonControl>();
    control->showBlock(block);
    QTimer::singleShot(0, [&control] { control.reset(); });
    PickerAnswer answer(QStringLiteral("too late"));
    auto* stack = control->findChild<QStackedWidget*>(QStringLiteral("stackedWidget"));
    stack->currentWidget()->findChild<QAbstractButton*>(QStringLiteral("toolButton"))->click();
    QVERIFY(answer.wasOpen);
    QVERIFY(!control);
    QCOMPARE(block->customCode(), std::string());
}

void StepPanelsKeysTest::sequenceOfThePicker()
{
    StepPanelFixture f;
    for (int stepType : {step_type::If, step_type::ElseIf, step_type::While, step_type::DoWhile}) {
        f.control.showBlock(f.add(stepType));
        QCOMPARE(Peek::sequenceOf(f.panel()), f.sequence);
        const auto* editor = f.find<wgtCondition>("widget");
        QCOMPARE(Peek::sequenceOf(editor), stepType == step_type::ElseIf ? QString() : f.sequence);
    }
}

PE_WIDGET_TEST("step_panels_keys", StepPanelsKeysTest)
#include "step_panels_keys_test.moc"
