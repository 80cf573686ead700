#pragma once

#include <QObject>
#include <QString>

class QModelIndex;
class QTreeView;

/// Which row of the edit tree the panels show: the one that was clicked, and the current one
/// however it became that: by any key, a click that scrolled, a jump from elsewhere. GUI thread
/// only.
class ChosenRow : public QObject
{
    Q_OBJECT
public:
    /// @p tree must outlive it.
    explicit ChosenRow(QTreeView* tree);

    /// Follows the current row of the model that the tree shows now. Nothing is told until that
    /// row changes.
    void follow();
    /// Tells of a row, also if it has been told; of an invalid one as of none. A selection that
    /// has flows beside steps is left with that row alone.
    void choose(const QModelIndex& row);

signals:
    /// -1 and empty for none.
    void chosen(int baseType, QString blockUuid);

private:
    void chooseCurrent();

    QTreeView& m_tree;
    QString m_told; ///< uuid of the row told last
    bool m_isDue = false;
};
