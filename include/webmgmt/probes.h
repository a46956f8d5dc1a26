/*
 * webmgmt: system probes and actions: device commands and processes, interfaces and
 * ports, the ARP table and DHCP leases, statistics, firmware verification and small
 * conversions.
 */
#ifndef WEBMGMT_PROBES_H
#define WEBMGMT_PROBES_H

#include <stdarg.h>
#include <stddef.h>
#include <stdint.h>

#include "webmgmt/common.h"
#include "webmgmt/network.h"
#include "webmgmt/record_types.h"

WEBMGMT_BEGIN_DECLS

/* ===================================================================================== */
/* Command execution and processes                                                       */
/* ===================================================================================== */

/* One process as the /proc scanner sees it. */
typedef struct proc_entry {
    int32_t pid;
    char user[9];  /* user name or numeric uid, cut to 8 characters */
    char state[4]; /* state letter, ' ' or 'W', '<' 'N' or ' ', NUL */
    uint32_t rss;  /* kilobytes */
    int32_t ppid;
    char short_cmd[16]; /* command name from /proc/<pid>/stat */
} proc_entry;
WEBMGMT_STATIC_ASSERT(sizeof(proc_entry) == 44, "proc_entry layout");

WEBMGMT_API extern const char *bb_applet_name;
WEBMGMT_API extern int bb_default_error_retval;
WEBMGMT_API extern const char *const bb_msg_memory_exhausted;

WEBMGMT_API int do_system(const char *format, ...) WEBMGMT_PRINTF(1, 2);
WEBMGMT_API int Kill_App_byname(const char *name);
WEBMGMT_API int Kill_App_byPid(const char *pid);
WEBMGMT_API int File_Exist(const char *path);
/* `buffer` must hold 255 bytes. */
WEBMGMT_API char *getStrvalfromfile(const char *path, char *buffer);
WEBMGMT_API int getPid(const char *path);
WEBMGMT_API proc_entry *procps_scan(void);
/* Heap list of pids ending in 0, or the single value -1; the caller frees it. */
WEBMGMT_API int32_t *find_pid_by_name(const char *name);
WEBMGMT_API int is_runing(const char *name);
WEBMGMT_API int Cloud_Config(int mode, int enable);
WEBMGMT_API void bb_verror_msg(const char *format, va_list args);
WEBMGMT_API WEBMGMT_NORETURN void bb_error_msg_and_die(const char *format, ...)
    WEBMGMT_PRINTF(1, 2);
WEBMGMT_API void *xmalloc(size_t size);
WEBMGMT_API void *xrealloc(void *block, size_t size);
WEBMGMT_API char *safe_strncpy(char *dst, const char *src, size_t size);
WEBMGMT_API char *my_getug(char *buffer, const char *name, long id, int bufsize, char prefix);
WEBMGMT_API char *my_getpwuid(char *buffer, long uid, int bufsize);

/* ===================================================================================== */
/* Interface and port probes, ARP and leases, statistics                                 */
/* ===================================================================================== */

/* --- Port status ------------------------------------------------------------------------ */

#define WEBMGMT_PORT_COUNT 12

/* One Ethernet port as the probes see it: its /proc/net/dev counters in that file's column
 * order (receive: bytes, packets, errors, drops, fifo, frame, compressed, multicast;
 * transmit: bytes, packets, errors, drops, fifo, collisions, carrier, compressed), the link,
 * the speed code (0 = 10 Mb/s or unknown, 4 = 100, 8 = 1000, 16 = 2500, 32 = 10000) and
 * the duplex (2 = full, 0 = half or unknown). */
