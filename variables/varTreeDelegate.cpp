#include "variables/varTreeDelegate.h"

#include "model/colour_rules.h"
#include "model/services/widget_bases.h"
#include "variables/tree_colours.h"
#include "variables/variable_rows.h"
#include "variables/variable_rules.h"

#include <QMouseEvent>
#include <QPainter>

using namespace variable_rows;

namespace {

constexpr int IconSize = 26;
constexpr int RowMargin = 4;

bool hasLengthButton(const QModelIndex& index)
{
    return index.column() == NameColumn && isVariable(index) &&
           variable_rules::carriesLength(textOf(index, TypeColumn));
}

void paintLengthButton(QPainter* painter, const QRect& cell, bool isEnabled)
{
    const QString path = isEnabled ? QStringLiteral(":/icon/功能/长度.png")
                                   : QStringLiteral(":/icon/功能/长度_禁用.png");
    StyleManager::scaledToolbarIcon(path, IconSize)
        .paint(painter, varTreeDelegate::lengthButtonRect(cell));
}

} // namespace

varTreeDelegate::varTreeDelegate(QObject* parent) : QItemDelegate(parent) {}

QRect varTreeDelegate::lengthButtonRect(const QRect& nameCell)
{
    // Rows are as high as a line of text, which the icon may be larger than.
    const int side =
        qMin(StyleManager::toolbarButtonIconSize(IconSize).height(), nameCell.height() - 1);
    return QRect(nameCell.right() - side, nameCell.top() + (nameCell.height() - side) / 2, side,
                 side);
}

void varTreeDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const
{
    QStyleOptionViewItem cell(option);
    tree_colours::applySelection(cell.palette);
    if (option.state & QStyle::State_Selected)
        painter->fillRect(option.rect, tree_colours::selection());
    if (hasLengthButton(index))
        cell.rect.setRight(lengthButtonRect(option.rect).left() - 1); // a long name ends before it
    QItemDelegate::paint(painter, cell, index);
    if (hasLengthButton(index))
        paintLengthButton(painter, option.rect, index.data(EditableRole).toBool());
    painter->save();
    painter->setPen(colour_rules::gridLine(option.palette));
    const int right = option.widget ? option.widget->width() : option.rect.right();
    painter->drawLine(0, option.rect.bottom(), right, option.rect.bottom());
    painter->drawLine(option.rect.topRight(), option.rect.bottomRight());
    painter->restore();
}

QSize varTreeDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    return {QItemDelegate::sizeHint(option, index).width(),
            option.fontMetrics.height() + RowMargin};
}

bool varTreeDelegate::editorEvent(QEvent* event, QAbstractItemModel* model,
                                  const QStyleOptionViewItem& option, const QModelIndex& index)
{
    if (event->type() == QEvent::MouseButtonPress && hasLengthButton(index)) {
        const auto* press = static_cast<QMouseEvent*>(event);
        if (press->button() == Qt::LeftButton &&
            lengthButtonRect(option.rect).contains(press->pos())) {
            emit lengthButtonClicked(index);
            return true;
        }
    }
    return QItemDelegate::editorEvent(event, model, option, index);
}

#include "moc_varTreeDelegate.cpp"
