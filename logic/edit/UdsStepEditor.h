#pragma once

#include "logic/edit/UdsEditor.h"
#include "model/BaseStepProperty.h"
#include "model/uds_records.h"

#include <QObject>
#include <QPersistentModelIndex>

#include <limits>
#include <memory>
#include <optional>

class QStandardItem;
class QTreeView;
class UdsProcessBlock;

/// Diagnostic steps, which are set up in a dialog and whose coming and going is told. GUI thread
/// only.
class UdsStepEditor : public QObject
{
    Q_OBJECT
public:
    /// What was chosen for a step.
    struct Setup
    {
        BaseStepProperty kind;
        UDSProcessInfo info;
    };
    static constexpr int AllLevels = std::numeric_limits<int>::max();

    /// @p tree shows the steps, and outlives this.
    explicit UdsStepEditor(QTreeView& tree);

    void setAppName(const QString& appName) { m_appName = appName; }
    void setDialog(UdsEditor dialog) { m_dialog = std::move(dialog); }

    /// Asks for a new step of the sequence in the tree. Nothing if there is to be none; also if the
    /// tree shows another sequence by then.
    std::optional<Setup> ask(int stepType, const QString& name);
    /// Writes what was chosen into a step's block.
    void write(const QString& blockUuid, const Setup& setup);
    /// Opens the dialog of a step; false if @p row is none or the dialog lacks its kind.
    bool edit(const QModelIndex& row);

    /// Has the diagnosis service choose the ECUs of the diagnostic steps among rows, and takes over
    /// what it made of them. A step that is missing ends it.
    void setEcus(const QList<QPersistentModelIndex>& rows);

    /// Tell of the diagnostic steps among a row and so many levels under it.
    void tellAdded(const QStandardItem* row);
    void tellRemoved(const QStandardItem* row, int levels = AllLevels);

signals:
    void added(QString blockUuid);
    void removed(QString blockUuid);
    /// Code that was generated for diagnostic steps is out of date.
    void runtimeStale();
    /// The step that was edited is to be shown.
    void rowChosen(QModelIndex row);
    /// There is no dialog, or no service.
    void refused(QString reason);

private:
    void write(const std::shared_ptr<UdsProcessBlock>& block, const Setup& setup);
    void refuse(const QString& reason);
    bool open(const QString& id, int stepType, UDSProcessInfo& info);
    QString sequenceId() const; ///< in the tree; empty without one

    QTreeView& m_tree;
    UdsEditor m_dialog;
    QString m_appName;
};
