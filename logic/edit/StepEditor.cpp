#include "logic/edit/StepEditor.h"

#include "edits/DocumentEdits.h"
#include "logic/edit/CheckStateEditor.h"
#include "logic/edit/step_creation.h"
#include "logic/rows/CustonStandModel.h"
#include "logic/rows/RowIndex.h"
#include "logic/rows/logic_roles.h"
#include "logic/rows/step_rows.h"
#include "model/blocks/StatementProcessBlock.h"
#include "model/dialogs/user_dialogs.h"
#include "model/services/processedit.h"

#include <QCoreApplication>
#include <QSignalBlocker>
#include <QTreeView>

#include <algorithm>

using namespace sdk_ui_interface;
using step_rows::uuidOf;
using structure_rules::Place;
using structure_rules::Refusal;

StepEditor::StepEditor(QTreeView& tree, CheckStateEditor& checkStates, UdsStepEditor& udsSteps)
    : m_tree(tree), m_checkStates(checkStates), m_udsSteps(udsSteps)
{
}

void StepEditor::follow(CustonStandModel* model)
{
    const auto add = [this](const QModelIndex& anchor, const NewStep& step) {
        {
            const QSignalBlocker blocker(&m_tree);
            m_tree.setCurrentIndex(anchor);
        }
        addStep(step);
    };
    const auto way = [](bool isInsert) { return isInsert ? Way::DroppedAbove : Way::DroppedOn; };
    connect(model, &CustonStandModel::sigAppendItemNew, this,
            [add, way](const QModelIndex& anchor, logicBlockType baseType, int stepType,
                       const QString& stepName, bool isInsert) {
                add(anchor, {baseType, stepType, stepName, QString(), way(isInsert)});
            });
    connect(model, &CustonStandModel::sigAppendQuickStepItemNew, this,
            [add, way](const QModelIndex& anchor, logicBlockType baseType, int stepType,
                       const QString& quickStepId, bool isInsert) {
                add(anchor, {baseType, stepType, QString(), quickStepId, way(isInsert)});
            });
    connect(model, &CustonStandModel::dropEnd, this, &StepEditor::writeMovedRows);
}

CustonStandModel* StepEditor::currentModel() const
{
    return qobject_cast<CustonStandModel*>(m_tree.model());
}

QStandardItem* StepEditor::anchor()
{
    const CustonStandModel* model = currentModel();
    if (!model)
        return nullptr;
    if (!m_tree.currentIndex().isValid())
        m_tree.setCurrentIndex(model->index(MainFlow, logic_columns::Name));
    return model->itemFromIndex(m_tree.currentIndex().siblingAtColumn(logic_columns::Name));
}

void StepEditor::addStep(const NewStep& step)
{
    if (!mayAdd(step))
        return;
    const bool isDiagnostic = step.baseType == DiagnosticStep && step.quickStepId.isEmpty();
    std::optional<UdsStepEditor::Setup> setup;
    if (isDiagnostic && !(setup = m_udsSteps.ask(step.stepType, step.name)))
        return;
    if (!addRows(step, setup) && (isDiagnostic || step.baseType == BasicStep))
        warn(QT_TRANSLATE_NOOP("LogicView", "添加步骤失败"));
}

bool StepEditor::addRows(const NewStep& step, const std::optional<UdsStepEditor::Setup>& setup)
{
    const DocumentEdits::Act act;
    QStandardItem* row = create(step);
    if (!row)
        return false;
    if (setup)
        m_udsSteps.write(uuidOf(row), *setup);
    show(row);
    return true;
}

bool StepEditor::mayAdd(const NewStep& step)
{
    // The palette's folders are no steps.
    if (step.baseType != BasicStep && step.baseType != DiagnosticStep)
        return false;
    QStandardItem* target = anchor();
    if (!target)
        return false;
    if (step.way == Way::Chosen) {
        const Refusal refusal = structure_rules::check(target, {step.baseType, step.stepType});
        if (refusal != Refusal::None) {
            emit refused(structure_rules::reasonOf(refusal));
            return false;
        }
    } else if (!step.quickStepId.isEmpty() && !processedit::getQuickStepInfo(step.quickStepId)) {
        emit refused(tr("该快捷步骤已不存在"));
        return false;
    }
    if (!step_rows::isFlow(target) && !processedit::getProcess(m_appName, uuidOf(target)))
        return false;
    if (placeOf(step, target))
        return true;
    warn(QT_TRANSLATE_NOOP("LogicView", "添加失败"));
    return false;
}

