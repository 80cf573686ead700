#include "logic/look/BreakPointColumn.h"

#include "logic/look/BreakPointButton.h"
#include "logic/look/RowHeightDelegate.h"
#include "logic/rows/logic_roles.h"
#include "model/dialogs/view_models.h"
#include "model/step_kinds.h"

#include <QEvent>
#include <QHeaderView>
#include <QScrollBar>
#include <QStandardItemModel>
#include <QTableView>
#include <QTimer>
#include <QTreeView>

BreakPointColumn::BreakPointColumn(QTableView* table, QTreeView* tree)
    : m_table(table), m_tree(tree), m_placing(new QTimer(this))
{
    const int edge = RowHeightDelegate::rowHeight();
    table->setFixedWidth(edge);
    table->verticalHeader()->hide();
    table->verticalHeader()->setMinimumSectionSize(edge);
    table->verticalHeader()->setDefaultSectionSize(edge);
    table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table->horizontalHeader()->setMinimumSectionSize(edge);
    table->horizontalHeader()->setDefaultSectionSize(edge);
    table->horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    // Both headers are equally high, so that the first rows stand side by side.
    table->horizontalHeader()->setFixedHeight(edge);
    tree->header()->setFixedHeight(edge);
    // By items, the two views would align their last rows differently.
    table->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    tree->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    joinScrollBars();

    m_placing->setSingleShot(true);
    m_placing->setInterval(0);
    connect(m_placing, &QTimer::timeout, this, &BreakPointColumn::placeButtons);
    const auto place = [this] { m_placing->start(); };
    connect(table->verticalScrollBar(), &QScrollBar::valueChanged, m_placing, place);
    connect(tree, &QTreeView::expanded, m_placing, place);
    connect(tree, &QTreeView::collapsed, m_placing, place);
    table->viewport()->installEventFilter(this);
    tree->horizontalScrollBar()->installEventFilter(this);
}

void BreakPointColumn::show(QStandardItemModel* model, int rowCount)
{
    model->setColumnCount(1);
    model->setHorizontalHeaderLabels({QString()});
    if (m_table->model() != model) {
        m_buttons.clear();
        view_models::setModel(m_table, model);
    }
    setRowCount(rowCount);
    m_table->verticalScrollBar()->setValue(m_tree->verticalScrollBar()->value());
}

void BreakPointColumn::setRowCount(int rowCount)
{
    auto* model = qobject_cast<QStandardItemModel*>(m_table->model());
    if (!model)
        return;
    // All rows are alike: rows in the midst of the tree come and go at the table's end.
    model->setRowCount(rowCount);
    // The bar's range, too, must follow at once: the tree may be about to scroll to a new row.
    m_table->doItemsLayout();
    m_placing->start();
}

bool BreakPointColumn::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_table->viewport()) {
        if (event->type() == QEvent::Resize || event->type() == QEvent::Show)
            m_placing->start();
    } else if (event->type() == QEvent::Show || event->type() == QEvent::Hide) {
        matchHorizontalScrollBar();
    }
    return QObject::eventFilter(watched, event);
}

void BreakPointColumn::joinScrollBars()
{
    QScrollBar* ofTree = m_tree->verticalScrollBar();
    QScrollBar* ofTable = m_table->verticalScrollBar();
    connect(ofTree, &QScrollBar::valueChanged, ofTable, &QScrollBar::setValue);
    connect(ofTable, &QScrollBar::valueChanged, ofTree, [ofTree, ofTable](int value) {
        ofTree->setValue(value);
        // With branches collapsed the table has more rows than the tree; the tree's end holds.
        ofTable->setValue(ofTree->value());
    });
}

void BreakPointColumn::matchHorizontalScrollBar()
{
    // A bar under the tree alone would leave the table one row more to show.
    m_table->setHorizontalScrollBarPolicy(m_tree->horizontalScrollBar()->isVisible()
                                              ? Qt::ScrollBarAlwaysOn
                                              : Qt::ScrollBarAlwaysOff);
}

void BreakPointColumn::placeButtons()
{
    const QAbstractItemModel* model = m_table->model();
    if (!model || model->rowCount() == 0)
        return;
    const int first = m_table->rowAt(0);
    const int end = m_table->rowAt(m_table->viewport()->height() - 1);
    const int last = end < 0 ? model->rowCount() - 1 : end;

    QVector<QPersistentModelIndex> wanted;
    for (int row = qMax(0, first); first >= 0 && row <= last; ++row) {
        const QModelIndex step = m_tree->indexAt(QPoint(0, m_table->rowViewportPosition(row)));
        const QModelIndex name = step.siblingAtColumn(logic_columns::Name);
        if (step.isValid() && name.data(logic_roles::BaseType).toInt() > EndFlow)
            wanted.append(model->index(row, 0));
    }
    for (const QPersistentModelIndex& index : qAsConst(m_buttons)) {
        if (index.isValid() && !wanted.contains(index))
            m_table->setIndexWidget(index, nullptr);
    }
    for (const QPersistentModelIndex& index : qAsConst(wanted)) {
        if (!m_table->indexWidget(index))
            m_table->setIndexWidget(index, new BreakPointButton);
    }
    m_buttons = wanted;
}

#include "moc_BreakPointColumn.cpp"
