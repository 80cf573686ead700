#pragma once

#include <QPoint>
#include <QStringList>

class QRect;
class QSize;
class QTextCursor;

/// What a completion list is made of: the word that is being typed, the words that fit, and where
/// the list stands. No state, no widget.
namespace completion {

/// The word that ends at the cursor; empty inside a word, in front of one and between words. A word
/// ends at anything but letters, digits and "_".
QString wordAt(const QTextCursor& cursor);

/// Puts @p text in the place of the word under the cursor, as one step of undo. Where there is no
/// word it is inserted.
void replaceWord(QTextCursor cursor, const QString& text);

/// The words that contain @p part anywhere, with exact case, in their order.
QStringList matches(const QStringList& words, const QString& part);

/// How a list of rows becomes another: from row @p first on, @p removed rows go and @p inserted
/// come. Rows that both have in common at the beginning and at the end stay.
struct RowChange
{
    int first = 0;
    int removed = 0;
    QStringList inserted;
};
RowChange rowChange(const QStringList& shown, const QStringList& wanted);

/// The top left corner of a list of @p size: below @p cursor, flush with its left edge; above it
/// where the bottom of @p screen would be passed, further left where its right edge would be. All
/// in global coordinates.
QPoint listPlace(const QRect& cursor, const QSize& size, const QRect& screen);

} // namespace completion
