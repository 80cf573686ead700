#pragma once

#include "model/IProcessBlock.h"

/// A step that is its kind and nothing more: else, the closing rows, break, continue, goto tag.
class PlainProcessBlock : public IProcessBlock
{
public:
    explicit PlainProcessBlock(int stepType) : IProcessBlock(BasicStep, stepType) {}

    std::shared_ptr<IProcessBlock> copyAlone() const override;
    std::string description() const override;
    std::string settingText() const override;
};
