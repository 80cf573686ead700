#include "standalone/compiler/unit_groups.h"

#include <algorithm>
#include <numeric>
#include <string>

namespace standalone {

namespace {

constexpr std::size_t MostTextOfGroup = 400 * 1024;
constexpr std::size_t CostOfStart = 100 * 1024; ///< of a compiler, as so much text
constexpr std::size_t FewUnits = 4;             ///< for each core

/// Whether nothing in a unit reaches beyond its end: a macro would, or a header that is read once.
bool isClosed(const codegen::GeneratedFile& unit)
{
    const std::string shared = std::string("#include \"") + codegen::SharedHeaderName + '"';
    std::string text = unit.text;
    const std::size_t header = text.find(shared);
    if (header == std::string::npos)
        return false;
    text.erase(header, shared.size());
    const auto isIn = [&text](const char* directive) {
        return text.find(directive) != std::string::npos;
    };
    return !isIn("#") && !isIn("%:") && !isIn("?\?=") && !isIn("_Pragma");
}

} // namespace

std::size_t sizeOf(const UnitGroup& group)
{
    return std::accumulate(
        group.begin(), group.end(), std::size_t(0),
        [](std::size_t sum, const auto* unit) { return sum + unit->text.size(); });
}

std::vector<UnitGroup> groupsOf(const UnitGroup& units, std::size_t besides, std::size_t cores)
{
    std::vector<UnitGroup> groups;
    UnitGroup shared;
    for (const codegen::GeneratedFile* unit : units) {
        if (units.size() > FewUnits * cores && isClosed(*unit))
            shared.push_back(unit);
        else
            groups.push_back({unit});
    }
    const std::size_t least = (sizeOf(shared) + MostTextOfGroup - 1) / MostTextOfGroup;
    std::vector<UnitGroup> divided((least + cores - 1) / cores * cores);
    // The largest first, each to where there is least yet.
    std::stable_sort(shared.begin(), shared.end(), [](const auto* left, const auto* right) {
        return left->text.size() > right->text.size();
    });
    std::vector<std::size_t> sizes(divided.size());
    std::fill_n(sizes.begin(), std::min(besides, sizes.size()), CostOfStart);
    for (const codegen::GeneratedFile* unit : shared) {
        const auto smallest = std::min_element(sizes.begin(), sizes.end());
        *smallest += unit->text.size();
        divided[std::size_t(smallest - sizes.begin())].push_back(unit);
    }
    for (UnitGroup& group : divided) {
        if (!group.empty())
            groups.push_back(std::move(group));
    }
    return groups;
}

} // namespace standalone
