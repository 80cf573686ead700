// The files of a project belong to others too: another workbench, a person with an editor, a newer
// version. What they write is neither lost nor changed on the way.

#include "base/file_reading.h"
#include "model/services/process_edit.h"
#include "model/services/process_json_edit.h"
#include "model/services/processedit.h"
#include "standalone/compiler/code_folder.h"
#include "standalone/variables/SystemVariableFile.h"
#include "tests/standalone/model_samples.h"
#include "tests/support/folders.h"
#include "tests/support/ordinary_user.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include <QFile>
#include <QLockFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using standalone::SystemVariableFile;

namespace {
const char* const OurFile = "systemVariable.json";
}

class ForeignWritersTest : public QObject
{
    Q_OBJECT
private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }
    void twoWorkbenches();
    void bothChangedOne();
    void whatIsNotOursStays();
    void damagedTwice();
    void globalsStayAsTheyStand();
    void othersGlobals();
    void lockedByAnother();
    void noRoomForTheOther();
    void codeOfANeighbour();

private:
    static system_variate::SystemVarInfo variable(const char* name, const char* value)
    {
        return {QString::fromLatin1(name),  QString(), 1, SignedCategory,
                QString::fromLatin1(value), 2};
    }
    /// "name=value" of each variable in the file, as another program reads them.
    QString listing() const
    {
        SystemVariableFile reader;
        QStringList lines;
        for (const auto& each : reader.load(m_folder->path()))
            lines.append(each.name + QLatin1Char('=') + each.value);
        return lines.join(QLatin1Char(' '));
    }
    QString path(const char* name) const { return m_folder->filePath(QString::fromLatin1(name)); }
    QByteArray content(const char* name) const
    {
        return file_reading::read(path(name), file_reading::MostOfTable).content;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void ForeignWritersTest::twoWorkbenches()
{
    SystemVariableFile first, second;
    first.load(m_folder->path());
    for (const char* name : {"a", "b", "c"})
        first.put(variable(name, "1"));
    QVERIFY(first.save());
    second.load(m_folder->path());
    first.put(variable("a", "2"));
    first.put(variable("new", "1"));
    second.put(variable("b", "3"));
    second.remove(text("c"));
    samples::LogCatcher log;
    QVERIFY(first.save() && second.save());
    QCOMPARE(listing(), text("a=2 b=3 new=1"));
    QVERIFY2(log.lines.join(u'\n').contains(text("其修改已合并")),
             qPrintable(log.lines.join(u'\n')));
    // And on, each from where the file is now.
    first.put(variable("a", "4"));
    QVERIFY(first.save());
    second.put(variable("b", "5"));
    QVERIFY(second.save());
    QCOMPARE(listing(), text("a=4 b=5 new=1"));
    QVERIFY(!QFile::exists(path("systemVariable.json.replaced")));
}

void ForeignWritersTest::bothChangedOne()
{
    SystemVariableFile first, second;
    first.load(m_folder->path());
    first.put(variable("a", "1"));
    QVERIFY(first.save());
    second.load(m_folder->path());
    first.put(variable("a", "2"));
    QVERIFY(first.save());
    const QByteArray theirs = content(OurFile);
    second.put(variable("a", "3"));
    samples::LogCatcher log;
    QVERIFY(second.save());
    QCOMPARE(listing(), text("a=3"));
    QCOMPARE(content("systemVariable.json.replaced"), theirs);
    QCOMPARE(log.lines.size(), 1);
    QVERIFY2(log.lines.first().contains(text("双方都改了 a")), qPrintable(log.lines.first()));
}

void ForeignWritersTest::whatIsNotOursStays()
{
    for (const QByteArray member : {"\"big\": 9007199254740993", "\"exact\": 1.10", "\"e\": 1E+2",
                                    "\"half\": \"\\ud800\"", "\"n\": {\"x\": [1.0, null]}"}) {
        const rows::Named named(member);
        // The last: a value of ours that no text can hold; it is none of the table.
        const QByteArray document = "{" + member + ", \"variables\": [{" + member +
                                    R"(}, {"name": "a", "type": "s32", "value": "1", )" + member +
                                    R"(}, {"name": "b", "type": "string", "value": "x\ud800"}]})";
        QVERIFY(test_support::putFile(path(OurFile), document));
        SystemVariableFile file;
        QCOMPARE(file.load(m_folder->path()).size(), 1);
        file.put(variable("a", "2"));
        QVERIFY(file.save());
        const QByteArray written = content(OurFile).simplified().replace(" ", "");
        QCOMPARE(written.count(QByteArray(member).replace(" ", "")), 3);
        QVERIFY(written.contains("\"x\\ud800\""));
        // A value put as it is writes nothing.
        const QByteArray other = content(OurFile) + "\n";
        QVERIFY(file.save());
        QVERIFY(test_support::putFile(path(OurFile), other));
        QVERIFY(file.save());
        QCOMPARE(content(OurFile), other);
    }
}

void ForeignWritersTest::damagedTwice()
{
    for (const char* damage : {"{ first", "{ second", "{ third"}) {
        QVERIFY(test_support::putFile(path(OurFile), damage));
        SystemVariableFile file;
        file.load(m_folder->path());
        file.put(variable("a", "1"));
        QVERIFY(file.save());
    }
    QCOMPARE(content("systemVariable.json.damaged"), QByteArray("{ first"));
    QCOMPARE(content("systemVariable.json.damaged2"), QByteArray("{ second"));
    QCOMPARE(content("systemVariable.json.damaged3"), QByteArray("{ third"));
}

void ForeignWritersTest::globalsStayAsTheyStand()
{
    const std::string text = R"({"other": 9007199254740993, "variables": [
        {"uuid": "u", "name": "g", "type": "double", "value": "1", "scope": 2, "x": 1.10}]})";
    process_json_edit::loadGlobalVariable(text);
    namespace processedit = sdk_ui_interface::processedit;
    processedit::saveGlobalVarJsonStr(m_folder->path(), EveryBusiness);
    const QByteArray written = content("globalVariable.json");
    QVERIFY2(written.contains("\"other\": 9007199254740993") && written.contains("\"x\": 1.10"),
             written);
    process_json_edit::loadGlobalVariable(written.toStdString());
    processedit::saveGlobalVarJsonStr(m_folder->path(), EveryBusiness);
    QCOMPARE(content("globalVariable.json"), written);
    process_json_edit::loadGlobalVariable("{}");
}

