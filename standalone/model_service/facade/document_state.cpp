#include "model/services/document_state.h"

#include "model/services/processedit.h"
#include "standalone/model_service/identifiers.h"
#include "standalone/model_service/stores/AppletStore.h"
#include "standalone/model_service/stores/QuickStepStore.h"
#include "standalone/model_service/stores/TemplateStore.h"
#include "standalone/model_service/stores/VariableStore.h"
#include "standalone/model_service/stores/compile_marks.h"

#include <algorithm>
#include <optional>
#include <utility>

using namespace standalone;

namespace document_state {

/// Each kind holds what its part needs: a click may keep the states of ten thousand steps.
struct State
{
    virtual ~State() = default;
    virtual bool restore(const QString& appName) const = 0;
};

namespace {

struct EnabledState : State
{
    EnabledState(std::string blockUuid, int state) : uuid(std::move(blockUuid)), value(state) {}
    bool restore(const QString& appName) const override
    {
        const auto* applet = appletStore().find(appName);
        const auto block = applet ? applet->block(uuid) : nullptr;
        if (!block)
            return false;
        markChanged(toLocalName(appName));
        block->enableState = value;
        return true;
    }

    const std::string uuid;
    const int value;
};

struct StepState : State
{
    bool restore(const QString& appName) const override
    {
        auto* applet = appletStore().find(appName);
        if (!applet)
            return false;
        markChanged(toLocalName(appName));
        if (!applet->place(block->uuid))
            return isWhole && applet->insert(block->clone(), sequenceId, parentUuid, index);
        return applet->move(block->uuid, parentUuid, index) && applet->replace(block->copyAlone());
    }

    AppletModel::BlockPtr block;
    bool isWhole = true; ///< the block has its children
    std::string sequenceId;
    std::string parentUuid;
    int index = 0;
};

struct HeadState : State
{
    explicit HeadState(const SequenceInfo& sequence) : head(sequence) {}
    bool restore(const QString& appName) const override
    {
        const auto* applet = appletStore().find(appName);
        if (!applet || !applet->sequence(head.id))
            return false;
        sdk_ui_interface::processedit::updateSequence(appName, head);
        return true;
    }

    const SequenceInfo head;
};

SequenceContent copyOf(const SequenceContent& sequence)
{
    SequenceContent copy = sequence;
    for (auto& flow : copy.flows) {
        for (auto& block : flow)
            block = block->clone();
    }
    return copy;
}

struct SequenceState : State
{
    SequenceState(const SequenceContent& sequence, std::size_t place)
        : content(copyOf(sequence)), index(place)
    {
    }
    bool restore(const QString& appName) const override
    {
        auto* applet = appletStore().find(appName);
        if (!applet)
            return false;
        markChanged(toLocalName(appName));
        return applet->insertSequence(copyOf(content), index);
    }

    const SequenceContent content;
    const std::size_t index;
};

struct VariableState : State
{
    explicit VariableState(VariableStore::Standing variable) : standing(std::move(variable)) {}
    bool restore(const QString& appName) const override
    {
        if (standing.scope == GlobalVariable)
            markAllChanged();
        markChanged(toLocalName(appName));
        return variableStore().restore(toLocalName(appName), standing);
    }

    const VariableStore::Standing standing;
};

/// A quick step or a template.
template <class Store, Store& (*store)()> struct LibraryState : State
{
    explicit LibraryState(typename Store::Standing entry) : standing(std::move(entry)) {}
    bool restore(const QString&) const override
    {
        store().restore(standing);
        return true;
    }

    const typename Store::Standing standing;
};

template <class Kind, class Standing> StatePtr stateOf(std::optional<Standing> standing)
{
    return standing ? std::make_shared<Kind>(std::move(*standing)) : nullptr;
}

} // namespace

StatePtr ofStep(const QString& appName, const QString& blockUuid, Depth depth)
{
    const auto* applet = appletStore().find(appName);
    const auto* place = applet ? applet->place(toUtf8(blockUuid)) : nullptr;
    if (!place)
        return nullptr;
    if (depth == Depth::EnableState)
        return std::make_shared<EnabledState>(place->uuid(), place->block->enableState);
    auto step = std::make_shared<StepState>();
    step->isWhole = depth == Depth::Whole;
    step->block = step->isWhole ? place->block->clone() : place->block->copyAlone();
    if (!step->isWhole)
        step->block->children.clear();
    step->sequenceId = place->sequence->head.id;
    step->parentUuid = place->parent ? place->parent->uuid : std::to_string(place->flow);
    step->index = applet->indexOf(*place);
    return step;
}

StatePtr ofSequence(const QString& appName, const QString& sequenceId, Depth depth)
{
    const auto* applet = appletStore().find(appName);
    const auto* sequence = applet ? applet->sequence(toUtf8(sequenceId)) : nullptr;
    if (!sequence)
        return nullptr;
    if (depth != Depth::Whole)
        return std::make_shared<HeadState>(sequence->head);
    const auto& all = applet->sequences();
    const auto found = std::find_if(all.begin(), all.end(),
                                    [&](const auto& each) { return each.get() == sequence; });
    return std::make_shared<SequenceState>(*sequence, std::size_t(found - all.begin()));
}

StatePtr ofVariable(const std::string& uuid)
{
    return stateOf<VariableState>(variableStore().standing(uuid));
}

StatePtr ofQuickStep(const QString& id)
{
    return stateOf<LibraryState<QuickStepStore, quickStepStore>>(
        quickStepStore().standing(toUtf8(id)));
}

StatePtr ofTemplate(const QString& id)
{
    return stateOf<LibraryState<TemplateStore, templateStore>>(
        templateStore().standing(toUtf8(id)));
}

bool restore(const QString& appName, const State& state)
{
    return state.restore(appName);
}

} // namespace document_state
