#pragma once

#include "standalone/model_service/stores/VariableList.h"

#include <QByteArray>

#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace standalone {

/// All variables of the process: the default and the project's global ones, and by applet those of
/// the applet and of its sequences. Applet names are in the local 8-bit encoding. Every uuid is
/// unique in the store; a variable read under a taken one gets a new one.
class VariableStore
{
public:
    VariableStore();
    VariableStore(const VariableStore&) = delete;
    VariableStore& operator=(const VariableStore&) = delete;

    /// How a variable stands among its like.
    struct Standing
    {
        StoredVariable stored;
        processVariableType scope; ///< of the list; a fixed variable's is another
        std::string behind;        ///< uuid of the one before it; empty: it is the first
        bool isDefault;
    };

    const processVariable* find(const std::string& uuid) const; ///< null if there is none
    std::optional<Standing> standing(const std::string& uuid) const;
    /// Puts a variable back, or writes and moves one that is there. False if there is no such list.
    bool restore(const std::string& appName, const Standing& standing);
    std::vector<processVariable> globals() const; ///< the default ones first
    std::vector<processVariable> ofApplet(const std::string& appName) const;
    std::vector<processVariable> ofSequence(const std::string& appName,
                                            const std::string& sequenceId) const;

    /// Makes a variable with a free default name; empty for a scope that has no owner.
    std::string add(const std::string& appName, processVariableType scope,
                    const std::string& ownerId);
    /// Adds @p variable with its content; gives it a uuid and a free name.
    void paste(const std::string& appName, processVariable& variable, processVariableType scope);
    /// Writes back by uuid; another scope or owner moves it to that one's end. Of a locked variable
    /// only value and length change, and only if it is editable.
    void update(const std::string& appName, const processVariable& variable);
    /// Default variables stay.
    void remove(const std::vector<std::string>& uuids);
    void removeApplet(const std::string& appName);
    void removeSequence(const std::string& appName, const std::string& sequenceId);
    void renameApplet(const std::string& oldName, const std::string& newName);

    bool hasDefaults() const { return m_hasDefaults; }
    bool hasGlobals() const { return m_hasGlobals; }
    void loadDefaults(const std::string& json);
    /// False for a text that doesn't parse, which changes nothing.
    bool loadGlobals(const std::string& json);
    /// Drops the project's global ones, as if they had never been loaded.
    void forgetGlobals();
    QByteArray globalsFileText() const;

    void loadApplet(const std::string& appName, const std::string& json);
    std::string appletText(const std::string& appName) const; ///< "{}" if it has none

private:
    struct AppletVariables
    {
        explicit AppletVariables(const std::string& appName) : process(ProcessVariable, appName) {}
        VariableList process;
        std::map<std::string, VariableList> sequences; ///< by sequence id
        std::string kept; ///< members of the document that this version doesn't know
    };
    struct Home
    {
        VariableList::Position entry;
        VariableList* list = nullptr;
        bool isDefault = false;
    };

    /// The list of a scope, made if it is missing; null for a scope without an owner.
    VariableList* listFor(const std::string& appName, processVariableType scope,
                          const std::string& ownerId);
    AppletVariables& appletFor(const std::string& appName);
    void enter(VariableList& list, StoredVariable stored, bool isDefault = false);
    void clear(VariableList& list);
    void fill(VariableList& list, const JsonValue& array, LoadReport& report,
              const DocumentPlace& where, bool areDefault = false);
    bool isNameInSight(const std::string& appName, const VariableList& list,
                       const std::string& name) const;

    std::unordered_map<std::string, Home> m_homes; ///< by uuid
    VariableList m_defaults;
    VariableList m_globals;
    std::map<std::string, AppletVariables> m_applets;
    std::string m_globalsKept;
    bool m_hasDefaults = false;
    bool m_hasGlobals = false;
};

VariableStore& variableStore();

} // namespace standalone
