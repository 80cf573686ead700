// A long walk of random edits on one view: after each of them the rows are what the model service
// holds, and every structure is whole. EDIT_WALK_STEPS sets the length, EDIT_WALK_SEED the way.

#include "logic/rows/RowIndex.h"
#include "logic/rows/row_kinds.h"
#include "logic/rows/step_mime.h"
#include "logic/rows/step_rows.h"
#include "logic/rows/structure_rules.h"
#include "tests/logic/EditFixture.h"
#include "tests/support/test_program.h"

#include <QCoreApplication>
#include <QMap>
#include <QMimeData>
#include <QRandomGenerator>
#include <QTest>

#include <algorithm>

using namespace sdk_ui_interface;
using row_kinds::basicStepType;
using step_rows::uuidOf;

namespace {

constexpr int DefaultSteps = 5000;
constexpr int DefaultSeed = 20;
constexpr int MaxRows = 300;
constexpr int EditsBetweenPaints = 50;

int setting(const char* name, int otherwise)
{
    bool isNumber = false;
    const int value = qEnvironmentVariableIntValue(name, &isNumber);
    return isNumber ? value : otherwise;
}

class Walk : public EditFixture
{
public:
    explicit Walk(quint32 seed) : m_random(seed)
    {
        addDiagnosticKinds();
        const QString loop = add(applet.end, step_type::For, "loop");
        add(loop, step_type::Delay, "inner");
        addDiagnostic(loop);
        m_quickStep = processedit::addQuickStepInfo(applet.appName, loop);
        add(applet.end, step_type::EndFor, "close");
        view.setUdsEditor(
            [](const QString&, const QString&, int, UDSProcessInfo&) { return true; });
        view.resize(700, 500);
        view.show();
        show();
    }
    ~Walk() { processedit::removeQuickStepInfo(m_quickStep); }

    /// Does one edit; what it was is in act.
    void edit()
    {
        const int rows = model()->rows().items().size();
        const int choice = m_random.bounded(100);
        if (choice < 35 && rows < MaxRows)
            addSomewhere();
        else if (choice < 55)
            removeOne();
        else if (choice < 70)
            toggle();
        else if (choice < 78)
            refresh();
        else if (choice < 98)
            dropSomewhere();
        else
            rareEdit(m_random.bounded(10));
    }

    /// What is wrong now; empty if nothing is.
    QString fault()
    {
        m_counted = 0;
        const SequenceInfo info = processedit::getSequence(applet.appName, sequence);
        const std::vector<std::string>* const flows[] = {&info.initialFlow, &info.mainFlow,
                                                         &info.endFlow};
        for (int flow = InitialFlow; flow <= EndFlow; ++flow) {
            Blocks blocks;
            for (const std::string& uuid : *flows[flow])
                blocks.push_back(
                    processedit::getProcess(applet.appName, QString::fromStdString(uuid)));
            const QString wrong = faultUnder(row(QString::number(flow)), blocks);
            if (!wrong.isEmpty())
                return wrong;
            const auto box = row(QString::number(flow))->checkState();
            if (box != stateOf(blocks) && !(blocks.empty() && box == Qt::Unchecked))
                return QStringLiteral("the box of flow %1 is not that of its steps").arg(flow);
        }
        const int known = model()->rows().items().size();
        if (known != m_counted + 3 || known != tableRows())
            return QStringLiteral("%1 rows, %2 in the index, %3 in the table")
                .arg(m_counted + 3)
                .arg(known)
                .arg(tableRows());
        return QString();
    }

    QString act;
    QMap<QString, int> changes; ///< by the first word of act, how often it changed the document

private:
    using Blocks = std::vector<std::shared_ptr<IProcessBlock>>;

    static Qt::CheckState stateOf(const Blocks& blocks)
    {
        const auto isOff = [](const auto& block) { return block->enableState == Qt::Unchecked; };
        const auto off = std::count_if(blocks.begin(), blocks.end(), isOff);
        if (off == 0)
            return Qt::Checked;
        return off == int(blocks.size()) ? Qt::Unchecked : Qt::PartiallyChecked;
    }

