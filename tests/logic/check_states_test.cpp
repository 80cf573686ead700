// How a click on one check box spreads. Each case shows a tree before the click, the clicked row
// marked with "<-", and the tree after it.

#include "logic/check_states.h"

#include "logic/CheckTree.h"
#include "logic/logic_roles.h"
#include "model/step_kinds.h"
#include "tests/support/print_tree.h"

#include <QHash>
#include <QStandardItemModel>
#include <QTest>

namespace {

struct Kind
{
    int baseType;
    int stepType;
};

Kind kindOf(const QString& name)
{
    static const QHash<QString, Kind> kinds{
        {QStringLiteral("初始流程"), {InitialFlow, 0}},
        {QStringLiteral("主流程"), {MainFlow, 0}},
        {QStringLiteral("if"), {BasicStep, step_type::If}},
        {QStringLiteral("else if"), {BasicStep, step_type::ElseIf}},
        {QStringLiteral("else"), {BasicStep, step_type::Else}},
        {QStringLiteral("endif"), {BasicStep, step_type::EndIf}},
        {QStringLiteral("for"), {BasicStep, step_type::For}},
        {QStringLiteral("endfor"), {BasicStep, step_type::EndFor}},
        {QStringLiteral("while"), {BasicStep, step_type::While}},
        {QStringLiteral("endwhile"), {BasicStep, step_type::EndWhile}},
        {QStringLiteral("do while"), {BasicStep, step_type::DoWhile}},
        {QStringLiteral("end dowhile"), {BasicStep, step_type::EndDoWhile}},
        {QStringLiteral("break"), {BasicStep, step_type::Break}},
        {QStringLiteral("语句"), {BasicStep, step_type::Statement}},
        {QStringLiteral("诊断 1"), {DiagnosticStep, step_type::If}},
        {QStringLiteral("诊断 4"), {DiagnosticStep, step_type::EndIf}}};
    return kinds.value(name, {NoBlock, 0});
}

void add(const char* name, const char* before, const char* after)
{
    QTest::newRow(name) << QString::fromUtf8(before) << QString::fromUtf8(after);
}

/// Rows made from text, and beside them the states of their blocks.
class TextTree : public CheckTree
{
public:
    explicit TextTree(const QString& text)
    {
        QList<QStandardItem*> path;
        for (QString line : text.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
            const bool isClicked = line.endsWith(QLatin1String("<-"));
            line = line.remove(QStringLiteral("<-"));
            const int box = line.indexOf(QLatin1Char('['));
            const QString name = line.mid(box + 4).trimmed();
            const Kind kind = kindOf(name);
            if (kind.baseType == NoBlock)
                qFatal("no kind is called %s", qPrintable(name));
            auto* row = new QStandardItem(name);
            row->setData(kind.baseType, logic_roles::BaseType);
            row->setData(kind.stepType, logic_roles::StepType);
            row->setCheckState(Qt::CheckState(QStringLiteral(" -x").indexOf(line.at(box + 1))));
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
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    ifRows();
    loopRows();
    parentRows();
    flowRows();
}

void CheckStatesTest::ifRows()
{
    add("if off: its body and endif; branches have boxes of their own", R"(
[x] 主流程
  [x] if <-
    [x] 语句
    [x] for
      [x] break
    [x] endfor
  [x] else
    [x] 语句
  [x] endif
  [x] 语句)",
        R"(
[-] 主流程
  [ ] if
    [ ] 语句
    [ ] for
      [ ] break
    [ ] endfor
  [x] else
    [x] 语句
  [ ] endif
  [x] 语句)");
    add("if on: its body and endif, not a disabled branch", R"(
[ ] 主流程
  [ ] if <-
    [ ] 语句
  [ ] else if
    [ ] 语句
  [ ] endif)",
        R"(
[-] 主流程
  [x] if
    [x] 语句
  [ ] else if
    [ ] 语句
  [x] endif)");
    add("the first of two ifs finds its own endif", R"(
[x] 主流程
  [x] if <-
    [x] if
    [x] endif
  [x] endif
  [x] if
  [x] endif)",
        R"(
[-] 主流程
  [ ] if
    [ ] if
    [ ] endif
  [ ] endif
  [x] if
  [x] endif)");
    add("endif off: the nearest if above, with its body", R"(
[x] 主流程
  [x] if
  [x] endif
  [x] if
    [x] 语句
  [x] else
    [x] 语句
  [x] endif <-)",
        R"(
[-] 主流程
  [x] if
  [x] endif
  [ ] if
    [ ] 语句
  [x] else
    [x] 语句
  [ ] endif)");
    add("endif on: the if, with its body", R"(
[ ] 主流程
  [ ] if
    [ ] 语句
  [ ] endif <-)",
        R"(
