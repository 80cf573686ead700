#include "panels/loop_values.h"

#include <QtGlobal>

int loop_values::fixedCount(int begin, int end)
{
    const qint64 count = qint64(end) - begin;
    return static_cast<int>(qBound(qint64(0), count, qint64(MaxCount)));
}

QString loop_values::variablePattern()
{
    return QStringLiteral("^[a-zA-Z_][a-zA-Z0-9_]{0,19}$");
}

QString loop_values::headerPattern()
{
    return QStringLiteral("[^一-龥]*");
}