    QString faultUnder(const QStandardItem* parent, const Blocks& blocks)
    {
        if (parent->rowCount() != int(blocks.size()))
            return QStringLiteral("%1 blocks under %2").arg(blocks.size()).arg(uuidOf(parent));
        m_counted += parent->rowCount();
        for (int i = 0; i < parent->rowCount(); ++i) {
            const QStandardItem* row = parent->child(i);
            const IProcessBlock& block = *blocks[std::size_t(i)];
            QString wrong;
            if (uuidOf(row).toStdString() != block.uuid)
                wrong = QStringLiteral("stands at the place of another block");
            else if (row->checkState() != block.enableState)
                wrong = QStringLiteral("has another state than its block");
            else if (row->text().toStdString() != block.name)
                wrong = QStringLiteral("has another name than its block");
            else if (model()->rowOf(uuidOf(row)) != row)
                wrong = QStringLiteral("is not found by its uuid");
            else if (!isStructureWhole(row))
                wrong = QStringLiteral("is not followed by its closer");
            else
                wrong = faultUnder(row, block.children);
            if (!wrong.isEmpty())
                return wrong.contains(QLatin1Char(':'))
                           ? wrong
                           : QStringLiteral("%1 (row %2): ").arg(row->text()).arg(i) + wrong;
        }
        return QString();
    }

    /// Behind an opener stand its branches, behind these its closer; a closer has an opener.
    bool isStructureWhole(const QStandardItem* row) const
    {
        const auto step = [&](int offset) { return row->parent()->child(row->row() + offset); };
        const int type = basicStepType(*row);
        if (step_kinds::isOpener(type)) {
            int behind = 1;
            while (type == step_type::If && step(behind) &&
                   step_kinds::isBranch(basicStepType(*step(behind))))
                ++behind;
            return step(behind) && basicStepType(*step(behind)) == step_kinds::closerOf(type);
        }
        if (step_kinds::isCloser(type))
            return structure_rules::partner(row) != nullptr;
        if (!step_kinds::isBranch(type))
            return true;
        const int before = step(-1) ? basicStepType(*step(-1)) : int(step_type::None);
        return before == step_type::If || before == step_type::ElseIf;
    }

    QStandardItem* anyRow(bool withFlows)
    {
        // The index has no order of its own, so the walk picks by the place in the tree.
        QVector<QStandardItem*> rows;
        QVector<QStandardItem*> pending;
        for (int flow = EndFlow; flow >= InitialFlow; --flow)
            pending.append(row(QString::number(flow)));
        while (!pending.isEmpty()) {
            QStandardItem* row = pending.takeLast();
            if (withFlows || row->parent())
                rows.append(row);
            for (int i = row->rowCount() - 1; i >= 0; --i)
                pending.append(row->child(i));
        }
        return rows.isEmpty() ? nullptr : rows[m_random.bounded(rows.size())];
    }

    void note(const QString& text, const QStandardItem* row)
    {
        QString path;
        for (; row; row = row->parent())
            path.prepend(QStringLiteral("/%1").arg(row->row()));
        act = text + QLatin1Char(' ') + path;
    }

    void addSomewhere()
    {
        static const int plain[] = {step_type::Delay, step_type::Goto,  step_type::If,
                                    step_type::For,   step_type::While, step_type::DoWhile};
        static const int restricted[] = {step_type::Else, step_type::ElseIf, step_type::Break,
                                         step_type::Continue};
        const QStandardItem* anchor = anyRow(true);
        const int way = m_random.bounded(8);
        const bool fromDrop = way < 2 && anchor->parent();
        const bool isRestricted = !fromDrop && way < 4;
        const int type =
            isRestricted ? restricted[m_random.bounded(4)] : plain[m_random.bounded(6)];
        note(QStringLiteral("add %1 (drop %2) at").arg(type).arg(fromDrop ? way + 1 : 0), anchor);
        setCurrent(uuidOf(anchor));
        if (way == 7)
            view.addStep(DiagnosticStep, 2, QString(), false, false);
        else if (way == 6)
            view.addStep(BasicStep, step_type::For, QString(), false, false, m_quickStep);
        else
            view.addStep(BasicStep, type, QString(), fromDrop, way == 1);
    }

    void removeOne()
    {
        if (const QStandardItem* row = anyRow(false)) {
            note(QStringLiteral("remove"), row);
            setCurrent(uuidOf(row));
            view.removeRowSlot();
        }
    }

