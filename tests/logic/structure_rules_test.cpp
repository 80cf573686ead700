// Where steps may be added, where they go, and what goes with a step that is removed. Each case is
// a tree with one act on the row marked "<-": lines with "+" come by it, lines with "-" go. A case
// without either names the refusal.

#include "logic/rows/structure_rules.h"

#include "logic/rows/logic_roles.h"
#include "tests/logic/step_names.h"
#include "tests/support/print_tree.h"
#include "tests/support/test_program.h"

#include <QStandardItemModel>
#include <QStringList>
#include <QTest>

#include <vector>

using structure_rules::Refusal;

namespace {

QStandardItem* makeRow(const QString& name)
{
    const step_names::Kind kind = step_names::kindOf(name);
    auto* row = new QStandardItem(name);
    row->setData(kind.baseType, logic_roles::BaseType);
    row->setData(kind.stepType, logic_roles::StepType);
    return row;
}

bool takesChildren(const QStandardItem* row)
{
    return step_names::kindOf(row->text()).takesChildren;
}

/// A tree made from the lines of text that are not marked with @p without.
struct TextRows
{
    TextRows(const QString& text, QChar without)
    {
        std::vector<QStandardItem*> path{model.invisibleRootItem()};
        for (QString line : text.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
            if (line.at(0) == without)
                continue;
            const bool isAnchor = line.endsWith(QLatin1String("<-"));
            line = line.mid(2).remove(QStringLiteral("<-"));
            const QString name = line.trimmed();
            path.resize(std::size_t(line.indexOf(name) / 2 + 1));
            QStandardItem* row = makeRow(name);
            path.back()->appendRow(row);
            path.push_back(row);
            if (isAnchor)
                anchor = row;
        }
    }

    QString print() const { return test_support::printTree(model).join(QLatin1Char('\n')); }

