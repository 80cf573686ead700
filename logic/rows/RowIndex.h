#pragma once

#include <QHash>
#include <QObject>
#include <QSet>

class QModelIndex;
class QStandardItem;
class QStandardItemModel;

/// Finds the row of a block by its uuid in constant time. Follows the model's insertions, removals
/// and resets; the flow rows are found by "0", "1" and "2". Counts the unchecked rows below each
/// RowItem on the way. Belongs to the model. GUI thread only.
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

    /// The rows whose texts name something else of the document, in no order: jumps name a step,
    /// calls a sequence.
    const QSet<QStandardItem*>& jumps() const { return m_jumps; }
    const QSet<QStandardItem*>& calls() const { return m_calls; }

private:
    QSet<QStandardItem*>* setFor(const QStandardItem* item);
    void addRows(const QModelIndex& parent, int first, int last);
    void removeRows(const QModelIndex& parent, int first, int last);

    QStandardItemModel* m_model;
    QHash<QString, QStandardItem*> m_items;
    QSet<QStandardItem*> m_jumps;
    QSet<QStandardItem*> m_calls;
};
