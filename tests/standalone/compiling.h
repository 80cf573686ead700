#pragma once

#include "standalone/compiler/CompileService.h"
#include "tests/standalone/runtime_harness.h"

#include <QByteArray>

#include <functional>

/// What the tests of compiles share.
namespace compiling {

struct Answer
{
    standalone::CompileService::StartResult start = standalone::CompileService::Refused;
    compileResult result = CompileFailed; ///< if it was started
    QString message;
};

/// Of the applet's code, with the folders of the project; nobody hears of its end.
standalone::CompileService::Request request(const codegen::AppletSource& source,
                                            const QString& appName = run_events::app);

/// Starts a compile and waits for its end; @p whenFinished is called from within its callback.
Answer compile(standalone::CompileService& service, standalone::CompileService::Request request,
               const std::function<void()>& whenFinished = {});

QByteArray contentOfFile(const QString& path);

/// A project and a service of its own.
class Project
{
public:
    Project() { qunsetenv("CXX"); }
    ~Project() { qunsetenv("CXX"); }
    Q_DISABLE_COPY_MOVE(Project)

    QString path(const char* name) const;
    /// Makes a shell script the compiler.
    void useCompiler(const QByteArray& script) const;
    Answer compile(const codegen::AppletSource& source, bool isForced = false);

    RuntimeHarness harness;
    standalone::CompileService service;
};

} // namespace compiling
