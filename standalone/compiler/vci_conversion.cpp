#include "model/services/capplet.h"

namespace sdk_ui_interface {
namespace capplet {

/// The conversion belongs to the maker of a VCI device: it needs the device's own compiler and
/// library, which a stand-alone program doesn't have. So it fails, and says so by its result.
int transCCodeToVciCode(QString, QString, QStringList)
{
    constexpr int Failure = -1;
    return Failure;
}

} // namespace capplet
} // namespace sdk_ui_interface
