#pragma once

#include <QColor>

class QPainter;
class QStyleOption;
class QWidget;

/// The mark of the place in a tree where a drag would land.
namespace drop_mark {

struct Look
{
    QColor colour;
    int left = 0; ///< margins to the edges of the view
    int right = 0;
    int dot = 0; ///< radius of the circle at the beginning of a line; 0: none
};

/// Draws PE_IndicatorItemViewItemDrop: a line where the option's rectangle has no height, which is
/// between two rows, else a frame around the row; nothing for a null rectangle.
void draw(const QStyleOption& option, QPainter& painter, const QWidget* view, const Look& look);

} // namespace drop_mark
