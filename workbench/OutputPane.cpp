#include "workbench/OutputPane.h"

#include <QFontDatabase>
#include <QTime>

namespace {
constexpr int MaximumLines = 20000;
}

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
    QString line = QTime::currentTime().toString(QStringLiteral("HH:mm:ss  ")) + text.mid(begin);
    if (line.endsWith(QLatin1Char('\n')))
        line.chop(1);
    if (!isError) {
        appendPlainText(line);
        return;
    }
    const QString escaped = line.toHtmlEscaped()
                                .replace(QLatin1Char('\n'), QLatin1String("<br/>"))
                                .replace(QLatin1String("  "), QLatin1String("&nbsp;&nbsp;"));
    appendHtml(QStringLiteral("<span style=\"color:#b3261e\">%1</span>").arg(escaped));
}
