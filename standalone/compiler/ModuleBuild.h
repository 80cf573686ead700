#pragma once

#include "standalone/compiler/ObjectCache.h"
#include "standalone/compiler/compiler_process.h"

#include <QElapsedTimer>
#include <QSemaphore>

#include <atomic>
#include <functional>
#include <optional>
#include <vector>

namespace standalone {

/// What all compiles of the process share.
struct CompilerLimits
{
    QSemaphore& compilers; ///< as many may run at once
    const std::atomic<bool>& cancelled;
    int timeout;   ///< milliseconds for all compilers of a module together
    qint64 memory; ///< bytes for each; 0: no limit
};

/// Makes a module of code that stands in its folder: compiles the units whose objects are not kept
/// from before, several compilers at once, each with one unit or a group, and links. Used once, on
/// one thread, while nobody else uses the folder.
class ModuleBuild
{
public:
    ModuleBuild(const codegen::GeneratedCode& code, const QString& folder,
                const CompilerLimits& limits);

    /// Writes the module to @p path, which is complete if it succeeds. All units are compiled even
    /// if one fails; the words of all that failed, or of all, come together, cut as ClippedOutput
    /// does. What the code isn't to blame for is told alone.
    CompilerOutcome run(const QString& path);

    /// After run(): the file name of the unit whose outcome was told alone; empty if none was, or
    /// if it was the linker.
    QString culprit() const { return m_culprit; }
    /// After a success: the files of which the module was made besides the code, as they were then;
    /// nothing if that can't be told, so that an equal compile may have another result.
    std::optional<FileStates> outsideFiles() const;

private:
    struct Object
    {
        UnitGroup units;
        QByteArray key;
        bool isMade = false; ///< it is there, or was tried
        bool isKept = false; ///< it was there before
        CompilerOutcome outcome;
    };

    void findObjects();
    void findGroups(UnitGroup& units);
    void add(UnitGroup units, bool isKept);
    void compileObjects();
    void compileObject(Object& object);
    void partFailed();
    void part(const std::function<bool(const Object&)>& isMeant, const QByteArray& words);
    void keepGroups() const;
    CompilerOutcome link(const QString& path);
    CompilerOutcome linkParted(const QString& path);
    CompilerOutcome runLimited(const QStringList& arguments) const;

    const codegen::GeneratedCode& m_code;
    const QString m_folder;
    const CompilerLimits m_limits;
    const CompilerCommand m_command;
    ObjectCache m_cache;
    std::vector<Object> m_objects;
    bool m_isAnyMade = false; ///< an object
    QString m_culprit;
    QElapsedTimer m_timer;
};

} // namespace standalone
