#include "standalone/runtime/RunRecord.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStorageInfo>

#include <algorithm>

namespace standalone {

namespace {

const QString nameFormat = QStringLiteral("yyyyMMdd-HHmmss-zzz");

/// What is a record of ours, the newest first.
QFileInfoList recordsIn(const QString& folder)
{
    static const QRegularExpression ours(QStringLiteral("^\\d{8}-\\d{6}-\\d{3}\\.log$"));
    QFileInfoList records;
    for (const QFileInfo& file :
         QDir(folder).entryInfoList(QDir::Files | QDir::NoSymLinks, QDir::Name | QDir::Reversed)) {
        if (ours.match(file.fileName()).hasMatch())
            records.append(file);
    }
    return records;
}

} // namespace

RunRecord::RunRecord(const QString& folder, Limits limits)
    : m_folder(folder), m_limits(limits), m_isOver(folder.isEmpty())
{
}

RunRecord::~RunRecord()
{
    close();
}

QString RunRecord::path() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_path;
}

QString RunRecord::add(const std::string& line)
{
    if (m_isOver)
        return QString();
    if (m_file < 0) {
        const QString reason = create();
        if (!reason.isEmpty())
            return fail(reason);
    }
    // One time for all that is written at once: lines come faster than times are put into words.
    if (m_waiting.empty())
        m_time = QTime::currentTime().toString(QStringLiteral("HH:mm:ss  ")).toStdString();
    m_waiting.append(m_time).append(line).push_back('\n');
    return QString();
}

QString RunRecord::flush()
{
    if (m_isOver || m_waiting.empty())
        return QString();
    m_size += std::int64_t(m_waiting.size());
    QString reason;
    if (m_size >= m_lookAt) {
        m_lookAt = std::min(m_size + m_limits.bytes / m_limits.files, m_limits.bytes + 1);
        prune();
        reason = reasonToEnd();
    }
    if (reason.isEmpty())
        reason = write(m_waiting);
    m_waiting.clear();
    return reason.isEmpty() ? QString() : fail(reason);
}

QString RunRecord::reasonToEnd() const
{
    if (m_size > m_limits.bytes)
        return QCoreApplication::translate("standalone::RunRecord", "记录已达大小上限");
    const QStorageInfo disk(m_folder);
    if (disk.isValid() && disk.bytesAvailable() < m_limits.spare)
        return QCoreApplication::translate("standalone::RunRecord", "磁盘剩余空间不足");
    return QString();
}

QString RunRecord::create()
{
    if (!QDir().mkpath(m_folder))
        return QCoreApplication::translate("standalone::RunRecord", "无法创建文件夹");
    // Behind all that are there, also where clocks are set back.
    QDateTime time = QDateTime::currentDateTime();
    const QFileInfoList earlier = recordsIn(m_folder);
    if (!earlier.isEmpty())
        time = std::max(
            time,
            QDateTime::fromString(earlier.first().completeBaseName(), nameFormat).addMSecs(1));
    QString reason;
    // Another editor may have taken the name meanwhile.
    for (int tries = 0; tries < 1000 && reason.isEmpty(); ++tries, time = time.addMSecs(1)) {
        const QString path = m_folder + u'/' + time.toString(nameFormat) + QStringLiteral(".log");
        if (open(path, reason)) {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_path = path;
            return QString();
        }
    }
    return reason.isEmpty()
               ? QCoreApplication::translate("standalone::RunRecord", "没有可用的文件名")
               : reason;
}

QString RunRecord::fail(const QString& reason)
{
    const QString path = this->path();
    close();
    if (!path.isEmpty() && QFileInfo(path).size() == 0)
        QFile::remove(path); // else it would count, and make an older one go
    m_isOver = true;
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_path.clear();
    return QStringLiteral("%1: %2").arg(path.isEmpty() ? m_folder : path, reason);
}

/// The oldest go; this one is the newest.
void RunRecord::prune() const
{
    int count = 0;
    std::int64_t bytes = 0;
    const QString own = path();
    for (const QFileInfo& record : recordsIn(m_folder)) {
        const bool isOwn = record.filePath() == own;
        bytes += isOwn ? m_size : record.size();
        if ((++count > m_limits.files || bytes > m_limits.bytes) && !isOwn)
            QFile::remove(record.filePath());
    }
}

void removeRunRecords(const QString& folder)
{
    for (const QFileInfo& record : recordsIn(folder))
        QFile::remove(record.filePath());
    QDir().rmdir(folder);
}

} // namespace standalone
