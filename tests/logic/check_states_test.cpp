// How a click on one check box spreads. Each case is a tree whose rows show two states, before and
// after a click on the row marked with "<-".

#include "logic/edit/check_states.h"

#include "logic/edit/CheckTree.h"
#include "logic/rows/logic_roles.h"
#include "tests/logic/step_names.h"
#include "tests/support/print_tree.h"
#include "tests/support/test_program.h"

#include <QHash>
#include <QStandardItemModel>
#include <QTest>

namespace {

enum Moment { Before, After };

void row(const char* name, const char* tree)
{
    QTest::newRow(name) << QString::fromUtf8(tree);
}

/// Rows made from text, with the boxes of one moment, and beside them the states of their blocks.
class TextTree : public CheckTree
{
public:
    explicit TextTree(const QString& text, Moment moment = Before)
    {
        QList<QStandardItem*> path;
        for (QString line : text.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
            const bool isClicked = line.endsWith(QLatin1String("<-"));
            const int box = line.indexOf(QLatin1Char('['));
            const QString name = line.remove(QStringLiteral("<-")).mid(box + 4).trimmed();
            const step_names::Kind kind = step_names::kindOf(name);
            const QChar state = line.at(box + 1 + moment);
            auto* row = new QStandardItem(name);
            row->setData(kind.baseType, logic_roles::BaseType);
            row->setData(kind.stepType, logic_roles::StepType);
            row->setCheckState(Qt::CheckState(QStringLiteral(" -x").indexOf(state)));
            path = path.mid(0, box / 2);
            if (path.isEmpty())
                model.appendRow(row);
            else
                path.last()->appendRow(row);
            path.append(row);
            if (kind.baseType > EndFlow)
                m_blocks.insert(row, row->checkState());
            if (isClicked)
                clicked = row;
        }
    }

