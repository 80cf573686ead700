#pragma once

#include "model/type_tables.h"
#include "variables/VariableClipboard.h"

#include <QPersistentModelIndex>
#include <QStringList>
#include <QWidget>

#include <functional>
#include <memory>

class QMenu;
class QStackedWidget;
class QTreeView;
class VariableEditor;
class VariableSheets;
class varStandModel;
class varTreeDelegate;
struct processTemplateInfo;

/// The variables that an applet's steps use: one model a sequence, each with the groups of the
/// sequence's, the process's and the global variables (see variable_rows). The variables belong to
/// the model service; rows are copies for display, and every edit goes to the service at once.
/// GUI thread only.
class wgtLocalVariable : public QWidget
{
    Q_OBJECT
public:
    /// Opens an editor for the value of a variable of a composite type.
    using CompositeEditor = std::function<void(const QString& uuid, DrelVarType type)>;

    explicit wgtLocalVariable(QWidget* parent = nullptr);
    ~wgtLocalVariable() override;

    void setCAppletName(const QString& appName);
    /// With @p isReadOnly the context menu is disabled as a whole.
    void setReadOnly(bool isReadOnly);
    /// What a double click on the value of a composite type asks for; nothing without one.
    void setCompositeEditor(CompositeEditor editor);

    /// Builds the model of a sequence anew, shows it and expands it.
    void reloadSequenceVariables(const QString& sequenceId);
    /// Shows the model of a sequence; one without a model is built.
    void showSequence(const QString& sequenceId);
    /// Shows the variables of a sequence that runs, only to be read, in front of the shown
    /// sequence's; an empty id takes them away. @p owner is its template, null for the applet's
    /// own. A cell that is being edited is left first.
    void showRunSequence(const QString& sequenceId,
                         const std::shared_ptr<const processTemplateInfo>& owner);
    /// Builds the models of loaded sequences anew, without showing another one; those that are not
    /// shown follow when they are. An empty list means all of them. What the person had before them
    /// stays: selection, collapsed groups, scroll position, and a cell that is being edited, after
    /// which the shown model follows.
    void refreshSequences(const QStringList& sequenceIds);
    void removeSequenceModels(const QStringList& sequenceIds);
    void removeAllModels();

    /// Takes over what is being typed in a cell and closes its editor.
    void flushPending();

    /// Gives the variable of that name in sight of the shown sequence a type and a value, or makes
    /// one in @p scope (a processVariableType); @p forceNew makes one in any case. A name that is
    /// no identifier of at most 20 characters changes nothing and is reported to the log.
    void addVarToCurrentView(const QString& name, const QString& value, DrelVarType type, int scope,
                             bool forceNew);

    /// Widths of the four columns; fewer values change nothing.
    void setColumnWidths(const QList<int>& widths);

    /// The context menu of the row at a position in the tree's viewport, null where there is none.
    /// A child of this widget that the caller deletes.
    QMenu* makeContextMenu(const QPoint& position);

public slots:
    /// A new variable at the end of the current row's group.
    void addVariableSlot();
    /// Nothing is asked.
    void removeSelectedVariables();
    /// Removes the variables of the current group row but for the locked ones. Nothing is asked.
    void removeAllVariables();
    void copyVariable();
    /// Puts the copied variables behind the current one, or at the end of the current group.
    void pasteVariable();

signals:
    /// The user changed a column's width; all four.
    void sigUpdateVarTreeWidth(QStringList list);
    /// Variables that other sequences can see were added, changed or removed: whether a global one
    /// is among them, and their names (none for a new one, which no step can use yet).
    void sigUpdateVariable(bool isHaveGlobalVar, QStringList updateVarNameList);
    /// As VariableEditor's.
    void sigNamesGone(QStringList names, QString newName, QString sequenceId);
    /// The document changed.
    void sigModified();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private slots:
    void onTreeViewDoubleClicked(const QModelIndex& index);
    void onTreeViewClicked(const QModelIndex& index);
    void onSectionResized(int logicalIndex, int oldSize, int newSize);
    void onDropEnd(const QModelIndex& parent, int row, const QStringList& list, int beforeDropRow);
    void onCloseEditor();
    void onLengthButtonClicked(const QModelIndex& index);
    void onShared(bool isHaveGlobalVar, const QStringList& names);
    void showContextMenu(const QPoint& position);

private:
    void setUpTree();
    void connectTree();
    void refreshShown();
    void choosePage();
    void applyWidths(QTreeView* tree);
    void showModel(varStandModel* model);
    /// In column 0, in the order in which they were selected.
    QModelIndexList selectedVariables() const;

    QStackedWidget* m_pages;
    QTreeView* m_treeView;
    QTreeView* m_runTree; ///< has a model while it is to be seen
    varTreeDelegate* m_delegate;
    VariableSheets* m_sheets;
    VariableEditor* m_editor;
    VariableClipboard m_clipboard;
    CompositeEditor m_compositeEditor;
    QPersistentModelIndex m_edited; ///< the cell with an open editor
    QString m_sequenceId;           ///< of the model shown
    QList<int> m_columnWidths;
    bool m_readOnly = false;
};
