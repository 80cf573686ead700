#pragma once

#include "variables/entry_variables.h"

class QTreeWidget;
class QTreeWidgetItem;

/// Fills a tree with the variables that a value may be, in four fixed groups. GUI thread only.
class EntryVariableTree
{
public:
    /// In the order of their rows.
    enum Group { SequenceGroup, ProcessGroup, GlobalGroup, SystemGroup, GroupCount };

    /// Sets up the columns and the groups. The tree belongs to the caller and outlives this.
    explicit EntryVariableTree(QTreeWidget& tree);

    void setGroupShown(Group group, bool isShown);
    /// Takes the variables of all groups away.
    void clear();
    /// Appends variables to a group. Their rows bear @p origin in role Qt::UserRole.
    void add(Group group, const QVector<entry_variables::EntryVariable>& variables,
             entry_variables::Origin origin);

    /// What stands for a row's variable in a value, with its origin or without; empty for a group.
    static QString valueText(const QTreeWidgetItem& item, bool withOrigin);

private:
    QTreeWidget& m_tree;
};
