#pragma once

#include <QPlainTextEdit>

struct OutputLine;

/// A read-only pane of lines, bounded in length, that follows its end while the end is in sight.
class OutputPane : public QPlainTextEdit
{
    Q_OBJECT
public:
    explicit OutputPane(const QString& placeholder, QWidget* parent = nullptr);

    /// Appends a text as it comes, with the time of day before its first line; an error is red, and
    /// its first line comes into sight. Lines that lead to a step are underlined, and keep to
    /// themselves the ids that lead there. Details are folded under their heading.
    void append(const QString& text, bool isError);

    /// Shows the end, and what comes from here on.
    void followEnd();

signals:
    /// A line that leads to a step, or with an empty @p stepId to a sequence, was double clicked.
    void stepActivated(QString sequenceId, QString stepId);

protected:
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    void appendLine(QTextCursor& cursor, const OutputLine& line, bool isError);
    /// Opens or closes the details of a heading.
    void toggle(const QTextBlock& heading);
    void showFrom(const QTextBlock& first);
};
