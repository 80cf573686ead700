#include "standalone/variables/SystemVariableFile.h"

#include "model/services/log.h"
#include "standalone/model_service/file_writing.h"
#include "standalone/variables/system_values.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

namespace standalone {

namespace {

const QLatin1String variablesMember("variables");
const QLatin1String nameMember("name");
const QLatin1String typeMember("type");
const QLatin1String valueMember("value");
const QLatin1String descriptionMember("description");
const QLatin1String kindMember("kind");
const QLatin1String precisionMember("precision");
const QLatin1String versionMember("version");
constexpr int Version = 1;

QString filePath(const QString& folder)
{
    return folder + QStringLiteral("/systemVariable.json");
}

QString keyword(DataCategoryType category)
{
    return QString::fromStdString(varTypeKeyword(varTypeFromDataCategory(category)));
}

/// False for a keyword of none; an empty one is no category.
bool categoryOf(const QString& text, DataCategoryType& category)
{
    for (int value = NoCategory; value <= DoubleArrayCategory; ++value) {
        category = static_cast<DataCategoryType>(value);
        if (keyword(category) == text)
            return true;
    }
    return false;
}

bool read(const QJsonObject& object, system_variate::SystemVarInfo& info)
{
    info.name = object[nameMember].toString();
    info.value = object[valueMember].toString();
    info.description = object[descriptionMember].toString();
    info.kind = object[kindMember].toInt(info.kind);
    info.precision = object[precisionMember].toInt(info.precision);
    return object[valueMember].isString() && system_values::isName(info.name) &&
           categoryOf(object[typeMember].toString(), info.category) &&
           system_values::fits(info.category, info.value);
}

void write(const system_variate::SystemVarInfo& info, QJsonObject& object)
{
    object[nameMember] = info.name;
    object[typeMember] = keyword(info.category);
    object[valueMember] = info.value;
    object[descriptionMember] = info.description;
    object[kindMember] = info.kind;
    object[precisionMember] = info.precision;
}

} // namespace

SystemVariableFile::~SystemVariableFile()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isClosing = true;
    }
    m_wake.notify_all();
    if (m_writer.joinable())
        m_writer.join();
    save();
}

QString SystemVariableFile::folder() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_folder;
}

QVector<system_variate::SystemVarInfo> SystemVariableFile::load(const QString& folder)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_folder = folder;
    m_document = QJsonObject();
    m_objects.clear();
    m_strangers.clear();
    m_isLocked = m_isChanged = m_isDue = false;

    QVector<system_variate::SystemVarInfo> variables;
    QFile file(filePath(folder));
    if (folder.isEmpty() || !file.exists())
        return variables;
    if (!file.open(QIODevice::ReadOnly)) {
        m_isLocked = true;
        sdk_ui_interface::log::log_error(
            QStringLiteral("[流程编辑] 系统变量文件无法读取, 修改不会保存: %1 (%2)")
                .arg(file.fileName(), file.errorString()));
        return variables;
    }
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    const QJsonValue listed = document.object().value(variablesMember);
    if (!document.isObject() || !(listed.isArray() || listed.isUndefined())) {
        const QString aside = file.fileName() + QStringLiteral(".damaged");
        QFile::remove(aside);
        m_isLocked = !QFile::copy(file.fileName(), aside);
        const QString words =
            m_isLocked ? QStringLiteral("[流程编辑] 系统变量文件无法解析, 也无法另存为 %1: %2")
                       : QStringLiteral("[流程编辑] 系统变量文件无法读取, 已另存为 %1: %2");
        sdk_ui_interface::log::log_error(words.arg(aside, error.errorString()));
        return variables;
    }
    m_document = document.object();
    const QJsonArray entries = m_document.take(variablesMember).toArray();
    for (const QJsonValue& entry : entries) {
        system_variate::SystemVarInfo info;
        if (!read(entry.toObject(), info) || m_objects.contains(info.name)) {
            m_strangers.append(entry);
            sdk_ui_interface::log::log_error(
                QStringLiteral("[流程编辑] 系统变量“%1”无法识别, 已原样保留").arg(info.name));
            continue;
        }
        m_objects.insert(info.name, entry.toObject());
        variables.append(info);
    }
    return variables;
}

void SystemVariableFile::put(const system_variate::SystemVarInfo& variable)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    write(variable, m_objects[variable.name]);
    change();
}

void SystemVariableFile::remove(const QString& name)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_objects.remove(name) > 0)
        change();
}

/// Called with the mutex held.
void SystemVariableFile::change()
{
    m_isChanged = !m_folder.isEmpty();
    m_isDue = m_isChanged && !m_isLocked;
    if (!m_isDue)
        return;
    if (!m_writer.joinable())
        m_writer = std::thread(&SystemVariableFile::work, this);
    m_wake.notify_all();
}

void SystemVariableFile::work()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    while (!m_isClosing) {
        m_wake.wait(lock, [this] { return m_isDue || m_isClosing; });
        m_wake.wait_for(lock, Delay, [this] { return m_isClosing; });
        lock.unlock();
        save();
        lock.lock();
    }
}

bool SystemVariableFile::save()
{
    const std::lock_guard<std::mutex> writing(m_writing);
    QString path;
    QByteArray content;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (!m_isChanged)
            return true;
        m_isDue = false;
        if (m_isLocked)
            return false;
        m_isChanged = false;
        path = filePath(m_folder);
        content = text();
    }
    if (writeFile(path, content))
        return true;
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_isChanged = m_isChanged || path == filePath(m_folder);
    return false;
}

QByteArray SystemVariableFile::text() const
{
    QJsonArray entries;
    for (const QJsonObject& object : m_objects)
        entries.append(object);
    for (const QJsonValue& stranger : m_strangers)
        entries.append(stranger);
    QJsonObject document = m_document;
    document[variablesMember] = entries;
    if (!document.contains(versionMember))
        document[versionMember] = Version;
    return QJsonDocument(document).toJson();
}

} // namespace standalone
