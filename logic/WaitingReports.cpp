#include "logic/WaitingReports.h"

namespace {

constexpr std::size_t FewestSlots = 64;

} // namespace

bool WaitingReports::append(runProcessState report)
{
    if (2 * (m_reports.size() + 1) > m_slots.size())
        grow();
    const uint hash = qHash(report);
    const std::size_t mask = m_slots.size() - 1;
    std::size_t slot = hash & mask;
    for (; m_slots[slot].place >= 0; slot = (slot + 1) & mask) {
        if (m_slots[slot].hash == hash && m_reports[std::size_t(m_slots[slot].place)] == report)
            return false;
    }
    m_slots[slot] = {hash, int(m_reports.size())};
    m_reports.push_back(std::move(report));
    return true;
}

runProcessState& WaitingReports::last()
{
    if (m_reports.empty())
        append(runProcessState());
    return m_reports.back();
}

std::vector<runProcessState> WaitingReports::take()
{
    std::vector<runProcessState> reports;
    reports.swap(m_reports);
    m_slots.clear();
    return reports;
}

void WaitingReports::grow()
{
    const std::vector<Slot> earlier = std::move(m_slots);
    m_slots = std::vector<Slot>(earlier.empty() ? FewestSlots : 2 * earlier.size());
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
