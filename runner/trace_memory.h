#pragma once

#include <cstddef>

namespace trace_memory {

/// Makes the file behind @p file that large and maps it, shared with whoever holds the file too;
/// null if that can't be. The number is closed either way.
void* map(int file, std::size_t size);

} // namespace trace_memory
