#include "variables/VarValueLineEdit.h"

#include "variables/value_rules.h"

#include <QEvent>
#include <QPainter>
#include <QRegularExpressionValidator>
#include <QSignalBlocker>
#include <QToolTip>

using value_rules::Verdict;

namespace {
constexpr int RefusalMs = 1500;
constexpr int ReasonMs = 6000;
const QColor refusalColour(217, 48, 37); // seen on light and on dark ground
} // namespace

VarValueLineEdit::VarValueLineEdit(QWidget* parent) : QLineEdit(parent)
{
    installEventFilter(this);
    m_refusal.setSingleShot(true);
    m_refusal.setInterval(RefusalMs);
    connect(&m_refusal, &QTimer::timeout, this, QOverload<>::of(&QWidget::update));
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
        showRefusal(value_rules::refusal(text, m_type, m_length));
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

// No box: it would come up in the middle of a number.
void VarValueLineEdit::showRefusal(const QString& reason)
{
    if (!isVisible())
        return;
    m_refusal.start();
    QToolTip::showText(mapToGlobal(rect().bottomLeft()), reason, this, QRect(), ReasonMs);
}

void VarValueLineEdit::paintEvent(QPaintEvent* event)
{
    QLineEdit::paintEvent(event);
    if (!m_refusal.isActive())
        return;
    QPainter painter(this);
    painter.setPen(QPen(refusalColour, 2));
    painter.drawRect(rect().adjusted(1, 1, -1, -1));
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
