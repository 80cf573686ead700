#include "standalone/model_service/stores/project_file.h"

#include "base/file_writing.h"
#include "model/services/log.h"

namespace standalone {

bool writeProjectFile(const QString& path, const QByteArray& content)
{
    const QString complaint = file_writing::replace(path, content);
    if (!complaint.isEmpty())
        sdk_ui_interface::log::log_error(
            QStringLiteral("[流程编辑] 无法写入 %1: %2").arg(path, complaint));
    return complaint.isEmpty();
}

} // namespace standalone
