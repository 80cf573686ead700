#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>

/// Documents for tests that need many, and what must hold of any of them.
namespace documents {

/// A document as the editor saves it: "logicview" and "logicvar" of an applet of some sequences,
/// with blocks of every kind and random values. The same seed gives the same document everywhere.
QByteArray whole(std::uint32_t seed);

/// The same with one to four faults: members of wrong types, doubled, missing or renamed, values
/// that have changed places, uuids twice, deep nesting, numbers out of range; and of the bytes
/// some changed, cut out, doubled or cut off.
QByteArray damaged(std::uint32_t seed);

/// Loads any bytes as the editor does a document, walks all that was read, saves it and loads that
/// again. An empty text if all is well: what was read is a fixed point, every block is found under
/// its uuid, and what is written can be read by the bare JSON library.
QString faultOf(const QByteArray& document);

} // namespace documents
