#pragma once

#include <QString>

class QFile;

/// Opening for reading without waiting for what is no regular file. Any thread.
namespace regular_file {

/// Opens @p file, which has its name, for reading. Empty on success, else why not in a few words;
/// it is closed then.
QString open(QFile& file);

} // namespace regular_file
