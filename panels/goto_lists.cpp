#include "panels/goto_lists.h"

#include "model/IProcessBlock.h"
#include "model/SequenceInfo.h"
#include "model/services/processedit.h"
#include "model/services/widget_bases.h"
#include "model/step_icons.h"
#include "panels/CustomComboBox.h"

#include <QCoreApplication>
#include <QHash>
#include <QStandardItemModel>

#include <algorithm>
#include <vector>

using namespace sdk_ui_interface;

namespace goto_lists {

namespace {

QIcon iconOf(const IProcessBlock& block)
{
    constexpr int size = 26;
    static QHash<QString, QIcon> icons;
    const QString name = getStepIconName(block.baseType(), block.stepType());
    QIcon& icon = icons[name];
    if (icon.isNull() && !name.isEmpty())
        icon = StyleManager::scaledToolbarIcon(name, size);
    return icon;
}

QStandardItem* newFlowItem(int flow)
{
    static const char* const names[] = {QT_TRANSLATE_NOOP("wgtGeneralSetting", "初始流程"),
                                        QT_TRANSLATE_NOOP("wgtGeneralSetting", "主流程"),
                                        QT_TRANSLATE_NOOP("wgtGeneralSetting", "结束流程")};
    auto* item = new QStandardItem(QCoreApplication::translate("wgtGeneralSetting", names[flow]));
    item->setData(flow, Qt::UserRole);
    item->setData(QString::number(flow), CustomComboBox::IdRole);
    return item;
}

QStandardItem* newStepItem(const IProcessBlock& block)
{
    auto* item = new QStandardItem(iconOf(block), QString::fromStdString(block.name));
    item->setData(int(block.baseType()), Qt::UserRole);
    item->setData(QString::fromStdString(block.uuid), CustomComboBox::IdRole);
    if (block.baseType() > EndFlow && !block.property.tagEnabled)
        item->setEnabled(false);
    return item;
}

/// Documents may be nested deeply: the walk keeps its own stack.
void addSteps(QStandardItem* parent, const std::vector<std::shared_ptr<IProcessBlock>>& blocks)
{
    struct Level
    {
        QStandardItem* parent;
        const std::vector<std::shared_ptr<IProcessBlock>>* blocks;
    };
    std::vector<Level> pending{{parent, &blocks}};
    while (!pending.empty()) {
        const Level level = pending.back();
        pending.pop_back();
        for (const auto& block : *level.blocks) {
            auto* item = newStepItem(*block);
            level.parent->appendRow(item);
            if (!block->children.empty())
                pending.push_back({item, &block->children});
        }
    }
}

void fillSteps(QStandardItemModel& model, const QString& appName, const QString& sequenceId)
{
    const SequenceInfo info = processedit::getSequence(appName, sequenceId);
    const std::vector<std::string>* const flows[] = {&info.initialFlow, &info.mainFlow,
                                                     &info.endFlow};
    for (int flow = InitialFlow; flow <= EndFlow; ++flow) {
        std::vector<std::shared_ptr<IProcessBlock>> blocks;
        for (const std::string& uuid : *flows[flow]) {
            if (auto block = processedit::getProcess(appName, QString::fromStdString(uuid)))
                blocks.push_back(std::move(block));
        }
        QStandardItem* item = newFlowItem(flow);
        addSteps(item, blocks);
        model.appendRow(item); // last, so that no view hears of each step
    }
}

QStandardItem* newSequenceItem(const SequenceInfo& sequence)
{
    auto* item = new QStandardItem(QString::fromStdString(sequence.name));
    item->setData(QString::fromStdString(sequence.id), CustomComboBox::IdRole);
    return item;
}

void fillSequences(QStandardItemModel& model, const QString& appName)
{
    for (const SequenceInfo& sequence : processedit::getAllSequenceByAppName(appName))
        model.appendRow(newSequenceItem(sequence));
}

/// The row of a flow or of a step of the sequence; null for any other.
QStandardItem* newItemOf(const QString& appName, const QString& sequenceId, const QString& id)
{
    for (int flow = InitialFlow; flow <= EndFlow; ++flow) {
        if (id == QString::number(flow))
            return newFlowItem(flow);
    }
    const std::string uuid = id.toStdString();
    const auto blocks = processedit::getAllProcessBySequenceID(
        appName, sequenceId, IProcessBlock::ProcessBlockBelong(0));
    const auto found = std::find_if(blocks.begin(), blocks.end(),
                                    [&](const auto& block) { return block->uuid == uuid; });
    return found == blocks.end() ? nullptr : newStepItem(**found);
}

} // namespace

void showSteps(CustomComboBox& box, const QString& appName, const QString& sequenceId,
               const QString& stepId)
{
    const auto fill = [appName, sequenceId](QStandardItemModel& model) {
        fillSteps(model, appName, sequenceId);
    };
    box.setSource(fill, stepId.isEmpty() ? nullptr : newItemOf(appName, sequenceId, stepId));
}

void showSequences(CustomComboBox& box, const QString& appName, const QString& sequenceId)
{
    QStandardItem* current = nullptr;
    for (const SequenceInfo& sequence : processedit::getAllSequenceByAppName(appName)) {
        if (!sequenceId.isEmpty() && QString::fromStdString(sequence.id) == sequenceId)
            current = newSequenceItem(sequence);
    }
    box.setSource([appName](QStandardItemModel& model) { fillSequences(model, appName); }, current);
}

} // namespace goto_lists
