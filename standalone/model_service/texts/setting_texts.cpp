#include "standalone/model_service/texts/block_texts.h"

#include "model/IProcessBlock.h"
#include "standalone/model_service/identifiers.h"
#include "standalone/model_service/stores/AppletStore.h"

#include <QCoreApplication>
#include <QStringList>

namespace standalone {

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("SettingTexts", text);
}

/// On one line: these texts may be code of several.
QString oneLine(const std::string& text)
{
    return toText(text).simplified();
}

QString target(const QString& action, const std::string& id, const TargetNames::Lookup& lookup)
{
    if (!lookup)
        return action;
    const QString name = id.empty() ? QString() : lookup(id);
    return name.isNull() ? tr("%1（不存在）").arg(action)
                         : QStringLiteral("%1 %2").arg(action, name);
}

QString actionText(int action, const std::string& id, const TargetNames& names)
{
    switch (action) {
    case 1:
        return target(tr("跳转到步骤"), id, names.step);
    case 2:
        return target(tr("跳转到序列"), id, names.sequence);
    case 3:
        return tr("终止序列");
    case 4:
        return tr("终止流程");
    case 5:
        return tr("暂停");
    default:
        return tr("下一步");
    }
}

QString loopText(const IProcessBlock& block)
{
    switch (block.loopType) {
    case 1:
        return tr("循环 %1 次").arg(block.loopCount);
    case 2:
        return tr("循环 %1; %2; %3")
            .arg(oneLine(block.loopInit), oneLine(block.loopCondition), oneLine(block.loopStep));
    default:
        return {};
    }
}

} // namespace

QString settingText(const IProcessBlock& block, const TargetNames& names)
{
    QStringList parts;
    if (block.tagEnabled)
        parts.append(tr("标签: %1").arg(oneLine(block.tag)));
    if (!block.preCondition.empty())
        parts.append(tr("前置条件: %1").arg(oneLine(block.preCondition)));
    const QString loop = loopText(block);
    if (!loop.isEmpty()) {
        parts.append(loop);
        if (block.loopResultInReport)
            parts.append(tr("记录每次循环结果"));
    }
    if (!block.preStatements.empty())
        parts.append(tr("前执行语句"));
    if (!block.postStatements.empty())
        parts.append(tr("后执行语句"));
    if (block.trueAction != 0 || block.falseAction != 0) {
        const QString code = oneLine(block.postConditionCode);
        const QString opening = code.isEmpty() ? tr("条件") : tr("条件 %1 ").arg(code);
        if (block.trueAction != 0)
            parts.append(tr("%1成立→%2")
                             .arg(opening, actionText(block.trueAction, block.trueTarget, names)));
        if (block.falseAction != 0)
            parts.append(
                tr("%1不成立→%2")
                    .arg(opening, actionText(block.falseAction, block.falseTarget, names)));
    }
    if (!block.remark.empty())
        parts.append(tr("备注: %1").arg(oneLine(block.remark)));
    return parts.join(QStringLiteral(" | "));
}

TargetNames targetNamesFor(const IProcessBlock& block)
{
    const auto [applet, place] = appletStore().holderOf(block);
    if (!applet)
        return {};
    const auto* holder = applet; // a structured binding can't be captured
    const auto* sequence = place->sequence;
    TargetNames names;
    names.step = [holder, sequence](const std::string& uuid) {
        const auto* found = holder->place(uuid);
        if (!found || found->sequence != sequence)
            return QString();
        return toText(found->block->name);
    };
    names.sequence = [holder](const std::string& id) {
        const auto* found = holder->sequence(id);
        return found ? toText(found->head.name) : QString();
    };
    return names;
}

} // namespace standalone
