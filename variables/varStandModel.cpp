#include "variables/varStandModel.h"

#include "model/mime_types.h"
#include "variables/drop_rules.h"
#include "variables/variable_rows.h"

#include <QMimeData>

#include <utility>

varStandModel::varStandModel(QObject* parent) : QStandardItemModel(parent) {}

QMimeData* varStandModel::mimeData(const QModelIndexList& indexes) const
{
    QStringList uuids;
    m_dragged.clear();
    for (const QModelIndex& index : indexes) {
        if (index.column() != variable_rows::NameColumn || !variable_rows::isVariable(index))
            continue;
        uuids.append(variable_rows::uuidOf(index));
        m_dragged.append(index);
    }
    auto* data = new QMimeData;
    mime_types::markAsItems(*data);
    data->setData(mime_types::VariableUuids, uuids.join(QLatin1Char(',')).toUtf8());
    return data;
}

bool varStandModel::canDropMimeData(const QMimeData* data, Qt::DropAction action, int, int,
                                    const QModelIndex& parent) const
{
    return data && action == Qt::MoveAction && !data->data(mime_types::VariableUuids).isEmpty() &&
           !variable_rows::isVariable(parent);
}

bool varStandModel::dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                                 const QModelIndex& parent)
{
    const QList<QPersistentModelIndex> dragged = std::exchange(m_dragged, {});
    if (!canDropMimeData(data, action, row, column, parent))
        return false;
    QVector<int> groupSizes;
    for (int group = 0; group < rowCount(); ++group)
        groupSizes.append(item(group)->rowCount());
    const drop_rules::Target target = drop_rules::targetOf(parent.row(), row, groupSizes);
    if (target.group < 0)
        return false;
    const QModelIndex group = index(target.group, variable_rows::NameColumn);
    QVector<int> draggedRows;
    for (const QPersistentModelIndex& each : dragged) {
        if (each.isValid() && each.parent() == group)
            draggedRows.append(each.row());
    }
    const QString uuids = QString::fromUtf8(data->data(mime_types::VariableUuids));
    emit dropEnd(group, drop_rules::rowWithout(draggedRows, target.row),
                 uuids.split(QLatin1Char(',')), target.row);
    return false;
}

#include "moc_varStandModel.cpp"
