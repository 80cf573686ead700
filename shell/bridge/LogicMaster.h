#pragma once

#include "model/compile_records.h"
#include "model/services/system_variate.h"
#include "model/uds_records.h"

#include <QHash>
#include <QList>
#include <QMap>
#include <QMutex>
#include <QObject>
#include <QPair>
#include <QSet>
#include <QVector>

#include <vector>

class QWidget;
class VciTransThread;

/// Everything that is keyed by an applet's name and outlives a widget: paths, compiles in flight,
/// conversion threads, panel bindings. One instance a process.
///
/// GUI thread only, but for the operations under the two mutexes, which say so. No path holds both
/// mutexes.
class LogicMaster : public QObject
{
    Q_OBJECT
public:
    /// A compile in flight. No entry gives an empty id and false.
    struct PendingCompile
    {
        QString sequenceId;
        bool flag = false;
    };

    /// The names that each step of a sequence uses, by the step's uuid; steps that use none are
    /// left out.
    using VariableUse = QHash<QString, QSet<QString>>;

    static LogicMaster* instance();

    // Applets ------------------------------------------------------------------------------------
    /// Creates the applet in the runtime; an existing one is left alone. A @p defaultPath that is
    /// not empty becomes both paths of an applet that has none yet.
    bool createApplet(const QString& appName, const QString& defaultPath);
    /// A running applet is removed when its run has ended, unless @p force is set.
    void removeApplet(const QString& appName, bool force);
    void finishPendingRemoval(const QString& appName);
    void renameApplet(const QString& oldName, const QString& newName);

    /// The folders of the applet's document and VCI code, with a trailing separator; empty for an
    /// applet without them.
    QString jsonPath(const QString& appName) const;
    QString vciPath(const QString& appName) const;
    void setPaths(const QString& appName, const QString& jsonPath, const QString& vciPath);
    QString settingPath(const QString& appName) const;
    void setSettingPath(const QString& appName, const QString& path);

    /// The variable panel of the widget that shows the applet; not owned. A panel is registered
    /// once, under the first name it is given.
    void registerVariablePanel(const QString& appName, QWidget* panel);
    void unregisterVariablePanel(QWidget* panel);
    QWidget* variablePanel(const QString& appName) const;
    QMap<QString, QWidget*> variablePanels() const { return m_variablePanels; }
    void clearVariablePanels();

    /// Whether the applet is bound to a panel that is in run mode.
    bool isPanelBound(const QString& appName) const;
    void setPanelBound(const QString& appName, bool bound);
    void clearPanelBindings();

    // Compile and run ----------------------------------------------------------------------------
    /// Starts a compile. @p message says what happened, for the output or for a warning; it stays
    /// as it is for a skipped compile that the caller goes on to run.
    bool compile(const QString& appName, const QString& sequenceId, QString& message, bool forVci,
                 bool& skipped, bool currentSequence, bool runAfter);
    void stopApplet(const QString& appName, bool reserved, bool removeAfterStop);
    /// Read and remove the entry. Any thread, under m_compileMutex.
    PendingCompile takePendingCompile(const QString& appName);
    PendingCompile takePendingVciCompile(const QString& appName);
    /// Cancels every conversion and removes every conversion thread: an idle one at the next turn
    /// of the event loop, a running one, which can't be interrupted, when it has ended. An applet
    /// gets a thread again only when it is created anew.
    void clearTransVciThread();

