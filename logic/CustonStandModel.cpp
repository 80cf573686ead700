#include "logic/CustonStandModel.h"

#include "logic/RowIndex.h"

CustonStandModel::CustonStandModel(const QString& sequenceId, QObject* parent)
    : QStandardItemModel(parent), m_sequenceId(sequenceId), m_rows(new RowIndex(this))
{
}

QStandardItem* CustonStandModel::rowOf(const QString& blockUuid) const
{
    return m_rows->find(blockUuid);
}
