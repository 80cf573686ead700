#include "logic/palette/StepTree.h"

#include "logic/look/tree_look.h"
#include "logic/palette/palette_choice.h"
#include "logic/rows/logic_roles.h"
#include "logic/rows/step_mime.h"
#include "logic/rows/step_rows.h"
#include "model/IProcessBlock.h"
#include "model/applet_name.h"
#include "model/services/process_edit.h"
#include "model/services/processedit.h"

#include <QMimeData>

using namespace sdk_ui_interface;

namespace {

bool isQuickStepFolder(const QTreeWidgetItem* item)
{
    return item && item->data(0, logic_roles::BaseType).toInt() == BasicStep &&
           item->data(0, logic_roles::StepType).toInt() == step_type::QuickStepFolder;
}

} // namespace

StepTree::StepTree(QWidget* parent) : QTreeWidget(parent)
{
    setDragDropMode(QAbstractItemView::DragOnly);
}

void StepTree::startDrag(Qt::DropActions)
{
    QTreeWidgetItem* item = currentItem();
    if (item && item->flags().testFlag(Qt::ItemIsDragEnabled))
        tree_look::drag(*this, currentIndex(), mimeData({item}), Qt::CopyAction);
}

QMimeData* StepTree::mimeData(const QList<QTreeWidgetItem*> items) const
{
    if (items.isEmpty())
        return nullptr;
    const QTreeWidgetItem* item = items.first();
    const auto number = [item](int role) { return item->data(0, role).toInt(); };
    return step_mime::ofKind(item->text(0), number(logic_roles::BaseType),
                             number(logic_roles::StepType), palette_choice::quickStepId(item))
        .release();
}

QTreeWidgetItem* StepTree::createStepItem(const BaseStepProperty& property, QTreeWidgetItem* parent,
                                          bool insert)
{
    if (!property.showInPalette)
        return nullptr;
    if (!parent && insert && topLevelItemCount() == 0)
        return nullptr;
    auto* item = new QTreeWidgetItem;
    item->setText(0, step_rows::translatedName(property.name));
    item->setIcon(0, step_rows::icon(property.baseType, property.stepType));
    item->setData(0, logic_roles::BaseType, int(property.baseType));
    item->setData(0, logic_roles::StepType, property.stepType);
    item->setData(0, logic_roles::Draggable, property.draggable);
    item->setData(0, logic_roles::IsQuickStep, isQuickStepFolder(parent));
    if (!property.draggable)
        item->setFlags(item->flags() & ~Qt::ItemIsDragEnabled);
    for (const BaseStepProperty& child : property.children)
        createStepItem(child, item, false);

    if (parent)
        parent->addChild(item);
    else if (insert)
        insertTopLevelItem(topLevelItemCount() - 1, item);
    else
        addTopLevelItem(item);
    return item;
}

void StepTree::initStepList()
{
    const std::vector<BaseStepProperty> kinds = process_edit::getAllDefaultBaseStepProperty();
    for (const BaseStepProperty& kind : kinds)
        createStepItem(kind, nullptr, false);
    QTreeWidgetItem* folder = getQuickStepToplevelItem();
    if (!folder)
        return;
    const auto blocks = processedit::getQuickStepInfo();
    for (const auto& block : blocks)
        addQuickStep(block, folder);
}

void StepTree::addQuickStep(const std::shared_ptr<IProcessBlock>& block, QTreeWidgetItem* folder)
{
    if (!block)
        return;
    BaseStepProperty property = block->property;
    property.name = block->name;
    if (QTreeWidgetItem* item = createStepItem(property, folder, false))
        item->setData(0, logic_roles::QuickStepId, QString::fromStdString(block->uuid));
}

void StepTree::addCustomStepList(const QString& owner, const QVector<BaseStepProperty>& list)
{
    for (const BaseStepProperty& kind : list)
        createStepItem(kind, nullptr, true);
    process_edit::addCustomStepProperty(appletNameBytes(owner), {list.begin(), list.end()});
}

void StepTree::resetCustomStepList(const QString& owner)
{
    clear();
    process_edit::removeAllCustomStepProperty(appletNameBytes(owner));
    initStepList();
}

QTreeWidgetItem* StepTree::getQuickStepToplevelItem() const
{
    for (int i = 0; i < topLevelItemCount(); ++i) {
        if (isQuickStepFolder(topLevelItem(i)))
            return topLevelItem(i);
    }
    return nullptr;
}

void StepTree::onUpdateQuickStep(QStringList quickStepIdList, bool isRemove)
{
    QTreeWidgetItem* folder = getQuickStepToplevelItem();
    if (!folder)
        return;
    if (!isRemove) {
        const auto blocks = processedit::getQuickStepInfoVector(quickStepIdList);
        for (const auto& block : blocks)
            addQuickStep(block, folder);
        return;
    }
    for (int i = folder->childCount() - 1; i >= 0; --i) {
        const QString id = folder->child(i)->data(0, logic_roles::QuickStepId).toString();
        if (quickStepIdList.contains(id))
            delete folder->takeChild(i);
    }
}

#include "moc_StepTree.cpp"
