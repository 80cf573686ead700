#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// One sequence of an applet, by value: what getSequence returns and updateSequence takes back.
/// A record with an empty @c id counts as no sequence.
struct SequenceInfo
{
    std::string id;             ///< the sequence's uuid
    std::string name;           ///< "^[a-zA-Z_][a-zA-Z0-9_]{0,19}$"
    std::string comment;        ///< UTF-8
    bool isMain = false;        ///< the sequence that a run of the main sequence starts with
    std::uint32_t reserved = 0; ///< not read by the editor
    /// Top-level block uuids of the three flows, in order. Nested blocks stand in the blocks.
    std::vector<std::string> initialFlow;
    std::vector<std::string> mainFlow;
    std::vector<std::string> endFlow;
};
