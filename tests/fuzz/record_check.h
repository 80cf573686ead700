#pragma once

#include <QByteArray>
#include <QString>

/// What must hold of any bytes whatever that a child writes to its report channel.
namespace record_check {

/// Whether the bytes are a run's reports without a fault, to their end.
bool isWhole(const QByteArray& bytes);

/// Takes the bytes as a run does, at once and in pieces, and writes what was taken as records
/// again. An empty text if all is well: it is the same each time and fits into its bounds.
QString faultOf(const QByteArray& bytes);

} // namespace record_check
