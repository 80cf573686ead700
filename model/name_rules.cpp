#include "model/name_rules.h"

namespace name_rules {

const QRegularExpression& namePattern()
{
    static const QRegularExpression pattern(QStringLiteral("^[a-zA-Z_][a-zA-Z0-9_]{0,19}\\z"));
    return pattern;
}

NameRefusal refusalOf(const QString& name, const QStringList& others)
{
    const QString trimmed = name.trimmed();
    if (trimmed.isEmpty())
        return NameRefusal::Empty;
    return others.contains(trimmed) ? NameRefusal::Taken : NameRefusal::None;
}

} // namespace name_rules
