#pragma once

#include "model/process_records.h"

#include <QJsonArray>
#include <QJsonObject>

#include <vector>

namespace standalone {

class LoadReport;

/// A variable with the members of its JSON that this version doesn't know.
struct StoredVariable
{
    processVariable variable;
    QJsonObject kept;
};

/// One variable to JSON and back. Its scope and owner are told by the place where it stands, and
/// are written only if they differ from @p scope and @p ownerId.
QJsonObject writeVariable(const StoredVariable& stored, processVariableType scope,
                          const std::string& ownerId);
StoredVariable readVariable(const QJsonObject& object, LoadReport& report, const QString& where,
                            processVariableType scope, const std::string& ownerId);

std::vector<StoredVariable> readVariables(const QJsonArray& array, LoadReport& report,
                                          const QString& where, processVariableType scope,
                                          const std::string& ownerId);

} // namespace standalone
