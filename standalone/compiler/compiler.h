#pragma once

namespace standalone {

/// Kills running compilers and waits for their threads; no compile callback comes after it. The
/// host calls it before it tears down what the callbacks use. GUI thread.
void shutdownCompiler();

} // namespace standalone
