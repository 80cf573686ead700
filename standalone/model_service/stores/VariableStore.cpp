#include "standalone/model_service/stores/VariableStore.h"

#include "model/type_tables.h"
#include "standalone/model_service/identifiers.h"
#include "standalone/model_service/json/FieldReader.h"
#include "standalone/model_service/json/FieldWriter.h"
#include "standalone/model_service/json/json_text.h"

#include <unordered_set>

namespace standalone {

namespace {

/// The most that the length of a type may be: a new variable is not cut short.
int lengthOf(const std::string& typeKeyword)
{
    constexpr int mostBytes = 256;
    constexpr int mostElements = 64;
    const int type = varTypeFromKeyword(typeKeyword);
    if (type == DrelString || type == DrelCharPtr)
        return mostBytes;
    const bool isArray = (type >= DrelU8Ptr && type <= DrelDoublePtr) || type == DrelBoolPtr;
    return isArray ? mostElements : 1;
}

} // namespace

VariableStore& variableStore()
{
    static VariableStore store;
    return store;
}

VariableStore::VariableStore() : m_defaults(GlobalVariable, {}), m_globals(GlobalVariable, {}) {}

const processVariable* VariableStore::find(const std::string& uuid) const
{
    const auto found = m_homes.find(uuid);
    return found == m_homes.end() ? nullptr : &found->second.entry->variable;
}

std::optional<VariableStore::Standing> VariableStore::standing(const std::string& uuid) const
{
    const auto found = m_homes.find(uuid);
    if (found == m_homes.end())
        return std::nullopt;
    const Home& home = found->second;
    return Standing{*home.entry, home.list->scope(), home.list->uuidBefore(home.entry),
                    home.isDefault};
}

bool VariableStore::restore(const std::string& appName, const Standing& standing)
{
    const processVariable& variable = standing.stored.variable;
    VariableList* list =
        standing.isDefault ? &m_defaults : listFor(appName, standing.scope, variable.ownerId);
    if (!list)
        return false;
    const auto home = m_homes.find(variable.uuid);
    if (home != m_homes.end())
        home->second.list->remove(home->second.entry);
    const auto before = m_homes.find(standing.behind);
    VariableList::Position entry;
    if (standing.behind.empty())
        entry = list->insertFirst(standing.stored);
    else if (before != m_homes.end() && before->second.list == list)
        entry = list->insertBehind(before->second.entry, standing.stored);
    else
        entry = list->append(standing.stored);
    m_homes[variable.uuid] = {entry, list, standing.isDefault};
    return true;
}

std::vector<processVariable> VariableStore::globals() const
{
    auto records = m_defaults.records();
    const auto own = m_globals.records();
    records.insert(records.end(), own.begin(), own.end());
    return records;
}

std::vector<processVariable> VariableStore::ofApplet(const std::string& appName) const
{
    const auto applet = m_applets.find(appName);
    return applet == m_applets.end() ? std::vector<processVariable>()
                                     : applet->second.process.records();
}

std::vector<processVariable> VariableStore::ofSequence(const std::string& appName,
                                                       const std::string& sequenceId) const
{
    const auto applet = m_applets.find(appName);
    if (applet == m_applets.end())
        return {};
    const auto list = applet->second.sequences.find(sequenceId);
    return list == applet->second.sequences.end() ? std::vector<processVariable>()
                                                  : list->second.records();
}

std::string VariableStore::add(const std::string& appName, processVariableType scope,
                               const std::string& ownerId)
{
    auto* list = listFor(appName, scope, ownerId);
    if (!list)
        return {};
    StoredVariable stored;
    stored.variable.uuid = newUuid();
    stored.variable.type = varTypeKeyword(DrelS32);
    stored.variable.value = "0";
    stored.variable.isEditable = true;
    auto number = list->entries().size();
    do {
        stored.variable.name = "var_" + std::to_string(number++);
    } while (isNameInSight(appName, *list, stored.variable.name));
    enter(*list, stored);
    return stored.variable.uuid;
}

void VariableStore::paste(const std::string& appName, processVariable& variable,
                          processVariableType scope)
{
    auto* list = listFor(appName, scope, variable.ownerId);
    if (!list)
        return;
    variable.uuid = newUuid();
    variable.ownerId = list->ownerId();
    variable.scope = scope;
    variable.isLocked = false;
    variable.isEditable = true;
    variable.name = toUtf8(freeName(toText(variable.name), [&](const QString& name) {
        return isNameInSight(appName, *list, toUtf8(name));
    }));
    enter(*list, {variable, {}});
}

void VariableStore::update(const std::string& appName, const processVariable& variable)
{
    const auto found = m_homes.find(variable.uuid);
    if (found == m_homes.end())
        return;
    auto& home = found->second;
    auto& stored = home.entry->variable;
    if (stored.isLocked) {
        if (stored.isEditable) {
            stored.value = variable.value;
            stored.length = variable.length;
        }
        return;
    }
    const processVariable former = stored;
    auto* target = home.list;
    if (variable.scope != former.scope || variable.ownerId != former.ownerId)
        target = listFor(appName, variable.scope, variable.ownerId);
    if (!target)
        return;
    stored = variable;
    stored.ownerId = target->ownerId();
    if (stored.type != former.type && stored.length == former.length)
        stored.length = lengthOf(stored.type);
    home.list->renamed(former.name, stored.name);
    if (target != home.list) {
        target->takeOver(*home.list, home.entry);
        home.list = target;
    }
}

void VariableStore::remove(const std::vector<std::string>& uuids)
{
    for (const auto& uuid : uuids) {
        const auto home = m_homes.find(uuid);
        if (home == m_homes.end() || home->second.isDefault)
            continue;
        home->second.list->remove(home->second.entry);
        m_homes.erase(home);
    }
}

void VariableStore::removeApplet(const std::string& appName)
{
    const auto applet = m_applets.find(appName);
    if (applet == m_applets.end())
        return;
    clear(applet->second.process);
    for (auto& sequence : applet->second.sequences)
        clear(sequence.second);
    m_applets.erase(applet);
}

void VariableStore::removeSequence(const std::string& appName, const std::string& sequenceId)
{
    const auto applet = m_applets.find(appName);
    if (applet == m_applets.end())
        return;
    const auto list = applet->second.sequences.find(sequenceId);
    if (list == applet->second.sequences.end())
        return;
    clear(list->second);
    applet->second.sequences.erase(list);
}

void VariableStore::renameApplet(const std::string& oldName, const std::string& newName)
{
    if (m_applets.count(newName))
        return;
    auto node = m_applets.extract(oldName); // the lists keep their addresses
    if (node.empty())
        return;
    node.key() = newName;
    node.mapped().process.setOwner(newName);
    m_applets.insert(std::move(node));
}

VariableStore::AppletVariables& VariableStore::appletFor(const std::string& appName)
{
    return m_applets.try_emplace(appName, appName).first->second;
}

VariableList* VariableStore::listFor(const std::string& appName, processVariableType scope,
                                     const std::string& ownerId)
{
    if (scope == GlobalVariable)
        return &m_globals;
    if (appName.empty())
        return nullptr;
    if (scope == ProcessVariable)
        return &appletFor(appName).process;
    if (scope != SequenceVariable || ownerId.empty())
        return nullptr;
    auto& sequences = appletFor(appName).sequences;
    return &sequences.try_emplace(ownerId, SequenceVariable, ownerId).first->second;
}

void VariableStore::enter(VariableList& list, StoredVariable stored, bool isDefault)
{
    stored.variable.ownerId = list.ownerId();
    if (stored.variable.scope != FixedVariable)
        stored.variable.scope = list.scope();
    const std::string uuid = stored.variable.uuid;
    m_homes[uuid] = {list.append(std::move(stored)), &list, isDefault};
}

void VariableStore::clear(VariableList& list)
{
    for (const auto& entry : list.entries())
        m_homes.erase(entry.variable.uuid);
    list = VariableList(list.scope(), list.ownerId());
}

void VariableStore::fill(VariableList& list, const JsonValue& array, LoadReport& report,
                         const DocumentPlace& where, bool areDefault)
{
    std::unordered_set<std::string> seen;
    for (auto& stored : readVariables(array, report, where, list.scope(), list.ownerId())) {
        auto& variable = stored.variable;
        const bool isFault = variable.uuid.empty() || !seen.insert(variable.uuid).second;
        // A uuid that another applet has is no fault: one may be a copy of the other.
        if (isFault || m_homes.count(variable.uuid))
            variable.uuid = newUuid();
        if (isFault)
            report.add(
                where,
                QStringLiteral("变量%1的uuid缺少或重复").arg(LoadReport::shown(variable.name)));
        if (variable.name.empty())
            report.add(where,
                       QStringLiteral("变量%1没有名称").arg(LoadReport::shown(variable.uuid)));
        variable.isLocked = variable.isLocked || areDefault;
        enter(list, std::move(stored), areDefault);
    }
}

bool VariableStore::isNameInSight(const std::string& appName, const VariableList& list,
                                  const std::string& name) const
{
    if (m_defaults.hasName(name) || m_globals.hasName(name))
        return true;
    for (const auto& [owner, applet] : m_applets) {
        if (&list != &m_globals && owner != appName)
            continue;
        if (applet.process.hasName(name))
            return true;
        if (list.scope() == SequenceVariable) {
            if (list.hasName(name))
                return true;
            continue;
        }
        for (const auto& sequence : applet.sequences) {
            if (sequence.second.hasName(name))
                return true;
        }
    }
    return false;
}

void VariableStore::loadDefaults(const std::string& json)
{
    LoadReport report(QStringLiteral("读取默认变量"));
    JsonTree document;
    if (!parseObject(QByteArray::fromStdString(json), report, document))
        return;
    clear(m_defaults);
    const DocumentPlace whole;
    FieldReader reader(document.root(), report, whole);
    fill(m_defaults, reader.takeArray("variables"), report, {"variables", whole}, true);
    m_hasDefaults = true;
}

bool VariableStore::loadGlobals(const std::string& json)
{
    LoadReport report(QStringLiteral("读取全局变量"));
    JsonTree document;
    if (!parseObject(QByteArray::fromStdString(json), report, document))
        return false;
    clear(m_globals);
    const DocumentPlace whole;
    FieldReader reader(document.root(), report, whole);
    fill(m_globals, reader.takeArray("variables"), report, {"variables", whole});
    m_globalsKept = reader.rest();
    m_hasGlobals = true;
    return true;
}

void VariableStore::forgetGlobals()
{
    clear(m_globals);
    m_globalsKept.clear();
    m_hasGlobals = false;
}

QByteArray VariableStore::globalsFileText() const
{
    FieldWriter document(m_globalsKept);
    document.insert("variables", [this](std::string& json) { m_globals.write(json); });
    std::string json;
    document.finish(json);
    return toFileText(json);
}

void VariableStore::loadApplet(const std::string& appName, const std::string& json)
{
    LoadReport report(QStringLiteral("读取变量%1").arg(toAppName(appName)));
    JsonTree document;
    if (!parseObject(QByteArray::fromStdString(json), report, document, BrokenText::ReadOn))
        return;
    if (document.fault() && document.root().first().isMissing())
        return;
    removeApplet(appName);
    if (document.root().first().isMissing())
        return;
    const DocumentPlace whole;
    FieldReader reader(document.root(), report, whole);
    auto& applet = appletFor(appName);
    fill(applet.process, reader.takeArray("process"), report, {"process", whole});
    const auto sequences = reader.takeObject("sequences");
    const DocumentPlace all("sequences", whole);
    FieldReader bySequence(sequences, report, all);
    bySequence.eachMember([&](std::string_view id, const JsonValue& list) {
        const DocumentPlace where(id, all);
        auto* variables =
            list.isArray() ? listFor(appName, SequenceVariable, std::string(id)) : nullptr;
        if (variables)
            fill(*variables, list, report, where);
        else
            report.add(where, QStringLiteral("成员类型错误"));
        return variables != nullptr;
    });
    const auto unread = bySequence.rest();
    if (!unread.empty())
        reader.keep("sequences", unread);
    applet.kept = reader.rest();
}

std::string VariableStore::appletText(const std::string& appName) const
{
    std::string json;
    const auto found = m_applets.find(appName);
    if (found == m_applets.end())
        return "{}";
    const auto& applet = found->second;
    FieldWriter document(applet.kept);
    if (!applet.process.entries().empty())
        document.insert("process", [&](std::string& out) { applet.process.write(out); });
    FieldWriter sequences(document.keptText("sequences"));
    for (const auto& [id, list] : applet.sequences) {
        if (!list.entries().empty())
            sequences.insert(id, [&each = list](std::string& out) { each.write(out); });
    }
    if (!sequences.isEmpty())
        document.insert("sequences", [&](std::string& out) { sequences.finish(out); });
    document.finish(json);
    return json;
}

} // namespace standalone
