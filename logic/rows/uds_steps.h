#pragma once

#include "model/BaseStepProperty.h"
#include "model/uds_records.h"

#include <QString>

#include <string>

class UdsProcessBlock;

/// Diagnostic steps (UDS, ISO 14229) between their blocks, their kinds and the dialog that sets
/// them up. GUI thread only.
namespace uds_steps {

/// Whether the applet has what the dialog needs: a kind of step type 1.
bool canBeEdited(const QString& appName);

/// A kind of the applet's custom list: those of step type 1 differ by name, all others by their
/// step type. An empty name if there is none.
BaseStepProperty kindOf(const QString& appName, int stepType, const std::string& name);

/// What the dialog starts with for a new step of a kind, and for an existing step.
UDSProcessInfo infoOf(const BaseStepProperty& kind);
UDSProcessInfo infoOf(const UdsProcessBlock& block);

/// Takes over what the dialog returned; without a name the step gets its kind's.
void takeOver(UdsProcessBlock& block, const UDSProcessInfo& info);

} // namespace uds_steps
