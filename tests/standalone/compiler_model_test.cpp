#include "tests/standalone/codegen_builders.h"
#include "tests/standalone/runtime_harness.h"
#include "tests/support/applet_fixture.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include "model/services/process_edit.h"
#include "model/services/processedit.h"

#include <QtTest>

using namespace run_events;
namespace service = sdk_ui_interface::processedit;

namespace {
const QString modelApp = QStringLiteral("模型");
}

/// The whole road from the model through the compiler to a run.
class CompilerModelTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void compileAndSkip();
    void running();
    void templateOfAnotherSequence();

private:
    static QString compile(const QString& sequenceId)
    {
        return RuntimeHarness::buildFromModel(modelApp, sequenceId);
    }
    template <class Block> std::shared_ptr<Block> addStep(int stepType) const
    {
        return applet_fixture::addStep<Block>(modelApp, m_sequence, text("1"), stepType, "");
    }

    QString m_sequence; ///< where steps are added
    std::unique_ptr<applet_fixture::ScopedApplet> m_applet;
    std::unique_ptr<RuntimeHarness> m_harness;
};

void CompilerModelTest::init()
{
    m_harness = std::make_unique<RuntimeHarness>();
    m_applet = std::make_unique<applet_fixture::ScopedApplet>(modelApp);
    m_sequence = service::createSeuqence(modelApp, text("main"));
}

void CompilerModelTest::cleanup()
{
    m_harness.reset();
    m_applet.reset();
    service::removeAllProcessTemplate(false);
}

void CompilerModelTest::compileAndSkip()
{
    addStep<StatementProcessBlock>(step_type::Statement)->setCustomCode("log_info(\"ran\");");
    QCOMPARE(compile(m_sequence), QString());
    QCOMPARE(compile(m_sequence), text("skipped"));
    process_edit::appNeedUpdate(modelApp.toLocal8Bit().toStdString());
    QCOMPARE(compile(m_sequence), QString());
    QCOMPARE(compile(m_sequence), text("skipped"));
    addStep<DelayProcessBlock>(step_type::Delay);
    QCOMPARE(compile(m_sequence), QString());
    addStep<ExpressionProcessBlock>(step_type::Expression)->rightExpression = "missing";
    QVERIFY(compile(m_sequence).contains(text("‘missing’")));
    QVERIFY(compile(text("no such sequence")).contains(text("找不到要编译的序列")));
    QCOMPARE(compile(QString()), text("refused"));
    m_harness.reset();
    m_harness = std::make_unique<RuntimeHarness>(); // another project: nothing to skip for
    QVERIFY(compile(m_sequence).contains(text("‘missing’")));
}

void CompilerModelTest::running()
{
    const auto delay = addStep<DelayProcessBlock>(step_type::Delay);
    delay->delay = 60000;
    QCOMPARE(compile(m_sequence), QString());
    QVERIFY(m_harness->start(modelApp, m_sequence));
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->reports(modelApp).join(u' '),
                              QString::fromStdString(delay->uuid) + text(":0"), Patience);
    QCOMPARE(compile(m_sequence), text("refused"));
    QCOMPARE(m_harness->stopped(modelApp), Stopped);
    QCOMPARE(compile(m_sequence), text("skipped"));
}

void CompilerModelTest::templateOfAnotherSequence()
{
    addStep<StatementProcessBlock>(step_type::Statement)->setCustomCode("log_info(\"inner\");");
    const auto made = service::addProcessTemplate(modelApp, m_sequence);
    QVERIFY(!made.first.isEmpty());
    m_sequence = service::createSeuqence(modelApp, text("caller"));
    const auto call = addStep<SequenceProcessBlock>(step_type::Sequence);
    call->sourceKind = SequenceProcessBlock::TemplateSequence;
    call->templateId = made.first.toStdString();
    call->templateName = made.second.toStdString();
    QCOMPARE(compile(m_sequence), QString());
    QVERIFY(m_harness->start(modelApp, m_sequence));
    QCOMPARE(m_harness->end(modelApp), Finished);
    QCOMPARE(m_harness->log(modelApp), text("1 inner"));
    QCOMPARE(m_harness->reports(modelApp).filter(u'>' + made.first + u'/').size(), 1);
}

PE_TEST("compiler_model_test", CompilerModelTest)
#include "compiler_model_test.moc"
