#pragma once

#include "runner/applet_module.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

/// What the log says of steps that fail. Each failure has a line, until a step fails again and
/// again: of equal ones the first Lines do, of one step's the first MostLines, and the others are
/// counted. For the thread that runs the applet.
class StepFailures
{
public:
    static constexpr unsigned Lines = 10;
    static constexpr unsigned MostLines = 100;

    void setModule(const applet_module& module) { m_module = &module; }

    /// The line of a failure; empty if it is only counted. @p ownTurn is the turn of the step's own
    /// loop, @p loopTurn that of the loop around it; 0: none, or not known.
    std::string add(u32 step, int result, s64 ownTurn, std::uint64_t loopTurn);

    /// A line for each step with failures that had none.
    std::vector<std::string> totals() const;

private:
    struct Failures
    {
        std::uint64_t count = 0;
        unsigned lines = 0;
        std::map<int, unsigned> linesOf; ///< by result
    };

    std::string nameOf(u32 step) const;

    const applet_module* m_module = nullptr;
    std::map<u32, Failures> m_failures; ///< by step
};
