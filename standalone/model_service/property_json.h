#pragma once

#include "model/BaseStepProperty.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

#include <string>
#include <unordered_map>
#include <vector>

namespace standalone {

class LoadReport;

/// One kind of step to JSON and back. @p kept holds members that reading left over.
QJsonObject writeProperty(const BaseStepProperty& property, const QJsonObject& kept = {});
BaseStepProperty readProperty(const QJsonObject& object, LoadReport& report, const QString& where,
                              QJsonObject* kept = nullptr);

std::vector<BaseStepProperty> readProperties(const QJsonArray& array, LoadReport& report,
                                             const QString& where);

bool isSameProperty(const BaseStepProperty& a, const BaseStepProperty& b);

/// The kinds of a document, told once instead of in every block: a block whose property is its
/// kind's record leaves it out.
class KindTable
{
public:
    /// @p rests is what an earlier reading left over, to be written again.
    explicit KindTable(const QJsonObject& rests = {});

    /// Reads the records of a "stepKinds" object.
    void read(const QJsonObject& object, LoadReport& report);
    /// By kind, the members of the records that were not understood.
    const QJsonObject& rests() const { return m_rests; }
    /// The record of a kind; null if the table has none.
    const BaseStepProperty* find(int baseType, int stepType) const;

    /// True if @p property is the record of its block's kind, which it becomes if there is none.
    bool covers(int baseType, int stepType, const BaseStepProperty& property);
    QJsonObject write() const;

private:
    std::unordered_map<std::string, BaseStepProperty> m_records;
    QJsonObject m_rests;
};

} // namespace standalone
