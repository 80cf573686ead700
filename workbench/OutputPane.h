#pragma once

#include <QPlainTextEdit>

/// A read-only pane of lines, bounded in length, that follows its end while the end is in sight.
class OutputPane : public QPlainTextEdit
{
    Q_OBJECT
public:
    explicit OutputPane(const QString& placeholder, QWidget* parent = nullptr);

    /// Appends a text as it comes, with the time of day before its first line.
    void append(const QString& text, bool isError);
};
