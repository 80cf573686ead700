// What every step has: what the panel shows of a step, what it writes and when, and where jumps can
// lead.

#include "edits/DocumentEdits.h"
#include "panels/CustomComboBox.h"
#include "panels/DelayedWrite.h"
#include "panels/wgtFor.h"
#include "panels/wgtGeneralSetting.h"
#include "tests/support/applet_fixture.h"
#include "tests/support/print_tree.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include "model/process_blocks.h"
#include "model/services/processedit.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QSpinBox>
#include <QStackedWidget>
#include <QTest>
#include <QWheelEvent>

using namespace sdk_ui_interface;

namespace {

/// The panel, and an applet with the sequences "Main" and "Other"; Main holds a step to set up.
class General
{
public:
    General() : applet(appName)
    {
        sequence = processedit::createSeuqence(appName, text("Main"));
        other = processedit::createSeuqence(appName, text("Other"));
        block = add(text("1"), step_type::Delay, "step");
        BaseStepProperty& kind = block->property;
        kind.nameEditable = kind.tagEnabled = kind.loopEnabled = true;
        kind.preConditionEnabled = kind.postActionEnabled = kind.statementsEnabled = true;
        panel.setCAppletName(appName);
        panel.setSequenceId(sequence);
        panel.show();
    }

    std::shared_ptr<IProcessBlock> add(const QString& parent, int stepType, const char* name)
    {
        const auto added =
            applet_fixture::addStep<IProcessBlock>(appName, sequence, parent, stepType, name);
        added->property.editable = true;
        return added;
    }
    template <class Widget = QWidget> Widget* find(const char* name) const
    {
        return panel.findChild<Widget*>(QLatin1String(name));
    }
    CustomComboBox* target(bool whenTrue) const
    {
        return find<CustomComboBox>(whenTrue ? "conditionTrueGotoComboBox"
                                             : "conditionFalseGotoComboBox");
    }
    QComboBox* action(bool whenTrue) const
    {
        return find<QComboBox>(whenTrue ? "conditionTrueActionComboBox"
                                        : "conditionFalseActionComboBox");
    }
    /// How a target's box looks: "hidden", the placeholder in brackets, or what it shows.
    QString look(bool whenTrue) const
    {
        const CustomComboBox* box = target(whenTrue);
        if (box->isHidden())
            return text("hidden");
        if (!box->isEditable())
            return box->currentText();
        const QLineEdit* edit = box->lineEdit();
        return text("[%1]%2").arg(edit->placeholderText(),
                                  edit->isReadOnly() ? QString() : text(" can be typed into"));
    }
    void type(const char* name, const QString& typed) const { QTest::keyClicks(find(name), typed); }

    const QString appName = text("general_test");
    applet_fixture::ScopedApplet applet;
    QString sequence;
    QString other;
    std::shared_ptr<IProcessBlock> block;
    wgtGeneralSetting panel;
    QSignalSpy told{&panel, &wgtGeneralSetting::updateTreeProcessData};
    QSignalSpy modified{&DocumentEdits::instance(), &DocumentEdits::modified};
};

} // namespace

class GeneralSettingsTest : public QObject
{
    Q_OBJECT
private slots:
    void pages();
    void refusesSteps();
    void flagsDecide();
    void showsAndWritesEveryField();
    void writesAtOnceOrAfterAPause();
    void loops();
    void targets();
    void changedActions();
    void pickedTarget();
    void listsOfTargets();
    void wheelNeedsTheFocus();
};

void GeneralSettingsTest::pages()
{
    General general;
    general.panel.loadGeneral(general.block);
    auto* list = general.find<QListWidget>("listWidget");
    const auto* stack = general.find<QStackedWidget>("PropertiesWidget");
    const char* const names[] = {"一般设置", "单步循环", "前/后执行语句", "执行前条件",
                                 "执行后跳转"};
    QCOMPARE(list->count(), 5);
    QCOMPARE(list->currentRow(), 0);
    for (int page = 4; page >= 0; --page) {
        QCOMPARE(list->item(page)->text(), text(names[page]));
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          list->visualItemRect(list->item(page)).center());
        QCOMPARE(stack->currentIndex(), page);
    }
}

