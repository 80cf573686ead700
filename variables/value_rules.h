#pragma once

#include <QString>

/// What can be typed as the value of a variable. Types are told by their primary keyword, matched
/// exactly; a keyword without a rule takes any text. No state, any thread.
namespace value_rules {

enum class Verdict {
    Accepted, ///< a value of the type, which is told
    Kept,     ///< not looked at: it stays, and nobody is told
    Refused   ///< the text before it comes back
};

/// Whether the type's values are elements separated by ",".
bool isArray(const QString& keyword);

/// The shape of a whole value, as a regular expression; a text on the way to it can be typed.
/// Empty for types whose values have no shape.
QString pattern(const QString& keyword);

/// Judges a text that has the shape, or the beginning of one. @p length is the most elements of an
/// array or characters of a text, negative for no limit.
/// A trailing comma begins one more element. Numbers are compared as signed 64 bit integers; what
/// is none (a lone "-", digits beyond that range, a fraction) counts as 0. Values of u64 have no
/// range that could be compared so, and are kept as they are.
Verdict judge(const QString& text, const QString& keyword, int length);

/// What a refused text goes against, in a sentence for its user. Empty for one that isn't refused.
QString refusal(const QString& text, const QString& keyword, int length);

/// The text as it leaves its editor: an array that ends in "," gets a 0 behind it.
QString completed(const QString& text, const QString& keyword);

} // namespace value_rules
