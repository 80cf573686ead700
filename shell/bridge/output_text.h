#pragma once

#include <QLatin1String>

/// Texts that the output pane's lines share.
namespace output_text {

/// The line that ends what one press of a button had to say.
inline QLatin1String rule()
{
    return QLatin1String(" ----------------------------------------------------------\n");
}

} // namespace output_text
