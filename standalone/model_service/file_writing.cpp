#include "standalone/model_service/file_writing.h"

#include "model/services/log.h"

#include <QSaveFile>

namespace standalone {

bool writeFile(const QString& path, const QByteArray& content)
{
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.commit())
        return true;
    sdk_ui_interface::log::log_error(
        QStringLiteral("[流程编辑] 无法写入 %1: %2").arg(path, file.errorString()));
    return false;
}

} // namespace standalone
