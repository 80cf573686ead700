#pragma once

#include <QString>
#include <QStringList>

#include <functional>

class QWidget;

/// The one way by which the editor and its hosts ask their user something: message boxes and small
/// input dialogs. Tests and headless hosts answer them through setHandler. Texts are shown as they
/// are, whoever wrote them: none is taken as markup. GUI thread only.
namespace user_dialogs {

enum class Button { Ok, Cancel, Yes, No, Save, Discard, WayOut };
enum class Kind {
    Information,
    Warning,
    OkCancel,
    YesNo,
    SaveDiscardCancel,
    Text,
    Folder,
    SaveFile,
    Choice
};

/// One dialog, as a person would see it.
struct Message
{
    Kind kind = Kind::Information;
    QString title;
    QString text;
    QString value;  ///< what an input starts with
    QString filter; ///< of a file dialog, as QFileDialog takes it
    /// Of a box or a line of text: what one more button says, which answers Button::WayOut. Empty:
    /// there is none.
    QString wayOut;
    QStringList choices;  ///< of Kind::Choice; the answer's value is one of them, with Button::Ok
    bool isRisky = false; ///< of Kind::YesNo: Return answers No
};

/// What the person did; @c value counts for the inputs, with Button::Ok.
struct Answer
{
    Button button = Button::Cancel;
    QString value;
};

/// Answers a dialog in place of the person.
using Handler = std::function<Answer(const Message& message)>;

/// Puts @p handler in front of every dialog from now on; an empty one brings back the real ones.
/// Returns the handler before it.
Handler setHandler(Handler handler);
bool hasHandler();

/// Any of them; the others are shorthands.
Answer ask(QWidget* parent, const Message& message);

/// A box with an Ok button.
void information(QWidget* parent, const QString& title, const QString& text);
void warning(QWidget* parent, const QString& title, const QString& text);

/// True for Ok.
bool confirm(QWidget* parent, const QString& title, const QString& text);

/// True for Yes.
bool question(QWidget* parent, const QString& title, const QString& text);
/// The same before something that can't be taken back: who just presses Return has said No.
bool riskyQuestion(QWidget* parent, const QString& title, const QString& text);

/// Save, Discard or Cancel.
Button saveOrDiscard(QWidget* parent, const QString& title, const QString& text);

/// One of several ways to go on, each a button; its place among them, or -1 for none.
int choose(QWidget* parent, const QString& title, const QString& text, const QStringList& choices);

/// A line of text, or a folder that exists; empty if the person cancelled.
QString askText(QWidget* parent, const QString& title, const QString& label, const QString& value);
QString askFolder(QWidget* parent, const QString& title, const QString& startFolder);

/// A file to write, which may exist: the person has been asked then. Empty if cancelled.
QString askSaveFile(QWidget* parent, const QString& title, const QString& startFile,
                    const QString& filter);

} // namespace user_dialogs