#define WEBMGMT_PORT_STATUS_MEMBERS(X)                                                             \
    X(1, int32_t, port, )                                                                          \
    X(4, char, ifname, [20])                                                                       \
    X(8, uint64_t, rx_bytes, )                                                                     \
    X(8, uint64_t, tx_bytes, )                                                                     \
    X(9, uint32_t, rx_packets, )                                                                   \
    X(9, uint32_t, rx_errors, )                                                                    \
    X(9, uint32_t, rx_drops, )                                                                     \
    X(9, uint32_t, rx_fifo, )                                                                      \
    X(9, uint32_t, rx_frame, )                                                                     \
    X(9, uint32_t, rx_compressed, )                                                                \
    X(9, uint32_t, rx_multicast, )                                                                 \
    X(9, uint32_t, tx_packets, )                                                                   \
    X(9, uint32_t, tx_errors, )                                                                    \
    X(9, uint32_t, tx_drops, )                                                                     \
    X(9, uint32_t, tx_fifo, )                                                                      \
    X(9, uint32_t, tx_collisions, )                                                                \
    X(9, uint32_t, tx_carrier, )                                                                   \
    X(9, uint32_t, tx_compressed, )                                                                \
    X(4, uint8_t, link, )                                                                          \
    X(4, uint8_t, speed_code, )                                                                    \
    X(4, uint8_t, duplex, )                                                                        \
    X(0, uint8_t, pad_end, [5])
typedef struct port_status {
    WEBMGMT_PORT_STATUS_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} port_status;
WEBMGMT_STATIC_ASSERT(sizeof(port_status) == 104, "port_status layout");
WEBMGMT_STATIC_ASSERT(offsetof(port_status, rx_bytes) == 24, "port_status layout");
WEBMGMT_STATIC_ASSERT(offsetof(port_status, link) == 96, "port_status layout");

/* --- Memory and processor samples ------------------------------------------------------- */

/* The kernel's sysinfo figures, each widened to 64 bits (the kernel's record is made of
 * longs, 4 bytes on the device and 8 on hosts), then the two figures the status page shows:
 * the nominal memory size in megabytes and the softened use in percent. */
#define WEBMGMT_MEM_SAMPLE_MEMBERS(X)                                                              \
    X(8, int64_t, uptime, )                                                                        \
    X(8, uint64_t, loads, [3])                                                                     \
    X(8, uint64_t, totalram, )                                                                     \
    X(8, uint64_t, freeram, )                                                                      \
    X(8, uint64_t, sharedram, )                                                                    \
    X(8, uint64_t, bufferram, )                                                                    \
    X(8, uint64_t, totalswap, )                                                                    \
    X(8, uint64_t, freeswap, )                                                                     \
    X(2, uint16_t, procs, )                                                                        \
    X(0, uint8_t, pad_mem_unit, [2])                                                               \
    X(9, uint32_t, mem_unit, )                                                                     \
    X(8, uint64_t, totalhigh, )                                                                    \
    X(8, uint64_t, freehigh, )                                                                     \
    X(9, uint32_t, mem_class, )                                                                    \
    X(9, uint32_t, mem_usage, )
typedef struct mem_sample {
    WEBMGMT_MEM_SAMPLE_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} mem_sample;
WEBMGMT_STATIC_ASSERT(sizeof(mem_sample) == 112, "mem_sample layout");
WEBMGMT_STATIC_ASSERT(offsetof(mem_sample, mem_class) == 104, "mem_sample layout");

/* The aggregate line of /proc/stat and the lines of four cores. */
#define WEBMGMT_CPU_SAMPLES 5

/* One /proc/stat line: its seven counters, then the totals of the first and the latest
 * call (`last_idle` is the idle counter of the latest call) and the load in percent. */
#define WEBMGMT_CPU_SAMPLE_MEMBERS(X)                                                              \
    X(9, uint32_t, user, )                                                                         \
    X(9, uint32_t, nice, )                                                                         \
    X(9, uint32_t, system, )                                                                       \
    X(9, uint32_t, idle, )                                                                         \
    X(9, uint32_t, iowait, )                                                                       \
    X(9, uint32_t, irq, )                                                                          \
    X(9, uint32_t, softirq, )                                                                      \
    X(9, uint32_t, first_total, )                                                                  \
    X(9, uint32_t, total, )                                                                        \
    X(9, uint32_t, first_idle, )                                                                   \
    X(9, uint32_t, last_idle, )                                                                    \
    X(9, uint32_t, usage, )
typedef struct cpu_sample {
    WEBMGMT_CPU_SAMPLE_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} cpu_sample;
