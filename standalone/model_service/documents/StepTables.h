#pragma once

#include "model/BaseStepProperty.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace standalone {

/// The kinds of steps: the default table, which every editor shares, and the custom lists by owner.
class StepTables
{
public:
    bool isLoaded() const { return m_isLoaded; }
    /// Replaces the default table. An empty text is an empty table; a text that doesn't parse
    /// changes nothing and is reported.
    void load(const std::string& json);

    const std::vector<BaseStepProperty>& defaults() const { return m_defaults; }
    /// At any depth; null if there is none.
    const BaseStepProperty* findDefault(int baseType, int stepType) const;

    void addCustom(const std::string& owner, const std::vector<BaseStepProperty>& properties);
    void removeCustom(const std::string& owner);
    /// The list goes to @p newOwner, in place of one that is there.
    void renameOwner(const std::string& oldOwner, const std::string& newOwner);
    /// At any depth; null if there is none.
    const BaseStepProperty* findCustom(const std::string& owner, int baseType, int stepType) const;
    const BaseStepProperty* findCustom(const std::string& owner, int baseType,
                                       const std::string& name) const;

    /// What a new basic step of the kind gets: the default table's record, or one of the service's
    /// own for a kind that the table lacks. For other base types a record with an empty name.
    BaseStepProperty propertyFor(logicBlockType baseType, int stepType) const;

private:
    bool m_isLoaded = false;
    std::vector<BaseStepProperty> m_defaults;
    std::unordered_map<std::string, std::vector<BaseStepProperty>> m_customs;
};

StepTables& stepTables();

} // namespace standalone
