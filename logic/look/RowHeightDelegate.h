#pragma once

#include <QItemDelegate>

/// Gives every row of a logic tree the height of the cell beside it in the narrow table, so that
/// both scroll as one. A cell with a ground of its own keeps it while its row is selected, between
/// two lines.
class RowHeightDelegate : public QItemDelegate
{
    Q_OBJECT
public:
    explicit RowHeightDelegate(QObject* parent = nullptr);

    /// In pixels.
    static int rowHeight();

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};
