#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

/// A step's report, before it is a record.
struct StepReport
{
    std::uint64_t order;
    double progress;
    std::uint32_t step;
    int result;
};

/// The step reports that wait to be sent. Of equal ones the last stays, where it stands in the
/// order: that leaves every row in the state which all of them would have left, and the last one is
/// what the run did last. A report with another result is another report, so that a failure stays.
///
/// Not shared between threads by itself. Allocates in setSteps only.
class WaitingReports
{
public:
    static constexpr std::size_t Capacity = 4096;

    void setSteps(std::size_t count);

    /// A few nanoseconds for a begin or a good end that waits already. There is room for it.
    void put(std::uint32_t step, double progress, int result)
    {
        if (result != 0 || (progress != 0.0 && progress != 100.0))
            putOther(step, progress, result);
        else
            putAt(m_places[2 * std::size_t(step) + (progress != 0.0)], step, progress, result);
    }

    bool isFull() const { return m_count == Capacity; }
    bool isEmpty() const { return m_count == 0; }

    /// Brings what waits into its order. Valid until the next put.
    const StepReport* sorted();
    std::size_t count() const { return m_count; }
    void clear() { m_count = 0; }

private:
    static constexpr std::size_t OtherPlaces = 2 * Capacity;

    /// A place may be stale: what stands there tells whether it is this report's.
    void putAt(std::uint32_t& place, std::uint32_t step, double progress, int result)
    {
        if (place < m_count && isAt(place, step, progress, result)) {
            m_reports[place].order = ++m_order;
            return;
        }
        place = static_cast<std::uint32_t>(m_count);
        m_reports[m_count] = {++m_order, progress, step, result};
        ++m_count;
    }
    bool isAt(std::uint32_t place, std::uint32_t step, double progress, int result) const
    {
        const StepReport& waiting = m_reports[place];
        return waiting.step == step && waiting.progress == progress && waiting.result == result;
    }
    void putOther(std::uint32_t step, double progress, int result);

    StepReport m_reports[Capacity];
    std::size_t m_count = 0;
    std::uint64_t m_order = 0;
    std::vector<std::uint32_t> m_places;           ///< of a step's begin and of its good end
    std::uint32_t m_otherPlaces[OtherPlaces] = {}; ///< of all others, by hash
};
