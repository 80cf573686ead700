#include "standalone/compiler/compiler_command.h"

#include <QDateTime>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

namespace standalone {

namespace {

// An applet waits for its devices: the time to compile it counts, not the speed of its code.
// Exceptions stay on, since a step may use them; without a throw they cost nothing.
const QStringList compileOptions = {QStringLiteral("-std=c++17"),
                                    QStringLiteral("-O0"),
                                    QStringLiteral("-pipe"),
                                    QStringLiteral("-fPIC"),
                                    QStringLiteral("-fvisibility=hidden"),
                                    QStringLiteral("-fdiagnostics-color=never"),
                                    QStringLiteral("-c")};
// Undefined functions are told now and not when the module is loaded.
const QStringList linkOptions = {QStringLiteral("-shared"), QStringLiteral("-fPIC"),
                                 QStringLiteral("-Wl,--no-undefined"),
                                 QStringLiteral("-Wl,--as-needed")};

} // namespace

QStringList CompilerCommand::compileArguments(const QString& source, const QString& object) const
{
    return arguments + compileOptions + QStringList{source, QStringLiteral("-o"), object};
}

QStringList CompilerCommand::linkArguments(const QStringList& objects, const QString& module) const
{
    return arguments + linkOptions + objects + QStringList{QStringLiteral("-o"), module};
}

QString CompilerCommand::toText() const
{
    return program + u' ' + (arguments + compileOptions + linkOptions).join(u' ');
}

QByteArray CompilerCommand::identity() const
{
    const QString path = QStandardPaths::findExecutable(program);
    const QFileInfo file(QFileInfo(path.isEmpty() ? program : path).canonicalFilePath());
    QByteArray identity = toText().toUtf8() + '\n' + file.filePath().toUtf8() + '\n' +
                          QByteArray::number(file.size()) + '\n' +
                          QByteArray::number(file.lastModified().toMSecsSinceEpoch());
    for (const char* name : {"CPATH", "CPLUS_INCLUDE_PATH"})
        identity += '\n' + qgetenv(name);
    return identity;
}

CompilerCommand compilerCommand()
{
    CompilerCommand command;
    command.arguments = QProcess::splitCommand(qEnvironmentVariable("CXX"));
    if (command.arguments.isEmpty())
        command.arguments << QStringLiteral("c++");
    command.program = command.arguments.takeFirst();
    return command;
}

} // namespace standalone
