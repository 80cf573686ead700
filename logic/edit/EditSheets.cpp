#include "logic/edit/EditSheets.h"

#include "logic/rows/CustonStandModel.h"
#include "logic/rows/RowIndex.h"
#include "logic/rows/flow_loader.h"
#include "logic/rows/row_texts.h"
#include "model/SequenceInfo.h"
#include "model/services/processedit.h"

void EditSheets::setAppName(const QString& appName)
{
    m_appName = appName;
    for (CustonStandModel* model : qAsConst(m_editModels))
        model->setAppName(appName);
}

CustonStandModel* EditSheets::load(const QString& sequenceId)
{
    const SequenceInfo sequence = sdk_ui_interface::processedit::getSequence(m_appName, sequenceId);
    if (sequence.id.empty())
        return nullptr;
    remove(sequenceId);
    auto* model = new CustonStandModel(m_appName, sequenceId, this);
    flow_loader::fill(model, flow_loader::sequenceFlows(m_appName, sequence),
                      step_rows::Purpose::Edit);
    model->setStaleBlocks(m_staleUuids);
    m_editModels.insert(sequenceId, model);
    m_editTableModels.insert(sequenceId, new QStandardItemModel(this));
    return model;
}

bool EditSheets::remove(const QString& sequenceId)
{
    CustonStandModel* model = m_editModels.take(sequenceId);
    delete model;
    delete m_editTableModels.take(sequenceId);
    return model != nullptr;
}

CustonStandModel* EditSheets::model(const QString& sequenceId) const
{
    return m_editModels.value(sequenceId);
}

QStandardItemModel* EditSheets::table(const QString& sequenceId) const
{
    return m_editTableModels.value(sequenceId);
}

void EditSheets::setStale(const QSet<QString>& blockUuids)
{
    m_staleUuids = blockUuids;
    for (CustonStandModel* model : qAsConst(m_editModels))
        model->setStaleBlocks(m_staleUuids);
}

void EditSheets::refreshRow(const QString& sequenceId, const QString& blockUuid) const
{
    if (CustonStandModel* model = this->model(sequenceId))
        row_texts::refresh(*model, m_appName, blockUuid);
}

void EditSheets::refreshRows(const QSet<QString>& blockUuids) const
{
    for (CustonStandModel* model : m_editModels) {
        const auto& rows = model->rows().items();
        for (auto row = rows.begin(); row != rows.end(); ++row) {
            if (blockUuids.contains(row.key()))
                row_texts::refresh(*model, m_appName, row.key());
        }
    }
}

void EditSheets::refreshJumps(const QString& sequenceId) const
{
    if (CustonStandModel* model = this->model(sequenceId))
        row_texts::refreshJumps(*model, m_appName);
}

void EditSheets::refreshCalls() const
{
    for (CustonStandModel* model : m_editModels)
        row_texts::refreshCalls(*model, m_appName);
}

#include "moc_EditSheets.cpp"
