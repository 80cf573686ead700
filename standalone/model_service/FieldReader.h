#pragma once

#include "standalone/model_service/LoadReport.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QVector>

#include <cstdint>
#include <string>
#include <vector>

namespace standalone {

/// Reads the fields of one record from a JSON object: the twin of FieldWriter.
///
/// A missing member gives the default; one of a wrong type does too, is reported, and stays in
/// what rest() returns.
class FieldReader
{
public:
    static constexpr bool Reads = true;

    FieldReader(const QJsonObject& object, LoadReport& report, const QString& where = {});

    void field(const char* name, std::string& value, const char* standard = "");
    void field(const char* name, bool& value, bool standard);
    void field(const char* name, int& value, int standard);
    void field(const char* name, std::uint32_t& value, std::uint32_t standard);

    template <class Record, class Visit> void record(const char* name, Record& value, Visit visit)
    {
        QJsonObject object;
        if (!takeObject(name, object))
            return;
        FieldReader reader(object, m_report, placeOf(name));
        visit(reader, value);
        keep(name, reader.rest());
    }

    template <class Element, class Visit>
    void list(const char* name, std::vector<Element>& values, Visit visit)
    {
        values.clear();
        QJsonArray array;
        if (!takeObjects(name, array))
            return;
        QJsonArray rests;
        bool hasRest = false;
        for (const auto& item : qAsConst(array)) {
            FieldReader reader(item.toObject(), m_report, placeOf(name));
            Element element;
            visit(reader, element);
            values.push_back(element);
            rests.append(reader.rest());
            hasRest = hasRest || !reader.rest().isEmpty();
        }
        if (hasRest)
            keep(name, rests);
    }

    /// Takes an object or an array out of what rest() returns. False if there is none; a member of
    /// another type is reported.
    bool takeObject(const char* name, QJsonObject& object);
    bool takeArray(const char* name, QJsonArray& array);

    /// The members that no call above could read, and what they could not read of a nested one.
    QJsonObject rest() const;

private:
    /// The member, or undefined; marks it as read if @p fits.
    QJsonValue member(const char* name, bool (*fits)(const QJsonValue&));
    bool takeObjects(const char* name, QJsonArray& array);
    void keep(const char* name, const QJsonObject& object);
    void keep(const char* name, const QJsonArray& array);
    QString placeOf(const char* name) const;

    const QJsonObject m_object;
    LoadReport& m_report;
    QString m_where;
    QVector<const char*> m_taken;
    QJsonObject m_kept;
};

} // namespace standalone
