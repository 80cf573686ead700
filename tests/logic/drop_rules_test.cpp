// Which drops the rows of a sequence take, and where moved rows then stand. Each case is a tree:
// "<d" marks the dragged row, "<t" the row that it is dropped on, "<b" the one that it is dropped
// before, "<e" the one behind whose last row; without a mark it falls on the ground. Lines with "-"
// go by it, lines with "+" come.

#include "logic/rows/CustonStandModel.h"
#include "logic/rows/step_mime.h"
#include "tests/logic/text_rows.h"
#include "tests/support/print_tree.h"
#include "tests/support/test_program.h"

#include <QMimeData>
#include <QTest>

#include <memory>

using structure_rules::Refusal;

namespace {

struct Case
{
    const char* name;
    const char* dropped; ///< a new step; null: the dragged row
    const char* tree;
    Refusal refusal = Refusal::None;
};

const Case cases[] = {
    {"a new if on an empty flow", "if", R"(
  初始流程 <t
  主流程)"},
    {"a new else on an empty flow", "else", R"(
  初始流程 <t
  主流程)",
     Refusal::BranchWithoutIf},
    {"a new break on an empty flow", "break", R"(
  初始流程 <t
  主流程)",
     Refusal::LoopExitOutside},
    {"an else before endif", "else", R"(
  初始流程
    if
    endif <b
  主流程)"},
    {"an else before else", "else", R"(
  初始流程
    if
    else <b
    endif
  主流程)",
     Refusal::BranchOutOfOrder},
    {"an else if before else", "else if", R"(
  初始流程
    if
    else <b
    endif
  主流程)"},
    {"an else if on an if before else", "else if", R"(
  初始流程
    if <t
    else
    endif
  主流程)",
     Refusal::BranchOutOfOrder},
    {"an else if on an if before else if", "else if", R"(
  初始流程
    if <t
    else if
    endif
  主流程)"},
    {"an else on an else if", "else", R"(
  初始流程
    if
    else if <t
    endif
  主流程)",
     Refusal::BranchWithoutIf},
    {"an else at the end of a flow", "else", R"(
  初始流程 <e
    if
    endif
  主流程)",
     Refusal::BranchWithoutIf},
    {"a break behind for", "break", R"(
  初始流程
    for
    endfor <b
  主流程)"},
    {"a break in an if of a loop", "break", R"(
  初始流程
    while
      if
        延时 <b
      endif
    endwhile
  主流程)"},
    {"a break behind the last row of a loop", "break", R"(
  初始流程
    for <e
      延时
    endfor
  主流程)",
     Refusal::LoopExitAtEdge},
    {"a continue before a loop", "continue", R"(
  初始流程
    for <b
    endfor
  主流程)",
     Refusal::LoopExitOutside},
    {"a new endif", "endif", R"(
  初始流程 <t
  主流程)",
     Refusal::CloserAlone},
    {"a diagnostic step with the number of else if", "诊断 3", R"(
  初始流程 <t
  主流程)"},
    {"a folder of the palette", "初始流程", R"(
  初始流程 <t
  主流程)",
     Refusal::NoStep},

    {"a step onto a flow: its last", nullptr, R"(
  初始流程
-   延时 <d
    语句
  主流程 <t
    语句
+   延时)"},
    {"a step on the ground: the last of the main flow", nullptr, R"(
  初始流程
-   延时 <d
  主流程
    语句
+   延时)"},
    {"a step down between its siblings", nullptr, R"(
  初始流程
-   延时 <d
    语句
    语句
+   延时
    for <b
    endfor
  主流程)"},
    {"a step up between its siblings", nullptr, R"(
  初始流程
+   延时
    语句 <b
-   延时 <d
  主流程)"},
    {"behind an opener: the last of its body", nullptr, R"(
  初始流程
    if
      语句
+     延时
    endif <b
-   延时 <d
  主流程)"},
    {"behind else: the last of its body", nullptr, R"(
  初始流程
    if
    else
+     延时
    endif <b
  主流程
-   延时 <d)"},
    {"on a step that holds none", nullptr, R"(
  初始流程
    延时 <d
    语句 <t
  主流程)",
     Refusal::NoContainer},
    {"a diagnostic step into an opener", nullptr, R"(
  初始流程
-   诊断 5 <d
    for <t
      语句
+     诊断 5
    endfor
  主流程)"},
    {"to where it is", nullptr, R"(
  初始流程
    延时 <d
    语句 <b
  主流程)"},

    {"an if with its branches into a loop", nullptr, R"(
  初始流程
-   if <d
-     语句
-   else if
-   else
-     延时
-   endif
    语句
    for <t
+     if
+       语句
+     else if
+     else
+       延时
+     endif
    endfor
  主流程)"},
    {"a loop out of its flow", nullptr, R"(
  初始流程
    if
-     while <d
-       break
-     endwhile
    endif
  主流程
+   while
+     break
+   endwhile
    语句 <b)"},
    {"an if down past a sibling", nullptr, R"(
  初始流程
-   if <d
-   endif
    语句
+   if
+   endif
    延时 <b
  主流程)"},
    {"an if into its branch", nullptr, R"(
  初始流程
    if <d
    else <t
    endif
  主流程)",
     Refusal::IntoItself},
    {"an if before its own endif", nullptr, R"(
  初始流程
    if <d
    else
    endif <b
  主流程)",
     Refusal::IntoItself},
    {"a for into its body", nullptr, R"(
  初始流程
    for <d
      if <t
      endif
    endfor
  主流程)",
     Refusal::IntoItself},
    {"a for onto itself", nullptr, R"(
  初始流程
    for <dt
    endfor
  主流程)",
     Refusal::IntoItself},
    {"an else into an if of its own", nullptr, R"(
  初始流程
    if
    else <d
      if
      endif <b
    endif
  主流程)",
     Refusal::IntoItself},
    {"an else with what it holds to another if", nullptr, R"(
  初始流程
    if
-   else <d
-     延时
    endif
  主流程
    if <t
+   else
+     延时
    endif)"},
    {"an else if before the last endif", nullptr, R"(
  初始流程
    if
-   else if <d
    else if
+   else if
    endif <b
  主流程)"},
    {"an else on the ground", nullptr, R"(
  初始流程
    if
    else <d
    endif
  主流程)",
     Refusal::BranchWithoutIf},
    {"a break to another loop", nullptr, R"(
  初始流程
    for
-     break <d
    endfor
    for
+     break
    endfor <b
  主流程)"},
    {"an endif", nullptr, R"(
  初始流程
    if
    endif <d
  主流程 <t)",
     Refusal::CloserAlone},
    {"a flow", nullptr, R"(
  初始流程 <d
  主流程 <t)",
     Refusal::ForeignStep},
};

