#include "logic/look/MyCustomTreeView.h"

#include "logic/look/LogicTreeDelegate.h"
#include "logic/look/logicTreeViewStyle.h"
#include "logic/look/tree_look.h"
#include "logic/rows/CustonStandModel.h"
#include "logic/rows/logic_roles.h"

#include <QDropEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QMimeData>
#include <QMouseEvent>
#include <QToolTip>

namespace {

/// A tree that moves its own rows takes no other drags: while one lives, it does.
class TakesAllDrags
{
public:
    explicit TakesAllDrags(QAbstractItemView& view) : m_view(view), m_mode(view.dragDropMode())
    {
        m_view.setDragDropMode(QAbstractItemView::DragDrop);
    }
    ~TakesAllDrags() { m_view.setDragDropMode(m_mode); }
    TakesAllDrags(const TakesAllDrags&) = delete;
    TakesAllDrags& operator=(const TakesAllDrags&) = delete;

private:
    QAbstractItemView& m_view;
    const QAbstractItemView::DragDropMode m_mode;
};

QLabel* newRefusalLabel(QWidget* parent)
{
    auto* label = new QLabel(parent);
    label->setObjectName(QStringLiteral("dropRefusalLabel"));
    label->setTextFormat(Qt::PlainText);
    label->setAttribute(Qt::WA_TransparentForMouseEvents);
    label->setPalette(QToolTip::palette());
    label->setBackgroundRole(QPalette::ToolTipBase);
    label->setForegroundRole(QPalette::ToolTipText);
    label->setAutoFillBackground(true);
    label->setFrameShape(QFrame::Box);
    label->setMargin(3);
    label->hide();
    return label;
}

} // namespace

MyCustomTreeView::MyCustomTreeView(QWidget* parent)
    : QTreeView(parent), m_style(new logicTreeViewStyle), m_refusal(newRefusalLabel(viewport()))
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

void MyCustomTreeView::startDrag(Qt::DropActions)
{
    const QModelIndex row = currentIndex().siblingAtColumn(logic_columns::Name);
    if (!(row.flags() & Qt::ItemIsDragEnabled))
        return;
    selectionModel()->select(row, QItemSelectionModel::Select | QItemSelectionModel::Clear |
                                      QItemSelectionModel::Rows);
    // The usual way would remove the selected rows after a move, which the model has done itself.
    tree_look::drag(*this, row, model()->mimeData({row}), Qt::MoveAction);
    endDrag();
}

void MyCustomTreeView::dragEnterEvent(QDragEnterEvent* event)
{
    m_style->setDragging(true);
    // The first place may refuse, and a later one not.
    setState(DraggingState);
    event->accept();
}

void MyCustomTreeView::dragMoveEvent(QDragMoveEvent* event)
{
    m_style->setDragging(true);
    event->setDropAction(Qt::MoveAction);
    const TakesAllDrags all(*this);
    QTreeView::dragMoveEvent(event);
    showRefusal(event->isAccepted() ? QString() : refusalAt(*event), event->pos());
}

void MyCustomTreeView::dragLeaveEvent(QDragLeaveEvent* event)
{
    endDrag();
    QTreeView::dragLeaveEvent(event);
}

void MyCustomTreeView::dropEvent(QDropEvent* event)
{
    endDrag();
    const TakesAllDrags all(*this);
    QTreeView::dropEvent(event);
}

void MyCustomTreeView::endDrag()
{
    m_style->setDragging(false);
    showRefusal(QString(), QPoint());
}

/// Asks for the place that the view has just found, and was refused.
QString MyCustomTreeView::refusalAt(const QDropEvent& event) const
{
    const auto* rows = qobject_cast<const CustonStandModel*>(model());
    if (!rows)
        return QString();
    const QModelIndex under = indexAt(event.pos());
    const auto refusal = [&](int row, const QModelIndex& parent) {
        return rows->dropRefusal(event.mimeData(), row, parent);
    };
    switch (dropIndicatorPosition()) {
    case AboveItem:
        return refusal(under.row(), under.parent());
    case BelowItem:
        return refusal(under.row() + 1, under.parent());
    case OnItem:
        return refusal(-1, under);
    case OnViewport:
        return refusal(-1, QModelIndex());
    }
    return QString();
}

void MyCustomTreeView::showRefusal(const QString& reason, const QPoint& pointer)
{
    if (m_style->isRefused() != !reason.isEmpty()) {
        m_style->setRefused(!reason.isEmpty());
        viewport()->update();
    }
    if (reason.isEmpty()) {
        m_refusal->hide();
        return;
    }
    const QPoint besidePointer(18, 44); // below the picture of the row
    m_refusal->setText(reason);
    m_refusal->adjustSize();
    const QPoint last = viewport()->rect().bottomRight() - m_refusal->rect().bottomRight();
    const QPoint place = pointer + besidePointer;
    m_refusal->move(qMax(0, qMin(place.x(), last.x())),
                    place.y() <= last.y() ? place.y() : pointer.y() - m_refusal->height());
    m_refusal->show();
}

#include "moc_MyCustomTreeView.cpp"
