#include "runner/waiting_reports.h"

#include <algorithm>
#include <cstring>

void WaitingReports::setSteps(std::size_t count)
{
    m_places.assign(2 * count, 0);
}

const StepReport* WaitingReports::sorted()
{
    std::sort(m_reports, m_reports + m_count,
              [](const StepReport& a, const StepReport& b) { return a.order < b.order; });
    return m_reports;
}

void WaitingReports::putOther(std::uint32_t step, double progress, int result)
{
    std::uint64_t bits = 0;
    std::memcpy(&bits, &progress, sizeof bits);
    std::uint64_t hash = bits ^ (std::uint64_t(step) << 32 | static_cast<std::uint32_t>(result));
    hash *= 0x9e3779b97f4a7c15u;
    // Another report's place is as good as a stale one: both then wait twice at worst.
    putAt(m_otherPlaces[(hash >> 40) % OtherPlaces], step, progress, result);
}
