#include "logic/rows/step_rows.h"

#include "logic/rows/RowItem.h"
#include "logic/rows/logic_roles.h"
#include "model/IProcessBlock.h"
#include "model/services/processedit.h"
#include "model/services/widget_bases.h"
#include "model/step_icons.h"

#include <QCoreApplication>
#include <QFont>
#include <QHash>
#include <QStandardItem>

namespace step_rows {
namespace {

constexpr int IconSize = 26;

constexpr Qt::ItemFlags CommonFlags =
    Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsEditable | Qt::ItemIsDragEnabled |
    Qt::ItemIsDropEnabled | Qt::ItemIsUserCheckable | Qt::ItemIsAutoTristate;

QString translated(const char* text)
{
    return QCoreApplication::translate("LogicView", text);
}

int columnCount(Purpose purpose)
{
    return purpose == Purpose::Edit ? logic_columns::EditCount : logic_columns::RunCount;
}

Qt::ItemFlags stepFlags(const IProcessBlock& block)
{
    Qt::ItemFlags flags = CommonFlags;
    const bool closer = block.baseType() == BasicStep && step_kinds::isCloser(block.stepType());
    if (closer)
        flags &= ~Qt::ItemIsDragEnabled;
    if (closer || !block.property.hasChildren) {
        flags &= ~Qt::ItemIsDropEnabled;
        // Spares the view an expansion record, a persistent index, for every leaf.
        if (block.children.empty())
            flags |= Qt::ItemNeverHasChildren;
    }
    return flags;
}

QString firstLine(const QString& text)
{
    const int end = text.indexOf(QLatin1Char('\n'));
    return end < 0 ? text : text.left(end) + QLatin1String("...");
}

const char* flowName(logicBlockType flow)
{
    switch (flow) {
    case InitialFlow:
        return QT_TRANSLATE_NOOP("LogicView", "初始流程");
    case EndFlow:
        return QT_TRANSLATE_NOOP("LogicView", "结束流程");
    default:
        return QT_TRANSLATE_NOOP("LogicView", "主流程");
    }
}

} // namespace

QStringList headers(Purpose purpose)
{
    QStringList texts{translated("步骤名称"), translated("描述"), translated("设置")};
    if (purpose == Purpose::Run)
        texts.append(translated("状态"));
    return texts;
}

QString translatedName(const std::string& name)
{
    return name.empty() ? QString() : translated(name.c_str());
}

QIcon icon(int baseType, int stepType)
{
    static QHash<QPair<int, int>, QIcon> icons;
    const QPair<int, int> kind(baseType, stepType);
    auto found = icons.constFind(kind);
    if (found == icons.constEnd())
        found = icons.insert(
            kind, StyleManager::scaledToolbarIcon(getStepIconName(baseType, stepType), IconSize));
    return *found;
}

QList<QStandardItem*> flowRow(logicBlockType flow, Purpose purpose)
{
    QFont bold;
    bold.setBold(true);
    const Qt::ItemFlags flags = CommonFlags & ~Qt::ItemIsDragEnabled;
    QList<QStandardItem*> row{
        new RowItem(flow, translated(flowName(flow)), flags, purpose == Purpose::Edit)};
    row.first()->setFont(bold);
    while (row.size() < columnCount(purpose)) {
        row.append(new QStandardItem);
        row.last()->setFlags(flags);
    }
    return row;
}

QList<QStandardItem*> stepRow(const IProcessBlock& block, Purpose purpose)
{
    const Qt::ItemFlags flags = stepFlags(block);
    QList<QStandardItem*> row;
    row.reserve(columnCount(purpose));
    row.append(new RowItem(block, flags, purpose == Purpose::Edit));
    while (row.size() < columnCount(purpose))
        row.append(nullptr);
    if (purpose == Purpose::Edit)
        return row; // the model tells what the other cells show
    const auto put = [&](int column, const QString& text, const QString& tip) {
        if (text.isEmpty())
            return;
        row[column] = new QStandardItem(text);
        row[column]->setFlags(flags);
        if (!tip.isEmpty())
            row[column]->setData(tip, Qt::ToolTipRole);
    };
    const QString description = QString::fromStdString(block.description());
    put(logic_columns::Description, firstLine(description), description);
    put(logic_columns::Setting, QString::fromStdString(block.settingText()), QString());
    return row;
}

void followProperty(QStandardItem* nameItem, const IProcessBlock& block)
{
    const Qt::ItemFlags flags = stepFlags(block);
    if (nameItem->flags() != flags)
        nameItem->setFlags(flags);
}

QString cellText(const IProcessBlock& block, int column, bool stale)
{
    if (column == logic_columns::Setting)
        return QString::fromStdString(block.settingText());
    const QString text = firstLine(QString::fromStdString(block.description()));
    return stale ? text + translated(" [需重新编译]") : text;
}

QString uuidOf(const QStandardItem* nameItem)
{
    const RowItem* row = RowItem::from(nameItem);
    return row ? row->uuid() : nameItem->data(logic_roles::BlockUuid).toString();
}

bool isFlow(const QStandardItem* nameItem)
{
    return nameItem->data(logic_roles::BaseType).toInt() <= EndFlow;
}

bool takesChildren(const QString& appName, const QStandardItem* nameItem)
{
    if (isFlow(nameItem))
        return true;
    const auto block = sdk_ui_interface::processedit::getProcess(appName, uuidOf(nameItem));
    return block && block->property.hasChildren;
}

QStandardItem* cell(const QStandardItem* nameItem, int column)
{
    if (const QStandardItem* parent = nameItem->parent())
        return parent->child(nameItem->row(), column);
    return nameItem->model() ? nameItem->model()->item(nameItem->row(), column) : nullptr;
}

} // namespace step_rows
