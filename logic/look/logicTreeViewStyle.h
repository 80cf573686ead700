#pragma once

#include <QProxyStyle>

/// Draws the place where a dragged step would land; everything else is the application's style.
class logicTreeViewStyle : public QProxyStyle
{
    Q_OBJECT
public:
    /// Whether a drag is over the view; without one the mark is drawn in the view's own white.
    void setDragging(bool dragging) { m_dragging = dragging; }
    /// Whether the place under the drag refuses it: then nothing is marked.
    void setRefused(bool refused) { m_refused = refused; }
    bool isRefused() const { return m_refused; }

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget = nullptr) const override;

private:
    bool m_dragging = false;
    bool m_refused = false;
};