[x] 主流程
  [x] if
    [x] 语句
  [x] endif)");
    add("endif on: a partly enabled if stays as it is", R"(
[-] 主流程
  [-] if
    [x] 语句
    [ ] 语句
  [ ] endif <-)",
        R"(
[x] 主流程
  [-] if
    [x] 语句
    [ ] 语句
  [x] endif)");
    add("else off: alone", R"(
[x] 主流程
  [x] if
    [x] 语句
  [x] else <-
    [x] 语句
  [x] endif)",
        R"(
[-] 主流程
  [x] if
    [x] 语句
  [ ] else
    [ ] 语句
  [x] endif)");
    add("else on: if and endif, not the else if between", R"(
[ ] 主流程
  [ ] if
    [ ] 语句
  [ ] else if
  [ ] else <-
    [ ] 语句
  [ ] endif)",
        R"(
[-] 主流程
  [x] if
    [x] 语句
  [ ] else if
  [x] else
    [x] 语句
  [x] endif)");
    add("else if off: alone", R"(
[x] 主流程
  [x] if
  [x] else if <-
    [x] 语句
  [x] else
  [x] endif)",
        R"(
[-] 主流程
  [x] if
  [ ] else if
    [ ] 语句
  [x] else
  [x] endif)");
    add("else if on: if and endif", R"(
[ ] 主流程
  [ ] if
  [ ] else if <-
    [ ] 语句
  [ ] endif)",
        R"(
[x] 主流程
  [x] if
  [x] else if
    [x] 语句
  [x] endif)");
    add("diagnostic steps with the numbers of if and endif are no partners", R"(
[x] 主流程
  [x] if <-
  [x] 诊断 4
  [x] endif
  [x] 诊断 1)",
        R"(
[-] 主流程
  [ ] if
  [x] 诊断 4
  [ ] endif
  [x] 诊断 1)");
    add("a diagnostic step has no partner itself", R"(
[x] 主流程
  [x] 诊断 1 <-
  [x] endif)",
        R"(
[-] 主流程
  [ ] 诊断 1
  [x] endif)");
    add("an if and an else without partners", R"(
[x] 主流程
  [ ] else
  [x] if <-)",
        R"(
[ ] 主流程
  [ ] else
  [ ] if)");
}

void CheckStatesTest::loopRows()
{
    add("for off", R"(
[x] 主流程
  [x] for <-
    [x] 语句
  [x] endfor)",
        R"(
[ ] 主流程
  [ ] for
    [ ] 语句
  [ ] endfor)");
    add("for on, past another structure's rows", R"(
[ ] 主流程
  [ ] for <-
    [ ] 语句
  [ ] while
  [ ] endwhile
  [ ] endfor)",
        R"(
[-] 主流程
  [x] for
    [x] 语句
  [ ] while
  [ ] endwhile
  [x] endfor)");
    add("endfor off: alone, unlike endif", R"(
[x] 主流程
  [x] for
    [x] 语句
  [x] endfor <-)",
        R"(
[-] 主流程
  [x] for
    [x] 语句
  [ ] endfor)");
    add("endfor on: alone", R"(
[ ] 主流程
  [ ] for
  [ ] endfor <-)",
        R"(
[-] 主流程
  [ ] for
  [x] endfor)");
    add("while off", R"(
[x] 主流程
  [x] while <-
    [x] break
  [x] endwhile)",
        R"(
[ ] 主流程
  [ ] while
    [ ] break
  [ ] endwhile)");
    add("while on", R"(
[ ] 主流程
  [ ] while <-
    [ ] break
  [ ] endwhile)",
        R"(
[x] 主流程
  [x] while
    [x] break
  [x] endwhile)");
    add("do while off", R"(
[x] 主流程
  [x] 语句
  [x] do while <-
    [x] 语句
  [x] end dowhile)",
        R"(
[-] 主流程
  [x] 语句
  [ ] do while
    [ ] 语句
  [ ] end dowhile)");
    add("do while on", R"(
[ ] 主流程
  [ ] do while <-
  [ ] end dowhile)",
        R"(
[x] 主流程
  [x] do while
  [x] end dowhile)");
    add("a partly enabled loop is clicked on, not off", R"(
[x] 主流程
  [-] for <-
    [ ] 语句
    [x] if
      [ ] 语句
    [x] endif
  [x] endfor)",
        R"(
[x] 主流程
  [x] for
    [x] 语句
    [x] if
      [x] 语句
    [x] endif
  [x] endfor)");
}

void CheckStatesTest::parentRows()
{
    add("a plain step off: the loop partly, the flow as before", R"(
[x] 主流程
  [x] for
    [x] 语句 <-
    [x] 语句
  [x] endfor)",
        R"(
[x] 主流程
  [-] for
    [ ] 语句
    [x] 语句
  [x] endfor)");
    add("the last enabled step off: the loop goes with endfor", R"(
[x] 主流程
  [x] 语句
  [-] for
    [x] break <-
    [ ] 语句
  [x] endfor)",
        R"(
