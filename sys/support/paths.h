// The device's fixed paths, in one place. When WEBMGMT_ROOT is set (tests, the demo) each
// of them lives under that directory; on the device it is unset and they are used as is.
#pragma once

#include <cstddef>

namespace wm {

namespace fixed {
inline constexpr char kProc[] = "/proc";
inline constexpr char kSystemLog[] = "/tmp/system.log";
inline constexpr char kCmdRamMarker[] = "/var/cmd_ram";
inline constexpr char kCmdFlashMarker[] = "/var/cmd_flash";
inline constexpr char kCmdRamLog[] = "/tmp/cmdinfo";
inline constexpr char kCmdFlashLog[] = "/usr/sbin/cmdinfo";
inline constexpr char kCloudWatchdogPid[] = "/var/run/check-cloud-client.pid";
inline constexpr char kKillForUpload[] = "/usr/sbin/killforuploadfile.sh";
inline constexpr char kLoginLock[] = "/var/loginlock";
inline constexpr char kUserToken[] = "/var/usertoken";
inline constexpr char kConntrackCount[] = "/proc/sys/net/netfilter/nf_conntrack_count";
inline constexpr char kConntrackMax[] = "/proc/sys/net/netfilter/nf_conntrack_max";
// The configuration store: memory copies (lost at reboot), flash copies, factory defaults.
inline constexpr char kConfigMemoryDir[] = "/var/config";
inline constexpr char kConfigFlashDir[] = "/etc/config_flash";
inline constexpr char kConfigDefaultsDir[] = "/usr/share/webmgmt/defaults";
// Firmware images waiting to be installed: the controller's own and the one for its APs.
inline constexpr char kAcFirmwareImage[] = "/var/upgrade_sw.bin";
inline constexpr char kApFirmwareImage[] = "/tmp/up_fireware/up.bin";
// Client accounts and access lists: the kernel's MAC-binding interface (a plain file on
// hosts), the access-list lock.
inline constexpr char kProcMac[] = "/proc/mac";
// Where /proc/mac is written under WEBMGMT_ROOT, whose proc/ is the host's own /proc.
inline constexpr char kProcMacStandIn[] = "/var/proc_mac";
inline constexpr char kWifiAclLock[] = "/var/wifi_acl.lock";
// The live-state readers: interfaces, ARP, leases, statistics.
inline constexpr char kNetRoute[] = "/proc/net/route";
inline constexpr char kNetDev[] = "/proc/net/dev";
inline constexpr char kNetArp[] = "/proc/net/arp";
inline constexpr char kProcStat[] = "/proc/stat";
inline constexpr char kReadUserLock[] = "/var/readuserlock";
inline constexpr char kLeaseFile[] = "/var/udhcpd.leases";
inline constexpr char kLeasePoolFormat[] = "/var/udhcpd_%s.%d.leases";
inline constexpr char kLeaseServerPid[] = "/var/run/udhcpd.pid";
inline constexpr char kLldpdConf[] = "/etc/lldpd.conf";
// Bridges, IPv6 addresses and routes as the kernel lists them, and the resolver file that
// the network daemon writes for the upstream name servers.
inline constexpr char kSysClassNet[] = "/sys/class/net";
inline constexpr char kIfInet6[] = "/proc/net/if_inet6";
inline constexpr char kIpv6Route[] = "/proc/net/ipv6_route";
inline constexpr char kResolvAuto[] = "/tmp/resolv.conf.auto";
} // namespace fixed

inline constexpr size_t kPathSize = 512;

struct DevicePath {
    char text[kPathSize];
    const char *c_str() const { return text; }
};

// `fixed` (an absolute device path) as this process must open it.
DevicePath device_path(const char *fixed);
// The same for a path built with a format, such as "/proc/%d/stat".
DevicePath device_pathf(const char *format, ...) __attribute__((format(printf, 1, 2)));
// The directory fixed paths are placed under: "" on the device.
const char *device_root();

// /proc/mac, the kernel's MAC-binding interface: on the device the kernel's file; under
// WEBMGMT_ROOT a plain file beside the tree's other state, since the tree's proc/ is the
// host's own /proc.
DevicePath proc_mac_path();

// The short command name of the DHCP server, as /proc/<pid>/stat shows it.
inline constexpr char kLeaseServerName[] = "udhcpd";

// True when `pid` is a running process whose command name is `name` (read from
// /proc/<pid>/stat): signals go only to the process a pid file is meant to name.
bool process_is(int pid, const char *name);
} // namespace wm
