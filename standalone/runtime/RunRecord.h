#pragma once

#include <QString>

#include <cstdint>
#include <mutex>
#include <string>

namespace standalone {

/// All that a run has said, in a file of its own in the applet's folder of records: each line with
/// the time of day, UTF-8. The file is made for the first line. Older records go when there are too
/// many of them or they take too much room; nothing else in the folder is touched.
///
/// Used by the thread of the run; what says otherwise, by any.
class RunRecord
{
public:
    /// Of all records of an applet together, this one among them. It alone may take all the room;
    /// what is said beyond that isn't recorded.
    struct Limits
    {
        int files = 20;
        std::int64_t bytes = std::int64_t(1) << 30;
        /// To be left on the disk, for documents. It is looked at now and then.
        std::int64_t spare = std::int64_t(256) << 20;
    };

    /// An empty @p folder: nothing is recorded. It needn't be there.
    explicit RunRecord(const QString& folder) : RunRecord(folder, Limits()) {}
    RunRecord(const QString& folder, Limits limits);
    ~RunRecord();
    RunRecord(const RunRecord&) = delete;
    RunRecord& operator=(const RunRecord&) = delete;

    /// Both return an empty text, or once why nothing is recorded from here on. Lines are kept in
    /// memory until flush() hands them to the system; nobody waits for the disk.
    [[nodiscard]] QString add(const std::string& line);
    [[nodiscard]] QString flush();

    /// Where it stands. Empty before the first line, and when the file is not all that was said.
    /// Any thread.
    QString path() const;

private:
    QString create();
    QString fail(const QString& reason);
    QString reasonToEnd() const;
    void prune() const;
    void close();

    // Of run_record_posix.cpp.
    /// False if there is such a file already, or with a @p reason.
    bool open(const QString& path, QString& reason);
    /// Empty, or why not all of it could be written.
    QString write(const std::string& bytes) const;

    const QString m_folder;
    const Limits m_limits;
    int m_file = -1;
    bool m_isOver = false; ///< nothing is recorded any more
    std::string m_waiting;
    std::string m_time;         ///< of day, of what waits
    std::int64_t m_size = 0;    ///< with what is about to be written
    std::int64_t m_lookAt = 0;  ///< the size at which the folder is looked at again
    mutable std::mutex m_mutex; ///< guards what follows
    QString m_path;
};

/// Removes the records in an applet's folder of them, and the folder if nothing else is in it.
void removeRunRecords(const QString& folder);

} // namespace standalone
