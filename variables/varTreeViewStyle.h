#pragma once

#include <QProxyStyle>

/// How the variable tree looks where the application's style would differ: the ground of selected
/// cells, and the mark of the place where a drag would land.
class varTreeViewStyle : public QProxyStyle
{
    Q_OBJECT
public:
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget = nullptr) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget = nullptr) const override;
};
