#include "standalone/compiler/CompileService.h"

#include "model/services/log.h"
#include "standalone/compiler/ModuleBuild.h"
#include "standalone/compiler/code_folder.h"
#include "standalone/compiler/error_lines.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>

#include <algorithm>
#include <memory>

namespace standalone {

namespace {

QString compileText(const char* source)
{
    return QCoreApplication::translate("standalone::CompileService", source);
}

constexpr unsigned FewestThreads = 2;
constexpr int MostErrors = 20;

/// Error lines as they come first in a message, not too many of them.
QByteArray joined(const QStringList& lines)
{
    QByteArray message;
    for (const QString& line : lines.mid(0, MostErrors))
        message += line.toUtf8() + '\n';
    if (lines.size() > MostErrors)
        message += compileText("另有 %1 处错误").arg(lines.size() - MostErrors).toUtf8() + '\n';
    return message;
}

bool areUnchanged(const FileStates& files)
{
    for (auto file = files.begin(); file != files.end(); ++file) {
        if (fileState(file.key()) != file.value())
            return false;
    }
    return true;
}

} // namespace

CompileService& CompileService::instance()
{
    static CompileService service;
    return service;
}

CompileService::CompileService()
    : m_compilers(static_cast<int>(std::max(1u, std::thread::hardware_concurrency()))),
      m_pool(std::max(FewestThreads, std::thread::hardware_concurrency()))
{
}

CompileService::~CompileService()
{
    shutDown();
}

void CompileService::shutDown()
{
    m_cancelled = true;
    m_pool.waitForDone();
    m_cancelled = false;
}

bool CompileService::isCompiling(const QString& appName) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_compiling.contains(appName);
}

bool CompileService::isReplaced(const QString& modulePath) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto made = m_modules.constFind(modulePath);
    return made != m_modules.constEnd() && fileState(modulePath) != *made;
}

QByteArray CompileService::fingerprintOf(const Request& request) const
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    const auto add = [&hash](const QByteArray& part) {
        hash.addData(QByteArray::number(part.size()) + ':');
        hash.addData(part);
    };
    for (const codegen::GeneratedFile& file : request.code.files) {
        add(QByteArray::fromStdString(file.name));
        add(QByteArray::fromRawData(file.text.data(), static_cast<int>(file.text.size())));
    }
    for (const RuntimeHeader& header : runtimeHeaders())
        add(header.text);
    add(request.targetSequenceId.toUtf8());
    add(request.forVci ? "vci" : "run");
    add(compilerCommand().identity());
    add(request.modulePath.toUtf8());
    return hash.result();
}

CompileService::StartResult CompileService::start(Request request)
{
    if (request.codeFolder.isEmpty() || request.modulePath.isEmpty())
        return Refused;
    const QByteArray fingerprint = fingerprintOf(request);
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_compiling.contains(request.appName))
            return Refused;
        const Success last = m_lastSuccess.value(request.appName);
        if (!request.isForced && last.fingerprint == fingerprint && !last.files.isEmpty() &&
            areUnchanged(last.files))
            return Skipped;
        m_compiling.insert(request.appName);
    }
    const auto shared = std::make_shared<const Request>(std::move(request));
    if (m_pool.start([this, shared, fingerprint] { work(*shared, fingerprint); }))
        return Started;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_compiling.remove(shared->appName);
    }
    sdk_ui_interface::log::log_error(compileText("编译启动失败: 系统无法再创建线程"));
    return Refused;
}

void CompileService::work(const Request& request, const QByteArray& fingerprint)
{
    QElapsedTimer timer;
    timer.start();
    FolderLock folder(request.codeFolder);
    Success success{fingerprint, {}, {}};
    Outcome outcome = compile(request, folder, success);
    // The callback's text would end there.
    outcome.message.replace('\0', "\uFFFD");
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_compiling.remove(request.appName);
        if (outcome.result == CompileSucceeded) {
            m_lastSuccess[request.appName] = success;
            m_modules[request.modulePath] = success.module;
        } else {
            m_lastSuccess.remove(request.appName);
        }
    }
    if (request.onFinished && !m_cancelled)
        request.onFinished(outcome.result, static_cast<quint64>(timer.elapsed()),
                           request.appName.toLocal8Bit().constData(), outcome.message.constData());
}

