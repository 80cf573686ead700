#pragma once

#include "logic/edit/UdsStepEditor.h"
#include "logic/rows/structure_rules.h"
#include "model/step_kinds.h"

#include <QModelIndexList>
#include <QObject>
#include <QStringList>

#include <optional>
#include <vector>

class CheckStateEditor;
class CustonStandModel;
class QStandardItem;
class QTreeView;

/// Adds, moves and removes steps of the sequence that the edit tree shows. The model service is
/// changed first, then the rows; a step that the service doesn't make leaves the tree as it was.
/// Without a sequence in the tree every operation does nothing. GUI thread only.
class StepEditor : public QObject
{
    Q_OBJECT
public:
    /// How a step gets to its place. Anchor is the tree's current row, or else the main flow.
    enum class Way {
        Chosen,      ///< from a palette or a menu; the structure rules may refuse it
        DroppedOn,   ///< dropped on the anchor: the tree has allowed it
        DroppedAbove ///< dropped between the anchor and the row above it
    };

    struct NewStep
    {
        logicBlockType baseType = BasicStep;
        int stepType = step_type::None;
        QString name;        ///< tells diagnostic kinds of one step type apart
        QString quickStepId; ///< empty: a new step of that kind
        Way way = Way::Chosen;
    };

    /// All must outlive the editor.
    StepEditor(QTreeView& tree, CheckStateEditor& checkStates, UdsStepEditor& udsSteps);

    void setAppName(const QString& appName) { m_appName = appName; }

    /// Takes in what is dropped on the tree while it shows @p model.
    void follow(CustonStandModel* model);

    /// The new step becomes current, and is expanded and in sight.
    void addStep(const NewStep& step);
    /// Appends one statement step a text to the main flow, disabled if the flow is; those of
    /// @p splitIndexes go to source files of their own. Ends at the first that can't be made.
    void appendStatements(const QStringList& statements, const std::vector<int>& splitIndexes);
    /// Removes the current step with the rows that belong to it.
    void removeStep();
    /// Empties the current flow; without a current row all three.
    void removeAllSteps();
    /// Takes the rows of all flows off the tree; the blocks are the caller's matter.
    void clearRows();
    /// Tells the model service the places of rows that have been moved in the tree, in order. A
    /// step that has come under a disabled one is disabled; other steps keep their states.
    void writeMovedRows(const QModelIndexList& rows);
    /// Keeps the selected steps as quick steps, but for kinds that the palette hides.
    void addQuickSteps();

signals:
    void rowCountChanged(int rowCount); ///< flows' rows included
    void rowsRemoved();
    /// What went, in the words of its user, since nothing is asked.
    void removed(QString what);
    /// A row is current now for which the panels are to be shown; invalid for none.
    void rowChosen(QModelIndex row);
    /// A step can't be added here, for a reason that no box tells.
    void refused(QString reason);
    /// The service has kept a moved step where it was: the tree must be loaded again.
    void moveRefused(QString sequenceId);
    void quickStepsAdded(QStringList quickStepIds);

private:
    CustonStandModel* currentModel() const;
    QStandardItem* anchor();
    bool mayAdd(const NewStep& step);
    std::optional<structure_rules::Place> placeOf(const NewStep& step, QStandardItem* anchor) const;
    /// Block and rows of a step; null if there is no place or no block.
    QStandardItem* create(const NewStep& step);
    /// The same, set up, and shows them; false if there are none.
    bool addRows(const NewStep& step, const std::optional<UdsStepEditor::Setup>& setup);
    void show(QStandardItem* row);
    void makeCurrent(const QModelIndex& index);
    void tellRowCount();
    void warn(const char* text); ///< of the context LogicView

    QTreeView& m_tree;
    CheckStateEditor& m_checkStates;
    UdsStepEditor& m_udsSteps;
    QString m_appName;
};
