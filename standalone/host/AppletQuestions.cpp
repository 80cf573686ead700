#include "standalone/host/AppletQuestions.h"

#include "model/dialogs/user_dialogs.h"

#include <QApplication>
#include <QDialog>

#include <memory>

namespace standalone {

namespace {

user_dialogs::Message messageFor(const AppletQuestion& question)
{
    user_dialogs::Message message;
    message.kind = question.kind == AppletQuestion::YesNo  ? user_dialogs::Kind::YesNo
                   : question.kind == AppletQuestion::Text ? user_dialogs::Kind::Text
                                                           : user_dialogs::Kind::Information;
    message.title = question.title;
    message.text = question.text;
    message.value = question.value;
    // One question after the other leaves no moment for the tool bar.
    message.wayOut = QCoreApplication::translate("standalone::AppletQuestions", "停止运行");
    return message;
}

bool isAccepted(AppletQuestion::Kind kind, const user_dialogs::Answer& answer)
{
    if (kind == AppletQuestion::YesNo)
        return answer.button == user_dialogs::Button::Yes;
    return answer.button == user_dialogs::Button::Ok && !answer.value.isEmpty();
}

} // namespace

AppletQuestions& AppletQuestions::instance()
{
    // Never destroyed: a run's thread may close its question while the process ends.
    static auto* const questions = new AppletQuestions;
    return *questions;
}

quint64 AppletQuestions::ask(const AppletQuestion& question, Answer answer)
{
    quint64 id = 0;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        id = ++m_lastId;
        m_open.emplace(id, nullptr);
    }
    if (QCoreApplication* application = QCoreApplication::instance()) {
        QMetaObject::invokeMethod(
            application,
            [this, id, question, answer = std::move(answer)] { show(id, question, answer); },
            Qt::QueuedConnection);
    }
    return id;
}

void AppletQuestions::close(quint64 id)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto found = m_open.find(id);
        if (found == m_open.end())
            return;
        if (!found->second) {
            m_open.erase(found);
            return;
        }
    }
    const auto reject = [this, id] {
        QWidget* parent = nullptr;
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            const auto found = m_open.find(id);
            if (found != m_open.end()) {
                parent = found->second;
                m_open.erase(found);
            }
        }
        if (!parent)
            return;
        const auto dialogs = parent->findChildren<QDialog*>();
        for (QDialog* dialog : dialogs)
            dialog->reject();
    };
    if (QCoreApplication* application = QCoreApplication::instance())
        QMetaObject::invokeMethod(application, reject, Qt::QueuedConnection);
}

void AppletQuestions::show(quint64 id, const AppletQuestion& question, const Answer& answer)
{
    // The dialog is found by its parent when it must go before it is answered.
    std::unique_ptr<QWidget> parent;
    const bool hasWidgets = qobject_cast<QApplication*>(QCoreApplication::instance());
    if (hasWidgets)
        parent = std::make_unique<QWidget>();
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto found = m_open.find(id);
        if (found == m_open.end())
            return;
        found->second = parent.get();
    }
    // Without widgets only a handler can answer; a notice needs nobody.
    user_dialogs::Answer given{user_dialogs::Button::Ok, QString()};
    const bool isAnswered = hasWidgets || user_dialogs::hasHandler();
    if (isAnswered)
        given = user_dialogs::ask(parent.get(), messageFor(question));
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_open.erase(id) == 0)
            return;
    }
    if (given.button == user_dialogs::Button::WayOut)
        answer(StopRun, QString());
    else if (question.kind == AppletQuestion::Notice)
        answer(Accepted, QString());
    else
        answer(isAnswered && isAccepted(question.kind, given) ? Accepted : Declined, given.value);
}

} // namespace standalone