    // Variables ----------------------------------------------------------------------------------
    /// Gives the variable its new type in every diagnostic step that uses it; the applets with
    /// such steps. Any thread, under m_udsMutex.
    QStringList retypeUdsVariable(const SystemVarDef& variable);
    /// Applet and sequence of every use of a system variable. Any thread, under m_udsMutex.
    QVector<QPair<QString, QString>> usersOfSystemVariable(const QString& name) const;
    /// What follows is under m_udsMutex too. The names that steps use: of all of an applet's, and
    /// of one step, in place of what was known of it.
    void setVariableUse(const QString& appName, const QMap<QString, VariableUse>& bySequence);
    void setVariableUse(const QString& appName, const QString& sequenceId, const QString& blockUuid,
                        const QSet<QString>& names);
    /// The names that each step of an applet is known to use, by sequence and step.
    QMap<QString, VariableUse> variableUse(const QString& appName) const;
    /// The steps of a sequence that are known to use names.
    QStringList blocksThatUseVariables(const QString& appName, const QString& sequenceId) const;
    void removeVariableUse(const QString& appName, const QStringList& sequenceIds);
    /// Adds to what a diagnostic step uses, or forgets all of it.
    void addUdsVariables(const QString& appName, const QString& blockUuid,
                         const std::vector<UdsVarStruct>& variables);
    void removeUdsVariables(const QString& appName, const QString& blockUuid);
    /// The diagnostic steps of an applet that use variables.
    QStringList udsBlocks(const QString& appName) const;
    /// No change of a variable reaches these applets any more.
    void forgetVariableUse(const QStringList& appNames);
    /// Of all applets.
    void clearUdsVariables();

signals:
    void runResultSig(QString outputInfo);
    void compileResultSig(CAppCompileResult result);
    void NotifyCompileResultSig(CAppCompileResult result, QString outputInfo);
    void NotifyRunResultSig(QString appName, bool isSuccessed, QString outputInfo);
    void NotifyRunStateSig(QString cappname, QString seqUuid, QString blockuuid, double iProgress,
                           int result);
    void NotifyGotoSequenceSig(QString cappname, QString gotoSeqUuid, bool isEnd);
    void NotifyGotoTemplateSequenceSig(QString cappname, QString templateid, QString gotoSeqUuid,
                                       bool isEnd);
    /// The document of some applet was changed by its user.
    void sigModify();
    void vciTransFinish(int result, QString appName);
    void waitCAppletStop(QString appName);
    void sigRename(QString oldName, QString newName);
    void sigUpdateTemplateWidget(QString appname);
    void sigUpdateQuickStep(QStringList quickStepIdList, bool isRemove);

public slots:
    void onCompileFinish(CAppCompileResult result);
    void onRunFinish(QString appName, QString sequenceId, int result);
    /// The three below run on the runner's thread.
    void onRunState(QString cappname, QString seqUuid, QString blockuuid, double iProgress,
                    int result);
    void onGotoSequence(QString cappname, QString gotoSeqUuid, bool isEnd);
    void onGotoTemplateSequence(QString cappname, QString templateid, QString gotoSeqUuid,
                                bool isEnd);
    void getVariableSlot(int type);

private:
    LogicMaster();
    ~LogicMaster() override;

    VciTransThread* addVciThread(const QString& appName);
    void onVciThreadFinished(VciTransThread* thread);
    void finishRun(const QString& appName, int event);
    void refreshUsers(const QVector<QPair<QString, QString>>& users) const;
    void forgetApplet(const QString& appName);

    QMap<QString, QPair<QString, QString>> m_appletPaths; ///< document folder, VCI code folder
    QMap<QString, QString> m_settingPaths;
    QList<QString> m_pendingRemoval; ///< applets whose removal waits for their run to end
    QMap<QString, PendingCompile> m_pendingCompiles;
    QMap<QString, PendingCompile> m_pendingVciCompiles;
    QMutex m_compileMutex;     ///< guards the two maps above
    mutable QMutex m_udsMutex; ///< guards the two UDS maps below
    QMap<QString, QWidget*> m_variablePanels;
    QMap<QString, VciTransThread*> m_vciThreads;
    /// Applet, block, the variables that a diagnostic step uses.
    QMap<QString, QMap<QString, std::vector<UdsVarStruct>>> m_udsVarInfo;
    /// Applet, sequence, the names that its steps use.
    QMap<QString, QMap<QString, VariableUse>> m_udsVarUse;
    QMap<QString, bool> m_panelBind;
};
