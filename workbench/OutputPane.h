#pragma once

#include <QPlainTextEdit>

/// A read-only pane of lines, bounded in length, that follows its end while the end is in sight.
class OutputPane : public QPlainTextEdit
{
    Q_OBJECT
public:
    explicit OutputPane(const QString& placeholder, QWidget* parent = nullptr);

    /// Appends a text as it comes, with the time of day before its first line. An error's lines
    /// that lead to a step are underlined, and keep to themselves the ids that lead there.
    void append(const QString& text, bool isError);

signals:
    /// A line that leads to a step, or with an empty @p stepId to a sequence, was double clicked.
    void stepActivated(QString sequenceId, QString stepId);

protected:
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    void appendError(const QString& line);
};
