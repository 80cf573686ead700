// A file is the old one or the new one, whole, whatever a disk does; and who writes it is told.

#include "base/file_writing.h"

#include "tests/support/folders.h"
#include "tests/support/ordinary_user.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using file_writing::Step;

namespace {

/// Of contents: below and above the buffers of the toolkit, which are where a failure hides.
constexpr int Sizes[] = {0, 1, 100, 4 * 1024, 16 * 1024, 17 * 1024, 1024 * 1024};

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class FullDiskTest : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup() { file_writing::setFault({}); }
    void limitedSize();
    void fullFileSystem();
    void everyStepCanFail();
    void odds();
    void unchangedIsUntouched();

private:
    QString path() const { return m_folder->filePath(text("file.json")); }
    QByteArray content() const { return contentOf(path()); }
    int fileCount() const { return QDir(m_folder->path()).entryList(QDir::Files).size(); }

    std::unique_ptr<QTemporaryDir> m_folder;
    const QByteArray m_old = "the old content";
};

void FullDiskTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(test_support::putFile(path(), m_old));
}

void FullDiskTest::limitedSize()
{
    for (const int size : Sizes) {
        init();
        const QByteArray fresh(size, 'x');
        QString complaint;
        {
            const test_support::FullDisk disk(rlim_t(size / 2));
            complaint = file_writing::replace(path(), fresh);
        }
        const bool fits = size == 0;
        QCOMPARE(complaint.isEmpty(), fits);
        QCOMPARE(content(), fits ? fresh : m_old);
        QCOMPARE(fileCount(), 1);
        QCOMPARE(file_writing::replace(path(), fresh), QString());
        QCOMPARE(content(), fresh);
    }
}

void FullDiskTest::fullFileSystem()
{
    const QString disk = m_folder->filePath(text("disk"));
    QVERIFY(QDir().mkpath(disk));
    const auto run = [](const char* program, const QString& arguments) {
        return QProcess::execute(QString::fromLatin1(program), arguments.split(u' ')) == 0;
    };
    const QString path = disk + text("/file.json");
    for (const int size : Sizes) {
        if (!run("mount", text("-t tmpfs -o size=64k none ") + disk))
            QSKIP("This user can't mount a file system");
        bool isWritten = test_support::putFile(path, m_old);
        {
            QFile filler(disk + text("/filler"));
            isWritten = filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && isWritten;
            while (filler.write(QByteArray(4096, 'f')) == 4096) {
            }
        }
        const QString complaint = file_writing::replace(path, QByteArray(size, 'x'));
        const QByteArray left = contentOf(path);
        const int count = QDir(disk).entryList(QDir::Files).size();
        QVERIFY(run("umount", disk));
        QVERIFY(isWritten);
        QCOMPARE(complaint.isEmpty(), size == 0);
        QCOMPARE(left, size == 0 ? QByteArray() : m_old);
        QCOMPARE(count, 2);
    }
}

void FullDiskTest::everyStepCanFail()
{
    for (const Step step : {Step::Open, Step::Write, Step::Flush, Step::Sync, Step::Rename}) {
        QList<int> asked;
        file_writing::setFault([&](Step at, const QString& file) {
            asked.append(int(at));
            return file == path() && at == step;
        });
        QVERIFY(!file_writing::replace(path(), "new").isEmpty());
        QCOMPARE(asked.size(), int(step) + 1); // and nothing more is tried
        QCOMPARE(content(), m_old);
        QCOMPARE(fileCount(), 1);
    }
    // What can be made again doesn't wait for the disk.
    file_writing::setFault([](Step at, const QString&) { return at == Step::Sync; });
    QCOMPARE(file_writing::replace(path(), "new", file_writing::Content::Derived), QString());
    QCOMPARE(content(), QByteArray("new"));
}

void FullDiskTest::odds()
{
    // A folder in the way, no folder at all, a folder that takes nothing.
    const QString inTheWay = m_folder->filePath(text("taken"));
    QVERIFY(QDir().mkpath(inTheWay + text("/inside")));
    QVERIFY(!file_writing::replace(inTheWay, "new").isEmpty());
    QVERIFY(QFileInfo(inTheWay + text("/inside")).isDir());
    QVERIFY(!file_writing::replace(m_folder->filePath(text("gone/file")), "new").isEmpty());
    QVERIFY(test_support::OrdinaryUser::own(m_folder->path()));
    QVERIFY(QFile::setPermissions(m_folder->path(), QFile::ReadOwner | QFile::ExeOwner));
    {
        const test_support::OrdinaryUser user;
        QVERIFY(user.isOrdinary());
        QVERIFY(!file_writing::replace(path(), "new").isEmpty());
    }
    QCOMPARE(content(), m_old);
    QVERIFY(QFile::setPermissions(m_folder->path(),
                                  QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));

    // Who may read it stays as it was; a link stays one.
    const auto permissions = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup;
    QVERIFY(QFile::setPermissions(path(), permissions));
    const QString link = m_folder->filePath(text("link"));
    QVERIFY(QFile::link(path(), link));
    QCOMPARE(file_writing::replace(link, "through the link"), QString());
    QVERIFY(QFileInfo(link).isSymLink());
    QCOMPARE(content(), QByteArray("through the link"));
    QCOMPARE(QFile::permissions(path()) & (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther),
             QFile::Permissions(QFile::ReadGroup));
}

void FullDiskTest::unchangedIsUntouched()
{
    int steps = 0;
    file_writing::setFault([&steps](Step, const QString&) { return ++steps > 0; });
    QCOMPARE(file_writing::replace(path(), m_old), QString());
    QCOMPARE(steps, 0);
}

PE_TEST("full_disk", FullDiskTest)
#include "full_disk_test.moc"
