#pragma once

#include <cstdint>

/// What a run leaves behind however it ends: a piece of memory that the child process writes while
/// it runs and the editor reads after its end. No Qt here, since both share it.
///
/// The child may be gone in the middle of a write, and its user's code may have written anything
/// here: the reader believes no number in it.
namespace run_trace {

constexpr std::uint32_t Version = 2;
/// Steps that are remembered; a power of two.
constexpr std::uint32_t Remembered = 16;
/// Levels of nested steps that are told apart; what is nested deeper shares the last one.
constexpr std::uint32_t MaxDepth = 128;
/// How many levels of nesting a step knows its passes of.
constexpr std::uint32_t PassLevels = 4;
/// Processes that are told of by name.
constexpr std::uint32_t MaxEnded = 8;
/// Of an open level that is a called sequence and no step.
constexpr std::uint64_t NoStep = ~std::uint64_t(0);

/// Why the child ended itself, where its exit status alone doesn't tell.
enum Cause : std::uint32_t { NoCause, MemoryLimit, StackOverflow, ChannelLost, ProcessLimit };

/// The begin of a step. passes[0] counts how often it has begun since the step around it did,
/// passes[1] the same for that one, and so on outwards; 0 where nothing is around.
struct StepBegin
{
    std::uint64_t passes[PassLevels];
    std::uint64_t step; ///< index into the module's steps
};

/// A step that has begun and not ended.
struct OpenStep
{
    StepBegin begin;
    std::uint64_t number; ///< how many steps had begun with it
    std::uint32_t id;
    std::uint32_t outerBase; ///< of a called sequence: the base below it
};

/// Where the texts of a step or a sequence stand, as offsets from the begin of the memory.
struct StepTexts
{
    std::uint32_t id;
    std::uint32_t sequence; ///< index into the sequences
};
struct SequenceTexts
{
    std::uint32_t id;
    std::uint32_t templateId; ///< 0: the applet's own
};

/// A process that the applet has started and that was ended with the run.
struct EndedProcess
{
    char name[16]; ///< of its program: zero-terminated if it is shorter, any bytes
    std::int32_t pid;
};

/// The begin of the memory. Behind it stand the texts of the steps, those of the sequences, and the
/// zero-terminated characters.
struct Area
{
    std::uint32_t version; ///< written last of the fixed part: the applet's code has begun
    std::uint32_t cause;
    std::uint64_t begun; ///< how many steps have; the last is recent[(begun - 1) % Remembered]
    std::uint32_t depth; ///< of the open steps; open[0] stands for the run itself
    std::uint32_t stepCount;
    std::uint32_t sequenceCount;
    std::uint32_t size; ///< of it all, in bytes
    StepBegin recent[Remembered];
    OpenStep open[MaxDepth];
    /// What the supervisor adds while it ends the run, whether or not there is a version.
    std::uint32_t endedCount;    ///< of processes that were ended; the first stand in ended
    std::uint32_t survivorCount; ///< of those and the applet's own, which could not be ended
    EndedProcess ended[MaxEnded];
};

} // namespace run_trace
