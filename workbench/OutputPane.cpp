#include "workbench/OutputPane.h"

#include "model/colour_rules.h"
#include "workbench/output_lines.h"

#include <QFontDatabase>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTextBlock>
#include <QTime>

#include <algorithm>

namespace {

constexpr int MaximumLines = 20000;
constexpr int LinesToElide = 1000; ///< at once
const QString closedMark = QStringLiteral("▸ ");
const QString openMark = QStringLiteral("▾ ");

/// What the pane knows of a line.
struct LineData : QTextBlockUserData
{
    explicit LineData(const OutputLine& line, const QString& leadsToFile = QString())
        : kind(line.kind), sequenceId(line.target), stepId(line.step), file(leadsToFile)
    {
    }

    const OutputLine::Kind kind;
    const QString sequenceId;
    const QString stepId;
    const QString file;
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
    setPlaceholderText(placeholder);
    setLineWrapMode(QPlainTextEdit::NoWrap);
    // A compiler points at places below its lines.
    QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    fixed.setPointSizeF(font().pointSizeF());
    fixed.setStyleHint(QFont::Monospace);
    setFont(fixed);
}

void OutputPane::append(const QString& text, bool isError, const QString& record)
{
    const bool isAtEnd = verticalScrollBar()->value() >= verticalScrollBar()->maximum();
    const QTextCursor top(firstVisibleBlock());
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
    if (m_parts.empty() || m_parts.back().record != record)
        m_parts.push_back({record, 0});
    m_parts.back().lines += lines.size();
    const bool hasSurplus = blockCount() > MaximumLines + LinesToElide;
    if (hasSurplus)
        elideSurplus();
    if (isError)
        showFrom(wasEmpty ? document()->firstBlock() : before.block().next());
    else if (isAtEnd)
        followEnd();
    else if (hasSurplus)
        verticalScrollBar()->setValue(top.block().firstLineNumber());
}

void OutputPane::elideSurplus()
{
    const int first = m_elided.lines > 0 ? 1 : 0;
    QTextBlock kept = document()->findBlockByNumber(blockCount() - MaximumLines);
    while (isOfKind(kept, OutputLine::Kind::Detail)) // they go with their heading
        kept = kept.next();
    countElided((kept.isValid() ? kept.blockNumber() : blockCount()) - first);
    OutputLine line;
    line.text = tr("… %1 行已省略").arg(m_elided.lines);
    if (!m_elided.record.isEmpty())
        line.text += tr(", 完整日志: %1").arg(m_elided.record);
    QTextCharFormat format;
    format.setFontUnderline(!m_elided.record.isEmpty());
    QTextCursor cursor(document());
    // Up to the end of the line before: a line that is joined with another loses what is known of
    // it.
    if (kept.isValid())
        cursor.setPosition(kept.position() - 1, QTextCursor::KeepAnchor);
    else
        cursor.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
    cursor.insertText(line.text, format);
    QTextBlock block = document()->firstBlock();
    block.setUserData(new LineData(line, m_elided.record));
    block.setVisible(true);
}

void OutputPane::countElided(int lines)
{
    while (lines > 0 && !m_parts.empty()) {
        Part& part = m_parts.front();
        const int gone = std::min(lines, part.lines);
        if (part.record != m_elided.record)
            m_elided = {part.record, 0};
        m_elided.lines += gone;
        part.lines -= gone;
        lines -= gone;
        if (part.lines == 0)
            m_parts.pop_front();
    }
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
    const bool leadsAway = data && (!data->sequenceId.isEmpty() || !data->file.isEmpty());
    if (!leadsAway || event->button() != Qt::LeftButton) {
        QPlainTextEdit::mouseDoubleClickEvent(event);
        return;
    }
    event->accept();
    if (data->file.isEmpty())
        emit stepActivated(data->sequenceId, data->stepId);
    else
        emit recordActivated(data->file);
}

#include "moc_OutputPane.cpp"
