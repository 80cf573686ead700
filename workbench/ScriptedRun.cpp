#include "workbench/ScriptedRun.h"

#include "model/dialogs/user_dialogs.h"
#include "model/services/processedit.h"
#include "shell/ProcessEditWidget.h"
#include "shell/bridge/ProcessEditNotifyTool.h"
#include "shell/run/ProcessEditToolBar.h"
#include "standalone/host/Host.h"
#include "workbench/MainWindow.h"

#include <QDir>
#include <QPixmap>
#include <QTextStream>
#include <QTimer>

#include <cstdio>

namespace processedit = sdk_ui_interface::processedit;

namespace {

constexpr int MidRunShotMs = 1500;
constexpr int EventStopped = 2;
constexpr int EventCrashed = 3;

// One event a line: what would break the line or its fields is written as an escape.
QString field(QString text)
{
    return text.replace(QLatin1Char('\\'), QLatin1String("\\\\"))
        .replace(QLatin1Char('\t'), QLatin1String("\\t"))
        .replace(QLatin1Char('\n'), QLatin1String("\\n"))
        .remove(QLatin1Char('\r'));
}

} // namespace

ScriptedRun::ScriptedRun(const CommandLine& line, MainWindow& window)
    : m_line(line), m_window(window), m_editor(window.editor())
{
    connect(&standalone::Host::instance(), &standalone::Host::progressCreated, this,
            &ScriptedRun::onRunStarted);
    connect(
        ProcessEditNotifyTool::instance(), &ProcessEditNotifyTool::runFinishSignal, this,
        [this](const QString&, const QString&, int event) { m_endEvent = event; },
        Qt::QueuedConnection);
    connect(m_editor, &ProcessEditWidget::sigRunFinish, this, &ScriptedRun::onRunFinished);
    if (line.headless)
        listenForLines();
}

void ScriptedRun::listenForLines()
{
    // An event each: the runtime reads a run on only when those that wait have been taken.
    connect(ProcessEditNotifyTool::instance(), &ProcessEditNotifyTool::runStateSignal, this,
            &ScriptedRun::onState, Qt::QueuedConnection);
    connect(m_editor, &ProcessEditWidget::notifyRunResultSig, this,
            [this](bool, const QString& text) { printOutput(text); });
    connect(&m_window, &MainWindow::attemptFinished, this, &ScriptedRun::onAttemptFinished);
}

void ScriptedRun::printLine(const QStringList& fields) const
{
    if (!m_line.headless)
        return;
    QStringList escaped;
    for (const QString& text : fields)
        escaped.append(field(text));
    const QByteArray line = escaped.join(QLatin1Char('\t')).toUtf8() + '\n';
    std::fwrite(line.constData(), 1, size_t(line.size()), stdout);
    std::fflush(stdout);
}

void ScriptedRun::start()
{
    if (m_line.headless)
        answerDialogs();
    if (!m_line.screenshotFolder.isEmpty() && !QDir().mkpath(m_line.screenshotFolder)) {
        QTextStream(stderr) << "无法创建文件夹: " << m_line.screenshotFolder << '\n';
        end(exit_status::NoSuchProject);
        return;
    }
    takeScreenshot(QStringLiteral("edit_tab.png"));
    if (m_line.run == CommandLine::Run::None)
        end(exit_status::RunEnded);
    else
        pressRun();
}

void ScriptedRun::answerDialogs()
{
    // Nobody is there to answer: a warning becomes a line, a question of a stop is a yes.
    user_dialogs::setHandler([](const user_dialogs::Message& message) {
        if (message.kind == user_dialogs::Kind::Warning)
            QTextStream(stderr) << message.title << ": " << message.text << '\n';
        const bool yesNo = message.kind == user_dialogs::Kind::YesNo;
        return user_dialogs::Answer{yesNo ? user_dialogs::Button::Yes : user_dialogs::Button::Ok,
                                    QString()};
    });
}

void ScriptedRun::pressRun()
{
    const bool main = m_line.run == CommandLine::Run::Main;
    m_editor->onToolWidgetButtonClickedSlot(main ? ProcessEditToolBar::RunMain
                                                 : ProcessEditToolBar::RunCurrent);
}

void ScriptedRun::onRunStarted()
{
    if (m_runSeen)
        return;
    m_runSeen = true;
    if (m_line.stopAfter >= 0)
        QTimer::singleShot(m_line.stopAfter, this, [this] {
            if (!m_ended && m_editor)
                m_editor->onToolWidgetButtonClickedSlot(ProcessEditToolBar::Stop);
        });
    QTimer::singleShot(MidRunShotMs, this, [this] {
        if (!m_ended)
            takeScreenshot(QStringLiteral("run_tab_running.png"));
    });
}

void ScriptedRun::onState(const QString& appName, const QString& sequenceId,
                          const QString& blockUuid, double progress, int result)
{
    printLine({QStringLiteral("state"), sequenceName(appName, sequenceId),
               stepName(appName, blockUuid), QString::number(progress, 'g', 6),
               QString::number(result)});
}

QString ScriptedRun::sequenceName(const QString& appName, const QString& id)
{
    const auto known = m_sequenceNames.constFind(id);
    if (known != m_sequenceNames.constEnd())
        return *known;
    const QString name = QString::fromStdString(processedit::getSequence(appName, id).name);
    if (name.isEmpty())
        return id; // what a run makes up is not kept
    m_sequenceNames.insert(id, name);
    return name;
}

QString ScriptedRun::stepName(const QString& appName, const QString& uuid)
{
    const auto block = processedit::getProcess(appName, uuid);
    return block ? QString::fromStdString(block->name) : uuid;
}

void ScriptedRun::printOutput(const QString& text)
{
    for (const QString& line : text.split(QLatin1Char('\n'), Qt::SkipEmptyParts))
        printLine({QStringLiteral("output"), line});
}

void ScriptedRun::onAttemptFinished(bool success)
{
    // Queued: what the attempt has to say is said after this callback.
    QMetaObject::invokeMethod(
        this,
        [this, success] {
            if (success)
                endIfNothingRuns();
            else
                end(exit_status::CompileFailed);
        },
        Qt::QueuedConnection);
}

// A run that could not be started sends no event.
void ScriptedRun::endIfNothingRuns()
{
    const bool hasRunner =
        !processedit::getCAppletRunState(m_editor->getCAppletName()).first.empty();
    if (!hasRunner && m_endEvent == 0)
        end(exit_status::RunCrashed);
}

void ScriptedRun::onRunFinished()
{
    if (m_endEvent == 0)
        return;
    printLine({QStringLiteral("end"), QString::number(m_endEvent)});
    // The rows take their last reports first.
    QMetaObject::invokeMethod(
        this,
        [this] {
            takeScreenshot(QStringLiteral("run_tab.png"));
            end(m_endEvent == EventStopped   ? exit_status::RunStopped
                : m_endEvent == EventCrashed ? exit_status::RunCrashed
                                             : exit_status::RunEnded);
        },
        Qt::QueuedConnection);
}

void ScriptedRun::takeScreenshot(const QString& name)
{
    if (m_line.screenshotFolder.isEmpty())
        return;
    const QString fileName = QDir(m_line.screenshotFolder).filePath(name);
    if (!m_window.grab().save(fileName))
        QTextStream(stderr) << "无法保存截图: " << fileName << '\n';
}

void ScriptedRun::end(int exitStatus)
{
    if (m_ended)
        return;
    m_ended = true;
    emit finished(exitStatus);
}

#include "moc_ScriptedRun.cpp"
