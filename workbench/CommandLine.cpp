#include "workbench/CommandLine.h"

#include <QCommandLineParser>

namespace {

const char helpText[] =
    "用法: workbench [--project DIR] [--applet NAME] [--headless] [--run main|current]\n"
    "                [--stop-after MS] [--screenshot DIR]\n"
    "\n"
    "  --project DIR       打开工程文件夹；缺省为示例工程的副本\n"
    "  --applet NAME       打开小程序；缺省为上次打开的，否则为第一个\n"
    "  --headless          不显示窗口，每个事件输出一行\n"
    "  --run main|current  打开后运行主序列或当前序列\n"
    "  --stop-after MS     运行开始 MS 毫秒后停止\n"
    "  --screenshot DIR    在 DIR 中保存编辑页和运行页的截图\n"
    "  --help              显示本说明\n"
    "\n"
    "事件行的各字段以制表符分隔:\n"
    "  state   序列名  步骤名  进度  结果\n"
    "  output  文本\n"
    "  end     事件 (1 结束, 2 停止, 3 崩溃)\n"
    "\n"
    "退出码: 0 运行结束, 1 编译失败, 2 停止, 3 崩溃, 64 用法错误, 66 无此工程或小程序\n";

CommandLine refuse(const QString& complaint)
{
    CommandLine line;
    line.answer = CommandLine::Answer::Refuse;
    line.text = complaint;
    return line;
}

} // namespace

CommandLine CommandLine::parse(const QStringList& arguments)
{
    QCommandLineParser parser;
    const QCommandLineOption help(QStringList{QStringLiteral("help"), QStringLiteral("h")});
    const QCommandLineOption project(QStringLiteral("project"), QString(), QStringLiteral("DIR"));
    const QCommandLineOption applet(QStringLiteral("applet"), QString(), QStringLiteral("NAME"));
    const QCommandLineOption headless(QStringLiteral("headless"));
    const QCommandLineOption run(QStringLiteral("run"), QString(), QStringLiteral("main|current"));
    const QCommandLineOption stop(QStringLiteral("stop-after"), QString(), QStringLiteral("MS"));
    const QCommandLineOption shot(QStringLiteral("screenshot"), QString(), QStringLiteral("DIR"));
    parser.addOptions({help, project, applet, headless, run, stop, shot});

    if (!parser.parse(arguments))
        return refuse(parser.errorText());
    CommandLine line;
    if (parser.isSet(help)) {
        line.answer = Answer::PrintAndExit;
        line.text = QString::fromUtf8(helpText);
        return line;
    }
    if (!parser.positionalArguments().isEmpty())
        return refuse(QStringLiteral("多余的参数: ") +
                      parser.positionalArguments().join(QLatin1Char(' ')));
    line.project = parser.value(project);
    line.applet = parser.value(applet);
    line.screenshotFolder = parser.value(shot);
    line.headless = parser.isSet(headless);
    if (parser.isSet(run)) {
        const QString target = parser.value(run);
        if (target != QLatin1String("main") && target != QLatin1String("current"))
            return refuse(QStringLiteral("--run 只接受 main 或 current: ") + target);
        line.run = target == QLatin1String("main") ? Run::Main : Run::Current;
    }
    if (parser.isSet(stop)) {
        bool isNumber = false;
        line.stopAfter = parser.value(stop).toInt(&isNumber);
        if (!isNumber || line.stopAfter < 0)
            return refuse(QStringLiteral("--stop-after 需要毫秒数: ") + parser.value(stop));
        if (line.run == Run::None)
            return refuse(QStringLiteral("--stop-after 需要与 --run 一起使用"));
    }
    for (const auto& option : {project, applet, shot}) {
        if (parser.isSet(option) && parser.value(option).isEmpty())
            return refuse(QStringLiteral("选项的值为空: --") + option.names().first());
    }
    return line;
}
