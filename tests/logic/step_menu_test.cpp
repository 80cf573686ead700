// The context menu of the edit tree: what it offers where, and what its entries do.

#include "model/services/process_json_edit.h"
#include "tests/logic/EditFixture.h"
#include "tests/support/test_program.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QTabWidget>
#include <QTest>
#include <QToolTip>

#include <memory>

namespace {

class Menus : public EditFixture
{
public:
    explicit Menus(const char* steps) : EditFixture(steps)
    {
        view.resize(800, 600);
        view.show();
    }

    /// The menu that a right click brings; null for none.
    QMenu* open()
    {
        QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 5), QPoint(5, 5));
        QCoreApplication::sendEvent(&view, &event);
        const auto menus = view.findChildren<QMenu*>(QStringLiteral("stepMenu"));
        return menus.isEmpty() ? nullptr : menus.last();
    }
    /// Its entries in order, those that can't be chosen in brackets; without the submenu.
    QStringList entries()
    {
        const std::unique_ptr<QMenu> menu(open());
        QStringList texts;
        const auto actions = menu->actions();
        for (const QAction* action : actions) {
            if (!action->menu())
                texts.append(action->isEnabled()
                                 ? action->text()
                                 : QLatin1Char('[') + action->text() + QLatin1Char(']'));
        }
        return texts;
    }
    void trigger(const QString& text)
    {
        const std::unique_ptr<QMenu> menu(open());
        const auto actions = menu->actions();
        for (QAction* action : actions) {
            if (action->text() == text)
                return action->trigger();
        }
        QFAIL(qPrintable(text));
    }
    void select(const QStringList& uuids)
    {
        setCurrent(uuids.first());
        for (const QString& uuid : uuids)
            tree->selectionModel()->select(row(uuid)->index(),
                                           QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }
};

} // namespace

class StepMenuTest : public QObject
{
    Q_OBJECT
private slots:
    void offers();
    void noMenuWhileRunning();
    void kindsOfThePalette();
    void switchingManyIsOneChange();
    void withoutADiagnosisService();
};

void StepMenuTest::offers()
{
    Menus menus("one two endif");
    const QString one = menus.id("one");
    const QString two = menus.id("two");
    const QString closer = menus.id("endif");
    menus.applet.get<IProcessBlock>(closer)->property.showInPalette = false;
    menus.addDiagnosticKinds();
    const QString uds = menus.addDiagnostic(menus.applet.main);
    process_edit::removeAllCustomStepProperty(menus.owner());
    menus.show();
    const QStringList always{text("启用选中节点"), text("禁用选中节点")};
    const struct
    {
        const char* name;
        QStringList selected;
        QStringList entries;
    } cases[] = {
        {"a flow", {menus.applet.main}, {text("删除所有节点")}},
        {"a step", {one}, {text("删除节点"), text("添加至快捷添加")}},
        {"two steps", {one, two}, {text("添加至快捷添加")}},
        {"a closer", {closer}, {text("删除节点")}},
        {"a closer and a step", {closer, one}, {text("添加至快捷添加")}},
        {"a diagnostic step, of no kind",
         {uds},
         {text("删除节点"), text("批量设置ecu"), text("[诊断编辑]"), text("添加至快捷添加")}},
        {"a step, and a diagnostic one", {one, uds}, {text("批量设置ecu"), text("添加至快捷添加")}},
    };
    for (const auto& each : cases) {
        menus.select(each.selected);
        QVERIFY2(menus.entries() == each.entries + always,
                 QByteArray(each.name) + ": " + menus.entries().join(QLatin1Char(' ')).toUtf8());
    }
    menus.addDiagnosticKinds();
    menus.select({uds});
    QVERIFY(menus.entries().contains(text("诊断编辑")));

    menus.select({one});
    menus.trigger(text("删除节点"));
    QVERIFY(!menus.row(one));
    menus.select({menus.applet.main});
    menus.trigger(text("删除所有节点"));
    QVERIFY(!menus.row(menus.applet.main)->hasChildren());
}

void StepMenuTest::noMenuWhileRunning()
{
    Menus menus("a");
    auto* tabs = menus.view.findChild<QTabWidget*>();
    tabs->setTabEnabled(1, true);
    tabs->setCurrentIndex(1);
    QVERIFY(!menus.open());
    LogicView empty;
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 5), QPoint(5, 5));
    QCoreApplication::sendEvent(&empty, &event);
    QVERIFY(!empty.findChild<QMenu*>(QStringLiteral("stepMenu")));
}

void StepMenuTest::kindsOfThePalette()
{
    Menus menus(" | ");
    process_json_edit::loadDefaultStepJson(R"({"steps": [
        {"name": "流程控制", "baseType": -1, "children": [
            {"name": "if", "stepType": 1, "draggable": true},
            {"name": "endif", "stepType": 4, "showInPalette": false}]},
        {"name": "延时", "stepType": 22},
        {"name": "快捷添加", "stepType": 10001}]})");
    menus.select({menus.applet.main});
    const std::unique_ptr<QMenu> menu(menus.open());
    QVERIFY(menu);
    const QMenu* kinds = menu->actions().first()->menu();
    QCOMPARE(kinds->title(), text("插入步骤"));
    QCOMPARE(kinds->actions().size(), 2);
    QMenu* folder = kinds->actions().first()->menu();
    QCOMPARE(folder->title(), text("流程控制"));
    QCOMPARE(folder->actions().size(), 1);
    QVERIFY(!folder->actions().first()->icon().isNull());
    folder->actions().first()->trigger();
    QCOMPARE(menus.steps(), text(" | if endif | "));
}

void StepMenuTest::switchingManyIsOneChange()
{
    Menus menus("for[inner other] endfor last left");
    menus.modified.clear();
    menus.select({menus.id("for"), menus.id("inner"), menus.id("last")});
    menus.trigger(text("禁用选中节点"));
    QCOMPARE(menus.steps(), text(" | ~: for-[inner- other-] endfor- last- left | "));
    QCOMPARE(menus.modified.count(), 1);
    menus.trigger(text("启用选中节点"));
    QCOMPARE(menus.row(menus.applet.main)->checkState(), Qt::Checked);
    QVERIFY(menus.showsTheService());
    QCOMPARE(menus.modified.count(), 2);
}

void StepMenuTest::withoutADiagnosisService()
{
    Menus menus(" | ");
    menus.addDiagnosticKinds();
    const QString uds = menus.addDiagnostic(menus.applet.main);
    menus.show();
    menus.modified.clear();
    QSignalSpy stale(&menus.view, &LogicView::sigUdsRuntimeStaleRequired);
    menus.select({uds});
    menus.trigger(text("批量设置ecu"));
    QCOMPARE(menus.modified.count(), 0);
    QCOMPARE(stale.count(), 0);
    QCOMPARE(QToolTip::text(), text("诊断服务不可用"));
}

PE_WIDGET_TEST("step_menu", StepMenuTest)
#include "step_menu_test.moc"
