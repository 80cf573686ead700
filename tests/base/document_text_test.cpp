// What a document's text is cut into and put together from, and where a broken one breaks.

#include "base/document_text.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"

#include <QJsonDocument>
#include <QtTest>

using std::string;

class DocumentTextTest : public QObject
{
    Q_OBJECT
private slots:
    void foreignBytes();
    void faults();
    void depth();
    void joined();
};

void DocumentTextTest::foreignBytes()
{
    // The first and the last character of each length, and their neighbours.
    for (const char* sound :
         {"", "\x7f", "\xc2\x80", "\xdf\xbf", "\xe0\xa0\x80", "\xed\x9f\xbf", "\xee\x80\x80",
          "\xef\xbf\xbf", "\xf0\x90\x80\x80", "\xf4\x8f\xbf\xbf"}) {
        for (const string& before : {string(), string("1234567"), string("12345678")})
            QVERIFY2(document_text::firstForeignByte(before + sound + "abcdefgh") == string::npos,
                     QByteArray(sound).toHex());
    }
    for (const char* foreign :
         {"\x80", "\xbf", "\xc1\xbf", "\xc2", "\xc2\x7f", "\xc2\xc0", "\xe0\x9f\xbf", "\xe1\x80",
          "\xe1\x80\x7f", "\xed\xa0\x80", "\xef\xbf\xc0", "\xf0\x8f\xbf\xbf", "\xf1\x80\x80",
          "\xf1\x80\x80\x7f", "\xf1\x80\xc0\x80", "\xf4\x90\x80\x80", "\xf5\x80\x80\x80", "\xff"}) {
        for (const string& before : {string(), string("1234567"), string("12345678变")})
            QVERIFY2(document_text::firstForeignByte(before + foreign) == before.size(),
                     QByteArray(foreign).toHex());
    }
}

void DocumentTextTest::faults()
{
    const rows::Table<const char*, const char*> table{
        {"{\"a\": [1, {\"b\" : 2}]} ", "", "a=[1,{\"b\":2}]"},
        {"\xEF\xBB\xBF{\"a\" : \"x y\" ,\n\"b\":{ }}", "", "a=\"x y\" b={}"},
        {"{\"a\":1,\"a\":2}", "", "a=2"},
        {"{\"a\":1} {", "多余的内容 行 1 列 9", "a=1"},
        {"{\"a\":1,\n  \"b\": [ 1, x", "无效的值 行 2 列 13", "a=1 b=[1,"},
        {"{\"a\":{\"b\":1", "内容不完整 行 1 列 12", "a={\"b\":1"},
        {"[1, 2]", "", ""}};
    for (const auto& [json, fault, members] : table) {
        const rows::Named named(json);
        const auto parts = document_text::split(json);
        QCOMPARE(parts.isObject, json[0] != '[');
        string found;
        for (const auto& [name, value] : parts.members)
            found += (found.empty() ? "" : " ") + string(name) + '=' + string(value);
        QCOMPARE(found, string(members));
        const QString told = parts.fault ? QString::fromUtf8(parts.fault) + u' ' +
                                               document_text::lineAndColumn(json, parts.faultOffset)
                                         : QString();
        QCOMPARE(told, QString::fromUtf8(fault));
    }
}

void DocumentTextTest::depth()
{
    for (const int levels : {1, 1024, 1025}) {
        const string nested = string(std::size_t(levels), '[') + string(std::size_t(levels), ']');
        string text;
        QString complaint;
        QCOMPARE(document_text::indent(nested, text, complaint), levels <= 1024);
        QCOMPARE(complaint, levels <= 1024 ? QString() : QStringLiteral("嵌套过深"));
        if (levels <= 1024)
            QCOMPARE(QByteArray::fromStdString(text),
                     QJsonDocument::fromJson(QByteArray::fromStdString(nested)).toJson());
    }
}

void DocumentTextTest::joined()
{
    // What the library would write otherwise isn't joined.
    const rows::Table<const char*, bool> table{
        {"order", R"({"a":1,"b":{"a":1,"c":[]}})", true},
        {"another order", R"({"b":1,"a":2})", false},
        {"another order within", R"({"a":{"b":1,"a":2}})", false},
        {"one name twice", R"({"a":1,"a":2})", false},
        {"usual escapes", R"(["\"","\\","\n","\\u00e9","\u0001","\\\\/"])", true},
        {"solidus", R"(["\\n\/"])", false},
        {"solidus behind others", R"(["\n\\\/"])", false},
        {"letter", R"(["\u0041"])", false},
        {"control character, twice", R"(["\u001f\u0000"])", true},
        {"half a pair", R"(["\ud800"])", true},
        {"neither half", R"(["\ud700"])", false},
        {"escape in a name", R"({"\n":1})", false},
        {"after an unusual one", R"(["\u0041","a"])", false},
        {"broken", "[1,", false}};
    for (const auto& [row, json, isJoined] : table) {
        const rows::Named named(row);
        string text;
        QCOMPARE(document_text::join({{"x", "1"}, {"y", json}}, text), isJoined);
        if (isJoined)
            QCOMPARE(QByteArray::fromStdString(text),
                     QJsonDocument::fromJson(QByteArray("{\"x\":1,\"y\":") + json + '}').toJson());
    }
}

PE_TEST("document_text", DocumentTextTest)
#include "document_text_test.moc"
