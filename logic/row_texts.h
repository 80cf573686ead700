#pragma once

#include <QSet>
#include <QString>

class CustonStandModel;

/// The texts of rows that name something else of the document, written anew from their blocks.
/// Rows of @p staleUuids keep the mark of a block that must be compiled again. GUI thread only.
namespace row_texts {

/// The row of one block; nothing happens without a row or a block.
void refresh(const CustonStandModel& model, const QString& appName, const QString& blockUuid,
             const QSet<QString>& staleUuids);

/// All calls of sequences.
void refreshCalls(const CustonStandModel& model, const QString& appName,
                  const QSet<QString>& staleUuids);

/// All jumps.
void refreshJumps(const CustonStandModel& model, const QString& appName,
                  const QSet<QString>& staleUuids);

} // namespace row_texts
