// The service of system variables: values against types, the file in the project's folder, and the
// listeners.

#include "standalone/variables/SystemVariables.h"
#include "tests/support/ordinary_user.h"
#include "tests/support/test_program.h"

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
    return {
        QString::fromUtf8(name), QStringLiteral("说明"), 1, category, QString::fromUtf8(value), 3};
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

    void values_data();
    void values();
    void fileOfTheProject();
    void foreignFiles_data();
    void foreignFiles();
    void fileThatCannotBeKeptIsNotReplaced();
    void othersChangesAreTold();
    void listenersHearInOrder();

private:
    SystemVariables& m_variables = SystemVariables::instance();
};

void RuntimeVariablesTest::values_data()
{
    QTest::addColumn<int>("category");
    QTest::addColumn<QStringList>("good");
    QTest::addColumn<QStringList>("bad");
    const auto row = [](const char* name, DataCategoryType category, const char* good,
                        const char* bad) {
        QTest::newRow(name) << int(category) << QString::fromUtf8(good).split(u'|')
                            << QString::fromUtf8(bad).split(u'|');
    };
    row("s32", SignedCategory, "|0|-2147483648|0x7FFFFFFF| 7 |010",
        "2147483648|1.5|x|--1|1,2|0x|-2147483649");
    row("u32", UnsignedCategory, "4294967295|0xffffffff", "-1|4294967296|0x100000000");
    row("s64", Signed64Category, "-9223372036854775808|9223372036854775807", "9223372036854775808");
    row("u64", Unsigned64Category, "18446744073709551615", "18446744073709551616|-1");
    row("double", DoubleCategory, "1e300|-0.5|7", "nan|inf|1,5|1e999|x");
    row("bytes", ByteArrayCategory, "0,255, 0x7f|1", "256|-1|1,,2|1 2");
    row("doubles", DoubleArrayCategory, "1.5,-2|3", "1.5;2");
}

void RuntimeVariablesTest::values()
{
    QFETCH(int, category);
    QFETCH(QStringList, good);
    QFETCH(QStringList, bad);
    QCOMPARE(m_variables.define(variable("v", DataCategoryType(category), "")),
             SystemVariables::Done);
    const QString name = QStringLiteral("v");
    for (const QString& value : qAsConst(good))
        QVERIFY2(m_variables.setValue(name, value) == SystemVariables::Done, qPrintable(value));
    for (const QString& value : qAsConst(bad))
        QVERIFY2(m_variables.setValue(name, value) == SystemVariables::WrongValue,
                 qPrintable(value));
    SystemVarInfo info;
    QVERIFY(m_variables.find(name, info));
    QCOMPARE(info.value, good.last());
    QCOMPARE(m_variables.setValue(QStringLiteral("w"), QString()), SystemVariables::Unknown);
    QCOMPARE(m_variables.define(variable("2v", TextCategory, "")), SystemVariables::WrongName);
}

void RuntimeVariablesTest::fileOfTheProject()
{
    QTemporaryDir first;
    QTemporaryDir second;
    const QString path = first.filePath(QStringLiteral("systemVariable.json"));
    m_variables.setProjectFolder(first.path());
    QVERIFY(m_variables.names().isEmpty());
    m_variables.define(variable("title", TextCategory, "电压\n\"x\""));
    m_variables.define(variable("speed", UnsignedCategory, "3"));
    m_variables.define(variable("gone", DoubleCategory, "3"));
    m_variables.setValue(QStringLiteral("speed"), QStringLiteral("4"));
    m_variables.remove(QStringLiteral("gone"));
    // It writes itself, a moment later.
    QTRY_VERIFY(readAll(path).contains("speed"));

    // Members of others, in the file and in a variable, and a variable of an unknown type.
    QVERIFY(m_variables.save());
    QJsonObject document = QJsonDocument::fromJson(readAll(path)).object();
    QCOMPARE(document[QStringLiteral("variables")].toArray().size(), 2);
    m_variables.setProjectFolder(second.path());
    QVERIFY(m_variables.names().isEmpty());
    QVERIFY(!QFileInfo::exists(second.filePath(QStringLiteral("systemVariable.json"))));
    document[QStringLiteral("author")] = QStringLiteral("x");
    QJsonArray entries = document[QStringLiteral("variables")].toArray();
    QJsonObject speed = entries[0].toObject();
    speed[QStringLiteral("unit")] = QStringLiteral("km/h");
    entries[0] = speed;
    entries.append(QJsonObject{{QStringLiteral("name"), QStringLiteral("can")},
                               {QStringLiteral("type"), QStringLiteral("DrelCan")},
                               {QStringLiteral("value"), QStringLiteral("?")}});
    document[QStringLiteral("variables")] = entries;
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QJsonDocument(document).toJson());
    file.close();

    m_variables.setProjectFolder(first.path());
    QCOMPARE(m_variables.names(),
             (QVector<QString>{QStringLiteral("speed"), QStringLiteral("title")}));
    SystemVarInfo info;
    QVERIFY(m_variables.find(QStringLiteral("title"), info));
    QCOMPARE(info.value, QStringLiteral("电压\n\"x\""));
    QVERIFY(m_variables.find(QStringLiteral("speed"), info));
    QCOMPARE(info.category, UnsignedCategory);
    QCOMPARE(info.precision, 3);
    QCOMPARE(info.value, QStringLiteral("4"));
    m_variables.setValue(QStringLiteral("speed"), QStringLiteral("5"));
    QVERIFY(m_variables.save());
    const QByteArray written = readAll(path);
    speed[QStringLiteral("value")] = QStringLiteral("5");
    entries[0] = speed;
    document[QStringLiteral("variables")] = entries;
    QCOMPARE(written, QJsonDocument(document).toJson());
}

