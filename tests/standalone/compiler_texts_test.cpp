// What is read of a compiler's words: the files it has read, and the ends of what it said.

#include "standalone/compiler/ClippedOutput.h"
#include "standalone/compiler/dependencies.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

using standalone::ClippedOutput;

class CompilerTextsTest : public QObject
{
    Q_OBJECT
private slots:
    void dependencies();
    void clippedOutput();
};

void CompilerTextsTest::dependencies()
{
    const rows::Table<const char*, const char*> table{
        {"lines", "a.o: a.cpp b.h \\\n c.h\\\n d.h\nb.o: e.h\n", "a.cpp|b.h|c.h|d.h"},
        {"no rule", "a.cpp b.h", ""},
        {"tabs", "a.o: a.cpp\tb.h", "a.cpp|b.h"},
        {"blank in a path", "a.o: a\\ b.h c\\#d.h", "a b.h|c#d.h"},
        {"backslash before a blank", "a.o: a\\\\ b.h c\\\\\\ d.h", "a\\|b.h|c\\ d.h"},
        {"backslash within", "a.o: a\\b\\\\c.h", "a\\b\\\\c.h"},
        {"backslash at the end of a line", "a.o: a\\\\\n b.h", "a\\|b.h"},
        {"dollars", "a.o: $$a$$$$b.h c$d.h e$", "$a$$b.h|c$d.h|e$"}};
    for (const auto& [row, rule, paths] : table) {
        const rows::Named named(row);
        QCOMPARE(standalone::dependenciesIn(rule).join(u'|'), text(paths));
    }
}

void CompilerTextsTest::clippedOutput()
{
    constexpr int Kept = 2 * ClippedOutput::Half;
    for (const int size : {0, 1, Kept, Kept + 1, 5 * Kept}) {
        QByteArray said(size, 'x');
        for (int i = 0; i < size; i += 1000)
            said[i] = char('a' + i / 1000 % 20);
        ClippedOutput clipped;
        for (int at = 0; at < size; at += 100000)
            clipped.add(said.mid(at, 100000));
        const QByteArray mark = text("\n…… 此处省略 %1 字节 ……\n").arg(size - Kept).toUtf8();
        QVERIFY(clipped.toText() == (size <= Kept ? said
                                                  : said.left(ClippedOutput::Half) + mark +
                                                        said.right(ClippedOutput::Half)));
    }
}

PE_TEST("compiler_texts", CompilerTextsTest)
#include "compiler_texts_test.moc"
