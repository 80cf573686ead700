#pragma once

#include "model/step_kinds.h"

#include <QStandardItem>

class IProcessBlock;

/// The cell of column 0 of a row in the logic trees: what every row shows and is asked for, kept as
/// plain members. Trees have tens of thousands of rows, and a view asks each of them for its flags
/// whenever it lays itself out. GUI thread only.
class RowItem : public QStandardItem
{
public:
    /// A step's row. With @p hasBox it shows the block's enabled state.
    RowItem(const IProcessBlock& block, Qt::ItemFlags flags, bool hasBox);
    /// A flow's row. With @p hasBox it is checked.
    RowItem(logicBlockType flow, const QString& name, Qt::ItemFlags flags, bool hasBox);

    /// The row that @p item is the first cell of; null for any other item.
    static RowItem* from(QStandardItem* item);
    static const RowItem* from(const QStandardItem* item);

    QVariant data(int role) const override;
    void setData(const QVariant& value, int role) override;
    int type() const override { return Type; }
    QStandardItem* clone() const override;

    const QString& uuid() const { return m_uuid; }
    bool isUnchecked() const { return m_hasBox && m_state == Qt::Unchecked; }

    /// How many of the rows directly below are unchecked. Right while the row stands in a model
    /// whose RowIndex sees to it.
    int uncheckedChildren() const { return m_uncheckedChildren; }
    void countUnchecked(int change) { m_uncheckedChildren += change; }

private:
    static constexpr int Type = QStandardItem::UserType + 1;

    RowItem(const RowItem& other) = default;

    Qt::ItemFlags m_flags;
    logicBlockType m_baseType;
    int m_stepType;
    QString m_uuid;
    QString m_name;
    Qt::CheckState m_state;
    bool m_hasBox;
    int m_uncheckedChildren = 0;
};
