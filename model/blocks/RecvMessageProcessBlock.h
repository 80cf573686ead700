#pragma once

#include "model/IProcessBlock.h"

/// Waits for a CAN frame and stores its parts in variables. An empty variable stores nothing.
class RecvMessageProcessBlock : public CopyableBlock<RecvMessageProcessBlock>
{
public:
    /// A variable's name, of the applet's scopes or of the system.
    struct Target
    {
        std::string variable;
        bool isSystem = false;
    };

    RecvMessageProcessBlock() : CopyableBlock(BasicStep, step_type::RecvMessage) {}

    std::string description() const override;
    std::string settingText() const override;

    Target id;
    Target dataSize;
    Target channel;
    Target data;
    std::string messageVariable;  ///< takes the whole frame
    int waitTime = 1000;          ///< milliseconds
    std::string successStatement; ///< run when a frame came
};
