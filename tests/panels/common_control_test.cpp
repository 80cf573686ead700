// The stack of panels: which panel is asked for which step, what is said instead, and when a text
// that waits is written.

#include "panels/DelayedWrite.h"
#include "panels/wgtGeneralSetting.h"
#include "tests/panels/StepPanelFixture.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>

Q_DECLARE_METATYPE(std::shared_ptr<IProcessBlock>)

namespace {

/// A panel that notes what is asked of it.
class ProbePanel : public IBlockControl
{
public:
    ProbePanel(logicBlockType base, int step) : m_base(base), m_step(step) {}

    logicBlockType baseType() const override { return m_base; }
    int stepType() const override { return m_step; }
    void loadBlock(std::shared_ptr<IProcessBlock> block) override { loaded = std::move(block); }
    void saveBlock() override
    {
        saves.append(m_cappletName + QLatin1Char('/') + m_sequenceId);
        handBack(loaded, [] {});
    }
    void edit() { m_timer->start(); }

    std::shared_ptr<IProcessBlock> loaded;
    QStringList saves; ///< "applet/sequence"

private:
    logicBlockType m_base;
    int m_step;
};

class NodeBlock : public IProcessBlock
{
public:
    NodeBlock(logicBlockType base, int step, bool editable = true) : IProcessBlock(base, step)
    {
        uuid = std::to_string(step);
        property.editable = editable;
    }
    std::shared_ptr<IProcessBlock> copyAlone() const override { return nullptr; }
    std::string description() const override { return "动作"; }
    std::string settingText() const override { return {}; }
};

std::shared_ptr<IProcessBlock> node(logicBlockType base, int step, bool editable = true)
{
    return std::make_shared<NodeBlock>(base, step, editable);
}

struct Stack
{
    ProbePanel* delay = new ProbePanel(BasicStep, step_type::Delay);
    ProbePanel* uds = new ProbePanel(DiagnosticStep, 4711);
    wgtCommonControl control{{delay, uds}};
    QSignalSpy told{&control, &wgtCommonControl::updateTreeProcessData};

    QWidget* find(const char* name) { return control.findChild<QWidget*>(QLatin1String(name)); }
    QString text(const char* name) { return qobject_cast<QLabel*>(find(name))->text(); }
    /// The panel that is shown; null: page 0.
    QWidget* shown()
    {
        auto* stack = qobject_cast<QStackedWidget*>(find("stackedWidget"));
        return stack->currentIndex() == 0 ? nullptr : stack->currentWidget();
    }
};

} // namespace

class CommonControlTest : public QObject
{
    Q_OBJECT
private slots:
    void choosesThePanel();
    void saysWhyThereIsNone_data();
    void saysWhyThereIsNone();
    void writesWhatWaitsOnce();
    void sequenceChangesAfterTheWrite();
    void diagnosticStepsHaveNothingWaiting();
    void pagesOfTheEditor();
};

void CommonControlTest::choosesThePanel()
{
    Stack s;
    const auto delay = node(BasicStep, step_type::Delay);
    s.control.showBlock(delay);
    QCOMPARE(s.shown(), s.delay);
    QCOMPARE(s.delay->loaded, delay);
    for (int stepType : {1, int(step_type::Delay), 4711}) {
        s.control.showBlock(node(DiagnosticStep, stepType));
        QCOMPARE(s.shown(), s.uds);
        QCOMPARE(s.uds->loaded->stepType(), stepType);
    }
    // A panel's step type counts for its own base type only.
    s.control.showBlock(node(BasicStep, 4711));
    QCOMPARE(s.shown(), nullptr);
    s.control.showBlock(node(MainFlow, step_type::Delay));
    QCOMPARE(s.shown(), nullptr);
    QCOMPARE(s.delay->loaded, delay);
    QVERIFY(s.told.isEmpty());
}

