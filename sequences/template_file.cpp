#include "sequences/template_file.h"

#include "model/services/host.h"
#include "model/services/log.h"
#include "model/services/process_json_edit.h"
#include "model/services/processedit.h"

#include <QFile>
#include <QSaveFile>

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
    QFile file(path());
    if (file.open(QIODevice::ReadOnly))
        processedit::loadTemplateJsonStr(QString::fromUtf8(file.readAll()));
}

void save()
{
    const QString fileName = path();
    if (fileName.isEmpty())
        return;
    QSaveFile file(fileName);
    const QByteArray text = processedit::generateTemplateJsonStr().toUtf8();
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.commit())
        sdk_ui_interface::log::log_error(
            QStringLiteral("[流程编辑] 无法写入 %1: %2").arg(fileName, file.errorString()));
}

} // namespace template_file
