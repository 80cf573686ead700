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

namespace {

std::size_t cores()
{
    return std::max(1u, std::thread::hardware_concurrency());
}

} // namespace

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
    compileObjects();
    partFailed();
    // In the order of the code.
    std::sort(m_objects.begin(), m_objects.end(), [](const Object& left, const Object& right) {
        return left.units.front() < right.units.front();
    });
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
    for (const Object& object : m_objects)
        tell(object.outcome, object.units.front()->name);
    if (kind == CompilerOutcome::Succeeded)
        tell(linkParted(path), std::string());
    if (m_isAnyMade) {
        keepGroups();
        QSet<QByteArray> used;
        for (const Object& object : m_objects)
            used.insert(object.key);
        m_cache.prune(used);
    }
    return {kind, words.toText()};
}

std::optional<FileStates> ModuleBuild::outsideFiles() const
{
    QList<QByteArray> keys;
    for (const Object& object : m_objects)
        keys << object.key;
    return m_cache.outsideFiles(keys);
}

void ModuleBuild::add(UnitGroup units, bool isKept)
{
    const QByteArray key = m_cache.keyOf(units);
    m_objects.push_back({std::move(units), key, isKept, isKept, {CompilerOutcome::Succeeded, {}}});
}

void ModuleBuild::findObjects()
{
    UnitGroup units;
    for (const codegen::GeneratedFile& file : m_code.files) {
        if (file.isUnit)
            units.push_back(&file);
    }
    findGroups(units);
    UnitGroup stale;
    for (const codegen::GeneratedFile* unit : units) {
        if (m_cache.holds(m_cache.keyOf({unit})))
            add({unit}, true);
        else
            stale.push_back(unit);
    }
    // The module's own unit tells of every change of another.
    const auto isOfModule = [this](const auto* unit) { return unit == &m_code.files.front(); };
    const auto others = std::stable_partition(stale.begin(), stale.end(), isOfModule);
    const UnitGroup module(stale.begin(), others);
    stale.erase(stale.begin(), others);
    if (!module.empty())
        add(module, false);
    for (UnitGroup& group : groupsOf(stale, module.size(), cores()))
        add(std::move(group), false);
}

/// Takes the units that were compiled together before. What is left of such a group when one of
/// them has changed stays one.
void ModuleBuild::findGroups(UnitGroup& units)
{
    QHash<QByteArray, const codegen::GeneratedFile*> byKey;
    const QList<QByteArrayList> groups = m_cache.groups();
    for (const codegen::GeneratedFile* unit : units) {
        if (!groups.isEmpty())
            byKey.insert(m_cache.keyOf({unit}), unit);
    }
    QSet<const codegen::GeneratedFile*> found;
    for (const QByteArrayList& group : groups) {
        UnitGroup left;
        for (const QByteArray& key : group) {
            if (const codegen::GeneratedFile* unit = byKey.take(key))
                left.push_back(unit);
        }
        if (left.empty())
            continue;
        found += QSet<const codegen::GeneratedFile*>(left.begin(), left.end());
        const bool isKept = m_cache.holds(m_cache.keyOf(left));
        add(std::move(left), isKept);
    }
    units.erase(std::remove_if(units.begin(), units.end(),
                               [&](const auto* unit) { return found.contains(unit); }),
                units.end());
}

void ModuleBuild::compileObjects()
{
    std::vector<Object*> work;
    for (Object& object : m_objects) {
        if (!object.isMade)
            work.push_back(&object);
    }
    // The longest first, so that no core waits for one that began late.
    std::stable_sort(work.begin(), work.end(), [](const Object* left, const Object* right) {
        return sizeOf(left->units) > sizeOf(right->units);
    });
    std::atomic<std::size_t> next{0};
    const auto compileSome = [&] {
        for (std::size_t i = next++; i < work.size(); i = next++)
            compileObject(*work[i]);
    };
    m_isAnyMade = m_isAnyMade || !work.empty();
    std::vector<std::thread> helpers;
    try {
        for (std::size_t i = 1; i < std::min(cores(), work.size()); ++i)
            helpers.emplace_back(compileSome);
    } catch (const std::system_error&) {
        // Those that are there, this thread at least, do the work of all.
    }
    compileSome();
    for (std::thread& helper : helpers)
        helper.join();
}

