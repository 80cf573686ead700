#include "shell/documents/applet_documents.h"

#include "model/process_blocks.h"
#include "model/services/process_json_edit.h"
#include "standalone/host/Host.h"
#include "tests/support/applet_fixture.h"
#include "tests/support/folders.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include <QDirIterator>
#include <QtTest>

namespace processedit = sdk_ui_interface::processedit;
using applet_fixture::ScopedApplet;

class AppletDocumentsTest : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void stripsBeforeWriting();
    void backupRule();
    void damagedDocumentIsKept();
    void faults();
    void readsOldVersions();
    void reloadNeverEmptiesTheModel();
    void hostileDocumentsAreReadAsFarAsTheyGo();
    void foreignMembersAndTheVersionStay();
    void examplesComeBackByteForByte();

private:
    void makeApplet(bool withBlock) const;
    QString folder() const { return m_folder->path() + QLatin1Char('/'); }
    QString document() const { return applet_documents::documentPath(folder()); }
    /// Of the document, or of its copy with that suffix.
    QByteArray content(const char* suffix = "") const
    {
        return test_support::content(document() + text(suffix));
    }
    void put(const QByteArray& content) const
    {
        QVERIFY(test_support::putFile(document(), content));
    }
    /// The lines of the log that reading the document brings.
    QStringList read(bool quiet = false) const;
    /// What is in the document after a save.
    QByteArray written() const
    {
        return applet_documents::write(m_name, document(), {}) ? content() : "refused";
    }

    const QString m_name = text("doc_test");
    std::unique_ptr<QTemporaryDir> m_folder;
};

void AppletDocumentsTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

void AppletDocumentsTest::makeApplet(bool withBlock) const
{
    const QString sequence = processedit::createSeuqence(m_name, text("main_seq"));
    if (withBlock)
        applet_fixture::addStep<DelayProcessBlock>(m_name, sequence, text("1"), step_type::Delay,
                                                   "等待");
}

QStringList AppletDocumentsTest::read(bool quiet) const
{
    QSignalSpy errors(&standalone::Host::instance(), &standalone::Host::errorLogged);
    applet_documents::read(m_name, folder(), quiet);
    QStringList log;
    for (const auto& error : errors)
        log << error[0].toString();
    return log;
}

void AppletDocumentsTest::stripsBeforeWriting()
{
    ScopedApplet applet(m_name);
    makeApplet(true);
    QVERIFY(applet_documents::write(m_name, document(), [](QJsonObject& logicView) {
        logicView = QJsonObject{{text("stripped"), logicView.contains(text("sequences"))}};
    }));
    QCOMPARE(QJsonDocument::fromJson(content()).object().value(text("logicview")).toObject(),
             (QJsonObject{{text("stripped"), true}}));
}

void AppletDocumentsTest::backupRule()
{
    using applet_documents::Backup;
    const char* document = "the document";
    const rows::Table<bool, Backup, const char*, const char*> table{
        // has a block, rule, before, after
        {"first backup", true, Backup::Replace, "", document},
        {"replaced", true, Backup::Replace, "old", document},
        {"kept", true, Backup::KeepFirst, "old", "old"},
        {"kept none", true, Backup::KeepFirst, "", document},
        {"emptied document", false, Backup::Replace, "old", "old"},
        {"empty, none", false, Backup::Replace, "", ""}};
    for (const auto& [row, hasBlock, rule, before, after] : table) {
        const rows::Named named(row);
        init();
        ScopedApplet applet(m_name);
        makeApplet(hasBlock);
        if (*before)
            QVERIFY(test_support::putFile(this->document() + text(".bak"), before));
        const QByteArray now = written();
        applet_documents::keepBackup(m_name, this->document(), rule);
        QCOMPARE(content(".bak"), after == document ? now : QByteArray(after));
    }
}

