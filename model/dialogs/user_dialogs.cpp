#include "model/dialogs/user_dialogs.h"

#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>

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

Answer showDialog(QWidget* parent, const Message& message)
{
    const QString& title = message.title;
    const QString& text = message.text;
    switch (message.kind) {
    case Kind::Information:
        return {asked(QMessageBox::information(parent, title, text)), QString()};
    case Kind::Warning:
        return {asked(QMessageBox::warning(parent, title, text)), QString()};
    case Kind::OkCancel:
        return {asked(QMessageBox::information(parent, title, text,
                                               QMessageBox::Ok | QMessageBox::Cancel)),
                QString()};
    case Kind::YesNo:
        return {
            asked(QMessageBox::question(parent, title, text, QMessageBox::Yes | QMessageBox::No)),
            QString()};
    case Kind::SaveDiscardCancel:
        return {asked(QMessageBox::question(parent, title, text,
                                            QMessageBox::Save | QMessageBox::Discard |
                                                QMessageBox::Cancel)),
                QString()};
    case Kind::Text:
        return input(QInputDialog::getText(parent, title, text, QLineEdit::Normal, message.value));
    case Kind::Folder:
        return input(QFileDialog::getExistingDirectory(parent, title, message.value));
    }
    return {};
}

Answer show(QWidget* parent, const Message& message)
{
    return currentHandler() ? currentHandler()(message) : showDialog(parent, message);
}

} // namespace

Handler setHandler(Handler handler)
{
    return std::exchange(currentHandler(), std::move(handler));
}

void information(QWidget* parent, const QString& title, const QString& text)
{
    show(parent, {Kind::Information, title, text, QString()});
}

void warning(QWidget* parent, const QString& title, const QString& text)
{
    show(parent, {Kind::Warning, title, text, QString()});
}

bool confirm(QWidget* parent, const QString& title, const QString& text)
{
    return show(parent, {Kind::OkCancel, title, text, QString()}).button == Button::Ok;
}

bool question(QWidget* parent, const QString& title, const QString& text)
{
    return show(parent, {Kind::YesNo, title, text, QString()}).button == Button::Yes;
}

Button saveOrDiscard(QWidget* parent, const QString& title, const QString& text)
{
    return show(parent, {Kind::SaveDiscardCancel, title, text, QString()}).button;
}

QString askText(QWidget* parent, const QString& title, const QString& label, const QString& value)
{
    const Answer answer = show(parent, {Kind::Text, title, label, value});
    return answer.button == Button::Ok ? answer.value : QString();
}

QString askFolder(QWidget* parent, const QString& title, const QString& startFolder)
{
    const Answer answer = show(parent, {Kind::Folder, title, QString(), startFolder});
    return answer.button == Button::Ok ? answer.value : QString();
}

} // namespace user_dialogs
