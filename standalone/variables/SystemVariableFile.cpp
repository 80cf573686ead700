#include "standalone/variables/SystemVariableFile.h"

#include "base/file_reading.h"
#include "base/kept_copies.h"
#include "model/services/log.h"
#include "standalone/model_service/stores/project_file.h"

#include <QLockFile>

namespace standalone {

namespace {

namespace json = system_variable_json;

constexpr int LockPatience = 1000; // ms that another workbench may take for its write

QString filePath(const QString& folder)
{
    return folder + QStringLiteral("/systemVariable.json");
}

void logError(const QString& text)
{
    sdk_ui_interface::log::log_error(QStringLiteral("[流程编辑] ") + text);
}

QVector<system_variate::SystemVarInfo> infosOf(const SystemVariableContent& content)
{
    QVector<system_variate::SystemVarInfo> infos;
    for (const auto& entry : content.entries)
        infos.append(entry.info);
    return infos;
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
    save(Patience::Last);
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
    m_content = {};
    m_base.clear();
    m_lastText.clear();
    m_isLocked = m_isChanged = m_isDue = m_isWaiting = false;
    if (folder.isEmpty())
        return {};
    const QString path = filePath(folder);
    const auto file = file_reading::read(path, file_reading::MostOfTable);
    if (file.isMissing)
        return {};
    if (!file.isRead) {
        m_isLocked = true;
        logError(QStringLiteral("系统变量文件无法读取, 修改不会保存: %1 (%2)")
                     .arg(path, file.complaint));
        return {};
    }
    QStringList strangers;
    const QString complaint = json::read(file.content, m_content, strangers);
    if (!complaint.isEmpty()) {
        const QString aside = kept_copies::keep(path, kept_copies::damaged);
        m_isLocked = aside.isEmpty();
        logError(
            m_isLocked
                ? QStringLiteral("系统变量文件无法解析, 也无法另存: %1 (%2)").arg(path, complaint)
                : QStringLiteral("系统变量文件无法读取, 已另存为 %1: %2").arg(aside, complaint));
        m_lastText = file.content;
        return {};
    }
    for (const QString& name : qAsConst(strangers))
        logError(QStringLiteral("系统变量“%1”无法识别, 已原样保留").arg(name));
    m_base = json::entryTexts(m_content);
    m_lastText = file.content;
    return infosOf(m_content);
}

QVector<system_variate::SystemVarInfo> SystemVariableFile::variables() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return infosOf(m_content);
}

void SystemVariableFile::setOnTakenIn(std::function<void()> told)
{
    const std::lock_guard<std::mutex> writing(m_writing);
    m_onTakenIn = std::move(told);
}

void SystemVariableFile::put(const system_variate::SystemVarInfo& variable)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_content.entries[variable.name].info = variable;
    change();
}

void SystemVariableFile::remove(const QString& name)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_content.entries.remove(name) > 0)
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

bool SystemVariableFile::save(Patience patience)
{
    const std::lock_guard<std::mutex> writing(m_writing);
    QString path;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (!m_isChanged)
            return true;
        m_isDue = false;
        if (m_isLocked)
            return false;
        path = filePath(m_folder);
    }
    // Two that write at once: each finds what the other has written.
    QLockFile turn(path + QStringLiteral(".lock"));
    if (!takeTurn(turn, patience) || !takeInOther(path))
        return false;

    QByteArray text;
    QMap<QString, std::string> entries;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (path != filePath(m_folder))
            return false; // another project was opened meanwhile
        m_isChanged = false;
        text = json::write(m_content);
        entries = json::entryTexts(m_content);
    }
    const bool isWritten = writeProjectFile(path, text);
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (path == filePath(m_folder)) {
        m_isChanged = m_isChanged || !isWritten;
        if (isWritten) {
            m_base = entries;
            m_lastText = text;
        }
    }
    return isWritten;
}

/// False while another program has it; the change is then due for another time.
bool SystemVariableFile::takeTurn(QLockFile& turn, Patience patience)
{
    const bool isHeldByAnother =
        !turn.tryLock(LockPatience) && turn.error() == QLockFile::LockFailedError;
    const std::lock_guard<std::mutex> lock(m_mutex);
    // Where no lock can be made, nothing can be written either, which is told then.
    const bool isTurn = !isHeldByAnother || patience == Patience::Last;
    if (!isTurn && !m_isWaiting)
        logError(QStringLiteral("系统变量文件正由其他程序写入, 稍后再保存: ") + filePath(m_folder));
    m_isWaiting = m_isDue = !isTurn;
    m_wake.notify_all();
    return isTurn;
}

/// What another program has made of the file since it was read or written here; false if it would
/// be lost.
bool SystemVariableFile::takeInOther(const QString& path)
{
    const auto file = file_reading::read(path, file_reading::MostOfTable);
    if (file.isMissing)
        return true;
    SystemVariableContent other;
    QStringList strangers;
    QStringList both;
    QString complaint = file.complaint;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (path != filePath(m_folder) || (file.isRead && file.content == m_lastText))
            return true;
        if (complaint.isEmpty())
            complaint = json::read(file.content, other, strangers);
        if (complaint.isEmpty())
            both = json::merge(m_base, other, m_content);
    }
    if (complaint.isEmpty() && m_onTakenIn)
        m_onTakenIn();
    if (complaint.isEmpty() && both.isEmpty()) {
        logError(QStringLiteral("系统变量文件已被其他程序修改, 其修改已合并: ") + path);
        return true;
    }
    const QString copy = kept_copies::keep(path, kept_copies::replaced);
    const QString outcome = copy.isEmpty() ? QStringLiteral("对方的内容无法另存, 未保存")
                                           : QStringLiteral("对方的内容保留为 ") + copy;
    logError(complaint.isEmpty() ? QStringLiteral("系统变量文件已被其他程序修改, 双方都改了 %1; %2")
                                       .arg(both.join(QStringLiteral(", ")), outcome)
                                 : QStringLiteral("系统变量文件已被其他程序修改且无法读取 (%1), %2")
                                       .arg(complaint, outcome));
    return !copy.isEmpty();
}

} // namespace standalone