std::optional<Place> StepEditor::placeOf(const NewStep& step, QStandardItem* anchor) const
{
    const auto takesChildren = [this](const QStandardItem* row) {
        return step_rows::takesChildren(m_appName, row);
    };
    const structure_rules::StepKind kind{step.baseType, step.stepType};
    return step.way == Way::DroppedAbove ? structure_rules::placeBefore(anchor, kind, takesChildren)
                                         : structure_rules::placeAt(anchor, kind, takesChildren);
}

QStandardItem* StepEditor::create(const NewStep& step)
{
    QStandardItem* target = anchor();
    const auto place = target ? placeOf(step, target) : std::nullopt;
    if (!place)
        return nullptr;
    QStandardItem* parent = place->parent;
    const auto rows =
        step_creation::buildRows({m_appName, currentModel()->sequenceId(), uuidOf(parent),
                                  place->row, step.baseType, step.stepType, step.quickStepId});
    if (rows.isEmpty())
        return nullptr;
    int at = place->row;
    for (const step_creation::Row& cells : rows)
        parent->insertRow(at++, cells);
    tellRowCount();
    return rows.first().first();
}

void StepEditor::show(QStandardItem* row)
{
    m_udsSteps.tellAdded(row);
    const QModelIndex index = row->index();
    m_tree.expand(index);
    makeCurrent(index);
    m_tree.scrollTo(index);
    emit rowChosen(index);
    m_checkStates.spread(row);
    m_tree.viewport()->update();
}

void StepEditor::makeCurrent(const QModelIndex& index)
{
    // The view's own way would extend the selection while a modifier key is held.
    QItemSelectionModel* selection = m_tree.selectionModel();
    selection->select(index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    selection->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
}

void StepEditor::appendStatements(const QStringList& statements,
                                  const std::vector<int>& splitIndexes)
{
    const CustonStandModel* model = currentModel();
    QStandardItem* flow = model ? model->rowOf(QString::number(MainFlow)) : nullptr;
    if (!flow)
        return;
    const DocumentEdits::Act act;
    DocumentEdits& edits = DocumentEdits::instance();
    const int before = flow->rowCount();
    for (int i = 0; i < statements.size(); ++i) {
        const QString uuid = edits.createProcess(m_appName, model->sequenceId(), uuidOf(flow),
                                                 BasicStep, step_type::Statement, flow->rowCount());
        const auto block = std::dynamic_pointer_cast<StatementProcessBlock>(
            processedit::getProcess(m_appName, uuid));
        if (!block)
            break;
        edits.updateProcess(m_appName, model->sequenceId(), block, [&] {
            const auto& split = splitIndexes;
            block->setCustomCode(statements[i].toStdString());
            block->setSplitFile(std::find(split.begin(), split.end(), i) != split.end());
            if (flow->checkState() == Qt::Unchecked)
                block->enableState = Qt::Unchecked;
        });
        flow->appendRow(step_rows::stepRow(*block, step_rows::Purpose::Edit));
    }
    if (flow->rowCount() != before)
        tellRowCount();
}

void StepEditor::addQuickSteps()
{
    const DocumentEdits::Act act;
    QStringList ids;
    const QModelIndexList rows = m_tree.selectionModel()
                                     ? m_tree.selectionModel()->selectedRows(logic_columns::Name)
                                     : QModelIndexList();
    for (const QModelIndex& row : rows) {
        const QString uuid = row.data(logic_roles::BlockUuid).toString();
        const auto block = processedit::getProcess(m_appName, uuid);
        if (!block || block->property.name.empty() || !block->property.showInPalette)
            continue;
        const QString id = DocumentEdits::instance().addQuickStepInfo(m_appName, uuid);
        if (!id.isEmpty())
            ids.append(id);
    }
    if (!ids.isEmpty())
        emit quickStepsAdded(ids);
}

void StepEditor::tellRowCount()
{
    emit rowCountChanged(currentModel()->rows().items().size());
}

void StepEditor::warn(const char* text)
{
    user_dialogs::warning(&m_tree, QCoreApplication::translate("LogicView", "警告"),
                          QCoreApplication::translate("LogicView", text));
}

#include "moc_StepEditor.cpp"
