#pragma once

#include <QPlainTextEdit>

/// A box for code: fixed pitch, tabulators four characters wide. The tab key indents, so the way
/// out of it with the keyboard is backwards, with the shift key.
class CodeEdit : public QPlainTextEdit
{
    Q_OBJECT
public:
    explicit CodeEdit(QWidget* parent = nullptr);

protected:
    bool focusNextPrevChild(bool next) override;
};
