#pragma once

#include "standalone/compiler/ObjectCache.h"
#include "standalone/compiler/compiler_process.h"

#include <QElapsedTimer>
#include <QSemaphore>

#include <atomic>
#include <vector>

namespace standalone {

/// What all compiles of the process share.
struct CompilerLimits
{
    QSemaphore& compilers; ///< as many may run at once
    const std::atomic<bool>& cancelled;
    int timeout; ///< milliseconds for all compilers of a module together
};

/// Makes a module of code that stands in its folder: compiles the units whose objects are not kept
/// from before, several at once, and links. Used once, on one thread.
class ModuleBuild
{
public:
    ModuleBuild(const codegen::GeneratedCode& code, const QString& folder,
                const CompilerLimits& limits);

    /// Writes the module to @p path, which is complete if it succeeds. All units are compiled even
    /// if one fails; the words of all that failed, or of all, come together.
    CompilerOutcome run(const QString& path);

private:
    struct Unit
    {
        const codegen::GeneratedFile* file = nullptr;
        QString object;
        bool isKept = false; ///< the object was there
        CompilerOutcome outcome;
    };

    void findObjects();
    void compileUnits();
    void compileUnit(Unit& unit);
    CompilerOutcome link(const QString& path);
    CompilerOutcome runLimited(const QStringList& arguments) const;

    const codegen::GeneratedCode& m_code;
    const QString m_folder;
    const CompilerLimits m_limits;
    const CompilerCommand m_command;
    const ObjectCache m_cache;
    std::vector<Unit> m_units;
    QElapsedTimer m_timer;
};

} // namespace standalone
