#pragma once

#include "model/IProcessBlock.h"

/// A jump to a tagged step of the same sequence. Both texts empty: no jump.
class GotoProcessBlock : public CopyableBlock<GotoProcessBlock>
{
public:
    GotoProcessBlock() : CopyableBlock(BasicStep, step_type::Goto) {}

    std::string description() const override;
    std::string settingText() const override;

    std::string targetTag;
    std::string targetUuid;
};
