#include "shell/documents/applet_documents.h"

#include "model/process_blocks.h"
#include "model/services/process_json_edit.h"
#include "standalone/host/Host.h"
#include "tests/support/applet_fixture.h"
#include "tests/support/test_program.h"

#include <QDirIterator>
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
    void reloadNeverEmptiesTheModel_data();
    void reloadNeverEmptiesTheModel();
    void hostileDocumentsAreReadAsFarAsTheyGo_data();
    void hostileDocumentsAreReadAsFarAsTheyGo();
    void foreignMembersAndTheVersionStay();
    void examplesComeBackByteForByte();

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

void AppletDocumentsTest::reloadNeverEmptiesTheModel_data()
{
    QTest::addColumn<QString>("file"); // what the folder holds, empty for nothing
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("isTold");
    const QString& own = applet_documents::documentName;
    const QByteArray cut(
        "{\"logicvar\":{},\"logicview\":{\"sequences\":[{\"id\":\"s\",\"name\":\"n\"},{");
    QTest::newRow("no document") << QString() << QByteArray() << false;
    QTest::newRow("without steps") << own << QByteArray("{\"other\": 1}") << false;
    QTest::newRow("cut") << own << cut << true;
    QTest::newRow("empty") << own << QByteArray() << true;
    QTest::newRow("old version, cut") << QStringLiteral("logicview.json") << cut << true;
    QTest::newRow("old version, cut variables")
        << QStringLiteral("variable.json") << QByteArray("{\"process\": [") << true;
}

void AppletDocumentsTest::reloadNeverEmptiesTheModel()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, text);
    QFETCH(bool, isTold);
    ScopedApplet applet(m_name);
    makeApplet(true);
    process_edit::addVariable(m_name.toStdString(), ProcessVariable, m_name.toStdString());
    const QString before = processedit::generateProcessJson(m_name);
    const auto variables = [this] {
        return process_json_edit::generateAppAndSequenceVariableJson(m_name.toStdString());
    };
    const std::string variablesBefore = variables();
    if (!file.isEmpty())
        put(file, text);
    QSignalSpy errors(&standalone::Host::instance(), &standalone::Host::errorLogged);
    applet_documents::read(m_name, folder(), false);
    QCOMPARE(processedit::generateProcessJson(m_name), before);
    QCOMPARE(variables(), variablesBefore);
    QCOMPARE(!errors.isEmpty() &&
                 errors.last().at(0).toString().contains(QStringLiteral("保留内存中的内容")),
             isTold);
}

void AppletDocumentsTest::hostileDocumentsAreReadAsFarAsTheyGo_data()
{
    QTest::addColumn<QByteArray>(
        "head"); // of the main flow's blocks; the text breaks off or goes on
    QTest::addColumn<QByteArray>("tail");
    QTest::addColumn<int>("blocks");
    QTest::addColumn<QString>("complaint");
    QTest::addColumn<bool>("isKeptAside");
    const QByteArray step("{\"stepType\":24,\"uuid\":\"a\",\"name\":\"");
    const QByteArray end("]}]}}");
    constexpr int deep = 10000;
    QTest::newRow("nested 10,000 deep")
        << QByteArray("{\"stepType\":1,\"children\":[").repeated(deep) +
               QByteArray("]}").repeated(deep)
        << end << deep << QStringLiteral("嵌套过深") << false;
    QTest::newRow("nested 20,000 deep, never closed")
        << QByteArray("{\"stepType\":1,\"children\":[").repeated(2 * deep) << QByteArray()
        << 2 * deep << QStringLiteral("内容不完整 (行 1 列 ") << true;
    QTest::newRow("an unknown member nested 100,000 deep")
        << step + "\",\"x\":" + QByteArray(10 * deep, '[') + QByteArray(10 * deep, ']') + '}' << end
        << 1 << QStringLiteral("sequences[0].mainFlow[0].x: 嵌套过深") << false;
    QTest::newRow("one string of 100 MB")
        << step + QByteArray(100 * 1000 * 1000, 'x') + "\"}" << end << 1 << QString() << false;
    QTest::newRow("a member's name of 5 MB, twice")
        << step + "\",\"" + QByteArray(5 * 1000 * 1000, 'x') + "\":1,\"" +
               QByteArray(5 * 1000 * 1000, 'x') + "\":2}"
        << end << 1 << QStringLiteral("成员重复") << false;
    QTest::newRow("100,000 steps of one uuid")
        << (step + "\"},").repeated(10 * deep) + step + "\"}" << end << 10 * deep + 1
        << QStringLiteral("另有") << false;
    QTest::newRow("not UTF-8") << step + "\xCE\xC4\xBC\xFE\"}" << end << 1
                               << QStringLiteral("非UTF-8字符, 已替换: 行 1 列") << true;
    QTest::newRow("NUL in a text and as a byte")
        << step + QByteArray("a\\u0000b\0c\"}", 12) << end << 1 << QString() << false;
    QTest::newRow("cut in the second step")
        << step + "\"}," + step << QByteArray() << 1 << QStringLiteral("内容不完整") << true;
    QTest::newRow("a comma too few")
        << step + "\"}{" << end << 1 << QStringLiteral("缺少逗号") << true;
}

