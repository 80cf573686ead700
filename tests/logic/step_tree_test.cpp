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

using test_support::printTree;

namespace {

BaseStepProperty kind(const char* name, int stepType, bool draggable = true)
{
    BaseStepProperty property;
    property.name = name;
    property.stepType = stepType;
    property.draggable = draggable;
    return property;
}

BaseStepProperty quickStepFolder()
{
    return kind("quick", step_type::QuickStepFolder, false);
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
    void choicesOfQuickSteps();
};

void StepTreeTest::itemsOfKinds()
{
    StepTree palette;
    BaseStepProperty folder = kind("flow", step_type::None, false);
    BaseStepProperty hidden = kind("hidden", step_type::Else);
    hidden.showInPalette = false;
    hidden.children.push_back(kind("under hidden", step_type::Delay));
    folder.children = {kind("if", step_type::If), hidden};
    QVERIFY(!palette.createStepItem(folder, nullptr, true)); // no place before the last one
    QTreeWidgetItem* item = palette.createStepItem(folder, nullptr, false);
    QCOMPARE(printTree(*palette.model()), QStringList({text("flow"), text("  if")}));
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
    const QString owner = text("palette_owner");
    StepTree palette;
    palette.createStepItem(quickStepFolder(), nullptr, false);
    palette.addCustomStepList(owner, {kind("one", step_type::Delay), kind("two", step_type::Buzz)});
    QCOMPARE(printTree(*palette.model()), QStringList({text("one"), text("two"), text("quick")}));
    const std::string key = owner.toLocal8Bit().toStdString();
    QCOMPARE(process_edit::getCustomBaseStepProperty(key, BasicStep, step_type::Buzz).name,
             std::string("two"));
    palette.resetCustomStepList(owner);
    QVERIFY(process_edit::getCustomBaseStepProperty(key, BasicStep, step_type::Buzz).name.empty());
    QVERIFY(!printTree(*palette.model()).contains(text("one")));
}

void StepTreeTest::quickSteps()
{
    namespace facade = sdk_ui_interface::processedit;
    LogicFixture applet;
    const QString sequence = applet.addSequence("Main");
    QStringList ids;
    for (const char* name : {"a", "b", "c"})
        ids.append(facade::addQuickStepInfo(
            applet.appName, applet.add(sequence, applet.main, step_type::Delay, name)));

    StepTree palette;
    palette.onUpdateQuickStep(ids, false); // there is no folder yet
    QCOMPARE(palette.topLevelItemCount(), 0);
    QTreeWidgetItem* folder = palette.createStepItem(quickStepFolder(), nullptr, false);
    palette.onUpdateQuickStep(ids, false);
    QCOMPARE(printTree(*palette.model()),
             QStringList({text("quick"), text("  a"), text("  b"), text("  c")}));
    QCOMPARE(folder->child(1)->data(0, logic_roles::QuickStepId).toString(), ids[1]);
    QCOMPARE(folder->child(1)->data(0, logic_roles::IsQuickStep).toBool(), true);
    palette.onUpdateQuickStep({ids[0], ids[1]}, true);
    QCOMPARE(printTree(*palette.model()), QStringList({text("quick"), text("  c")}));
    for (const QString& id : qAsConst(ids))
        facade::removeQuickStepInfo(id);
}

void StepTreeTest::choices()
{
    const QString owner = text("palette_owner");
    const std::string key = owner.toLocal8Bit().toStdString();
    StepTree palette;
    BaseStepProperty named = kind("session", 1);
    named.baseType = DiagnosticStep;
    BaseStepProperty hidden = kind("hidden", 1);
    hidden.baseType = DiagnosticStep;
    // The kind of the table counts, not what the item was made from.
    QTreeWidgetItem* hiddenItem = palette.createStepItem(hidden, nullptr, false);
    hidden.showInPalette = false;
    QTreeWidgetItem* item = palette.createStepItem(named, nullptr, false);
    process_edit::addCustomStepProperty(key, {hidden, named});
    const auto choice = palette_choice::stepOf(item, owner);
    QVERIFY(choice);
    QCOMPARE(choice->baseType, DiagnosticStep);
    QCOMPARE(choice->stepType, 1);
    QCOMPARE(choice->text, text("session"));
    QVERIFY(choice->quickStepId.isEmpty());
    QVERIFY(!palette_choice::stepOf(hiddenItem, owner));
    QVERIFY(palette_choice::stepOf(hiddenItem, text("another owner")));
    process_edit::removeAllCustomStepProperty(key);

    QTreeWidgetItem* folder = palette.createStepItem(kind("folder", 0, false), nullptr, false);
    QVERIFY(palette_choice::stepOf(folder, owner));
    QVERIFY(palette_choice::menuOf(folder).isEmpty());
    QVERIFY(!palette_choice::stepOf(nullptr, owner));
    QVERIFY(palette_choice::menuOf(nullptr).isEmpty());
    const auto menu = palette_choice::menuOf(item);
    QCOMPARE(menu.size(), 1);
    QCOMPARE(menu.first().action, palette_choice::Action::AddStep);
    QCOMPARE(menu.first().text, text("添加流程"));
}

void StepTreeTest::choicesOfQuickSteps()
{
    namespace facade = sdk_ui_interface::processedit;
    LogicFixture applet;
    const QString uuid = applet.add(applet.addSequence("Main"), applet.main, step_type::Delay, "a");
    applet.get<IProcessBlock>(uuid)->property.draggable = true;
    const QString id = facade::addQuickStepInfo(applet.appName, uuid);
    StepTree palette;
    QTreeWidgetItem* folder = palette.createStepItem(quickStepFolder(), nullptr, false);
    palette.onUpdateQuickStep({id}, false);
    const QTreeWidgetItem* item = folder->child(0);
    const auto choice = palette_choice::stepOf(item, applet.appName);
    QVERIFY(choice);
    QCOMPARE(choice->stepType, step_type::Delay);
    QCOMPARE(choice->quickStepId, id);
    const auto menu = palette_choice::menuOf(item);
    QCOMPARE(menu.size(), 2);
    QCOMPARE(menu.last().action, palette_choice::Action::RemoveQuickStep);
    QCOMPARE(menu.last().text, text("从快捷添加中移除"));
    QCOMPARE(palette_choice::quickStepId(item), id);

    facade::getQuickStepInfo(id)->property.showInPalette = false;
    QVERIFY(!palette_choice::stepOf(item, applet.appName));
    facade::removeQuickStepInfo(id);
    QVERIFY(!palette_choice::stepOf(item, applet.appName));
}

PE_WIDGET_TEST("logic_step_tree", StepTreeTest)
#include "step_tree_test.moc"
