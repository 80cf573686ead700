#include "logic/look/RowHeightDelegate.h"

#include "model/services/widget_bases.h"

#include <QPainter>

namespace {
constexpr int RowHeight = 26;
constexpr int LineWidth = 2;
} // namespace

RowHeightDelegate::RowHeightDelegate(QObject* parent) : QItemDelegate(parent) {}

int RowHeightDelegate::rowHeight()
{
    // In quarters of the height: a screen that is a dot finer than the usual keeps it.
    return RowHeight * StyleManager::scale(4) / 4;
}

void RowHeightDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const
{
    const auto ground = qvariant_cast<QBrush>(index.data(Qt::BackgroundRole));
    const bool isSelected = option.state & QStyle::State_Selected;
    if (!isSelected || ground.style() == Qt::NoBrush || ground.color().alpha() == 0) {
        QItemDelegate::paint(painter, option, index);
        return;
    }
    QStyleOptionViewItem own = option;
    own.state &= ~QStyle::State_Selected;
    QItemDelegate::paint(painter, own, index);
    const QColor line = option.palette.color(QPalette::Highlight).darker(200);
    painter->fillRect(option.rect.x(), option.rect.top(), option.rect.width(), LineWidth, line);
    painter->fillRect(option.rect.x(), option.rect.bottom() + 1 - LineWidth, option.rect.width(),
                      LineWidth, line);
}

QSize RowHeightDelegate::sizeHint(const QStyleOptionViewItem& option,
                                  const QModelIndex& index) const
{
    QSize size = QItemDelegate::sizeHint(option, index);
    size.setHeight(rowHeight());
    return size;
}

#include "moc_RowHeightDelegate.cpp"
