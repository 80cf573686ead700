#include "standalone/model_service/VariableList.h"

#include <algorithm>

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
        records.push_back(entry->variable);
    return records;
}

void VariableList::append(const Entry& entry)
{
    m_entries.push_back(entry);
    ++m_names[entry->variable.name];
}

void VariableList::remove(const std::unordered_set<std::string>& uuids)
{
    const auto isGone = [&](const Entry& entry) { return uuids.count(entry->variable.uuid) > 0; };
    for (const auto& entry : m_entries) {
        if (isGone(entry))
            forgetName(entry->variable.name);
    }
    m_entries.erase(std::remove_if(m_entries.begin(), m_entries.end(), isGone), m_entries.end());
}

void VariableList::renamed(const std::string& from, const std::string& to)
{
    forgetName(from);
    ++m_names[to];
}

void VariableList::setOwner(const std::string& ownerId)
{
    m_ownerId = ownerId;
    for (const auto& entry : m_entries)
        entry->variable.ownerId = ownerId;
}

QJsonArray VariableList::write() const
{
    QJsonArray array;
    for (const auto& entry : m_entries)
        array.append(writeVariable(*entry, m_scope, m_ownerId));
    return array;
}

void VariableList::forgetName(const std::string& name)
{
    const auto found = m_names.find(name);
    if (found != m_names.end() && --found->second == 0)
        m_names.erase(found);
}

} // namespace standalone
