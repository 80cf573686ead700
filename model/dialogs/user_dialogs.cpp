#include "model/dialogs/user_dialogs.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QInputDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>

#include <utility>

namespace user_dialogs {

namespace {

Handler& currentHandler()
{
    static Handler handler;
    return handler;
}

Button asked(QMessageBox::StandardButton button)
{
    switch (button) {
    case QMessageBox::Ok:
        return Button::Ok;
    case QMessageBox::Yes:
        return Button::Yes;
    case QMessageBox::No:
        return Button::No;
    case QMessageBox::Save:
        return Button::Save;
    case QMessageBox::Discard:
        return Button::Discard;
    default:
        return Button::Cancel;
    }
}

Answer input(const QString& value)
{
    return {value.isEmpty() ? Button::Cancel : Button::Ok, value};
}

Answer showBox(QWidget* parent, const Message& message, QMessageBox::Icon icon,
               QMessageBox::StandardButtons buttons)
{
    QMessageBox box(icon, message.title, message.text, buttons, parent);
    box.setTextFormat(Qt::PlainText);
    const QPushButton* out = nullptr;
    if (!message.wayOut.isEmpty()) {
        out = box.addButton(message.wayOut, QMessageBox::DestructiveRole);
        if (buttons == QMessageBox::Ok)
            box.setEscapeButton(QMessageBox::Ok);
    }
    if (message.isRisky)
        box.setDefaultButton(QMessageBox::No);
    const auto button = QMessageBox::StandardButton(box.exec());
    return {out && box.clickedButton() == out ? Button::WayOut : asked(button), QString()};
}

Answer showChoice(QWidget* parent, const Message& message)
{
    QMessageBox box(QMessageBox::Warning, message.title, message.text, QMessageBox::NoButton,
                    parent);
    box.setTextFormat(Qt::PlainText);
    for (const QString& choice : message.choices)
        box.addButton(choice, QMessageBox::ActionRole);
    QAbstractButton* none = box.addButton(QMessageBox::Cancel);
    none->hide(); // for Escape
    box.exec();
    const int chosen = message.choices.indexOf(box.clickedButton()->text());
    return chosen < 0 ? Answer() : Answer{Button::Ok, message.choices[chosen]};
}

Answer showInput(QWidget* parent, const Message& message)
{
    QInputDialog dialog(parent);
    dialog.setWindowTitle(message.title);
    dialog.setLabelText(message.text);
    dialog.setTextValue(message.value);
    dialog.setOkButtonText(dialog.okButtonText()); // its widgets are there from now on
    for (auto* label : dialog.findChildren<QLabel*>())
        label->setTextFormat(Qt::PlainText);
    bool isWayOut = false;
    auto* buttons = dialog.findChild<QDialogButtonBox*>();
    if (buttons && !message.wayOut.isEmpty()) {
        const auto leave = [&] {
            isWayOut = true;
            dialog.reject();
        };
        QObject::connect(buttons->addButton(message.wayOut, QDialogButtonBox::DestructiveRole),
                         &QPushButton::clicked, &dialog, leave);
    }
    if (dialog.exec() == QDialog::Accepted)
        return input(dialog.textValue());
    return {isWayOut ? Button::WayOut : Button::Cancel, QString()};
}

Answer showDialog(QWidget* parent, const Message& message)
{
    switch (message.kind) {
    case Kind::Information:
        return showBox(parent, message, QMessageBox::Information, QMessageBox::Ok);
    case Kind::Warning:
        return showBox(parent, message, QMessageBox::Warning, QMessageBox::Ok);
    case Kind::OkCancel:
        return showBox(parent, message, QMessageBox::Information,
                       QMessageBox::Ok | QMessageBox::Cancel);
    case Kind::YesNo:
        return showBox(parent, message, QMessageBox::Question, QMessageBox::Yes | QMessageBox::No);
    case Kind::SaveDiscardCancel:
        return showBox(parent, message, QMessageBox::Question,
                       QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
    case Kind::Choice:
        return showChoice(parent, message);
    case Kind::Text:
        return showInput(parent, message);
    case Kind::Folder:
        return input(QFileDialog::getExistingDirectory(parent, message.title, message.value));
    case Kind::SaveFile:
        return input(
            QFileDialog::getSaveFileName(parent, message.title, message.value, message.filter));
    }
    return {};
}

QString valueOf(const Answer& answer)
{
    return answer.button == Button::Ok ? answer.value : QString();
}

} // namespace

bool hasHandler()
{
    return static_cast<bool>(currentHandler());
}

Handler setHandler(Handler handler)
{
    return std::exchange(currentHandler(), std::move(handler));
}

Answer ask(QWidget* parent, const Message& message)
{
    return currentHandler() ? currentHandler()(message) : showDialog(parent, message);
}

void information(QWidget* parent, const QString& title, const QString& text)
{
    ask(parent, {Kind::Information, title, text, {}, {}, {}, {}});
}

void warning(QWidget* parent, const QString& title, const QString& text)
{
    ask(parent, {Kind::Warning, title, text, {}, {}, {}, {}});
}

bool confirm(QWidget* parent, const QString& title, const QString& text)
{
    return ask(parent, {Kind::OkCancel, title, text, {}, {}, {}, {}}).button == Button::Ok;
}

bool question(QWidget* parent, const QString& title, const QString& text)
{
    return ask(parent, {Kind::YesNo, title, text, {}, {}, {}, {}}).button == Button::Yes;
}

bool riskyQuestion(QWidget* parent, const QString& title, const QString& text)
{
    return ask(parent, {Kind::YesNo, title, text, {}, {}, {}, {}, true}).button == Button::Yes;
}

Button saveOrDiscard(QWidget* parent, const QString& title, const QString& text)
{
    return ask(parent, {Kind::SaveDiscardCancel, title, text, {}, {}, {}, {}}).button;
}

int choose(QWidget* parent, const QString& title, const QString& text, const QStringList& choices)
{
    const Answer answer = ask(parent, {Kind::Choice, title, text, {}, {}, {}, choices});
    return answer.button == Button::Ok ? choices.indexOf(answer.value) : -1;
}

QString askText(QWidget* parent, const QString& title, const QString& label, const QString& value)
{
    return valueOf(ask(parent, {Kind::Text, title, label, value, {}, {}, {}}));
}

QString askFolder(QWidget* parent, const QString& title, const QString& startFolder)
{
    return valueOf(ask(parent, {Kind::Folder, title, QString(), startFolder, {}, {}, {}}));
}

QString askSaveFile(QWidget* parent, const QString& title, const QString& startFile,
                    const QString& filter)
{
    return valueOf(ask(parent, {Kind::SaveFile, title, QString(), startFile, filter, {}, {}}));
}

} // namespace user_dialogs
