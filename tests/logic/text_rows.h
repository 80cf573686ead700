#pragma once

#include "logic/rows/logic_roles.h"
#include "tests/logic/step_names.h"

#include <QHash>
#include <QStandardItemModel>
#include <QStringList>

/// Trees of rows written as text: a line a row, two blanks a level behind the first two characters,
/// which say whether the row is there before an act ("- "), after it ("+ ") or both.
namespace text_rows {

/// Every row has a uuid of its own.
inline QStandardItem* makeRow(const QString& name)
{
    static int made = 0;
    const step_names::Kind kind = step_names::kindOf(name);
    auto* row = new QStandardItem(name);
    row->setData(kind.baseType, logic_roles::BaseType);
    row->setData(kind.stepType, logic_roles::StepType);
    row->setData(QStringLiteral("row %1").arg(++made), logic_roles::BlockUuid);
    row->setDropEnabled(kind.takesChildren);
    return row;
}

/// Appends the lines that are not marked with @p without. Gives the rows whose lines end with
/// "<" and a letter, by that letter.
inline QHash<QChar, QStandardItem*> fill(QStandardItemModel& model, const QString& text,
                                         QChar without)
{
    QHash<QChar, QStandardItem*> marked;
    QVector<QStandardItem*> path{model.invisibleRootItem()};
    const QStringList lines = text.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString& line : lines) {
        if (line.at(0) == without)
            continue;
        const QString name = line.mid(2).section(QLatin1Char('<'), 0, 0).trimmed();
        path.resize((line.indexOf(name, 2) - 2) / 2 + 1);
        QStandardItem* row = makeRow(name);
        path.last()->appendRow(row);
        path.append(row);
        const QString marks = line.section(QLatin1Char('<'), 1);
        for (const QChar mark : marks)
            marked.insert(mark, row);
    }
    return marked;
}

} // namespace text_rows
