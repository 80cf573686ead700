#pragma once

#include <QDialog>

class QSpinBox;

/// Asks for the length of a variable.
class LengthDialog : public QDialog
{
    Q_OBJECT
public:
    /// @p greatest is the most that can be entered; at least 1 always is.
    LengthDialog(const QString& name, const QString& type, int length, int greatest,
                 QWidget* parent = nullptr);

    int length() const;

private:
    QSpinBox* m_length;
};
