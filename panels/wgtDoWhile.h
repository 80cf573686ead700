#pragma once

#include "panels/ConditionPanel.h"

/// The panel of a do while step.
class wgtDoWhile : public ConditionPanel
{
    Q_OBJECT
public:
    using ConditionPanel::ConditionPanel;

    int stepType() const override { return step_type::DoWhile; }
    void loadBlock(std::shared_ptr<IProcessBlock> block) override;
};
