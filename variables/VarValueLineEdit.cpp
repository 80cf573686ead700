#include "variables/VarValueLineEdit.h"

#include "variables/value_rules.h"

#include <QEvent>
#include <QRegularExpressionValidator>
#include <QSignalBlocker>

using value_rules::Verdict;

VarValueLineEdit::VarValueLineEdit(QWidget* parent) : QLineEdit(parent)
{
    installEventFilter(this);
    connect(this, &QLineEdit::textChanged, this, &VarValueLineEdit::textChanged);
    connect(this, &QLineEdit::editingFinished, this, &VarValueLineEdit::valueCalibrationSlot);
}

void VarValueLineEdit::setValueType(const QString& type, int length)
{
    m_type = type;
    m_length = length;
    delete validator();
    const QString pattern = value_rules::pattern(type);
    if (!pattern.isEmpty())
        setValidator(new QRegularExpressionValidator(QRegularExpression(pattern), this));
    setPlaceholderText(value_rules::isArray(type) ? tr("数组格式 例: 1,2,3,4,5") : QString());
}

void VarValueLineEdit::setValue(const QString& value)
{
    const QSignalBlocker blocker(this);
    setText(value);
    m_lastValue = value;
}

void VarValueLineEdit::textChanged(const QString& text)
{
    const Verdict verdict = value_rules::judge(text, m_type, m_length);
    if (verdict == Verdict::Refused) {
        restore();
        return;
    }
    m_lastValue = text;
    if (verdict == Verdict::Accepted)
        emit valueChanged(text);
}

void VarValueLineEdit::restore()
{
    const QSignalBlocker blocker(this);
    // Where it was before the keystroke, not at the end.
    const int cursor = cursorPosition() - (text().size() - m_lastValue.size());
    setText(m_lastValue);
    setCursorPosition(cursor);
}

void VarValueLineEdit::valueCalibrationSlot()
{
    const QString whole = value_rules::completed(text(), m_type);
    if (whole == text())
        return;
    m_lastValue = whole;
    setText(whole);
}

bool VarValueLineEdit::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == this && event->type() == QEvent::FocusOut)
        valueCalibrationSlot();
    return QLineEdit::eventFilter(watched, event);
}

#include "moc_VarValueLineEdit.cpp"
