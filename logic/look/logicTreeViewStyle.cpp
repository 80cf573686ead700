#include "logic/look/logicTreeViewStyle.h"

#include "model/colour_rules.h"

#include <QApplication>
#include <QPainter>
#include <QStyleOption>
#include <QWidget>

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
    if (option->rect.isNull() || m_refused)
        return;
    const int width = widget ? widget->width() : option->rect.right();
    const int top = option->rect.top();
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(QPen(m_dragging ? dropColour : colour_rules::blank(option->palette), 2));
    if (option->rect.height() == 0) {
        painter->drawEllipse(QPoint(LineMargin, top), DotRadius, DotRadius);
        painter->drawLine(LineMargin, top, width - LineMargin, top);
    } else {
        painter->drawRect(
            QRect(QPoint(FrameMargin, top), QPoint(width - FrameMargin, option->rect.bottom())));
    }
    painter->restore();
}

#include "moc_logicTreeViewStyle.cpp"
