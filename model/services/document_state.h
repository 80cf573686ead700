#pragma once

#include <QString>

#include <memory>
#include <string>

/// Model service: how a part of a document stood, so that what was changed can be put back. Nobody
/// but the service looks into a state. States are no part of the document, and outlive it. GUI
/// thread only.
namespace document_state {

struct State;
using StatePtr = std::shared_ptr<const State>; ///< null: the part wasn't there

enum class Depth {
    EnableState, ///< whether the step is enabled
    Alone,       ///< its place and its own fields
    Whole        ///< the same with all steps under it
};

/// A step as it stands now.
StatePtr ofStep(const QString& appName, const QString& blockUuid, Depth depth);
/// A sequence without its variables: Alone its name, comment and main flag, Whole with all steps
/// and its place in the table.
StatePtr ofSequence(const QString& appName, const QString& sequenceId, Depth depth);
/// A variable of any scope with its place among its like.
StatePtr ofVariable(const std::string& uuid);

/// Makes the part stand as it did: puts it back under its uuids, or writes the fields of one that
/// is there and moves it. False, with nothing changed, if that can't be: its place is gone, or one
/// of its uuids is taken. A state may be restored any number of times.
bool restore(const QString& appName, const State& state);

} // namespace document_state
