#include "runner/standard_output.h"

#include "runner/channel.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <stdio_ext.h>
#include <unistd.h>

namespace standard_output {

namespace {

char buffer[BUFSIZ];
bool isOurs = false;

} // namespace

void take()
{
    isOurs = std::setvbuf(stdout, buffer, _IOLBF, sizeof buffer) == 0;
}

void flushAfterCrash()
{
    // The library's own flush takes a lock, which the crash may have come under. An applet that has
    // given the stream another buffer sees to that.
    if (isOurs && __fbufsize(stdout) == sizeof buffer)
        channel::write(STDOUT_FILENO, buffer, std::min(__fpending(stdout), sizeof buffer));
}

void flushUnlessBusy()
{
    if (ftrylockfile(stdout) != 0)
        return;
    fflush_unlocked(stdout);
    funlockfile(stdout);
}

void detach()
{
    isOurs = false;
}

} // namespace standard_output
