#pragma once

#include "model/services/document_state.h"

#include <QString>

#include <vector>

/// What one act of the user has changed in a document: by value, and small, since states are
/// shared.
struct DocumentChange
{
    enum class Part { Step, Sequence, Variable, QuickStep, Template };
    /// What became of a part.
    enum class Kind {
        Added,
        Removed, ///< a default variable stays with the values of its like
        Moved,   ///< a step to another place
        Enabled, ///< a step's enable state alone
        Written  ///< its own fields
    };

    /// One part that came, went, moved or changed.
    struct Item
    {
        Part part = Part::Step;
        Kind kind = Kind::Written;
        QString sequenceId;              ///< of a step and a sequence; else empty
        QString id;                      ///< of the others, and of a step
        document_state::StatePtr before; ///< null: it wasn't there
        document_state::StatePtr after;  ///< null: it is gone
    };

    /// Whether the applet's document has changed, not only what the project keeps beside it: quick
    /// steps and templates.
    bool isOfDocument() const;

    QString appName;         ///< the one it was made in; empty where only the project was changed
    std::vector<Item> items; ///< in the order of their changes
};
