#pragma once

#include <QCoreApplication>
#include <QString>

#include <functional>
#include <string>

class ApiProcessBlock;
class BuzzProcessBlock;
class ConditionProcessBlock;
class DelayProcessBlock;
class ExpressionProcessBlock;
class ForProcessBlock;
class GotoProcessBlock;
class IProcessBlock;
class PopupWindowProcessBlock;
class RecvMessageProcessBlock;
class SendMessageProcessBlock;
class SequenceProcessBlock;
class StatementProcessBlock;

namespace standalone {

/// The translation context of what rows say of their blocks.
struct BlockTexts
{
    Q_DECLARE_TR_FUNCTIONS(BlockTexts)
};

/// Looks up what a text has to name beside its block. Both may be empty functions: then nothing is
/// known of targets, and the texts don't say that one is missing.
struct TargetNames
{
    /// The name of a step or a sequence by its id; a null string if there is none.
    using Lookup = std::function<QString(const std::string& id)>;
    Lookup step;
    Lookup sequence;
};

/// What a step does, for the description column: a row must be understood without opening it.
/// Pure functions of the block and the names.
namespace block_texts {

QString plain(int stepType);
QString condition(const ConditionProcessBlock& block);
QString forLoop(const ForProcessBlock& block);
QString jump(const GotoProcessBlock& block, const TargetNames& names);
QString sequenceCall(const SequenceProcessBlock& block, const TargetNames& names);
QString statement(const StatementProcessBlock& block);
QString expression(const ExpressionProcessBlock& block);
QString apiCall(const ApiProcessBlock& block);
QString popup(const PopupWindowProcessBlock& block);
QString delay(const DelayProcessBlock& block);
QString buzz(const BuzzProcessBlock& block);
QString send(const SendMessageProcessBlock& block);
QString receive(const RecvMessageProcessBlock& block);

} // namespace block_texts

/// How a step is set up beyond that: its general settings on one line, empty if all are standard.
QString settingText(const IProcessBlock& block, const TargetNames& names);

/// The names of what stands in the same applet as @p block; empty functions for a copy that stands
/// in none.
TargetNames targetNamesFor(const IProcessBlock& block);

} // namespace standalone
