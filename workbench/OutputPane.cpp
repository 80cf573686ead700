#include "workbench/OutputPane.h"

#include "model/colour_rules.h"
#include "workbench/output_lines.h"

#include <QFontDatabase>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTextBlock>
#include <QTime>

namespace {

constexpr int MaximumLines = 20000;
const QString closedMark = QStringLiteral("▸ ");
const QString openMark = QStringLiteral("▾ ");

/// What the pane knows of a line.
struct LineData : QTextBlockUserData
{
    explicit LineData(const OutputLine& line)
        : kind(line.kind), sequenceId(line.target), stepId(line.step)
    {
    }

    const OutputLine::Kind kind;
    const QString sequenceId;
    const QString stepId;
};

const LineData* dataOf(const QTextBlock& block)
{
    return dynamic_cast<const LineData*>(block.userData());
}

bool isOfKind(const QTextBlock& block, OutputLine::Kind kind)
{
    const LineData* data = dataOf(block);
    return data && data->kind == kind;
}

} // namespace

OutputPane::OutputPane(const QString& placeholder, QWidget* parent) : QPlainTextEdit(parent)
{
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setMaximumBlockCount(MaximumLines);
    setPlaceholderText(placeholder);
    setLineWrapMode(QPlainTextEdit::NoWrap);
    // A compiler points at places below its lines.
    QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    fixed.setPointSizeF(font().pointSizeF());
    fixed.setStyleHint(QFont::Monospace);
    setFont(fixed);
}

void OutputPane::append(const QString& text, bool isError)
{
    const bool isAtEnd = verticalScrollBar()->value() >= verticalScrollBar()->maximum();
    QVector<OutputLine> lines = outputLines(text);
    lines.first().text.prepend(QTime::currentTime().toString(QStringLiteral("HH:mm:ss  ")));
    const bool wasEmpty = document()->isEmpty();
    QTextCursor cursor(document());
    cursor.movePosition(QTextCursor::End);
    QTextCursor before = cursor; // stays with its line, however many go at the top
    before.setKeepPositionOnInsert(true);
    cursor.beginEditBlock();
    for (int i = 0; i < lines.size(); ++i) {
        if (i > 0 || !wasEmpty)
            cursor.insertBlock();
        appendLine(cursor, lines[i], isError);
    }
    cursor.endEditBlock();
    if (isError)
        showFrom(wasEmpty ? document()->firstBlock() : before.block().next());
    else if (isAtEnd)
        followEnd();
}

void OutputPane::appendLine(QTextCursor& cursor, const OutputLine& line, bool isError)
{
    // All of the format: what stands under the reader's own cursor must not come through.
    QTextCharFormat format;
    if (isError)
        format.setForeground(colour_rules::failure(palette()));
    format.setFontUnderline(!line.target.isEmpty());
    const bool isHeading = line.kind == OutputLine::Kind::Heading;
    cursor.insertText(isHeading ? closedMark + line.text : line.text, format);
    QTextBlock block = cursor.block();
    if (line.kind != OutputLine::Kind::Plain || !line.target.isEmpty())
        block.setUserData(new LineData(line));
    block.setVisible(line.kind != OutputLine::Kind::Detail);
}

void OutputPane::followEnd()
{
    verticalScrollBar()->setValue(verticalScrollBar()->maximum());
    horizontalScrollBar()->setValue(horizontalScrollBar()->minimum());
}

// All of it if there is room, else its beginning: the cause comes first.
void OutputPane::showFrom(const QTextBlock& first)
{
    followEnd();
    const int line = first.firstLineNumber();
    if (first.isValid() && verticalScrollBar()->value() > line)
        verticalScrollBar()->setValue(line);
}

void OutputPane::toggle(const QTextBlock& heading)
{
    const bool opens = heading.text().startsWith(closedMark);
    QTextCursor cursor(heading);
    cursor.movePosition(QTextCursor::NextCharacter, QTextCursor::KeepAnchor, closedMark.size());
    cursor.insertText(opens ? openMark : closedMark, heading.charFormat());
    QTextBlock detail = heading.next();
    for (; isOfKind(detail, OutputLine::Kind::Detail); detail = detail.next())
        detail.setVisible(opens);
    const int end = detail.isValid() ? detail.position() : document()->characterCount();
    document()->markContentsDirty(heading.position(), end - heading.position());
    // The layout counts the lines that can be seen only when its size is asked for anew.
    emit document()->documentLayout()->documentSizeChanged(
        document()->documentLayout()->documentSize());
    viewport()->update();
}

void OutputPane::mouseReleaseEvent(QMouseEvent* event)
{
    QPlainTextEdit::mouseReleaseEvent(event);
    const QTextBlock line = cursorForPosition(event->pos()).block();
    if (event->button() == Qt::LeftButton && !textCursor().hasSelection() &&
        isOfKind(line, OutputLine::Kind::Heading))
        toggle(line);
}

void OutputPane::mouseDoubleClickEvent(QMouseEvent* event)
{
    const QTextBlock line = cursorForPosition(event->pos()).block();
    const LineData* data = dataOf(line);
    if (!data || data->sequenceId.isEmpty() || event->button() != Qt::LeftButton) {
        QPlainTextEdit::mouseDoubleClickEvent(event);
        return;
    }
    event->accept();
    emit stepActivated(data->sequenceId, data->stepId);
}

#include "moc_OutputPane.cpp"
