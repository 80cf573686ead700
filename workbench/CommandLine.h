#pragma once

#include <QString>
#include <QStringList>

/// What the workbench was asked for on its command line.
struct CommandLine
{
    enum class Run { None, Main, Current };
    enum class Answer { Go, PrintAndExit, Refuse };

    QString project; ///< empty: the example's copy
    QString applet;  ///< empty: the one opened last, else the first
    bool headless = false;
    Run run = Run::None;
    int stopAfter = -1;       ///< ms after the start of the run; negative: never
    QString screenshotFolder; ///< empty: none

    Answer answer = Answer::Go;
    QString text; ///< to print with PrintAndExit, or the complaint of Refuse

    /// @p arguments begin with the program's name.
    static CommandLine parse(const QStringList& arguments);
};

/// Exit statuses of the program.
namespace exit_status {
constexpr int RunEnded = 0;
constexpr int CompileFailed = 1;
constexpr int RunStopped = 2;
constexpr int RunCrashed = 3;
constexpr int WrongUsage = 64;
constexpr int NoSuchProject = 66;
} // namespace exit_status
