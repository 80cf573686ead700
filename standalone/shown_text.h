#pragma once

#include <QString>

namespace standalone {

/// A name or a piece of code as a part of one line that is passed on as a zero-terminated text:
/// blanks for line ends and tabs, U+FFFD for other signs that control.
inline QString shownText(QString text)
{
    for (QChar& sign : text) {
        if (sign.isSpace())
            sign = u' ';
        else if (sign.category() == QChar::Other_Control)
            sign = QChar::ReplacementCharacter;
    }
    return text;
}

} // namespace standalone
