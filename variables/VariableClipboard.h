#pragma once

#include "model/process_records.h"

#include <QStringList>

#include <vector>

/// Variables that were copied, to be pasted into any sequence of the applet. They are copies: what
/// happens to the originals later doesn't matter. Not the system's clipboard. GUI thread only.
class VariableClipboard
{
public:
    bool isEmpty() const { return m_variables.empty(); }

    /// Takes the place of what was copied before.
    void copy(const QStringList& uuids);

    /// Adds the variables to a scope, in the order in which they were copied; the model service
    /// gives them names that are free there. Returns them as they have become.
    std::vector<processVariable> paste(const std::string& appName, processVariableType scope,
                                       const std::string& ownerId) const;

private:
    std::vector<processVariable> m_variables;
};
