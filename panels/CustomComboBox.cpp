#include "panels/CustomComboBox.h"

#include "model/services/widget_bases.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QStandardItemModel>
#include <QStyleFactory>
#include <QTreeView>
#include <QWheelEvent>

#include <utility>

namespace {

const QStandardItem* findRow(const QStandardItem& parent, const QString& value)
{
    for (int row = 0; row < parent.rowCount(); ++row) {
        const QStandardItem* item = parent.child(row);
        if (item->data(CustomComboBox::IdRole).toString() == value)
            return item;
        if (const QStandardItem* below = findRow(*item, value))
            return below;
    }
    return nullptr;
}

} // namespace

CustomComboBox::CustomComboBox(QWidget* parent)
    : QComboBox(parent), m_items(new QStandardItemModel(this)), m_tree(new QTreeView)
{
    m_tree->setHeaderHidden(true);
    m_tree->setItemsExpandable(false);
    m_tree->setRootIsDecorated(false);
    m_tree->setUniformRowHeights(true);
    if (QStyle* style = QStyleFactory::create(QStringLiteral("windows"))) {
        style->setParent(m_tree);
        m_tree->setStyle(style);
    }
    m_tree->setStyleSheet(QStringLiteral("QTreeView::branch { image: none; border-image: none; }"));
    setModel(m_items);
    setView(m_tree);
}

void CustomComboBox::setSource(Fill fill, QStandardItem* current)
{
    const QSignalBlocker blocker(this);
    m_items->clear();
    m_fill = std::move(fill);
    if (current)
        m_items->appendRow(current);
    setCurrentIndex(current ? 0 : -1);
}

void CustomComboBox::fill()
{
    if (!m_fill)
        return;
    const QString value = currentData(IdRole).toString();
    const bool hadCurrent = currentIndex() >= 0;
    const QSignalBlocker blocker(this); // the same row is current afterwards
    m_items->clear();
    std::exchange(m_fill, nullptr)(*m_items);
    m_tree->expandAll();
    if (hadCurrent)
        setCurrentByData(value);
    else
        setCurrentIndex(-1);
}

void CustomComboBox::setCurrentByData(const QString& value)
{
    const QStandardItem* item = findRow(*m_items->invisibleRootItem(), value);
    if (item)
        makeCurrent(item->index());
    else
        setCurrentIndex(-1);
}

/// A combo box chooses among the rows of its root alone.
void CustomComboBox::makeCurrent(const QModelIndex& row)
{
    if (row.parent().isValid())
        setRootModelIndex(row.parent());
    setCurrentIndex(row.row());
    setRootModelIndex(QModelIndex());
    m_tree->setCurrentIndex(row);
}

void CustomComboBox::ask(const QString& request)
{
    setEditable(true);
    lineEdit()->clear();
    lineEdit()->setPlaceholderText(request);
    lineEdit()->setReadOnly(true);
    lineEdit()->installEventFilter(this);
}

/// Nothing can be typed, so a click anywhere opens the list.
bool CustomComboBox::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::MouseButtonRelease && watched == lineEdit())
        showPopup();
    return QComboBox::eventFilter(watched, event);
}

void CustomComboBox::showPopup()
{
    fill();
    constexpr int room = 260; // nested names in a narrow panel
    m_tree->setMinimumWidth(qMax(width(), StyleManager::scale(room)));
    QComboBox::showPopup();
}

void CustomComboBox::keyPressEvent(QKeyEvent* event)
{
    const bool isPlain = event->modifiers() == Qt::NoModifier;
    if (isPlain && event->key() == Qt::Key_Up) {
        step(-1);
    } else if (isPlain && event->key() == Qt::Key_Down) {
        step(1);
    } else {
        fill();
        QComboBox::keyPressEvent(event);
    }
}

void CustomComboBox::wheelEvent(QWheelEvent* event)
{
    if (event->angleDelta().y() != 0)
        step(event->angleDelta().y() > 0 ? -1 : 1);
    event->accept();
}

/// To the next row, as they stand in the open list, that can be chosen.
void CustomComboBox::step(int rows)
{
    fill();
    const auto next = [&](const QModelIndex& from) {
        if (!from.isValid())
            return m_items->index(0, 0);
        return rows > 0 ? m_tree->indexBelow(from) : m_tree->indexAbove(from);
    };
    const bool isNew = currentIndex() < 0;
    QModelIndex row = isNew ? next(QModelIndex()) : next(m_tree->currentIndex());
    while (row.isValid() && !(row.flags() & Qt::ItemIsEnabled))
        row = next(row);
    if (row.isValid())
        makeCurrent(row);
}

#include "moc_CustomComboBox.cpp"
