// The service of system variables: values against types, the file in the project's folder, and the
// listeners.

#include "standalone/variables/SystemVariables.h"
#include "tests/support/folders.h"
#include "tests/support/ordinary_user.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

#include <thread>

using standalone::SystemVariables;
using system_variate::SystemVarInfo;

namespace {

SystemVarInfo variable(const char* name, DataCategoryType category, const char* value)
{
    return {QString::fromUtf8(name), text("说明"), 1, category, QString::fromUtf8(value), 3};
}

QByteArray readAll(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

class Listener : public IUIVariateListener
{
public:
    QStringList heard;
    Qt::HANDLE thread = nullptr;

private:
    void onVariateDirectChange(Operation operation, SystemVarDef variable) override
    {
        thread = QThread::currentThreadId();
        heard << QString::number(operation) + u' ' + variable.name;
    }
};

} // namespace

class RuntimeVariablesTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { m_variables.setProjectFolder(QString()); }

    void values();
    void fileOfTheProject();
    void foreignFiles();
    void fileThatCannotBeKeptIsNotReplaced();
    void othersChangesAreTold();
    void listenersHearInOrder();

private:
    SystemVariables& m_variables = SystemVariables::instance();
};

void RuntimeVariablesTest::values()
{
    const rows::Table<DataCategoryType, const char*, const char*> table{
        // what is taken, and what isn't
        {"s32", SignedCategory, "|0|-2147483648|0x7FFFFFFF| 7 |010",
         "2147483648|1.5|x|--1|1,2|0x|-2147483649"},
        {"u32", UnsignedCategory, "4294967295|0xffffffff", "-1|4294967296|0x100000000"},
        {"s64", Signed64Category, "-9223372036854775808|9223372036854775807",
         "9223372036854775808"},
        {"u64", Unsigned64Category, "18446744073709551615", "18446744073709551616|-1"},
        {"double", DoubleCategory, "1e300|-0.5|7", "nan|inf|1,5|1e999|x"},
        {"bytes", ByteArrayCategory, "0,255, 0x7f|1", "256|-1|1,,2|1 2"},
        {"doubles", DoubleArrayCategory, "1.5,-2|3", "1.5;2"}};
    for (const auto& [row, category, good, bad] : table) {
        const rows::Named named(row);
        QCOMPARE(m_variables.define(variable("v", category, "")), SystemVariables::Done);
        for (const QString& value : text(good).split(u'|'))
            QVERIFY2(m_variables.setValue(text("v"), value) == SystemVariables::Done,
                     qPrintable(value));
        for (const QString& value : text(bad).split(u'|'))
            QVERIFY2(m_variables.setValue(text("v"), value) == SystemVariables::WrongValue,
                     qPrintable(value));
        SystemVarInfo info;
        QVERIFY(m_variables.find(text("v"), info));
        QCOMPARE(info.value, text(good).split(u'|').last());
    }
    QCOMPARE(m_variables.setValue(text("w"), QString()), SystemVariables::Unknown);
    QCOMPARE(m_variables.define(variable("2v", TextCategory, "")), SystemVariables::WrongName);
}

void RuntimeVariablesTest::fileOfTheProject()
{
    QTemporaryDir first;
    QTemporaryDir second;
    const QString path = first.filePath(text("systemVariable.json"));
    m_variables.setProjectFolder(first.path());
    QVERIFY(m_variables.names().isEmpty());
    m_variables.define(variable("title", TextCategory, "电压\n\"x\""));
    m_variables.define(variable("speed", UnsignedCategory, "3"));
    m_variables.define(variable("gone", DoubleCategory, "3"));
    m_variables.setValue(text("speed"), text("4"));
    m_variables.remove(text("gone"));
    QTRY_VERIFY(readAll(path).contains("speed")); // it writes itself, a moment later
    QVERIFY(m_variables.save());

    m_variables.setProjectFolder(second.path());
    QVERIFY(m_variables.names().isEmpty());
    QVERIFY(!QFileInfo::exists(second.filePath(text("systemVariable.json"))));

    // A variable of a newer version, of a type that isn't known, stays.
    const QByteArray entry = "{\"name\": \"can\", \"type\": \"DrelCan\", \"value\": \"?\"}";
    QByteArray content = readAll(path);
    QVERIFY(test_support::putFile(path,
                                  content.replace(content.lastIndexOf(']'), 1, ',' + entry + ']')));
    m_variables.setProjectFolder(first.path());
    QStringList lines;
    for (const SystemVarInfo& each : m_variables.list())
        lines << text("%1=%2 %3 %4")
                     .arg(each.name, each.value)
                     .arg(each.category)
                     .arg(each.precision);
    QCOMPARE(lines, (QStringList{text("speed=4 %1 3").arg(UnsignedCategory),
                                 text("title=电压\n\"x\" %1 3").arg(TextCategory)}));
    m_variables.setValue(text("speed"), text("5"));
    QVERIFY(m_variables.save());
    const QJsonArray written = QJsonDocument::fromJson(readAll(path))[text("variables")].toArray();
    QCOMPARE(written.size(), 3);
    QVERIFY(written.contains(QJsonDocument::fromJson(entry).object()));
}

