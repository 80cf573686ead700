#include "model/step_reference.h"

#include <QRegularExpression>

std::optional<StepReference> stepReference(const QString& line)
{
    static const QRegularExpression pattern(QStringLiteral("^(.*) \\[([^][/]+)/([^][/]*)\\]$"));
    const QRegularExpressionMatch match = pattern.match(line);
    if (!match.hasMatch())
        return std::nullopt;
    return StepReference{match.captured(2), match.captured(3), match.captured(1)};
}

QString withStepReference(const QString& line, const QString& sequenceId, const QString& stepId)
{
    return QStringLiteral("%1 [%2/%3]").arg(line, sequenceId, stepId);
}