[-] 主流程
  [x] 语句
  [ ] for
    [ ] break
    [ ] 语句
  [ ] endfor)");
    add("a step on in a disabled loop: partly, endfor comes back", R"(
[ ] 主流程
  [ ] for
    [ ] break <-
    [ ] 语句
  [ ] endfor)",
        R"(
[x] 主流程
  [-] for
    [x] break
    [ ] 语句
  [x] endfor)");
    add("a step on in a disabled else brings if, its body and endif", R"(
[ ] 主流程
  [ ] if
    [ ] 语句
  [ ] else
    [ ] 语句 <-
    [ ] 语句
  [ ] endif)",
        R"(
[x] 主流程
  [x] if
    [x] 语句
  [-] else
    [x] 语句
    [ ] 语句
  [x] endif)");
    add("the only step of an else off: the branch goes off alone", R"(
[x] 主流程
  [x] if
    [x] 语句
  [x] else
    [x] 语句 <-
  [x] endif)",
        R"(
[-] 主流程
  [x] if
    [x] 语句
  [ ] else
    [ ] 语句
  [x] endif)");
    add("through all levels, each with its partner", R"(
[x] 主流程
  [x] while
    [x] do while
      [x] if
        [x] 语句 <-
      [x] endif
    [x] end dowhile
  [x] endwhile)",
        R"(
[ ] 主流程
  [ ] while
    [ ] do while
      [ ] if
        [ ] 语句
      [ ] endif
    [ ] end dowhile
  [ ] endwhile)");
    add("a partly enabled child counts as enabled", R"(
[-] 主流程
  [-] for
    [-] if
      [x] 语句
      [ ] 语句
    [x] endif
    [ ] 语句 <-
  [x] endfor)",
        R"(
[x] 主流程
  [x] for
    [-] if
      [x] 语句
      [ ] 语句
    [x] endif
    [x] 语句
  [x] endfor)");
}

void CheckStatesTest::flowRows()
{
    add("flow off: every row of it, no other flow", R"(
[x] 初始流程
  [x] 语句
[x] 主流程 <-
  [x] 语句
  [-] if
    [x] for
      [x] break
    [x] endfor
    [ ] 语句
  [x] else
  [x] endif)",
        R"(
[x] 初始流程
  [x] 语句
[ ] 主流程
  [ ] 语句
  [ ] if
    [ ] for
      [ ] break
    [ ] endfor
    [ ] 语句
  [ ] else
  [ ] endif)");
    add("flow on, from partly", R"(
[-] 主流程 <-
  [ ] 语句
  [-] if
    [x] 语句
    [ ] for
      [ ] break
    [ ] endfor
  [ ] else
    [ ] 语句
  [x] endif)",
        R"(
[x] 主流程
  [x] 语句
  [x] if
    [x] 语句
    [x] for
      [x] break
    [x] endfor
  [x] else
    [x] 语句
  [x] endif)");
    add("a flow without steps", R"(
[x] 初始流程 <-
[x] 主流程)",
        R"(
[ ] 初始流程
[x] 主流程)");
}

void CheckStatesTest::click()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    TextTree tree(before);
    QVERIFY(tree.clicked);
    tree.click();
    QCOMPARE(tree.print(), after.trimmed());
    QVERIFY(tree.boxesShowTheBlocks());
}

void CheckStatesTest::upwardFromWhatIsLeft()
{
    TextTree tree(QStringLiteral(R"(
[-] 主流程
  [-] else
    [x] 语句
    [ ] 语句 <-
  [x] 语句)"));
    QStandardItem* branch = tree.clicked->parent();
    branch->removeRow(0);
    check_states::updateUpward(tree, branch->child(0));
    QCOMPARE(tree.print(), QStringLiteral("[-] 主流程\n  [ ] else\n    [ ] 语句\n  [x] 语句"));
}

void CheckStatesTest::partlyCheckedFlowStays()
{
    TextTree tree(QStringLiteral("[-] 主流程 <-\n  [x] 语句\n  [ ] 语句"));
    check_states::propagateFlow(tree, tree.clicked);
    QCOMPARE(tree.print(), QStringLiteral("[-] 主流程\n  [x] 语句\n  [ ] 语句"));
}

void CheckStatesTest::flowWritesEachRowOnce()
{
    constexpr int Pairs = 500;
    QString text = QStringLiteral("[x] 主流程 <-");
    for (int i = 0; i < Pairs; ++i)
        text += QStringLiteral("\n  [x] for\n    [x] 语句\n  [x] endfor");
    TextTree tree(text);
    tree.click();
    QVERIFY(!tree.print().contains(QLatin1String("[x]")));
    QCOMPARE(tree.writes, 3 * Pairs);
}

QTEST_GUILESS_MAIN(CheckStatesTest)
#include "check_states_test.moc"
