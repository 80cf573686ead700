#pragma once

#include "standalone/model_service/documents/variable_json.h"

#include <list>
#include <string>
#include <unordered_map>
#include <vector>

namespace standalone {

/// The variables of one owner in their order, with their names at hand.
class VariableList
{
public:
    using Entries = std::list<StoredVariable>;
    using Position = Entries::iterator; ///< holds till the entry is taken out

    VariableList(processVariableType scope, const std::string& ownerId);

    const Entries& entries() const { return m_entries; }
    std::vector<processVariable> records() const;
    bool hasName(const std::string& name) const { return m_names.count(name) > 0; }

    Position append(StoredVariable variable);
    /// The uuid of the entry before; empty for the first one.
    std::string uuidBefore(Position position) const;
    Position insertFirst(StoredVariable variable);
    Position insertBehind(Position position, StoredVariable variable);
    void remove(Position position);
    /// Moves an entry, whose position stays its own, to the end of this list.
    void takeOver(VariableList& from, Position position);
    /// Tells the list that an entry's name changed.
    void renamed(const std::string& from, const std::string& to);
    /// Hands the list, and every variable in it, to another owner.
    void setOwner(const std::string& ownerId);

    processVariableType scope() const { return m_scope; }
    const std::string& ownerId() const { return m_ownerId; }
    void write(std::string& json) const;

private:
    void forgetName(const std::string& name);

    processVariableType m_scope;
    std::string m_ownerId;
    Entries m_entries;
    std::unordered_map<std::string, int> m_names; ///< how many bear it
};

} // namespace standalone
