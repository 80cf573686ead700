#pragma once

#include "model/IProcessBlock.h"

/// Waits.
class DelayProcessBlock : public IProcessBlock
{
public:
    DelayProcessBlock() : IProcessBlock(BasicStep, step_type::Delay) {}

    std::shared_ptr<IProcessBlock> copyAlone() const override;
    std::string description() const override;
    std::string settingText() const override;

    int delay = 1000; ///< milliseconds, 0 and more
};
