// The fixed paths of the live-state readers (interfaces, ARP, leases, statistics), mapped
// like every fixed path through device_path().
#pragma once

namespace wm::fixed {
inline constexpr char kNetRoute[] = "/proc/net/route";
inline constexpr char kNetDev[] = "/proc/net/dev";
inline constexpr char kNetArp[] = "/proc/net/arp";
inline constexpr char kProcStat[] = "/proc/stat";
inline constexpr char kProcMac[] = "/proc/mac";
inline constexpr char kReadUserLock[] = "/var/readuserlock";
inline constexpr char kLeaseFile[] = "/var/udhcpd.leases";
inline constexpr char kLeasePoolFormat[] = "/var/udhcpd_%s.%d.leases";
inline constexpr char kLeaseServerPid[] = "/var/run/udhcpd.pid";
inline constexpr char kLldpdConf[] = "/etc/lldpd.conf";
} // namespace wm::fixed

namespace wm {
// The short command name of the DHCP server, as /proc/<pid>/stat shows it.
inline constexpr char kLeaseServerName[] = "udhcpd";

// True when `pid` is a running process whose command name is `name` (read from
// /proc/<pid>/stat): signals go only to the process a pid file is meant to name.
bool process_is(int pid, const char *name);
} // namespace wm
