#pragma once

#include <QString>
#include <QVector>

#include <functional>

struct BaseStepProperty;
class QMenu;
class QTreeView;

/// What the context menu of the edit tree offers. No state; GUI thread only.
namespace step_menu {

enum class Action {
    RemoveStep,
    SetEcus,       ///< of the selected diagnostic steps
    EditDiagnosis, ///< of the current step
    AddQuickSteps, ///< the selected steps
    RemoveAll,     ///< of the current flow, or of all
    Enable,        ///< what is selected
    Disable
};

struct Entry
{
    Action action;
    QString text;
    bool isEnabled = true;
};

/// In order, by the current row of the tree and those selected. @p appName is the tree's applet.
QVector<Entry> entriesFor(const QTreeView& tree, const QString& appName);

/// Fills a menu with the kinds of the palette, folders as menus of their own; quick steps are left
/// out. @p choose is called with the kind that is chosen.
void addKinds(QMenu& menu, const std::function<void(const BaseStepProperty&)>& choose);

} // namespace step_menu