void GeneralSettingsTest::refusesSteps()
{
    General general;
    const auto* message = general.find<QLabel>("label_3");
    QCOMPARE(message->text(), text("当前未选中节点"));
    QVERIFY(general.find("mainArea")->isHidden());
    general.panel.loadGeneral(general.block);
    QVERIFY(message->isHidden());
    general.panel.loadGeneral(nullptr);
    QCOMPARE(message->text(), text("该节点不可编辑"));
    QVERIFY(general.find("mainArea")->isHidden());
    const auto fixed = general.add(text("1"), step_type::Delay, "fixed");
    fixed->property.editable = false;
    general.panel.loadGeneral(fixed);
    QCOMPARE(message->text(), text("该节点不可编辑"));
    general.panel.showNothingSelected();
    QCOMPARE(message->text(), text("当前未选中步骤节点"));
}

void GeneralSettingsTest::flagsDecide()
{
    const struct
    {
        bool BaseStepProperty::*flag;
        std::vector<const char*> controls;
    } flags[] = {
        {&BaseStepProperty::nameEditable, {"nameLineEdit"}},
        {&BaseStepProperty::tagEnabled, {"tagCheckBox", "editTag"}},
        {&BaseStepProperty::loopEnabled, {"loopTypeComboBox", "loopResultInReportCheckBox"}},
        {&BaseStepProperty::statementsEnabled, {"preExpressionTextEdit", "postExpressionTextEdit"}},
        {&BaseStepProperty::preConditionEnabled, {"preconditionTextEdit"}},
        {&BaseStepProperty::postActionEnabled,
         {"conditionTrueActionComboBox", "conditionFalseActionComboBox",
          "conditionTrueGotoComboBox", "conditionFalseGotoComboBox", "conditionCodeTextEdit"}}};
    General general;
    for (const auto& off : flags) {
        for (const auto& each : flags)
            general.block->property.*each.flag = each.flag != off.flag;
        general.panel.loadGeneral(general.block);
        for (const auto& each : flags) {
            for (const char* name : each.controls)
                QVERIFY2(general.find(name)->isEnabledTo(&general.panel) == (each.flag != off.flag),
                         name);
        }
    }
}

void GeneralSettingsTest::showsAndWritesEveryField()
{
    General general;
    IProcessBlock& block = *general.block;
    const struct
    {
        const char* control;
        std::string IProcessBlock::*field;
    } fields[] = {{"textEdit", &IProcessBlock::remark},
                  {"preExpressionTextEdit", &IProcessBlock::preStatements},
                  {"postExpressionTextEdit", &IProcessBlock::postStatements},
                  {"preconditionTextEdit", &IProcessBlock::preCondition},
                  {"conditionCodeTextEdit", &IProcessBlock::postConditionCode}};
    for (const auto& each : fields)
        block.*each.field = each.control;
    general.panel.loadGeneral(general.block);
    QCOMPARE(general.find<QLineEdit>("editPreview")->text(),
             QString::fromStdString(block.description()));
    for (const auto& each : fields) {
        auto* edit = general.find<QPlainTextEdit>(each.control);
        QCOMPARE(edit->toPlainText(), QLatin1String(each.control));
        edit->setPlainText(edit->toPlainText() + text(" 改"));
    }
    QCOMPARE(general.modified.count(), 0);
    general.panel.flushPending();
    for (const auto& each : fields)
        QCOMPARE(block.*each.field, each.control + std::string(" 改"));
    QCOMPARE(general.modified.count(), 1);
    general.panel.flushPending();
    QCOMPARE(general.modified.count(), 1);

    // What its own panel has written.
    block.remark = "new";
    general.find<QLineEdit>("editPreview")->clear();
    general.panel.refreshPreview(text("another step"));
    QCOMPARE(general.find<QLineEdit>("editPreview")->text(), QString());
    general.panel.refreshPreview(QString::fromStdString(block.uuid));
    QVERIFY(!general.find<QLineEdit>("editPreview")->text().isEmpty());
    QCOMPARE(general.find<QPlainTextEdit>("textEdit")->toPlainText(), text("textEdit 改"));
    const auto diagnostic = std::make_shared<UdsProcessBlock>(4711);
    diagnostic->property.editable = true;
    general.panel.loadGeneral(diagnostic);
    diagnostic->remark = "new"; // which that one writes, too
    general.panel.refreshPreview(QString::fromStdString(diagnostic->uuid));
    QCOMPARE(general.find<QPlainTextEdit>("textEdit")->toPlainText(), text("new"));
    QCOMPARE(general.modified.count(), 1);
}

