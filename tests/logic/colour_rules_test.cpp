// Whether what stands on a ground of the editor can be read there, in both kinds of palettes.

#include "model/colour_rules.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"

#include <QtTest>

using namespace colour_rules;

namespace {

QPalette paletteOf(const QColor& base, const QColor& window, const QColor& text)
{
    QPalette palette;
    for (const auto role : {QPalette::Text, QPalette::WindowText})
        palette.setColor(role, text);
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::Window, window);
    return palette;
}

} // namespace

class ColourRulesTest : public QObject
{
    Q_OBJECT
private slots:
    void textsCanBeRead();
    void lightColoursAreFixed();
};

void ColourRulesTest::textsCanBeRead()
{
    const rows::Table<QPalette, bool> table{
        {"white", paletteOf(Qt::white, QColor(239, 239, 239), Qt::black), false},
        {"black", paletteOf(Qt::black, QColor(20, 20, 20), Qt::white), true},
        {"dark grey", paletteOf(QColor(45, 45, 45), QColor(53, 53, 53), QColor(238, 238, 238)),
         true}};
    for (const auto& [row, palette, dark] : table) {
        const rows::Named named(row);
        QCOMPARE(isDark(palette), dark);
        constexpr double Readable = 4.5;
        const QColor base = palette.color(QPalette::Base);
        const QColor text = stepText(palette, false);
        for (const QColor& ground :
             {base, blank(palette), stepSelection(palette), endedWell(palette), endedBadly(palette),
              endedByStop(palette), alternateRow(palette)})
            QVERIFY2(contrast(text, ground) >= Readable, qPrintable(ground.name()));
        for (const auto ground : {QPalette::Base, QPalette::Window})
            QVERIFY(contrast(failure(palette), palette.color(ground)) >= Readable);
        // The badge and the pale grey of disabled steps are as they are in the light set.
        if (dark) {
            QVERIFY(contrast(warning(palette), palette.color(QPalette::Window)) >= Readable);
            QVERIFY(contrast(stepText(palette, true), base) >= Readable);
            QVERIFY(contrast(stepText(palette, true), stepSelection(palette)) >= Readable);
        }
        QVERIFY(contrast(gridLine(palette), base) > 1.2);

        const QPalette filled = withPlaceholders(palette);
        const auto placeholder = [&filled](QPalette::ColorGroup group) {
            return filled.color(group, QPalette::PlaceholderText);
        };
        QVERIFY(contrast(placeholder(QPalette::Active), base) >= Readable);
        QVERIFY(contrast(placeholder(QPalette::Active), base) < contrast(text, base));
        QCOMPARE(placeholder(QPalette::Disabled), filled.color(QPalette::Disabled, QPalette::Text));

        // A stroke of an icon.
        const QColor stroke(45, 55, 72, 128);
        QVERIFY(contrast(onDark(stroke), QColor(53, 53, 53)) >= Readable);
        QCOMPARE(onDark(stroke).alpha(), 128);
    }
}

void ColourRulesTest::lightColoursAreFixed()
{
    const QPalette light = paletteOf(Qt::white, QColor(239, 239, 239), QColor(20, 20, 20));
    QCOMPARE(stepText(light, true), QColor(150, 150, 150));
    QCOMPARE(stepText(light, false), QColor(0, 0, 0));
    QCOMPARE(warning(light), QColor(0xc6, 0x76, 0x00));
}

PE_WIDGET_TEST("colour_rules", ColourRulesTest)
#include "colour_rules_test.moc"