CompileService::Outcome CompileService::compile(const Request& request, FolderLock& folder,
                                                Success& success) const
{
    if (!request.code.problems.empty()) {
        QStringList lines;
        for (const codegen::Problem& problem : request.code.problems)
            lines << errorLine(problem.place, QString::fromStdString(problem.words));
        return {CompileFailed, joined(lines)};
    }
    switch (folder.lock(m_timeout, m_cancelled)) {
    case FolderLock::Held:
        break;
    case FolderLock::HeldByAnother:
        return {CompileFailed, compileText("另一个程序正在编译此小程序, 请稍后再试: %1")
                                   .arg(request.codeFolder)
                                   .toUtf8()};
    case FolderLock::Impossible:
        return {CompileFailed,
                compileText("代码文件夹无法锁定: %1").arg(folder.errorText()).toUtf8()};
    }
    QString error;
    if (!writeCodeFolder(request.codeFolder, request.code.files, error))
        return {CompileFailed, compileText("生成的代码无法写入: %1").arg(error).toUtf8()};
    const QString moduleFolder = QFileInfo(request.modulePath).absolutePath();
    if (!QDir().mkpath(moduleFolder))
        return {CompileFailed, compileText("模块文件夹无法创建: %1").arg(moduleFolder).toUtf8()};
    return runCompilerFor(request, success);
}

CompileService::Outcome CompileService::runCompilerFor(const Request& request,
                                                       Success& success) const
{
    const qint64 memory = m_memoryLimit;
    ModuleBuild build(request.code, request.codeFolder,
                      {m_compilers, m_cancelled, m_timeout, memory});
    const CompilerOutcome outcome = build.run(request.modulePath);
    QStringList warnings;
    for (const codegen::Problem& warning : request.code.warnings)
        warnings << warningLine(warning.place, QString::fromStdString(warning.words));
    switch (outcome.kind) {
    case CompilerOutcome::Succeeded:
        success.module = fileState(request.modulePath);
        if (const auto files = build.outsideFiles()) {
            success.files = *files;
            success.files.insert(request.modulePath, success.module);
        }
        return {CompileSucceeded, joined(warnings) + outcome.output};
    case CompilerOutcome::NotFound:
        return {CompilerMissing,
                compileText("找不到 C++ 编译器 %1, 请安装软件包 g++ (%2)")
                    .arg(compilerCommand().program, QString::fromUtf8(outcome.output))
                    .toUtf8()};
    case CompilerOutcome::TimedOut:
        return {CompileFailed,
                compileText("编译超过 %1 秒仍未结束, 已终止").arg(m_timeout / 1000).toUtf8() +
                    '\n' + outcome.output};
    case CompilerOutcome::OutOfMemory:
    case CompilerOutcome::FileTooLarge:
        return {CompileFailed, errorLine(unitPlace(request.code, build.culprit()),
                                         (outcome.kind == CompilerOutcome::OutOfMemory
                                              ? compileText("编译所需的内存超过上限 %1 MB, 已终止")
                                              : compileText("编译写出的文件超过上限 %1 MB, 已终止"))
                                             .arg(memory >> 20))
                                       .toUtf8() +
                                   '\n' + outcome.output};
    case CompilerOutcome::NotWritten:
        return {CompileFailed, (outcome.output == request.modulePath.toUtf8()
                                    ? compileText("模块文件无法替换: %1")
                                    : compileText("目标文件无法写入: %1"))
                                   .arg(QString::fromUtf8(outcome.output))
                                   .toUtf8()};
    case CompilerOutcome::Failed:
    case CompilerOutcome::Cancelled:
        break;
    }
    return {CompileFailed, joined(errorLines(outcome.output, request.code)) + outcome.output};
}

} // namespace standalone
