#pragma once

#include <QString>

class CustonStandModel;

/// The texts and flags of rows, shown anew as their blocks have them now. GUI thread only.
namespace row_texts {

/// The row of one block; nothing happens without a row or a block.
void refresh(CustonStandModel& model, const QString& appName, const QString& blockUuid);

/// All calls of sequences.
void refreshCalls(CustonStandModel& model, const QString& appName);

/// All jumps.
void refreshJumps(CustonStandModel& model, const QString& appName);

} // namespace row_texts
