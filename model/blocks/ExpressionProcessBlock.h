#pragma once

#include "model/IProcessBlock.h"

/// An assignment: left value = right expression. Without a left value the expression alone.
class ExpressionProcessBlock : public IProcessBlock
{
public:
    ExpressionProcessBlock() : IProcessBlock(BasicStep, step_type::Expression) {}

    std::shared_ptr<IProcessBlock> copyAlone() const override;
    std::string description() const override;
    std::string settingText() const override;

    std::string leftValue;
    std::string rightExpression;
};
