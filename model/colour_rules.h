#pragma once

#include <QColor>
#include <QPalette>

/// The colours of the editor that no palette has, in a set for light and one for dark palettes.
/// Values to value, no state. A palette that nothing is known of is the application's.
namespace colour_rules {

/// Whether texts are light on dark ground in @p palette.
bool isDark(const QPalette& palette);

/// The relation of two colours' luminances, from 1 (alike) to 21 (black and white). A text can be
/// read from 4.5 on.
double contrast(const QColor& one, const QColor& other);

/// The texts of a step's row. One that is disabled is paler.
QColor stepText(const QPalette& palette, bool isDisabled);
/// The ground of a selected step, on which the texts keep their colours.
QColor stepSelection(const QPalette& palette);
/// The ground of a row whose run has ended.
QColor endedWell(const QPalette& palette);
QColor endedBadly(const QPalette& palette);
QColor endedByStop(const QPalette& palette);
/// Behind the last row, and what is painted over so that it can't be seen.
QColor blank(const QPalette& palette);

QColor alternateRow(const QPalette& palette);
QColor gridLine(const QPalette& palette);
/// A word of warning on a window's ground.
QColor warning(const QPalette& palette);
/// A word of failure, on a window's ground or a text's.
QColor failure(const QPalette& palette);

/// @p palette with placeholders that can be read in a field that takes a text, and that look
/// disabled in one that doesn't.
QPalette withPlaceholders(const QPalette& palette);

/// A colour of an icon that was drawn for light ground, on dark ground: what was dark is light, and
/// keeps its hue and what lets the ground through.
QColor onDark(const QColor& drawn);

} // namespace colour_rules
