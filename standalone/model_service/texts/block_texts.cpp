#include "standalone/model_service/texts/block_texts.h"

#include "model/process_blocks.h"
#include "standalone/model_service/identifiers.h"

#include <QStringList>

namespace standalone {
namespace block_texts {

namespace {

QString operand(const std::string& text)
{
    return text.empty() ? QStringLiteral("0") : toText(text);
}

QString comparison(const ConditionProcessBlock& block)
{
    const QString text =
        QStringLiteral("%1 %2 %3")
            .arg(operand(block.getFun1()), toText(block.getOperator()), operand(block.getFun2()));
    if (!block.getOperatorIsArray())
        return text;
    return BlockTexts::tr("%1（数组，前 %2 个元素）")
        .arg(text, QString::number(block.getArraySize()));
}

} // namespace

QString plain(int stepType)
{
    switch (stepType) {
    case step_type::Else:
        return BlockTexts::tr("否则");
    case step_type::EndIf:
        return BlockTexts::tr("如果结束");
    case step_type::EndFor:
    case step_type::EndWhile:
    case step_type::EndDoWhile:
        return BlockTexts::tr("循环结束");
    case step_type::Break:
        return BlockTexts::tr("跳出循环");
    case step_type::Continue:
        return BlockTexts::tr("继续下一次循环");
    case step_type::GotoTag:
        return BlockTexts::tr("跳转标签");
    default:
        return BlockTexts::tr("未知的步骤类型 %1").arg(stepType);
    }
}

QString condition(const ConditionProcessBlock& block)
{
    const QString text = comparison(block);
    switch (block.stepType()) {
    case step_type::If:
        return BlockTexts::tr("如果 %1").arg(text);
    case step_type::ElseIf:
        return BlockTexts::tr("否则如果 %1").arg(text);
    case step_type::While:
        return BlockTexts::tr("当 %1 时循环").arg(text);
    case step_type::DoWhile:
        return BlockTexts::tr("循环，直到 %1 不成立").arg(text);
    default:
        return text;
    }
}

QString forLoop(const ForProcessBlock& block)
{
    if (block.getCustom()) {
        return BlockTexts::tr("循环 %1; %2; %3")
            .arg(toText(block.getFun1()), toText(block.getFun2()), toText(block.getFun3()));
    }
    const qint64 begin = block.getBeginValue();
    const qint64 end = block.getEndValue();
    const qint64 step = block.getStepValue();
    const QString name = toText(block.getVariableName());
    if (end <= begin)
        return BlockTexts::tr("循环 0 次（%1 = %2，不小于 %3）").arg(name).arg(begin).arg(end);
    if (step <= 0)
        return BlockTexts::tr("循环 %1 = %2，到不了 %3，步长 %4")
            .arg(name)
            .arg(begin)
            .arg(end)
            .arg(step);
    const qint64 last = begin + (end - begin - 1) / step * step;
    return BlockTexts::tr("循环 %1 = %2 … %3，步长 %4").arg(name).arg(begin).arg(last).arg(step);
}

QString jump(const GotoProcessBlock& block, const TargetNames& names)
{
    if (block.targetTag.empty() && block.targetUuid.empty())
        return BlockTexts::tr("不跳转");
    const QString tag = toText(block.targetTag);
    if (!names.step)
        return BlockTexts::tr("跳转到 %1").arg(tag);
    const QString name = names.step(block.targetUuid);
    if (name.isNull())
        return BlockTexts::tr("跳转到 %1（步骤不存在）").arg(tag);
    return BlockTexts::tr("跳转到 %1(%2)").arg(tag, name);
}

QString sequenceCall(const SequenceProcessBlock& block, const TargetNames& names)
{
    switch (block.sourceKind) {
    case SequenceProcessBlock::AppletSequence: {
        const QString name = toText(block.sequenceName);
        if (!names.sequence)
            return BlockTexts::tr("调用序列 %1").arg(name);
        const QString present = names.sequence(block.sequenceId);
        return present.isNull() ? BlockTexts::tr("调用序列 %1（序列不存在）").arg(name)
                                : BlockTexts::tr("调用序列 %1").arg(present);
    }
    case SequenceProcessBlock::TemplateSequence:
        return BlockTexts::tr("调用模板 %1").arg(toText(block.templateName));
    default:
        return BlockTexts::tr("未选择序列");
    }
}

QString statement(const StatementProcessBlock& block)
{
    const QString code = toText(block.customCode());
    return code.trimmed().isEmpty() ? BlockTexts::tr("空语句") : code;
}

QString expression(const ExpressionProcessBlock& block)
{
    const QString left = toText(block.leftValue);
    const QString right = toText(block.rightExpression);
    if (left.isEmpty())
        return right.isEmpty() ? BlockTexts::tr("空表达式") : right;
    return right.isEmpty() ? BlockTexts::tr("%1 未赋值").arg(left)
                           : QStringLiteral("%1 = %2").arg(left, right);
}

QString apiCall(const ApiProcessBlock& block)
{
    const QString call = toText(block.callText).trimmed();
    if (call.isEmpty())
        return BlockTexts::tr("未选择函数");
    QStringList values;
    for (const auto& parameter : block.parameters())
        values.append(toText(parameter.value.empty() ? parameter.type : parameter.value));
    const QString text = call.section(QLatin1Char('('), 0, 0) + QLatin1Char('(') +
                         values.join(QStringLiteral(", ")) + QLatin1Char(')');
    return block.returnVariable.empty()
               ? text
               : QStringLiteral("%1 = %2").arg(toText(block.returnVariable), text);
}

QString delay(const DelayProcessBlock& block)
{
    return BlockTexts::tr("延时 %1 毫秒").arg(block.delay);
}

} // namespace block_texts
} // namespace standalone
