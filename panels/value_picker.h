#pragma once

#include "model/DrelFunction.h"

#include <QString>

#include <optional>
#include <string>

class QLineEdit;
class QPlainTextEdit;
class QWidget;

/// The modal dialog by which a panel lets its user choose a variable, a function or an expression.
namespace value_picker {

enum class Offer { Variables, VariablesAndFunctions };

struct Request
{
    QString appName;
    QString sequenceId; ///< empty: no sequence's variables are in sight
    std::string stepId; ///< the step that is edited: the loops around it bring their variables
    Offer offer = Offer::VariablesAndFunctions;
    bool systemVariables = false; ///< whether those of the system are offered, too
    QString text;                 ///< what the dialog starts with
    /// Where a pick goes in the text, as characters before it; negative: in place of the text.
    int cursor = -1;
    QString type = {}; ///< keyword: only variables of that type are offered; empty: all
};

/// The text that the user accepted, which may be empty; nothing if he didn't, or if @p owner went
/// away while the dialog was open. GUI thread only; returns when the dialog is closed.
std::optional<QString> pick(const QWidget* owner, const Request& request);

struct PickedFunction
{
    QString text; ///< the call
    _DrelFunction function;
    bool isUserFunction = false; ///< of the applet's user, not of the runtime
};

/// The function that the user accepted, beginning with the one that @p call calls; nothing as with
/// pick.
std::optional<PickedFunction> pickFunction(const QWidget* owner, const QString& appName,
                                           const QString& sequenceId, const QString& call);

/// Gives an edit another text, as if it had been typed: it can be undone, and the same text changes
/// nothing.
void replaceText(QLineEdit* edit, const QString& text);
void replaceText(QPlainTextEdit* edit, const QString& text);

} // namespace value_picker