void GeneralSettingsTest::writesAtOnceOrAfterAPause()
{
    General general;
    IProcessBlock& block = *general.block;
    general.panel.loadGeneral(general.block);
    general.type("nameLineEdit", text("ab"));
    QCOMPARE(block.name, std::string("stepab"));
    QCOMPARE(general.modified.count(), 2);
    QCOMPARE(general.told.count(), 2);
    QVERIFY(general.find<QLineEdit>("editTag")->isReadOnly());
    general.find<QCheckBox>("tagCheckBox")->click();
    QVERIFY(block.tagEnabled);
    QVERIFY(!general.find<QLineEdit>("editTag")->isReadOnly());
    general.type("editTag", text("1t-a"));
    QCOMPARE(block.tag, std::string("ta")); // the rest is no name
    auto* eachTurn = general.find<QCheckBox>("loopResultInReportCheckBox");
    eachTurn->click();
    QVERIFY(block.loopResultInReport);

    general.told.clear();
    general.type("textEdit", text("xy"));
    QCOMPARE(block.remark, std::string());
    QCOMPARE(general.told.count(), 0);
    general.panel.findChild<DelayedWrite*>(QString(), Qt::FindDirectChildrenOnly)->start(0);
    QTRY_COMPARE(block.remark, std::string("xy"));
    QCOMPARE(general.told.count(), 1);
    // That save forgets it, whatever the box shows.
    QVERIFY(!block.loopResultInReport);
    QVERIFY(eachTurn->isChecked());

    // Another step within the pause: what was typed belongs to the one before.
    const auto next = general.add(text("1"), step_type::Delay, "next");
    general.type("textEdit", text("z"));
    general.panel.loadGeneral(next);
    QCOMPARE(block.remark, std::string("xyz"));
    QCOMPARE(next->remark, std::string());
    general.panel.flushPending();
    QCOMPARE(general.told.count(), 2);
}

void GeneralSettingsTest::loops()
{
    General general;
    IProcessBlock& block = *general.block;
    general.panel.loadGeneral(general.block);
    auto* types = general.find<QComboBox>("loopTypeComboBox");
    for (int type : {1, 2, 0}) {
        types->setCurrentIndex(type);
        QCOMPARE(block.loopType, type);
        QCOMPARE(general.find("loopResultInReportCheckBox")->isEnabled(), type != 0);
        for (int load = 0; load < 2; ++load) {
            QCOMPARE(general.find("fixedWidget")->isEnabledTo(&general.panel), type == 1);
            QCOMPARE(general.find("customWidget")->isEnabledTo(&general.panel), type == 2);
            general.panel.loadGeneral(general.block);
        }
    }
    QVERIFY(general.find("fixedCycle")->isHidden());
    types->setCurrentIndex(1);
    general.find<QSpinBox>("timesSpin")->setValue(7);
    general.find<QLineEdit>("valueLineEdit")->setText(text("n"));
    general.find<QLineEdit>("timesLineEdit_init")->setText(text("a"));
    general.find<QLineEdit>("timesLineEdit_ver")->setText(text("b"));
    general.find<QLineEdit>("timesLineEdit_add")->setText(text("c"));
    QCOMPARE(block.loopCount, 10);
    general.panel.flushPending();
    QCOMPARE(block.loopCount, 7);
    QCOMPARE(block.loopVariable + block.loopInit + block.loopCondition + block.loopStep,
             std::string("nabc"));
    general.panel.loadGeneral(nullptr);
    general.panel.loadGeneral(general.block);
    QCOMPARE(general.find<QSpinBox>("timesSpin")->value(), 7);
    QCOMPARE(general.find<QLineEdit>("timesLineEdit_add")->text(), text("c"));

    block.loopType = 7; // of a later version
    general.panel.loadGeneral(general.block);
    general.type("textEdit", text("x"));
    general.panel.flushPending();
    QCOMPARE(block.loopType, 7);
}

