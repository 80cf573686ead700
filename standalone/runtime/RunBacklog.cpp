#include "standalone/runtime/RunBacklog.h"

#include "standalone/runtime/RunCommands.h"

#include <QCoreApplication>
#include <QTimer>

namespace standalone {

RunBacklog::RunBacklog(std::shared_ptr<RunCommands> commands) : m_commands(std::move(commands)) {}

void RunBacklog::add(std::size_t bytes)
{
    m_said += bytes + CostOfEach;
    askForRound();
}

void RunBacklog::askForRound()
{
    // Early, so that a GUI thread that keeps up never lets the child wait.
    if (waiting() < Most / 4 || m_isRoundAsked.exchange(true))
        return;
    QCoreApplication* application = QCoreApplication::instance();
    if (!application) {
        endRound(m_said);
        return;
    }
    // Behind all events that wait now. A timer ends the round, since an event that lets the child
    // say more would keep the loop among its events for ever.
    QMetaObject::invokeMethod(
        application,
        [self = shared_from_this(), application, said = m_said.load()] {
            QTimer::singleShot(1, application, [self, said] { self->endRound(said); });
        },
        Qt::QueuedConnection);
}

void RunBacklog::endRound(std::size_t said)
{
    m_done = said;
    m_isRoundAsked = false;
    askForRound();
    m_commands->wake();
}

} // namespace standalone
