#include "standalone/runtime/run_account.h"

#include "protocol/run_limits.h"
#include "standalone/runtime/signal_texts.h"
#include "standalone/runtime/step_names.h"
#include "standalone/shown_text.h"

#include <QCoreApplication>
#include <QStringList>

namespace standalone {

namespace {

QString accountText(const char* source)
{
    return QCoreApplication::translate("standalone::RunAccount", source);
}

QString stepLine(const StepName& name, quint64 pass)
{
    QString line =
        accountText("序列“%1”的步骤“%2”").arg(shownText(name.sequence), shownText(name.step));
    if (pass > 0)
        line += accountText(", 循环第 %1 次").arg(pass);
    return line;
}

/// The name is whatever the program calls itself.
QString processName(const EndedProcess& process)
{
    const QString name = QString::fromUtf8(process.name.data(), int(process.name.size()));
    return QStringLiteral("%1 (%2)").arg(shownText(name), QString::number(process.pid));
}

} // namespace

QString RunAccount::leftProcesses() const
{
    QStringList names;
    for (const EndedProcess& process : trace.ended)
        names << processName(process);
    QString line;
    if (!names.isEmpty())
        line = accountText("已结束步骤留下的 %1 个进程: %2")
                   .arg(QString::number(trace.endedCount), names.join(QStringLiteral(", ")));
    if (trace.endedCount > trace.ended.size())
        line += QStringLiteral(", …");
    if (trace.survivorCount > 0)
        line += (line.isEmpty() ? QString() : QStringLiteral("; ")) +
                accountText("%1 个进程无法结束, 仍在运行").arg(trace.survivorCount);
    return line;
}

QString RunAccount::reason() const
{
    if (!fault.isEmpty())
        return accountText("步骤写坏了运行报告的数据 (%1), 运行已被终止").arg(fault);
    if (isLeft)
        return accountText("运行进程无法结束, 可能正被调试器占用; 编辑器不再等待");
    switch (trace.cause) {
    case run_trace::MemoryLimit:
        return accountText("内存超过上限 %1 MB, 运行已被终止").arg(memoryLimit >> 20);
    case run_trace::StackOverflow:
        return accountText("栈溢出: 递归过深或局部变量过大");
    case run_trace::ChannelLost:
        return accountText("步骤关闭了与编辑器通信的描述符, 运行已被终止");
    case run_trace::ProcessLimit:
        return accountText("进程数超过上限 %1, 运行已被终止").arg(run_limits::MostProcesses);
    case run_trace::NoCause:
        break;
    }
    if (wasKilled)
        return accountText("运行没有响应停止请求, 已被强制结束");
    if (!end.hasExited)
        return accountText("运行被信号中断: %1").arg(signalText(end.number));
    if (trace.hasBegun)
        return accountText("步骤结束了运行进程, 退出代码 %1").arg(end.number);
    if (!hasTold)
        return accountText("运行进程在小程序开始之前就已结束, 退出代码 %1").arg(end.number);
    return QString();
}

QString RunAccount::steps(bool useModel) const
{
    StepNames names(useModel ? appName : QString());
    const auto line = [&names](const TracedStep& step) {
        const StepName name = names.find(step);
        const auto level = std::size_t(name.levelsBelowLoop);
        const bool isLooped = name.levelsBelowLoop >= 0 && level < step.passes.size();
        return stepLine(name, isLooped ? step.passes[level] : 0);
    };
    QStringList lines;
    if (trace.running)
        lines << accountText("正在执行: %1").arg(line(*trace.running));
    if (!trace.before.empty())
        lines << accountText("此前执行的步骤 (由近及远):");
    for (const TracedStep& step : trace.before)
        lines << QStringLiteral("  ") + line(step);
    return lines.join(u'\n');
}

} // namespace standalone
