#include "workbench/ProjectFolder.h"

#include "base/file_reading.h"
#include "base/file_writing.h"
#include "model/services/log.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSettings>

namespace {

const QString documentName = QStringLiteral("processInfo.pedt");
const QString orderFileName = QStringLiteral("/project.json");
const QString orderKey = QStringLiteral("applets");
const QString lastAppletGroup = QStringLiteral("lastApplet/");

QString settingsKey(const QString& projectPath)
{
    return lastAppletGroup +
           QString::fromLatin1(projectPath.toUtf8().toBase64(QByteArray::Base64UrlEncoding));
}

// Empty if there is none or it can't be read: the order is a convenience.
QJsonObject readOrderFile(const QString& projectPath)
{
    const auto file = file_reading::read(projectPath + orderFileName, file_reading::MostOfTable);
    return QJsonDocument::fromJson(file.content).object();
}

} // namespace

ProjectFolder::ProjectFolder(const QString& path) : m_path(QDir(path).absolutePath()) {}

QString ProjectFolder::name() const
{
    return QFileInfo(m_path).fileName();
}

QString ProjectFolder::complaint() const
{
    const QFileInfo info(m_path);
    if (!info.exists())
        return QStringLiteral("工程文件夹不存在: ") + m_path;
    if (!info.isDir())
        return QStringLiteral("不是工程文件夹: ") + m_path;
    if (!info.isReadable() || !info.isExecutable())
        return QStringLiteral("工程文件夹无法读取: ") + m_path;
    return QString();
}

QStringList ProjectFolder::applets() const
{
    QStringList names;
    const QDir folder(m_path + QStringLiteral("/CApplet"));
    for (const QString& name : folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
        const QString applet = folder.filePath(name) + QLatin1Char('/');
        // Documents of older versions are two files.
        if (QFile::exists(applet + documentName) ||
            QFile::exists(applet + QStringLiteral("logicview.json")))
            names.append(name);
    }
    QStringList ordered;
    for (const QJsonValue& value : readOrderFile(m_path).value(orderKey).toArray()) {
        if (names.removeOne(value.toString()))
            ordered.append(value.toString());
    }
    return ordered + names;
}

void ProjectFolder::keepOrder(const QString& oldName, const QString& newName) const
{
    QJsonArray order;
    bool isPlaced = newName.isEmpty();
    for (const QString& name : applets()) {
        if (name != oldName && name != newName) {
            order.append(name);
        } else if (name == oldName && !isPlaced) {
            order.append(newName);
            isPlaced = true;
        }
    }
    if (!isPlaced)
        order.append(newName);
    QJsonObject root = readOrderFile(m_path);
    root.insert(orderKey, order);
    const QString reason =
        file_writing::replace(m_path + orderFileName, QJsonDocument(root).toJson());
    if (!reason.isEmpty())
        sdk_ui_interface::log::log_error(
            QStringLiteral("无法写入 %1: %2").arg(m_path + orderFileName, reason));
}

QString ProjectFolder::appletFolder(const QString& name) const
{
    return QStringLiteral("%1/CApplet/%2/").arg(m_path, name);
}

QString ProjectFolder::outputFolder(const QString& name, const char* suffix) const
{
    return QStringLiteral("%1/CApplet/%2%3").arg(m_path, name, QLatin1String(suffix));
}

QString ProjectFolder::complaintAboutName(const QString& name) const
{
    static const QRegularExpression rule(QStringLiteral("^[a-zA-Z_][a-zA-Z0-9_]{0,63}$"));
    if (!rule.match(name).hasMatch())
        return QStringLiteral("名称需以字母或下划线开头，只含字母、数字和下划线: ") + name;
    if (QFileInfo::exists(appletFolder(name)))
        return QStringLiteral("已存在同名小程序: ") + name;
    for (const char* suffix : {"_code", "_mp"}) {
        // Its folder would be taken for the output of another applet.
        if (name.endsWith(QLatin1String(suffix)))
            return QStringLiteral("名称不能以 %1 结尾").arg(QLatin1String(suffix));
    }
    return QString();
}

QString ProjectFolder::createApplet(const QString& name) const
{
    const QString complaint = complaintAboutName(name);
    if (!complaint.isEmpty())
        return complaint;
    if (!QDir().mkpath(appletFolder(name)))
        return QStringLiteral("无法创建文件夹: ") + appletFolder(name);
    const QString document = appletFolder(name) + documentName;
    const QString reason = file_writing::replace(document, "{\n}\n");
    if (!reason.isEmpty())
        return QStringLiteral("无法写入 %1: %2").arg(document, reason);
    keepOrder(QString(), name);
    return QString();
}

QString ProjectFolder::renameApplet(const QString& oldName, const QString& newName) const
{
    const QString complaint = complaintAboutName(newName);
    if (!complaint.isEmpty())
        return complaint;
    if (!hasApplet(oldName))
        return QStringLiteral("工程中没有此小程序: ") + oldName;
    // Before the folder: afterwards the old name's place would be unknown.
    keepOrder(oldName, newName);
    if (!QDir().rename(appletFolder(oldName), appletFolder(newName))) {
        keepOrder(newName, oldName);
        return QStringLiteral("无法重命名文件夹: ") + appletFolder(oldName);
    }
    // Generated code and module bear the old name inside; the next compile makes new ones.
    for (const char* suffix : {"_code", "_mp"})
        QDir(outputFolder(oldName, suffix)).removeRecursively();
    return QString();
}

QString ProjectFolder::removeApplet(const QString& name) const
{
    const QString folder = appletFolder(name);
    if (!QFile::moveToTrash(folder) && !QDir(folder).removeRecursively())
        return QStringLiteral("无法删除文件夹: ") + folder;
    keepOrder(name, QString());
    for (const char* suffix : {"_code", "_mp"})
        QDir(outputFolder(name, suffix)).removeRecursively();
    return QString();
}

QString ProjectFolder::lastApplet() const
{
    return QSettings().value(settingsKey(m_path)).toString();
}

void ProjectFolder::setLastApplet(const QString& name) const
{
    QSettings().setValue(settingsKey(m_path), name);
}