void GeneralSettingsTest::targets()
{
    General general;
    const std::string step = general.add(text("2"), step_type::Delay, "target")->uuid;
    const std::string other = general.other.toStdString();
    const struct
    {
        int whenTrue;
        std::string trueTarget;
        int whenFalse;
        std::string falseTarget;
        const char* trueLook;
        const char* falseLook;
    } cases[] = {
        {0, "", 0, "", "hidden", "hidden"},
        {1, step, 1, step, "target", "target"},
        {1, "", 1, "", "[选择跳转的步骤...]", "[选择跳转的步骤...]"},
        {2, other, 2, other, "Other", "Other"},
        {2, "", 2, "", "[选择跳转的序列...]", "[选择跳转的序列...]"},
        {1, "gone", 2, "gone", "", ""},
        {3, "", 5, "", "hidden", "hidden"},
        {0, "", 4, other, "hidden", "Other"},
        {4, "", 1, step, "hidden", "hidden"},
        {4, "", 4, other, "hidden", "hidden"},
    };
    for (const auto& each : cases) {
        general.block->trueAction = each.whenTrue;
        general.block->trueTarget = each.trueTarget;
        general.block->falseAction = each.whenFalse;
        general.block->falseTarget = each.falseTarget;
        general.panel.loadGeneral(general.block);
        const QString row = text("%1/%2: ").arg(each.whenTrue).arg(each.whenFalse);
        QCOMPARE(row + general.look(true), row + text(each.trueLook));
        QCOMPARE(row + general.look(false), row + text(each.falseLook));
    }
    QCOMPARE(general.modified.count(), 0);
}

void GeneralSettingsTest::changedActions()
{
    General general;
    const std::string step = general.add(text("1"), step_type::Delay, "target")->uuid;
    general.panel.loadGeneral(general.block);
    for (const bool whenTrue : {true, false}) {
        const auto target = [&]() -> std::string& {
            return whenTrue ? general.block->trueTarget : general.block->falseTarget;
        };
        general.action(whenTrue)->setCurrentIndex(1);
        // What the false one asks for stands the other way round.
        QCOMPARE(general.look(whenTrue),
                 whenTrue ? text("[选择跳转的步骤...]") : text("[选择跳转的序列...]"));
        QCOMPARE(target(), std::string());
        general.action(whenTrue)->setCurrentIndex(2);
        QCOMPARE(general.look(whenTrue),
                 whenTrue ? text("[选择跳转的序列...]") : text("[选择跳转的步骤...]"));
        target() = step;
        general.action(whenTrue)->setCurrentIndex(1);
        QCOMPARE(general.look(whenTrue), text("target"));
        QCOMPARE(target(), std::string("3")); // the kind of the row, till one is picked
        general.action(whenTrue)->setCurrentIndex(3);
        QCOMPARE(general.look(whenTrue), text("hidden"));
    }
    QCOMPARE(general.block->trueAction, 3);
    QCOMPARE(general.block->falseAction, 3);
    QCOMPARE(general.modified.count(), 8);
    QCOMPARE(general.told.count(), 8);
}