void AppletDocumentsTest::damagedDocumentIsKept()
{
    for (const QByteArray& damaged :
         {QByteArray("{\"logicview\": {\"sequences\": ["), QByteArray(), QByteArray("[1, 2]")}) {
        init();
        ScopedApplet applet(m_name);
        put(damaged);
        QVERIFY(read().value(0).startsWith(text("[流程编辑] 流程json文件解析失败: ")));
        QVERIFY(!processedit::getCAppletDataIsExist(m_name));
        // Another look at it makes no second copy; another damage does.
        read(true);
        put("{ other");
        read(true);
        makeApplet(true);
        QVERIFY(written().contains("等待"));
        QCOMPARE(content(".damaged"), damaged);
        QCOMPARE(content(".damaged2"), QByteArray("{ other"));
        QVERIFY(!QFile::exists(document() + text(".damaged3")));
    }
}

void AppletDocumentsTest::faults()
{
    QCOMPARE(applet_documents::faultOf(folder()), QString()); // none there
    const rows::Table<QString> table{{"{}", QString()},
                                     {"[]", text("不是对象 (行 1 列 3)")},
                                     {"{\n\"a\":", text("内容不完整 (行 2 列 5)")},
                                     {"{} x", text("多余的内容 (行 1 列 4)")}};
    for (const auto& [json, fault] : table) {
        const rows::Named named(json);
        put(json);
        QCOMPARE(applet_documents::faultOf(folder()), fault);
    }
}

void AppletDocumentsTest::readsOldVersions()
{
    using test_support::putFile;
    QVERIFY(
        putFile(folder() + text("logicview.json"), R"({"sequences": [{"id": "s", "name": "n"}]})"));
    QVERIFY(putFile(folder() + text("variable.json"), R"({"process": [{"name": "v"}]})"));
    ScopedApplet applet(m_name);
    read();
    QCOMPARE(int(processedit::getAllSequenceByAppName(m_name).size()), 1);
    QCOMPARE(int(process_edit::getAllCAppletVariable(m_name.toStdString()).size()), 1);
    QVERIFY(!QFile::exists(document()));
}

void AppletDocumentsTest::reloadNeverEmptiesTheModel()
{
    const char* own = "processInfo.pedt";
    const char* cut = R"({"logicvar":{},"logicview":{"sequences":[{"id":"s","name":"n"},{)";
    const rows::Table<const char*, const char*, bool> table{
        // file, its content, whether it is told
        {"no document", "nothing", "", false},
        {"without steps", own, "{\"other\": 1}", false},
        {"cut", own, cut, true},
        {"empty", own, "", true},
        {"old version, cut", "logicview.json", cut, true},
        {"old version, cut variables", "variable.json", "{\"process\": [", true}};
    for (const auto& [row, file, json, isTold] : table) {
        const rows::Named named(row);
        init();
        ScopedApplet applet(m_name);
        makeApplet(true);
        process_edit::addVariable(m_name.toStdString(), ProcessVariable, m_name.toStdString());
        const auto model = [this] {
            return processedit::generateProcessJson(m_name).toStdString() +
                   process_json_edit::generateAppAndSequenceVariableJson(m_name.toStdString());
        };
        const std::string before = model();
        QVERIFY(test_support::putFile(folder() + text(file), json));
        const QStringList log = read();
        QCOMPARE(model(), before);
        QCOMPARE(log.value(log.size() - 1).contains(text("保留内存中的内容")), isTold);
    }
}