void AppletDocumentsTest::hostileDocumentsAreReadAsFarAsTheyGo()
{
    QFETCH(QByteArray, head);
    QFETCH(QByteArray, tail);
    QFETCH(int, blocks);
    QFETCH(QString, complaint);
    QFETCH(bool, isKeptAside);
    ScopedApplet applet(m_name);
    const QByteArray text =
        "{\"logicview\":{\"sequences\":[{\"id\":\"s\",\"name\":\"n\",\"mainFlow\":[" + head + tail;
    put(applet_documents::documentName, text);
    QSignalSpy errors(&standalone::Host::instance(), &standalone::Host::errorLogged);
    applet_documents::read(m_name, folder(), false);
    const auto read = processedit::getAllProcessBySequenceID(m_name, QStringLiteral("s"),
                                                             IProcessBlock::MainFlowBlocks);
    // A step that the text breaks off in is there or not; none before it is lost.
    QVERIFY2(int(read.size()) == blocks || (tail.isEmpty() && int(read.size()) == blocks + 1),
             qPrintable(QString::number(read.size())));
    QString log;
    for (const auto& error : errors) {
        log += error.at(0).toString() + QLatin1Char('\n');
        QVERIFY(error.at(0).toString().size() < 500);
    }
    QVERIFY2(complaint.isEmpty() ? log.isEmpty() : log.contains(complaint), qPrintable(log));
    QVERIFY(errors.size() < 30);
    QCOMPARE(content(applet_documents::documentName), text);
    QCOMPARE(QFile::exists(document() + QStringLiteral(".damaged")), isKeptAside);

    // What is saved holds all that was read, and the bare library reads it.
    QVERIFY(applet_documents::write(m_name, document(), {}));
    const QByteArray first = content(applet_documents::documentName);
    QVERIFY(QJsonDocument::fromJson(first).isObject());
    applet_documents::read(m_name, folder(), false);
    QVERIFY(applet_documents::write(m_name, document(), {}));
    QCOMPARE(content(applet_documents::documentName), first);
}

void AppletDocumentsTest::foreignMembersAndTheVersionStay()
{
    ScopedApplet applet(m_name);
    const QByteArray text =
        QJsonDocument::fromJson(R"({"future": {"a": [1, {}]}, "logicvar": {"x": 1},
        "logicview": {"version": 7, "sequences": [{"id": "s", "name": "n", "initialFlow": [],
        "endFlow": [], "mainFlow": [{"stepType": 4711, "uuid": "u", "z": [true]}]}]}})")
            .toJson();
    put(applet_documents::documentName, text);
    QSignalSpy errors(&standalone::Host::instance(), &standalone::Host::errorLogged);
    applet_documents::read(m_name, folder(), false);
    QCOMPARE(errors.size(), 2);
    QVERIFY(errors.at(0).at(0).toString().contains(QStringLiteral("文档版本 7")));
    QVERIFY(errors.at(1).at(0).toString().contains(QStringLiteral("未知的步骤类型 3/4711")));
    const auto step = processedit::getProcess(m_name, QStringLiteral("u"));
    QVERIFY(step && !step->property.editable && !step->property.nameEditable);
    QVERIFY(applet_documents::write(m_name, document(), {}));
    QCOMPARE(content(applet_documents::documentName), text);
}

void AppletDocumentsTest::examplesComeBackByteForByte()
{
    QDirIterator documents(QFINDTESTDATA("../../examples"), {applet_documents::documentName},
                           QDir::Files, QDirIterator::Subdirectories);
    QVERIFY(documents.hasNext());
    while (documents.hasNext()) {
        const QFileInfo example(documents.next());
        ScopedApplet applet(m_name);
        applet_documents::read(m_name, example.path() + QLatin1Char('/'), false);
        QVERIFY(applet_documents::write(m_name, document(), {}));
        QFile file(example.filePath());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(content(applet_documents::documentName), file.readAll());
    }
}

PE_TEST("applet_documents_test", AppletDocumentsTest)
#include "applet_documents_test.moc"
