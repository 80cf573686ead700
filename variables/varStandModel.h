#pragma once

#include <QPersistentModelIndex>
#include <QStandardItemModel>

/// The variables in sight of one sequence: header, three group rows, a row for each variable (see
/// variable_rows). A drop inserts nothing here; it is told, and who hears it moves the variables.
/// GUI thread only.
class varStandModel : public QStandardItemModel
{
    Q_OBJECT
public:
    explicit varStandModel(QObject* parent = nullptr);

    /// The uuids of the variable rows among @p indexes, joined by ",".
    QMimeData* mimeData(const QModelIndexList& indexes) const override;
    bool canDropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                         const QModelIndex& parent) const override;
    /// Always false: nothing is inserted, and so no view takes the dragged rows away.
    bool dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                      const QModelIndex& parent) override;

signals:
    /// Variables were dropped. @p parent is the group; @p row the place among its children, counted
    /// without the dragged ones; @p beforeDropRow the same counted with them.
    void dropEnd(QModelIndex parent, int row, QStringList list, int beforeDropRow);

private:
    mutable QList<QPersistentModelIndex> m_dragged; ///< rows of the drag under way
};
