#include "model/blocks/SequenceProcessBlock.h"
#include "model/services/processedit.h"
#include "standalone/model_service/identifiers.h"
#include "standalone/model_service/stores/AppletStore.h"
#include "standalone/model_service/stores/compile_marks.h"

#include <algorithm>

using namespace standalone;

namespace sdk_ui_interface {
namespace processedit {

namespace {

bool hasSequenceNamed(const AppletModel& applet, const std::string& name)
{
    return std::any_of(applet.sequences().begin(), applet.sequences().end(),
                       [&](const auto& sequence) { return sequence->head.name == name; });
}

/// A call shows the name of its sequence, and keeps it.
void renameInCalls(const AppletModel::Blocks& blocks, const SequenceInfo& sequence)
{
    for (const auto& block : blocks) {
        auto* call = dynamic_cast<SequenceProcessBlock*>(block.get());
        if (call && call->sourceKind == SequenceProcessBlock::AppletSequence &&
            call->sequenceId == sequence.id)
            call->sequenceName = sequence.name;
        renameInCalls(block->children, sequence);
    }
}

} // namespace

QString createSeuqence(const QString& appName, QString name)
{
    if (appName.isEmpty())
        return {};
    auto& applet = appletStore().findOrMake(appName);
    const auto isTaken = [&](const QString& wanted) {
        return hasSequenceNamed(applet, toUtf8(wanted));
    };
    SequenceContent sequence;
    sequence.head.id = newUuid();
    sequence.head.name =
        toUtf8(freeName(name.isEmpty() ? QStringLiteral("Sequence_0") : name, isTaken));
    sequence.head.isMain = applet.sequences().empty();
    const QString id = toText(sequence.head.id);
    applet.addSequence(std::move(sequence));
    markChanged(toLocalName(appName));
    return id;
}

SequenceInfo getSequence(const QString& appName, const QString& sequenceId)
{
    const auto* applet = appletStore().find(appName);
    const auto* sequence = applet ? applet->sequence(toUtf8(sequenceId)) : nullptr;
    return sequence ? sequence->record() : SequenceInfo();
}

void updateSequence(const QString& appName, SequenceInfo info)
{
    auto* applet = appletStore().find(appName);
    auto* sequence = applet ? applet->sequence(info.id) : nullptr;
    if (!sequence)
        return;
    const bool isRenamed = sequence->head.name != info.name;
    sequence->head.name = info.name;
    sequence->head.comment = info.comment;
    sequence->head.isMain = info.isMain;
    sequence->head.reserved = info.reserved;
    if (isRenamed) {
        for (const auto& other : applet->sequences()) {
            for (const auto& flow : other->flows)
                renameInCalls(flow, sequence->head);
        }
    }
    markChanged(toLocalName(appName));
}

std::vector<SequenceInfo> getAllSequenceByAppName(const QString& appName)
{
    std::vector<SequenceInfo> infos;
    if (const auto* applet = appletStore().find(appName)) {
        for (const auto& sequence : applet->sequences())
            infos.push_back(sequence->record());
    }
    return infos;
}

void removeSequence(const QString& appName, const QString& sequenceId)
{
    if (auto* applet = appletStore().find(appName)) {
        applet->removeSequence(toUtf8(sequenceId));
        markChanged(toLocalName(appName));
    }
}

void removeAllSequenceByAppName(const QString& appName)
{
    if (auto* applet = appletStore().find(appName)) {
        applet->removeAllSequences();
        markChanged(toLocalName(appName));
    }
}

} // namespace processedit
} // namespace sdk_ui_interface
