#include "model/colour_rules.h"

#include <algorithm>
#include <cmath>

namespace colour_rules {

namespace {

double linear(double channel)
{
    return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& colour)
{
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

QColor mixed(const QColor& ground, const QColor& text, double share)
{
    const auto channel = [share](int from, int to) {
        return int(std::lround(from + (to - from) * share));
    };
    return QColor(channel(ground.red(), text.red()), channel(ground.green(), text.green()),
                  channel(ground.blue(), text.blue()));
}

} // namespace

bool isDark(const QPalette& palette)
{
    return luminance(palette.color(QPalette::Active, QPalette::Base)) <
           luminance(palette.color(QPalette::Active, QPalette::Text));
}

double contrast(const QColor& one, const QColor& other)
{
    const auto [less, more] = std::minmax({luminance(one), luminance(other)});
    return (more + 0.05) / (less + 0.05);
}

QColor stepText(const QPalette& palette, bool isDisabled)
{
    if (isDark(palette))
        return isDisabled ? QColor(170, 170, 170) : palette.color(QPalette::Active, QPalette::Text);
    return isDisabled ? QColor(150, 150, 150) : QColor(0, 0, 0);
}

QColor stepSelection(const QPalette& palette)
{
    return isDark(palette) ? QColor(30, 60, 92) : QColor(205, 228, 250);
}

QColor endedWell(const QPalette& palette)
{
    return isDark(palette) ? QColor(24, 84, 45) : QColor(187, 237, 196);
}

QColor endedBadly(const QPalette& palette)
{
    return isDark(palette) ? QColor(122, 32, 42) : QColor(241, 178, 185);
}

QColor endedByStop(const QPalette& palette)
{
    return isDark(palette) ? QColor(104, 76, 14) : QColor(250, 224, 160);
}

QColor blank(const QPalette& palette)
{
    return isDark(palette) ? palette.color(QPalette::Active, QPalette::Base)
                           : QColor(255, 255, 255);
}

QColor alternateRow(const QPalette& palette)
{
    return isDark(palette) ? mixed(palette.color(QPalette::Active, QPalette::Base),
                                   palette.color(QPalette::Active, QPalette::Text), 0.05)
                           : QColor(0xf5, 0xf5, 0xf5);
}

QColor gridLine(const QPalette& palette)
{
    return isDark(palette) ? mixed(palette.color(QPalette::Active, QPalette::Base),
                                   palette.color(QPalette::Active, QPalette::Text), 0.2)
                           : QColor(0xd0, 0xd0, 0xd0);
}

QColor warning(const QPalette& palette)
{
    return isDark(palette) ? QColor(255, 183, 77) : QColor(0xc6, 0x76, 0x00);
}

QColor failure(const QPalette& palette)
{
    return isDark(palette) ? QColor(255, 138, 128) : QColor(179, 38, 30);
}

QPalette withPlaceholders(const QPalette& palette)
{
    QPalette changed(palette);
    for (const auto group : {QPalette::Active, QPalette::Inactive})
        changed.setColor(
            group, QPalette::PlaceholderText,
            mixed(palette.color(group, QPalette::Base), palette.color(group, QPalette::Text), 0.6));
    changed.setColor(QPalette::Disabled, QPalette::PlaceholderText,
                     palette.color(QPalette::Disabled, QPalette::Text));
    return changed;
}

QColor onDark(const QColor& drawn)
{
    constexpr double Depth = 0.7; // of black on white, that white has on dark
    qreal hue = 0;
    qreal saturation = 0;
    qreal lightness = 0;
    qreal alpha = 0;
    drawn.getHslF(&hue, &saturation, &lightness, &alpha);
    return QColor::fromHslF(std::max(hue, 0.0), saturation, 1.0 - Depth * lightness, alpha);
}

} // namespace colour_rules
