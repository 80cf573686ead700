#pragma once

#include "panels/ConditionPanel.h"

/// The panel of an if step. A choice saves a text that waits, too: it is written once.
class wgtIf : public ConditionPanel
{
    Q_OBJECT
public:
    using ConditionPanel::ConditionPanel;

    int stepType() const override { return step_type::If; }
    void loadBlock(std::shared_ptr<IProcessBlock> block) override;

protected slots:
    void onCondWgtUpdate() override;
};
