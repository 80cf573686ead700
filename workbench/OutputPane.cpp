#include "workbench/OutputPane.h"

#include "standalone/compiler/error_lines.h"

#include <QMouseEvent>
#include <QTextBlock>
#include <QTime>

namespace {

constexpr int MaximumLines = 20000;

/// Where a line leads to.
struct LineTarget : QTextBlockUserData
{
    LineTarget(const QString& sequence, const QString& step) : sequenceId(sequence), stepId(step) {}

    const QString sequenceId;
    const QString stepId;
};

} // namespace

OutputPane::OutputPane(const QString& placeholder, QWidget* parent) : QPlainTextEdit(parent)
{
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setMaximumBlockCount(MaximumLines);
    setPlaceholderText(placeholder);
    setLineWrapMode(QPlainTextEdit::NoWrap);
}

void OutputPane::append(const QString& text, bool isError)
{
    int begin = 0;
    while (begin < text.size() && text.at(begin) == QLatin1Char('\n'))
        ++begin;
    QString lines = QTime::currentTime().toString(QStringLiteral("HH:mm:ss  ")) + text.mid(begin);
    if (lines.endsWith(QLatin1Char('\n')))
        lines.chop(1);
    if (!isError) {
        appendPlainText(lines);
        return;
    }
    for (const QString& line : lines.split(QLatin1Char('\n')))
        appendError(line);
}

void OutputPane::appendError(const QString& line)
{
    const auto reference = standalone::stepReference(line);
    const QString escaped = (reference ? reference->text : line)
                                .toHtmlEscaped()
                                .replace(QLatin1String("  "), QLatin1String("&nbsp;&nbsp;"));
    appendHtml(QStringLiteral("<span style=\"color:#b3261e%1\">%2</span>")
                   .arg(reference ? QStringLiteral(";text-decoration:underline") : QString(),
                        escaped.isEmpty() ? QStringLiteral("&nbsp;") : escaped));
    if (reference)
        document()->lastBlock().setUserData(
            new LineTarget(reference->sequenceId, reference->stepId));
}

void OutputPane::mouseDoubleClickEvent(QMouseEvent* event)
{
    const QTextBlock line = cursorForPosition(event->pos()).block();
    const auto* target = dynamic_cast<const LineTarget*>(line.userData());
    if (!target || event->button() != Qt::LeftButton) {
        QPlainTextEdit::mouseDoubleClickEvent(event);
        return;
    }
    event->accept();
    emit stepActivated(target->sequenceId, target->stepId);
}

#include "moc_OutputPane.cpp"
