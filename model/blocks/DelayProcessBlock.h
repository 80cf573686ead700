#pragma once

#include "model/IProcessBlock.h"

/// Waits.
class DelayProcessBlock : public CopyableBlock<DelayProcessBlock>
{
public:
    DelayProcessBlock() : CopyableBlock(BasicStep, step_type::Delay) {}

    std::string description() const override;
    std::string settingText() const override;

    int delay = 1000; ///< milliseconds, 0 and more
};