void CommonControlTest::saysWhyThereIsNone_data()
{
    QTest::addColumn<std::shared_ptr<IProcessBlock>>("block");
    QTest::addColumn<QString>("instead"); // of the stack
    QTest::addColumn<QString>("inside");
    using Block = std::shared_ptr<IProcessBlock>;
    const char* notEditable = "该节点不可编辑";
    QTest::newRow("no block") << Block() << notEditable << "";
    QTest::newRow("not editable") << node(BasicStep, step_type::Delay, false) << notEditable << "";
    QTest::newRow("no step") << node(NoBlock, 0) << "当前未选中步骤节点"
                             << "";
    QTest::newRow("no step, not editable") << node(NoBlock, 0, false) << "当前未选中步骤节点"
                                           << "";
    Block plain = std::make_shared<PlainProcessBlock>(step_type::Break);
    plain->property.editable = true;
    QTest::newRow("nothing to set") << plain << ""
                                    << "此步骤类型无需设置属性";
}

void CommonControlTest::saysWhyThereIsNone()
{
    QFETCH(std::shared_ptr<IProcessBlock>, block);
    QFETCH(QString, instead);
    Stack s;
    QVERIFY(s.find("stackedWidget")->isHidden());
    QCOMPARE(s.text("label_12"), QStringLiteral("当前未选中步骤节点"));
    QCOMPARE(s.text("label_3"), QStringLiteral("当前未选中步骤节点"));
    s.control.showBlock(node(BasicStep, step_type::Delay));
    QVERIFY(s.find("label_12")->isHidden());
    s.control.showBlock(block);
    QCOMPARE(s.find("stackedWidget")->isHidden(), !instead.isEmpty());
    QCOMPARE(s.find("label_12")->isHidden(), instead.isEmpty());
    if (!instead.isEmpty()) {
        QCOMPARE(s.text("label_12"), instead);
        return;
    }
    QTEST(s.text("label_3"), "inside");
    QCOMPARE(s.shown(), nullptr);
}

void CommonControlTest::writesWhatWaitsOnce()
{
    Stack s;
    s.control.setCAppletName(QStringLiteral("app"));
    s.control.setSequenceId(QStringLiteral("seq"));
    const auto first = node(BasicStep, step_type::Delay);
    s.control.showBlock(first);
    s.control.flushPending();
    QVERIFY(s.delay->saves.isEmpty()); // nothing waits
    s.delay->edit();
    s.control.showBlock(nullptr);
    QCOMPARE(s.delay->saves, QStringList{QStringLiteral("app/seq")});
    QVERIFY(!s.delay->isTimerActive());
    QCOMPARE(s.told.count(), 1);
    QCOMPARE(s.told[0][0].toString(), uuidOf(first));
    s.control.showBlock(node(BasicStep, step_type::Delay));
    s.control.flushPending();
    QCOMPARE(s.delay->saves.count(), 1);
}

void CommonControlTest::sequenceChangesAfterTheWrite()
{
    Stack s;
    s.control.setCAppletName(QStringLiteral("app"));
    s.control.setSequenceId(QStringLiteral("old"));
    s.control.showBlock(node(BasicStep, step_type::Delay));
    s.delay->edit();
    s.control.setSequenceId(QStringLiteral("new"));
    s.delay->edit();
    s.control.flushPending();
    QCOMPARE(s.delay->saves, QStringList({QStringLiteral("app/old"), QStringLiteral("app/new")}));
}

void CommonControlTest::diagnosticStepsHaveNothingWaiting()
{
    Stack s;
    s.control.showBlock(node(DiagnosticStep, 4711));
    s.uds->edit();
    s.control.flushPending();
    QVERIFY(s.uds->saves.isEmpty());
}

void CommonControlTest::pagesOfTheEditor()
{
    wgtCommonControl control;
    auto* stack = control.findChild<QStackedWidget*>(QStringLiteral("stackedWidget"));
    QCOMPARE(stack->widget(0)->objectName(), QStringLiteral("none_page"));
    QSet<QPair<int, int>> kinds;
    for (int page = 1; page < stack->count(); ++page) {
        const auto* panel = qobject_cast<IBlockControl*>(stack->widget(page));
        QVERIFY(panel && !panel->objectName().isEmpty());
        QVERIFY(!panel->isTimerActive());
        kinds.insert({panel->baseType(), panel->stepType()});
    }
    QCOMPARE(kinds.size(), stack->count() - 1); // no two serve the same
}

PE_WIDGET_TEST("common_control", CommonControlTest)
#include "common_control_test.moc"
