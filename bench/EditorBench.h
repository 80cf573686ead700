#pragma once

#include "model/process_blocks.h"
#include "model/services/process_edit.h"
#include "model/services/processedit.h"
#include "shell/ProcessEditNotifyTool.h"
#include "shell/ProcessEditToolBar.h"
#include "shell/ProcessEditWidget.h"
#include "standalone/host/Host.h"

#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QTemporaryDir>

/// An editor on an applet in a project of its own.
class EditorBench
{
public:
    explicit EditorBench(const QString& appName)
        : m_appName(appName), m_editor(QStringLiteral("Bench"))
    {
        standalone::Host::instance().setProjectPath(m_project.path());
        const QString folder = m_project.path() + QLatin1Char('/');
        m_editor.createCApplet(appName);
        m_editor.setProcessJsonAndVciPath(folder, folder);
        m_editor.load(false);
        m_sequence = m_editor.getCurrentShowSequenceId();
        SequenceInfo info = sdk_ui_interface::processedit::getSequence(appName, m_sequence);
        info.isMain = true;
        sdk_ui_interface::processedit::updateSequence(appName, info);
        QObject::connect(&m_editor, &ProcessEditWidget::sigRunFinish, &m_context,
                         [this] { m_isRunning = false; });
    }

    /// Adds a step to the main flow, or below another.
    template <class Block>
    QString addStep(int type, const std::function<void(Block&)>& change,
                    const QString& parent = QStringLiteral("1"))
    {
        namespace processedit = sdk_ui_interface::processedit;
        const QString uuid =
            processedit::createProcess(m_appName, m_sequence, parent, BasicStep, type, -1);
        const auto block =
            std::dynamic_pointer_cast<Block>(processedit::getProcess(m_appName, uuid));
        change(*block);
        processedit::updateProcess(m_appName, m_sequence, block);
        return uuid;
    }
    void addStatement(const char* code, const QString& parent = QStringLiteral("1"))
    {
        addStep<StatementProcessBlock>(
            step_type::Statement, [code](auto& block) { block.setCustomCode(code); }, parent);
    }

    void show()
    {
        m_editor.loadDataToUI(m_appName, false);
        m_editor.resize(1200, 800);
        m_editor.show();
    }

    /// From now on a press of Run compiles again.
    void change() { process_edit::appNeedUpdate(m_appName.toStdString()); }

    /// Returns when the first state has been reported.
    void pressRun()
    {
        QEventLoop loop;
        QObject::connect(ProcessEditNotifyTool::instance(), &ProcessEditNotifyTool::runStateSignal,
                         &loop, &QEventLoop::quit, Qt::QueuedConnection);
        QObject::connect(&m_editor, &ProcessEditWidget::sigRunFinish, &loop, &QEventLoop::quit);
        m_isRunning = true;
        m_editor.onToolWidgetButtonClickedSlot(ProcessEditToolBar::RunMain);
        loop.exec();
    }

    void waitForEnd() const
    {
        while (m_isRunning)
            QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

    QString sequence() const { return m_sequence; }
    QString sourceFile() const
    {
        const QDir code(m_editor.getCAppletCodePath());
        const QStringList files = code.entryList({QStringLiteral("*.cpp")}, QDir::Files);
        return files.isEmpty() ? QString() : code.filePath(files.first());
    }
    QString scratchFile() const { return m_project.filePath(QStringLiteral("bare.mp")); }

private:
    const QString m_appName;
    QTemporaryDir m_project;
    ProcessEditWidget m_editor;
    QObject m_context;
    QString m_sequence;
    bool m_isRunning = false;
};
