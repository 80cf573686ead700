#include "logic/look/LogicTreeDelegate.h"

#include "logic/rows/logic_roles.h"
#include "model/colour_rules.h"
#include "model/step_kinds.h"

namespace {

bool isFlowRow(const QModelIndex& nameIndex)
{
    const QVariant baseType = nameIndex.data(logic_roles::BaseType);
    return baseType.isValid() && baseType.toInt() <= EndFlow;
}

} // namespace

LogicTreeDelegate::LogicTreeDelegate(QObject* parent) : RowHeightDelegate(parent) {}

void LogicTreeDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const
{
    const QModelIndex nameIndex = index.siblingAtColumn(logic_columns::Name);
    if (isFlowRow(nameIndex)) {
        RowHeightDelegate::paint(painter, option, index);
        return;
    }
    const bool disabled = nameIndex.data(Qt::CheckStateRole).toInt() == Qt::Unchecked;
    QStyleOptionViewItem coloured(option);
    coloured.palette.setColor(QPalette::Text, colour_rules::stepText(option.palette, disabled));
    RowHeightDelegate::paint(painter, coloured, index);
}

#include "moc_LogicTreeDelegate.cpp"
