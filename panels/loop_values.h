#pragma once

#include <QString>

/// The values of a counting loop as its form shows them. No state, any thread.
namespace loop_values {

constexpr int MaxCount = 9999999;

/// How often the body runs that counts from @p begin, included, to @p end, excluded, one by one;
/// from 0 to MaxCount.
int fixedCount(int begin, int end);

/// What may be typed: the name of a loop variable (a C identifier of up to 20 characters), and a
/// part of a loop's own header (anything but Chinese characters), as regular expressions.
QString variablePattern();
QString headerPattern();

} // namespace loop_values
