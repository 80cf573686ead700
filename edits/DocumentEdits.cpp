#include "edits/DocumentEdits.h"

#include "model/IProcessBlock.h"
#include "model/services/process_edit.h"
#include "model/services/processedit.h"

#include <algorithm>
#include <utility>

using document_state::Depth;
using document_state::StatePtr;
using Part = DocumentChange::Part;
namespace processedit = sdk_ui_interface::processedit;

namespace {

QString text(const std::string& utf8)
{
    return QString::fromStdString(utf8);
}

QString nameOf(const std::string& localName)
{
    return QString::fromLocal8Bit(localName.c_str());
}

} // namespace

DocumentEdits& DocumentEdits::instance()
{
    static DocumentEdits edits;
    return edits;
}

DocumentEdits::Act::Act()
{
    ++instance().m_depth;
}

DocumentEdits::Act::~Act()
{
    DocumentEdits& edits = instance();
    if (--edits.m_depth > 0 || edits.m_act.items.empty())
        return;
    // Who hears of it may change something in turn.
    const DocumentChange change = std::exchange(edits.m_act, DocumentChange());
    emit edits.changed(change);
}

void DocumentEdits::add(const QString& appName, DocumentChange::Item item)
{
    if (!item.before && !item.after)
        return;
    m_act.appName = appName;
    m_act.items.push_back(std::move(item));
}

// Steps

QString DocumentEdits::createProcess(const QString& appName, const QString& sequenceId,
                                     const QString& parentUuid, logicBlockType baseType,
                                     int subType, int index)
{
    const Act act;
    const QString uuid =
        processedit::createProcess(appName, sequenceId, parentUuid, baseType, subType, index);
    add(appName, {Part::Step, sequenceId, uuid, nullptr,
                  document_state::ofStep(appName, uuid, Depth::Whole)});
    return uuid;
}

QString DocumentEdits::createProcessInfoByQuickStep(const QString& appName,
                                                    const QString& sequenceId,
                                                    const QString& parentUuid,
                                                    const QString& quickStepId, int index)
{
    const Act act;
    const QString uuid = processedit::createProcessInfoByQuickStep(appName, sequenceId, parentUuid,
                                                                   quickStepId, index);
    add(appName, {Part::Step, sequenceId, uuid, nullptr,
                  document_state::ofStep(appName, uuid, Depth::Whole)});
    return uuid;
}

void DocumentEdits::updateProcess(const QString& appName, const QString& sequenceId,
                                  const std::shared_ptr<IProcessBlock>& block,
                                  const std::function<void()>& write)
{
    const Act act;
    const QString uuid = text(block->uuid);
    StatePtr before = document_state::ofStep(appName, uuid, Depth::Alone);
    write();
    processedit::updateProcess(appName, sequenceId, block);
    add(appName, {Part::Step, sequenceId, uuid, std::move(before),
                  document_state::ofStep(appName, uuid, Depth::Alone)});
}

void DocumentEdits::setEnableState(const QString& appName, const QString& sequenceId,
                                   const std::shared_ptr<IProcessBlock>& block, int state)
{
    const Act act;
    const QString uuid = text(block->uuid);
    StatePtr before = document_state::ofStep(appName, uuid, Depth::EnableState);
    block->enableState = state;
    processedit::updateProcess(appName, sequenceId, block);
    add(appName, {Part::Step, sequenceId, uuid, std::move(before),
                  document_state::ofStep(appName, uuid, Depth::EnableState)});
}

void DocumentEdits::updateProcessInfoIndex(const QString& appName, const QString& sequenceId,
                                           const QString& blockUuid, const QString& parentUuid,
                                           int index)
{
    const Act act;
    StatePtr before = document_state::ofStep(appName, blockUuid, Depth::Alone);
    process_edit::updateProcessInfoIndex(appName.toLocal8Bit().toStdString(),
                                         sequenceId.toStdString(), blockUuid.toStdString(),
                                         parentUuid.toStdString(), index);
    add(appName, {Part::Step, sequenceId, blockUuid, std::move(before),
                  document_state::ofStep(appName, blockUuid, Depth::Alone)});
}

void DocumentEdits::removeProcess(const QString& appName, const QString& sequenceId,
                                  const QString& blockUuid)
{
    const Act act;
    StatePtr before = document_state::ofStep(appName, blockUuid, Depth::Whole);
    processedit::removeProcess(appName, sequenceId, blockUuid);
    add(appName, {Part::Step, sequenceId, blockUuid, std::move(before), nullptr});
}

void DocumentEdits::removeAllProcessBySequenceID(const QString& appName, const QString& sequenceId,
                                                 logicBlockType flow)
{
    const Act act;
    const SequenceInfo sequence = processedit::getSequence(appName, sequenceId);
    const std::vector<std::string>* const flows[] = {&sequence.initialFlow, &sequence.mainFlow,
                                                     &sequence.endFlow};
    for (int each = InitialFlow; each <= EndFlow; ++each) {
        if (flow != NoBlock && flow != each)
            continue;
        // As if the last one went first: undone, each finds its place.
        const std::vector<std::string>& uuids = *flows[each];
        for (auto uuid = uuids.rbegin(); uuid != uuids.rend(); ++uuid)
            add(appName, {Part::Step, sequenceId, text(*uuid),
                          document_state::ofStep(appName, text(*uuid), Depth::Whole), nullptr});
    }
    processedit::removeAllProcessBySequenceID(appName, sequenceId, flow);
}

