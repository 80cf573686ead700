#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <string>

namespace standalone {

class DocumentPlace;

/// What was wrong with a text that is being read. Faults are counted, and the first of them, and of
/// each kind, go to the host's log when the report ends.
class LoadReport
{
public:
    /// @p subject opens every line of the report: what is being read.
    explicit LoadReport(const QString& subject);
    ~LoadReport();
    LoadReport(const LoadReport&) = delete;
    LoadReport& operator=(const LoadReport&) = delete;

    void add(const DocumentPlace& where, const QString& fault);
    int count() const { return m_count; }

    /// A text of a document for a line of the report: cut if it is long.
    static QString shown(const std::string& text);

private:
    QString m_subject;
    QStringList m_lines;
    QHash<QString, int> m_kinds; ///< how many faults of each
    int m_count = 0;
};

} // namespace standalone
