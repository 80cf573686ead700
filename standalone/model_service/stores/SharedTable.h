#pragma once

#include <QByteArray>
#include <QString>

namespace standalone {

/// A file of the project that holds one table and that other workbenches write too: what they have
/// made of it is replaced only by a change that was made here, and then kept aside. GUI thread.
class SharedTable
{
public:
    /// The table was read: @p fileText is what the file held, however indented, empty if there was
    /// none; @p ownText how it would be written now.
    void setLoaded(const QByteArray& fileText, const QByteArray& ownText);

    /// Brings the file to hold the table. A file that is there is not touched while the table is as
    /// it was read or written last. One that another program has written since, or that can't be
    /// read, is copied aside first and is not replaced where that fails; the log tells.
    void save(const QString& path, const QByteArray& ownText);

private:
    bool keepOther(const QString& path, const QByteArray& ownText) const;

    QString m_path;      ///< of the file; empty until it is first saved
    QByteArray m_inFile; ///< the file as it was read or written last, indented in one way
    QByteArray m_own;    ///< the table at that time, as it is written
};

SharedTable& globalVariablesFile();
SharedTable& quickStepsFile();

} // namespace standalone
