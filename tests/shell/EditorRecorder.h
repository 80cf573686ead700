#pragma once

#include "shell/ProcessEditWidget.h"
#include "tests/support/text.h"

#include <QObject>
#include <QRegularExpression>
#include <QStringList>
#include <QToolButton>

/// Writes down what an editor tells its host, in order, a line each: signals, callbacks, and behind
/// a signal the state of the tool bar at that moment. Goes before its editor.
class EditorRecorder : public QObject
{
public:
    explicit EditorRecorder(ProcessEditWidget* editor) : m_editor(editor)
    {
        using Editor = ProcessEditWidget;
        connect(editor, &Editor::sigSave, this, [this] { put(text("sigSave")); });
        connect(editor, &Editor::notifyRunResultSig, this,
                [this](bool success, const QString& said) {
                    put(text("output %1 %2").arg(success).arg(shortened(said)));
                });
        connect(editor, &Editor::sigPrcoessMode, this,
                [this](int mode) { put(text("mode %1").arg(mode)); });
        connect(editor, &Editor::sigRunStart, this, [this] { put(text("runStart")); });
        connect(editor, &Editor::sigRunFinish, this, [this] { put(text("runFinish")); });
        connect(editor, &Editor::sigCompileStart, this, [this] { put(text("compileStart")); });
        connect(editor, &Editor::sigCompileFinish, this,
                [this](bool success) { put(text("compileFinish %1").arg(success)); });
        editor->setOnCompilePrepareCallback([this] { lines << text("prepare"); });
        editor->setOnCompileFinishedCallback(
            [this](bool success) { lines << text("finished %1").arg(success); });
        editor->setOnAuthoringSavedCallback(
            [this](const QString& name) { lines << text("saved ") + name; });
    }

    ~EditorRecorder() override
    {
        m_editor->setOnCompilePrepareCallback({});
        m_editor->setOnCompileFinishedCallback({});
        m_editor->setOnAuthoringSavedCallback({});
    }

    QStringList lines;

    /// The lines from now on.
    QStringList take()
    {
        QStringList taken;
        taken.swap(lines);
        return taken;
    }
    bool has(const char* begin) const { return count(begin) > 0; }
    int count(const char* begin) const
    {
        int found = 0;
        for (const QString& line : lines)
            found += line.startsWith(text(begin));
        return found;
    }

    QString toolBar() const
    {
        const auto isEnabled = [this](const char* name) {
            return m_editor->getToolMenuBar()->findChild<QToolButton*>(text(name))->isEnabled();
        };
        return isEnabled("runBtn")     ? text("idle")
               : isEnabled("pauseBtn") ? text("running")
                                       : text("started");
    }

private:
    void put(const QString& line) { lines << line + text(" [%1]").arg(toolBar()); }

    /// Times differ from run to run, and what the compiler says is its own matter.
    static QString shortened(QString said)
    {
        static const QRegularExpression compilerText(
            text("^.*编译用时[0-9.e-]+秒\n"), QRegularExpression::DotMatchesEverythingOption);
        said.replace(compilerText, text("<time>"));
        said.replace(text(" ----------------------------------------------------------\n"),
                     text("<rule>"));
        said.replace(u'\n', u'|');
        return said;
    }

    ProcessEditWidget* m_editor;
};