WEBMGMT_STATIC_ASSERT(sizeof(cpu_sample) == 48, "cpu_sample layout");

/* The previous call's total and idle of one /proc/stat line. */
#define WEBMGMT_CPU_PREVIOUS_MEMBERS(X)                                                            \
    X(9, uint32_t, total, )                                                                        \
    X(9, uint32_t, idle, )
typedef struct cpu_previous {
    WEBMGMT_CPU_PREVIOUS_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} cpu_previous;
WEBMGMT_STATIC_ASSERT(sizeof(cpu_previous) == 8, "cpu_previous layout");

/* The status area a status program keeps between probes: the twelve port records and the
 * previous processor samples the load is computed against (zero before the first call). */
#define WEBMGMT_SYS_STATUS_MEMBERS(X)                                                              \
    X(0, port_status, port, [WEBMGMT_PORT_COUNT])                                                  \
    X(0, cpu_previous, cpu_prev, [WEBMGMT_CPU_SAMPLES])
typedef struct sys_status {
    WEBMGMT_SYS_STATUS_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} sys_status;
WEBMGMT_STATIC_ASSERT(sizeof(sys_status) == 1288, "sys_status layout");

/* --- ARP host table and lease lists ----------------------------------------------------- */

#define WEBMGMT_ARP_HOSTS 500

/* One host of the ARP host table, 500 bytes: the IP text at byte 4, the upper-case MAC
 * text with colons at byte 24 and the host name at byte 194, as the pages read them. The
 * bytes around them are kept for the device's other readers and left zero. */
#define WEBMGMT_ARP_HOST_MEMBERS(X)                                                                \
    X(0, uint8_t, resved_head, [4])                                                                \
    X(4, char, ip, [20])                                                                           \
    X(4, char, mac, [20])                                                                          \
    X(0, uint8_t, resved_mid, [150])                                                               \
    X(4, char, hostname, [64])                                                                     \
    X(0, uint8_t, resved, [242])
typedef struct arp_host {
    WEBMGMT_ARP_HOST_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} arp_host;
WEBMGMT_STATIC_ASSERT(sizeof(arp_host) == 500, "arp_host layout");
WEBMGMT_STATIC_ASSERT(offsetof(arp_host, mac) == 24, "arp_host layout");
WEBMGMT_STATIC_ASSERT(offsetof(arp_host, hostname) == 194, "arp_host layout");

/* The ARP host table get_arplist() fills: a count, then the hosts in the LAN subnet. */
#define WEBMGMT_ARP_TABLE_MEMBERS(X)                                                               \
    X(1, int32_t, count, )                                                                         \
    X(0, arp_host, host, [WEBMGMT_ARP_HOSTS])
typedef struct arp_host_table {
    WEBMGMT_ARP_TABLE_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} arp_host_table;
WEBMGMT_STATIC_ASSERT(sizeof(arp_host_table) == 250004, "arp_host_table layout");

/* One node of a host list read from the ARP table or a DHCP lease file. `sort_key` is the
 * lease's IPv4 address word as read (network order). The node holds a pointer, so it is
 * 152 bytes on the 32-bit device and 160 on 64-bit hosts: allocate sizeof(lease_entry). */
#define WEBMGMT_LEASE_ENTRY_MEMBERS(X)                                                             \
    X(1, int32_t, reserved, )                                                                      \
    X(4, char, ip, [32])                                                                           \
    X(4, char, hw_type, [8])                                                                       \
    X(4, char, mac, [32])                                                                          \
    X(4, char, expires, [16])                                                                      \
    X(4, char, hostname, [52])                                                                     \
    X(9, uint32_t, sort_key, )                                                                     \
    X(0, struct lease_entry *, next, )
typedef struct lease_entry {
    WEBMGMT_LEASE_ENTRY_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} lease_entry;
WEBMGMT_STATIC_ASSERT(offsetof(lease_entry, sort_key) == 144, "lease_entry layout");
WEBMGMT_STATIC_ASSERT(!WEBMGMT_ILP32 || sizeof(lease_entry) == 152, "lease_entry, ILP32");
WEBMGMT_STATIC_ASSERT(WEBMGMT_ILP32 || sizeof(lease_entry) == 160, "lease_entry, LP64");

