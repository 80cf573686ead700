#include "edits/DocumentEdits.h"

#include "model/IProcessBlock.h"
#include "model/applet_name.h"
#include "model/services/process_edit.h"
#include "model/services/processedit.h"

#include <algorithm>
#include <utility>

using document_state::Depth;
using document_state::StatePtr;
using Kind = DocumentChange::Kind;
using Part = DocumentChange::Part;
namespace processedit = sdk_ui_interface::processedit;

namespace {

QString text(const std::string& utf8)
{
    return QString::fromStdString(utf8);
}

bool isOfProject(const DocumentChange::Item& item)
{
    return item.part == Part::QuickStep || item.part == Part::Template;
}

/// The other way round.
DocumentChange::Item inverse(const DocumentChange::Item& item)
{
    DocumentChange::Item inverse = item;
    std::swap(inverse.before, inverse.after);
    if (item.kind == Kind::Added || item.kind == Kind::Removed)
        inverse.kind = item.kind == Kind::Added ? Kind::Removed : Kind::Added;
    return inverse;
}

} // namespace

bool DocumentChange::isOfDocument() const
{
    return !std::all_of(items.begin(), items.end(), isOfProject);
}

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
    if (change.isOfDocument())
        emit edits.modified();
}

void DocumentEdits::add(const QString& appName, DocumentChange::Item item)
{
    if (!item.before && !item.after)
        return;
    if (!appName.isEmpty())
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
    add(appName, {Part::Step, Kind::Added, sequenceId, uuid, nullptr,
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
    add(appName, {Part::Step, Kind::Added, sequenceId, uuid, nullptr,
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
    add(appName, {Part::Step, Kind::Written, sequenceId, uuid, std::move(before),
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
    add(appName, {Part::Step, Kind::Enabled, sequenceId, uuid, std::move(before),
                  document_state::ofStep(appName, uuid, Depth::EnableState)});
}

void DocumentEdits::updateProcessInfoIndex(const QString& appName, const QString& sequenceId,
                                           const QString& blockUuid, const QString& parentUuid,
                                           int index)
{
    const Act act;
    StatePtr before = document_state::ofStep(appName, blockUuid, Depth::Alone);
    process_edit::updateProcessInfoIndex(appletNameBytes(appName), sequenceId.toStdString(),
                                         blockUuid.toStdString(), parentUuid.toStdString(), index);
    add(appName, {Part::Step, Kind::Moved, sequenceId, blockUuid, std::move(before),
                  document_state::ofStep(appName, blockUuid, Depth::Alone)});
}

void DocumentEdits::removeProcess(const QString& appName, const QString& sequenceId,
                                  const QString& blockUuid)
{
    const Act act;
    StatePtr before = document_state::ofStep(appName, blockUuid, Depth::Whole);
    processedit::removeProcess(appName, sequenceId, blockUuid);
    add(appName, {Part::Step, Kind::Removed, sequenceId, blockUuid, std::move(before), nullptr});
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
            add(appName, {Part::Step, Kind::Removed, sequenceId, text(*uuid),
                          document_state::ofStep(appName, text(*uuid), Depth::Whole), nullptr});
    }
    processedit::removeAllProcessBySequenceID(appName, sequenceId, flow);
}

// Sequences

QString DocumentEdits::createSeuqence(const QString& appName, const QString& name)
{
    const Act act;
    const QString id = processedit::createSeuqence(appName, name);
    add(appName, {Part::Sequence, Kind::Added, id, QString(), nullptr,
                  document_state::ofSequence(appName, id, Depth::Whole)});
    return id;
}

void DocumentEdits::updateSequence(const QString& appName, const SequenceInfo& info)
{
    const Act act;
    const QString id = text(info.id);
    StatePtr before = document_state::ofSequence(appName, id, Depth::Alone);
    processedit::updateSequence(appName, info);
    add(appName, {Part::Sequence, Kind::Written, id, QString(), std::move(before),
                  document_state::ofSequence(appName, id, Depth::Alone)});
}

void DocumentEdits::removeSequence(const QString& appName, const QString& sequenceId)
{
    const Act act;
    StatePtr before = document_state::ofSequence(appName, sequenceId, Depth::Whole);
    processedit::removeSequence(appName, sequenceId);
    add(appName,
        {Part::Sequence, Kind::Removed, sequenceId, QString(), std::move(before), nullptr});
}

void DocumentEdits::removeAllSequenceByAppName(const QString& appName)
{
    const Act act;
    const auto sequences = processedit::getAllSequenceByAppName(appName);
    for (auto sequence = sequences.rbegin(); sequence != sequences.rend(); ++sequence)
        add(appName,
            {Part::Sequence, Kind::Removed, text(sequence->id), QString(),
             document_state::ofSequence(appName, text(sequence->id), Depth::Whole), nullptr});
    processedit::removeAllSequenceByAppName(appName);
}

// Variables

std::string DocumentEdits::addVariable(const std::string& appName, processVariableType scope,
                                       const std::string& ownerId)
{
    const Act act;
    const std::string uuid = process_edit::addVariable(appName, scope, ownerId);
    add(appletNameText(appName), {Part::Variable, Kind::Added, QString(), text(uuid), nullptr,
                                  document_state::ofVariable(uuid)});
    return uuid;
}

void DocumentEdits::updateVariable(const std::string& appName, const processVariable& variable,
                                   int scope)
{
    const Act act;
    StatePtr before = document_state::ofVariable(variable.uuid);
    process_edit::updateVariable(appName, variable, scope);
    add(appletNameText(appName), {Part::Variable, Kind::Written, QString(), text(variable.uuid),
                                  std::move(before), document_state::ofVariable(variable.uuid)});
}

void DocumentEdits::pasteVariable(const std::string& appName, processVariable& variable, int scope)
{
    const Act act;
    process_edit::pasteVariable(appName, variable, scope);
    add(appletNameText(appName), {Part::Variable, Kind::Added, QString(), text(variable.uuid),
                                  nullptr, document_state::ofVariable(variable.uuid)});
}

void DocumentEdits::removeVariables(const std::string& appName,
                                    const std::vector<std::string>& uuids)
{
    const Act act;
    for (const std::string& uuid : uuids) {
        StatePtr before = document_state::ofVariable(uuid);
        process_edit::removeVariables(appName, {uuid});
        StatePtr after = document_state::ofVariable(uuid); // a default one stays
        add(appletNameText(appName), {Part::Variable, Kind::Removed, QString(), text(uuid),
                                      std::move(before), std::move(after)});
    }
}

void DocumentEdits::removeAllVarBySequenceId(const std::string& appName,
                                             const std::string& sequenceId)
{
    const Act act;
    const auto variables = process_edit::getAllSequenceVariable(appName, sequenceId);
    for (auto variable = variables.rbegin(); variable != variables.rend(); ++variable)
        add(appletNameText(appName),
            {Part::Variable, Kind::Removed, QString(), text(variable->uuid),
             document_state::ofVariable(variable->uuid), nullptr});
    process_edit::removeAllVarBySequenceId(appName, sequenceId);
}

// What the project keeps

QString DocumentEdits::addQuickStepInfo(const QString& appName, const QString& blockUuid)
{
    const Act act;
    const QString id = processedit::addQuickStepInfo(appName, blockUuid);
    add(appName,
        {Part::QuickStep, Kind::Added, QString(), id, nullptr, document_state::ofQuickStep(id)});
    return id;
}

void DocumentEdits::removeQuickStepInfo(const QString& id)
{
    const Act act;
    StatePtr before = document_state::ofQuickStep(id);
    processedit::removeQuickStepInfo(id);
    add(QString(), {Part::QuickStep, Kind::Removed, QString(), id, std::move(before), nullptr});
}

std::pair<QString, QString> DocumentEdits::addProcessTemplate(const QString& appName,
                                                              const QString& sequenceId)
{
    const Act act;
    const auto idAndName = processedit::addProcessTemplate(appName, sequenceId);
    add(appName, {Part::Template, Kind::Added, QString(), idAndName.first, nullptr,
                  document_state::ofTemplate(idAndName.first)});
    return idAndName;
}

void DocumentEdits::removeProcessTemplate(const QString& id)
{
    const Act act;
    StatePtr before = document_state::ofTemplate(id);
    processedit::removeProcessTemplate(id);
    add(QString(), {Part::Template, Kind::Removed, QString(), id, std::move(before), nullptr});
}

void DocumentEdits::renameProcessTemplate(const QString& id, const QString& name)
{
    const Act act;
    StatePtr before = document_state::ofTemplate(id);
    processedit::renameProcessTemplate(id, name);
    add(QString(), {Part::Template, Kind::Written, QString(), id, std::move(before),
                    document_state::ofTemplate(id)});
}

// Changes

bool DocumentEdits::undo(const DocumentChange& change)
{
    const Act act;
    bool isWhole = true;
    for (auto item = change.items.rbegin(); item != change.items.rend(); ++item)
        isWhole = put(change.appName, inverse(*item)) && isWhole;
    return isWhole;
}

bool DocumentEdits::redo(const DocumentChange& change)
{
    const Act act;
    bool isWhole = true;
    for (const DocumentChange::Item& item : change.items)
        isWhole = put(change.appName, item) && isWhole;
    return isWhole;
}

bool DocumentEdits::put(const QString& appName, const DocumentChange::Item& item)
{
    add(appName, item);
    if (item.after)
        return document_state::restore(appName, *item.after);
    switch (item.part) {
    case Part::Step:
        processedit::removeProcess(appName, item.sequenceId, item.id);
        break;
    case Part::Sequence:
        processedit::removeSequence(appName, item.sequenceId);
        break;
    case Part::Variable:
        process_edit::removeVariables(appletNameBytes(appName), {item.id.toStdString()});
        break;
    case Part::QuickStep:
        processedit::removeQuickStepInfo(item.id);
        break;
    case Part::Template:
        processedit::removeProcessTemplate(item.id);
        break;
    }
    return true;
}

#include "moc_DocumentEdits.cpp"
