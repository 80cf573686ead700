#include "sequences/wgtSequenceTable.h"

#include "model/services/processedit.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QSignalBlocker>
#include <QTableWidget>

namespace processedit = sdk_ui_interface::processedit;

namespace {

enum Column { NameColumn, MainColumn, CommentColumn, ColumnCount };
constexpr int MainColumnWidth = 60;

QTableWidgetItem* makeItem(const std::string& text)
{
    auto* item = new QTableWidgetItem(QString::fromStdString(text));
    item->setToolTip(item->text());
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

wgtSequenceTable::wgtSequenceTable(QWidget* parent)
    : QWidget(parent), m_table(new QTableWidget(0, ColumnCount))
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_table);
    m_table->setObjectName(QStringLiteral("tableWidget"));
    m_table->setHorizontalHeaderLabels({tr("序列名称(英文/数字)"), tr("主序列"), tr("注释")});
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    m_table->horizontalHeader()->setSectionResizeMode(MainColumn, QHeaderView::Fixed);
    m_table->setColumnWidth(MainColumn, MainColumnWidth);
    m_table->verticalHeader()->hide();
    m_table->verticalHeader()->setDefaultSectionSize(qMax(30, 2 * fontMetrics().height()));
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    connect(m_table, &QTableWidget::currentItemChanged, this,
            &wgtSequenceTable::onCurrentItemChangedSlot);
}

void wgtSequenceTable::setCAppletName(const QString& appName)
{
    m_appName = appName;
}

void wgtSequenceTable::clearRows()
{
    const QSignalBlocker blocker(m_table);
    m_table->setRowCount(0);
}

void wgtSequenceTable::addSequenceRow(const SequenceInfo& info, bool select)
{
    const QSignalBlocker blocker(m_table);
    const int row = m_table->rowCount();
    m_table->insertRow(row);
    QTableWidgetItem* name = makeItem(info.name);
    name->setData(Qt::UserRole, QString::fromStdString(info.id));
    m_table->setItem(row, NameColumn, name);
    m_table->setItem(row, CommentColumn, makeItem(info.comment));
    auto* mainBox = new QCheckBox;
    mainBox->setChecked(info.isMain);
    connect(mainBox, &QCheckBox::stateChanged, this,
            &wgtSequenceTable::onMainSequenceCheckBoxChangedSlot);
    m_table->setCellWidget(row, MainColumn, makeCentred(mainBox));
    if (select)
        m_table->setCurrentCell(row, NameColumn);
}

void wgtSequenceTable::selectSequence(const QString& sequenceId)
{
    for (int row = 0; row < m_table->rowCount(); ++row) {
        if (sequenceIdAt(row) != sequenceId)
            continue;
        if (row != m_table->currentRow())
            m_table->setCurrentCell(row, NameColumn);
        return;
    }
}

QString wgtSequenceTable::currentSequenceId() const
{
    return sequenceIdAt(m_table->currentRow());
}

QString wgtSequenceTable::sequenceIdAt(int row) const
{
    const QTableWidgetItem* item = m_table->item(row, NameColumn);
    return item ? item->data(Qt::UserRole).toString() : QString();
}

QCheckBox* wgtSequenceTable::mainBoxAt(int row) const
{
    return m_table->cellWidget(row, MainColumn)->findChild<QCheckBox*>();
}

void wgtSequenceTable::onCurrentItemChangedSlot(QTableWidgetItem* current,
                                                QTableWidgetItem* previous)
{
    // A walk along the cells of one row changes nothing.
    if (!current || (previous && previous->row() == current->row()))
        return;
    emit currentSequenceChanged(sequenceIdAt(current->row()));
}

void wgtSequenceTable::onMainSequenceCheckBoxChangedSlot(int state)
{
    for (int row = 0; row < m_table->rowCount(); ++row) {
        QCheckBox* box = mainBoxAt(row);
        const bool isSender = box == sender();
        if (!isSender && state != Qt::Checked)
            continue;
        const bool isMain = isSender && state == Qt::Checked;
        const QSignalBlocker blocker(box);
        box->setChecked(isMain);
        SequenceInfo info = processedit::getSequence(m_appName, sequenceIdAt(row));
        if (info.isMain == isMain)
            continue;
        info.isMain = isMain;
        processedit::updateSequence(m_appName, info);
    }
    emit sigModified();
}
