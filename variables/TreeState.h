#pragma once

#include <QSet>
#include <QString>

class QModelIndex;
class QTreeView;

/// What a person had before them in a variable tree, to be brought back when its rows are filled
/// anew: collapsed groups, current and selected rows, scroll position. Rows are told by uuid, so
/// what is gone stays gone. GUI thread only.
class TreeState
{
public:
    explicit TreeState(const QTreeView& tree);
    void restore(QTreeView& tree) const;

private:
    static QString keyOf(const QModelIndex& row);

    QSet<int> m_collapsed;
    QSet<QString> m_selected;
    QString m_current;
    int m_currentColumn = 0;
    int m_scrollPosition = 0;
};
