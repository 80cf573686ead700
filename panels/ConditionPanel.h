#pragma once

#include "panels/IBlockControl.h"

class ConditionProcessBlock;
class wgtCondition;

/// Base of the panels whose step has a condition and nothing else to set: a wgtCondition, whose
/// comparison is copied out of the block and into it whole.
class ConditionPanel : public IBlockControl
{
    Q_OBJECT
public:
    explicit ConditionPanel(QWidget* parent = nullptr);

    void saveBlock() override;
    void setCAppletName(const QString& appName) override;
    void setSequenceId(const QString& sequenceId) override;

protected slots:
    /// The editor has a new working copy.
    virtual void onCondWgtUpdate();

protected:
    /// Takes and shows a block; null leaves the panel empty, with what it showed before.
    void takeBlock(std::shared_ptr<ConditionProcessBlock> block);

private:
    wgtCondition* m_editor;
    std::shared_ptr<ConditionProcessBlock> m_block;
};
