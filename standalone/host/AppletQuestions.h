#pragma once

#include <QString>

#include <functional>
#include <map>
#include <mutex>

class QWidget;

namespace standalone {

/// What a running applet asks the user.
struct AppletQuestion
{
    enum Kind { YesNo, Text, Notice };
    Kind kind = Notice;
    QString title;
    QString text;
    QString value; ///< what an input begins with
};

/// Shows questions of running applets by user_dialogs, on the GUI thread. Any thread may call;
/// nothing waits.
class AppletQuestions
{
public:
    static AppletQuestions& instance();

    /// StopRun: the user wants no answer, but the end of the run, which may ask without end.
    enum Outcome { Declined, Accepted, StopRun };
    /// Called on the GUI thread, at most once. A notice that isn't left by StopRun is always
    /// accepted, a cancelled input isn't; the value is an input's.
    using Answer = std::function<void(Outcome outcome, const QString& value)>;

    /// Returns what the question is closed by.
    quint64 ask(const AppletQuestion& question, Answer answer);

    /// Takes a question from the screen; its answer isn't called any more, but may be under way.
    void close(quint64 id);

private:
    AppletQuestions() = default;
    void show(quint64 id, const AppletQuestion& question, const Answer& answer);

    std::mutex m_mutex; ///< guards both
    quint64 m_lastId = 0;
    std::map<quint64, QWidget*> m_open; ///< the dialog's parent, null while it isn't shown
};

} // namespace standalone
