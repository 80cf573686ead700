#pragma once

#include "model/IProcessBlock.h"

#include <cstdint>

/// Sends one CAN or CAN FD frame.
class SendMessageProcessBlock : public CopyableBlock<SendMessageProcessBlock>
{
public:
    enum FrameFormat : int { Can = 0, CanFd = 1, CanFdBrs = 2 };
    enum FrameType : int { DataFrame = 0, RemoteFrame = 1 };
    enum IdType : int { ExtendedId = 0, StandardId = 1 };

    SendMessageProcessBlock() : CopyableBlock(BasicStep, step_type::SendMessage) {}

    std::string description() const override;
    std::string settingText() const override;

    int frameType = DataFrame;
    int frameFormat = Can;
    int idType = StandardId;
    std::uint32_t frameId = 0;   ///< 11 bits standard, 29 bits extended
    int dataSize = 8;            ///< bytes, 0..8 or one of the CAN FD sizes up to 64
    int channel = 1;             ///< counted from 1
    std::string data;            ///< hexadecimal bytes parted by blanks
    std::string messageVariable; ///< a DrelCan variable that replaces the fields; empty: none
};
