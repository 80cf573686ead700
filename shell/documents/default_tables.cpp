#include "shell/documents/default_tables.h"

#include "base/document_text.h"
#include "base/file_reading.h"
#include "base/kept_copies.h"
#include "model/services/host.h"
#include "model/services/log.h"
#include "model/services/process_json_edit.h"
#include "model/services/processedit.h"

#include <QCoreApplication>
#include <QFile>

#include <string>

namespace default_tables {

namespace {

// Parsed and written back, so that the service gets clean JSON or nothing. A missing file is an
// empty table, without a word unless it ships with the application; one that is there and can't be
// read is kept aside, because the next save of the project's tables would replace it.
QByteArray readTable(const QString& fileName)
{
    const auto file = file_reading::read(fileName, file_reading::MostOfTable);
    if (file.isMissing)
        return QByteArray();
    QString complaint = file.complaint;
    if (file.isRead) {
        std::string text;
        if (document_text::indent({file.content.constData(), std::size_t(file.content.size())},
                                  text, complaint))
            return QByteArray::fromStdString(text);
    }
    const QString copy = kept_copies::keep(fileName, kept_copies::damaged);
    sdk_ui_interface::log::log_error(
        QStringLiteral("[流程编辑] 无法读取 %1: %2; ").arg(fileName, complaint) +
        (copy.isEmpty() ? QStringLiteral("也无法另存") : QStringLiteral("已保留为 ") + copy));
    return QByteArray();
}

QString chosenFolder;

QString shipped(const char* fileName)
{
    const QString folder = chosenFolder.isEmpty() ? QCoreApplication::applicationDirPath() +
                                                        QStringLiteral("/Business/Teststand")
                                                  : chosenFolder;
    return folder + u'/' + QLatin1String(fileName);
}

} // namespace

void setFolder(const QString& folder)
{
    chosenFolder = folder;
}

QString stepTable()
{
    return shipped("defaultStep.json");
}

void loadOnce()
{
    const QString project = getProjectManager()->projectPath();
    if (!process_json_edit::isDefaultStepLoaded()) {
        const QString steps = stepTable();
        const QByteArray table = readTable(steps);
        process_json_edit::loadDefaultStepJson(table.toStdString());
        // Without it nothing can be added, which an empty palette doesn't explain.
        if (!QFile::exists(steps))
            sdk_ui_interface::log::log_error(
                QStringLiteral("[流程编辑] 找不到步骤类型表 %1，步骤类型列表为空").arg(steps));
    }
    if (!process_json_edit::isQucikStepLoaded())
        sdk_ui_interface::processedit::loadQuickStepJsonStr(
            QString::fromUtf8(readTable(project + QStringLiteral("/quickStep.json"))));
    if (!process_json_edit::isDefaultGlobalVarLoaded())
        process_json_edit::loadDefaultVariable(
            readTable(shipped("defaultVariable.json")).toStdString());
    if (!process_json_edit::isUserGlobalVarLoaded())
        process_json_edit::loadGlobalVariable(
            readTable(project + QStringLiteral("/globalVariable.json")).toStdString());
}

} // namespace default_tables
