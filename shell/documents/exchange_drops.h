#pragma once

#include <QStringList>

class QMimeData;

/// Exchange files that a user drops on an editor.
namespace exchange_drops {

/// The local files among the dropped ones whose suffix ends in "dpe" or "dpeenc", in any case, in
/// their order. Empty for data without such files.
QStringList files(const QMimeData& data);

} // namespace exchange_drops
