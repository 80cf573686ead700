#include "standalone/compiler/compiler_command.h"

#include <QProcess>

namespace standalone {

QString CompilerCommand::toText() const
{
    return program + u' ' + arguments.join(u' ');
}

CompilerCommand compilerCommand()
{
    CompilerCommand command;
    command.arguments = QProcess::splitCommand(qEnvironmentVariable("CXX"));
    if (command.arguments.isEmpty())
        command.arguments << QStringLiteral("c++");
    command.program = command.arguments.takeFirst();
    // An applet waits for its devices: the time to compile it counts, not the speed of its code.
    // Exceptions stay on, since a step may use them; without a throw they cost nothing. Undefined
    // functions are told now and not when the module is loaded.
    command.arguments << QStringLiteral("-std=c++17") << QStringLiteral("-O0")
                      << QStringLiteral("-pipe") << QStringLiteral("-fPIC")
                      << QStringLiteral("-shared") << QStringLiteral("-fvisibility=hidden")
                      << QStringLiteral("-fdiagnostics-color=never")
                      << QStringLiteral("-Wl,--no-undefined") << QStringLiteral("-Wl,--as-needed");
    return command;
}

} // namespace standalone
