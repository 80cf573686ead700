#pragma once

#include <QString>
#include <QStringList>

namespace standalone {

/// What was wrong with a text that is being read. Faults are counted, and the first of them go to
/// the host's log when the report ends.
class LoadReport
{
public:
    /// @p subject opens every line of the report: what is being read.
    explicit LoadReport(const QString& subject);
    ~LoadReport();
    LoadReport(const LoadReport&) = delete;
    LoadReport& operator=(const LoadReport&) = delete;

    /// @p where is the place in the text, empty for the whole.
    void add(const QString& where, const QString& fault);
    int count() const { return m_count; }

private:
    QString m_subject;
    QStringList m_lines;
    int m_count = 0;
};

} // namespace standalone
