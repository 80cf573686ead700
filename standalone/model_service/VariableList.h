#pragma once

#include "standalone/model_service/variable_json.h"

#include <QJsonArray>

#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace standalone {

/// The variables of one owner in their order, with their names at hand.
class VariableList
{
public:
    using Entry = std::shared_ptr<StoredVariable>;

    VariableList(processVariableType scope, const std::string& ownerId);

    const std::vector<Entry>& entries() const { return m_entries; }
    std::vector<processVariable> records() const;
    bool hasName(const std::string& name) const { return m_names.count(name) > 0; }

    void append(const Entry& entry);
    void remove(const std::unordered_set<std::string>& uuids);
    /// Tells the list that an entry's name changed.
    void renamed(const std::string& from, const std::string& to);
    /// Hands the list, and every variable in it, to another owner.
    void setOwner(const std::string& ownerId);

    processVariableType scope() const { return m_scope; }
    const std::string& ownerId() const { return m_ownerId; }
    QJsonArray write() const;

private:
    void forgetName(const std::string& name);

    processVariableType m_scope;
    std::string m_ownerId;
    std::vector<Entry> m_entries;
    std::unordered_map<std::string, int> m_names; ///< how many bear it
};

} // namespace standalone
