#pragma once

/// The identity of a step kind: the pair of a base type (logicBlockType) and a step type (int).
/// Both integers stand in documents and in drag data; they never change.

/// What a row of the logic tree is. The first three are the flows' own top rows, which have no
/// block; the other two are steps. The value 4 is not used.
enum logicBlockType : int {
    NoBlock = -1, ///< no row selected
    InitialFlow = 0,
    MainFlow = 1,
    EndFlow = 2,
    BasicStep = 3,
    DiagnosticStep = 5
};

/// The step types under BasicStep. 11, 14 and 18 are not assigned.
namespace step_type {
constexpr int None = 0;
constexpr int If = 1;
constexpr int Else = 2;
constexpr int ElseIf = 3;
constexpr int EndIf = 4;
constexpr int For = 5;
constexpr int EndFor = 6;
constexpr int While = 7;
constexpr int EndWhile = 8;
constexpr int DoWhile = 9;
constexpr int EndDoWhile = 10;
constexpr int Break = 12;
constexpr int Continue = 13;
constexpr int GotoTag = 15;
constexpr int Goto = 16;
constexpr int Api = 17;
constexpr int Condition = 19; ///< only ever part of another step
constexpr int Statement = 20;
constexpr int Expression = 21;
constexpr int Sequence = 22;
constexpr int PopupWindow = 23;
constexpr int Delay = 24;
constexpr int SendMessage = 25;
constexpr int RecvMessage = 26;
constexpr int Buzz = 27;
constexpr int Custom = 10000;
constexpr int QuickStepFolder = 10001; ///< a row of the palette, never a block
} // namespace step_type

/// The facts about step types that rules, loaders and generators share. All are for BasicStep;
/// a type that is not assigned answers like a plain step. No state, any thread.
namespace step_kinds {

/// The step type that closes @p opener (If gives EndIf), or step_type::None if it opens nothing.
constexpr int closerOf(int opener)
{
    switch (opener) {
    case step_type::If:
        return step_type::EndIf;
    case step_type::For:
        return step_type::EndFor;
    case step_type::While:
        return step_type::EndWhile;
    case step_type::DoWhile:
        return step_type::EndDoWhile;
    default:
        return step_type::None;
    }
}

/// The step type that @p closer closes (EndIf gives If), or step_type::None.
constexpr int openerOf(int closer)
{
    switch (closer) {
    case step_type::EndIf:
        return step_type::If;
    case step_type::EndFor:
        return step_type::For;
    case step_type::EndWhile:
        return step_type::While;
    case step_type::EndDoWhile:
        return step_type::DoWhile;
    default:
        return step_type::None;
    }
}

constexpr bool isOpener(int stepType)
{
    return closerOf(stepType) != step_type::None;
}
constexpr bool isCloser(int stepType)
{
    return openerOf(stepType) != step_type::None;
}

/// True for for, while and do while: the steps that break and continue refer to.
constexpr bool isLoop(int stepType)
{
    return stepType == step_type::For || stepType == step_type::While ||
           stepType == step_type::DoWhile;
}

/// True for else and else if, which continue an if on the same level.
constexpr bool isBranch(int stepType)
{
    return stepType == step_type::Else || stepType == step_type::ElseIf;
}

} // namespace step_kinds
