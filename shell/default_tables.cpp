#include "shell/default_tables.h"

#include "model/services/host.h"
#include "model/services/process_json_edit.h"
#include "model/services/processedit.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>

namespace default_tables {

namespace {

// Parsed and written back, so that the service gets clean JSON or nothing.
QByteArray readTable(const QString& fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return QByteArray();
    return QJsonDocument::fromJson(file.readAll()).toJson();
}

} // namespace

void loadOnce()
{
    const QString shipped =
        QCoreApplication::applicationDirPath() + QStringLiteral("/Business/Teststand/");
    const QString project = getProjectManager()->projectPath();
    if (!process_json_edit::isDefaultStepLoaded())
        process_json_edit::loadDefaultStepJson(
            readTable(shipped + QStringLiteral("defaultStep.json")).toStdString());
    if (!process_json_edit::isQucikStepLoaded())
        sdk_ui_interface::processedit::loadQuickStepJsonStr(
            QString::fromUtf8(readTable(project + QStringLiteral("/quickStep.json"))));
    if (!process_json_edit::isDefaultGlobalVarLoaded())
        process_json_edit::loadDefaultVariable(
            readTable(shipped + QStringLiteral("defaultVariable.json")).toStdString());
    if (!process_json_edit::isUserGlobalVarLoaded())
        process_json_edit::loadGlobalVariable(
            readTable(project + QStringLiteral("/globalVariable.json")).toStdString());
}

} // namespace default_tables
