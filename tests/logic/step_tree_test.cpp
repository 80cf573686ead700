// The palette: what it makes of the tables, how the folder of the quick steps follows, and what its
// items stand for.

#include "logic/palette/StepTree.h"
#include "logic/palette/palette_choice.h"
#include "logic/rows/logic_roles.h"
#include "model/services/process_edit.h"
#include "model/services/process_json_edit.h"
#include "tests/logic/LogicFixture.h"
#include "tests/support/print_tree.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include <QTest>

namespace facade = sdk_ui_interface::processedit;

namespace {

BaseStepProperty kind(const char* name, int stepType, logicBlockType baseType = BasicStep)
{
    BaseStepProperty property;
    property.name = name;
    property.baseType = baseType;
    property.stepType = stepType;
    property.draggable = true;
    return property;
}

BaseStepProperty folder(const char* name, int stepType = step_type::QuickStepFolder)
{
    BaseStepProperty property = kind(name, stepType);
    property.draggable = false;
    return property;
}

QString menuOf(const QTreeWidgetItem* item)
{
    QStringList texts;
    for (const auto& entry : palette_choice::menuOf(item))
        texts.append(QString::number(int(entry.action)) + entry.text);
    return texts.join(QLatin1Char(' '));
}

} // namespace

class StepTreeTest : public QObject
{
    Q_OBJECT
private slots:
    void itemsOfKinds();
    void customKindsStandBeforeTheQuickSteps();
    void quickSteps();
    void choices();

private:
    static QString print(const StepTree& palette)
    {
        return test_support::printTree(*palette.model()).join(QLatin1Char('|'));
    }

    const QString m_owner = text("palette_owner");
    const std::string m_key = m_owner.toLocal8Bit().toStdString();
};

void StepTreeTest::itemsOfKinds()
{
    StepTree palette;
    BaseStepProperty flow = folder("flow", step_type::None);
    BaseStepProperty hidden = kind("hidden", step_type::Else);
    hidden.showInPalette = false;
    hidden.children.push_back(kind("under hidden", step_type::Delay));
    flow.children = {kind("if", step_type::If), hidden};
    QVERIFY(!palette.createStepItem(flow, nullptr, true)); // no place before the last one
    QTreeWidgetItem* item = palette.createStepItem(flow, nullptr, false);
    QCOMPARE(print(palette), text("flow|  if"));
    QVERIFY(item->icon(0).isNull());
    QVERIFY(!item->flags().testFlag(Qt::ItemIsDragEnabled));
    const QTreeWidgetItem* child = item->child(0);
    QVERIFY(!child->icon(0).isNull());
    QVERIFY(child->flags().testFlag(Qt::ItemIsDragEnabled));
    QCOMPARE(child->data(0, logic_roles::StepType).toInt(), step_type::If);
    QCOMPARE(child->data(0, logic_roles::Draggable).toBool(), true);
    QCOMPARE(child->data(0, logic_roles::IsQuickStep).toBool(), false);
}

void StepTreeTest::customKindsStandBeforeTheQuickSteps()
{
    StepTree palette;
    palette.createStepItem(folder("quick"), nullptr, false);
    palette.addCustomStepList(m_owner,
                              {kind("one", step_type::Delay), kind("two", step_type::Buzz)});
    QCOMPARE(print(palette), text("one|two|quick"));
    const auto nameOfBuzz = [this] {
        return process_edit::getCustomBaseStepProperty(m_key, BasicStep, step_type::Buzz).name;
    };
    QCOMPARE(nameOfBuzz(), std::string("two"));
    palette.resetCustomStepList(m_owner);
    QCOMPARE(nameOfBuzz(), std::string());
    QVERIFY(!print(palette).contains(text("one")));
}

void StepTreeTest::quickSteps()
{
    LogicFixture applet;
    const QString sequence = applet.addSequence("Main");
    QStringList ids;
    for (const char* name : {"a", "b", "c"}) {
        const QString uuid = applet.add(sequence, applet.main, step_type::Delay, name);
        applet.get<IProcessBlock>(uuid)->property.draggable = true;
        ids.append(facade::addQuickStepInfo(applet.appName, uuid));
    }
    StepTree palette;
    palette.onUpdateQuickStep(ids, false); // there is no folder yet
    QCOMPARE(palette.topLevelItemCount(), 0);
    const QTreeWidgetItem* top = palette.createStepItem(folder("quick"), nullptr, false);
    palette.onUpdateQuickStep(ids, false);
    QCOMPARE(print(palette), text("quick|  a|  b|  c"));
    palette.onUpdateQuickStep({ids[0], ids[1]}, true);
    QCOMPARE(print(palette), text("quick|  c"));

    const QTreeWidgetItem* item = top->child(0);
    const auto choice = palette_choice::stepOf(item, applet.appName);
    QVERIFY(choice);
    QCOMPARE(choice->stepType, step_type::Delay);
    QCOMPARE(choice->quickStepId, ids[2]);
    QCOMPARE(palette_choice::quickStepId(item), ids[2]);
    QCOMPARE(menuOf(item), text("0添加流程 1从快捷添加中移除"));

    facade::getQuickStepInfo(ids[2])->property.showInPalette = false;
    QVERIFY(!palette_choice::stepOf(item, applet.appName));
    for (const QString& id : qAsConst(ids))
        facade::removeQuickStepInfo(id);
    QVERIFY(!palette_choice::stepOf(item, applet.appName));
}

void StepTreeTest::choices()
{
    StepTree palette;
    // The kind of the table counts, not what the item was made from.
    BaseStepProperty hidden = kind("hidden", 1, DiagnosticStep);
    const BaseStepProperty session = kind("session", 1, DiagnosticStep);
    const QTreeWidgetItem* hiddenItem = palette.createStepItem(hidden, nullptr, false);
    hidden.showInPalette = false;
    const QTreeWidgetItem* item = palette.createStepItem(session, nullptr, false);
    process_edit::addCustomStepProperty(m_key, {hidden, session});
    const auto choice = palette_choice::stepOf(item, m_owner);
    QVERIFY(choice);
    QCOMPARE(choice->baseType, DiagnosticStep);
    QCOMPARE(choice->stepType, 1);
    QCOMPARE(choice->text, text("session"));
    QVERIFY(choice->quickStepId.isEmpty());
    QVERIFY(!palette_choice::stepOf(hiddenItem, m_owner));
    QVERIFY(palette_choice::stepOf(hiddenItem, text("another owner")));
    process_edit::removeAllCustomStepProperty(m_key);

    const QTreeWidgetItem* top = palette.createStepItem(folder("folder", 0), nullptr, false);
    QVERIFY(palette_choice::stepOf(top, m_owner));
    QVERIFY(!palette_choice::stepOf(nullptr, m_owner));
    QCOMPARE(menuOf(top) + menuOf(nullptr), QString());
    QCOMPARE(menuOf(item), text("0添加流程"));
}

PE_WIDGET_TEST("logic_step_tree", StepTreeTest)
#include "step_tree_test.moc"
