#pragma once

#include "model/process_records.h"

#include <string>
#include <vector>

namespace standalone {

class DocumentPlace;
class JsonValue;
class LoadReport;

/// A variable with the members of its JSON that this version doesn't know.
struct StoredVariable
{
    processVariable variable;
    std::string kept; ///< as an object; empty if there are none
};

/// Variables to JSON and back. Their scope and owner are told by the place where they stand, and
/// are written only if they differ from @p scope and @p ownerId.
void writeVariable(std::string& json, const StoredVariable& stored, processVariableType scope,
                   const std::string& ownerId);
std::vector<StoredVariable> readVariables(const JsonValue& array, LoadReport& report,
                                          const DocumentPlace& where, processVariableType scope,
                                          const std::string& ownerId);

} // namespace standalone
