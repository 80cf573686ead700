#pragma once

#include "logic/edit/StepOutline.h"

#include <QString>

class QStandardItem;

/// The rows of an edit tree for the rules: nodes are the items of column 0. Whether a step takes
/// others is read from its block; a row without a block takes none. GUI thread only.
class RowOutline : public StepOutline
{
public:
    /// The applet that the rows' blocks belong to.
    explicit RowOutline(const QString& appName) : m_appName(appName) {}

    /// The row of a node that this class has given, or that was made from an item.
    static QStandardItem* item(Node node);

    Kind kind(Node node) const override;
    bool takesChildren(Node node) const override;
    Node parent(Node node) const override;
    int row(Node node) const override;
    int childCount(Node node) const override;
    Node child(Node node, int row) const override;

private:
    QString m_appName;
};
