#pragma once

#include "model/process_blocks.h"
#include "model/services/process_edit.h"
#include "model/services/processedit.h"
#include "shell/ProcessEditWidget.h"
#include "shell/bridge/ProcessEditNotifyTool.h"
#include "shell/run/ProcessEditToolBar.h"
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
        m_statement = addStep<StatementProcessBlock>(
            step_type::Statement, [code](auto& block) { block.setCustomCode(code); }, parent);
    }

    void show()
    {
        m_editor.loadDataToUI(m_appName, false);
        m_editor.resize(1200, 800);
        m_editor.show();
    }

    /// Gives the last statement another text: a press of Run has its sequence to compile.
    void change()
    {
        namespace processedit = sdk_ui_interface::processedit;
        const auto statement = std::dynamic_pointer_cast<StatementProcessBlock>(
            processedit::getProcess(m_appName, m_statement));
        statement->setCustomCode("int value = " + std::to_string(++m_value) + ";");
        processedit::updateProcess(m_appName, m_sequence, statement);
        process_edit::appNeedUpdate(m_appName.toStdString());
    }

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
    QDir codeFolder() const { return QDir(m_editor.getCAppletCodePath()); }
    QString scratchFile(const char* name) const
    {
        return m_project.filePath(QString::fromLatin1(name));
    }

private:
    const QString m_appName;
    QTemporaryDir m_project;
    ProcessEditWidget m_editor;
    QObject m_context;
    QString m_sequence;
    QString m_statement; ///< added last
    bool m_isRunning = false;
    int m_value = 0;
};
