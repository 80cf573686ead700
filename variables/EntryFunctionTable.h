#pragma once

#include "model/DrelFunction.h"

#include <QList>
#include <QStringList>

class QTableWidget;

/// Fills a table with the functions that a value may call, a row each. GUI thread only.
class EntryFunctionTable
{
public:
    /// Sets up the columns. The table belongs to the caller and outlives this.
    explicit EntryFunctionTable(QTableWidget& table);

    static QStringList columnTitles();

    /// Shows these functions in place of the earlier ones. The last one whose name @p value
    /// contains becomes the current row, and its place in the list is returned; -1 without one.
    int show(const QList<_DrelFunction>& functions, const QString& value);
    /// Hides the rows whose text in @p column doesn't contain @p text in either case; an empty
    /// @p text shows all.
    void filter(int column, const QString& text);

    /// The place of a row's function in the list that is shown; -1 if the row can't be picked.
    int pickedFunction(int row) const;
    /// Makes the next row that is shown and can be picked the current one, upwards with a negative
    /// @p step. It stays where there is none.
    void moveCurrent(int step);

private:
    void setRow(int row, const _DrelFunction& function, int place);
    bool canBecomeCurrent(int row) const;

    QTableWidget& m_table;
};
