#pragma once

/// What is written of an open file, brought to its disk. Any thread.
namespace file_sync {

/// Waits until the disk has what was written to the descriptor; false if it can't take it. True for
/// a file system that doesn't know the request.
bool bringToDisk(int descriptor);

} // namespace file_sync
