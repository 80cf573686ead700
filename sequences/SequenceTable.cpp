#include "sequences/SequenceTable.h"

#include "base/row_runs.h"
#include "model/SequenceInfo.h"
#include "model/mime_types.h"
#include "model/services/widget_bases.h"
#include "sequences/sameNameScanDelegate.h"

#include <QCheckBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QMimeData>
#include <QSet>
#include <QSignalBlocker>

#include <algorithm>

namespace {

constexpr int MainColumnWidth = 48;
constexpr int GridLine = 1;

QTableWidgetItem* makeItem(const std::string& text)
{
    auto* item = new QTableWidgetItem(QString::fromStdString(text));
    item->setToolTip(item->text());
    return item;
}

/// A cell without a text: no editor opens in it, but it can be the current one.
QTableWidgetItem* makeMainItem()
{
    auto* item = new QTableWidgetItem;
    item->setFlags(item->flags() & ~Qt::ItemIsEditable);
    return item;
}

QWidget* makeCentred(QWidget* child)
{
    auto* cell = new QWidget;
    auto* layout = new QHBoxLayout(cell);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(child, 0, Qt::AlignCenter);
    return cell;
}

} // namespace

SequenceTable::SequenceTable(QWidget* parent) : QTableWidget(0, ColumnCount, parent)
{
    auto* delegate = new sameNameScanDelegate(this);
    delegate->setSameNameMessage(tr("存在同名序列，请重新命名"));
    setItemDelegate(delegate);
    setDragDropMode(QAbstractItemView::DragOnly);
    setEditTriggers(QAbstractItemView::DoubleClicked);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    verticalHeader()->hide();
    // What resizeRowsToContents will find, so that rows don't jump.
    verticalHeader()->setDefaultSectionSize(sameNameScanDelegate::rowHeight() + GridLine);
    setUpColumns();
    installEventFilter(this);
}

void SequenceTable::setUpColumns()
{
    setHorizontalHeaderLabels({tr("序列名称(英文/数字)"), tr("主序列"), tr("注释")});
    QHeaderView* header = horizontalHeader();
    header->setSectionResizeMode(QHeaderView::Stretch);
    header->setSectionResizeMode(MainColumn, QHeaderView::Fixed);
    header->setHighlightSections(false);
    // In quarters of the width: a screen that is a dot finer than the usual keeps it.
    // A larger font gets what its title needs.
    header->resizeSection(MainColumn, std::max(MainColumnWidth * StyleManager::scale(4) / 4,
                                               header->sectionSizeHint(MainColumn)));
}

void SequenceTable::setCAppletName(const QString& appName)
{
    m_appName = appName;
}

int SequenceTable::appendSequence(const SequenceInfo& info)
{
    const QSignalBlocker blocker(this);
    const int row = rowCount();
    insertRow(row);
    QTableWidgetItem* name = makeItem(info.name);
    name->setData(Qt::UserRole, QString::fromStdString(info.id));
    setItem(row, NameColumn, name);
    setItem(row, MainColumn, makeMainItem());
    setItem(row, CommentColumn, makeItem(info.comment));
    auto* mainBox = new QCheckBox;
    mainBox->setChecked(info.isMain);
    setCellWidget(row, MainColumn, makeCentred(mainBox));
    return row;
}

void SequenceTable::makeCurrent(int row)
{
    // The scroll bar doesn't know of rows whose layout still waits.
    executeDelayedItemsLayout();
    setCurrentCell(row, NameColumn);
}

void SequenceTable::commitEditor()
{
    QWidget* editor = state() == EditingState ? indexWidget(currentIndex()) : nullptr;
    if (!editor)
        return;
    commitData(editor);
    closeEditor(editor, QAbstractItemDelegate::NoHint);
}

void SequenceTable::removeRowsAt(const QVector<int>& rows)
{
    const QSignalBlocker blocker(this);
    row_runs::removeFromTheLast(
        rows, [this](int first, int count) { model()->removeRows(first, count); });
}

void SequenceTable::removeAllRows()
{
    const QSignalBlocker blocker(this);
    setRowCount(0);
}

QString SequenceTable::sequenceIdAt(int row) const
{
    const QTableWidgetItem* name = item(row, NameColumn);
    return name ? name->data(Qt::UserRole).toString() : QString();
}

QStringList SequenceTable::sequenceIdsAt(const QVector<int>& rows) const
{
    QStringList ids;
    for (int row : rows)
        ids.append(sequenceIdAt(row));
    return ids;
}

QCheckBox* SequenceTable::mainBoxAt(int row) const
{
    return cellWidget(row, MainColumn)->findChild<QCheckBox*>();
}

QStringList SequenceTable::names() const
{
    QStringList names;
    for (int row = 0; row < rowCount(); ++row)
        names.append(item(row, NameColumn)->text());
    return names;
}

QVector<int> SequenceTable::selectedRows() const
{
    QVector<int> rows;
    for (const QModelIndex& index : selectedIndexes())
        rows.append(index.row());
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

void SequenceTable::rowsInserted(const QModelIndex&, int, int)
{
    // The base class would move the check boxes of all rows for each new one; a layout that waits
    // moves them once for all.
    scheduleDelayedItemsLayout();
}

bool SequenceTable::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == this && event->type() == QEvent::LayoutRequest)
        resizeRowsToContents();
    return QTableWidget::eventFilter(watched, event);
}

QMimeData* SequenceTable::mimeData(const QList<QTableWidgetItem*> items) const
{
    const QSet<QTableWidgetItem*> dragged(items.begin(), items.end());
    QVector<int> rows;
    // One walk over the rows: an item has to be searched for its row.
    for (int row = 0; row < rowCount(); ++row) {
        for (int column = 0; column < ColumnCount; ++column) {
            if (!dragged.contains(item(row, column)))
                continue;
            rows.append(row);
            break;
        }
    }
    auto* data = new QMimeData;
    mime_types::markAsItems(*data);
    data->setData(mime_types::SequenceDrag, {});
    data->setData(mime_types::SequenceId, sequenceIdsAt(rows).join(QLatin1Char(';')).toUtf8());
    data->setData(mime_types::AppletName, m_appName.toUtf8());
    return data;
}

#include "moc_SequenceTable.cpp"
