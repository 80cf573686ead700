#pragma once

#include <QRegularExpression>
#include <QStringList>

/// What a person may call a sequence, a variable or a tag. Generated code bears these names. Names
/// are compared exactly, upper and lower case apart. No state, any thread.
namespace name_rules {

/// A letter or underscore, then letters, digits and underscores, 20 characters at most.
const QRegularExpression& namePattern();

enum class NameRefusal { None, Empty, Taken };

/// Whether something may be called @p name beside the names of all @p others; blanks around it
/// don't count. The pattern is not looked at: what breaks it can't be typed.
NameRefusal refusalOf(const QString& name, const QStringList& others);

} // namespace name_rules
