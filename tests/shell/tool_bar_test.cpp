#include "shell/run/ProcessEditToolBar.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"

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
};

void ToolBarTest::numbers()
{
    const rows::Table<QString, int> table{{"save", QStringLiteral("saveBtn"), 0},
                                          {"convert", QStringLiteral("toVciBtn"), 1},
                                          {"run", QStringLiteral("runBtn"), 2},
                                          {"pause", QStringLiteral("pauseBtn"), 6},
                                          {"stop", QStringLiteral("stopBtn"), 7},
                                          {"compile", QStringLiteral("compileBtn"), 8},
                                          {"import", QStringLiteral("importBtn"), 9},
                                          {"export", QStringLiteral("exportBtn"), 10},
                                          {"code folder", QStringLiteral("openCodeBtn"), 11}};
    for (const auto& [row, button, number] : table) {
        const rows::Named named(row);
        ProcessEditToolBar bar;
        auto* pressed = bar.findChild<QToolButton*>(button);
        QVERIFY(pressed);
        pressed->setEnabled(true);
        QSignalSpy spy(&bar, &ProcessEditToolBar::defaultFunctionClicked);
        pressed->click();
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.at(0).at(0).toInt(), number);
    }
}

void ToolBarTest::runMenu()
{
    const rows::Table<int, int> table{
        {"current", 0, 2}, {"main", 1, 3}, {"single test", 3, 4}, {"continuous test stops", 4, 7}};
    for (const auto& [row, action, number] : table) {
        const rows::Named named(row);
        ProcessEditToolBar bar;
        auto* run = bar.findChild<QToolButton*>(QStringLiteral("runBtn"));
        QSignalSpy spy(&bar, &ProcessEditToolBar::defaultFunctionClicked);
        QAction* chosen = run->menu()->actions().at(action);
        chosen->trigger();
        QCOMPARE(spy.count(), 0);
        QCOMPARE(run->defaultAction(), chosen);
        run->click();
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.at(0).at(0).toInt(), number);
    }
}

void ToolBarTest::states()
{
    const rows::Table<int, QString> table{
        // run, pause, stop, convert, compile
        {"idle", int(ProcessEditToolBar::State::Idle), QStringLiteral("10011")},
        {"started", int(ProcessEditToolBar::State::Started), QStringLiteral("00100")},
        {"running", int(ProcessEditToolBar::State::Running), QStringLiteral("01100")}};
    for (const auto& [row, state, expectedEnabled] : table) {
        const rows::Named named(row);
        ProcessEditToolBar bar;
        bar.setState(ProcessEditToolBar::State(state));
        QString enabled;
        for (const char* name : {"runBtn", "pauseBtn", "stopBtn", "toVciBtn", "compileBtn"}) {
            const auto* button = bar.findChild<QToolButton*>(QString::fromLatin1(name));
            enabled += QLatin1Char(button->isEnabled() ? '1' : '0');
        }
        QCOMPARE(enabled, expectedEnabled);
    }
}

void ToolBarTest::extraWidgets()
{
    ProcessEditToolBar bar;
    QToolButton first;
    QToolButton second;
    bar.addExtraToolBarFunction(&first);
    bar.addExtraToolBarFunction(&second);
    bar.show();
    QVERIFY(first.isVisibleTo(&bar));
    QVERIFY(QTest::qWaitForWindowExposed(&bar));
    QVERIFY(first.mapTo(&bar, QPoint()).x() < second.mapTo(&bar, QPoint()).x());
    bar.removeExtraToolBarFunction(&first);
    bar.removeExtraToolBarFunction(&second);
    first.setParent(nullptr);
    second.setParent(nullptr);
}

void ToolBarTest::staleHint()
{
    ProcessEditToolBar bar;
    const auto* compile = bar.findChild<QToolButton*>(QStringLiteral("compileBtn"));
    QCOMPARE(compile->toolTip(), QStringLiteral("编译"));
    bar.setRuntimeStaleHint(true);
    QCOMPARE(compile->toolTip(), QStringLiteral("编译（运行层已过期，需重新编译）"));
    bar.setRuntimeStaleHint(false);
    QCOMPARE(compile->toolTip(), QStringLiteral("编译"));
}

PE_WIDGET_TEST("tool_bar_test", ToolBarTest)
#include "tool_bar_test.moc"
