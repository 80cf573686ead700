#include "shell/run/ProcessEditToolBar.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include <QMenu>
#include <QToolButton>
#include <QtTest>

class ToolBarTest : public QObject
{
    Q_OBJECT
private slots:
    void numbers();
    void runMenu();
    void states();
    void extraWidgets();
    void staleHint();

private:
    static QToolButton* button(const QWidget& bar, const char* name)
    {
        return bar.findChild<QToolButton*>(text(name));
    }
};

void ToolBarTest::numbers()
{
    const rows::Table<int> table{{"saveBtn", 0},   {"toVciBtn", 1},   {"runBtn", 2},
                                 {"pauseBtn", 6},  {"stopBtn", 7},    {"compileBtn", 8},
                                 {"importBtn", 9}, {"exportBtn", 10}, {"openCodeBtn", 11}};
    ProcessEditToolBar bar;
    for (const auto& [row, number] : table) {
        const rows::Named named(row);
        QSignalSpy spy(&bar, &ProcessEditToolBar::defaultFunctionClicked);
        button(bar, row)->setEnabled(true);
        button(bar, row)->click();
        QCOMPARE(spy, QList<QVariantList>{{number}});
    }
}

void ToolBarTest::runMenu()
{
    const rows::Table<int, int> table{
        {"current", 0, 2}, {"main", 1, 3}, {"single test", 3, 4}, {"continuous test stops", 4, 7}};
    ProcessEditToolBar bar;
    auto* run = button(bar, "runBtn");
    for (const auto& [row, action, number] : table) {
        const rows::Named named(row);
        QSignalSpy spy(&bar, &ProcessEditToolBar::defaultFunctionClicked);
        QAction* chosen = run->menu()->actions().at(action);
        chosen->trigger();
        QCOMPARE(spy.count(), 0);
        QCOMPARE(run->defaultAction(), chosen);
        run->click();
        QCOMPARE(spy, QList<QVariantList>{{number}});
    }
}

void ToolBarTest::states()
{
    using State = ProcessEditToolBar::State;
    const rows::Table<State, QString> table{{"idle", State::Idle, text("10011")},
                                            {"started", State::Started, text("00100")},
                                            {"running", State::Running, text("01100")}};
    ProcessEditToolBar bar;
    for (const auto& [row, state, expected] : table) {
        const rows::Named named(row);
        bar.setState(state);
        QString enabled;
        for (const char* name : {"runBtn", "pauseBtn", "stopBtn", "toVciBtn", "compileBtn"})
            enabled += QString::number(button(bar, name)->isEnabled());
        QCOMPARE(enabled, expected);
    }
}

void ToolBarTest::extraWidgets()
{
    QToolButton first;
    QToolButton second;
    ProcessEditToolBar bar;
    bar.addExtraToolBarFunction(&first);
    bar.addExtraToolBarFunction(&second);
    bar.show();
    QVERIFY(first.isVisibleTo(&bar));
    QVERIFY(QTest::qWaitForWindowExposed(&bar));
    QVERIFY(first.mapTo(&bar, QPoint()).x() < second.mapTo(&bar, QPoint()).x());
    for (QToolButton* extra : {&first, &second}) {
        bar.removeExtraToolBarFunction(extra);
        extra->setParent(nullptr);
    }
}

void ToolBarTest::staleHint()
{
    ProcessEditToolBar bar;
    for (const bool isStale : {true, false}) {
        bar.setRuntimeStaleHint(isStale);
        QCOMPARE(button(bar, "compileBtn")->toolTip(),
                 isStale ? text("编译（运行层已过期，需重新编译）") : text("编译"));
    }
}

PE_WIDGET_TEST("tool_bar_test", ToolBarTest)
#include "tool_bar_test.moc"
