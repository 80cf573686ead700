#include "panels/value_picker.h"

#include "panels/loop_variables.h"
#include "variables/wgtEntryValue.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>

std::optional<QString> value_picker::pick(const QWidget* owner, const Request& request)
{
    // A host may close the editor under the open dialog.
    const QPointer<const QWidget> alive(owner);
    wgtEntryValue dialog(nullptr);
    dialog.setCAppletName(request.appName);
    dialog.setSequenceId(request.sequenceId);
    dialog.setType(request.offer == Offer::Variables ? EntryVariables : EntryVariablesAndFunctions,
                   request.systemVariables, true);
    dialog.setLoopVariables(
        loop_variables::around(request.appName, request.sequenceId, request.stepId));
    dialog.setData(request.type, request.text, false);
    dialog.setCursorPosition(request.cursor);
    if (dialog.exec() != BaseMDIWidget::Accepted || !alive)
        return std::nullopt;
    return dialog.getData();
}

std::optional<value_picker::PickedFunction> value_picker::pickFunction(const QWidget* owner,
                                                                       const QString& appName,
                                                                       const QString& sequenceId,
                                                                       const QString& call)
{
    const QPointer<const QWidget> alive(owner);
    wgtEntryValue dialog(nullptr);
    dialog.setCAppletName(appName);
    dialog.setSequenceId(sequenceId);
    dialog.setType(EntryFunctions, true, true);
    dialog.setData(QString(), call, false);
    if (dialog.exec() != BaseMDIWidget::Accepted || !alive)
        return std::nullopt;
    return PickedFunction{dialog.getData(), dialog.getCurrentFu(), dialog.isUserFunction()};
}

void value_picker::replaceText(QLineEdit* edit, const QString& text)
{
    if (edit->text() == text)
        return;
    edit->selectAll();
    edit->insert(text);
}

void value_picker::replaceText(QPlainTextEdit* edit, const QString& text)
{
    if (edit->toPlainText() == text)
        return;
    QTextCursor cursor(edit->document());
    cursor.select(QTextCursor::Document);
    cursor.insertText(text);
}