void ModuleBuild::compileObject(Object& object)
{
    const QString path = m_cache.objectOf(object.key);
    const QString unfinished = path + unfinishedSuffix;
    m_cache.forget(object.key);
    object.isMade = true;
    QStringList sources;
    for (const codegen::GeneratedFile* unit : object.units)
        sources << QString::fromStdString(unit->name);
    object.outcome = runLimited(
        m_command.compileArguments(sources, unfinished, m_cache.dependenciesOf(object.key)));
    if (object.outcome.kind != CompilerOutcome::Succeeded)
        QFile::remove(unfinished);
    else if (file_writing::moveOver(unfinished, path).isEmpty())
        m_cache.keep(object.key);
    else
        object.outcome = {CompilerOutcome::NotWritten, path.toUtf8()};
}

/// What a group fails for is told of the unit that is to blame for it.
void ModuleBuild::partFailed()
{
    const auto isFailed = [](const Object& object) {
        switch (object.outcome.kind) {
        case CompilerOutcome::Failed:
        case CompilerOutcome::OutOfMemory:
        case CompilerOutcome::FileTooLarge:
            return true;
        default:
            return false;
        }
    };
    QByteArray words;
    for (const Object& object : m_objects)
        words += isFailed(object) ? object.outcome.output : QByteArray();
    part(isFailed, words);
}

/// Compiles the units of groups each by itself: those of which @p words tell, and if these are good
/// the others.
void ModuleBuild::part(const std::function<bool(const Object&)>& isMeant, const QByteArray& words)
{
    UnitGroup named;
    UnitGroup others;
    const auto takeUnits = [&](const Object& object) {
        if (object.units.size() == 1 || !isMeant(object))
            return false;
        for (const codegen::GeneratedFile* unit : object.units) {
            const bool isNamed = words.contains(QByteArray::fromStdString(unit->name + ':'));
            (isNamed ? named : others).push_back(unit);
        }
        return true;
    };
    m_objects.erase(std::remove_if(m_objects.begin(), m_objects.end(), takeUnits), m_objects.end());
    for (const UnitGroup& units : {named, others}) {
        for (const codegen::GeneratedFile* unit : units)
            add({unit}, m_cache.holds(m_cache.keyOf({unit})));
        compileObjects();
        const bool isAnyBad =
            std::any_of(m_objects.begin(), m_objects.end(), [](const Object& object) {
                return object.outcome.kind != CompilerOutcome::Succeeded;
            });
        if (isAnyBad)
            return;
    }
}

void ModuleBuild::keepGroups() const
{
    QList<QByteArrayList> groups;
    for (const Object& object : m_objects) {
        if (object.units.size() == 1 || object.outcome.kind != CompilerOutcome::Succeeded)
            continue;
        groups << QByteArrayList();
        for (const codegen::GeneratedFile* unit : object.units)
            groups.last() << m_cache.keyOf({unit});
    }
    m_cache.keepGroups(groups);
}

/// What the linker misses it tells of objects: each has one unit then.
CompilerOutcome ModuleBuild::linkParted(const QString& path)
{
    const CompilerOutcome outcome = link(path);
    if (outcome.kind != CompilerOutcome::Failed)
        return outcome;
    const std::size_t before = m_objects.size();
    part([&](const Object& object) { return outcome.output.contains(object.key); }, outcome.output);
    return m_objects.size() == before ? outcome : link(path);
}

CompilerOutcome ModuleBuild::link(const QString& path)
{
    const QString unfinished = path + unfinishedSuffix;
    QStringList objects;
    for (const Object& object : m_objects)
        objects << QDir(m_folder).relativeFilePath(m_cache.objectOf(object.key));
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
        for (const Object& object : m_objects) {
            if (object.isKept)
                m_cache.forget(object.key);
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
