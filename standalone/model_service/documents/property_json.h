#pragma once

#include "model/BaseStepProperty.h"
#include "standalone/model_service/json/DocumentPlace.h"
#include "standalone/model_service/json/JsonTree.h"

#include <map>
#include <string>
#include <unordered_map>
#include <vector>

namespace standalone {

class LoadReport;

/// One kind of step to JSON and back. @p kept holds members that reading left over.
void writeProperty(std::string& json, const BaseStepProperty& property,
                   const std::string& kept = {});
BaseStepProperty readProperty(const JsonValue& object, LoadReport& report,
                              const DocumentPlace& where, std::string* kept = nullptr);

std::vector<BaseStepProperty> readProperties(const JsonValue& array, LoadReport& report,
                                             const DocumentPlace& where);

bool isSameProperty(const BaseStepProperty& a, const BaseStepProperty& b);

/// The kinds of a document, told once instead of in every block: a block whose property is its
/// kind's record leaves it out.
class KindTable
{
public:
    /// By a kind's name in the document, what was not understood of its record.
    using Rests = std::map<std::string, std::string>;

    /// @p rests is what an earlier reading left over, to be written again.
    explicit KindTable(const Rests& rests = {});

    /// Reads the records of a "stepKinds" object.
    void read(const JsonValue& object, LoadReport& report);
    const Rests& rests() const { return m_rests; }
    /// The record of a kind; null if the table has none.
    const BaseStepProperty* find(int baseType, int stepType) const;

    /// True if @p property is the record of its block's kind, which it becomes if there is none.
    bool covers(int baseType, int stepType, const BaseStepProperty& property);
    bool isEmpty() const { return m_records.empty() && m_foreign.empty(); }
    void write(std::string& json) const;

private:
    std::unordered_map<std::uint64_t, BaseStepProperty> m_records; ///< by kind
    Rests m_rests;
    Rests m_foreign; ///< of m_rests those that are written as they were read
};

} // namespace standalone
