#include "standalone/compiler/ModuleBuild.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <filesystem>
#include <thread>

namespace standalone {

namespace {

const QString objectFolder = QStringLiteral("/objects");
const QString unfinishedSuffix = QStringLiteral(".new");

bool replaceFile(const QString& from, const QString& to)
{
    std::error_code error;
    std::filesystem::rename(QFile::encodeName(from).toStdString(),
                            QFile::encodeName(to).toStdString(), error);
    return !error;
}

} // namespace

ModuleBuild::ModuleBuild(const codegen::GeneratedCode& code, const QString& folder,
                         const CompilerLimits& limits)
    : m_code(code), m_folder(folder), m_limits(limits), m_command(compilerCommand()),
      m_cache(folder + objectFolder)
{
}

CompilerOutcome ModuleBuild::run(const QString& path)
{
    m_timer.start();
    if (!m_cache.prepare())
        return {CompilerOutcome::NotWritten, (m_folder + objectFolder).toUtf8()};
    findObjects();
    compileUnits();
    CompilerOutcome outcome{CompilerOutcome::Succeeded, QByteArray()};
    QSet<QString> used;
    for (const Unit& unit : m_units) {
        used.insert(unit.object);
        // What the code isn't to blame for is told alone.
        if (unit.outcome.kind > CompilerOutcome::Failed && unit.outcome.kind > outcome.kind)
            outcome = unit.outcome;
        else if (unit.outcome.kind >= outcome.kind)
            outcome = {unit.outcome.kind, outcome.output + unit.outcome.output};
    }
    if (outcome.kind == CompilerOutcome::Succeeded) {
        const CompilerOutcome linked = link(path);
        outcome.kind = linked.kind;
        outcome.output += linked.output;
    }
    m_cache.prune(used);
    return outcome;
}

void ModuleBuild::findObjects()
{
    const QByteArray toolchain = ObjectCache::toolchainOf(m_command);
    for (const codegen::GeneratedFile& file : m_code.files) {
        if (!file.isUnit)
            continue;
        Unit unit;
        unit.file = &file;
        const QByteArray key = ObjectCache::keyOf(file, m_code, toolchain);
        unit.isKept = m_cache.holds(key);
        unit.object = m_cache.pathOf(key.isEmpty() ? QByteArray::fromStdString(file.name) : key);
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
    const std::size_t most = std::max(1u, std::thread::hardware_concurrency());
    std::vector<std::thread> helpers;
    for (std::size_t i = 1; i < std::min(most, work.size()); ++i)
        helpers.emplace_back(compileSome);
    compileSome();
    for (std::thread& helper : helpers)
        helper.join();
}

void ModuleBuild::compileUnit(Unit& unit)
{
    const QString unfinished = unit.object + unfinishedSuffix;
    unit.outcome =
        runLimited(m_command.compileArguments(QString::fromStdString(unit.file->name), unfinished));
    if (unit.outcome.kind != CompilerOutcome::Succeeded)
        QFile::remove(unfinished);
    else if (!replaceFile(unfinished, unit.object))
        unit.outcome = {CompilerOutcome::NotWritten, unit.object.toUtf8()};
}

CompilerOutcome ModuleBuild::link(const QString& path)
{
    const QString unfinished = path + unfinishedSuffix;
    QStringList objects;
    for (const Unit& unit : m_units)
        objects << QDir(m_folder).relativeFilePath(unit.object);
    CompilerOutcome outcome = runLimited(m_command.linkArguments(objects, unfinished));
    if (outcome.kind == CompilerOutcome::Succeeded && !replaceFile(unfinished, path))
        outcome = {CompilerOutcome::NotWritten, path.toUtf8()};
    if (outcome.kind == CompilerOutcome::Succeeded)
        return outcome;
    QFile::remove(unfinished);
    // An object may have been damaged on disk: the next compile does without those kept.
    for (const Unit& unit : m_units) {
        if (unit.isKept)
            QFile::remove(unit.object);
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
    return runCompiler(m_command.program, arguments, m_folder, left, m_limits.cancelled);
}

} // namespace standalone
