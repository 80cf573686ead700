#include "panels/ParamValueItem.h"

#include "panels/api_values.h"
#include "panels/value_picker.h"
#include "variables/VarValueLineEdit.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QSignalBlocker>
#include <QTextDocument>
#include <QToolButton>

ParamValueItem::ParamValueItem(const QString& type, const QString& appName,
                               const QString& sequenceId, QWidget* parent)
    : QWidget(parent), m_type(type), m_cappletName(appName), m_sequenceId(sequenceId),
      m_label(new QLabel), m_button(new QToolButton), m_edit(new VarValueLineEdit)
{
    constexpr int buttonWidth = 25;
    m_label->setTextFormat(Qt::PlainText);
    m_label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_button->setText(QStringLiteral("..."));
    m_button->setFixedWidth(buttonWidth);
    m_edit->hide();
    m_edit->installEventFilter(this);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(4, 0, 4, 0);
    layout->addWidget(m_label);
    layout->addWidget(m_button);
    layout->addWidget(m_edit);
    connect(m_edit, &QLineEdit::editingFinished, this, [this] { setEditing(false); });
    connect(m_button, &QToolButton::clicked, this, &ParamValueItem::pick);
    if (api_values::isText(m_type))
        setValue(api_values::quoted(QString()));
}

void ParamValueItem::setValue(const QString& value)
{
    m_value = value;
    showValue();
}

void ParamValueItem::setEditing(bool on)
{
    if (on == m_editing)
        return;
    m_editing = on;
    m_edit->setVisible(on);
    m_label->setVisible(!on);
    m_button->setVisible(!on);
    if (on) {
        m_edit->setFocus();
        m_edit->setValueType(m_type, -1);
        m_edit->setValue(m_value);
        return;
    }
    const QString typed = m_edit->text();
    take(api_values::isText(m_type) ? api_values::quoted(typed) : typed);
}

bool ParamValueItem::eventFilter(QObject* watched, QEvent* event)
{
    // Whatever stands in the field, it doesn't hold the focus back.
    if (watched == m_edit && event->type() == QEvent::FocusOut)
        m_edit->setValidator(nullptr);
    if (watched == m_edit && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Tab || key == Qt::Key_Backtab) {
            setEditing(false);
            emit sigTab(key == Qt::Key_Tab);
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void ParamValueItem::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    showValue();
}

void ParamValueItem::showValue()
{
    layout()->activate(); // for the width that the label will have
    m_label->setToolTip(Qt::convertFromPlainText(m_value)); // which wraps
    m_label->setText(m_label->fontMetrics().elidedText(m_value, Qt::ElideRight, m_label->width()));
}

void ParamValueItem::clear()
{
    take(api_values::isText(m_type) ? api_values::quoted(QString()) : QString());
}

void ParamValueItem::pick()
{
    value_picker::Request request;
    request.appName = m_cappletName;
    request.sequenceId = m_sequenceId;
    request.offer = value_picker::Offer::Variables;
    request.type = m_type;
    request.text = m_value;
    if (const auto picked = value_picker::pick(this, request))
        take(*picked);
}

void ParamValueItem::take(const QString& value)
{
    setValue(value);
    emit sigEditFinish();
}

#include "moc_ParamValueItem.cpp"
