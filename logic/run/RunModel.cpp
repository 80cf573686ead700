#include "logic/run/RunModel.h"

#include "logic/rows/logic_roles.h"

QVariant RunModel::data(const QModelIndex& index, int role) const
{
    if (index.column() != logic_columns::State ||
        (role != Qt::DisplayRole && role != Qt::BackgroundRole))
        return QStandardItemModel::data(index, role);
    const auto mark = m_marks.constFind(itemFromIndex(index.siblingAtColumn(logic_columns::Name)));
    if (mark == m_marks.constEnd())
        return QVariant();
    const auto outcome = mark->round == m_round ? mark->outcome : run_states::Outcome::Started;
    return role == Qt::DisplayRole ? QVariant(run_states::text(outcome))
                                   : QVariant(run_states::background(outcome));
}
