#pragma once

#include "model/services/system_variate.h"

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>

#include <string>
#include <vector>

namespace standalone {

/// What a file of system variables holds. Members that this version doesn't know are kept as they
/// stand, and so are entries that are no variable of ours.
struct SystemVariableContent
{
    struct Entry
    {
        system_variate::SystemVarInfo info;
        std::string kept;
    };
    QMap<QString, Entry> entries; ///< by name
    std::vector<std::string> strangers;
    std::string kept;
};

/// The JSON of a project's system variables:
/// {"variables": [{"name", "type", "value", "description", "kind", "precision"}], "version": 1}.
/// No state; any thread.
namespace system_variable_json {

/// Empty on success, else what is wrong with the text: it is broken, or no such file. @p content is
/// then empty. The strangers' names go to @p strangers.
QString read(const QByteArray& text, SystemVariableContent& content, QStringList& strangers);

/// As a file has it.
QByteArray write(const SystemVariableContent& content);

/// One variable on one line.
std::string writeEntry(const SystemVariableContent::Entry& entry);

/// Brings what another program made of @p base into @p own: each variable that is as it was in base
/// becomes the other's, comes or goes. Variables that both have changed stay own and are returned.
QStringList merge(const QMap<QString, std::string>& base, const SystemVariableContent& other,
                  SystemVariableContent& own);

/// Every variable as writeEntry has it, to compare with later.
QMap<QString, std::string> entryTexts(const SystemVariableContent& content);

} // namespace system_variable_json
} // namespace standalone
