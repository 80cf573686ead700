#include "shell/documents/exchange_drops.h"

#include <QFileInfo>
#include <QMimeData>
#include <QUrl>

namespace exchange_drops {

QStringList files(const QMimeData& data)
{
    QStringList found;
    for (const QUrl& url : data.urls()) {
        const QString file = url.toLocalFile();
        const QString suffix = QFileInfo(file).suffix();
        if (suffix.endsWith(QLatin1String("dpe"), Qt::CaseInsensitive) ||
            suffix.endsWith(QLatin1String("dpeenc"), Qt::CaseInsensitive))
            found.append(file);
    }
    return found;
}

} // namespace exchange_drops
