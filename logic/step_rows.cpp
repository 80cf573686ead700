#include "logic/step_rows.h"

#include "logic/logic_roles.h"
#include "model/IProcessBlock.h"
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

QString staleSuffix()
{
    return translated(" [需重新编译]");
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
    QList<QStandardItem*> row;
    for (int column = 0; column < columnCount(purpose); ++column) {
        auto* item = new QStandardItem;
        item->setFlags(CommonFlags & ~Qt::ItemIsDragEnabled);
        row.append(item);
    }
    QStandardItem* name = row.first();
    name->setText(translated(flowName(flow)));
    name->setFont(bold);
    name->setData(int(flow), logic_roles::BaseType);
    name->setData(QString::number(flow), logic_roles::BlockUuid);
    if (purpose == Purpose::Edit)
        name->setCheckState(Qt::Checked);
    return row;
}

QList<QStandardItem*> stepRow(const IProcessBlock& block, Purpose purpose)
{
    // All cells hold these; clones share the memory until a cell gets a value of its own.
    QStandardItem common;
    common.setFlags(stepFlags(block));
    common.setData(int(block.baseType()), logic_roles::BaseType);
    common.setData(block.stepType(), logic_roles::StepType);
    common.setData(QString::fromStdString(block.uuid), logic_roles::BlockUuid);

    QList<QStandardItem*> row;
    row.reserve(columnCount(purpose));
    for (int column = 0; column < columnCount(purpose); ++column)
        row.append(common.clone());

    QStandardItem* name = row[logic_columns::Name];
    name->setData(translatedName(block.name), Qt::DisplayRole);
    const QIcon stepIcon = icon(block.baseType(), block.stepType());
    if (!stepIcon.isNull())
        name->setData(stepIcon, Qt::DecorationRole);
    if (purpose == Purpose::Edit)
        name->setData(block.enableState, Qt::CheckStateRole);

    const QString description = QString::fromStdString(block.description());
    if (!description.isEmpty()) {
        row[logic_columns::Description]->setData(firstLine(description), Qt::DisplayRole);
        row[logic_columns::Description]->setData(description, Qt::ToolTipRole);
    }
    const QString setting = QString::fromStdString(block.settingText());
    if (!setting.isEmpty())
        row[logic_columns::Setting]->setData(setting, Qt::DisplayRole);
    return row;
}

void refreshTexts(QStandardItem* nameItem, const IProcessBlock& block, bool stale)
{
    nameItem->setText(translatedName(block.name));
    if (QStandardItem* item = cell(nameItem, logic_columns::Description)) {
        const QString description = QString::fromStdString(block.description());
        item->setText(firstLine(description) + (stale ? staleSuffix() : QString()));
        item->setToolTip(description);
    }
    if (QStandardItem* item = cell(nameItem, logic_columns::Setting))
        item->setText(QString::fromStdString(block.settingText()));
}

void setStaleMark(QStandardItem* descriptionItem, bool stale)
{
    const QString suffix = staleSuffix();
    const QString text = descriptionItem->text();
    if (text.endsWith(suffix) == stale)
        return;
    descriptionItem->setText(stale ? text + suffix : text.left(text.size() - suffix.size()));
}

QString uuidOf(const QStandardItem* nameItem)
{
    return nameItem->data(logic_roles::BlockUuid).toString();
}

bool isFlow(const QStandardItem* nameItem)
{
    return nameItem->data(logic_roles::BaseType).toInt() <= EndFlow;
}

QStandardItem* cell(const QStandardItem* nameItem, int column)
{
    if (const QStandardItem* parent = nameItem->parent())
        return parent->child(nameItem->row(), column);
    return nameItem->model() ? nameItem->model()->item(nameItem->row(), column) : nullptr;
}

} // namespace step_rows
