#pragma once

#include <QItemDelegate>

/// Gives the rows of a ProcessEditTableWidget their height.
class ProcessEditTableWidgetItemDelagate : public QItemDelegate
{
    Q_OBJECT
public:
    /// In pixels.
    static constexpr int LeastRowHeight = 40;

    explicit ProcessEditTableWidgetItemDelagate(QObject* parent = nullptr);

    /// Twice the height of the cell's font, LeastRowHeight at least.
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};
