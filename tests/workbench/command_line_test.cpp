#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"
#include "workbench/CommandLine.h"

#include <QtTest>

class CommandLineTest : public QObject
{
    Q_OBJECT
private slots:
    void refusals();
    void everything();
    void nothing();

private:
    static CommandLine parse(const char* arguments)
    {
        return CommandLine::parse(
            (text("workbench ") + text(arguments)).split(u' ', Qt::SkipEmptyParts));
    }
};

void CommandLineTest::refusals()
{
    for (const char* arguments :
         {"--unknown", "--run", "--run both", "--stop-after 10", "--run main --stop-after soon",
          "--run main --stop-after -5", "positional", "--applet", "--project="}) {
        const rows::Named named(arguments);
        const CommandLine line = parse(arguments);
        QVERIFY(line.answer == CommandLine::Answer::Refuse);
        QVERIFY(!line.text.isEmpty());
    }
}

void CommandLineTest::everything()
{
    const CommandLine line = parse("--project /p --applet a --headless --run current "
                                   "--stop-after 250 --screenshot /s");
    QVERIFY(line.answer == CommandLine::Answer::Go);
    QCOMPARE(line.project, text("/p"));
    QCOMPARE(line.applet, text("a"));
    QVERIFY(line.headless);
    QVERIFY(line.run == CommandLine::Run::Current);
    QCOMPARE(line.stopAfter, 250);
    QCOMPARE(line.screenshotFolder, text("/s"));
}

void CommandLineTest::nothing()
{
    const CommandLine line = parse("");
    QVERIFY(line.answer == CommandLine::Answer::Go);
    QVERIFY(line.run == CommandLine::Run::None);
    QVERIFY(!line.headless && line.stopAfter < 0);
}

PE_TEST("command_line_test", CommandLineTest)
#include "command_line_test.moc"
