#pragma once

#include <QByteArray>
#include <QString>

namespace standalone {

/// Replaces a file of the project that the services own. False if that failed, which also goes to
/// the host's log; the file is then as it was.
bool writeProjectFile(const QString& path, const QByteArray& content);

} // namespace standalone
