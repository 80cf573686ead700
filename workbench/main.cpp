#include "shell/ProcessEditWidget.h"
#include "standalone/compiler/compiler.h"
#include "standalone/host/Host.h"
#include "standalone/runtime/runtime.h"
#include "workbench/CommandLine.h"
#include "workbench/ScriptedRun.h"
#include "workbench/MainWindow.h"
#include "workbench/ProjectFolder.h"
#include "workbench/example_project.h"

#include <QApplication>
#include <QFile>
#include <QIcon>
#include <QJsonDocument>
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

// With nobody at the screen a document that can't be read is the end; a person is shown the log and
// may go on with what there is.
bool isDocumentReadable(const ProjectFolder& project, const QString& applet)
{
    QFile document(project.appletFolder(applet) + QStringLiteral("processInfo.pedt"));
    if (!document.exists())
        return true;
    return document.open(QIODevice::ReadOnly)
           && QJsonDocument::fromJson(document.readAll()).isObject();
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
    window.openProject(project);
    if (line.headless && !isDocumentReadable(project, applet)) {
        complain(QStringLiteral("小程序的流程文件无法读取: ") + project.appletFolder(applet) +
                 QStringLiteral("processInfo.pedt"));
        return exit_status::NoSuchProject;
    }
    if (!applet.isEmpty())
        window.openApplet(applet);
    window.show();
    if (!window.editor())
        return QApplication::exec();
    ScriptedRun script(line, window);
    if (line.headless)
        QObject::connect(&script, &ScriptedRun::finished, qApp, &QApplication::exit,
                         Qt::QueuedConnection);
    QTimer::singleShot(0, &script, &ScriptedRun::start);
    return QApplication::exec();
}

} // namespace

int main(int argc, char** argv)
{
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

    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("workbench"));
    QApplication::setOrganizationName(QStringLiteral("process-edit"));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/icon/应用/workbench.png")));
    const int status = runApplication(line);
    standalone::shutdownCompiler();
    standalone::shutdownRuntime();
    return status;
}
