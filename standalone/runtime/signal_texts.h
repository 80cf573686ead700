#pragma once

#include <QString>

namespace standalone {

/// What a signal that ends a process means, with its name.
QString signalText(int number);

} // namespace standalone
