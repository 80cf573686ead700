#pragma once

#include "model/step_kinds.h"

/// A tree of steps as the rules of its structure see it: kinds and places, nothing of texts.
///
/// A node stands for a row; it is opaque, null for no row, and good until the tree changes. At the
/// top stand the flows, whose base types are their numbers and which have no parent.
class StepOutline
{
public:
    using Node = const void*;

    struct Kind
    {
        int baseType = NoBlock; ///< logicBlockType
        int stepType = step_type::None;
    };

    virtual ~StepOutline() = default;

    virtual Kind kind(Node node) const = 0;
    /// Whether steps can be put under the row: always for a flow, for a step by its kind.
    virtual bool takesChildren(Node node) const = 0;
    virtual Node parent(Node node) const = 0; ///< null for a flow
    virtual int row(Node node) const = 0;     ///< the place among the siblings, from 0
    virtual int childCount(Node node) const = 0;
    virtual Node child(Node node, int row) const = 0; ///< null outside the children
};
