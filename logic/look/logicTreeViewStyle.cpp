#include "logic/look/logicTreeViewStyle.h"

#include "model/colour_rules.h"
#include "model/dialogs/drop_mark.h"

#include <QApplication>
#include <QStyleOption>

namespace {
const QColor dropColour(0x87, 0xCE, 0xEB);
constexpr int LineMargin = 10;
constexpr int FrameMargin = 5;
constexpr int DotRadius = 4;
} // namespace

void logicTreeViewStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                       QPainter* painter, const QWidget* widget) const
{
    if (element != PE_IndicatorItemViewItemDrop) {
        QApplication::style()->drawPrimitive(element, option, painter, widget);
        return;
    }
    if (m_refused)
        return;
    const int margin = option->rect.height() == 0 ? LineMargin : FrameMargin;
    const QColor colour = m_dragging ? dropColour : colour_rules::blank(option->palette);
    drop_mark::draw(*option, *painter, widget, {colour, margin, margin, DotRadius});
}

#include "moc_logicTreeViewStyle.cpp"
