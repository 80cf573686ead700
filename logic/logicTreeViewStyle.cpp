#include "logic/logicTreeViewStyle.h"

#include <QApplication>
#include <QPainter>
#include <QStyleOption>
#include <QWidget>

namespace {
constexpr QRgb DropColour = 0xFF87CEEB;
constexpr QRgb IdleColour = 0xFFFFFFFF;
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
    if (option->rect.isNull())
        return;
    const int width = widget ? widget->width() : option->rect.right();
    const int top = option->rect.top();
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(QPen(QColor::fromRgba(m_dragging ? DropColour : IdleColour), 2));
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
