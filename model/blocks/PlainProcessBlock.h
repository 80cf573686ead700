#pragma once

#include "model/IProcessBlock.h"

/// A step that is its kind and nothing more: else, the closing rows, break, continue, goto tag.
class PlainProcessBlock : public CopyableBlock<PlainProcessBlock>
{
public:
    explicit PlainProcessBlock(int stepType) : CopyableBlock(BasicStep, stepType) {}

    std::string description() const override;
    std::string settingText() const override;
};
