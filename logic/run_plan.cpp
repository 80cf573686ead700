#include "logic/run_plan.h"

#include "model/blocks/SequenceProcessBlock.h"
#include "model/process_records.h"
#include "model/services/process_json_edit.h"
#include "model/services/processedit.h"

#include <QPair>
#include <QSet>

namespace {

using sdk_ui_interface::processedit::getProcessTemplateByID;
using sdk_ui_interface::processedit::getSequence;

/// The template that a call runs in; null for the applet itself.
using Surroundings = std::shared_ptr<const processTemplateInfo>;

const SequenceInfo* sequenceIn(const processTemplateInfo& info, const std::string& id)
{
    if (info.mainSequence.id == id)
        return &info.mainSequence;
    for (const SequenceInfo& sequence : info.subSequences) {
        if (sequence.id == id)
            return &sequence;
    }
    return nullptr;
}

/// A sequence of a template with its name and rows; one that isn't in it has neither.
void fill(RunTarget& target, const Surroundings& owner)
{
    target.owner = owner;
    const SequenceInfo* sequence = sequenceIn(*owner, target.sequenceId.toStdString());
    if (!sequence)
        return;
    target.title = QString::fromStdString(owner->name + '/' + sequence->name);
    target.flows = flow_loader::templateFlows(*owner, *sequence);
}

void fill(RunTarget& target, const QString& appName, const SequenceInfo& sequence)
{
    target.title = QString::fromStdString(sequence.name);
    target.flows = flow_loader::sequenceFlows(appName, sequence);
}

/// A template lies in the one that calls it, in the project, or in the call itself.
Surroundings calledTemplate(const SequenceProcessBlock& call, const Surroundings& from)
{
    if (from) {
        const auto found = from->subTemplates.find(call.templateId);
        if (found != from->subTemplates.end())
            return std::make_shared<processTemplateInfo>(found->second);
    }
    processTemplateInfo info = getProcessTemplateByID(QString::fromStdString(call.templateId));
    if (info.id.empty() && !call.templateJson.empty())
        info = process_json_edit::readOneTemplateJsonStr(call.templateJson);
    return info.id.empty() ? nullptr : std::make_shared<processTemplateInfo>(std::move(info));
}

class Planner
{
public:
    explicit Planner(const QString& appName) : m_appName(appName) {}

    RunPlan plan(const QString& sequenceId)
    {
        enter(nullptr, sequenceId);
        while (!m_pending.empty()) {
            const Step step = std::move(m_pending.back());
            m_pending.pop_back();
            if (step.block->enableState == 0)
                continue;
            m_plan.blockUuids.append(QString::fromStdString(step.block->uuid));
            push(step.block->children, step.from);
            if (step.block->stepType() == step_type::Sequence)
                follow(*step.block, step.from);
        }
        return std::move(m_plan);
    }

private:
    struct Step
    {
        std::shared_ptr<IProcessBlock> block;
        Surroundings from;
    };

    void push(const flow_loader::Blocks& blocks, const Surroundings& from)
    {
        for (auto block = blocks.rbegin(); block != blocks.rend(); ++block)
            m_pending.push_back({*block, from});
    }

    void follow(const IProcessBlock& block, const Surroundings& from)
    {
        const auto* call = dynamic_cast<const SequenceProcessBlock*>(&block);
        if (!call)
            return;
        if (call->sourceKind == SequenceProcessBlock::AppletSequence) {
            enter(from, QString::fromStdString(call->sequenceId));
        } else if (call->sourceKind == SequenceProcessBlock::TemplateSequence) {
            const Surroundings called = calledTemplate(*call, from);
            if (called)
                enter(called, QString::fromStdString(called->mainSequence.id));
        }
    }

    void enter(const Surroundings& from, const QString& sequenceId)
    {
        RunTarget target;
        target.templateId = from ? QString::fromStdString(from->id) : QString();
        target.sequenceId = sequenceId;
        const QPair<QString, QString> key(target.templateId, sequenceId);
        if (m_reached.contains(key))
            return;
        m_reached.insert(key);
        if (from)
            fill(target, from);
        else
            fill(target, m_appName, getSequence(m_appName, sequenceId));
        for (auto flow = target.flows.rbegin(); flow != target.flows.rend(); ++flow)
            push(*flow, from);
        m_plan.targets.push_back(std::move(target));
    }

    QString m_appName;
    RunPlan m_plan;
    QSet<QPair<QString, QString>> m_reached;
    std::vector<Step> m_pending;
};

} // namespace

RunPlan run_plan::planRun(const QString& appName, const QString& sequenceId)
{
    return Planner(appName).plan(sequenceId);
}

bool run_plan::findTarget(const QString& appName, const QString& templateId,
                          const QString& sequenceId, RunTarget& target)
{
    target.templateId = templateId;
    target.sequenceId = sequenceId;
    if (templateId.isEmpty()) {
        const SequenceInfo sequence = getSequence(appName, sequenceId);
        if (sequence.id.empty())
            return false;
        fill(target, appName, sequence);
        return true;
    }
    const auto info = std::make_shared<processTemplateInfo>(getProcessTemplateByID(templateId));
    if (info->id.empty() || !sequenceIn(*info, sequenceId.toStdString()))
        return false;
    fill(target, info);
    return true;
}