void GeneralSettingsTest::pickedTarget()
{
    General general;
    const std::string step = general.add(text("1"), step_type::Delay, "target")->uuid;
    general.panel.loadGeneral(general.block);
    general.action(true)->setCurrentIndex(1);
    general.told.clear();
    general.modified.clear();
    CustomComboBox* box = general.target(true);
    general.find<QListWidget>("listWidget")->setCurrentRow(4);
    QTest::mouseClick(box->lineEdit(), Qt::LeftButton);
    QVERIFY(box->view()->isVisible());
    box->hidePopup();
    QCOMPARE(general.modified.count(), 0);
    QTest::keyClick(box, Qt::Key_Down); // the first flow
    for (int keys = 0; keys < 20 && box->currentText() != text("target"); ++keys)
        QTest::keyClick(box, Qt::Key_Down);
    QCOMPARE(general.block->trueTarget, step);
    QVERIFY(!box->isEditable());
    QCOMPARE(general.told.count(), 0); // the row says nothing of it
    QVERIFY(general.modified.count() > 0);
}

void GeneralSettingsTest::listsOfTargets()
{
    General general;
    const auto branch = general.add(text("1"), step_type::If, "if");
    branch->property.tagEnabled = false;
    const QString branchId = QString::fromStdString(branch->uuid);
    const auto inner = general.add(branchId, step_type::Delay, "inner");
    inner->property.tagEnabled = true;
    const auto grey = general.add(text("2"), step_type::Delay, "grey");
    grey->property.tagEnabled = false;
    general.block->trueAction = 1;
    general.block->trueTarget = inner->uuid;
    general.panel.loadGeneral(general.block);
    CustomComboBox* box = general.target(true);
    QCOMPARE(box->model()->rowCount(), 1); // thousands of steps only when somebody looks
    QCOMPARE(box->currentText(), text("inner"));
    box->showPopup();
    QStringList printed = test_support::printTree(*box->model());
    QCOMPARE(printed, lines("初始流程\n主流程\n  step\n  if\n    inner\n结束流程\n  grey"));
    const auto* view = box->view();
    QCOMPARE(view->currentIndex().data().toString(), text("inner"));
    const QModelIndex main = box->model()->index(1, 0);
    const QModelIndex ofBranch = box->model()->index(1, 0, main);
    QVERIFY(!(ofBranch.flags() & Qt::ItemIsEnabled));
    QVERIFY(main.flags() & Qt::ItemIsEnabled);
    QVERIFY(!ofBranch.data(Qt::DecorationRole).isNull());
    QTest::keyClick(box->view(), Qt::Key_Escape);
    QCOMPARE(box->currentText(), text("inner"));

    // Keys step over what is grey, and stay at the last row.
    QTest::keyClick(box, Qt::Key_Up);
    QCOMPARE(box->currentText(), text("step"));
    for (int keys = 0; keys < 5; ++keys)
        QTest::keyClick(box, Qt::Key_Down);
    QCOMPARE(box->currentText(), text("结束流程"));
    QCOMPARE(general.block->trueTarget, std::string("2"));
    box->setCurrentByData(text("nobody"));
    QCOMPARE(box->currentIndex(), -1);
}

void GeneralSettingsTest::wheelNeedsTheFocus()
{
    General general;
    general.panel.activateWindow();
    general.panel.loadGeneral(general.block);
    general.find<QListWidget>("listWidget")->setCurrentRow(1);
    auto* types = general.find<QComboBox>("loopTypeComboBox");
    const auto isTaken = [](QWidget* over) {
        const QPointF place = over->rect().center();
        QWheelEvent event(place, over->mapToGlobal(place.toPoint()), {}, {0, -120}, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(over, &event);
        return event.isAccepted();
    };
    // It goes on to what is around them.
    QVERIFY(!isTaken(types));
    QVERIFY(!isTaken(general.find("timesSpin")));
    QCOMPARE(types->currentIndex(), 0);
    QCOMPARE(general.find<QSpinBox>("timesSpin")->value(), 10);
    types->setFocus();
    QTRY_VERIFY(types->hasFocus());
    QVERIFY(isTaken(types));
    QCOMPARE(types->currentIndex(), 1);
}

PE_WIDGET_TEST("general_settings", GeneralSettingsTest)
#include "general_settings_test.moc"
