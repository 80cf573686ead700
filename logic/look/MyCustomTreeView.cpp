#include "logic/look/MyCustomTreeView.h"

#include "logic/look/LogicTreeDelegate.h"
#include "logic/look/logicTreeViewStyle.h"
#include "logic/rows/logic_roles.h"

#include <QKeyEvent>
#include <QMouseEvent>

MyCustomTreeView::MyCustomTreeView(QWidget* parent)
    : QTreeView(parent), m_style(new logicTreeViewStyle)
{
    m_style->setParent(this);
    setStyle(m_style);
    setItemDelegate(new LogicTreeDelegate(this));
}

MyCustomTreeView::~MyCustomTreeView()
{
    // The base classes' destructors still ask for a style, and this one goes before they run.
    setStyle(nullptr);
}

void MyCustomTreeView::mousePressEvent(QMouseEvent* event)
{
    m_pressed = indexAt(event->pos());
    m_pressedState = m_pressed.data(Qt::CheckStateRole);
    QTreeView::mousePressEvent(event);
}

void MyCustomTreeView::mouseReleaseEvent(QMouseEvent* event)
{
    QTreeView::mouseReleaseEvent(event);
    const QModelIndex released = indexAt(event->pos());
    if (released.isValid() && released == m_pressed &&
        released.data(Qt::CheckStateRole) != m_pressedState)
        emit sigCheckStateChanged();
}

void MyCustomTreeView::keyPressEvent(QKeyEvent* event)
{
    // Holds for that one modifier value alone; plain Ctrl+A selects as in any tree.
    if (int(event->modifiers()) == int(Qt::Key_Control) && event->key() == Qt::Key_A) {
        event->ignore();
        return;
    }
    QTreeView::keyPressEvent(event);
}

void MyCustomTreeView::keyReleaseEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Up || event->key() == Qt::Key_Down)
        followArrowKey();
    else if (event->key() == Qt::Key_Delete && selectedIndexes().size() <= logic_columns::EditCount)
        emit sigRemoveItem();
    QTreeView::keyReleaseEvent(event);
}

void MyCustomTreeView::followArrowKey()
{
    if (!selectionModel())
        return;
    if (selectedIndexes().size() > logic_columns::EditCount)
        selectionModel()->select(currentIndex(), QItemSelectionModel::Select |
                                                     QItemSelectionModel::Clear |
                                                     QItemSelectionModel::Rows);
    const QModelIndexList selected = selectedIndexes();
    const QModelIndex index = selected.isEmpty() ? currentIndex() : selected.first();
    if (index.isValid())
        emit clicked(index);
}

#include "moc_MyCustomTreeView.cpp"
