#pragma once

#include "panels/ConditionPanel.h"

/// The panel of an else if step. Its editor offers no variables of the sequence: it isn't told of
/// it.
class wgtElseIf : public ConditionPanel
{
    Q_OBJECT
public:
    using ConditionPanel::ConditionPanel;

    int stepType() const override { return step_type::ElseIf; }
    void loadBlock(std::shared_ptr<IProcessBlock> block) override;
    void setSequenceId(const QString& sequenceId) override;
};