void ForeignWritersTest::othersGlobals()
{
    namespace processedit = sdk_ui_interface::processedit;
    const QByteArray loaded = R"({"variables": []})";
    const QByteArray other = R"({"variables": [{"uuid": "o", "name": "other"}]})";
    const rows::Table<QByteArray, bool, bool, const char*> table{
        // what stands there, whether something changed here, whether theirs is left, a copy of it
        {"nobody's change", loaded, false, true, ""},
        {"ours", loaded, true, false, ""},
        {"ours, indented anew", "{ \"variables\":[] }", true, false, ""},
        {"theirs", other, false, true, ""},
        {"both", other, true, false, ".replaced"},
        {"damaged", "{", true, false, ".damaged"},
        {"gone", "", false, false, ""}};
    for (const auto& [row, theirs, isChangedHere, isTheirsLeft, copy] : table) {
        const rows::Named named(row);
        init();
        process_json_edit::loadGlobalVariable(loaded.toStdString());
        if (!theirs.isEmpty())
            QVERIFY(test_support::putFile(path("globalVariable.json"), theirs));
        if (isChangedHere)
            process_edit::addVariable(std::string(), GlobalVariable, std::string());
        samples::LogCatcher log;
        processedit::saveGlobalVarJsonStr(m_folder->path(), EveryBusiness);
        QCOMPARE(content("globalVariable.json") == theirs, isTheirsLeft);
        QCOMPARE(log.lines.size(), *copy ? 1 : 0);
        QStringList files{text("globalVariable.json")};
        if (*copy) {
            files << files.first() + text(copy);
            QCOMPARE(content(qUtf8Printable(files.last())), theirs);
        }
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), files);
        // From then on the file is what is known.
        process_edit::addVariable(std::string(), GlobalVariable, std::string());
        processedit::saveGlobalVarJsonStr(m_folder->path(), EveryBusiness);
    }
    process_json_edit::loadGlobalVariable("{}");
}

// A change waits for whoever is writing, and is told once.
void ForeignWritersTest::lockedByAnother()
{
    SystemVariableFile file;
    file.load(m_folder->path());
    samples::LogCatcher log;
    {
        QLockFile other(path("systemVariable.json.lock"));
        QVERIFY(other.lock());
        file.put(variable("a", "1"));
        QVERIFY(!file.save() && !file.save());
        QVERIFY(!QFile::exists(path(OurFile)));
    }
    QTRY_COMPARE(listing(), text("a=1"));
    QCOMPARE(log.lines.size(), 1);
}

void ForeignWritersTest::noRoomForTheOther()
{
    SystemVariableFile file;
    file.load(m_folder->path());
    const QByteArray theirs = "{\"variables\": [";
    QVERIFY(test_support::putFile(path(OurFile), theirs));
    file.put(variable("a", "1"));
    {
        const test_support::FullDisk disk(3);
        QVERIFY(!file.save());
    }
    QCOMPARE(content(OurFile), theirs);
    QVERIFY(file.save());
    QCOMPARE(listing(), text("a=1"));
    QCOMPARE(content("systemVariable.json.replaced"), theirs);
}

// What the generator has not written it doesn't remove, and it writes to no applet's own folder.
void ForeignWritersTest::codeOfANeighbour()
{
    using Files = std::vector<codegen::GeneratedFile>;
    const auto file = [](const char* name) { return codegen::GeneratedFile{name, "// code\n"}; };
    const QString folder = path("a_code");
    QString error;
    QVERIFY(standalone::writeCodeFolder(
        folder, Files{file("sequence_1.cpp"), file("sequence_2.cpp")}, error));
    const QString foreign = folder + text("/sequence_9.cpp");
    QVERIFY(test_support::putFile(foreign, "mine"));
    const QString list = folder + text("/generated_files.txt");
    QFile listFile(list);
    QVERIFY(listFile.open(QIODevice::Append) && listFile.write("../outside\n/etc/hosts\n") > 0);
    listFile.close();
    QVERIFY(test_support::putFile(path("outside"), "outside"));
    QVERIFY(standalone::writeCodeFolder(folder, Files{file("sequence_2.cpp")}, error));
    QVERIFY(!QFile::exists(folder + text("/sequence_1.cpp")));
    QVERIFY(QFile::exists(foreign) && QFile::exists(path("outside")));

    const QString document = folder + text("/processInfo.pedt");
    QVERIFY(test_support::putFile(document, "{}"));
    QVERIFY(!standalone::writeCodeFolder(folder, Files{file("sequence_3.cpp")}, error));
    QVERIFY2(error.contains(text("另一个小程序")), qPrintable(error));
    QVERIFY(QFile::exists(folder + text("/sequence_2.cpp")));
    QVERIFY(!QFile::exists(folder + text("/sequence_3.cpp")));
}

PE_TEST("foreign_writers", ForeignWritersTest)
#include "foreign_writers_test.moc"
