#include "variables/EntryFunctionTable.h"

#include "model/services/widget_bases.h"
#include "variables/entry_functions.h"

#include <QCoreApplication>
#include <QHeaderView>
#include <QTableWidget>

#include <algorithm>
#include <iterator>

namespace {

constexpr int widths[] = {100, 100, 200, 300}; // the last column stretches

/// In quarters of the width: a screen that is a dot finer than the usual keeps it.
int screenWidth(int width)
{
    return width * StyleManager::scale(4) / 4;
}

QTableWidgetItem* makeItem(const QString& text, bool canBePicked)
{
    auto* item = new QTableWidgetItem(text);
    Qt::ItemFlags flags = item->flags() & ~Qt::ItemIsEditable;
    if (!canBePicked)
        flags &= ~(Qt::ItemIsSelectable | Qt::ItemIsEnabled);
    item->setFlags(flags);
    return item;
}

} // namespace

EntryFunctionTable::EntryFunctionTable(QTableWidget& table) : m_table(table)
{
    m_table.setColumnCount(entry_functions::ColumnCount);
    m_table.setHorizontalHeaderLabels(columnTitles());
    QHeaderView* header = m_table.horizontalHeader();
    header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    for (int column = 0; column < int(std::size(widths)); ++column)
        header->resizeSection(
            column, std::max(screenWidth(widths[column]), header->sectionSizeHint(column)));
}

QStringList EntryFunctionTable::columnTitles()
{
    QStringList titles;
    for (const char* title : {"返回值", "函数调用前缀", "函数名", "参数", "描述"})
        titles.append(QCoreApplication::translate("wgtEntryValue", title));
    return titles;
}

int EntryFunctionTable::show(const QList<_DrelFunction>& functions, const QString& value)
{
    m_table.clearContents();
    m_table.setRowCount(0);
    QVector<int> places;
    for (int place = 0; place < functions.size(); ++place) {
        if (entry_functions::isOffered(functions[place]))
            places.append(place);
    }
    // All rows at once: each insertion would have the view lay out the ones before it again.
    m_table.setRowCount(places.size());
    int current = -1;
    for (int row = 0; row < places.size(); ++row) {
        const _DrelFunction& function = functions[places[row]];
        setRow(row, function, places[row]);
        const QString name = entry_functions::name(function);
        if (!name.isEmpty() && value.contains(name))
            current = row;
    }
    if (current < 0)
        return -1;
    m_table.setCurrentCell(current, entry_functions::NameColumn);
    return places[current];
}

void EntryFunctionTable::setRow(int row, const _DrelFunction& function, int place)
{
    const entry_functions::Row content = entry_functions::row(function);
    for (int column = 0; column < entry_functions::ColumnCount; ++column)
        m_table.setItem(row, column, makeItem(content.texts[column], content.canBePicked));
    m_table.item(row, 0)->setData(Qt::UserRole, place);
    m_table.item(row, entry_functions::ParametersColumn)->setToolTip(content.parametersTip);
    m_table.item(row, entry_functions::DescriptionColumn)
        ->setToolTip(content.texts[entry_functions::DescriptionColumn]);
}

void EntryFunctionTable::filter(int column, const QString& text)
{
    for (int row = 0; row < m_table.rowCount(); ++row) {
        const bool isShown = m_table.item(row, column)->text().contains(text, Qt::CaseInsensitive);
        if (m_table.isRowHidden(row) == isShown)
            m_table.setRowHidden(row, !isShown);
    }
}

int EntryFunctionTable::pickedFunction(int row) const
{
    const QTableWidgetItem* first = m_table.item(row, 0);
    return first && first->flags().testFlag(Qt::ItemIsEnabled) ? first->data(Qt::UserRole).toInt()
                                                               : -1;
}

bool EntryFunctionTable::canBecomeCurrent(int row) const
{
    return !m_table.isRowHidden(row) && pickedFunction(row) >= 0;
}

void EntryFunctionTable::moveCurrent(int step)
{
    const int direction = step < 0 ? -1 : 1;
    int row = m_table.currentRow() + direction;
    while (row >= 0 && row < m_table.rowCount() && !canBecomeCurrent(row))
        row += direction;
    if (row >= 0 && row < m_table.rowCount())
        m_table.setCurrentCell(row, entry_functions::NameColumn);
}
