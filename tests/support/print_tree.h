#pragma once

#include <QAbstractItemModel>
#include <QList>
#include <QString>
#include <QStringList>

/// A whole tree as lines of text, so that tests can compare it at once.
namespace test_support {

/// One line a row, two blanks of indentation a level, the chosen columns parted by " | ". A check
/// box stands first as "[x] ", "[ ] " or "[-] "; blanks at the end of a line are cut off.
inline QStringList printTree(const QAbstractItemModel& model, const QList<int>& columns = {0},
                             const QModelIndex& parent = QModelIndex(), int depth = 0)
{
    QStringList lines;
    for (int row = 0; row < model.rowCount(parent); ++row) {
        QStringList cells;
        for (int column : columns)
            cells.append(model.index(row, column, parent).data().toString());
        const QModelIndex first = model.index(row, 0, parent);
        QString box;
        const QVariant state = first.data(Qt::CheckStateRole);
        if (state.isValid())
            box = QStringLiteral("[%1] ").arg(QLatin1String(" -x").at(state.toInt()));
        QString line =
            QString(2 * depth, QLatin1Char(' ')) + box + cells.join(QLatin1String(" | "));
        while (line.endsWith(QLatin1Char(' ')))
            line.chop(1);
        lines.append(line);
        lines += printTree(model, columns, first, depth + 1);
    }
    return lines;
}

} // namespace test_support
