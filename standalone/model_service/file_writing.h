#pragma once

#include <QByteArray>
#include <QString>

namespace standalone {

/// Replaces a file atomically. False if that failed, which also goes to the host's log.
bool writeFile(const QString& path, const QByteArray& content);

} // namespace standalone
