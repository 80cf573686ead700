#include "variables/SuggestionList.h"

SuggestionList::SuggestionList(QWidget* parent)
{
    // A window from the beginning: one that was a child before would break the ring that Tab goes
    // round in the parent's window.
    setParent(parent, Qt::ToolTip);
    setFocusPolicy(Qt::NoFocus);
    // One row is measured for all; measuring ten thousand would take longer than a frame.
    setUniformItemSizes(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTextElideMode(Qt::ElideMiddle);
    hide();
}

#include "moc_SuggestionList.cpp"
