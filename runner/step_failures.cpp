#include "runner/step_failures.h"

std::string StepFailures::add(u32 step, int result, s64 ownTurn, std::uint64_t loopTurn)
{
    Failures& failures = m_failures[step];
    ++failures.count;
    if (failures.lines == MostLines)
        return std::string();
    unsigned& equal = failures.linesOf[result];
    if (equal == Lines)
        return std::string();
    ++failures.lines;
    ++equal;

    std::string line = nameOf(step) + "失败(" + std::to_string(result) + ')';
    if (loopTurn > 0)
        line += ", 循环第 " + std::to_string(loopTurn) + " 次";
    if (ownTurn > 0)
        line += ", 重复第 " + std::to_string(ownTurn) + " 次";
    if (failures.lines == MostLines)
        line += "; 此后该步骤的失败只计数";
    else if (equal == Lines)
        line += "; 此后相同的失败只计数";
    return line;
}

std::vector<std::string> StepFailures::totals() const
{
    std::vector<std::string> lines;
    for (const auto& [step, failures] : m_failures) {
        if (failures.count > failures.lines)
            lines.push_back(nameOf(step) + "共失败 " + std::to_string(failures.count) +
                            " 次, 其中 " + std::to_string(failures.count - failures.lines) +
                            " 次未逐次记录");
    }
    return lines;
}

std::string StepFailures::nameOf(u32 step) const
{
    const applet_step& failed = m_module->steps[step];
    return std::string("序列“") + m_module->sequences[failed.sequence].name + "”的步骤“" +
           failed.name + "”";
}
