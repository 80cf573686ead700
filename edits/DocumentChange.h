#pragma once

#include "model/services/document_state.h"

#include <QString>

#include <vector>

/// What one act of the user has changed in a document: by value, and small, since states are
/// shared.
struct DocumentChange
{
    enum class Part { Step, Sequence, Variable };

    /// One part that came, went, moved or changed.
    struct Item
    {
        Part part = Part::Step;
        QString sequenceId;              ///< of a step and a sequence; of a variable empty
        QString id;                      ///< uuid of a step or variable; a sequence's is sequenceId
        document_state::StatePtr before; ///< null: it wasn't there
        document_state::StatePtr after;  ///< null: it is gone
    };

    QString appName;
    std::vector<Item> items; ///< in the order of their changes
};
