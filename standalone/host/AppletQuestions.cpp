#include "standalone/host/AppletQuestions.h"

#include "model/dialogs/user_dialogs.h"

#include <QApplication>
#include <QDialog>

#include <memory>

namespace standalone {

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
    bool accepted = false;
    QString value;
    // Without widgets only a handler can answer.
    if (hasWidgets || user_dialogs::hasHandler()) {
        switch (question.kind) {
        case AppletQuestion::YesNo:
            accepted = user_dialogs::question(parent.get(), question.title, question.text);
            break;
        case AppletQuestion::Text:
            value =
                user_dialogs::askText(parent.get(), question.title, question.text, question.value);
            accepted = !value.isEmpty();
            break;
        case AppletQuestion::Notice:
            user_dialogs::information(parent.get(), question.title, question.text);
            accepted = true;
            break;
        }
    }
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_open.erase(id) == 0)
            return;
    }
    answer(accepted, value);
}

} // namespace standalone
