#include "standalone/compiler/compiler_command.h"

#include <QDateTime>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

#include <algorithm>

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

/// As far as the command says so. It complains of GCC's words, GCC fails for its own.
bool isClang(const CompilerCommand& command)
{
    const QStringList words = QStringList{command.program} + command.arguments;
    return std::any_of(words.begin(), words.end(), [](const QString& word) {
        return QFileInfo(word).fileName().startsWith(QLatin1String("clang"));
    });
}

} // namespace

QStringList CompilerCommand::compileArguments(QStringList sources, const QString& object,
                                              const QString& dependencies) const
{
    const QString last = sources.takeLast();
    QStringList all = arguments;
    all << (isClang(*this) ? QStringLiteral("-ferror-limit=50")
                           : QStringLiteral("-fmax-errors=50"));
    // The rule's target is of no use, and a short one can't be mistaken.
    if (!dependencies.isEmpty())
        all << QStringLiteral("-MD") << QStringLiteral("-MT") << QStringLiteral("o")
            << QStringLiteral("-MF") << dependencies;
    for (const QString& source : qAsConst(sources))
        all << QStringLiteral("-include") << source;
    return all + compileOptions + QStringList{last, QStringLiteral("-o"), object};
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
    QByteArray identity = toText().toUtf8();
    for (const QString& word : QStringList{program} + arguments) {
        const QString path = QStandardPaths::findExecutable(word);
        const QFileInfo file(QFileInfo(path.isEmpty() ? word : path).canonicalFilePath());
        if (file.isFile())
            identity += '\n' + file.filePath().toUtf8() + '\n' + QByteArray::number(file.size()) +
                        '\n' + QByteArray::number(file.lastModified().toMSecsSinceEpoch());
    }
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
