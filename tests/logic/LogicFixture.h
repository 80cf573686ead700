#pragma once

#include "model/process_blocks.h"
#include "model/services/processedit.h"

#include <QString>

/// An applet of its own for one test, removed again at the end, and short ways to fill it.
class LogicFixture
{
public:
    const QString appName = QStringLiteral("logic_test");
    const QString initial = QStringLiteral("0");
    const QString main = QStringLiteral("1");
    const QString end = QStringLiteral("2");

    LogicFixture() { sdk_ui_interface::processedit::removeApp(appName); }
    ~LogicFixture() { sdk_ui_interface::processedit::removeApp(appName); }

    QString addSequence(const char* name)
    {
        return sdk_ui_interface::processedit::createSeuqence(appName, QString::fromUtf8(name));
    }

    /// Appends a step under a flow or a block; returns its uuid.
    QString add(const QString& sequenceId, const QString& parent, int stepType, const char* name)
    {
        const QString uuid = sdk_ui_interface::processedit::createProcess(
            appName, sequenceId, parent, BasicStep, stepType, -1);
        const auto block = get<IProcessBlock>(uuid);
        block->name = name;
        block->property.hasChildren =
            step_kinds::isOpener(stepType) || step_kinds::isBranch(stepType);
        return uuid;
    }

    /// Appends a step that calls a sequence of the applet.
    QString addCall(const QString& sequenceId, const QString& parent, const QString& called,
                    const char* name)
    {
        const QString uuid = add(sequenceId, parent, step_type::Sequence, name);
        const auto block = get<SequenceProcessBlock>(uuid);
        block->sourceKind = SequenceProcessBlock::AppletSequence;
        block->sequenceId = called.toStdString();
        return uuid;
    }

    template <class Block> std::shared_ptr<Block> get(const QString& uuid) const
    {
        return std::dynamic_pointer_cast<Block>(
            sdk_ui_interface::processedit::getProcess(appName, uuid));
    }

    void setEnabled(const QString& uuid, int state)
    {
        get<IProcessBlock>(uuid)->enableState = state;
    }
};
