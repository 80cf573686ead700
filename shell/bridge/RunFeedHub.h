#pragma once

#include <QMutex>
#include <QObject>
#include <QString>

#include <memory>
#include <vector>

class RunInbox;

/// Hands what the runtime's threads report to every window's inbox. The signals that carry it are
/// emitted on foreign threads, and Qt keeps no receiver of a direct connection from going while its
/// sender is at work; so this one object is connected to them, once for the process, and windows
/// come and go behind its own mutex.
///
/// add and remove on the GUI thread; the rest is called on the runtime's threads.
class RunFeedHub : public QObject
{
    Q_OBJECT
public:
    /// The first call comes on the GUI thread.
    static RunFeedHub* instance();

    void add(std::shared_ptr<RunInbox> inbox);
    /// A report that is under way may still reach it.
    void remove(const std::shared_ptr<RunInbox>& inbox);

private:
    using Inboxes = std::vector<std::shared_ptr<RunInbox>>;

    RunFeedHub();
    std::shared_ptr<const Inboxes> inboxes() const;
    void setInboxes(Inboxes inboxes);

    void onRunState(const QString& appName, const QString& sequenceId, const QString& blockUuid,
                    double progress, int result) const;
    void onSequence(const QString& appName, const QString& sequenceId, bool isEnd) const;
    void onTemplateSequence(const QString& appName, const QString& templateId,
                            const QString& sequenceId, bool isEnd) const;
    void onLog(const QString& appName, int level, const QString& message) const;

    mutable QMutex m_mutex; ///< guards the pointer; what it points to never changes
    std::shared_ptr<const Inboxes> m_inboxes = std::make_shared<const Inboxes>();
};
