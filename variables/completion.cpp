#include "variables/completion.h"

#include <QRect>
#include <QSize>
#include <QTextBlock>
#include <QTextCursor>

#include <algorithm>

namespace completion {

namespace {

bool isWordCharacter(QChar character)
{
    return character.isLetterOrNumber() || character.isMark() || character == QLatin1Char('_');
}

/// Selects the word that the cursor stands in or touches. QTextCursor's own selection takes the
/// sign behind a word in place of the word: there would be no completion in "f(spe)".
void selectWord(QTextCursor& cursor)
{
    const QString line = cursor.block().text();
    int begin = cursor.positionInBlock();
    int end = begin;
    while (begin > 0 && isWordCharacter(line[begin - 1]))
        --begin;
    while (end < line.size() && isWordCharacter(line[end]))
        ++end;
    const int start = cursor.block().position();
    cursor.setPosition(start + begin);
    cursor.setPosition(start + end, QTextCursor::KeepAnchor);
}

} // namespace

QString wordAt(const QTextCursor& cursor)
{
    QTextCursor word = cursor;
    selectWord(word);
    return word.selectionEnd() == cursor.position() ? word.selectedText() : QString();
}

void replaceWord(QTextCursor cursor, const QString& text)
{
    selectWord(cursor);
    cursor.insertText(text);
}

QStringList matches(const QStringList& words, const QString& part)
{
    return words.filter(part, Qt::CaseSensitive);
}

RowChange rowChange(const QStringList& shown, const QStringList& wanted)
{
    const auto differs = std::mismatch(shown.begin(), shown.end(), wanted.begin(), wanted.end());
    const int first = int(differs.first - shown.begin());
    const int most = std::min(shown.size(), wanted.size()) - first;
    int same = 0;
    while (same < most && shown[shown.size() - 1 - same] == wanted[wanted.size() - 1 - same])
        ++same;
    return {first, shown.size() - first - same, wanted.mid(first, wanted.size() - first - same)};
}

QPoint listPlace(const QRect& cursor, const QSize& size, const QRect& screen)
{
    QRect list(QPoint(cursor.left(), cursor.top() + cursor.height()), size);
    if (list.bottom() > screen.bottom())
        list.moveTop(cursor.top() - size.height());
    if (list.right() > screen.right())
        list.moveRight(screen.right());
    return list.topLeft();
}

} // namespace completion
