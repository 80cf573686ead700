#include "tests/support/test_program.h"
#include "workbench/CommandLine.h"

#include <QtTest>

class CommandLineTest : public QObject
{
    Q_OBJECT
private slots:
    void refusals_data();
    void refusals();
    void everything();
    void nothing();
    void help();
};

namespace {

CommandLine parse(const char* arguments)
{
    QStringList list{QStringLiteral("workbench")};
    list += QString::fromUtf8(arguments).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    return CommandLine::parse(list);
}

} // namespace

void CommandLineTest::refusals_data()
{
    QTest::addColumn<QByteArray>("arguments");
    for (const char* arguments :
         {"--unknown", "--run", "--run both", "--stop-after 10", "--run main --stop-after soon",
          "--run main --stop-after -5", "positional", "--applet", "--project="})
        QTest::newRow(arguments) << QByteArray(arguments);
}

void CommandLineTest::refusals()
{
    QFETCH(QByteArray, arguments);
    const CommandLine line = parse(arguments.constData());
    QVERIFY(line.answer == CommandLine::Answer::Refuse);
    QVERIFY(!line.text.isEmpty());
}

void CommandLineTest::everything()
{
    const CommandLine line = parse("--project /p --applet a --headless --run current "
                                   "--stop-after 250 --screenshot /s");
    QVERIFY(line.answer == CommandLine::Answer::Go);
    QCOMPARE(line.project, QStringLiteral("/p"));
    QCOMPARE(line.applet, QStringLiteral("a"));
    QVERIFY(line.headless);
    QVERIFY(line.run == CommandLine::Run::Current);
    QCOMPARE(line.stopAfter, 250);
    QCOMPARE(line.screenshotFolder, QStringLiteral("/s"));
}

void CommandLineTest::nothing()
{
    const CommandLine line = parse("");
    QVERIFY(line.answer == CommandLine::Answer::Go);
    QVERIFY(line.run == CommandLine::Run::None);
    QVERIFY(!line.headless && line.stopAfter < 0);
}

void CommandLineTest::help()
{
    const CommandLine line = parse("--help");
    QVERIFY(line.answer == CommandLine::Answer::PrintAndExit);
    for (const char* option :
         {"--project", "--applet", "--headless", "--run", "--stop-after", "--screenshot"})
        QVERIFY2(line.text.contains(QLatin1String(option)), option);
}

PE_TEST("command_line_test", CommandLineTest)
#include "command_line_test.moc"