QString printed(const QAbstractItemModel& model)
{
    return test_support::printTree(model).join(QLatin1Char('\n'));
}

} // namespace

class DropRulesTest : public QObject
{
    Q_OBJECT
private slots:
    void drops();
};

void DropRulesTest::drops()
{
    for (const Case& each : cases) {
        const QString tree = QString::fromUtf8(each.tree);
        CustonStandModel model{QString(), QString()};
        const auto marked = text_rows::fill(model, tree, QLatin1Char('+'));
        QModelIndex parent;
        int row = -1;
        if (const QStandardItem* target = marked.value(QLatin1Char('t'))) {
            parent = target->index();
        } else if (const QStandardItem* next = marked.value(QLatin1Char('b'))) {
            parent = next->parent()->index();
            row = next->row();
        } else if (const QStandardItem* holder = marked.value(QLatin1Char('e'))) {
            parent = holder->index();
            row = holder->rowCount();
        }
        std::unique_ptr<QMimeData> data;
        if (each.dropped) {
            const auto kind = step_names::kindOf(QString::fromUtf8(each.dropped));
            data = step_mime::ofKind(QString(), kind.baseType, kind.stepType, QString());
        } else {
            data.reset(model.mimeData({marked.value(QLatin1Char('d'))->index()}));
        }
        QStandardItemModel after;
        const QLatin1Char without(each.refusal == Refusal::None ? '-' : '+');
        text_rows::fill(after, tree, without);

        const auto context = [&] { return QByteArray(each.name) + '\n' + printed(model).toUtf8(); };
        const QString reason = model.dropRefusal(data.get(), row, parent);
        QVERIFY2(reason == structure_rules::reasonOf(each.refusal), context() + reason.toUtf8());
        QCOMPARE(model.canDropMimeData(data.get(), Qt::MoveAction, row, 0, parent),
                 reason.isEmpty());
        int added = 0;
        int moved = 0;
        connect(&model, &CustonStandModel::sigAppendItemNew, [&] { ++added; });
        connect(&model, &CustonStandModel::dropEnd, [&] { ++moved; });
        const bool isTaken = model.dropMimeData(data.get(), Qt::MoveAction, row, 0, parent);
        if (each.dropped) {
            QVERIFY2(added == (reason.isEmpty() ? 1 : 0), context());
            QVERIFY2(!isTaken || row >= 0, context());
        } else {
            QVERIFY2(isTaken == reason.isEmpty(), context());
            QVERIFY2(moved == (tree.contains(QLatin1String("\n-")) ? 1 : 0), context());
        }
        QVERIFY2(printed(model) == printed(after), context());
    }
}

PE_TEST("drop_rules", DropRulesTest)
#include "drop_rules_test.moc"
