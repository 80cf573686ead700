#pragma once

#include <QHash>
#include <QObject>

class QModelIndex;
class QStandardItem;
class QStandardItemModel;

/// Finds the row of a block by its uuid in constant time. Follows the model's insertions, removals
/// and resets; the flow rows are found by "0", "1" and "2". Belongs to the model. GUI thread only.
class RowIndex : public QObject
{
    Q_OBJECT
public:
    /// @p model must be empty, and must not insert or remove rows under blocked signals.
    explicit RowIndex(QStandardItemModel* model);

    /// The item of column 0, or null.
    QStandardItem* find(const QString& uuid) const { return m_items.value(uuid); }

    /// All rows, flow rows included, in no order.
    const QHash<QString, QStandardItem*>& items() const { return m_items; }

private:
    void addRows(const QModelIndex& parent, int first, int last);
    void removeRows(const QModelIndex& parent, int first, int last);

    QStandardItemModel* m_model;
    QHash<QString, QStandardItem*> m_items;
};
