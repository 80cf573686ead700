#include "model/services/document_state.h"

#include "model/services/processedit.h"
#include "standalone/model_service/identifiers.h"
#include "standalone/model_service/stores/AppletStore.h"
#include "standalone/model_service/stores/QuickStepStore.h"
#include "standalone/model_service/stores/TemplateStore.h"
#include "standalone/model_service/stores/VariableStore.h"
#include "standalone/model_service/stores/compile_marks.h"

#include <optional>

using namespace standalone;

namespace document_state {

struct StepState
{
    AppletModel::BlockPtr block; ///< without children unless @c depth is Whole
    std::string sequenceId;
    std::string parentUuid;
    int index = 0;
    Depth depth = Depth::Whole;
};

struct EnabledState
{
    std::string uuid;
    int state = 0;
};

struct SequenceState
{
    SequenceContent content;
    std::size_t index = 0;
};

struct State
{
    // One of them.
    std::optional<EnabledState> enabled;
    std::optional<SequenceInfo> head;
    std::optional<StepState> step;
    std::optional<SequenceState> sequence;
    std::optional<VariableStore::Standing> variable;
    std::optional<QuickStepStore::Standing> quickStep;
    std::optional<TemplateStore::Standing> processTemplate;
};

namespace {

SequenceContent copyOf(const SequenceContent& sequence)
{
    SequenceContent copy = sequence;
    for (auto& flow : copy.flows) {
        for (auto& block : flow)
            block = block->clone();
    }
    return copy;
}

bool restoreEnabled(AppletModel& applet, const EnabledState& enabled)
{
    const auto block = applet.block(enabled.uuid);
    if (!block)
        return false;
    block->enableState = enabled.state;
    return true;
}

bool restoreStep(AppletModel& applet, const StepState& step)
{
    if (!applet.place(step.block->uuid))
        return step.depth == Depth::Whole &&
               applet.insert(step.block->clone(), step.sequenceId, step.parentUuid, step.index);
    return applet.move(step.block->uuid, step.parentUuid, step.index) &&
           applet.replace(step.block->copyAlone());
}

} // namespace

StatePtr ofStep(const QString& appName, const QString& blockUuid, Depth depth)
{
    const auto* applet = appletStore().find(appName);
    const auto* place = applet ? applet->place(toUtf8(blockUuid)) : nullptr;
    if (!place)
        return nullptr;
    auto state = std::make_shared<State>();
    if (depth == Depth::EnableState) {
        state->enabled = EnabledState{place->uuid(), place->block->enableState};
        return state;
    }
    StepState& step = state->step.emplace();
    step.block = depth == Depth::Whole ? place->block->clone() : place->block->copyAlone();
    if (depth == Depth::Alone)
        step.block->children.clear();
    step.sequenceId = place->sequence->head.id;
    step.parentUuid = place->parent ? place->parent->uuid : std::to_string(place->flow);
    step.index = applet->indexOf(*place);
    step.depth = depth;
    return state;
}

StatePtr ofSequence(const QString& appName, const QString& sequenceId, Depth depth)
{
    const auto* applet = appletStore().find(appName);
    const std::string id = toUtf8(sequenceId);
    if (depth != Depth::Whole) {
        const auto* sequence = applet ? applet->sequence(id) : nullptr;
        auto state = std::make_shared<State>();
        if (sequence)
            state->head = sequence->head;
        return sequence ? state : nullptr;
    }
    for (std::size_t i = 0; applet && i < applet->sequences().size(); ++i) {
        const SequenceContent& sequence = *applet->sequences()[i];
        if (sequence.head.id != id)
            continue;
        auto state = std::make_shared<State>();
        state->sequence = SequenceState{copyOf(sequence), i};
        return state;
    }
    return nullptr;
}

StatePtr ofVariable(const std::string& uuid)
{
    auto state = std::make_shared<State>();
    state->variable = variableStore().standing(uuid);
    return state->variable ? state : nullptr;
}

StatePtr ofQuickStep(const QString& id)
{
    auto state = std::make_shared<State>();
    state->quickStep = quickStepStore().standing(toUtf8(id));
    return state->quickStep ? state : nullptr;
}

StatePtr ofTemplate(const QString& id)
{
    auto state = std::make_shared<State>();
    state->processTemplate = templateStore().standing(toUtf8(id));
    return state->processTemplate ? state : nullptr;
}

bool restore(const QString& appName, const State& state)
{
    if (state.quickStep || state.processTemplate) {
        if (state.quickStep)
            quickStepStore().restore(*state.quickStep);
        else
            templateStore().restore(*state.processTemplate);
        return true;
    }
    if (state.variable) {
        const bool isRestored = variableStore().restore(toLocalName(appName), *state.variable);
        if (state.variable->scope == GlobalVariable)
            markAllChanged();
        markChanged(toLocalName(appName));
        return isRestored;
    }
    auto* applet = appletStore().find(appName);
    if (!applet)
        return false;
    markChanged(toLocalName(appName));
    if (state.enabled)
        return restoreEnabled(*applet, *state.enabled);
    if (state.head) {
        sdk_ui_interface::processedit::updateSequence(appName, *state.head);
        return applet->sequence(state.head->id) != nullptr;
    }
    if (state.step)
        return restoreStep(*applet, *state.step);
    return applet->insertSequence(copyOf(state.sequence->content), state.sequence->index);
}

} // namespace document_state
