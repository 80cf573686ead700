#pragma once

#include <QPersistentModelIndex>
#include <QTreeView>

class logicTreeViewStyle;

/// The tree of a sequence on the edit tab: what keys and the check boxes mean there.
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

private:
    void followArrowKey();

    logicTreeViewStyle* m_style;
    QPersistentModelIndex m_pressed;
    QVariant m_pressedState;
};
