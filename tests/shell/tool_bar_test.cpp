#include "shell/run/ProcessEditToolBar.h"
#include "tests/support/test_program.h"

#include <QMenu>
#include <QToolButton>
#include <QtTest>

class ToolBarTest : public QObject
{
    Q_OBJECT
private slots:
    void numbers_data();
    void numbers();
    void runMenu_data();
    void runMenu();
    void states_data();
    void states();
    void extraWidgets();
    void staleHint();
};

void ToolBarTest::numbers_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<int>("number");
    QTest::newRow("save") << QStringLiteral("saveBtn") << 0;
    QTest::newRow("convert") << QStringLiteral("toVciBtn") << 1;
    QTest::newRow("run") << QStringLiteral("runBtn") << 2;
    QTest::newRow("pause") << QStringLiteral("pauseBtn") << 6;
    QTest::newRow("stop") << QStringLiteral("stopBtn") << 7;
    QTest::newRow("compile") << QStringLiteral("compileBtn") << 8;
    QTest::newRow("import") << QStringLiteral("importBtn") << 9;
    QTest::newRow("export") << QStringLiteral("exportBtn") << 10;
    QTest::newRow("code folder") << QStringLiteral("openCodeBtn") << 11;
}

void ToolBarTest::numbers()
{
    QFETCH(QString, button);
    ProcessEditToolBar bar;
    auto* pressed = bar.findChild<QToolButton*>(button);
    QVERIFY(pressed);
    pressed->setEnabled(true);
    QSignalSpy spy(&bar, &ProcessEditToolBar::defaultFunctionClicked);
    pressed->click();
    QCOMPARE(spy.count(), 1);
    QTEST(spy.at(0).at(0).toInt(), "number");
}

void ToolBarTest::runMenu_data()
{
    QTest::addColumn<int>("action");
    QTest::addColumn<int>("number");
    QTest::newRow("current") << 0 << 2;
    QTest::newRow("main") << 1 << 3;
    QTest::newRow("single test") << 3 << 4;
    QTest::newRow("continuous test stops") << 4 << 7;
}

void ToolBarTest::runMenu()
{
    QFETCH(int, action);
    ProcessEditToolBar bar;
    auto* run = bar.findChild<QToolButton*>(QStringLiteral("runBtn"));
    QSignalSpy spy(&bar, &ProcessEditToolBar::defaultFunctionClicked);
    QAction* chosen = run->menu()->actions().at(action);
    chosen->trigger();
    QCOMPARE(spy.count(), 0);
    QCOMPARE(run->defaultAction(), chosen);
    run->click();
    QCOMPARE(spy.count(), 1);
    QTEST(spy.at(0).at(0).toInt(), "number");
}

void ToolBarTest::states_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<QString>("enabled"); // run, pause, stop, convert, compile
    QTest::newRow("idle") << int(ProcessEditToolBar::State::Idle) << QStringLiteral("10011");
    QTest::newRow("started") << int(ProcessEditToolBar::State::Started) << QStringLiteral("00100");
    QTest::newRow("running") << int(ProcessEditToolBar::State::Running) << QStringLiteral("01100");
}

void ToolBarTest::states()
{
    QFETCH(int, state);
    ProcessEditToolBar bar;
    bar.setState(ProcessEditToolBar::State(state));
    QString enabled;
    for (const char* name : {"runBtn", "pauseBtn", "stopBtn", "toVciBtn", "compileBtn"}) {
        const auto* button = bar.findChild<QToolButton*>(QString::fromLatin1(name));
        enabled += QLatin1Char(button->isEnabled() ? '1' : '0');
    }
    QTEST(enabled, "enabled");
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
