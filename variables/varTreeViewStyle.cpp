#include "variables/varTreeViewStyle.h"

#include "model/dialogs/drop_mark.h"
#include "variables/tree_colours.h"

#include <QApplication>
#include <QPainter>
#include <QStyleOption>

void varTreeViewStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                     QPainter* painter, const QWidget* widget) const
{
    constexpr int rightMargin = 5;
    if (element == PE_IndicatorItemViewItemDrop)
        drop_mark::draw(*option, *painter, widget, {tree_colours::dropMark(), 0, rightMargin});
    else
        QApplication::style()->drawPrimitive(element, option, painter, widget);
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
