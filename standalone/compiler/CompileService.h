#pragma once

#include "model/services/processedit.h"
#include "standalone/codegen/applet_source.h"
#include "standalone/compiler/dependencies.h"
#include "standalone/compiler/folder_lock.h"
#include "standalone/threads/WorkerPool.h"

#include <QByteArray>
#include <QMap>
#include <QSemaphore>
#include <QSet>
#include <QString>

#include <atomic>
#include <mutex>

namespace standalone {

/// Compiles generated code on threads of its own: several applets at a time, and of each several
/// units, with as many compilers at once as there are cores. One compile an applet at a time.
class CompileService
{
public:
    struct Request
    {
        QString appName;
        QString targetSequenceId;
        bool forVci = false;
        bool isForced = false; ///< never skipped
        QString codeFolder;
        QString modulePath;
        codegen::GeneratedCode code;
        sdk_ui_interface::processedit::CompileFinished onFinished;
    };
    enum StartResult { Started, Skipped, Refused };

    static CompileService& instance();
    CompileService();
    ~CompileService();

    /// Refused while the applet is being compiled, or without folders. Skipped if the last success
    /// was the same code for the same target with the same compiler, no file that it was made of
    /// has changed, and its module is there as it was made. onFinished is called while no other
    /// program can compile into the same folders.
    StartResult start(Request request);
    bool isCompiling(const QString& appName) const;
    /// Whether another program has replaced the module that the last success here made; false if
    /// there was none.
    bool isReplaced(const QString& modulePath) const;

    /// Milliseconds after which a compiler is killed; 120000 at first.
    void setTimeout(int milliseconds) { m_timeout = milliseconds; }
    /// Bytes that a compiler may take, of memory and for a file; 2 GB at first. 0: no limit.
    void setMemoryLimit(qint64 bytes) { m_memoryLimit = bytes; }

    /// Kills the compilers and waits for their threads; their onFinished is not called any more.
    void shutDown();

private:
    struct Outcome
    {
        compileResult result;
        QByteArray message;
    };

    /// What a success was made of, and what it made.
    struct Success
    {
        QByteArray fingerprint;
        /// Of the files outside the generated code, and of the module; empty: they don't tell
        /// whether anything has changed.
        FileStates files;
        FileState module;
    };

    void work(const Request& request, const QByteArray& fingerprint);
    Outcome compile(const Request& request, FolderLock& folder, Success& success) const;
    Outcome runCompilerFor(const Request& request, Success& success) const;
    QByteArray fingerprintOf(const Request& request) const;

    std::atomic<bool> m_cancelled{false};
    std::atomic<int> m_timeout{120000};
    std::atomic<qint64> m_memoryLimit{qint64(2) << 30};
    mutable std::mutex m_mutex; ///< guards the three below
    QSet<QString> m_compiling;
    QMap<QString, Success> m_lastSuccess; ///< by applet
    FileStates m_modules;                 ///< as they were made here
    mutable QSemaphore m_compilers;       ///< free places for a compiler
    WorkerPool m_pool;                    ///< last: its threads use all of the above
};

} // namespace standalone
