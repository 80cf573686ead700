#pragma once

#include "shell/ProcessEditWidget.h"

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
        connect(editor, &Editor::sigSave, this, [this] { put(QStringLiteral("sigSave")); });
        connect(editor, &Editor::notifyRunResultSig, this, [this](bool success, QString text) {
            put(QStringLiteral("output %1 %2").arg(success).arg(shortened(text)));
        });
        connect(editor, &Editor::sigPrcoessMode, this,
                [this](int mode) { put(QStringLiteral("mode %1").arg(mode)); });
        connect(editor, &Editor::sigRunStart, this, [this] { put(QStringLiteral("runStart")); });
        connect(editor, &Editor::sigRunFinish, this, [this] { put(QStringLiteral("runFinish")); });
        connect(editor, &Editor::sigCompileStart, this,
                [this] { put(QStringLiteral("compileStart")); });
        connect(editor, &Editor::sigCompileFinish, this,
                [this](bool success) { put(QStringLiteral("compileFinish %1").arg(success)); });
        editor->setOnCompilePrepareCallback([this] { lines << QStringLiteral("prepare"); });
        editor->setOnCompileFinishedCallback(
            [this](bool success) { lines << QStringLiteral("finished %1").arg(success); });
        editor->setOnAuthoringSavedCallback(
            [this](const QString& name) { lines << QStringLiteral("saved ") + name; });
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
            found += line.startsWith(QString::fromUtf8(begin));
        return found;
    }

    QString toolBar() const
    {
        const auto isEnabled = [this](const char* name) {
            return m_editor->getToolMenuBar()
                ->findChild<QToolButton*>(QString::fromLatin1(name))
                ->isEnabled();
        };
        return isEnabled("runBtn")     ? QStringLiteral("idle")
               : isEnabled("pauseBtn") ? QStringLiteral("running")
                                       : QStringLiteral("started");
    }

private:
    void put(const QString& line) { lines << line + QStringLiteral(" [%1]").arg(toolBar()); }

    /// Times differ from run to run, and what the compiler says is its own matter.
    static QString shortened(QString text)
    {
        static const QRegularExpression compilerText(
            QStringLiteral("^.*编译用时[0-9.e-]+秒\n"),
            QRegularExpression::DotMatchesEverythingOption);
        text.replace(compilerText, QStringLiteral("<time>"));
        text.replace(
            QStringLiteral(" ----------------------------------------------------------\n"),
            QStringLiteral("<rule>"));
        text.replace(QLatin1Char('\n'), QLatin1Char('|'));
        return text;
    }

    ProcessEditWidget* m_editor;
};
