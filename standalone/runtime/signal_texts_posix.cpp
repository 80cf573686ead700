#include "standalone/runtime/signal_texts.h"

#include <QCoreApplication>

#include <csignal>

namespace standalone {

QString signalText(int number)
{
    static const struct
    {
        int number;
        const char* text;
    } texts[] = {
        {SIGSEGV, QT_TRANSLATE_NOOP("standalone::RunAccount", "访问了无效的内存 (SIGSEGV)")},
        {SIGBUS, QT_TRANSLATE_NOOP("standalone::RunAccount", "访问了无效的内存 (SIGBUS)")},
        {SIGABRT,
         QT_TRANSLATE_NOOP("standalone::RunAccount", "程序中止: abort 或未捕获的异常 (SIGABRT)")},
        {SIGFPE, QT_TRANSLATE_NOOP("standalone::RunAccount", "算术错误, 例如除以零 (SIGFPE)")},
        {SIGILL, QT_TRANSLATE_NOOP("standalone::RunAccount", "非法指令 (SIGILL)")},
        {SIGKILL, QT_TRANSLATE_NOOP("standalone::RunAccount", "被强制结束 (SIGKILL)")},
        {SIGTERM, QT_TRANSLATE_NOOP("standalone::RunAccount", "被要求结束 (SIGTERM)")},
    };
    for (const auto& entry : texts) {
        if (entry.number == number)
            return QCoreApplication::translate("standalone::RunAccount", entry.text);
    }
    return QCoreApplication::translate("standalone::RunAccount", "信号 %1").arg(number);
}

} // namespace standalone