/* ===================================================================================== */
/* Firmware verification and small conversions                                           */
/* ===================================================================================== */

WEBMGMT_API int verify_upgrade_image(const char *image_path, const char *signature_path);
WEBMGMT_API int str2mac(const char *text, unsigned char *mac);
WEBMGMT_API int mac_is_zero(const unsigned char *mac);
WEBMGMT_API int c2i(char c);
WEBMGMT_API int hex2dec(const char *text);
WEBMGMT_API int split_mac_convert_int_array(char *text, const char *separators, unsigned char *mac);
/* `dst` must hold half the text's length plus one. */
WEBMGMT_API void HexToStr(char *dst, const char *hex);
WEBMGMT_API void HexToAscii(const unsigned char *bytes, char *dst, int count);
WEBMGMT_API void AsciiToHex(const char *hex, unsigned char *dst, int length);
/* `dst` is zeroed by the caller and must hold 6 times the text's length plus one. */
WEBMGMT_API void filter_xml_name(const char *text, char *dst);
/* `dst` is zeroed by the caller and must hold twice the text's length plus one. */
WEBMGMT_API void filter_json_name(const char *text, char *dst);
WEBMGMT_API int web_commd_str_filter(char *buffer, int length);
WEBMGMT_API void str_replace_char(const char *src, char *dst, const char *chars,
                                  const char *const *replacements, int count);
WEBMGMT_API char *strAToa(char *text);
WEBMGMT_API char *straToA(char *text);
WEBMGMT_API int low2UpperChar(const char *src, int count, char *dst);
WEBMGMT_API int ntod(uint32_t mask);
WEBMGMT_API int mypow2(int n);
WEBMGMT_API int change_time_to_int(const char *hhmm);
WEBMGMT_API int check_time_one_day(const char *start, const char *end);
/* Writes the 19-character time and a terminator: `dst` must hold 20 bytes. */
WEBMGMT_API int get_current_time(char *dst);
WEBMGMT_API uint32_t get_now_msec(void);
WEBMGMT_API int fwritestr(const char *path, const char *text);

/* ===================================================================================== */
/* Live state: interfaces and ports, the ARP table and leases, statistics                */
/* ===================================================================================== */

struct lan_config;

#define WEBMGMT_PORT_ROLE_UNUSED 0
#define WEBMGMT_PORT_ROLE_LAN 1
#define WEBMGMT_PORT_ROLE_WAN 2

/* The board's Ethernet ports as the port probes and the port lists read them: whether the
 * ports sit behind an external switch (read through "swconfig dev switch1"), and for each
 * of the twelve port slots its role (WEBMGMT_PORT_ROLE_*) and its interface name as found
 * in /proc/net/dev (empty: no such port). Port numbers are slot + 1. */
#define WEBMGMT_PORT_MAP_MEMBERS(X)                                                                \
    X(4, uint8_t, ext_switch, )                                                                    \
    X(0, uint8_t, role, [WEBMGMT_PORT_COUNT])                                                      \
    X(0, uint8_t, pad_ifname, [3])                                                                 \
    X(4, char, ifname, [WEBMGMT_PORT_COUNT][20])
typedef struct port_map {
    WEBMGMT_PORT_MAP_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} port_map;
WEBMGMT_STATIC_ASSERT(sizeof(port_map) == 256, "port_map layout");
WEBMGMT_STATIC_ASSERT(offsetof(port_map, ifname) == 16, "port_map layout");

/* Interfaces. MAC forms: 0 six raw bytes, 1 "%02X" x6, 2 upper case with colons, 3 lower
 * case with colons (`dst` 18 bytes). Dotted addresses need 16 bytes. */
WEBMGMT_API int getIfMac(const char *ifname, void *dst, int form);
WEBMGMT_API int getIfHalfMac(const char *ifname, char *dst, int form);
/* The gateway of the routes whose line contains `ifname` (the default route's, else the
 * last up route's); "" for a route without gateway; `dst` untouched when none matches. */
