#pragma once

#include <QMap>
#include <QString>

/// A connected VCI device. An unknown device has an empty name.
struct DevInfo
{
    int id = -1;
    QString name;
};

/// The kind of network whose channels are asked for.
enum NetWorkType : int { CanNetwork = 0, LinNetwork = 1, EthNetwork = 2 };

/// Service facade: devices and the channels mapped to them. GUI thread only.
namespace sdk_ui_interface {
namespace dev_info {

/// Where a logical channel lies.
struct ChannelMapping
{
    int device = -1; ///< id for getDeviceInfo
    int channel = 0; ///< of that device
};

DevInfo getDeviceInfo(int id);
/// Logical channel, counted from 0, to its place; empty without devices.
QMap<int, ChannelMapping> getDeviceMapping(NetWorkType type);

} // namespace dev_info
} // namespace sdk_ui_interface
