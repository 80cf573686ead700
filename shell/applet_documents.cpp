#include "shell/applet_documents.h"

#include "shell/kept_copies.h"

#include "model/applet_name.h"
#include "model/services/log.h"
#include "model/services/process_json_edit.h"
#include "model/services/processedit.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

namespace processedit = sdk_ui_interface::processedit;

namespace applet_documents {

const QString documentName = QStringLiteral("processInfo.pedt");

namespace {

const QString logicViewKey = QStringLiteral("logicview");
const QString variablesKey = QStringLiteral("logicvar");

// Reports to the log, or to nobody.
class Reporter
{
public:
    explicit Reporter(bool quiet) : m_quiet(quiet) {}
    void operator()(const QString& text) const
    {
        if (!m_quiet)
            sdk_ui_interface::log::log_error(text);
    }

private:
    bool m_quiet;
};

QJsonObject parseOwn(const QByteArray& json, const QString& complaint)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError)
        sdk_ui_interface::log::log_error(complaint + error.errorString());
    return document.object();
}

bool writeFile(const QString& fileName, const QByteArray& content)
{
    QSaveFile file(fileName);
    // Without this the file would be written in place where the folder can't take a second one.
    file.setDirectWriteFallback(false);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() &&
           file.commit();
}

bool hasAnyBlock(const QString& appName)
{
    for (const SequenceInfo& info : processedit::getAllSequenceByAppName(appName)) {
        const bool empty =
            info.initialFlow.empty() && info.mainFlow.empty() && info.endFlow.empty();
        if (!info.id.empty() && !empty)
            return true;
    }
    return false;
}

// What each document held when it was last read or written here, by absolute path.
QHash<QString, QByteArray>& knownContents()
{
    static QHash<QString, QByteArray> fingerprints;
    return fingerprints;
}

void remember(const QString& fileName, const QByteArray& content)
{
    knownContents().insert(QFileInfo(fileName).absoluteFilePath(),
                           QCryptographicHash::hash(content, QCryptographicHash::Sha1));
}

void keepIfReplaced(const QString& fileName)
{
    const auto known = knownContents().constFind(QFileInfo(fileName).absoluteFilePath());
    QFile file(fileName);
    if (known == knownContents().constEnd() || !file.open(QIODevice::ReadOnly) ||
        QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha1) == *known)
        return;
    const QString copy = kept_copies::keep(fileName, kept_copies::replaced);
    sdk_ui_interface::log::log_error(
        QStringLiteral("[流程编辑] 流程文件已被其他程序修改, 其内容保留为: ") + copy);
}

// The next save would replace the document.
void keepDamaged(const QString& fileName, const Reporter& report)
{
    const QString copy = kept_copies::keep(fileName, kept_copies::damaged);
    report(copy.isEmpty() ? QStringLiteral("[流程编辑] 无法保留损坏的流程文件: ") + fileName
                          : QStringLiteral("[流程编辑] 已保留损坏的流程文件: ") + copy);
}

QByteArray objectText(const QJsonValue& value)
{
    return QJsonDocument(value.toObject()).toJson();
}

void readDocument(const QString& appName, const QString& fileName, const Reporter& report)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        report(QStringLiteral("[流程编辑] 无法读取流程文件: %1 (%2)")
                   .arg(fileName, file.errorString()));
        keepDamaged(fileName, report);
        return;
    }
    const QByteArray text = file.readAll();
    remember(fileName, text);
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject()) {
        report(QStringLiteral("[流程编辑] 流程json文件解析失败: ") + error.errorString());
        keepDamaged(fileName, report);
        return;
    }
    const QJsonObject root = document.object();
    if (root.contains(logicViewKey))
        processedit::loadProcessJson(appName,
                                     QString::fromUtf8(objectText(root.value(logicViewKey))));
    if (root.contains(variablesKey))
        process_json_edit::loadAppVariableJson(appletNameBytes(appName),
                                               objectText(root.value(variablesKey)).toStdString());
}

// The text of a file of an older version; empty if there is none or it can't be parsed.
QByteArray readOldFile(const QString& fileName, const QString& complaint, const Reporter& report)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return QByteArray();
    const QByteArray text = file.readAll();
    QJsonParseError error;
    QJsonDocument::fromJson(text, &error);
    if (error.error != QJsonParseError::NoError)
        report(complaint + error.errorString());
    return text;
}

void readOldDocument(const QString& appName, const QString& folder, const Reporter& report)
{
    const QByteArray steps =
        readOldFile(folder + QStringLiteral("logicview.json"),
                    QStringLiteral("[流程编辑] 旧工程读取步骤json错误: "), report);
    processedit::loadProcessJson(appName, QString::fromUtf8(steps));
    const QByteArray variables =
        readOldFile(folder + QStringLiteral("variable.json"),
                    QStringLiteral("[流程编辑] 旧工程读取变量json错误: "), report);
    process_json_edit::loadAppVariableJson(appletNameBytes(appName), variables.toStdString());
}

} // namespace

QString documentPath(const QString& jsonFolder)
{
    return jsonFolder.isEmpty() ? QString() : jsonFolder + documentName;
}

bool write(const QString& appName, const QString& fileName, const StripFunction& strip)
{
    if (fileName.isEmpty())
        return false;
    if (!processedit::getCAppletDataIsExist(appName) && QFile::exists(fileName)) {
        sdk_ui_interface::log::log_error(
            QStringLiteral("[流程编辑] 小程序 %1 没有数据, 不覆盖已有文件: %2")
                .arg(appName, fileName));
        return false;
    }
    QJsonObject logicView = parseOwn(processedit::generateProcessJson(appName).toUtf8(),
                                     QStringLiteral("[流程编辑]: 步骤json解析错误: "));
    if (strip)
        strip(logicView);
    const std::string variables =
        process_json_edit::generateAppAndSequenceVariableJson(appletNameBytes(appName));
    const QJsonObject root{
        {logicViewKey, logicView},
        {variablesKey, parseOwn(QByteArray::fromStdString(variables),
                                QStringLiteral("[流程编辑]: 变量json解析错误: "))}};
    const QByteArray text = QJsonDocument(root).toJson();
    keepIfReplaced(fileName);
    if (!writeFile(fileName, text))
        return false;
    remember(fileName, text);
    return true;
}

void keepBackup(const QString& appName, const QString& fileName, Backup rule)
{
    const QString backup =
        QFileInfo(fileName).path() + QLatin1Char('/') + documentName + QStringLiteral(".bak");
    if (!hasAnyBlock(appName) || (rule == Backup::KeepFirst && QFile::exists(backup)))
        return;
    QFile written(fileName);
    if (!written.open(QIODevice::ReadOnly) || !writeFile(backup, written.readAll()))
        sdk_ui_interface::log::log_error(QStringLiteral("[流程编辑] 无法写入备份: ") + backup);
}

void read(const QString& appName, const QString& jsonFolder, bool quiet)
{
    if (jsonFolder.isEmpty())
        return;
    const Reporter report(quiet);
    const QString document = documentPath(jsonFolder);
    if (QFile::exists(document))
        readDocument(appName, document, report);
    else
        readOldDocument(appName, jsonFolder, report);
}

} // namespace applet_documents
