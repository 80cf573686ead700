#pragma once

#include "model/compile_records.h"
#include "shell/ProcessEditToolBar.h"

#include <QObject>
#include <QString>

#include <functional>

/// What is being edited.
struct EditPlace
{
    QString sequenceId;
    QString stepId; ///< or the number of a flow; empty without a current row

    bool operator==(const EditPlace& other) const
    {
        return sequenceId == other.sequenceId && stepId == other.stepId;
    }
};

/// What the build road needs of the window it works for. GUI thread only.
class BuildView
{
public:
    virtual ~BuildView() = default;

    virtual EditPlace place() const = 0;
    virtual void showSequence(const QString& sequenceId) = 0;
    /// Shows the sequence and makes the step current, as far as they are still there.
    virtual void goTo(const EditPlace& place) = 0;
    /// Writes every edit that waits in a panel to the model.
    virtual void flushPanels() = 0;
    virtual void showEditTab() = 0;
    virtual void setPanelsEnabled(bool enabled) = 0;
    virtual void setToolBarState(ProcessEditToolBar::State state) = 0;
    /// Starts or ends the display of a run.
    virtual void setRunMode(bool running, const QString& appName, const QString& sequenceId) = 0;
    virtual void updateRunTreeWidth() = 0;
    /// Marks the row that ran last with the run's outcome.
    virtual void finishRunRow(bool success) = 0;
    /// Which applet's reports the display takes; empty: none.
    virtual void setReportingApp(const QString& appName) = 0;
    virtual void hideWaiting() = 0;
    /// Saves the document and the files that the project's applets share.
    virtual void saveAll() = 0;
    virtual void warn(const QString& title, const QString& text) = 0;
    virtual bool ask(const QString& title, const QString& text) = 0;
};

/// What lies between a press of Run, Compile or Stop and the finished message, for one window: the
/// refusals, the rebuild rule, the compile, the run, and their output text. All state of an applet
/// in the runtime lies in LogicMaster and the services.
///
/// GUI thread only. Owned by its window; the view outlives it.
class BuildController : public QObject
{
    Q_OBJECT
public:
    /// Told the final outcome of each attempt, a refusal and a skip included.
    using FinishedCallback = std::function<void(bool)>;
    /// A check before a compile; any list but an empty one refuses it silently.
    using CheckCallback = std::function<QList<int>(
        const QString& sequenceId, const QString& appName, const QString& jsonPath, bool forVci)>;
    using PrepareCallback = std::function<void()>;

    BuildController(const QString& businessName, BuildView& view, QObject* parent);

    void setAppName(const QString& appName) { m_appName = appName; }
    QString compilingApp() const { return m_compilingApp; }
    QString runningApp() const { return m_runningApp; }

    void setCheckCallback(CheckCallback callback) { m_check = std::move(callback); }
    void setPrepareCallback(PrepareCallback callback) { m_prepare = std::move(callback); }
    void setFinishedCallback(FinishedCallback callback) { m_finished = std::move(callback); }

    void runCurrent();
    void runMain();
    void compileMain();
    void stop();

public slots:
    void onCompileResult(CAppCompileResult result, QString outputInfo);
    void onRunResult(QString appName, bool success, QString outputInfo);

signals:
    void compileStarted();
    void compileFinished(bool success);
    void runStarted();
    void runFinished();
    void output(bool success, QString text);

private:
    enum class Target { Current, Main, CompileOnly };

    void build(Target target);
    bool refuseBoundPanel() const;
    QString mainSequence() const;
    void applyRebuildRule(Target target, const QString& sequenceId);
    void runSkipped(Target target, const QString& sequenceId, QString& text);
    void startAfterCompile(const CAppCompileResult& result, QString& text);
    void setRunningApp(const QString& appName);
    void tellFinished(bool success) const;
    void goBack();

    BuildView& m_view;
    QString m_businessName;
    QString m_appName;
    int m_lastBuildKind = -1; ///< 0 for a run, 1 for the VCI, -1 nothing built yet
    QString m_lastBuiltSequenceId;
    QString m_compilingApp; ///< while a compile of this window is awaited
    QString m_runningApp;   ///< while a run of this window is active
    bool m_compileOnly = false;
    EditPlace m_editedPlace; ///< when Run was pressed
    EditPlace m_runPlace;    ///< what that press has shown
    CheckCallback m_check;
    PrepareCallback m_prepare;
    FinishedCallback m_finished;
};
