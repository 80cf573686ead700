#include "logic/run/RunInbox.h"

#include "logic/run/run_states.h"

#include <QCoreApplication>
#include <QMutexLocker>

void CalledTemplates::enter(const QString& templateId)
{
    if (++m_depth <= MostKept)
        m_ids.append(templateId.isEmpty() ? inForce() : templateId);
}

void CalledTemplates::leave()
{
    // A run that says so more often than it entered is at its beginning again.
    if (m_depth > 0 && --m_depth < m_ids.size())
        m_ids.removeLast();
}

RunInbox::RunInbox(std::function<void()> wake) : m_wake(std::move(wake)) {}

RunInbox::Content RunInbox::take(bool withReports)
{
    Content content;
    int lost = 0;
    {
        const QMutexLocker lock(&m_stateMutex);
        if (withReports) {
            content.reports.swap(m_stateQueue);
            m_slots.clear();
        }
        content.progress.swap(m_progress);
        content.lines.swap(m_lines);
        std::swap(lost, m_lostLines);
        m_isWoken = false;
    }
    if (lost > 0)
        content.lines.push_back(
            {content.lines.back().appName,
             QCoreApplication::translate("RunInbox", "… %1 行已省略").arg(lost)});
    return content;
}

std::optional<RunInbox::Progress> RunInbox::takeProgress()
{
    std::optional<Progress> progress;
    const QMutexLocker lock(&m_stateMutex);
    progress.swap(m_progress);
    return progress;
}

void RunInbox::open()
{
    const QMutexLocker lock(&m_stateMutex);
    reset(true);
}

void RunInbox::close()
{
    const QMutexLocker lock(&m_stateMutex);
    reset(false);
}

void RunInbox::reset(bool isOpen)
{
    m_isOpen = isOpen && m_wake;
    m_stateQueue.clear();
    m_slots.clear();
    m_templates = {};
    m_runBlockPlaces.clear();
    m_runBlockCount = 0;
    m_progress.reset();
}

void RunInbox::setBlocks(const QVector<QString>& blockUuids)
{
    QHash<QString, int> places;
    places.reserve(blockUuids.size());
    // Backwards, so that of two equal ones the first place stands.
    for (int place = blockUuids.size() - 1; place >= 0; --place)
        places.insert(blockUuids[place], place);
    const QMutexLocker lock(&m_stateMutex);
    m_runBlockPlaces.swap(places);
    m_runBlockCount = blockUuids.size();
}

void RunInbox::setRunningApp(const QString& appName)
{
    const QMutexLocker lock(&m_stateMutex);
    m_runningApp = appName;
}

void RunInbox::shut()
{
    const QMutexLocker lock(&m_stateMutex);
    m_wake = nullptr;
    reset(false);
    m_lines.clear();
    m_lostLines = 0;
}

void RunInbox::report(const QString& sequenceId, const QString& blockUuid, double progress,
                      int result)
{
    const QMutexLocker lock(&m_stateMutex);
    add(sequenceId, blockUuid, progress, result);
}

void RunInbox::reportOf(const QString& appName, const QString& sequenceId, const QString& blockUuid,
                        double progress, int result)
{
    const QMutexLocker lock(&m_stateMutex);
    if (isRunning(appName))
        add(sequenceId, blockUuid, progress, result);
}

void RunInbox::sequenceChange(const QString& sequenceId, bool isEnd, const QString& templateId)
{
    const QMutexLocker lock(&m_stateMutex);
    addChange(sequenceId, isEnd, templateId);
}

void RunInbox::sequenceChangeOf(const QString& appName, const QString& sequenceId, bool isEnd,
                                const QString& templateId)
{
    const QMutexLocker lock(&m_stateMutex);
    if (isRunning(appName))
        addChange(sequenceId, isEnd, templateId);
}

void RunInbox::line(const QString& appName, const QString& text)
{
    const QMutexLocker lock(&m_stateMutex);
    if (!m_wake)
        return;
    if (m_lines.size() >= MostLines) {
        ++m_lostLines;
        return;
    }
    m_lines.push_back({appName, text});
    wake();
}

bool RunInbox::isRunning(const QString& appName) const
{
    return !m_runningApp.isEmpty() && appName == m_runningApp;
}

void RunInbox::add(const QString& sequenceId, const QString& blockUuid, double progress, int result)
{
    if (!m_isOpen)
        return;
    runProcessState state;
    state.seqUuid = sequenceId;
    state.blockuuid = blockUuid;
    state.iProgress = progress;
    state.result = result;
    state.templateId = m_templates.inForce();
    append(std::move(state));
    const auto place = m_runBlockPlaces.constFind(blockUuid);
    if (place != m_runBlockPlaces.constEnd())
        m_progress = {run_states::totalProgress(*place, m_runBlockCount, progress), result};
    wake();
}

void RunInbox::addChange(const QString& sequenceId, bool isEnd, const QString& templateId)
{
    if (!m_isOpen)
        return;
    if (m_stateQueue.empty())
        append(runProcessState());
    runProcessState& last = m_stateQueue.back();
    last.gotoSeqUuid = sequenceId;
    last.isEnd = isEnd;
    last.hasGotoTemplate = !templateId.isEmpty();
    if (last.hasGotoTemplate)
        last.gotoTemplateId = templateId;
    last.hasGoto = true;
    if (isEnd)
        m_templates.leave();
    else
        m_templates.enter(templateId);
    wake();
}

void RunInbox::append(runProcessState report)
{
    if (2 * (m_stateQueue.size() + 1) > m_slots.size())
        growSlots();
    const uint hash = qHash(report);
    const std::size_t mask = m_slots.size() - 1;
    std::size_t slot = hash & mask;
    for (; m_slots[slot].place >= 0; slot = (slot + 1) & mask) {
        if (m_slots[slot].hash == hash && m_stateQueue[std::size_t(m_slots[slot].place)] == report)
            return;
    }
    m_slots[slot] = {hash, int(m_stateQueue.size())};
    m_stateQueue.push_back(std::move(report));
}

void RunInbox::growSlots()
{
    constexpr std::size_t Fewest = 64;
    const std::vector<Slot> earlier = std::move(m_slots);
    m_slots = std::vector<Slot>(earlier.empty() ? Fewest : 2 * earlier.size());
    const std::size_t mask = m_slots.size() - 1;
    for (const Slot& entry : earlier) {
        if (entry.place < 0)
            continue;
        std::size_t slot = entry.hash & mask;
        while (m_slots[slot].place >= 0)
            slot = (slot + 1) & mask;
        m_slots[slot] = entry;
    }
}

void RunInbox::wake()
{
    if (m_isWoken)
        return;
    m_isWoken = true;
    m_wake();
}
