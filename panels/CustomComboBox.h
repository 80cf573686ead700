#pragma once

#include <QComboBox>

#include <functional>

class QStandardItem;
class QStandardItemModel;
class QTreeView;

/// A combo box with a tree as its list. Rows are found by what stands in IdRole. Large lists are
/// filled when somebody looks into them: till then the box shows its current row alone. GUI thread
/// only.
class CustomComboBox : public QComboBox
{
    Q_OBJECT
public:
    static constexpr int IdRole = Qt::UserRole + 1;
    using Fill = std::function<void(QStandardItemModel& model)>;

    explicit CustomComboBox(QWidget* parent = nullptr);

    /// Replaces the list, without a signal. @p fill is called when it is opened, or stepped through
    /// by keys or wheel; till then the box shows @p current, or nothing. The row @p current must
    /// be one of the list's, by its id; it goes over to the box.
    void setSource(Fill fill, QStandardItem* current);
    /// Makes the first row with that id current, of any depth; none if there is no such row.
    void setCurrentByData(const QString& value);

    /// Shows what is asked for in place of a row, till setEditable(false).
    void ask(const QString& request);

    void showPopup() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void fill();
    void makeCurrent(const QModelIndex& row);
    void step(int rows);

    QStandardItemModel* m_items;
    QTreeView* m_tree;
    Fill m_fill; ///< empty when it has been called
};
