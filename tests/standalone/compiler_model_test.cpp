#include "tests/standalone/runtime_harness.h"
#include "tests/support/test_program.h"

#include "model/process_blocks.h"
#include "model/services/process_edit.h"
#include "model/services/processedit.h"

#include <QSemaphore>
#include <QtTest>

namespace service = sdk_ui_interface::processedit;

/// The whole road from the model through the compiler to a run.
class CompilerModelTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void compileSkipAndRun();
    void running();
    void templateOfAnotherSequence();

private:
    enum class Compiled { Refused, Skipped, Good, Bad };
    Compiled compile(const QString& sequenceId);
    template <class Block, class Change>
    QString addStep(const QString& sequenceId, int stepType, Change change);

    const QString m_app = QStringLiteral("模型");
    std::unique_ptr<RuntimeHarness> m_harness;
};

void CompilerModelTest::init()
{
    m_harness = std::make_unique<RuntimeHarness>();
}

void CompilerModelTest::cleanup()
{
    m_harness.reset();
    service::removeAllProcessTemplate(false);
    service::removeApp(m_app);
}

CompilerModelTest::Compiled CompilerModelTest::compile(const QString& sequenceId)
{
    QSemaphore finished;
    compileResult result = CompileFailed;
    bool skipped = false;
    const auto onFinished = [&](compileResult value, quint64, const char*, const char* message) {
        if (value != CompileSucceeded)
            qWarning("%s", message);
        result = value;
        finished.release();
    };
    if (!service::compileCApplet(m_app, sequenceId, false, false, onFinished, skipped))
        return Compiled::Refused;
    if (skipped)
        return Compiled::Skipped;
    finished.acquire();
    if (result == CompileSucceeded)
        process_edit::setCompileSucessState(m_app.toLocal8Bit().toStdString());
    return result == CompileSucceeded ? Compiled::Good : Compiled::Bad;
}

template <class Block, class Change>
QString CompilerModelTest::addStep(const QString& sequenceId, int stepType, Change change)
{
    const QString uuid =
        service::createProcess(m_app, sequenceId, QStringLiteral("1"), BasicStep, stepType, -1);
    const auto block = std::dynamic_pointer_cast<Block>(service::getProcess(m_app, uuid));
    if (!block)
        return QString();
    change(*block);
    service::updateProcess(m_app, sequenceId, block);
    return uuid;
}

void CompilerModelTest::compileSkipAndRun()
{
    const QString sequence = service::createSeuqence(m_app, QStringLiteral("main"));
    const QString step =
        addStep<StatementProcessBlock>(sequence, step_type::Statement, [](auto& block) {
            block.setCustomCode("log_info(\"ran\");");
        });
    QVERIFY(!step.isEmpty());

    QVERIFY(compile(sequence) == Compiled::Good);
    QVERIFY(compile(sequence) == Compiled::Skipped);
    process_edit::appNeedUpdate(m_app.toLocal8Bit().toStdString());
    QVERIFY(compile(sequence) == Compiled::Good);
    QVERIFY(compile(sequence) == Compiled::Skipped);
    addStep<DelayProcessBlock>(sequence, step_type::Delay, [](auto& block) { block.delay = 0; });
    QVERIFY(compile(sequence) == Compiled::Good);
    addStep<ExpressionProcessBlock>(sequence, step_type::Expression,
                                    [](auto& block) { block.rightExpression = "missing"; });
    QVERIFY(compile(sequence) == Compiled::Bad);
    QVERIFY(compile(QStringLiteral("no such sequence")) == Compiled::Bad);
    QVERIFY(compile(QString()) == Compiled::Refused);
    m_harness.reset();
    m_harness = std::make_unique<RuntimeHarness>(); // another project: nothing to skip for
    QVERIFY(compile(sequence) == Compiled::Bad);
}

void CompilerModelTest::running()
{
    const QString sequence = service::createSeuqence(m_app, QStringLiteral("main"));
    const QString step = addStep<DelayProcessBlock>(sequence, step_type::Delay,
                                                    [](auto& block) { block.delay = 60000; });
    QVERIFY(compile(sequence) == Compiled::Good);
    QVERIFY(m_harness->start(m_app, sequence));
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->reports(m_app), QStringList{step + QStringLiteral(":0")},
                              20000);
    QVERIFY(compile(sequence) == Compiled::Refused);
    service::stopCApplet(m_app, false);
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->events(m_app), QList<int>{2}, 20000);
    QVERIFY(compile(sequence) == Compiled::Skipped);
}

void CompilerModelTest::templateOfAnotherSequence()
{
    const QString inner = service::createSeuqence(m_app, QStringLiteral("inner"));
    addStep<StatementProcessBlock>(inner, step_type::Statement, [](auto& block) {
        block.setCustomCode("log_info(\"inner\");");
    });
    const auto made = service::addProcessTemplate(m_app, inner);
    QVERIFY(!made.first.isEmpty());
    const QString main = service::createSeuqence(m_app, QStringLiteral("main"));
    addStep<SequenceProcessBlock>(main, step_type::Sequence, [&](auto& block) {
        block.sourceKind = SequenceProcessBlock::TemplateSequence;
        block.templateId = made.first.toStdString();
        block.templateName = made.second.toStdString();
    });
    QVERIFY(compile(main) == Compiled::Good);
    QVERIFY(m_harness->start(m_app, main));
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->events(m_app), QList<int>{1}, 20000);
    QCOMPARE(m_harness->logLines(m_app), QStringList{QStringLiteral("1 inner")});
    QVERIFY(m_harness->reports(m_app).filter(u'>' + made.first + u'/').size() == 1);
}

PE_TEST("compiler_model_test", CompilerModelTest)
#include "compiler_model_test.moc"
