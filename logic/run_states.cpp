#include "logic/run_states.h"

#include <QCoreApplication>

namespace run_states {

Outcome outcome(double progress, int result)
{
    if (progress == 0.0)
        return Outcome::Started;
    if (result < 0)
        return Outcome::Failed;
    return progress == 100.0 ? Outcome::Succeeded : Outcome::Running;
}

Outcome closingOutcome(int lastResult)
{
    return lastResult < 0 ? Outcome::Failed : Outcome::Succeeded;
}

QString text(Outcome outcome)
{
    switch (outcome) {
    case Outcome::Succeeded:
        return QCoreApplication::translate("LogicView", "执行成功");
    case Outcome::Failed:
        return QCoreApplication::translate("LogicView", "执行失败");
    default:
        return QString();
    }
}

QBrush background(Outcome outcome)
{
    switch (outcome) {
    case Outcome::Succeeded:
        return QColor(187, 237, 196);
    case Outcome::Failed:
        return QColor(241, 178, 185);
    default:
        return QBrush(Qt::transparent);
    }
}

double totalProgress(int place, int count, double progress)
{
    const double n = count;
    return progress / n + (place / n) * 100.0;
}

} // namespace run_states
