#include "runner/trace_memory.h"

#include <sys/mman.h>
#include <unistd.h>

namespace trace_memory {

void* map(int file, std::size_t size)
{
    void* memory = MAP_FAILED;
    if (ftruncate(file, static_cast<off_t>(size)) == 0)
        memory = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    close(file);
    return memory == MAP_FAILED ? nullptr : memory;
}

} // namespace trace_memory
