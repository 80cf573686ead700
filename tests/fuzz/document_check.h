#pragma once

#include <QByteArray>
#include <QString>

/// What must hold of any bytes whatever that are taken for a document.
namespace document_check {

/// Loads the bytes as the editor does, walks all that was read, saves it and loads that again.
/// An empty text if all is well: what was read is a fixed point, every block is found under its
/// uuid, and what is written can be read by the bare JSON library.
QString faultOf(const QByteArray& document);

} // namespace document_check