WEBMGMT_API void getIfGateway(const char *ifname, char *dst);
WEBMGMT_API int getIfBcastIP(const char *ifname, char *dst, int size);
WEBMGMT_API int getEthUp_Down(const char *ifname);
/* The interface's IPv4 address (SIOCGIFADDR), its netmask (SIOCGIFNETMASK), and the
 * gateway of its default route in /proc/net/route (the interface named exactly): 0 and
 * the dotted text in `dst` (16 bytes), or -1 with `dst` untouched. */
WEBMGMT_API int getIfIp(const char *ifname, char *dst);
WEBMGMT_API int getIfsubnetIp(const char *ifname, char *dst);
WEBMGMT_API int getIfgwIp(const char *ifname, char *dst);

/* Ports. */
WEBMGMT_API int getEthStatus(const char *ifname, port_status *status, int index,
                             const port_map *map);
WEBMGMT_API void get_eth_summary(sys_status *status, const port_map *map);
/* A rate for display, "%.1f" and bps, Kbps, Mbps or Gbps: `dst` must hold 24 bytes. */
WEBMGMT_API void Byte_conversion(uint64_t value, char *dst);
/* The port numbers of the WAN ports and of the LAN ports, ascending, joined by commas
 * ("1,5"; "" when there is none), within `size`; the number of ports listed. */
WEBMGMT_API int get_wan_ports(const port_map *map, char *dst, int size);
WEBMGMT_API int get_lan_ports(const port_map *map, char *dst, int size);
/* The description lldpd announces for an interface: the last "configure ports <ifname>
 * lldp portidsubtype local <description>" line of /etc/lldpd.conf. 0, or -1 ("open file
 * error\n" on standard output when the file cannot be read) with `dst` untouched. */
WEBMGMT_API int get_port_desc(const char *ifname, char *dst, int size);

/* The ARP table and DHCP leases. A lease node's MAC is "%02X:%02X:%02X:%02X:%02X:%02X",
 * an ARP node's the 12 hexadecimal digits alone. */
WEBMGMT_API int get_arplist(const struct lan_config *lan, arp_host_table *table);
/* `ip` must hold 16 bytes. 0 when found, else -1 and `ip` untouched. */
WEBMGMT_API int get_ipbymac_arp(const char *mac, char *ip);
WEBMGMT_API int get_arp_cache(const char *device, lease_entry **head);
WEBMGMT_API int search_by_mac(lease_entry *head, const char *mac);
/* `dst` must hold 13 bytes. */
WEBMGMT_API void mac2hexStrip(const char *mac, char *dst);
WEBMGMT_API char chUpcase(char c);
WEBMGMT_API void dump_macip(lease_entry *head);
/* A 24-byte legacy lease record, and a 36-byte address-server record. */
WEBMGMT_API void add_lease(lease_entry *node, const void *record);
WEBMGMT_API void add_addrserverlease(lease_entry *node, const void *record);
WEBMGMT_API int get_leases(lease_entry **head);
WEBMGMT_API int get_addrserver_leases(lease_entry **head, const char *path, const char *pidfile);
WEBMGMT_API void sort_dhcplist(lease_entry *head);
WEBMGMT_API void free_leaselist(lease_entry **head);
WEBMGMT_API void delay_get_lease_by_kill(const char *ifname, int index, int pid);
/* `name` must hold 21 bytes; untouched when no lease has the MAC. 0 when found, else -1. */
WEBMGMT_API int get_DevnamebyMacfromLease(const char *path, const char *mac, char *name);

/* Statistics. */
WEBMGMT_API uint32_t get_mem_use(mem_sample *mem);
WEBMGMT_API long getSysUptime(void);
/* `cpu` holds WEBMGMT_CPU_SAMPLES records. */
WEBMGMT_API int getcpu_usage(cpu_sample *cpu, sys_status *status);
WEBMGMT_API int get_cmd_res(const char *command, char *buffer, int size);
/* Hosts seen by the traffic counter of /proc/mac, printed on standard output as a JSON
 * array (see docs/behaviour.md): the routed hosts (those with an IPv4 address), and every
 * station including those without one. The number of hosts printed, or -1. */