    QStandardItemModel model;
    QStandardItem* anchor = nullptr;
};

void add(const structure_rules::Place& place, const QString& name)
{
    place.parent->insertRow(place.row, makeRow(name));
    const QString closer = step_names::closerOf(name);
    if (!closer.isEmpty())
        place.parent->insertRow(place.row + 1, makeRow(closer));
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

/// Does the act on the anchor of the tree; gives the refusal, or nothing.
QString perform(QStandardItem* anchor, QString act)
{
    if (act == QLatin1String("remove")) {
        const auto rows = structure_rules::rowsOfStep(anchor);
        anchor->parent()->removeRows(rows.first, rows.last - rows.first + 1);
        return QString();
    }
    const bool isDrop = act.startsWith(QLatin1String("drop "));
    const bool isAbove = act.endsWith(QLatin1String(" above"));
    const QString name = act.remove(QStringLiteral("drop ")).remove(QStringLiteral(" above"));
    const step_names::Kind step = step_names::kindOf(name);
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
    add(*place, name);
    return QString();
}

void row(const char* name, const char* act, const char* tree, const char* refusal = "")
{
    QTest::newRow(name) << QString::fromUtf8(act) << QString::fromUtf8(tree)
                        << QString::fromUtf8(refusal);
}

} // namespace

class StructureRulesTest : public QObject
{
    Q_OBJECT
private slots:
    void act_data();
    void act();

private:
    void plainSteps();
    void branches();
    void loopExits();
    void drops();
    void removals();
};

void StructureRulesTest::act_data()
{
    QTest::addColumn<QString>("act");
    QTest::addColumn<QString>("tree");
    QTest::addColumn<QString>("refusal");
    plainSteps();
    branches();
    loopExits();
    drops();
    removals();
}

void StructureRulesTest::plainSteps()
{
    row("on a flow: its last step", "延时", R"(
  初始流程
    语句
  主流程 <-
    语句
+   延时)");
    row("on a step: behind it", "延时", R"(
  主流程
    语句 <-
+   延时
    语句)");
    row("on an opener: the last of its body", "延时", R"(
  主流程
    for <-
      语句
+     延时
    endfor)");
    row("an opener brings its closer", "do while", R"(
  主流程
    语句 <-
+   do while
+   end dowhile
    语句)");
    row("an opener at the end of a body", "if", R"(
  主流程
    while <-
      语句
+     if
+     endif
    endwhile)");
    row("on a diagnostic step: behind or into it", "诊断 1", R"(
  主流程
    诊断 5 <-
      语句
+     诊断 1
    语句)");
    row("a diagnostic step with the number of else if is no branch", "诊断 3", R"(
  主流程
    if <-
      语句
+     诊断 3
    endif)");
}

void StructureRulesTest::branches()
{
    row("else behind if", "else", R"(
  主流程
    if <-
      语句
+   else
    endif)");
    row("else behind else if", "else", R"(
  主流程
    if
    else if <-
+   else
    endif)");
    row("else if before else", "else if", R"(
  主流程
    if <-
+   else if
    else
    endif)");
    row("else if before else if", "else if", R"(
  主流程
    if <-
+   else if
    else if
    endif)");
    row("a second else", "else", "  主流程\n    if <-\n    else\n    endif", "branch out of order");
    row("else before else if", "else", "  主流程\n    if <-\n    else if\n    endif",
        "branch out of order");
    row("else behind else", "else", "  主流程\n    if\n    else <-\n    endif",
        "branch without if");
    row("else on a loop", "else", "  主流程\n    for <-\n    endfor", "branch without if");
    row("else on a flow", "else", "  主流程 <-\n    if\n    endif", "branch without if");
    row("else on a diagnostic step", "else", "  主流程\n    诊断 1 <-\n    endif",
        "branch without if");
    row("else before a diagnostic step", "else", "  主流程\n    if <-\n    诊断 4\n    endif",
        "branch out of order");
    row("else behind an if at the end", "else", "  主流程\n    if <-", "branch out of order");
}

void StructureRulesTest::loopExits()
{
    row("break on an empty loop: into it", "break", R"(
  主流程
    for <-
+     break
    endfor)");
    row("continue behind a step of a loop", "continue", R"(
  主流程
    while
      语句 <-
+     continue
      语句
    endwhile)");
    row("break on an if in a loop: into the if", "break", R"(
  主流程
    do while
      if <-
+       break
      endif
    end dowhile)");
    row("break outside of loops", "break", "  主流程\n    语句 <-\n    语句", "outside of loops");
    row("break on a flow", "break", "  主流程 <-\n    for\n    endfor", "outside of loops");
    row("break behind a loop's closer", "break", "  主流程\n    for\n    endfor <-\n    语句",
        "outside of loops");
    row("a diagnostic step is no loop", "break", "  主流程\n    诊断 5\n      语句 <-\n      语句",
        "outside of loops");
    row("continue behind the last step of a body", "continue",
        "  主流程\n    for\n      语句 <-\n    endfor", "at an edge");
    row("break before a diagnostic step", "break",
        "  主流程\n    for\n      语句 <-\n      诊断 1\n    endfor", "at an edge");
    row("break on a diagnostic step", "break",
        "  主流程\n    for\n      诊断 1 <-\n      语句\n    endfor", "at an edge");
}

void StructureRulesTest::drops()
{
    row("between two steps", "drop 延时 above", R"(
  主流程
    语句
+   延时
    语句 <-)");
    row("above the first row", "drop if above", R"(
  主流程
+   if
+   endif
    语句 <-)");
    row("above endif: into what stands there", "drop 延时 above", R"(
  主流程
    if
    else
      语句
+     延时
    endif <-)");
    row("behind a closer", "drop while above", R"(
  主流程
    if
    endif
+   while
+   endwhile
    语句 <-)");
    row("into any row that takes steps", "drop 诊断 1 above", R"(
  主流程
    分组
+     诊断 1
    语句 <-)");
    row("a branch stays on its level", "drop else above", R"(
  主流程
    if
      语句
+   else
    endif <-)");
    row("a branch on a row that takes steps goes behind it", "drop else", R"(
  主流程
    if <-
      语句
+   else
    endif)");
    row("no rule is asked", "drop break", R"(
  主流程 <-
+   break)");
    row("a branch on a flow", "drop else", "  主流程 <-\n    语句", "no place");
    row("above a flow", "drop 延时 above", "  初始流程\n  主流程 <-", "no place");
}

void StructureRulesTest::removals()
{
    row("an if with all its branches", "remove", R"(
  主流程
    语句
-   if <-
-     if
-     endif
-   else if
-   else
-     语句
-   endif
    if
    endif)");
    row("endif takes the nearest if along", "remove", R"(
  主流程
    if
    endif
-   if
-     语句
-   else
-   endif <-)");
    row("else alone", "remove", R"(
  主流程
    if
      语句
-   else <-
-     语句
    endif)");
    row("a loop", "remove", R"(
  主流程
-   for <-
-     break
-   endfor
    for
    endfor)");
    row("a loop's closer", "remove", R"(
  主流程
-   while
-     while
-     endwhile
-   endwhile <-)");
    row("do while within another structure", "remove", R"(
  主流程
    if
-     do while
-     end dowhile <-
      语句
    endif)");
    row("a diagnostic step has no partner and is none", "remove", R"(
  主流程
-   诊断 1 <-
    诊断 4
    endif)");
    row("an if passes a diagnostic step", "remove", R"(
  主流程
-   if <-
-   诊断 4
-   endif
    语句)");
    row("an opener without a closer", "remove", R"(
  主流程
-   for <-
    endwhile)");
}

void StructureRulesTest::act()
{
    QFETCH(QString, act);
    QFETCH(QString, tree);
    QFETCH(QString, refusal);
    const TextRows rows(tree, QLatin1Char('+'));
    QVERIFY(rows.anchor);
    QCOMPARE(perform(rows.anchor, act), refusal);
    QCOMPARE(rows.print(), TextRows(tree, QLatin1Char('-')).print());
    QCOMPARE(refusal.isEmpty(),
             tree.contains(QLatin1Char('+')) || tree.contains(QLatin1String("\n-")));
}

PE_TEST("logic_structure_rules", StructureRulesTest)
#include "structure_rules_test.moc"
