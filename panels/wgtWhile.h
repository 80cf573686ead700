#pragma once

#include "panels/ConditionPanel.h"

/// The panel of a while step.
class wgtWhile : public ConditionPanel
{
    Q_OBJECT
public:
    using ConditionPanel::ConditionPanel;

    int stepType() const override { return step_type::While; }
    void loadBlock(std::shared_ptr<IProcessBlock> block) override;
};
