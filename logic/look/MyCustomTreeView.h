#pragma once

#include <QPersistentModelIndex>
#include <QTreeView>

class QLabel;
class logicTreeViewStyle;

/// The tree of a sequence on the edit tab: what keys, check boxes and drags mean there. One row is
/// dragged at a time. A place that refuses a drag says why, beside the pointer.
class MyCustomTreeView : public QTreeView
{
    Q_OBJECT
public:
    explicit MyCustomTreeView(QWidget* parent = nullptr);
    ~MyCustomTreeView() override;

signals:
    /// The Delete key, with at most one row selected.
    void sigRemoveItem();
    /// A click of the mouse changed a check box.
    void sigCheckStateChanged();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void startDrag(Qt::DropActions supportedActions) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void followArrowKey();
    QString refusalAt(const QDropEvent& event) const;
    void showRefusal(const QString& reason, const QPoint& pointer);
    void endDrag();

    logicTreeViewStyle* m_style;
    QLabel* m_refusal; ///< why the place under a drag refuses it; hidden if it doesn't
    QPersistentModelIndex m_pressed;
    QVariant m_pressedState;
};
