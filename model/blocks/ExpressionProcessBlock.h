#pragma once

#include "model/IProcessBlock.h"

/// An assignment: left value = right expression. Without a left value the expression alone.
class ExpressionProcessBlock : public CopyableBlock<ExpressionProcessBlock>
{
public:
    ExpressionProcessBlock() : CopyableBlock(BasicStep, step_type::Expression) {}

    std::string description() const override;
    std::string settingText() const override;

    std::string leftValue;
    std::string rightExpression;
};
