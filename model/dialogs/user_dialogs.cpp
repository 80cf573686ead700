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
    case Kind::SaveFile:
        return input(QFileDialog::getSaveFileName(parent, title, message.value, message.filter));
    }
    return {};
}

QString valueOf(const Answer& answer)
{
    return answer.button == Button::Ok ? answer.value : QString();
}

Answer show(QWidget* parent, const Message& message)
{
    return currentHandler() ? currentHandler()(message) : showDialog(parent, message);
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

void information(QWidget* parent, const QString& title, const QString& text)
{
    show(parent, {Kind::Information, title, text, QString(), QString()});
}

void warning(QWidget* parent, const QString& title, const QString& text)
{
    show(parent, {Kind::Warning, title, text, QString(), QString()});
}

bool confirm(QWidget* parent, const QString& title, const QString& text)
{
    return show(parent, {Kind::OkCancel, title, text, QString(), QString()}).button == Button::Ok;
}

bool question(QWidget* parent, const QString& title, const QString& text)
{
    return show(parent, {Kind::YesNo, title, text, QString(), QString()}).button == Button::Yes;
}

Button saveOrDiscard(QWidget* parent, const QString& title, const QString& text)
{
    return show(parent, {Kind::SaveDiscardCancel, title, text, QString(), QString()}).button;
}

QString askText(QWidget* parent, const QString& title, const QString& label, const QString& value)
{
    return valueOf(show(parent, {Kind::Text, title, label, value, QString()}));
}

QString askFolder(QWidget* parent, const QString& title, const QString& startFolder)
{
    return valueOf(show(parent, {Kind::Folder, title, QString(), startFolder, QString()}));
}

QString askSaveFile(QWidget* parent, const QString& title, const QString& startFile,
                    const QString& filter)
{
    return valueOf(show(parent, {Kind::SaveFile, title, QString(), startFile, filter}));
}

} // namespace user_dialogs
