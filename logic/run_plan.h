#pragma once

#include "logic/flow_loader.h"

#include <QVector>

#include <memory>

struct processTemplateInfo;

/// What a run may reach: worked out before it starts. GUI thread only.

/// A sequence of the applet, or one that a template holds.
struct RunTarget
{
    QString templateId; ///< empty for a sequence of the applet
    QString sequenceId;
    QString title; ///< for the user: its name, behind that of its template
    std::shared_ptr<const processTemplateInfo> owner; ///< the template; null for the applet itself
    flow_loader::SequenceFlows flows;
};

struct RunPlan
{
    /// The start sequence, and each sequence that it calls at any depth, once.
    std::vector<RunTarget> targets;
    /// Every block that may report, in the order of the run: the blocks of a called sequence behind
    /// the first call of it. Disabled blocks are left out with all that they hold.
    QVector<QString> blockUuids;
};

namespace run_plan {

/// An unknown sequence gives one target with empty flows.
RunPlan planRun(const QString& appName, const QString& sequenceId);

/// One sequence by itself; @p templateId is empty for one of the applet. False if there is none.
bool findTarget(const QString& appName, const QString& templateId, const QString& sequenceId,
                RunTarget& target);

} // namespace run_plan
