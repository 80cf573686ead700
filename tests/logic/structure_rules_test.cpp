// Where steps may be added, where they go, and what goes with a step that is removed. Each case is
// a tree with one act on the row marked with ">", and the tree afterwards or the refusal.

#include "logic/rows/structure_rules.h"

#include "tests/logic/step_trees.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"

#include <QTest>

using step_trees::Kind;
using structure_rules::Refusal;

namespace {

bool takesChildren(const QStandardItem* row)
{
    return step_trees::kinds().value(row->text()).takesChildren;
}

QString refusalName(Refusal refusal)
{
    static const QHash<int, QString> names{
        {int(Refusal::BranchWithoutIf), QStringLiteral("branch without if")},
        {int(Refusal::BranchOutOfOrder), QStringLiteral("branch out of order")},
        {int(Refusal::LoopExitOutside), QStringLiteral("outside of loops")},
        {int(Refusal::LoopExitAtEdge), QStringLiteral("at an edge")}};
    return names.value(int(refusal));
}

/// Does the act on the marked row; gives the tree afterwards, or the refusal.
QString perform(step_trees::Rows& rows, QString act)
{
    QStandardItem* anchor = rows.marked;
    if (act == QLatin1String("remove")) {
        const auto gone = structure_rules::rowsOfStep(anchor);
        anchor->parent()->removeRows(gone.first, gone.last - gone.first + 1);
        return step_trees::print(rows.model);
    }
    const bool isDrop = act.startsWith(QLatin1String("drop "));
    const bool isAbove = act.endsWith(QLatin1String(" above"));
    const QString name = act.remove(QStringLiteral("drop ")).remove(QStringLiteral(" above"));
    const Kind step = step_trees::kinds().value(name);
    const structure_rules::StepKind kind{step.baseType, step.stepType};
    const Refusal refusal = isDrop ? Refusal::None : structure_rules::check(anchor, kind);
    if (refusal != Refusal::None)
        return refusalName(refusal);
    const auto place = isAbove ? structure_rules::placeBefore(anchor, kind, takesChildren)
                               : structure_rules::placeAt(anchor, kind, takesChildren);
    if (!place)
        return QStringLiteral("no place");
    if (place->isLast && place->row != place->parent->rowCount())
        return QStringLiteral("the last place is not behind the last row");
    place->parent->insertRow(place->row, rows.makeRow({name}));
    const QString closer = step_trees::closerOf(name);
    if (!closer.isEmpty())
        place->parent->insertRow(place->row + 1, rows.makeRow({closer}));
    return step_trees::print(rows.model);
}

using Table = rows::Table<const char*, const char*, const char*>;

void check(const Table& table)
{
    for (const auto& [row, act, before, after] : table) {
        const rows::Named named(row);
        step_trees::Rows rows(before);
        QVERIFY(rows.marked);
        QCOMPARE(perform(rows, text(act)), text(after));
    }
}

} // namespace

class StructureRulesTest : public QObject
{
    Q_OBJECT
private slots:
    void plainSteps();
    void branches();
    void loopExits();
    void drops();
    void removals();
};

void StructureRulesTest::plainSteps()
{
    check({{"on a flow: its last step", "x", "a | >: b", "a | b x"},
           {"on a step: behind it", "x", ">a b", "a x b"},
           {"on an opener: the last of its body", "x", ">for[a] endfor", "for[a x] endfor"},
           {"an opener brings its closer", "dowhile", ">a b", "a dowhile enddowhile b"},
           {"an opener at the end of a body", "if", ">while[a] endwhile",
            "while[a if endif] endwhile"},
           {"on a diagnostic step: behind or into it", "uds1", ">uds5[a] b", "uds5[a uds1] b"},
           {"a diagnostic step with the number of else if is no branch", "uds3", ">if[a] endif",
            "if[a uds3] endif"}});
}

void StructureRulesTest::branches()
{
    check({{"else behind if", "else", ">if[a] endif", "if[a] else endif"},
           {"else behind else if", "else", "if >elseif endif", "if elseif else endif"},
           {"else if before else", "elseif", ">if else endif", "if elseif else endif"},
           {"else if before else if", "elseif", ">if elseif endif", "if elseif elseif endif"},
           {"a second else", "else", ">if else endif", "branch out of order"},
           {"else before else if", "else", ">if elseif endif", "branch out of order"},
           {"else behind else", "else", "if >else endif", "branch without if"},
           {"else on a loop", "else", ">for endfor", "branch without if"},
           {"else on a flow", "else", ">: if endif", "branch without if"},
           {"else on a diagnostic step", "else", ">uds1 endif", "branch without if"},
           {"else before a diagnostic step", "else", ">if uds4 endif", "branch out of order"},
           {"else behind an if at the end", "else", ">if", "branch out of order"}});
}

void StructureRulesTest::loopExits()
{
    check({{"break on an empty loop: into it", "break", ">for endfor", "for[break] endfor"},
           {"continue behind a step of a loop", "continue", "while[>a b] endwhile",
            "while[a continue b] endwhile"},
           {"break on an if in a loop: into the if", "break", "dowhile[>if endif] enddowhile",
            "dowhile[if[break] endif] enddowhile"},
           {"break outside of loops", "break", ">a b", "outside of loops"},
           {"break on a flow", "break", ">: for endfor", "outside of loops"},
           {"break behind a loop's closer", "break", "for >endfor a", "outside of loops"},
           {"a diagnostic step is no loop", "break", "uds5[>a b]", "outside of loops"},
           {"continue behind the last step of a body", "continue", "for[>a] endfor", "at an edge"},
           {"break before a diagnostic step", "break", "for[>a uds1] endfor", "at an edge"},
           {"break on a diagnostic step", "break", "for[>uds1 a] endfor", "at an edge"}});
}

void StructureRulesTest::drops()
{
    check({{"between two steps", "drop x above", "a >b", "a x b"},
           {"above the first row", "drop if above", ">a", "if endif a"},
           {"above endif: into what stands there", "drop x above", "if else[a] >endif",
            "if else[a x] endif"},
           {"behind a closer", "drop while above", "if endif >a", "if endif while endwhile a"},
           {"into any row that takes steps", "drop uds1 above", "group >a", "group[uds1] a"},
           {"a branch stays on its level", "drop else above", "if[a] >endif", "if[a] else endif"},
           {"a branch on a row that takes steps goes behind it", "drop else", ">if[a] endif",
            "if[a] else endif"},
           {"no rule is asked", "drop break", ">:", "break"},
           {"a branch on a flow", "drop else", ">: a", "no place"},
           {"above a flow", "drop x above", " | >:", "no place"}});
}

void StructureRulesTest::removals()
{
    check({{"an if with all its branches", "remove",
            "a >if[if endif] elseif else[b] endif if endif", "a if endif"},
           {"endif takes the nearest if along", "remove", "if endif if[a] else >endif", "if endif"},
           {"else alone", "remove", "if[a] >else[b] endif", "if[a] endif"},
           {"a loop", "remove", ">for[break] endfor for endfor", "for endfor"},
           {"a loop's closer", "remove", "while[while endwhile] >endwhile", ""},
           {"do while within another structure", "remove", "if[dowhile >enddowhile a] endif",
            "if[a] endif"},
           {"a diagnostic step has no partner and is none", "remove", ">uds1 uds4 endif",
            "uds4 endif"},
           {"an if passes a diagnostic step", "remove", ">if uds4 endif a", "a"},
           {"an opener without a closer", "remove", ">for endwhile", "endwhile"}});
}

PE_TEST("logic_structure_rules", StructureRulesTest)
#include "structure_rules_test.moc"
