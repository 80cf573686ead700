#pragma once

#include "model/step_kinds.h"

#include <QModelIndex>
#include <QStandardItemModel>

class RowIndex;

/// The rows of one sequence on the edit tab. Holds no truth of its own: each step row is the view
/// of the block whose uuid it bears. GUI thread only.
class CustonStandModel : public QStandardItemModel
{
    Q_OBJECT
public:
    explicit CustonStandModel(const QString& sequenceId, QObject* parent = nullptr);

    QString sequenceId() const { return m_sequenceId; }

    /// The item of column 0 of the block's row, or null; the flow rows are "0", "1" and "2".
    QStandardItem* rowOf(const QString& blockUuid) const;
    const RowIndex& rows() const { return *m_rows; }

signals:
    /// Rows were moved within the tree: their cells of column 0 at the new places, in order. The
    /// model service has not heard of it.
    void dropEnd(QModelIndexList movedRows);
    /// A kind of the palette was dropped: with @p isInsert above the row @p anchor, else on it.
    void sigAppendItemNew(QModelIndex anchor, logicBlockType baseType, int stepType,
                          QString stepName, bool isInsert = false);
    /// The same for a quick step.
    void sigAppendQuickStepItemNew(QModelIndex anchor, logicBlockType baseType, int stepType,
                                   QString quickStepId, bool isInsert = false);

private:
    QString m_sequenceId;
    RowIndex* m_rows;
};
