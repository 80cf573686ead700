#include "workbench/example_project.h"

#include "base/file_reading.h"
#include "base/file_writing.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryDir>

namespace example_project {

namespace {

const QString exampleName = QStringLiteral("bench_check");
const QString stampName = QStringLiteral(".example");

QStringList filesBelow(const QString& folder)
{
    QStringList files;
    QDirIterator walk(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (walk.hasNext())
        files.append(QDir(folder).relativeFilePath(walk.next()));
    files.sort();
    return files;
}

QByteArray stampOf(const QString& folder)
{
    QCryptographicHash hash(QCryptographicHash::Sha1);
    for (const QString& name : filesBelow(folder)) {
        hash.addData(name.toUtf8());
        hash.addData(
            file_reading::read(folder + QLatin1Char('/') + name, file_reading::MostOfDocument)
                .content);
    }
    return hash.result().toHex();
}

bool copyTo(const QString& source, const QString& target, const QByteArray& stamp)
{
    for (const QString& name : filesBelow(source)) {
        const QString copy = target + QLatin1Char('/') + name;
        if (!QDir().mkpath(QFileInfo(copy).path()) ||
            !QFile::copy(source + QLatin1Char('/') + name, copy))
            return false;
        // The shipped files may be read-only; the copy is there to be changed.
        QFile::setPermissions(copy, QFile::permissions(copy) | QFile::WriteOwner);
    }
    return file_writing::replace(target + QLatin1Char('/') + stampName, stamp).isEmpty();
}

// Beside the application where that can be written to, as in a build folder; else with the user's
// data.
QString copiesFolder()
{
    const QString own = QCoreApplication::applicationDirPath();
    if (QFileInfo(own).isWritable())
        return own + QStringLiteral("/example_project");
    return QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation);
}

} // namespace

QString openCopy(QString& complaint)
{
    const QString source =
        QCoreApplication::applicationDirPath() + QStringLiteral("/examples/") + exampleName;
    const QString copies = copiesFolder();
    const QString target = copies + QLatin1Char('/') + exampleName;
    const QByteArray stamp = stampOf(source);
    if (!QFileInfo::exists(source)) {
        complaint = QStringLiteral("示例工程不存在: ") + source;
        return QString();
    }
    const auto isCurrent = [&] {
        const QString stampFile = target + QLatin1Char('/') + stampName;
        return file_reading::read(stampFile, file_reading::MostOfTable).content == stamp;
    };
    if (isCurrent())
        return target;

    QDir().mkpath(copies);
    QTemporaryDir fresh(copies + QStringLiteral("/new-XXXXXX"));
    if (!fresh.isValid() || !copyTo(source, fresh.path(), stamp)) {
        complaint = QStringLiteral("无法复制示例工程到: ") + copies;
        return QString();
    }
    for (int number = 1; QFileInfo::exists(target) && !isCurrent(); ++number) {
        const QString aside = QStringLiteral("%1_%2").arg(target).arg(number);
        if (!QDir().rename(target, aside) && !QFileInfo::exists(aside)) {
            complaint = QStringLiteral("无法移开示例工程的旧副本: ") + target;
            return QString();
        }
    }
    // Another process may have made the copy meanwhile; its copy serves as well.
    if (QDir().rename(fresh.path(), target))
        fresh.setAutoRemove(false);
    return target;
}

} // namespace example_project
