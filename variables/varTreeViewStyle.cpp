#include "variables/varTreeViewStyle.h"

#include "variables/tree_colours.h"

#include <QApplication>
#include <QPainter>
#include <QStyleOption>
#include <QWidget>

namespace {
constexpr int MarkWidth = 2;
constexpr int RightMargin = 5;
} // namespace

void varTreeViewStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                     QPainter* painter, const QWidget* widget) const
{
    if (element != PE_IndicatorItemViewItemDrop) {
        QApplication::style()->drawPrimitive(element, option, painter, widget);
        return;
    }
    if (option->rect.isNull())
        return;
    const int right = (widget ? widget->width() : option->rect.right()) - RightMargin;
    const int top = option->rect.top();
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(QPen(tree_colours::dropMark(), MarkWidth));
    if (option->rect.height() == 0)
        painter->drawLine(0, top, right, top);
    else
        painter->drawRect(QRect(QPoint(0, top), QPoint(right, option->rect.bottom())));
    painter->restore();
}

void varTreeViewStyle::drawControl(ControlElement element, const QStyleOption* option,
                                   QPainter* painter, const QWidget* widget) const
{
    const auto* cell = qstyleoption_cast<const QStyleOptionViewItem*>(option);
    if (element != CE_ItemViewItem || !cell || !(cell->state & State_Selected)) {
        QApplication::style()->drawControl(element, option, painter, widget);
        return;
    }
    painter->fillRect(cell->rect, tree_colours::selection());
    QStyleOptionViewItem coloured(*cell);
    tree_colours::applySelection(coloured.palette);
    QApplication::style()->drawControl(element, &coloured, painter, widget);
}

#include "moc_varTreeViewStyle.cpp"
