#pragma once

#include "logic/rows/step_drops.h"
#include "model/step_kinds.h"

#include <QModelIndex>
#include <QSet>
#include <QStandardItemModel>

class RowIndex;
namespace step_mime {
struct Step;
}

/// The rows of one sequence on the edit tab. Holds no truth of its own: each step row is the view
/// of the block whose uuid it bears. GUI thread only.
class CustonStandModel : public QStandardItemModel
{
    Q_OBJECT
public:
    CustonStandModel(const QString& appName, const QString& sequenceId, QObject* parent = nullptr);

    QString sequenceId() const { return m_sequenceId; }
    /// The applet whose blocks the rows show.
    void setAppName(const QString& appName) { m_appName = appName; }
    /// The blocks whose descriptions bear the mark to be compiled again.
    void setStaleBlocks(const QSet<QString>& blockUuids) { m_staleBlocks = blockUuids; }

    /// Description and settings of a step are those of its block at the moment.
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    /// What a drag of the first row among @p indexes carries.
    QMimeData* mimeData(const QModelIndexList& indexes) const override;
    /// A new step may be dropped as the rules of the structure have it; of rows only those of this
    /// model itself, whatever a drag says of itself.
    bool canDropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                         const QModelIndex& parent) const override;
    /// Moves rows and tells it by dropEnd, or has a new step added. False for a drop that may not
    /// be, with all as it was, and for a new step that is dropped on a row.
    bool dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                      const QModelIndex& parent) override;
    /// Why such a drop may not be; empty if it may.
    QString dropRefusal(const QMimeData* data, int row, const QModelIndex& parent) const;

    /// To be called when a block has other texts than before; @p row is its cell of column 0.
    void tellTextsChanged(const QStandardItem* row);

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
    const QStandardItem* nameItem(const QModelIndex& index) const;
    structure_rules::Refusal check(const step_mime::Step& step, step_drops::Drop& drop) const;
    step_drops::Drop dropAt(int row, const QModelIndex& parent) const;
    bool addDropped(const step_mime::Step& step, const step_drops::Drop& drop);
    void moveDragged(const step_drops::Drop& drop);

    QString m_appName;
    QString m_sequenceId;
    QSet<QString> m_staleBlocks;
    RowIndex* m_rows;
};