    void click()
    {
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

    QString print() const { return test_support::printTree(model).join(QLatin1Char('\n')); }
    bool boxesShowTheBlocks() const
    {
        for (auto block = m_blocks.begin(); block != m_blocks.end(); ++block) {
            if (block.key()->checkState() != block.value())
                return false;
        }
        return true;
    }

    QStandardItemModel model;
    QStandardItem* clicked = nullptr;
    int writes = 0;

private:
    QHash<const QStandardItem*, Qt::CheckState> m_blocks;
};

} // namespace

class CheckStatesTest : public QObject
{
    Q_OBJECT
private slots:
    void click_data();
    void click();
    void upwardFromWhatIsLeft();
    void partlyCheckedFlowStays();
    void flowWritesEachRowOnce();

private:
    void ifRows();
    void loopRows();
    void parentRows();
    void flowRows();
};

void CheckStatesTest::click_data()
{
    QTest::addColumn<QString>("text");
    ifRows();
    loopRows();
    parentRows();
    flowRows();
}

void CheckStatesTest::ifRows()
{
    row("if off: its body and endif; branches have boxes of their own", R"(
[x-] 主流程
  [x ] if <-
    [x ] 语句
    [x ] for
      [x ] break
    [x ] endfor
  [xx] else
    [xx] 语句
  [x ] endif
  [xx] 语句)");
    row("if on: its body and endif, not a disabled branch", R"(
[ -] 主流程
  [ x] if <-
    [ x] 语句
  [  ] else if
    [  ] 语句
  [ x] endif)");
    row("the first of two ifs finds its own endif", R"(
[x-] 主流程
  [x ] if <-
    [x ] if
    [x ] endif
  [x ] endif
  [xx] if
  [xx] endif)");
    row("endif off: the nearest if above, with its body", R"(
[x-] 主流程
  [xx] if
  [xx] endif
  [x ] if
    [x ] 语句
  [xx] else
    [xx] 语句
  [x ] endif <-)");
    row("endif on: the if, with its body", R"(
[ x] 主流程
  [ x] if
    [ x] 语句
  [ x] endif <-)");
    row("endif on: a partly enabled if stays as it is", R"(
[-x] 主流程
  [--] if
    [xx] 语句
    [  ] 语句
  [ x] endif <-)");
    row("else off: alone", R"(
[x-] 主流程
  [xx] if
    [xx] 语句
  [x ] else <-
    [x ] 语句
  [xx] endif)");
    row("else on: if and endif, not the else if between", R"(
[ -] 主流程
  [ x] if
    [ x] 语句
  [  ] else if
  [ x] else <-
    [ x] 语句
  [ x] endif)");
    row("else if on: if and endif", R"(
[ x] 主流程
  [ x] if
  [ x] else if <-
    [ x] 语句
  [ x] endif)");
    row("diagnostic steps with the numbers of if and endif are no partners", R"(
[x-] 主流程
  [x ] if <-
  [xx] 诊断 4
  [x ] endif
  [xx] 诊断 1)");
    row("a diagnostic step has no partner itself", R"(
[x-] 主流程
  [x ] 诊断 1 <-
  [xx] endif)");
    row("an if and an else without partners", R"(
[x ] 主流程
  [  ] else
  [x ] if <-)");
}

void CheckStatesTest::loopRows()
{
    row("for on, past another structure's rows", R"(
[ -] 主流程
  [ x] for <-
    [ x] 语句
  [  ] while
  [  ] endwhile
  [ x] endfor)");
    row("endfor off: alone, unlike endif", R"(
[x-] 主流程
  [xx] if
  [xx] endif
  [xx] for
    [xx] 语句
  [x ] endfor <-)");
    row("while off", R"(
[x ] 主流程
  [x ] while <-
    [x ] break
  [x ] endwhile)");
    row("do while off", R"(
[x-] 主流程
  [xx] 语句
  [x ] do while <-
    [x ] 语句
  [x ] end dowhile)");
    row("a partly enabled loop is clicked on, not off", R"(
[xx] 主流程
  [-x] for <-
    [ x] 语句
    [xx] if
      [ x] 语句
    [xx] endif
  [xx] endfor)");
}

void CheckStatesTest::parentRows()
{
    row("a plain step off: the loop partly, the flow as before", R"(
[xx] 主流程
  [x-] for
    [x ] 语句 <-
    [xx] 语句
  [xx] endfor)");
    row("the last enabled step off: the loop goes with endfor", R"(
[x-] 主流程
  [xx] 语句
  [- ] for
    [x ] break <-
    [  ] 语句
  [x ] endfor)");
    row("a step on in a disabled loop: partly, endfor comes back", R"(
[ x] 主流程
  [ -] for
    [ x] break <-
    [  ] 语句
  [ x] endfor)");
    row("a step on in a disabled else brings if, its body and endif", R"(
[ x] 主流程
  [ x] if
    [ x] 语句
  [ -] else
    [ x] 语句 <-
    [  ] 语句
  [ x] endif)");
    row("the only step of an else off: the branch goes off alone", R"(
[x-] 主流程
  [xx] if
    [xx] 语句
  [x ] else
    [x ] 语句 <-
  [xx] endif)");
    row("through all levels, each with its partner", R"(
[x ] 主流程
  [x ] while
    [x ] do while
      [x ] if
        [x ] 语句 <-
      [x ] endif
    [x ] end dowhile
  [x ] endwhile)");
    row("a partly enabled child counts as enabled", R"(
[-x] 主流程
  [-x] for
    [--] if
      [xx] 语句
      [  ] 语句
    [xx] endif
    [ x] 语句 <-
  [xx] endfor)");
}

void CheckStatesTest::flowRows()
{
    row("flow off: every row of it, no other flow", R"(
[xx] 初始流程
  [xx] 语句
[x ] 主流程 <-
  [x ] 语句
  [- ] if
    [x ] for
      [x ] break
    [x ] endfor
    [  ] 语句
  [x ] else
  [x ] endif)");
    row("flow on, from partly", R"(
[-x] 主流程 <-
  [ x] 语句
  [-x] if
    [xx] 语句
    [ x] for
      [ x] break
    [ x] endfor
  [ x] else
    [ x] 语句
  [xx] endif)");
    row("a flow without steps", R"(
[x ] 初始流程 <-
[xx] 主流程)");
}

void CheckStatesTest::click()
{
    QFETCH(QString, text);
    TextTree tree(text);
    QVERIFY(tree.clicked);
    tree.click();
    QCOMPARE(tree.print(), TextTree(text, After).print());
    QVERIFY(tree.boxesShowTheBlocks());
}

void CheckStatesTest::upwardFromWhatIsLeft()
{
    const QString text = QStringLiteral(R"(
[--] 主流程
  [- ] else
    [xx] 语句 <-
    [  ] 语句
  [xx] 语句)");
    TextTree tree(text);
    TextTree after(text, After);
    for (const TextTree* each : {&tree, &after})
        each->clicked->parent()->removeRow(0);
    check_states::updateUpward(tree, tree.model.item(0)->child(0)->child(0));
    QCOMPARE(tree.print(), after.print());
}

void CheckStatesTest::partlyCheckedFlowStays()
{
    const QString text = QStringLiteral("[--] 主流程 <-\n  [xx] 语句\n  [  ] 语句");
    TextTree tree(text);
    check_states::propagateFlow(tree, tree.clicked);
    QCOMPARE(tree.print(), TextTree(text, After).print());
}

void CheckStatesTest::flowWritesEachRowOnce()
{
    constexpr int Pairs = 500;
    QString text = QStringLiteral("[x ] 主流程 <-");
    for (int i = 0; i < Pairs; ++i)
        text += QStringLiteral("\n  [x ] for\n    [x ] 语句\n  [x ] endfor");
    TextTree tree(text);
    tree.click();
    QCOMPARE(tree.print(), TextTree(text, After).print());
    QCOMPARE(tree.writes, 3 * Pairs);
}

PE_TEST("logic_check_states", CheckStatesTest)
#include "check_states_test.moc"
