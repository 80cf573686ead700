#include "standalone/model_service/stores/VariableList.h"

#include <iterator>
#include <utility>

namespace standalone {

VariableList::VariableList(processVariableType scope, const std::string& ownerId)
    : m_scope(scope), m_ownerId(ownerId)
{
}

std::vector<processVariable> VariableList::records() const
{
    std::vector<processVariable> records;
    records.reserve(m_entries.size());
    for (const auto& entry : m_entries)
        records.push_back(entry.variable);
    return records;
}

VariableList::Position VariableList::append(StoredVariable variable)
{
    ++m_names[variable.variable.name];
    return m_entries.insert(m_entries.end(), std::move(variable));
}

std::string VariableList::uuidBefore(Position position) const
{
    const Entries::const_iterator entry = position;
    return entry == m_entries.begin() ? std::string() : std::prev(entry)->variable.uuid;
}

VariableList::Position VariableList::insertFirst(StoredVariable variable)
{
    ++m_names[variable.variable.name];
    return m_entries.insert(m_entries.begin(), std::move(variable));
}

VariableList::Position VariableList::insertBehind(Position position, StoredVariable variable)
{
    ++m_names[variable.variable.name];
    return m_entries.insert(std::next(position), std::move(variable));
}

void VariableList::remove(Position position)
{
    forgetName(position->variable.name);
    m_entries.erase(position);
}

void VariableList::takeOver(VariableList& from, Position position)
{
    from.forgetName(position->variable.name);
    ++m_names[position->variable.name];
    m_entries.splice(m_entries.end(), from.m_entries, position);
}

void VariableList::renamed(const std::string& from, const std::string& to)
{
    forgetName(from);
    ++m_names[to];
}

void VariableList::setOwner(const std::string& ownerId)
{
    m_ownerId = ownerId;
    for (auto& entry : m_entries)
        entry.variable.ownerId = ownerId;
}

void VariableList::write(std::string& json) const
{
    json += '[';
    for (const auto& entry : m_entries) {
        if (&entry != &m_entries.front())
            json += ',';
        writeVariable(json, entry, m_scope, m_ownerId);
    }
    json += ']';
}

void VariableList::forgetName(const std::string& name)
{
    const auto found = m_names.find(name);
    if (found != m_names.end() && --found->second == 0)
        m_names.erase(found);
}

} // namespace standalone
