#pragma once

#include "model/blocks/ApiProcessBlock.h"
#include "model/process_records.h"

#include <QString>

#include <optional>
#include <vector>

struct _DrelFunction;

/// What the panel of an API call makes of a function that was picked, and of what is typed. No
/// state, any thread.
namespace api_values {

/// The arguments that a function asks for, with texts already in quotes: of its first ten
/// parameters those before the first without a name, but for those of no type.
std::vector<ApiProcessBlock::Parameter> parametersOf(const _DrelFunction& function);

/// The keyword of the result's type; empty if it has none.
QString returnTypeOf(const _DrelFunction& function);

/// Whether a call has a result that a variable can take.
bool returnsAValue(const _DrelFunction& function);

/// The variable for a function's result: nothing leaves what there is, an empty text takes it away.
std::optional<QString> suggestedReturn(const _DrelFunction& function,
                                       const std::vector<processVariable>& globals);

/// Whether a value of that type is a text, which code puts in quotes.
bool isText(const QString& type);
/// A text with the quotes that it lacks.
QString quoted(const QString& text);

} // namespace api_values
