#include "model/colour_rules.h"
#include "shell/ProcessEditWidget.h"
#include "shell/documents/applet_documents.h"
#include "standalone/compiler/compiler.h"
#include "standalone/host/Host.h"
#include "standalone/runtime/runtime.h"
#include "standalone/variables/SystemVariables.h"
#include "workbench/CommandLine.h"
#include "workbench/MainWindow.h"
#include "workbench/ProjectFolder.h"
#include "workbench/ScriptedRun.h"
#include "workbench/chinese_texts.h"
#include "workbench/example_project.h"

#include <QApplication>
#include <QIcon>
#include <QLibraryInfo>
#include <QTextCodec>
#include <QTextStream>
#include <QTimer>

namespace {

void complain(const QString& text)
{
    QTextStream(stderr) << "workbench: " << text << '\n';
}

QStringList argumentsOf(int argc, char** argv)
{
    QStringList arguments;
    for (int index = 0; index < argc; ++index)
        arguments.append(QString::fromLocal8Bit(argv[index]));
    return arguments;
}

// Empty, with the complaint set, if there is no such applet; empty without one in a project that
// has no applet.
QString chosenApplet(const CommandLine& line, const ProjectFolder& project, QString& complaint)
{
    const QStringList applets = project.applets();
    if (!line.applet.isEmpty()) {
        if (applets.contains(line.applet))
            return line.applet;
        complaint = QStringLiteral("工程中没有此小程序: ") + line.applet;
        return QString();
    }
    const QString last = project.lastApplet();
    if (applets.contains(last))
        return last;
    if (applets.isEmpty() && line.headless)
        complaint = QStringLiteral("工程中没有小程序: ") + project.path();
    return applets.value(0);
}

int runApplication(const CommandLine& line)
{
    QString complaint;
    const ProjectFolder project(line.project.isEmpty() ? example_project::openCopy(complaint)
                                                       : line.project);
    if (complaint.isEmpty())
        complaint = project.complaint();
    QString applet;
    if (complaint.isEmpty())
        applet = chosenApplet(line, project, complaint);
    if (!complaint.isEmpty()) {
        complain(complaint);
        return exit_status::NoSuchProject;
    }

    MainWindow window;
    QObject::connect(&standalone::Host::instance(), &standalone::Host::errorLogged, &window,
                     [](const QString& text) { complain(text); });
    if (line.headless)
        window.setUnattended();
    if (!window.openProject(project))
        return exit_status::RunEnded;
    // With nobody at the screen a document that can't be read is the end; a person is shown the log
    // and may go on with what there is.
    if (line.headless && !applet.isEmpty()) {
        const QString fault = applet_documents::faultOf(project.appletFolder(applet));
        if (!fault.isEmpty()) {
            complain(QStringLiteral("小程序的流程文件无法读取: %1processInfo.pedt (%2)")
                         .arg(project.appletFolder(applet), fault));
            return exit_status::NoSuchProject;
        }
    }
    // What a script opens is not what a person opened last.
    if (!line.headless)
        QObject::connect(&window, &MainWindow::appletOpened, &window,
                         [&window](const QString& name) { window.project().setLastApplet(name); });
    if (!applet.isEmpty())
        window.openApplet(applet);
    window.show();
    const bool isScripted =
        line.headless || line.run != CommandLine::Run::None || !line.screenshotFolder.isEmpty();
    if (!window.editor() || !isScripted)
        return QApplication::exec();
    ScriptedRun script(line, window);
    if (line.headless)
        QObject::connect(&script, &ScriptedRun::finished, qApp, &QApplication::exit,
                         Qt::QueuedConnection);
    QTimer::singleShot(0, &script, &ScriptedRun::start);
    return QApplication::exec();
}

// Names of files and texts of terminals are UTF-8 here, also under a locale that doesn't say so, as
// that of a service or of a fresh machine.
void useUtf8()
{
#ifndef Q_OS_WIN
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
#endif
}

bool hasDisplay()
{
#ifdef Q_OS_LINUX
    return !qEnvironmentVariableIsEmpty("DISPLAY") ||
           !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
           !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
#else
    return true;
#endif
}

} // namespace

int main(int argc, char** argv)
{
    useUtf8();
    const CommandLine line = CommandLine::parse(argumentsOf(argc, argv));
    if (line.answer == CommandLine::Answer::PrintAndExit) {
        QTextStream(stdout) << line.text;
        return 0;
    }
    if (line.answer == CommandLine::Answer::Refuse) {
        complain(line.text);
        QTextStream(stderr) << "使用 --help 查看用法\n";
        return exit_status::WrongUsage;
    }
    if (line.headless && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (!line.headless && !hasDisplay()) {
        complain(QStringLiteral("没有可用的显示器，请加上 --headless"));
        return exit_status::WrongUsage;
    }

    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("workbench"));
    QApplication::setOrganizationName(QStringLiteral("process-edit"));
    chinese_texts::install(QLibraryInfo::location(QLibraryInfo::TranslationsPath));
    QApplication::setPalette(colour_rules::withPlaceholders(QApplication::palette()));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/icon/应用/workbench.png")));
    const int status = runApplication(line);
    standalone::shutdownCompiler();
    standalone::shutdownRuntime();
    standalone::SystemVariables::instance().waitForListeners();
    return status;
}
