// How a click on one check box spreads. Each case is a tree of steps before and after a click on
// the row or flow marked with ">".

#include "logic/edit/check_states.h"

#include "logic/edit/CheckTree.h"
#include "tests/logic/step_trees.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"

#include <QTest>

namespace {

/// Rows made from text, and beside them the states of their blocks.
class TextTree : public CheckTree
{
public:
    explicit TextTree(const char* line) : rows(line)
    {
        for (int flow = 0; flow < rows.model.rowCount(); ++flow)
            addBlocks(rows.model.item(flow));
    }

    void click()
    {
        QStandardItem* clicked = rows.marked;
        const bool on = clicked->checkState() == Qt::Checked;
        clicked->setCheckState(on ? Qt::Unchecked : Qt::Checked);
        if (!m_blocks.contains(clicked)) {
            check_states::propagateFlow(*this, clicked);
            return;
        }
        m_blocks[clicked] = clicked->checkState();
        check_states::propagate(*this, clicked);
    }

    Qt::CheckState state(const QStandardItem* row) const override
    {
        return m_blocks.value(row, row->checkState());
    }
    void setState(QStandardItem* row, Qt::CheckState state) override
    {
        if (m_blocks.contains(row))
            m_blocks[row] = state;
        row->setCheckState(state);
        ++writes;
    }

    int disabledChildren(const QStandardItem* row) const override
    {
        int disabled = 0;
        for (int child = 0; child < row->rowCount(); ++child)
            disabled += row->child(child)->checkState() == Qt::Unchecked;
        return disabled;
    }

    QString print() const { return step_trees::print(rows.model); }
    bool boxesShowTheBlocks() const
    {
        for (auto block = m_blocks.begin(); block != m_blocks.end(); ++block) {
            if (block.key()->checkState() != block.value())
                return false;
        }
        return true;
    }

    step_trees::Rows rows;
    int writes = 0;

private:
    void addBlocks(const QStandardItem* parent)
    {
        for (int i = 0; i < parent->rowCount(); ++i) {
            m_blocks.insert(parent->child(i), parent->child(i)->checkState());
            addBlocks(parent->child(i));
        }
    }

    QHash<const QStandardItem*, Qt::CheckState> m_blocks;
};

} // namespace

class CheckStatesTest : public QObject
{
    Q_OBJECT
private slots:
    void click();
    void upwardFromWhatIsLeft();
    void partlyCheckedFlowStays();
    void flowWritesEachRowOnce();
};

void CheckStatesTest::click()
{
    const rows::Table<const char*, const char*> table{
        {"if off: its body and endif; branches have boxes of their own",
         ">if[a for[break] endfor] else[b] endif c",
         "~: if-[a- for-[break-] endfor-] else[b] endif- c"},
        {"if on: its body and endif, not a disabled branch", "-: >if-[a-] elseif-[b-] endif-",
         "~: if[a] elseif-[b-] endif"},
        {"the first of two ifs finds its own endif", ">if[if endif] endif if endif",
         "~: if-[if- endif-] endif- if endif"},
        {"endif off: the nearest if above, with its body", "if endif if[a] else[b] >endif",
         "~: if endif if-[a-] else[b] endif-"},
        {"endif on: the if, with its body", "-: if-[a-] >endif-", "if[a] endif"},
        {"endif on: a partly enabled if stays as it is", "~: if~[a b-] >endif-", "if~[a b-] endif"},
        {"else off: alone", "if[a] >else[b] endif", "~: if[a] else-[b-] endif"},
        {"else on: if and endif, not the else if between", "-: if-[a-] elseif- >else-[b-] endif-",
         "~: if[a] elseif- else[b] endif"},
        {"else if on: if and endif", "-: if- >elseif-[a-] endif-", "if elseif[a] endif"},
        {"diagnostic steps with the numbers of if and endif are no partners", ">if uds4 endif uds1",
         "~: if- uds4 endif- uds1"},
        {"a diagnostic step has no partner itself", ">uds1 endif", "~: uds1- endif"},
        {"an if and an else without partners", "else- >if", "-: else- if-"},
        {"for on, past another structure's rows", "-: >for-[a-] while- endwhile- endfor-",
         "~: for[a] while- endwhile- endfor"},
        {"endfor off: alone, unlike endif", "if endif for[a] >endfor",
         "~: if endif for[a] endfor-"},
        {"while off", ">while[break] endwhile", "-: while-[break-] endwhile-"},
        {"do while off", "a >dowhile[b] enddowhile", "~: a dowhile-[b-] enddowhile-"},
        {"a partly enabled loop is clicked on, not off", ">for~[a- if[b-] endif] endfor",
         "for[a if[b] endif] endfor"},
        {"a plain step off: the loop partly, the flow as before", "for[>a b] endfor",
         "for~[a- b] endfor"},
        {"the last enabled step off: the loop goes with endfor", "a for~[>break b-] endfor",
         "~: a for-[break- b-] endfor-"},
        {"a step on in a disabled loop: partly, endfor comes back", "-: for-[>break- b-] endfor-",
         "for~[break b-] endfor"},
        {"a step on in a disabled else brings if, its body and endif",
         "-: if-[a-] else-[>b- c-] endif-", "if[a] else~[b c-] endif"},
        {"the only step of an else off: the branch goes off alone", "if[a] else[>b] endif",
         "~: if[a] else-[b-] endif"},
        {"through all levels, each with its partner",
         "while[dowhile[if[>a] endif] enddowhile] endwhile",
         "-: while-[dowhile-[if-[a-] endif-] enddowhile-] endwhile-"},
        {"a partly enabled child counts as enabled", "~: for~[if~[a b-] endif >c-] endfor",
         "for[if~[a b-] endif c] endfor"},
        {"flow off: every row of it, no other flow",
         "a | >: b if~[for[break] endfor c-] else endif",
         "a | -: b- if-[for-[break-] endfor- c-] else- endif-"},
        {"flow on, from partly", ">~: a- if~[b for-[break-] endfor-] else-[c-] endif",
         "a if[b for[break] endfor] else[c] endif"},
        {"a flow without steps", ">: | a", "-:  | a"}};
    for (const auto& [row, before, after] : table) {
        const rows::Named named(row);
        TextTree tree(before);
        QVERIFY(tree.rows.marked);
        tree.click();
        QCOMPARE(tree.print(), text(after));
        QVERIFY(tree.boxesShowTheBlocks());
    }
}

void CheckStatesTest::upwardFromWhatIsLeft()
{
    TextTree tree("~: else~[>a b-] c");
    QStandardItem* parent = tree.rows.marked->parent();
    parent->removeRow(0);
    check_states::updateUpward(tree, parent->child(0));
    QCOMPARE(tree.print(), text("~: else-[b-] c"));
}

void CheckStatesTest::partlyCheckedFlowStays()
{
    TextTree tree(">~: a b-");
    check_states::propagateFlow(tree, tree.rows.marked);
    QCOMPARE(tree.print(), text("~: a b-"));
}

void CheckStatesTest::flowWritesEachRowOnce()
{
    constexpr int Pairs = 500;
    TextTree tree(QByteArray(">: " + QByteArray("for[a] endfor ").repeated(Pairs)).constData());
    tree.click();
    QCOMPARE(tree.print(), text("-:") + text(" for-[a-] endfor-").repeated(Pairs));
    QCOMPARE(tree.writes, 3 * Pairs);
}

PE_TEST("logic_check_states", CheckStatesTest)
#include "check_states_test.moc"
