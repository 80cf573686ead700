#include "shell/applet_documents.h"

#include "model/process_blocks.h"
#include "standalone/host/Host.h"
#include "tests/support/applet_fixture.h"

#include <QtTest>

namespace processedit = sdk_ui_interface::processedit;
using applet_fixture::ScopedApplet;

class AppletDocumentsTest : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void writtenIsRead();
    void stripsBeforeWriting();
    void backupRule_data();
    void backupRule();
    void refusedWriteLeavesTheOldFile();
    void damagedDocumentIsKept_data();
    void damagedDocumentIsKept();
    void readsOldVersions();

private:
    QString makeApplet(bool withBlock);
    QString folder() const { return m_folder->path() + QLatin1Char('/'); }
    QString document() const { return applet_documents::documentPath(folder()); }
    QByteArray content(const QString& name) const;
    void put(const QString& name, const QByteArray& text) const;

    const QString m_name = QStringLiteral("doc_test");
    std::unique_ptr<QTemporaryDir> m_folder;
};

void AppletDocumentsTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

QString AppletDocumentsTest::makeApplet(bool withBlock)
{
    const QString sequence = processedit::createSeuqence(m_name, QStringLiteral("main_seq"));
    if (withBlock)
        applet_fixture::addStep<DelayProcessBlock>(m_name, sequence, QStringLiteral("1"),
                                                   step_type::Delay, "等待");
    return sequence;
}

