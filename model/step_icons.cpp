#include "model/step_icons.h"

#include "model/step_kinds.h"

namespace {

// Indexed by step type; an empty entry is a kind without an icon.
const char* const baseStepIcons[] = {
    "",       "if",   "else",     "else_if", "end",     "for",     "end",
    "while",  "end",  "do_while", "end",     "",        "break",   "continue",
    "",       "",     "go_to",    "api函数", "",        "",        "语句",
    "表达式", "序列", "弹窗",     "延时",    "发送CAN", "接收CAN", "蜂鸣器",
};

const char* const udsStepIcons[] = {
    "",         "诊断服务", "文件下载",   "延时",     "安全访问", "蜂鸣器",   "CSV绑定变量",
    "设置变量", "",         "库计算变量", "等待按键", "弹窗",     "统计日志", "发送CAN",
    "接收CAN",  "认证服务", "文件下载",
};

template <int N> QString iconPath(const char* const (&names)[N], int stepType)
{
    if (stepType < 1 || stepType >= N || *names[stepType] == '\0')
        return QString();
    return QStringLiteral(":/icon/stepIcon/%1.png").arg(QString::fromUtf8(names[stepType]));
}

} // namespace

QString getBaseStepIconName(int stepType)
{
    return iconPath(baseStepIcons, stepType);
}

QString getUDSStepIconName(int stepType)
{
    return iconPath(udsStepIcons, stepType);
}

QString getStepIconName(int baseType, int stepType)
{
    if (baseType == BasicStep)
        return getBaseStepIconName(stepType);
    return baseType == DiagnosticStep ? getUDSStepIconName(stepType) : QString();
}
