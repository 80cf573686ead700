#pragma once

#include "standalone/variables/system_variable_json.h"

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QVector>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

class QLockFile;

namespace standalone {

/// The file in a project's folder that keeps its system variables. Changes are written behind the
/// caller's back, all of a while at once, since a running applet may set values all the time. Any
/// thread.
class SystemVariableFile
{
public:
    static constexpr std::chrono::milliseconds Delay{500};

    SystemVariableFile() = default;
    /// Writes what isn't written.
    ~SystemVariableFile();
    SystemVariableFile(const SystemVariableFile&) = delete;
    SystemVariableFile& operator=(const SystemVariableFile&) = delete;

    /// Empty without a project.
    QString folder() const;
    /// From now on the file in that folder. A file that can't be read is copied aside, and is not
    /// written where that can't be done either; a variable whose type isn't known, or that has no
    /// proper value, stays in the file only. Neither changes the file until something is put.
    QVector<system_variate::SystemVarInfo> load(const QString& folder);

    void put(const system_variate::SystemVarInfo& variable);
    void remove(const QString& name);

    /// As the file has them, or will; empty before load().
    QVector<system_variate::SystemVarInfo> variables() const;

    enum class Patience {
        Usual, ///< while another program is writing, the change waits for the next time
        Last   ///< there is none: it is written all the same
    };
    /// Writes now; false if that failed, which the host's log tells, and then the change is kept
    /// for the next time. What another program has changed in the file since is taken in, variable
    /// by variable; where both have changed one, a copy of the other's file is kept (".replaced"),
    /// without which nothing is written.
    bool save(Patience patience = Patience::Usual);

    /// @p told is called when variables() has got what another program has changed: by whichever
    /// thread writes, which holds nothing that the functions above wait for but the writing itself.
    /// Not any more once this has returned; empty: nobody is told.
    void setOnTakenIn(std::function<void()> told);

private:
    void change();
    void work();
    bool takeInOther(const QString& path);
    bool takeTurn(QLockFile& turn, Patience patience);

    mutable std::mutex m_mutex; ///< guards all below
    QString m_folder;
    SystemVariableContent m_content;
    QMap<QString, std::string> m_base; ///< the variables as they were when file and memory agreed
    QByteArray m_lastText;             ///< the file when it was last read or written here
    bool m_isLocked = false;  ///< the file holds what can be neither read nor kept: hands off
    bool m_isChanged = false; ///< the file lacks something
    bool m_isDue = false;     ///< the writer is to write it
    bool m_isWaiting = false; ///< for another program that is writing; the log has told
    bool m_isClosing = false;
    std::condition_variable m_wake;
    std::mutex m_writing;              ///< held while the file is written; taken before m_mutex
    std::function<void()> m_onTakenIn; ///< under m_writing
    std::thread m_writer;              ///< from the first change on
};

} // namespace standalone
