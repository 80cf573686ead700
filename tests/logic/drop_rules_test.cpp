// Which drops the rows of a sequence take, and where moved rows then stand. Each case is a tree
// with the place marked by ">" and the dragged row by "*", and the tree afterwards or the refusal.

#include "logic/rows/CustonStandModel.h"
#include "logic/rows/step_mime.h"
#include "tests/logic/step_trees.h"
#include "tests/support/test_program.h"

#include <QMimeData>
#include <QTest>

#include <memory>

using structure_rules::Refusal;

namespace {

/// Where in relation to the marked row.
enum At { On, Before, Behind, Ground };

struct NewStep
{
    const char* kind;
    At at;
    const char* tree;
    Refusal refusal = Refusal::None;
};

const NewStep newSteps[] = {
    {"if", On, ">: | "},
    {"else", On, ">: | ", Refusal::BranchWithoutIf},
    {"break", On, ">: | ", Refusal::LoopExitOutside},
    {"else", Before, "if >endif | "},
    {"else", Before, "if >else endif | ", Refusal::BranchOutOfOrder},
    {"elseif", Before, "if >else endif | "},
    {"elseif", On, ">if else endif | ", Refusal::BranchOutOfOrder},
    {"elseif", On, ">if elseif endif | "},
    {"else", On, "if >elseif endif | ", Refusal::BranchWithoutIf},
    {"else", Behind, "if >endif | ", Refusal::BranchWithoutIf},
    {"break", Before, "for >endfor | "},
    {"break", Before, "while[if[>a] endif] endwhile | "},
    {"break", Behind, "for[>a] endfor | ", Refusal::LoopExitAtEdge},
    {"continue", Before, ">for endfor | ", Refusal::LoopExitOutside},
    {"else", Ground, " | a"}, // its refusal is a box
    {"endif", On, ">: | ", Refusal::CloserAlone},
    {"uds3", On, ">: | "}, // with the number of else if
    {"初始流程", On, ">: | ", Refusal::NoStep},
};

struct Move
{
    At at;
    const char* tree;
    const char* after; ///< null: as it was
    Refusal refusal = Refusal::None;
};

const Move moves[] = {
    {On, "*a b | >: c", "b | c a"},
    {Ground, "*a | b", " | b a"},
    {Before, "*a b c >for endfor | ", "b c a for endfor | "},
    {Before, ">b *a | ", "a b | "},
    {Before, "if[b] >endif *a | ", "if[b a] endif | "}, // behind an opener: the last of its body
    {Before, "if else >endif | *a", "if else[a] endif | "},
    {On, "*a >b | ", nullptr, Refusal::NoContainer},
    {On, "*uds5 >for[a] endfor | ", "for[a uds5] endfor | "},
    {Before, "*a >b | ", nullptr},
    {On, "*if[a] elseif else[b] endif c >for endfor | ",
     "c for[if[a] elseif else[b] endif] endfor | "},
    {Before, "if[*while[break] endwhile] endif | >a", "if endif | while[break] endwhile a"},
    {Before, "*if endif a >b | ", "a if endif b | "},
    {On, "*if >else endif | ", nullptr, Refusal::IntoItself},
    {Before, "*if else >endif | ", nullptr, Refusal::IntoItself},
    {On, "*for[>if endif] endfor | ", nullptr, Refusal::IntoItself},
    {On, "*>for endfor | ", nullptr, Refusal::IntoItself},
    {Before, "if *else[if >endif] endif | ", nullptr, Refusal::IntoItself},
    {On, "if *else[a] endif | >if endif", "if endif | if else[a] endif"},
    {Before, "if *elseif[a] elseif >endif | ", "if elseif elseif[a] endif | "},
    {Ground, "if *else endif | ", nullptr, Refusal::BranchWithoutIf},
    {Before, "for[*break] endfor for >endfor | ", "for endfor for[break] endfor | "},
    {On, "if *endif | >:", nullptr, Refusal::CloserAlone},
    {On, "*: | >:", nullptr, Refusal::ForeignStep},
};

struct Scene : step_trees::RowsOf<CustonStandModel>
{
    Scene(const char* tree, At at) : RowsOf(tree, QString(), QString())
    {
        before = step_trees::print(model);
        if (at == On) {
            parent = marked->index();
        } else if (at != Ground) {
            parent = marked->parent()->index();
            row = marked->row() + (at == Behind ? 1 : 0);
        }
        QObject::connect(&model, &CustonStandModel::sigAppendItemNew, [this] { ++added; });
        QObject::connect(&model, &CustonStandModel::dropEnd, [this] { ++moved; });
    }

    bool isRefused(const QMimeData& data) const
    {
        return !model.canDropMimeData(&data, Qt::MoveAction, row, 0, parent);
    }
    QString reason(const QMimeData& data) const { return model.dropRefusal(&data, row, parent); }
    bool drop(const QMimeData& data)
    {
        return model.dropMimeData(&data, Qt::MoveAction, row, 0, parent);
    }

    QString before;
    QModelIndex parent;
    int row = -1;
    int added = 0;
    int moved = 0;
};

} // namespace

class DropRulesTest : public QObject
{
    Q_OBJECT
private slots:
    void newStepsAreTold();
    void rowsMove();
};

void DropRulesTest::newStepsAreTold()
{
    for (const NewStep& each : newSteps) {
        Scene scene(each.tree, each.at);
        const auto kind = step_trees::kinds().value(text(each.kind));
        const auto data = step_mime::ofKind(QString(), kind.baseType, kind.stepType, QString());
        const bool isRefused = each.refusal != Refusal::None;
        const QByteArray name = QByteArray(each.kind) + " to " + each.tree;
        QVERIFY2(scene.isRefused(*data) == isRefused, name);
        QVERIFY2(scene.reason(*data) == structure_rules::reasonOf(each.refusal), name);
        // On a row it is not the view that has taken it.
        const bool isInsert = scene.parent.isValid() && each.at == Before;
        QVERIFY2(scene.drop(*data) == (!isRefused && isInsert), name);
        QVERIFY2(scene.added == (isRefused ? 0 : 1), name);
        QCOMPARE(step_trees::print(scene.model), scene.before);
    }
}

void DropRulesTest::rowsMove()
{
    for (const Move& each : moves) {
        Scene scene(each.tree, each.at);
        const std::unique_ptr<QMimeData> data(scene.model.mimeData({scene.dragged->index()}));
        const bool isRefused = each.refusal != Refusal::None;
        QVERIFY2(scene.isRefused(*data) == isRefused, each.tree);
        QVERIFY2(scene.reason(*data) == structure_rules::reasonOf(each.refusal), each.tree);
        QVERIFY2(scene.drop(*data) != isRefused, each.tree);
        QCOMPARE(step_trees::print(scene.model),
                 each.after ? step_trees::print(step_trees::Rows(each.after).model) : scene.before);
        QVERIFY2(scene.moved == (each.after ? 1 : 0), each.tree);
    }
}

PE_TEST("drop_rules", DropRulesTest)
#include "drop_rules_test.moc"
