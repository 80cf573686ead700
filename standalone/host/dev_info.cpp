#include "model/services/dev_info.h"

namespace sdk_ui_interface {
namespace dev_info {

// No device drivers stand behind this host yet: no device, no channel.
DevInfo getDeviceInfo(int)
{
    return DevInfo();
}

QMap<int, ChannelMapping> getDeviceMapping(NetWorkType)
{
    return {};
}

} // namespace dev_info
} // namespace sdk_ui_interface
