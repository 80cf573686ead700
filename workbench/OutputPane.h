#pragma once

#include <QPlainTextEdit>

#include <deque>

struct OutputLine;

/// A read-only pane of lines that follows its end while the end is in sight. Of more than 20,000
/// the first ones go, some at a time; a line in their place says how many, and leads to the file
/// that holds them.
class OutputPane : public QPlainTextEdit
{
    Q_OBJECT
public:
    explicit OutputPane(const QString& placeholder, QWidget* parent = nullptr);

    /// Appends a text as it comes, with the time of day before its first line; an error is red, and
    /// its first line comes into sight. Lines that lead to a step are underlined, and keep to
    /// themselves the ids that lead there. Details are folded under their heading. @p record is the
    /// file that the text also stands in; empty: none.
    void append(const QString& text, bool isError, const QString& record = QString());

    /// Shows the end, and what comes from here on.
    void followEnd();

signals:
    /// A line that leads to a step, or with an empty @p stepId to a sequence, was double clicked.
    void stepActivated(QString sequenceId, QString stepId);
    /// The line that stands for those which have gone was double clicked.
    void recordActivated(QString file);

protected:
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    void appendLine(QTextCursor& cursor, const OutputLine& line, bool isError);
    /// Opens or closes the details of a heading.
    void toggle(const QTextBlock& heading);
    void showFrom(const QTextBlock& first);
    void elideSurplus();
    void countElided(int lines);

    /// Lines of one record, one after the other.
    struct Part
    {
        QString record;
        int lines = 0;
    };
    std::deque<Part> m_parts; ///< of the lines that are there
    Part m_elided;            ///< those of the last record of which some have gone
};