    void toggle()
    {
        QStandardItem* row = anyRow(true);
        note(QStringLiteral("toggle"), row);
        row->setCheckState(row->checkState() == Qt::Checked ? Qt::Unchecked : Qt::Checked);
    }

    void refresh()
    {
        if (const QStandardItem* row = anyRow(false)) {
            note(QStringLiteral("refresh"), row);
            applet.get<IProcessBlock>(uuidOf(row))->name += '\'';
            view.refreshRow(uuidOf(row));
        }
    }

    /// Drops a row, a kind of the palette or a quick step anywhere; many places refuse it.
    void dropSomewhere()
    {
        static const int kinds[] = {step_type::Delay, step_type::If,    step_type::Else,
                                    step_type::For,   step_type::Break, step_type::ElseIf};
        const int what = m_random.bounded(8);
        const QStandardItem* dragged = what < 5 ? anyRow(false) : nullptr;
        std::unique_ptr<QMimeData> data;
        if (dragged)
            data = step_mime::ofRow(*dragged);
        else if (what < 7)
            data = step_mime::ofKind(QString(), BasicStep, kinds[m_random.bounded(6)], QString());
        else
            data = step_mime::ofKind(QString(), BasicStep, step_type::For, m_quickStep);
        const QStandardItem* target = m_random.bounded(20) == 0 ? nullptr : anyRow(true);
        const int row = m_random.bounded(-1, (target ? target->rowCount() : 3) + 1);
        const QModelIndex parent = target ? target->index() : QModelIndex();
        note(QStringLiteral("%1 to %2 of %3, from")
                 .arg(dragged ? text("move") : text("drop"))
                 .arg(row)
                 .arg(target ? target->text() : text("nothing")),
             dragged);
        // A view offers only rows that hold others.
        if (model()->flags(parent) & Qt::ItemIsDropEnabled)
            model()->dropMimeData(data.get(), Qt::MoveAction, row, 0, parent);
    }

    void rareEdit(int choice)
    {
        if (choice == 0) {
            const int flow = m_random.bounded(3);
            act = QStringLiteral("empty flow %1").arg(flow);
            setCurrent(QString::number(flow));
            view.removeAllRows();
        } else if (choice == 1) {
            act = QStringLiteral("reload");
            view.addNewModelSlot(sequence);
        } else {
            act = QStringLiteral("append two statements");
            view.appendStatements({text("a = 1;"), text("b = 2;\nc = 3;")}, {0});
        }
    }

    QRandomGenerator m_random;
    QString m_quickStep;
    int m_counted = 0;
};

} // namespace

class EditRandomWalkTest : public QObject
{
    Q_OBJECT
private slots:
    void walk();
};

void EditRandomWalkTest::walk()
{
    const int seed = setting("EDIT_WALK_SEED", DefaultSeed);
    const int steps = setting("EDIT_WALK_STEPS", DefaultSteps);
    Walk walk{quint32(seed)};
    QCOMPARE(walk.fault(), QString());
    for (int step = 1; step <= steps; ++step) {
        walk.act = QStringLiteral("nothing");
        const int before = walk.modified.count();
        walk.edit();
        if (step % EditsBetweenPaints == 0) {
            QCoreApplication::processEvents();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
        if (walk.modified.count() > before)
            ++walk.changes[walk.act.section(QLatin1Char(' '), 0, 0)];
        const QString fault = walk.fault();
        if (!fault.isEmpty())
            QFAIL(qPrintable(
                QStringLiteral("seed %1, step %2: %3\n%4\n%5")
                    .arg(seed)
                    .arg(step)
                    .arg(walk.act, fault)
                    .arg(test_support::printTree(*walk.model()).join(QLatin1Char('\n')))));
    }
    // A walk that went nowhere has shown nothing.
    for (const char* act : {"add", "remove", "toggle", "move", "drop"})
        QVERIFY2(walk.changes.value(QLatin1String(act)) > steps / 60, act);
    // What falls beside all rows comes at the end of the main flow, where no else can be.
    walk.boxes.removeAll(text("警告:添加失败"));
    QCOMPARE(walk.boxes, QStringList());
}

PE_WIDGET_TEST("edit_random_walk", EditRandomWalkTest)
#include "edit_random_walk_test.moc"
