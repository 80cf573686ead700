#pragma once

#include <QObject>
#include <QPersistentModelIndex>
#include <QVector>

class QStandardItemModel;
class QTableView;
class QTimer;
class QTreeView;

/// The narrow table at the left of a logic tree: one cell for every row, scrolled together with the
/// tree. Buttons exist for the rows in sight only. Must go before the two views. GUI thread only.
class BreakPointColumn : public QObject
{
    Q_OBJECT
public:
    BreakPointColumn(QTableView* table, QTreeView* tree);

    /// Shows @p model, which gets one row for each of @p rowCount rows of the tree.
    void show(QStandardItemModel* model, int rowCount);

    /// Follows rows of the tree that came or went; nothing happens while no model is shown.
    void setRowCount(int rowCount);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void joinScrollBars();
    void matchHorizontalScrollBar();
    void placeButtons();

    QTableView* m_table;
    QTreeView* m_tree;
    QTimer* m_placing; ///< one placing for any number of causes
    QVector<QPersistentModelIndex> m_buttons;
};
