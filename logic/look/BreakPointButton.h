#pragma once

#include <QWidget>

class QPushButton;

/// The break point of one step, beside its row. Disabled until break points can be set.
class BreakPointButton : public QWidget
{
    Q_OBJECT
public:
    explicit BreakPointButton(QWidget* parent = nullptr);

    QPushButton* button() const { return m_button; }

private:
    QPushButton* m_button;
};
