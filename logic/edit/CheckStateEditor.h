#pragma once

#include "logic/edit/CheckTree.h"

#include <QString>
#include <QVector>

#include <memory>

class IProcessBlock;

/// The check boxes of the edit trees and the enabled states of the blocks, kept alike: the model
/// service gets a state first, then the row. All rows are items of column 0 of a CustonStandModel.
/// GUI thread only.
class CheckStateEditor : private CheckTree
{
public:
    /// The applet that the rows' blocks belong to.
    void setAppName(const QString& appName) { m_appName = appName; }

    /// Takes over what the user has made of the box of @p row, a step's or a flow's, and lets it
    /// spread; the model sends no signals for the boxes that follow. False if the block was in that
    /// state already, and for a flow's box that is partly checked: nothing has changed then.
    bool takeBox(QStandardItem* row);

    /// The same for a box that is set here, untold by the model.
    bool setBox(QStandardItem* row, Qt::CheckState state);

    /// The rows whose boxes have followed in the last operation, in no order. The model has not
    /// told the views of them.
    const QVector<QStandardItem*>& followers() const { return m_followers; }

    /// Brings the block of @p row alone to the state of its box. False if nothing has changed, as
    /// with a flow's row.
    bool writeBlock(const QStandardItem* row);

    /// Lets the state of a step's block spread as if its box had just been set: for a new row.
    void spread(QStandardItem* row);

    /// Brings the rows above @p row to what their children say: for a row that is left beside one
    /// that has gone.
    void updateUpward(const QStandardItem* row);

    /// Brings a flow's box alone to what its steps say.
    void followSteps(QStandardItem* flowRow);

    /// Switches steps off that have come under a disabled parent, with what goes with them.
    void switchOff(const QVector<QStandardItem*>& rows);

private:
    Qt::CheckState state(const QStandardItem* row) const override;
    void setState(QStandardItem* row, Qt::CheckState state) override;
    int disabledChildren(const QStandardItem* row) const override;

    std::shared_ptr<IProcessBlock> blockOf(const QStandardItem* row) const;
    bool write(const QStandardItem* row, const std::shared_ptr<IProcessBlock>& block,
               Qt::CheckState state);
    bool takeFlowBox(QStandardItem* flowRow);

    QString m_appName;
    QVector<QStandardItem*> m_followers;
};
