#pragma once

#include "logic/run/runProcessState.h"

#include <QHash>
#include <QMutex>
#include <QStringList>
#include <QVector>

#include <functional>
#include <optional>
#include <vector>

/// The templates that the sequences of a run were called in, innermost last.
class CalledTemplates
{
public:
    /// Empty outside of all templates.
    QString inForce() const { return m_ids.isEmpty() ? QString() : m_ids.last(); }
    /// An empty @p templateId is a sequence of what is in force.
    void enter(const QString& templateId);
    void leave();

private:
    static constexpr int MostKept = 10000; ///< calls nested deeper are counted only
    QStringList m_ids;
    int m_depth = 0;
};

/// What the runtime's threads have to tell one window, until its run view reads it: the reports of
/// the run that it follows, how far that run is, and the log lines of all applets. Shared by the
/// view and by what those threads call; it calls nobody but the one function that wakes the view.
///
/// Any thread, under its own mutex. Telling takes constant time.
class RunInbox
{
public:
    struct Line
    {
        QString appName;
        QString text;
    };
    /// Of the whole run, 0 to 100; @p state is negative after a failure.
    struct Progress
    {
        double value;
        int state;
    };
    struct Content
    {
        std::vector<runProcessState> reports; ///< first to last
        std::optional<Progress> progress;     ///< the newest, if there was one
        std::vector<Line> lines;              ///< first to last

        bool isEmpty() const { return reports.empty() && !progress && lines.empty(); }
    };
    /// No line is lost: it is for the runtime to hold back an applet that writes faster than a
    /// window can take. One that doesn't costs lines and not the editor; how many is said in their
    /// place. Far beyond what one that does leaves here: some thousand lines a run, and once the
    /// run was killed, what its pipes hold.
    static constexpr std::size_t MostLines = 1000000;

    /// @p wake is called once for all that comes in between two calls of take(), on the thread of
    /// the first, with the inbox locked: it must be quick, must not call the inbox, and sees to it
    /// that take() is called soon.
    explicit RunInbox(std::function<void()> wake);

    // The reader ----------------------------------------------------------------------------------
    /// All that waits. Reports are left where they are unless @p withReports.
    Content take(bool withReports = true);
    std::optional<Progress> takeProgress();
    /// Takes reports from here on, of a run that starts: those that wait, the templates in force,
    /// the blocks and the progress are forgotten.
    void open();
    /// The same, but takes none any more, as before the first open().
    void close();
    /// Every block that the run may report, in the order of the run. Reports of other blocks don't
    /// move the progress.
    void setBlocks(const QVector<QString>& blockUuids);
    /// Whose reports come in by reportOf and sequenceChangeOf; empty: nobody's.
    void setRunningApp(const QString& appName);
    /// Nothing comes in afterwards, and nobody is woken.
    void shut();

    // Those who tell ------------------------------------------------------------------------------
    /// A step's report of the run that is followed: kept unless an equal one waits already.
    void report(const QString& sequenceId, const QString& blockUuid, double progress, int result);
    /// Attaches a change of sequence to the report that waits last; it is kept by itself when none
    /// waits. A template is in force for later reports, those of sequences that it calls too, until
    /// the change that leaves it; then the one it was called from is again. @p templateId is empty
    /// for a sequence of the applet.
    void sequenceChange(const QString& sequenceId, bool isEnd, const QString& templateId);
    /// The same of the run of an applet, which may be another one's.
    void reportOf(const QString& appName, const QString& sequenceId, const QString& blockUuid,
                  double progress, int result);
    void sequenceChangeOf(const QString& appName, const QString& sequenceId, bool isEnd,
                          const QString& templateId);
    void line(const QString& appName, const QString& text);

private:
    /// Open addressing over the reports' places: a run may report faster than nodes are allocated.
    struct Slot
    {
        uint hash = 0;
        int place = -1; ///< in m_stateQueue
    };

    // With the mutex held.
    bool isRunning(const QString& appName) const;
    void reset(bool isOpen);
    void add(const QString& sequenceId, const QString& blockUuid, double progress, int result);
    void addChange(const QString& sequenceId, bool isEnd, const QString& templateId);
    void append(runProcessState report);
    void growSlots();
    void wake();

    QMutex m_stateMutex;          ///< guards all below
    std::function<void()> m_wake; ///< empty once shut
    bool m_isWoken = false;       ///< since the last take
    bool m_isOpen = false;        ///< for reports
    QString m_runningApp;         ///< empty: nobody's reports
    std::vector<runProcessState> m_stateQueue;
    std::vector<Slot> m_slots; ///< of m_stateQueue; a power of two, at most half full
    CalledTemplates m_templates;
    QHash<QString, int> m_runBlockPlaces; ///< of the blocks of the run
    int m_runBlockCount = 0;
    std::optional<Progress> m_progress;
    std::vector<Line> m_lines;
    int m_lostLines = 0;
};
