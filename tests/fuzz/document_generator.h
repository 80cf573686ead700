#pragma once

#include <QByteArray>

#include <random>

/// Documents for tests that need many: valid ones with blocks of every kind and random values, and
/// what damage makes of them. The same numbers give the same document everywhere.
namespace document_generator {

using Random = std::mt19937;

/// A whole number below @p count.
int below(Random& random, int count);

/// A document as the editor saves it: "logicview" and "logicvar" of an applet of some sequences.
QByteArray document(Random& random);

/// The same with one to four faults: members of wrong types, doubled, missing or renamed, values
/// that have changed places, uuids twice, deep nesting, numbers out of range; and of the bytes
/// some changed, cut out, doubled or cut off.
QByteArray damaged(const QByteArray& document, Random& random);

} // namespace document_generator
