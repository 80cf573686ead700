#include "workbench/ProjectFolder.h"

#include "base/document_text.h"
#include "base/file_reading.h"
#include "base/file_writing.h"
#include "base/kept_copies.h"
#include "model/services/log.h"
#include "standalone/compiler/code_folder.h"
#include "standalone/runtime/RunRecord.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QSettings>
#include <QStandardPaths>

#include <string>
#include <string_view>

namespace {

const QString documentName = QStringLiteral("processInfo.pedt");
const QString orderFileName = QStringLiteral("/project.json");
const std::string orderKey = "applets";
const QString recordSuffix = QStringLiteral("_log");
const QString lastAppletGroup = QStringLiteral("lastApplet/");

QString settingsKey(const QString& projectPath)
{
    return lastAppletGroup +
           QString::fromLatin1(projectPath.toUtf8().toBase64(QByteArray::Base64UrlEncoding));
}

/// Members as they stand in the file: what others keep there stays as it is.
struct OrderFile
{
    QByteArray text;
    document_text::Parts parts; // points into the text
    QString complaint;          // of a file that is there and no object
};

OrderFile readOrderFile(const QString& projectPath)
{
    OrderFile order;
    const auto file = file_reading::read(projectPath + orderFileName, file_reading::MostOfTable);
    order.complaint = file.complaint;
    if (!file.isRead)
        return order;
    order.text = file.content;
    const std::string_view text(order.text.constData(), std::size_t(order.text.size()));
    order.parts = document_text::split(text);
    std::string indented;
    if (document_text::indent(text, indented, order.complaint) && !order.parts.isObject)
        order.complaint = QStringLiteral("不是对象");
    return order;
}

QByteArray memberOf(const OrderFile& order, const std::string& name)
{
    const auto found = order.parts.members.find(name);
    return found == order.parts.members.end()
               ? QByteArray()
               : QByteArray(found->second.data(), int(found->second.size()));
}

/// Empty, or why the order couldn't be written.
QString writeOrder(const QString& projectPath, const QJsonArray& names)
{
    const QString path = projectPath + orderFileName;
    OrderFile order = readOrderFile(projectPath);
    if (!order.complaint.isEmpty()) {
        const QString copy = kept_copies::keep(path, kept_copies::damaged);
        if (copy.isEmpty())
            return order.complaint + QStringLiteral(", 也无法另存");
        sdk_ui_interface::log::log_error(
            QStringLiteral("无法读取 %1: %2; 已保留为 %3").arg(path, order.complaint, copy));
        order.parts.members.clear();
    }
    const QByteArray list = QJsonDocument(names).toJson(QJsonDocument::Compact);
    order.parts.members[orderKey] = {list.constData(), std::size_t(list.size())};
    std::string json;
    for (const auto& [name, value] : order.parts.members)
        json.append(json.empty() ? "{\"" : ",\"").append(name).append("\":").append(value);
    json += '}';
    std::string text;
    QString complaint;
    if (!document_text::indent(json, text, complaint))
        return complaint;
    return file_writing::replace(path, QByteArray::fromStdString(text));
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
    const QByteArray order = memberOf(readOrderFile(m_path), orderKey);
    for (const QJsonValue& value : QJsonDocument::fromJson(order).array()) {
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
    const QString reason = writeOrder(m_path, order);
    if (!reason.isEmpty())
        sdk_ui_interface::log::log_error(
            QStringLiteral("无法写入 %1: %2").arg(m_path + orderFileName, reason));
}

QString ProjectFolder::appletFolder(const QString& name) const
{
    return QStringLiteral("%1/CApplet/%2/").arg(m_path, name);
}

void ProjectFolder::removeOutput(const QString& name) const
{
    const QString base = QStringLiteral("%1/CApplet/%2").arg(m_path, name);
    const QString code = base + QStringLiteral("_code");
    const QString module = base + QStringLiteral("_mp/%1.mp").arg(name);
    if (!standalone::removeGenerated(code, module))
        sdk_ui_interface::log::log_error(QStringLiteral("另一个程序正在编译, 已保留生成的代码: ") +
                                         code);
}

/// Empty if the name of the folder is another applet's.
QString ProjectFolder::recordFolder(const QString& name) const
{
    const QString folder = name + recordSuffix;
    return hasApplet(folder) ? QString() : QStringLiteral("%1/CApplet/%2").arg(m_path, folder);
}

QString ProjectFolder::complaintAboutName(const QString& name) const
{
    static const QRegularExpression rule(QStringLiteral("^[a-zA-Z_][a-zA-Z0-9_]{0,63}$"));
    if (!rule.match(name).hasMatch())
        return QStringLiteral("名称需以字母或下划线开头，只含字母、数字和下划线: ") + name;
    if (QFileInfo::exists(appletFolder(name)))
        return QStringLiteral("已存在同名小程序: ") + name;
    for (const QString& suffix : {QStringLiteral("_code"), QStringLiteral("_mp"), recordSuffix}) {
        // Its folder would be taken for the output of another applet.
        if (name.endsWith(suffix))
            return QStringLiteral("名称不能以 %1 结尾").arg(suffix);
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
    if (!reason.isEmpty()) {
        // It would keep the name from a next try.
        QDir().rmdir(appletFolder(name));
        return QStringLiteral("无法写入 %1: %2").arg(document, reason);
    }
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
    removeOutput(oldName);
    const QString records = recordFolder(oldName);
    if (!records.isEmpty() && QFileInfo::exists(records) &&
        !QDir().rename(records, recordFolder(newName)))
        sdk_ui_interface::log::log_error(QStringLiteral("运行记录没有随小程序改名, 仍在: ") +
                                         records);
    return QString();
}

QString ProjectFolder::removeApplet(const QString& name) const
{
    const QString folder = appletFolder(name);
    // Without a place for the trash the toolkit would move it to the working folder.
    const bool hasTrash =
        QDir().mkpath(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation));
    if (!(hasTrash && QFile::moveToTrash(folder)) && !QDir(folder).removeRecursively())
        return QStringLiteral("无法删除文件夹: ") + folder;
    keepOrder(name, QString());
    removeOutput(name);
    const QString records = recordFolder(name);
    if (!records.isEmpty() && !(hasTrash && QFile::moveToTrash(records)))
        standalone::removeRunRecords(records);
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
