#include "standalone/model_service/texts/block_texts.h"

#include "model/process_blocks.h"
#include "standalone/model_service/identifiers.h"

#include <QStringList>

namespace standalone {
namespace block_texts {

namespace {

constexpr int ShownBytes = 8;

QString frameKind(const SendMessageProcessBlock& block)
{
    static const char* const formats[] = {"CAN", "CAN FD", "CAN FD BRS"};
    const int format = qBound(0, block.frameFormat, 2);
    const bool isStandard = block.idType == SendMessageProcessBlock::StandardId;
    const bool isRemote = block.frameType == SendMessageProcessBlock::RemoteFrame;
    const QString kind =
        isRemote ? (isStandard ? BlockTexts::tr("标准远程帧") : BlockTexts::tr("扩展远程帧"))
                 : (isStandard ? BlockTexts::tr("标准帧") : BlockTexts::tr("扩展帧"));
    return QLatin1String(formats[format]) + QLatin1Char(' ') + kind;
}

QString shortened(const QString& hexBytes)
{
    const auto bytes = hexBytes.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (bytes.size() <= ShownBytes)
        return bytes.join(QLatin1Char(' '));
    return QStringList(bytes.mid(0, ShownBytes)).join(QLatin1Char(' ')) + QStringLiteral(" …");
}

/// The type that a kind of assignment stands for, as its list shows it.
QString assignedType(int kind)
{
    static const char* const types[] = {"int32",  "uint32",  "int64",   "uint64",  "double",
                                        "string", "uint8[]", "int32[]", "int64[]", "double[]"};
    return kind >= 1 && kind <= 10 ? QLatin1String(types[kind - 1]) : QString::number(kind);
}

} // namespace

QString send(const SendMessageProcessBlock& block)
{
    if (!block.messageVariable.empty())
        return BlockTexts::tr("发送报文变量 %1").arg(toText(block.messageVariable));
    const QString id = QString::number(block.frameId, 16).toUpper();
    const QString head = BlockTexts::tr("发送 %1 0x%2，通道 %3，%4 字节")
                             .arg(frameKind(block), id)
                             .arg(block.channel)
                             .arg(block.dataSize);
    const QString data = shortened(toText(block.data));
    const bool hasData = block.frameType != SendMessageProcessBlock::RemoteFrame && !data.isEmpty();
    return hasData ? head + QStringLiteral("：") + data : head;
}

QString receive(const RecvMessageProcessBlock& block)
{
    QStringList stores;
    const auto add = [&](const QString& part, const std::string& variable) {
        if (!variable.empty())
            stores.append(QStringLiteral("%1 → %2").arg(part, toText(variable)));
    };
    add(BlockTexts::tr("报文"), block.messageVariable);
    add(BlockTexts::tr("ID"), block.id.variable);
    add(BlockTexts::tr("长度"), block.dataSize.variable);
    add(BlockTexts::tr("通道"), block.channel.variable);
    add(BlockTexts::tr("数据"), block.data.variable);
    const QString head = BlockTexts::tr("接收 CAN，最多等待 %1 毫秒").arg(block.waitTime);
    return stores.isEmpty() ? head
                            : head + QStringLiteral("：") + stores.join(BlockTexts::tr("，"));
}

QString popup(const PopupWindowProcessBlock& block)
{
    QString text = BlockTexts::tr("弹窗“%1”").arg(toText(block.title));
    if (!block.content.empty())
        text += QStringLiteral("：") + toText(block.content);
    QStringList names;
    for (const auto& button : block.buttons())
        names.append(QStringLiteral("[%1]").arg(toText(button.name)));
    if (!names.isEmpty())
        text += QLatin1Char(' ') + names.join(QLatin1Char(' '));
    if (block.assignmentKind != 0) {
        const QString variable =
            block.variableName.empty() ? BlockTexts::tr("未选择变量") : toText(block.variableName);
        text += BlockTexts::tr("，输入 %1 → %2").arg(assignedType(block.assignmentKind), variable);
    }
    return text;
}

QString buzz(const BuzzProcessBlock& block)
{
    return BlockTexts::tr("蜂鸣器通道 %1：%2 Hz %3 毫秒，%4 Hz %5 毫秒，重复 %6 次")
        .arg(block.channel)
        .arg(block.firstFrequency)
        .arg(block.firstDuration)
        .arg(block.secondFrequency)
        .arg(block.secondDuration)
        .arg(block.repeatCount);
}

} // namespace block_texts
} // namespace standalone
