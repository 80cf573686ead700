#include "tests/standalone/compiling.h"

#include "standalone/runtime/applet_paths.h"
#include "tests/support/folders.h"

#include <QFile>
#include <QSemaphore>

namespace compiling {

using standalone::CompileService;

CompileService::Request request(const codegen::AppletSource& source, const QString& appName)
{
    CompileService::Request request;
    request.appName = appName;
    request.targetSequenceId = QString::fromStdString(source.targetSequenceId);
    request.codeFolder = standalone::appletCodeFolder(appName);
    request.modulePath = standalone::appletModulePath(appName);
    request.code = codegen::generate(source);
    request.onFinished = [](compileResult, quint64, const char*, const char*) {};
    return request;
}

Answer compile(CompileService& service, CompileService::Request request,
               const std::function<void()>& whenFinished)
{
    QSemaphore finished;
    Answer answer;
    const QByteArray name = request.appName.toLocal8Bit();
    request.onFinished = [&](compileResult result, quint64, const char* told, const char* message) {
        if (told != name)
            qFatal("told of another applet");
        answer.result = result;
        answer.message = QString::fromUtf8(message);
        if (whenFinished)
            whenFinished();
        finished.release();
    };
    answer.start = service.start(std::move(request));
    if (answer.start == CompileService::Started)
        finished.acquire();
    return answer;
}

QByteArray contentOfFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString Project::path(const char* name) const
{
    return harness.projectPath() + u'/' + QString::fromUtf8(name);
}

void Project::useCompiler(const QByteArray& script) const
{
    const QString file = path("compiler.sh");
    if (!test_support::putFile(file, "#!/bin/sh\n" + script + '\n') ||
        !QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner))
        qFatal("no script can be made");
    qputenv("CXX", QFile::encodeName(file));
}

Answer Project::compile(const codegen::AppletSource& source, bool isForced)
{
    auto wanted = request(source);
    wanted.isForced = isForced;
    return compiling::compile(service, std::move(wanted));
}

} // namespace compiling
