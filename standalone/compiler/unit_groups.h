#pragma once

#include "standalone/codegen/applet_source.h"

#include <cstddef>
#include <vector>

/// Units that one run of the compiler takes together: its start and the shared headers cost as much
/// as a score of small sequences.
namespace standalone {

using UnitGroup = std::vector<const codegen::GeneratedFile*>;

/// Of the texts, in bytes.
std::size_t sizeOf(const UnitGroup& group);

/// Divides units into groups that keep all cores busy. A group is small enough
/// that it costs little to compile anew what is left of it when one of its units has changed. Units
/// that might reach into others by their directives stay alone, and so do few. So many small units
/// @p besides are compiled at the same time, each by itself.
std::vector<UnitGroup> groupsOf(const UnitGroup& units, std::size_t besides, std::size_t cores);

} // namespace standalone
