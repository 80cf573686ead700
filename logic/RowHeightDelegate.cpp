#include "logic/RowHeightDelegate.h"

#include "model/services/widget_bases.h"

namespace {
constexpr int RowHeight = 26;
}

RowHeightDelegate::RowHeightDelegate(QObject* parent) : QItemDelegate(parent) {}

int RowHeightDelegate::rowHeight()
{
    // In quarters of the height: a screen that is a dot finer than the usual keeps it.
    return RowHeight * StyleManager::scale(4) / 4;
}

QSize RowHeightDelegate::sizeHint(const QStyleOptionViewItem& option,
                                  const QModelIndex& index) const
{
    QSize size = QItemDelegate::sizeHint(option, index);
    size.setHeight(rowHeight());
    return size;
}

#include "moc_RowHeightDelegate.cpp"
