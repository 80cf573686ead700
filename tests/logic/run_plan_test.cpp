// What a run reaches: sequences and templates that are called, at any depth, once. And what a
// report means for its row, and for the progress of the whole run.

#include "logic/run/run_plan.h"
#include "logic/run/run_states.h"
#include "model/process_records.h"
#include "model/services/process_json_edit.h"
#include "tests/logic/LogicFixture.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include <QTest>

using run_states::Outcome;
namespace processedit = sdk_ui_interface::processedit;

class RunPlanTest : public QObject
{
    Q_OBJECT
private slots:
    void calledSequences();
    void calledTemplates();
    void outcomes();
    void totalProgress();

private:
    QStringList titles(const QString& sequence) const
    {
        QStringList titles;
        for (const RunTarget& target : run_plan::planRun(m_applet.appName, sequence).targets)
            titles.append(target.title);
        return titles;
    }
    std::shared_ptr<SequenceProcessBlock> callTemplate(const QString& from, const QString& called)
    {
        const auto call = m_applet.get<SequenceProcessBlock>(
            m_applet.addCall(from, m_applet.main, QString(), "call"));
        call->sourceKind = SequenceProcessBlock::TemplateSequence;
        call->templateId = called.toStdString();
        return call;
    }

    LogicFixture m_applet;
};

void RunPlanTest::calledSequences()
{
    const QString first = m_applet.addSequence("first");
    const QString second = m_applet.addSequence("second");
    const QString a = m_applet.add(first, m_applet.initial, step_type::Delay, "a");
    const QString call = m_applet.addCall(first, m_applet.main, second, "call");
    const QString loop = m_applet.add(first, m_applet.main, step_type::While, "loop");
    const QString again = m_applet.addCall(first, loop, second, "again");
    const QString b = m_applet.add(second, m_applet.end, step_type::Delay, "b");
    const QString back = m_applet.addCall(second, m_applet.end, first, "back");
    QCOMPARE(titles(first), lines("first\nsecond"));
    QCOMPARE(run_plan::planRun(m_applet.appName, first).blockUuids,
             QVector<QString>({a, call, b, back, loop, again}));
    m_applet.setEnabled(loop, 0);
    QCOMPARE(run_plan::planRun(m_applet.appName, first).blockUuids,
             QVector<QString>({a, call, b, back}));
    m_applet.setEnabled(call, 0);
    QCOMPARE(titles(first), lines("first"));
}

/// A template lies in the one that calls it, in the project, or in the call itself.
void RunPlanTest::calledTemplates()
{
    const QString inner = m_applet.addSequence("inner");
    m_applet.add(inner, m_applet.main, step_type::Delay, "deep");
    const QString innerId = processedit::addProcessTemplate(m_applet.appName, inner).first;
    const auto innerTemplate = processedit::getProcessTemplateByID(innerId);
    const QString outer = m_applet.addSequence("outer");
    callTemplate(outer, innerId);
    const QString outerId = processedit::addProcessTemplate(m_applet.appName, outer).first;
    const QString main = m_applet.addSequence("main");
    // What a call brings along counts only where the project has none.
    callTemplate(main, outerId)->templateJson =
        process_json_edit::generateOneTemplateJsonStr(innerTemplate);
    const QString innerTitle = QString::fromStdString(innerTemplate.name) + text("/inner");
    QCOMPARE(titles(main).size(), 3);
    QCOMPARE(titles(main).last(), innerTitle);
    RunTarget target;
    QVERIFY(!run_plan::findTarget(m_applet.appName, innerId, main, target));
    QVERIFY(run_plan::findTarget(m_applet.appName, innerId, inner, target));
    QCOMPARE(target.title, innerTitle);
    QCOMPARE(target.flows[MainFlow].size(), std::size_t(1));

    processedit::removeProcessTemplate(innerId);
    QCOMPARE(titles(main).last(), innerTitle); // with the outer one
    QVERIFY(!run_plan::findTarget(m_applet.appName, innerId, inner, target));

    const QString other = m_applet.addSequence("other");
    const auto call = callTemplate(other, innerId);
    QCOMPARE(titles(other), lines("other"));
    call->templateJson = process_json_edit::generateOneTemplateJsonStr(innerTemplate);
    QCOMPARE(titles(other), QStringList({text("other"), innerTitle}));
    processedit::removeProcessTemplate(outerId);
}

void RunPlanTest::outcomes()
{
    const rows::Table<double, int, Outcome> table{
        {"start", 0.0, 0, Outcome::Started},
        {"start with a negative result", 0.0, -1, Outcome::Started},
        {"under way", 0.5, 0, Outcome::Running},
        {"nearly done", 99.999, 0, Outcome::Running},
        {"done with a positive result", 100.0, 7, Outcome::Succeeded},
        {"failed half-way", 40.0, -1, Outcome::Failed},
        {"failed at the end", 100.0, -5, Outcome::Failed}};
    for (const auto& [row, progress, result, expected] : table) {
        const rows::Named named(row);
        QCOMPARE(run_states::outcome(progress, result), expected);
    }
    QCOMPARE(run_states::closingOutcome(-1), Outcome::Failed);
    QCOMPARE(run_states::closingOutcome(3), Outcome::Succeeded);
    QCOMPARE(run_states::background(Outcome::Started), QBrush(Qt::transparent));
}

void RunPlanTest::totalProgress()
{
    QCOMPARE(run_states::totalProgress(0, 4, 0.0), 0.0);
    QCOMPARE(run_states::totalProgress(0, 4, 50.0), 12.5);
    QCOMPARE(run_states::totalProgress(1, 4, 0.0), 25.0);
    QCOMPARE(run_states::totalProgress(3, 4, 100.0), 100.0);
}

PE_TEST("logic_run_plan", RunPlanTest)
#include "run_plan_test.moc"
