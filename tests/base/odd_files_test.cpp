// What may stand in the place of a file of ours: reading it ends at once, with what it holds or
// with one clear reason, and what is kept aside is lost to nobody.

#include "base/document_text.h"
#include "base/file_reading.h"
#include "base/kept_copies.h"
#include "tests/support/folders.h"
#include "tests/support/ordinary_user.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

class OddFilesTest : public QObject
{
    Q_OBJECT
private slots:
    void read();
    void keptAside();
    void indented();

private:
    QString make(const QString& kind) const;

    QTemporaryDir m_folder;
};

// Brings it about that there is something of that kind; its name.
QString OddFilesTest::make(const QString& kind) const
{
    const QString path = m_folder.filePath(QString(kind).replace(u' ', u'_'));
    if (kind == QLatin1String("file"))
        test_support::putFile(path, "0123456789");
    else if (kind == QLatin1String("pipe") || kind == QLatin1String("link to a pipe"))
        mkfifo(QFile::encodeName(path + text(".fifo")).constData(), 0600);
    else if (kind == QLatin1String("folder"))
        QDir().mkpath(path);
    if (kind == QLatin1String("pipe"))
        return path + text(".fifo");
    if (kind == QLatin1String("link to a pipe"))
        QFile::link(path + text(".fifo"), path);
    if (kind == QLatin1String("device"))
        QFile::link(text("/dev/zero"), path);
    if (kind == QLatin1String("link to nothing"))
        QFile::link(path + text(".gone"), path);
    return path;
}

void OddFilesTest::read()
{
    const QString whole = text("0123456789");
    const QString none;
    const rows::Table<qint64, QString, QString> table{
        {"file", qint64(10), whole, none},
        {"file, too large", qint64(9), none, text("文件过大, 超过 9 字节")},
        {"pipe", qint64(10), none, text("不是普通文件")},
        {"link to a pipe", qint64(10), none, text("不是普通文件")},
        {"device", qint64(10), none, text("不是普通文件")},
        {"folder", qint64(10), none, text("是文件夹")},
        {"missing", qint64(10), none, none},
        {"link to nothing", qint64(10), none, none}};
    for (const auto& [row, most, content, complaint] : table) {
        const rows::Named named(row);
        const QString kind = QString::fromLatin1(row).section(u',', 0, 0);
        const auto result = file_reading::read(make(kind), most);
        QCOMPARE(QString::fromUtf8(result.content), content);
        QCOMPARE(result.complaint, complaint);
        QCOMPARE(result.isRead, !content.isEmpty());
        QCOMPARE(result.isMissing, !result.isRead && result.complaint.isEmpty());
    }
}

void OddFilesTest::keptAside()
{
    const QString file = m_folder.filePath(text("table.json"));
    const auto keep = [&](const QByteArray& content) {
        test_support::putFile(file, content);
        return QFileInfo(kept_copies::keep(file, kept_copies::damaged)).fileName();
    };
    QCOMPARE(keep("first"), text("table.json.damaged"));
    QCOMPARE(keep("second"), text("table.json.damaged2"));
    QCOMPARE(keep("first"), text("table.json.damaged")); // it is kept already
    QVERIFY(QFile::exists(file));
    for (const char* kind : {"pipe", "folder"}) {
        const QString odd = make(QString::fromLatin1(kind));
        const QString kept = kept_copies::keep(odd, kept_copies::damaged);
        QVERIFY2(!kept.isEmpty() && QFileInfo::exists(kept) && !QFileInfo::exists(odd), kind);
    }
    // A disk that takes no copy: the file stays where it is.
    const auto before = QDir(m_folder.path()).entryList(QDir::Files);
    QVERIFY(test_support::putFile(file, "fourth"));
    {
        const test_support::FullDisk disk(3);
        QCOMPARE(kept_copies::keep(file, kept_copies::damaged), QString());
    }
    QCOMPARE(QDir(m_folder.path()).entryList(QDir::Files), before);
    QVERIFY(QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner));
    const QString kept = kept_copies::keep(file, kept_copies::damaged);
    QCOMPARE(QFile::permissions(kept), QFile::permissions(file));
}

void OddFilesTest::indented()
{
    const rows::Table<QByteArray, QByteArray> table{
        {"order and digits", QByteArray(R"({"b":9007199254740993,"a":[1.10,{}],"c":"\ud800"})"),
         QByteArray("{\n    \"b\": 9007199254740993,\n    \"a\": [\n        1.10,\n        {\n"
                    "        }\n    ],\n    \"c\": \"\\ud800\"\n}\n")},
        {"cut off", QByteArray("{\"a\": ["), QByteArray()},
        {"100,000 deep", QByteArray(100000, '[') + QByteArray(100000, ']'), QByteArray()}};
    for (const auto& [row, json, expectedText] : table) {
        const rows::Named named(row);
        std::string text;
        QString complaint;
        const bool isDone = document_text::indent(json.toStdString(), text, complaint);
        QCOMPARE(QByteArray::fromStdString(text), expectedText);
        QCOMPARE(isDone, complaint.isEmpty());
        QCOMPARE(isDone, !text.empty());
        if (isDone) {
            std::string again;
            QVERIFY(document_text::indent(text, again, complaint));
            QCOMPARE(again, text);
        }
    }
}

PE_TEST("odd_files", OddFilesTest)
#include "odd_files_test.moc"
