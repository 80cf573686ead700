// The palette: what it makes of the tables, and how the folder of the quick steps follows.

#include "logic/StepTree.h"
#include "logic/logic_roles.h"
#include "model/services/process_edit.h"
#include "model/services/process_json_edit.h"
#include "tests/logic/LogicFixture.h"
#include "tests/support/print_tree.h"

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

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

} // namespace

class StepTreeTest : public QObject
{
    Q_OBJECT
private slots:
    void itemsOfKinds();
    void customKindsStandBeforeTheQuickSteps();
    void quickSteps();
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

QTEST_MAIN(StepTreeTest)
#include "step_tree_test.moc"