void RuntimeVariablesTest::foreignFiles()
{
    const rows::Table<QByteArray, int, bool> table{
        // how many variables are known then, and whether the file is kept aside
        {"no json", "{\"variables\": [", 0, true},
        {"an array", "[]", 0, true},
        {"empty", "", 0, true},
        {"no variables", "{}", 0, false},
        {"wrong kinds", "{\"variables\": {\"a\": 1}}", 0, true},
        {"doubled and wrong",
         R"({"variables": [7, {"name": "a", "type": "s32", "value": "1"},
             {"name": "a", "type": "s32", "value": "2"}, {"name": 5},
             {"name": "b", "type": "s32", "value": "x"}]})",
         1, false}};
    for (const auto& [row, content, known, isKeptAside] : table) {
        const rows::Named named(row);
        QTemporaryDir folder;
        const QString file = folder.filePath(text("systemVariable.json"));
        QVERIFY(test_support::putFile(file, content));
        m_variables.setProjectFolder(folder.path());
        QCOMPARE(m_variables.names().size(), known);
        QVERIFY(m_variables.save());
        QCOMPARE(readAll(file), content); // until something changes
        QCOMPARE(QFileInfo::exists(file + text(".damaged")), isKeptAside);
        m_variables.setProjectFolder(QString());
    }
}

void RuntimeVariablesTest::fileThatCannotBeKeptIsNotReplaced()
{
    QTemporaryDir folder;
    const QString file = folder.filePath(text("systemVariable.json"));
    const QByteArray content = "{\"variables\": [ cut off";
    QVERIFY(test_support::putFile(file, content));
    QVERIFY(QFile::setPermissions(folder.path(), QFile::ReadOwner | QFile::ExeOwner));
    QVERIFY(test_support::OrdinaryUser::own(folder.path()));
    {
        const test_support::OrdinaryUser user;
        QVERIFY(user.isOrdinary());
        m_variables.setProjectFolder(folder.path()); // which this user can't write to
    }
    QCOMPARE(m_variables.define(variable("a", SignedCategory, "1")), SystemVariables::Done);
    QVERIFY(QFile::setPermissions(folder.path(),
                                  QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    QVERIFY(!m_variables.save() && !m_variables.save());
    QCOMPARE(readAll(file), content);
}

// What is taken from the file is in the table, so that the next change doesn't undo it.
void RuntimeVariablesTest::othersChangesAreTold()
{
    QTemporaryDir folder;
    m_variables.setProjectFolder(folder.path());
    for (const char* name : {"a", "b", "c"})
        m_variables.define(variable(name, SignedCategory, "1"));
    QVERIFY(m_variables.save());
    standalone::SystemVariableFile other;
    other.load(folder.path());
    other.put(variable("b", SignedCategory, "2"));
    other.put(variable("d", SignedCategory, "4"));
    other.remove(text("c"));
    QVERIFY(other.save());
    m_variables.waitForListeners();
    Listener listener;
    QCOMPARE(m_variables.setValue(text("a"), text("5")), SystemVariables::Done);
    QVERIFY(m_variables.save());
    m_variables.waitForListeners();
    QCOMPARE(listener.heard.join(u'|'), text("4 a|2 b|1 d|3 c"));
    QStringList lines;
    for (const auto& each : m_variables.list())
        lines << each.name + each.value;
    QCOMPARE(lines.join(u' '), text("a5 b2 d4"));
}

void RuntimeVariablesTest::listenersHearInOrder()
{
    m_variables.waitForListeners();
    Listener listener;
    m_variables.define(variable("a", SignedCategory, "1"));
    m_variables.define(variable("a", DoubleCategory, "1"));
    m_variables.setValue(text("a"), text("2"));
    m_variables.setValue(text("a"), text("x")); // refused, so untold
    m_variables.remove(text("a"));
    m_variables.waitForListeners();
    QCOMPARE(listener.heard.join(u'|'), text("1 a|2 a|4 a|3 a"));
    QVERIFY(listener.thread && listener.thread != QThread::currentThreadId());
}

PE_TEST("runtime_variables_test", RuntimeVariablesTest)
#include "runtime_variables_test.moc"
