#pragma once

#include "model/step_kinds.h"

#include <QList>
#include <QString>

#include <optional>

class QTreeWidgetItem;

/// What an item of the palette stands for: the step that it adds and the menu that it offers. Items
/// are those of StepTree; a null item stands for the empty ground. GUI thread only.
namespace palette_choice {

/// What LogicView::addStep is to add.
struct Step
{
    logicBlockType baseType = NoBlock;
    int stepType = step_type::None;
    QString text;        ///< the item's
    QString quickStepId; ///< empty for a plain kind
};

/// The step of an item; nothing for a kind that the palette hides and for a quick step that is
/// gone. @p owner is the applet's name. A folder gives a step, too, which can't be made.
std::optional<Step> stepOf(const QTreeWidgetItem* item, const QString& owner);

enum class Action { AddStep, RemoveQuickStep };

struct MenuEntry
{
    Action action;
    QString text;
};

/// The context menu of an item, in order; empty for no menu. AddStep means the item's stepOf,
/// RemoveQuickStep its quickStepId.
QList<MenuEntry> menuOf(const QTreeWidgetItem* item);

/// The quick step that an item stands for; empty if it is none.
QString quickStepId(const QTreeWidgetItem* item);

} // namespace palette_choice
