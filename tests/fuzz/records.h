#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>

/// What a child says in its report channel, for tests that need much of it, and what must hold of
/// any bytes there.
namespace records {

/// The records of a run that keeps to the protocol, of every kind but questions to the user, which
/// somebody would have to answer; those come once at most, at the end. The same seed gives the same
/// bytes everywhere.
QByteArray whole(std::uint32_t seed);

/// The same with one to four faults: bytes changed, cut out, doubled or from elsewhere, records
/// that have changed places, lengths that don't fit, an end cut off.
QByteArray damaged(std::uint32_t seed);

/// Whether the bytes are a run's reports without a fault, to their end.
bool isWhole(const QByteArray& bytes);

/// Takes any bytes as a run does, at once and in pieces, and writes what was taken as records
/// again. An empty text if all is well: it is the same each time and fits into its bounds.
QString faultOf(const QByteArray& bytes);

} // namespace records
