// The stack of panels: which panel is asked for which step, what is said instead, and when a text
// that waits is written.

#include "panels/DelayedWrite.h"
#include "panels/wgtGeneralSetting.h"
#include "tests/panels/StepPanelFixture.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"

#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>

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
    NodeBlock(logicBlockType base, int step, bool editable) : IProcessBlock(base, step)
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
std::shared_ptr<IProcessBlock> delay()
{
    return node(BasicStep, step_type::Delay);
}

} // namespace

class CommonControlTest : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void choosesThePanel();
    void saysWhyThereIsNone();
    void writesWhatWaitsOnce();
    void diagnosticStepsHaveNothingWaiting();
    void pagesOfTheEditor();

private:
    QWidget* find(const char* name) { return m_control->findChild<QWidget*>(text(name)); }
    /// The panel that is shown; null: page 0.
    QWidget* shown()
    {
        auto* stack = qobject_cast<QStackedWidget*>(find("stackedWidget"));
        return stack->currentIndex() == 0 ? nullptr : stack->currentWidget();
    }
    /// What is said: "of the page|instead of all pages", as far as it is visible.
    QString said()
    {
        const auto textOf = [this](const char* name) {
            auto* label = qobject_cast<QLabel*>(find(name));
            return label->isVisibleTo(m_control.get()) ? label->text() : QString();
        };
        return textOf("label_3") + u'|' + textOf("label_12");
    }

    ProbePanel* m_delay = nullptr;
    ProbePanel* m_uds = nullptr;
    std::unique_ptr<wgtCommonControl> m_control;
};

void CommonControlTest::init()
{
    m_delay = new ProbePanel(BasicStep, step_type::Delay);
    m_uds = new ProbePanel(DiagnosticStep, 4711);
    m_control = std::make_unique<wgtCommonControl>(QVector<IBlockControl*>{m_delay, m_uds});
    m_control->setCAppletName(text("app"));
    m_control->setSequenceId(text("old"));
}

void CommonControlTest::choosesThePanel()
{
    QSignalSpy told(m_control.get(), &wgtCommonControl::updateTreeProcessData);
    const auto block = delay();
    m_control->showBlock(block);
    QCOMPARE(shown(), m_delay);
    QCOMPARE(m_delay->loaded, block);
    for (int stepType : {1, int(step_type::Delay), 4711}) {
        m_control->showBlock(node(DiagnosticStep, stepType));
        QCOMPARE(shown(), m_uds);
        QCOMPARE(m_uds->loaded->stepType(), stepType);
    }
    // A panel's step type counts for its own base type only.
    m_control->showBlock(node(BasicStep, 4711));
    QCOMPARE(shown(), nullptr);
    m_control->showBlock(node(MainFlow, step_type::Delay));
    QCOMPARE(shown(), nullptr);
    QCOMPARE(m_delay->loaded, block);
    QVERIFY(told.isEmpty());
}

void CommonControlTest::saysWhyThereIsNone()
{
    QCOMPARE(said(), text("|当前未选中步骤节点"));
    const auto plain = std::make_shared<PlainProcessBlock>(step_type::Break);
    plain->property.editable = true;
    const rows::Table<std::shared_ptr<IProcessBlock>, const char*> table{
        {"no block", nullptr, "|该节点不可编辑"},
        {"not editable", node(BasicStep, step_type::Delay, false), "|该节点不可编辑"},
        {"no step", node(NoBlock, 0, false), "|当前未选中步骤节点"},
        {"nothing to set", plain, "此步骤类型无需设置属性|"},
        {"no panel", node(BasicStep, 4711), "此步骤的属性暂为只读：\n\n动作|"}};
    for (const auto& [row, block, expected] : table) {
        const rows::Named named(row);
        m_control->showBlock(delay());
        QCOMPARE(said(), text("|"));
        m_control->showBlock(block);
        QCOMPARE(said(), text(expected));
    }
}

void CommonControlTest::writesWhatWaitsOnce()
{
    QSignalSpy told(m_control.get(), &wgtCommonControl::updateTreeProcessData);
    const auto first = delay();
    m_control->showBlock(first);
    m_control->flushPending();
    QVERIFY(m_delay->saves.isEmpty()); // nothing waits
    m_delay->edit();
    m_control->showBlock(nullptr);
    QCOMPARE(m_delay->saves, QStringList{text("app/old")});
    QVERIFY(!m_delay->isTimerActive());
    QCOMPARE(told.count(), 1);
    QCOMPARE(told[0][0].toString(), uuidOf(first));
    m_control->showBlock(delay());
    m_control->flushPending();
    QCOMPARE(m_delay->saves.count(), 1);

    m_delay->edit();
    m_control->setSequenceId(text("new")); // after the write
    m_delay->edit();
    m_control->flushPending();
    QCOMPARE(m_delay->saves, lines("app/old\napp/old\napp/new"));
}

void CommonControlTest::diagnosticStepsHaveNothingWaiting()
{
    m_control->showBlock(node(DiagnosticStep, 4711));
    m_uds->edit();
    m_control->flushPending();
    QVERIFY(m_uds->saves.isEmpty());
}

void CommonControlTest::pagesOfTheEditor()
{
    wgtCommonControl control;
    auto* stack = control.findChild<QStackedWidget*>(text("stackedWidget"));
    QCOMPARE(stack->widget(0)->objectName(), text("none_page"));
    QSet<QPair<int, int>> kinds;
    for (int page = 1; page < stack->count(); ++page) {
        const auto* panel = qobject_cast<IBlockControl*>(stack->widget(page));
        QVERIFY(panel && !panel->objectName().isEmpty() && !panel->isTimerActive());
        kinds.insert({panel->baseType(), panel->stepType()});
    }
    QCOMPARE(kinds.size(), stack->count() - 1); // no two serve the same
}

PE_WIDGET_TEST("common_control", CommonControlTest)
#include "common_control_test.moc"
