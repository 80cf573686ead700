#pragma once

#include "model/IProcessBlock.h"

/// A two-tone pattern on a device's buzzer. Frequencies in Hz, durations in milliseconds.
class BuzzProcessBlock : public CopyableBlock<BuzzProcessBlock>
{
public:
    BuzzProcessBlock() : CopyableBlock(BasicStep, step_type::Buzz) {}

    std::string description() const override;
    std::string settingText() const override;

    int firstFrequency = 5000;
    int firstDuration = 500;
    int secondFrequency = 3000;
    int secondDuration = 500;
    int repeatCount = 1;
    int channel = 1; ///< counted from 1
};
