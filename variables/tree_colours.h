#pragma once

#include <QColor>
#include <QPalette>

/// The colours of the variable tree.
namespace tree_colours {

inline QColor selection()
{
    return QColor(0xff, 0xdd, 0x8a);
}

inline QColor dropMark()
{
    return QColor(0x87, 0xce, 0xeb);
}

/// Selected cells look alike whether the tree has the focus or not.
inline void applySelection(QPalette& palette)
{
    palette.setColor(QPalette::Highlight, selection());
    palette.setColor(QPalette::HighlightedText, Qt::black);
}

} // namespace tree_colours
