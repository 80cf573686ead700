#include "standalone/compiler/compiler.h"

#include "standalone/compiler/CompileService.h"

namespace standalone {

void shutdownCompiler()
{
    CompileService::instance().shutDown();
}

} // namespace standalone
