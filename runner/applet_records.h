#pragma once

/// The record types of variables: bus frames, diagnostic messages and the settings of a measurement
/// and calibration connection (XCP). Written beside the generated code like applet_runtime.h.

#include "applet_runtime.h"

/// A CAN or CAN FD frame.
struct DrelCan
{
    u64 curtime; ///< microseconds
    u8 canNo;    ///< channel, from 1
    u32 dir;     ///< 0 received, 1 sent
    u32 rtr;     ///< remote frame
    u32 xtd;     ///< extended identifier
    u32 Id;
    u8 de;
    u8 fd;
    u8 brs;
    u8 esi;
    u8 dlc;
    u8 byteDataLen;
    u8 FData[64];
};

struct DrelLin
{
    u64 curtime;
    u8 linNo;
    u32 dir;
    u8 Id;
    u8 byteDataLen;
    u8 FData[8];
};

struct DrelEth
{
    u64 curtime;
    u8 ethNo;
    u32 dir;
    u32 byteDataLen;
    u8* FData;
};

enum NetWorkType : u32 { NETWORKTPE_CAN, NETWORKTPE_LIN, NETWORKTPE_ETH };

struct DrelUdsCanParam
{
    bool physical_address_ext;
    bool functional_address_ext;
    bool response_address_ext;
    bool en_custom_send_frame_interval;
    bool fd_en_brs;
    u16 max_len;
    u32 receive_frame_interval;
    u32 send_frame_interval;
    u32 send_block_size;
    u32 fc_frame_after_interval;
    u8 fd_max_dlc;
};

struct DrelEthParam
{
    u16 port;
    union {
        char ipv4[16];
        char ipv6[48];
    } ipaddr;
};

struct DrelUdsIpParam
{
    bool isIpv6;
    u32 mask;
    DrelEthParam ecu_ip;
    DrelEthParam local_ip;
};

/// How an ECU is reached (ISO 15765-2, ISO 13400-2).
struct DrelEcuInfo
{
    NetWorkType type;
    u8 channel;
    u8 MType;
    u32 N_TA_Phy;
    u8 N_TAtype_Phy;
    u32 N_TA_Fun;
    u8 N_TAtype_Fun;
    u32 TA;
    u32 SA;
    u8 fill;
    u8 N_AE;
    union {
        DrelUdsCanParam can_items;
        DrelUdsIpParam ip_items;
    } extra;
};

struct DrelBigMsg
{
    u32 MessageLen;
    char* MessageData;
};

struct DrelUds
{
    DrelEcuInfo* ecuinfo;
    DrelBigMsg* message;
};

typedef DrelCan* PDrelCan;
typedef DrelLin* PDrelLin;
typedef DrelEth* PDrelEth;
typedef DrelUds* PDrelUds;
typedef DrelEcuInfo* PDrelEcuInfo;
typedef DrelBigMsg* PDrelBigMsg;

struct mcan_bit_timing_param_t
{
    u16 prescaler;
    u16 num_seg1;
    u16 num_seg2;
    u8 num_sjw;
    bool enable_tdc;
};

struct XcpCanCfg
{
    u8 clk_mhz;
    mcan_bit_timing_param_t baud;
    bool fd;
    bool non_iso;
    mcan_bit_timing_param_t dbaud;
};

struct XcpODTEntry
{
    u8 BitOffset;
    u8 DAQSize;
    u8 DAQAddressExtension;
    u32 DAQAddress;
};

struct XcpDAQListCfg
{
    u16 DAQListNumber;
    u16 EventChannelNumber;
    u8 TransmissionRate;
    u8 DAQPriority;
};

struct XcpTransportLayerCan
{
    u32 BroadcastID;
    u32 MasterID;
    u32 SlaveID;
    bool IncrementalIdUsed;
};

struct XcpProtocolLayerCfg
{
    u16 T1, T2, T3, T4, T5, T6, T7; ///< milliseconds
    bool MotorolaFormat;
    u8 AddressGranularity;
    u8 Retries;
};

struct XcpEvent
{
    u16 EventChannelNumber;
    u8 TimeCycle;
    u8 TimeUnit;
    u8 Priority;
};

struct XcpCalibrationPage
{
    u8 SegmentNumber;
    u8 PageNumber;
};

struct XcpProgramFormat
{
    u8 CompressionMethod;
    u8 EncryptionMethod;
    u8 ProgrammingMehtod;
    u8 AccessMethod;
};