WEBMGMT_API int showuser_statistic(void);
WEBMGMT_API int showlayer2user_statistic(void);

/* ===================================================================================== */
/* Bridge members, LAN port VLANs and IPv6 state                                         */
/* ===================================================================================== */

/* Room for an IPv6 address as text (inet_ntop needs 46 bytes with its terminator). */
#define WEBMGMT_IPV6_TEXT 48

/* One IPv6 address of an interface, as /proc/net/if_inet6 lists it. `scope` is the
 * kernel's scope code (0 global, 0x10 host, 0x20 link); `flags` its address flags. */
#define WEBMGMT_IPV6_ADDR_ENTRY_MEMBERS(X)                                                         \
    X(4, char, address, [WEBMGMT_IPV6_TEXT])                                                       \
    X(1, int32_t, prefix_len, )                                                                    \
    X(1, int32_t, scope, )                                                                         \
    X(9, uint32_t, flags, )
typedef struct ipv6_addr_entry {
    WEBMGMT_IPV6_ADDR_ENTRY_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} ipv6_addr_entry;
WEBMGMT_STATIC_ASSERT(sizeof(ipv6_addr_entry) == 60, "ipv6_addr_entry layout");

/* One IPv6 route, as /proc/net/ipv6_route lists it: destination and prefix length, next
 * hop ("::" for a route on the link), metric, route flags (RTF_*), device. */
#define WEBMGMT_IPV6_ROUTE_ENTRY_MEMBERS(X)                                                        \
    X(4, char, destination, [WEBMGMT_IPV6_TEXT])                                                   \
    X(1, int32_t, prefix_len, )                                                                    \
    X(4, char, next_hop, [WEBMGMT_IPV6_TEXT])                                                      \
    X(9, uint32_t, metric, )                                                                       \
    X(9, uint32_t, flags, )                                                                        \
    X(4, char, device, [16])
typedef struct ipv6_route_entry {
    WEBMGMT_IPV6_ROUTE_ENTRY_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} ipv6_route_entry;
WEBMGMT_STATIC_ASSERT(sizeof(ipv6_route_entry) == 124, "ipv6_route_entry layout");
WEBMGMT_STATIC_ASSERT(offsetof(ipv6_route_entry, next_hop) == 52, "ipv6_route_entry layout");

/* The member interfaces of `bridge` (from /sys/class/net/<bridge>/brif), joined by single
 * spaces and cut at `size`; the number of members, or -1 when there is no such bridge or
 * the name is not an interface name. `out` may be null when `size` is 0. */
WEBMGMT_API int get_bridge_brif_list(const char *bridge, char *out, size_t size);
WEBMGMT_API int get_bridge_brif_count(const char *bridge);
/* Applies the VLAN of every LAN port that exists and supports VLANs to switch0 with
 * swconfig, then applies the switch; 0 when every run exited 0, else -1. */
WEBMGMT_API int ConfigLanPortVLAN(const lan_config *lan);
/* The first address of `ifname` with scope `scope`, as compressed text, and its prefix
 * length (when `prefix` is not null); 0, or -1 when there is none. */
WEBMGMT_API int getIfIPV6(const char *ifname, int scope, char *out, size_t size, int *prefix);
/* Every address of `ifname`, at most `capacity`; the number written. */
WEBMGMT_API int getIfIPV6_list(const char *ifname, ipv6_addr_entry *list, int capacity);
/* The routes of `ifname` (of every device for a null or empty name), at most `capacity`;
 * the number written. */
WEBMGMT_API int ipv6_route_get(const char *ifname, ipv6_route_entry *routes, int capacity);
/* The next hop of the last default route of `ifname`; 0, or -1 when it has none. */
WEBMGMT_API int ipv6_default_gateway(const char *ifname, char *out, size_t size);
/* The first two IPv6 name servers of /tmp/resolv.conf.auto, each cut at `size` (either
 * buffer may be null); the number found, 0 to 2. */
WEBMGMT_API int resolv_ipv6_nameserver(char *dns1, char *dns2, size_t size);

WEBMGMT_END_DECLS
#endif /* WEBMGMT_PROBES_H */
