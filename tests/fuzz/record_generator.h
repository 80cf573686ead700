#pragma once

#include <QByteArray>

#include <random>

/// What a child says in its report channel, for tests that need much of it. The same numbers give
/// the same bytes everywhere.
namespace record_generator {

using Random = std::mt19937;

/// The records of a run that keeps to the protocol, of every kind but questions to the user, which
/// somebody would have to answer; those come once at most, at the end.
QByteArray stream(Random& random);

/// The same with one to four faults: bytes changed, cut out, doubled or from elsewhere, records
/// that have changed places, lengths that don't fit, an end cut off.
QByteArray damaged(QByteArray stream, Random& random);

} // namespace record_generator
