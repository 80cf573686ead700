#pragma once

#include "model/step_kinds.h"

#include <map>
#include <string>
#include <vector>

/// One kind of step as the palette offers it, and the copy that a block keeps from its creation.
/// Texts are UTF-8. Passed by value.
struct BaseStepProperty
{
    std::string name; ///< text in the palette and first text of a new block
    logicBlockType baseType = BasicStep;
    int stepType = step_type::None;
    /// False: no palette row, and blocks of this kind can't become quick steps.
    bool showInPalette = true;
    bool reserved1 = false; ///< not read by the editor
    /// The row accepts nested rows; without it an insertion goes behind the row, not into it.
    bool hasChildren = false;
    /// The row opens its panels.
    bool editable = false;
    /// The palette row can be dragged and offers to add the step.
    bool draggable = false;
    bool reserved2 = false;           ///< not read by the editor
    bool nameEditable = false;        ///< the name can be changed
    bool tagEnabled = false;          ///< a tag can be set: the step can be a goto target
    bool loopEnabled = false;         ///< the step can be looped by itself
    bool preConditionEnabled = false; ///< a pre-condition can be set
    bool postActionEnabled = false;   ///< jumps after the step can be set
    bool statementsEnabled = false;   ///< statements before and after the step can be set
    bool reserved3 = true;            ///< not read by the editor
    /// Free keys; "udsJson" holds the starting text of a diagnostic step.
    std::map<std::string, std::string> extra;
    std::vector<BaseStepProperty> children; ///< nested kinds: the palette's folders
};
