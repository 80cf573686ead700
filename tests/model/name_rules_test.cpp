// What sequences, variables and tags may be called.

#include "model/name_rules.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include <QTest>

using name_rules::NameRefusal;

class NameRulesTest : public QObject
{
    Q_OBJECT
private slots:
    void names();
};

void NameRulesTest::names()
{
    const rows::Table<bool, NameRefusal> table{{"_x9", true, NameRefusal::None},
                                               {"a1234567890123456789", true, NameRefusal::None},
                                               {"a12345678901234567890", false, NameRefusal::None},
                                               {"1a", false, NameRefusal::None},
                                               {"a-b", false, NameRefusal::None},
                                               {"a变量", false, NameRefusal::None},
                                               {"a\n", false, NameRefusal::None},
                                               {"Speed", true, NameRefusal::None},
                                               {"spee", true, NameRefusal::None},
                                               {"speed", true, NameRefusal::Taken},
                                               {" speed ", false, NameRefusal::Taken},
                                               {"", false, NameRefusal::Empty},
                                               {"  ", false, NameRefusal::Empty}};
    for (const auto& [name, isWellFormed, refusal] : table) {
        const rows::Named named(name);
        QCOMPARE(name_rules::namePattern().match(text(name)).hasMatch(), isWellFormed);
        QCOMPARE(name_rules::refusalOf(text(name), {text("speed"), text("b")}), refusal);
    }
}

PE_TEST("name_rules", NameRulesTest)
#include "name_rules_test.moc"
