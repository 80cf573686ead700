#include "logic/run/run_states.h"

#include "model/colour_rules.h"

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

Outcome closingOutcome(int lastResult, bool isStopped)
{
    if (lastResult < 0)
        return Outcome::Failed;
    return isStopped ? Outcome::Stopped : Outcome::Succeeded;
}

QString text(Outcome outcome)
{
    switch (outcome) {
    case Outcome::Succeeded:
        return QCoreApplication::translate("LogicView", "执行成功");
    case Outcome::Failed:
        return QCoreApplication::translate("LogicView", "执行失败");
    case Outcome::Stopped:
        return QCoreApplication::translate("LogicView", "已停止");
    default:
        return QString();
    }
}

QBrush background(Outcome outcome, const QPalette& palette)
{
    switch (outcome) {
    case Outcome::Succeeded:
        return colour_rules::endedWell(palette);
    case Outcome::Failed:
        return colour_rules::endedBadly(palette);
    case Outcome::Stopped:
        return colour_rules::endedByStop(palette);
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
