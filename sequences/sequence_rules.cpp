#include "sequences/sequence_rules.h"

#include <QSet>

namespace sequence_rules {

QString freeName(const QStringList& names)
{
    const QSet<QString> taken(names.begin(), names.end());
    const QString pattern = QStringLiteral("Sequence_%1");
    int number = names.size();
    while (taken.contains(pattern.arg(number)))
        ++number;
    return pattern.arg(number);
}

QVector<MainFlag> mainFlagsToStore(const QVector<bool>& boxes, int row)
{
    QVector<MainFlag> flags;
    if (!boxes.value(row))
        return flags;
    for (int other = 0; other < boxes.size(); ++other) {
        if (boxes[other])
            flags.append({other, other == row});
    }
    return flags;
}

} // namespace sequence_rules
