#include "sequences/template_file.h"

#include "base/file_reading.h"
#include "base/file_writing.h"
#include "model/services/host.h"
#include "model/services/log.h"
#include "model/services/process_json_edit.h"
#include "model/services/processedit.h"

namespace processedit = sdk_ui_interface::processedit;

namespace template_file {

namespace {

// Empty without a project.
QString path()
{
    const QString project = getProjectManager()->projectPath();
    return project.isEmpty() ? QString() : project + QStringLiteral("/processtemplate.peTemp");
}

} // namespace

void loadOnce()
{
    if (process_json_edit::isTempldateLoaded())
        return;
    const auto file = file_reading::read(path(), file_reading::MostOfDocument);
    if (file.isRead)
        processedit::loadTemplateJsonStr(QString::fromUtf8(file.content));
    else if (!file.isMissing)
        sdk_ui_interface::log::log_error(
            QStringLiteral("[流程编辑] 无法读取 %1: %2").arg(path(), file.complaint));
}

void save()
{
    const QString fileName = path();
    if (fileName.isEmpty())
        return;
    const QString complaint =
        file_writing::replace(fileName, processedit::generateTemplateJsonStr().toUtf8());
    if (!complaint.isEmpty())
        sdk_ui_interface::log::log_error(
            QStringLiteral("[流程编辑] 无法写入 %1: %2").arg(fileName, complaint));
}

} // namespace template_file
