#include "panels/ProcessEditTableWidgetItemDelagate.h"

ProcessEditTableWidgetItemDelagate::ProcessEditTableWidgetItemDelagate(QObject* parent)
    : QItemDelegate(parent)
{
}

QSize ProcessEditTableWidgetItemDelagate::sizeHint(const QStyleOptionViewItem& option,
                                                   const QModelIndex& index) const
{
    QSize size = QItemDelegate::sizeHint(option, index);
    size.setHeight(qMax(LeastRowHeight, 2 * option.fontMetrics.height()));
    return size;
}

#include "moc_ProcessEditTableWidgetItemDelagate.cpp"