// Sequences

QString DocumentEdits::createSeuqence(const QString& appName, const QString& name)
{
    const Act act;
    const QString id = processedit::createSeuqence(appName, name);
    add(appName, {Part::Sequence, id, QString(), nullptr,
                  document_state::ofSequence(appName, id, Depth::Whole)});
    return id;
}

void DocumentEdits::updateSequence(const QString& appName, const SequenceInfo& info)
{
    const Act act;
    const QString id = text(info.id);
    StatePtr before = document_state::ofSequence(appName, id, Depth::Alone);
    processedit::updateSequence(appName, info);
    add(appName, {Part::Sequence, id, QString(), std::move(before),
                  document_state::ofSequence(appName, id, Depth::Alone)});
}

void DocumentEdits::removeSequence(const QString& appName, const QString& sequenceId)
{
    const Act act;
    StatePtr before = document_state::ofSequence(appName, sequenceId, Depth::Whole);
    processedit::removeSequence(appName, sequenceId);
    add(appName, {Part::Sequence, sequenceId, QString(), std::move(before), nullptr});
}

void DocumentEdits::removeAllSequenceByAppName(const QString& appName)
{
    const Act act;
    const auto sequences = processedit::getAllSequenceByAppName(appName);
    for (auto sequence = sequences.rbegin(); sequence != sequences.rend(); ++sequence)
        add(appName,
            {Part::Sequence, text(sequence->id), QString(),
             document_state::ofSequence(appName, text(sequence->id), Depth::Whole), nullptr});
    processedit::removeAllSequenceByAppName(appName);
}

// Variables

std::string DocumentEdits::addVariable(const std::string& appName, processVariableType scope,
                                       const std::string& ownerId)
{
    const Act act;
    const std::string uuid = process_edit::addVariable(appName, scope, ownerId);
    add(nameOf(appName),
        {Part::Variable, QString(), text(uuid), nullptr, document_state::ofVariable(uuid)});
    return uuid;
}

void DocumentEdits::updateVariable(const std::string& appName, const processVariable& variable,
                                   int scope)
{
    const Act act;
    StatePtr before = document_state::ofVariable(variable.uuid);
    process_edit::updateVariable(appName, variable, scope);
    add(nameOf(appName), {Part::Variable, QString(), text(variable.uuid), std::move(before),
                          document_state::ofVariable(variable.uuid)});
}

void DocumentEdits::pasteVariable(const std::string& appName, processVariable& variable, int scope)
{
    const Act act;
    process_edit::pasteVariable(appName, variable, scope);
    add(nameOf(appName), {Part::Variable, QString(), text(variable.uuid), nullptr,
                          document_state::ofVariable(variable.uuid)});
}

void DocumentEdits::removeVariables(const std::string& appName,
                                    const std::vector<std::string>& uuids)
{
    const Act act;
    for (const std::string& uuid : uuids) {
        StatePtr before = document_state::ofVariable(uuid);
        process_edit::removeVariables(appName, {uuid});
        StatePtr after = document_state::ofVariable(uuid); // a default one stays
        add(nameOf(appName),
            {Part::Variable, QString(), text(uuid), std::move(before), std::move(after)});
    }
}

void DocumentEdits::removeAllVarBySequenceId(const std::string& appName,
                                             const std::string& sequenceId)
{
    const Act act;
    const auto variables = process_edit::getAllSequenceVariable(appName, sequenceId);
    for (auto variable = variables.rbegin(); variable != variables.rend(); ++variable)
        add(nameOf(appName), {Part::Variable, QString(), text(variable->uuid),
                              document_state::ofVariable(variable->uuid), nullptr});
    process_edit::removeAllVarBySequenceId(appName, sequenceId);
}

// Changes

bool DocumentEdits::undo(const DocumentChange& change)
{
    const Act act;
    bool isWhole = true;
    m_act.appName = change.appName;
    std::for_each(
        change.items.rbegin(), change.items.rend(), [&](const DocumentChange::Item& item) {
            isWhole = put(item, item.before) && isWhole;
            m_act.items.push_back({item.part, item.sequenceId, item.id, item.after, item.before});
        });
    return isWhole;
}

bool DocumentEdits::redo(const DocumentChange& change)
{
    const Act act;
    bool isWhole = true;
    m_act.appName = change.appName;
    for (const DocumentChange::Item& item : change.items) {
        isWhole = put(item, item.after) && isWhole;
        m_act.items.push_back(item);
    }
    return isWhole;
}

bool DocumentEdits::put(const DocumentChange::Item& item, const StatePtr& state)
{
    if (state)
        return document_state::restore(m_act.appName, *state);
    if (item.part == Part::Step)
        processedit::removeProcess(m_act.appName, item.sequenceId, item.id);
    else if (item.part == Part::Sequence)
        processedit::removeSequence(m_act.appName, item.sequenceId);
    else
        process_edit::removeVariables(m_act.appName.toLocal8Bit().toStdString(),
                                      {item.id.toStdString()});
    return true;
}

#include "moc_DocumentEdits.cpp"