void RuntimeVariablesTest::foreignFiles_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("known");
    QTest::addColumn<bool>("isKeptAside");
    QTest::newRow("no json") << QByteArray("{\"variables\": [") << 0 << true;
    QTest::newRow("an array") << QByteArray("[]") << 0 << true;
    QTest::newRow("empty") << QByteArray() << 0 << true;
    QTest::newRow("no variables") << QByteArray("{}") << 0 << false;
    QTest::newRow("wrong kinds") << QByteArray("{\"variables\": {\"a\": 1}}") << 0 << true;
    QTest::newRow("doubled and wrong")
        << QByteArray("{\"variables\": [7, {\"name\": \"a\", \"type\": \"s32\", \"value\": \"1\"}, "
                      "{\"name\": \"a\", \"type\": \"s32\", \"value\": \"2\"}, {\"name\": 5}, "
                      "{\"name\": \"b\", \"type\": \"s32\", \"value\": \"x\"}]}")
        << 1 << false;
}

void RuntimeVariablesTest::foreignFiles()
{
    QFETCH(QByteArray, content);
    QFETCH(int, known);
    QFETCH(bool, isKeptAside);
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("systemVariable.json")));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    file.close();
    m_variables.setProjectFolder(folder.path());
    QCOMPARE(m_variables.names().size(), known);
    QVERIFY(m_variables.save());
    QCOMPARE(readAll(file.fileName()), content); // until something changes
    QCOMPARE(QFileInfo::exists(file.fileName() + QStringLiteral(".damaged")), isKeptAside);
}

void RuntimeVariablesTest::fileThatCannotBeKeptIsNotReplaced()
{
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("systemVariable.json")));
    const QByteArray content = "{\"variables\": [ cut off";
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    file.close();
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
    QCOMPARE(readAll(file.fileName()), content);
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
    other.remove(QStringLiteral("c"));
    QVERIFY(other.save());
    m_variables.waitForListeners();
    Listener listener;
    QCOMPARE(m_variables.setValue(QStringLiteral("a"), QStringLiteral("5")), SystemVariables::Done);
    QVERIFY(m_variables.save());
    m_variables.waitForListeners();
    QCOMPARE(listener.heard, (QStringList{QStringLiteral("4 a"), QStringLiteral("2 b"),
                                          QStringLiteral("1 d"), QStringLiteral("3 c")}));
    QStringList lines;
    for (const auto& each : m_variables.list())
        lines << each.name + each.value;
    QCOMPARE(lines.join(u' '), QStringLiteral("a5 b2 d4"));
}

void RuntimeVariablesTest::listenersHearInOrder()
{
    m_variables.waitForListeners();
    Listener listener;
    m_variables.define(variable("a", SignedCategory, "1"));
    m_variables.define(variable("a", DoubleCategory, "1"));
    m_variables.setValue(QStringLiteral("a"), QStringLiteral("2"));
    m_variables.setValue(QStringLiteral("a"), QStringLiteral("x")); // refused, so untold
    m_variables.remove(QStringLiteral("a"));
    m_variables.waitForListeners();
    QCOMPARE(listener.heard, (QStringList{QStringLiteral("1 a"), QStringLiteral("2 a"),
                                          QStringLiteral("4 a"), QStringLiteral("3 a")}));
    QVERIFY(listener.thread && listener.thread != QThread::currentThreadId());
}

PE_TEST("runtime_variables_test", RuntimeVariablesTest)
#include "runtime_variables_test.moc"