void AppletDocumentsTest::hostileDocumentsAreReadAsFarAsTheyGo()
{
    struct Hostile
    {
        const char* name;
        QByteArray steps; ///< the main flow's; the text breaks off behind them or goes on
        bool isCut;
        int blocks; ///< that are read
        const char* complaint;
        bool isKeptAside;
    };
    const QByteArray step("{\"stepType\":24,\"uuid\":\"a\",\"name\":\"");
    const QByteArray nested("{\"stepType\":1,\"children\":[");
    const QByteArray longName(5 * 1000 * 1000, 'x');
    constexpr int deep = 10000;
    const Hostile table[] = {
        {"nested 10,000 deep", nested.repeated(deep) + QByteArray("]}").repeated(deep), false, deep,
         "嵌套过深", false},
        {"nested 20,000 deep, never closed", nested.repeated(2 * deep), true, 2 * deep,
         "内容不完整 (行 1 列 ", true},
        {"an unknown member nested 100,000 deep",
         step + "\",\"x\":" + QByteArray(10 * deep, '[') + QByteArray(10 * deep, ']') + '}', false,
         1, "sequences[0].mainFlow[0].x: 嵌套过深", false},
        {"one string of 100 MB", step + QByteArray(100 * 1000 * 1000, 'x') + "\"}", false, 1, "",
         false},
        {"a member's name of 5 MB, twice",
         step + "\",\"" + longName + "\":1,\"" + longName + "\":2}", false, 1, "成员重复", false},
        {"100,000 steps of one uuid", (step + "\"},").repeated(10 * deep) + step + "\"}", false,
         10 * deep + 1, "另有", false},
        {"not UTF-8", step + "\xCE\xC4\xBC\xFE\"}", false, 1, "非UTF-8字符, 已替换: 行 1 列", true},
        {"NUL in a text and as a byte", step + QByteArray("a\\u0000b\0c\"}", 12), false, 1, "",
         false},
        {"cut in the second step", step + "\"}," + step, true, 1, "内容不完整", true},
        {"a comma too few", step + "\"}{", false, 1, "缺少逗号", true}};
    for (const Hostile& row : table) {
        const rows::Named named(row.name);
        init();
        ScopedApplet applet(m_name);
        const QByteArray json = R"({"logicview":{"sequences":[{"id":"s","name":"n","mainFlow":[)" +
                                row.steps + (row.isCut ? "" : "]}]}}");
        put(json);
        const QStringList log = read();
        const int blocks = int(
            processedit::getAllProcessBySequenceID(m_name, text("s"), IProcessBlock::MainFlowBlocks)
                .size());
        // A step that the text breaks off in is there or not; none before it is lost.
        QVERIFY2(blocks == row.blocks || (row.isCut && blocks == row.blocks + 1),
                 qPrintable(QString::number(blocks)));
        for (const QString& line : log)
            QVERIFY(line.size() < 500);
        const QString said = log.join(u'\n');
        QVERIFY2(*row.complaint ? said.contains(text(row.complaint)) : said.isEmpty(),
                 qPrintable(said));
        QVERIFY(log.size() < 30);
        QCOMPARE(content(), json);
        QCOMPARE(QFile::exists(document() + text(".damaged")), row.isKeptAside);

        // What is saved holds all that was read, and the bare library reads it.
        const QByteArray first = written();
        QVERIFY(QJsonDocument::fromJson(first).isObject());
        read();
        QCOMPARE(written(), first);
    }
}

void AppletDocumentsTest::foreignMembersAndTheVersionStay()
{
    ScopedApplet applet(m_name);
    QByteArray json = QJsonDocument::fromJson(R"({"future": {"a": [1, {}]}, "logicvar": {"x": 1},
        "logicview": {"version": 7, "sequences": [{"id": "s", "name": "n", "initialFlow": [],
        "endFlow": [], "mainFlow": [{"stepType": 4711, "uuid": "u", "z": [true]}]}]}})")
                          .toJson();
    json.replace("true", "1.50"); // a number as it stands
    put(json);
    const QStringList log = read();
    QCOMPARE(log.size(), 2);
    QVERIFY(log[0].contains(text("文档版本 7")));
    QVERIFY(log[1].contains(text("未知的步骤类型 3/4711")));
    const auto step = processedit::getProcess(m_name, text("u"));
    QVERIFY(step && !step->property.editable && !step->property.nameEditable);
    QCOMPARE(written(), json);
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
        QCOMPARE(written(), test_support::content(example.filePath()));
    }
}

PE_TEST("applet_documents_test", AppletDocumentsTest)
#include "applet_documents_test.moc"
