#pragma once

#include "logic/look/RowHeightDelegate.h"

/// Draws the rows of the edit tree: a disabled step is grey in all its columns.
class LogicTreeDelegate : public RowHeightDelegate
{
    Q_OBJECT
public:
    explicit LogicTreeDelegate(QObject* parent = nullptr);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
};
