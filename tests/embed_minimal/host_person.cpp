// Linked into the host of the test embed_minimal: works with the editor that the host opens as its
// user would, and closes the host's window at the end.

#include "model/services/processedit.h"
#include "shell/ProcessEditWidget.h"
#include "shell/run/ProcessEditToolBar.h"

#include <QApplication>
#include <QTimer>

namespace {

ProcessEditWidget* findEditor()
{
    for (QWidget* widget : QApplication::allWidgets()) {
        if (auto* editor = qobject_cast<ProcessEditWidget*>(widget))
            return editor;
    }
    return nullptr;
}

void work()
{
    ProcessEditWidget* editor = findEditor();
    if (!editor)
        qFatal("The host has opened no editor");
    // The shortest of the example's sequences.
    const auto sequences =
        sdk_ui_interface::processedit::getAllSequenceByAppName(editor->getCAppletName());
    for (const SequenceInfo& sequence : sequences) {
        if (sequence.name == "power_up")
            editor->setCurrentShowSequence(QString::fromStdString(sequence.id));
    }
    editor->addStatementStepToCurerentView({QStringLiteral("log_info(\"said by an added step\");")},
                                           {});
    QObject::connect(editor, &ProcessEditWidget::sigRunFinish, editor, [editor] {
        editor->save(QString());
        QApplication::closeAllWindows();
    });
    editor->onToolWidgetButtonClickedSlot(ProcessEditToolBar::RunCurrent);
}

void begin()
{
    QTimer::singleShot(0, qApp, work);
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(begin)
