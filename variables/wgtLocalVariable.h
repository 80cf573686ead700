#pragma once

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
    void removeSequenceModels(const QStringList& sequenceIds);
    void removeAllModels();

    /// Widths of the four columns; fewer values change nothing.
    void setColumnWidths(const QList<int>& widths);

signals:
    /// The user changed a column's width; all four.
    void sigUpdateVarTreeWidth(QStringList list);

private slots:
    void onSectionResized(int logicalIndex, int oldSize, int newSize);

private:
    void fillModel(QStandardItemModel* model, const QString& sequenceId) const;
    void showModel(QStandardItemModel* model);

    QTreeView* m_treeView;
    QHash<QString, QStandardItemModel*> m_models;
    QString m_appName;
    QString m_sequenceId;
    QList<int> m_columnWidths;
};
