#include "standalone/runtime/machine_memory.h"

#include <unistd.h>

namespace standalone {

qint64 machineMemory()
{
    const long pages = sysconf(_SC_PHYS_PAGES);
    return pages > 0 ? qint64(pages) * sysconf(_SC_PAGESIZE) : 0;
}

} // namespace standalone
