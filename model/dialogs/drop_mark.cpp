#include "model/dialogs/drop_mark.h"

#include <QPainter>
#include <QStyleOption>
#include <QWidget>

void drop_mark::draw(const QStyleOption& option, QPainter& painter, const QWidget* view,
                     const Look& look)
{
    constexpr int penWidth = 2;
    if (option.rect.isNull())
        return;
    const int right = (view ? view->width() : option.rect.right()) - look.right;
    const int top = option.rect.top();
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(look.colour, penWidth));
    if (option.rect.height() == 0) {
        if (look.dot > 0)
            painter.drawEllipse(QPoint(look.left, top), look.dot, look.dot);
        painter.drawLine(look.left, top, right, top);
    } else {
        painter.drawRect(QRect(QPoint(look.left, top), QPoint(right, option.rect.bottom())));
    }
    painter.restore();
}
