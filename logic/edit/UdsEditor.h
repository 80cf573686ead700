#pragma once

#include <QString>

#include <functional>

struct UDSProcessInfo;

/// The dialog that sets up a diagnostic step (UDS, ISO 14229). @p id names the block to edit, or
/// the sequence that a new step is for; @p info goes in with what there is and comes back with what
/// the person chose. Returns at the dialog's end; false: it was cancelled or can't be opened, and
/// nothing may change. Called on the GUI thread.
using UdsEditor = std::function<bool(const QString& appName, const QString& id, int stepType,
                                     UDSProcessInfo& info)>;