QByteArray AppletDocumentsTest::content(const QString& name) const
{
    QFile file(folder() + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void AppletDocumentsTest::put(const QString& name, const QByteArray& text) const
{
    QFile file(folder() + name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(text), qint64(text.size()));
}

void AppletDocumentsTest::writtenIsRead()
{
    QByteArray first;
    {
        ScopedApplet applet(m_name);
        const QString sequence = makeApplet(true);
        process_edit::addVariable(m_name.toStdString(), SequenceVariable, sequence.toStdString());
        QVERIFY(applet_documents::write(m_name, document(), {}));
        first = content(applet_documents::documentName);
        const QJsonObject root = QJsonDocument::fromJson(first).object();
        QCOMPARE(root.keys(),
                 QStringList({QStringLiteral("logicvar"), QStringLiteral("logicview")}));
    }
    ScopedApplet applet(m_name);
    applet_documents::read(m_name, folder(), false);
    const auto sequences = processedit::getAllSequenceByAppName(m_name);
    QCOMPARE(int(sequences.size()), 1);
    QCOMPARE(int(sequences[0].mainFlow.size()), 1);
    QCOMPARE(
        int(process_edit::getAllSequenceVariable(m_name.toStdString(), sequences[0].id).size()), 1);
    QVERIFY(applet_documents::write(m_name, document(), {}));
    QCOMPARE(content(applet_documents::documentName), first);
}

void AppletDocumentsTest::stripsBeforeWriting()
{
    ScopedApplet applet(m_name);
    makeApplet(true);
    QStringList seen;
    QVERIFY(applet_documents::write(m_name, document(), [&seen](QJsonObject& logicView) {
        seen = logicView.keys();
        logicView = QJsonObject{{QStringLiteral("stripped"), true}};
    }));
    QVERIFY(!seen.isEmpty());
    const QJsonObject root =
        QJsonDocument::fromJson(content(applet_documents::documentName)).object();
    QCOMPARE(root.value(QStringLiteral("logicview")).toObject().keys(),
             QStringList{QStringLiteral("stripped")});
}

void AppletDocumentsTest::backupRule_data()
{
    using applet_documents::Backup;
    QTest::addColumn<bool>("hasBlock");
    QTest::addColumn<int>("rule");
    QTest::addColumn<bool>("hasOld");
    QTest::addColumn<QByteArray>("expected"); // "new": the document
    QTest::newRow("first backup") << true << int(Backup::Replace) << false << QByteArray("new");
    QTest::newRow("replaced") << true << int(Backup::Replace) << true << QByteArray("new");
    QTest::newRow("kept") << true << int(Backup::KeepFirst) << true << QByteArray("old");
    QTest::newRow("kept none") << true << int(Backup::KeepFirst) << false << QByteArray("new");
    QTest::newRow("emptied document") << false << int(Backup::Replace) << true << QByteArray("old");
    QTest::newRow("empty, none") << false << int(Backup::Replace) << false << QByteArray();
}

void AppletDocumentsTest::backupRule()
{
    QFETCH(bool, hasBlock);
    QFETCH(int, rule);
    QFETCH(bool, hasOld);
    QFETCH(QByteArray, expected);
    ScopedApplet applet(m_name);
    makeApplet(hasBlock);
    const QString backup = applet_documents::documentName + QStringLiteral(".bak");
    if (hasOld)
        put(backup, "old");
    QVERIFY(applet_documents::write(m_name, document(), {}));
    applet_documents::keepBackup(m_name, document(), applet_documents::Backup(rule));
    QCOMPARE(content(backup),
             expected == "new" ? content(applet_documents::documentName) : expected);
}

void AppletDocumentsTest::refusedWriteLeavesTheOldFile()
{
    ScopedApplet applet(m_name);
    makeApplet(true);
    // A folder in the document's place can't be replaced by a file, whoever the user is.
    QVERIFY(QDir(folder()).mkpath(applet_documents::documentName + QStringLiteral("/inside")));
    QVERIFY(!applet_documents::write(m_name, document(), {}));
    QVERIFY(QFileInfo(document() + QStringLiteral("/inside")).isDir());
    QVERIFY(!applet_documents::write(m_name, folder() + QStringLiteral("missing/x.pedt"), {}));
}

void AppletDocumentsTest::damagedDocumentIsKept_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("cut off") << QByteArray("{\"logicview\": {\"sequences\": [");
    QTest::newRow("empty file") << QByteArray("");
    QTest::newRow("binary") << QByteArray("\x00\xff\x01garbage", 10);
    QTest::newRow("not an object") << QByteArray("[1, 2]");
}

void AppletDocumentsTest::damagedDocumentIsKept()
{
    QFETCH(QByteArray, text);
    ScopedApplet applet(m_name);
    put(applet_documents::documentName, text);
    QSignalSpy errors(&standalone::Host::instance(), &standalone::Host::errorLogged);
    applet_documents::read(m_name, folder(), false);
    QVERIFY(!processedit::getCAppletDataIsExist(m_name));
    QVERIFY(errors.at(0).at(0).toString().startsWith(
        QStringLiteral("[流程编辑] 流程json文件解析失败: ")));
    // Another look at it makes no second copy; another damage does.
    applet_documents::read(m_name, folder(), true);
    put(applet_documents::documentName, "{ other");
    applet_documents::read(m_name, folder(), true);
    makeApplet(true);
    QVERIFY(applet_documents::write(m_name, document(), {}));
    QCOMPARE(content(applet_documents::documentName + QStringLiteral(".damaged")), text);
    QCOMPARE(content(applet_documents::documentName + QStringLiteral(".damaged2")),
             QByteArray("{ other"));
    QVERIFY(!QFile::exists(document() + QStringLiteral(".damaged3")));
}

void AppletDocumentsTest::readsOldVersions()
{
    QByteArray steps;
    QByteArray variables;
    {
        ScopedApplet applet(m_name);
        makeApplet(true);
        QVERIFY(applet_documents::write(m_name, document(), {}));
        const QJsonObject root =
            QJsonDocument::fromJson(content(applet_documents::documentName)).object();
        steps = QJsonDocument(root.value(QStringLiteral("logicview")).toObject()).toJson();
        variables = QJsonDocument(root.value(QStringLiteral("logicvar")).toObject()).toJson();
    }
    QVERIFY(QFile::remove(document()));
    put(QStringLiteral("logicview.json"), steps);
    put(QStringLiteral("variable.json"), variables);
    ScopedApplet applet(m_name);
    applet_documents::read(m_name, folder(), false);
    QCOMPARE(int(processedit::getAllSequenceByAppName(m_name).size()), 1);
    QVERIFY(!QFile::exists(document()));
}

QTEST_GUILESS_MAIN(AppletDocumentsTest)
#include "applet_documents_test.moc"
