#include "standalone/compiler/ModuleBuild.h"

#include "base/file_writing.h"
#include "standalone/compiler/ClippedOutput.h"
#include "standalone/compiler/code_folder.h"
#include "standalone/compiler/error_lines.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <system_error>
#include <thread>

namespace standalone {

ModuleBuild::ModuleBuild(const codegen::GeneratedCode& code, const QString& folder,
                         const CompilerLimits& limits)
    : m_code(code), m_folder(folder), m_limits(limits), m_command(compilerCommand()),
      m_cache(folder, code, m_command)
{
}

CompilerOutcome ModuleBuild::run(const QString& path)
{
    m_timer.start();
    if (!m_cache.prepare())
        return {CompilerOutcome::NotWritten, m_cache.folder().toUtf8()};
    findObjects();
    compileUnits();
    CompilerOutcome::Kind kind = CompilerOutcome::Succeeded;
    ClippedOutput words;
    const auto tell = [&](const CompilerOutcome& outcome, const std::string& file) {
        if (outcome.kind < kind || kind > CompilerOutcome::Failed)
            return;
        if (outcome.kind > CompilerOutcome::Failed) {
            words = ClippedOutput();
            m_culprit = QString::fromStdString(file);
        }
        kind = outcome.kind;
        words.add(outcome.output);
    };
    QSet<QByteArray> used;
    for (const Unit& unit : m_units) {
        used.insert(unit.key);
        tell(unit.outcome, unit.file->name);
    }
    if (kind == CompilerOutcome::Succeeded)
        tell(link(path), std::string());
    if (m_isAnyMade)
        m_cache.prune(used);
    return {kind, words.toText()};
}

std::optional<FileStates> ModuleBuild::outsideFiles() const
{
    QList<QByteArray> keys;
    for (const Unit& unit : m_units)
        keys << unit.key;
    return m_cache.outsideFiles(keys);
}

void ModuleBuild::findObjects()
{
    for (const codegen::GeneratedFile& file : m_code.files) {
        if (!file.isUnit)
            continue;
        Unit unit;
        unit.file = &file;
        unit.key = m_cache.keyOf(file);
        unit.isKept = m_cache.holds(unit.key);
        unit.outcome.kind = CompilerOutcome::Succeeded;
        m_units.push_back(unit);
    }
}

void ModuleBuild::compileUnits()
{
    std::vector<Unit*> work;
    for (Unit& unit : m_units) {
        if (!unit.isKept)
            work.push_back(&unit);
    }
    // The longest first, so that no core waits for one that began late.
    std::stable_sort(work.begin(), work.end(), [](const Unit* left, const Unit* right) {
        return left->file->text.size() > right->file->text.size();
    });
    std::atomic<std::size_t> next{0};
    const auto compileSome = [&] {
        for (std::size_t i = next++; i < work.size(); i = next++)
            compileUnit(*work[i]);
    };
    m_isAnyMade = !work.empty();
    const std::size_t most = std::max(1u, std::thread::hardware_concurrency());
    std::vector<std::thread> helpers;
    try {
        for (std::size_t i = 1; i < std::min(most, work.size()); ++i)
            helpers.emplace_back(compileSome);
    } catch (const std::system_error&) {
        // Those that are there, this thread at least, do the work of all.
    }
    compileSome();
    for (std::thread& helper : helpers)
        helper.join();
}

void ModuleBuild::compileUnit(Unit& unit)
{
    const QString object = m_cache.objectOf(unit.key);
    const QString unfinished = object + unfinishedSuffix;
    m_cache.forget(unit.key);
    unit.outcome = runLimited(m_command.compileArguments(
        QString::fromStdString(unit.file->name), unfinished, m_cache.dependenciesOf(unit.key)));
    if (unit.outcome.kind != CompilerOutcome::Succeeded)
        QFile::remove(unfinished);
    else if (file_writing::moveOver(unfinished, object).isEmpty())
        m_cache.keep(unit.key);
    else
        unit.outcome = {CompilerOutcome::NotWritten, object.toUtf8()};
}

CompilerOutcome ModuleBuild::link(const QString& path)
{
    const QString unfinished = path + unfinishedSuffix;
    QStringList objects;
    for (const Unit& unit : m_units)
        objects << QDir(m_folder).relativeFilePath(m_cache.objectOf(unit.key));
    CompilerOutcome outcome = runLimited(m_command.linkArguments(objects, unfinished));
    if (outcome.kind == CompilerOutcome::Succeeded &&
        !file_writing::moveOver(unfinished, path).isEmpty())
        outcome = {CompilerOutcome::NotWritten, path.toUtf8()};
    if (outcome.kind == CompilerOutcome::Succeeded)
        return outcome;
    QFile::remove(unfinished);
    // What isn't in the code may be in an object that was damaged on disk: the next compile does
    // without those kept.
    if (outcome.kind == CompilerOutcome::Failed && errorLines(outcome.output, m_code).isEmpty()) {
        for (const Unit& unit : m_units) {
            if (unit.isKept)
                m_cache.forget(unit.key);
        }
    }
    return outcome;
}

CompilerOutcome ModuleBuild::runLimited(const QStringList& arguments) const
{
    const QSemaphoreReleaser place =
        (m_limits.compilers.acquire(), QSemaphoreReleaser(m_limits.compilers));
    const int left = m_limits.timeout - static_cast<int>(m_timer.elapsed());
    if (m_limits.cancelled || left <= 0)
        return {m_limits.cancelled ? CompilerOutcome::Cancelled : CompilerOutcome::TimedOut, {}};
    return runCompiler(m_command.program, arguments, m_folder, {left, m_limits.memory},
                       m_limits.cancelled);
}

} // namespace standalone
