#pragma once

#include "model/type_tables.h"

#include <QHash>
#include <QStringList>
#include <QWidget>

class QStandardItemModel;
class QTreeView;

/// The variables that an applet's steps use: one model a sequence, each with the groups of the
/// sequence's, the process's and the global variables. The variables belong to the model service;
/// rows are copies for display. GUI thread only.
class wgtLocalVariable : public QWidget
{
    Q_OBJECT
public:
    /// Data of a variable row, on column 0. Group rows have the scope only.
    enum Role { UuidRole = Qt::UserRole, ScopeRole, CompositeRole, EditableRole, LengthRole };

    explicit wgtLocalVariable(QWidget* parent = nullptr);

    void setCAppletName(const QString& appName);

    /// Builds the model of a sequence anew, shows it and expands it.
    void reloadSequenceVariables(const QString& sequenceId);
    /// Shows the model of a sequence; one without a model is built.
    void showSequence(const QString& sequenceId);
    /// Builds the models of loaded sequences anew, without showing another one. An empty list means
    /// all of them.
    void refreshSequences(const QStringList& sequenceIds);
    void removeSequenceModels(const QStringList& sequenceIds);
    void removeAllModels();

    /// Gives the variable of that name in sight of the shown sequence a type and a value, or makes
    /// one in @p scope (a processVariableType); @p forceNew makes one in any case. A name that is
    /// no identifier of at most 20 characters changes nothing and is reported to the log.
    void addVarToCurrentView(const QString& name, const QString& value, DrelVarType type, int scope,
                             bool forceNew);

    /// Widths of the four columns; fewer values change nothing.
    void setColumnWidths(const QList<int>& widths);

signals:
    /// The user changed a column's width; all four.
    void sigUpdateVarTreeWidth(QStringList list);
    /// Variables that other sequences can see were added, changed or removed: whether a global one
    /// is among them, and their names.
    void sigUpdateVariable(bool isHaveGlobalVar, QStringList updateVarNameList);
    /// The document changed.
    void sigModified();

private slots:
    void onSectionResized(int logicalIndex, int oldSize, int newSize);

private:
    QString variableInSight(const QString& name) const;
    void rebuild(QStandardItemModel* model, const QString& sequenceId) const;
    void fillModel(QStandardItemModel* model, const QString& sequenceId) const;
    void showModel(QStandardItemModel* model);

    QTreeView* m_treeView;
    QHash<QString, QStandardItemModel*> m_models;
    QString m_appName;
    QString m_sequenceId;
    QList<int> m_columnWidths;
};
