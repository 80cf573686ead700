#include "base/file_sync.h"

#include <unistd.h>

#include <cerrno>

bool file_sync::bringToDisk(int descriptor)
{
    while (fdatasync(descriptor) != 0) {
        if (errno != EINTR)
            return errno == EINVAL || errno == ENOSYS;
    }
    return true;
}
