#pragma once

#include "logic/edit/UdsEditor.h"
#include "model/step_kinds.h"

#include <QList>
#include <QPersistentModelIndex>
#include <QSet>
#include <QStringList>
#include <QWidget>

#include <memory>
#include <vector>

class CustonStandModel;
class QStandardItem;
class QStandardItemModel;
class RunInbox;
struct DocumentChange;
struct LogicViewParts;
struct processTemplateInfo;
namespace step_menu {
enum class Action;
}

/// The middle of the editor: a sequence as a tree of steps on the edit tab, and its run on the run
/// tab. The model service holds the truth; rows are looked up by the uuids of their blocks.
///
/// GUI thread only, but for notifyRunState and notifyGoto.
class LogicView : public QWidget
{
    Q_OBJECT
public:
    explicit LogicView(QWidget* parent = nullptr);
    ~LogicView() override;

    /// The applet whose sequences are shown. Models of an earlier applet are not touched.
    void setCAppletName(const QString& appName);

    /// The sequence on the edit tab; empty when there is none.
    QString currentSequenceId() const { return m_currentSequenceId; }
    /// Puts a sequence on the edit tab; nothing happens unless addNewModelSlot has loaded it.
    void showSequence(const QString& sequenceId);
    /// Empties the three flows on the screen; the blocks are the caller's matter.
    void clearCurrentSequenceRows();
    void showEditTab();
    bool isRunTabShown() const;
    /// The current step of the edit tab, or the number of a flow; empty without one.
    QString currentStepId() const;
    /// Makes a step of the shown sequence, or a flow, the one to edit; an unknown one changes
    /// nothing.
    void chooseStep(const QString& uuid);

    /// The rows of a loaded sequence, owned by the view; null for any other.
    QStandardItemModel* editModel(const QString& sequenceId) const;

    /// Widths of the three and the four columns; a list that is shorter or holds a width of zero or
    /// less is ignored.
    void setEditColumnWidths(const QList<int>& widths);
    void setRunColumnWidths(const QList<int>& widths);

    // Steps --------------------------------------------------------------------------------------
    /// Adds a step at the current row, or else to the main flow. It was dropped there with
    /// @p fromDrop, with @p isInsert above the row; it is a quick step with a @p quickStepId.
    void addStep(logicBlockType baseType, int stepType, const QString& stepName, bool fromDrop,
                 bool isInsert, const QString& quickStepId = QString());
    /// Whether the sequence on the edit tab has such a step.
    bool isShown(const QString& blockUuid) const;
    /// Keys go to the rows of the edit tree from now on.
    void focusSteps();
    /// Appends a statement step for each text to the main flow; those at @p splitIndexes go to
    /// source files of their own.
    void appendStatements(const QStringList& statements, const std::vector<int>& splitIndexes);
    /// The dialog for diagnostic steps; without one they can't be added.
    void setUdsEditor(UdsEditor editor);

    // Run ----------------------------------------------------------------------------------------
    /// Follows a run on the run tab from its start to its end, one run at a time. @p progressText
    /// stands in the host's progress display.
    void setRunMode(bool start, const QString& appName, const QString& sequenceId,
                    const QString& progressText);
    /// A run is about to start: the reports from here on are its own, though they may come before
    /// setRunMode; what an earlier run still says is nobody's.
    void expectRun();
    /// A step's report: @p iProgress from 0 to 100, a negative @p result is a failure. Any thread.
    void notifyRunState(const QString& seqUuid, const QString& blockuuid, int result,
                        double iProgress);
    /// A called sequence was entered or left, with @p templateId one of a template. Any thread.
    void notifyGoto(const QString& gotoSeqUuid, bool isEnd, const QString& templateId);
    /// Where both of them, and the log lines of applets, come in; whoever tells shares it, and may
    /// keep it beyond the view. Any thread may use it.
    std::shared_ptr<RunInbox> inbox() const;
    /// Gives the row reported last the outcome of the run.
    void finishRow(bool success);
    /// The run is being ended by a stop.
    void noteStop();
    /// The handle of the host's progress display for this run; -1 when there is none.
    int progressHandle() const;
    /// The sequence whose rows a run shows; empty without a run.
    QString runSequenceId() const;
    /// The template that it is of; null for a sequence of the applet, and without a run.
    std::shared_ptr<const processTemplateInfo> runTemplate() const;

    // Refreshing ---------------------------------------------------------------------------------
    /// Writes a block's texts into its row of the current sequence.
    void refreshRow(const QString& blockUuid);
    /// The same for many blocks, in every loaded sequence.
    void refreshRows(const QSet<QString>& blockUuids);
    /// The same for all calls of sequences, in every loaded sequence.
    void refreshSequenceNames();
    /// The blocks that no longer fit what was compiled; their rows are marked, others unmarked.
    void setRuntimeStaleBlockUuids(const QSet<QString>& blockUuids);

signals:
    void sigItemDbClick();
    /// A row became the one to edit: its base type and block uuid; -1 and empty for none.
    void processItemClicked(int baseType, QString blockuuid);
    void sigCurrentTabChanged(int index);
    /// The user moved a column's edge: all widths.
    void sigUpdateProcessWidgetWidth(QStringList list, bool isRunWidget = false);
    /// Progress of the run, 0 to 100, the newest of what came in; @p state is negative after a
    /// failure.
    void sigProcessPrograss(double progress, int state);
    /// A line of any applet's log.
    void sigLogLine(QString appName, QString text);
    /// The run shows another sequence, or is at its end.
    void sigRunSequenceChanged();
    void sigUdsRuntimeStaleRequired();
    /// Steps of the sequence on the edit tab were removed, or all of them.
    void sigStepsRemoved();
    /// Something to know that needs no answer.
    void sigNotice(QString text);
    /// Diagnostic steps came and went; one that was edited goes and comes.
    void sigUdsBlockAdded(QString blockUuid);
    void sigUdsBlockRemoved(QString blockUuid);
    void sigQuickStepsAdded(QStringList ids);

public slots:
    /// Loads a sequence from the model service, or loads it again.
    void addNewModelSlot(QString sequenceId);
    void removeModelSlot(QStringList sequenceIdList);
    void removeAllModelSlot();
    void onItemClicked(QModelIndex index);
    void onItemDoubleClicked(QModelIndex index);
    void onRunDoubleItemClicked(QModelIndex index);
    void onCurrentTabChange(int index);
    void removeRowSlot();
    void removeAllRows();
    /// Keeps the selected steps as quick steps.
    void onQucikAddSlot();
    void onDataChanged(QModelIndex topLeft, QModelIndex bottomRight);
    void onDocumentChanged(const DocumentChange& change);
    /// Brings every block to the state of its check box.
    void syncCheckStatesToSdk();
    void syncCheckStateItemRecursive(QStandardItem* item, bool& changed);
    /// Takes what has come in, instead of waiting for the next 30 ms.
    void onRunTimerTimeout();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void setUpEditTab();
    void setUpSteps();
    void setUpRunTab();
    void nameRunSequence();
    CustonStandModel* currentModel() const;
    void onMenuAction(step_menu::Action action, const QList<QPersistentModelIndex>& rows);
    void switchRows(const QList<QPersistentModelIndex>& rows, Qt::CheckState state);
    void showRefusal(const QString& reason);

    std::unique_ptr<LogicViewParts> m;
    QString m_appName;
    QString m_currentSequenceId;
    /// 0 until the user has set a width.
    int m_columnWidth0 = 0, m_columnWidth1 = 0, m_columnWidth2 = 0;
    bool m_isSettingWidths = false; ///< the columns move, and it isn't their user who does it
};
