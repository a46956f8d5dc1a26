/*
 * webmgmt: the network and rule-list records (LAN with its DHCP servers, WAN lines,
 * QoS, URL, MAC and IP/port filters, groups, port forwarding) and their field-table
 * builders.
 */
#ifndef WEBMGMT_NETWORK_H
#define WEBMGMT_NETWORK_H

#include <stdint.h>

#include "webmgmt/common.h"
#include "webmgmt/fields.h"
#include "webmgmt/record_types.h"

WEBMGMT_BEGIN_DECLS

/* ===================================================================================== */
/* Network and rule-list record catalogue                                                */
/* ===================================================================================== */

/* Rule lists are a count and a fixed array of elements; the array's size is the capacity. */
#define WEBMGMT_RULE_COUNT 32
#define WEBMGMT_GROUP_COUNT 16
#define WEBMGMT_LAN_BIND_COUNT 32
#define WEBMGMT_LAN_PORTS 4
#define WEBMGMT_WAN_LINES 4

/* --- lan_config: LAN interface and DHCP servers ----------------------------------------- */

/* A DHCP server; the controller's server has the same layout as the device's own. */
#define WEBMGMT_LAN_DHCPSERVER_MEMBERS(X)                                                          \
    X(5, uint8_t, dhcp_server_enable, )                                                            \
    X(0, uint8_t, pad_dhcp_server_start_ipaddr, [3])                                               \
    X(6, ipaddr_field, dhcp_server_start_ipaddr, )                                                 \
    X(6, ipaddr_field, dhcp_server_end_ipaddr, )                                                   \
    X(6, ipaddr_field, dhcp_server_gateway, )                                                      \
    X(6, ipaddr_field, dhcp_server_dns1, )                                                         \
    X(6, ipaddr_field, dhcp_server_dns2, )                                                         \
    X(0, uint8_t, pad_dhcp_server_leasetime, [4])                                                  \
    X(8, uint64_t, dhcp_server_leasetime, )                                                        \
    X(7, uint32_t, dhcp_server_port, )                                                             \
    X(6, ipaddr_field, default_dhcp_server_start_ipaddr, )                                         \
    X(6, ipaddr_field, default_dhcp_server_end_ipaddr, )                                           \
    X(6, ipaddr_field, default_dhcp_server_gateway, )                                              \
    X(5, char, resved, [500])
typedef struct lan_dhcpserver {
    WEBMGMT_LAN_DHCPSERVER_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} lan_dhcpserver;
WEBMGMT_STATIC_ASSERT(sizeof(lan_dhcpserver) == 648, "lan_dhcpserver layout");
WEBMGMT_STATIC_ASSERT(offsetof(lan_dhcpserver, dhcp_server_leasetime) == 88,
                      "lan_dhcpserver layout");

/* A static DHCP lease. */
#define WEBMGMT_LAN_BIND_MEMBERS(X)                                                                \
    X(1, int32_t, id, )                                                                            \
    X(1, int32_t, lock_location, )                                                                 \
    X(4, uint8_t, devtype, )                                                                       \
    X(4, char, mac, [20])                                                                          \
    X(0, uint8_t, pad_ip, [3])                                                                     \
    X(6, ipaddr_field, ip, )                                                                       \
    X(4, char, mark, [200])                                                                        \
    X(5, char, resved, [500])
typedef struct lan_bind {
    WEBMGMT_LAN_BIND_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} lan_bind;
WEBMGMT_STATIC_ASSERT(sizeof(lan_bind) == 748, "lan_bind layout");

#define WEBMGMT_LAN_BINDLIST_MEMBERS(X)                                                            \
    X(2, int16_t, count, )                                                                         \
    X(0, uint8_t, pad_element, [2])                                                                \
    X(0, lan_bind, element, [WEBMGMT_LAN_BIND_COUNT])                                              \
    X(5, char, resved, [500])
typedef struct lan_bindlist {
    WEBMGMT_LAN_BINDLIST_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} lan_bindlist;
WEBMGMT_STATIC_ASSERT(sizeof(lan_bindlist) == 24440, "lan_bindlist layout");

#define WEBMGMT_LAN_IPTV_MEMBERS(X)                                                                \
    X(4, uint8_t, m_enable, )                                                                      \
    X(0, uint8_t, pad_m_vlanid, [3])                                                               \
    X(9, uint32_t, m_vlanid, )                                                                     \
    X(5, char, eth_phy_name, [20])                                                                 \
    X(5, char, resved, [500])
typedef struct lan_iptv {
    WEBMGMT_LAN_IPTV_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} lan_iptv;
WEBMGMT_STATIC_ASSERT(sizeof(lan_iptv) == 528, "lan_iptv layout");

#define WEBMGMT_LAN_VLAN_PORT_MEMBERS(X)                                                           \
    X(5, uint8_t, m_supportvlan, )                                                                 \
    X(5, uint8_t, m_haveport, )                                                                    \
    X(5, uint8_t, m_port_id, )                                                                     \
    X(0, uint8_t, pad_m_vlan_id, [1])                                                              \
    X(2, int16_t, m_vlan_id, )
typedef struct lan_vlan_port {
    WEBMGMT_LAN_VLAN_PORT_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} lan_vlan_port;
WEBMGMT_STATIC_ASSERT(sizeof(lan_vlan_port) == 6, "lan_vlan_port layout");

#define WEBMGMT_LAN_VLAN_MEMBERS(X) X(0, lan_vlan_port, port, [WEBMGMT_LAN_PORTS])
typedef struct lan_vlan {
    WEBMGMT_LAN_VLAN_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} lan_vlan;
WEBMGMT_STATIC_ASSERT(sizeof(lan_vlan) == 24, "lan_vlan layout");

#define WEBMGMT_LAN_CONFIG_MEMBERS(X)                                                              \
    WEBMGMT_RECORD_HEAD(X)                                                                         \
    X(5, char, lan_name, [20])                                                                     \
    X(5, char, eth_phy_name, [20])                                                                 \
    X(1, int32_t, lan_addr_type, )                                                                 \
    X(6, ipaddr_field, ipaddr, )                                                                   \
    X(6, ipaddr_field, subnet, )                                                                   \
    X(6, ipaddr_field, gateway, )                                                                  \
    X(6, ipaddr_field, dns1, )                                                                     \
    X(6, ipaddr_field, dns2, )                                                                     \
    X(5, uint8_t, stp, )                                                                           \
    X(0, uint8_t, pad_ac_enable, [3])                                                              \
    X(1, int32_t, ac_enable, )                                                                     \
    X(6, ipaddr_field, acipaddr, )                                                                 \
    X(6, ipaddr_field, acsubnet, )                                                                 \
    X(0, uint8_t, pad_dev_dhcpserver, [4])                                                         \
    X(0, lan_dhcpserver, dev_dhcpserver, )                                                         \
    X(0, lan_dhcpserver, ac_dhcpserver, )                                                          \
    X(0, lan_bindlist, dhcp_server_bindlist, )                                                     \
    X(0, lan_bindlist, dhcp_server_acbindlist, )                                                   \
    X(5, uint8_t, conn_type, )                                                                     \
    X(0, uint8_t, pad_m_iptv, [3])                                                                 \
    X(0, lan_iptv, m_iptv, )                                                                       \
    X(5, uint8_t, enable_ipv6, )                                                                   \
    X(0, uint8_t, pad_ipaddr6, [3])                                                                \
    X(12, ip6addr_field, ipaddr6, )                                                                \
    X(5, uint8_t, ipaddr6_prefix, )                                                                \
    X(0, uint8_t, pad_ipaddr6_local, [3])                                                          \
    X(12, ip6addr_field, ipaddr6_local, )                                                          \
    X(5, uint8_t, ipaddr6_local_prefix, )                                                          \
    X(0, uint8_t, pad_gateway6, [3])                                                               \
    X(12, ip6addr_field, gateway6, )                                                               \
    X(5, uint8_t, gateway6_prefix, )                                                               \
    X(5, uint8_t, enable_ipv6_dns, )                                                               \
    X(0, uint8_t, pad_dns61, [2])                                                                  \
    X(12, ip6addr_field, dns61, )                                                                  \
    X(12, ip6addr_field, dns62, )                                                                  \
    X(5, uint8_t, conn_type6, )                                                                    \
    X(5, uint8_t, enable_dhcp6, )                                                                  \
    X(0, uint8_t, pad_dhcp6_ipstart, [2])                                                          \
    X(12, ip6addr_field, dhcp6_ipstart, )                                                          \
    X(12, ip6addr_field, dhcp6_ipend, )                                                            \
    X(9, uint32_t, dhcp6_lease, )                                                                  \
    X(5, uint8_t, enable_radvd, )                                                                  \
    X(5, uint8_t, ra_flag_M, )                                                                     \
    X(5, uint8_t, ra_flag_O, )                                                                     \
    X(5, uint8_t, ra_flag_A, )                                                                     \
    X(5, uint8_t, disable_ipv4_dns, )                                                              \
    X(0, uint8_t, pad_lan_vlan, [1])                                                               \
    X(0, lan_vlan, lan_vlan, )                                                                     \
    X(0, uint8_t, pad_default_ipaddr, [2])                                                         \
    X(6, ipaddr_field, default_ipaddr, )                                                           \
    X(6, ipaddr_field, default_subnet, )                                                           \
    X(5, char, resved, [500])                                                                      \
    X(0, uint8_t, pad_end, [4])
typedef struct lan_config {
    WEBMGMT_LAN_CONFIG_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} lan_config;
WEBMGMT_STATIC_ASSERT(sizeof(lan_config) == 51800, "lan_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(lan_config, lock_location) == 132, "lan_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(lan_config, dev_dhcpserver) == 304, "lan_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(lan_config, ac_dhcpserver) == 952, "lan_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(lan_config, dhcp_server_bindlist) == 1600, "lan_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(lan_config, dhcp_server_acbindlist) == 26040, "lan_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(lan_config, m_iptv) == 50484, "lan_config layout");

/* --- wan_config: up to four WAN lines --------------------------------------------------- */

/* One WAN line. The ping, IPsec, PPTP and L2TP pass-through switches are set by the WAN
 * form and printed by the WAN view; no field table lists them. */
#define WEBMGMT_WAN_LINE_MEMBERS(X)                                                                \
    X(1, int32_t, lock_location, )                                                                 \
    X(5, uint8_t, enable, )                                                                        \
    X(5, uint8_t, conn_type, )                                                                     \
    X(5, char, phy_name, [20])                                                                     \
    X(0, uint8_t, pad_fixed_mtu, [2])                                                              \
    X(9, uint32_t, fixed_mtu, )                                                                    \
    X(9, uint32_t, dhcp_mtu, )                                                                     \
    X(6, ipaddr_field, ipaddr, )                                                                   \
    X(6, ipaddr_field, subnet, )                                                                   \
    X(6, ipaddr_field, gateway, )                                                                  \
    X(5, uint8_t, dnsmode, )                                                                       \
    X(0, uint8_t, pad_dns1, [3])                                                                   \
    X(6, ipaddr_field, dns1, )                                                                     \
    X(6, ipaddr_field, dns2, )                                                                     \
    X(5, char, ppp_username, [64])                                                                 \
    X(5, char, ppp_userpwd, [64])                                                                  \
    X(5, char, ppp_service_name, [64])                                                             \
    X(5, char, ppp_ac_name, [64])                                                                  \
    X(7, uint32_t, wan_upload_bandwidth, )                                                         \
    X(7, uint32_t, wan_download_bandwidth, )                                                       \
    X(5, uint8_t, wan_track_enable, )                                                              \
    X(0, uint8_t, pad_wan_track_ip1, [3])                                                          \
    X(6, ipaddr_field, wan_track_ip1, )                                                            \
    X(6, ipaddr_field, wan_track_ip2, )                                                            \
    X(9, uint32_t, wan_dns_priority, )                                                             \
    X(9, uint32_t, wan_line_weight, )                                                              \
    X(5, uint8_t, enable_wan_access_web, )                                                         \
    X(0, uint8_t, pad_wan_access_web_port, [3])                                                    \
    X(9, uint32_t, wan_access_web_port, )                                                          \
    X(5, uint8_t, enable_mac_clone, )                                                              \
    X(5, char, clone_mac, [20])                                                                    \
    X(0, uint8_t, enable_ping_wan, )                                                               \
    X(0, uint8_t, enable_ipsec, )                                                                  \
    X(0, uint8_t, enable_pptp, )                                                                   \
    X(0, uint8_t, enable_l2tp, )                                                                   \
    X(5, uint8_t, wan_port, )                                                                      \
    X(5, uint8_t, enable_ipv6, )                                                                   \
    X(0, uint8_t, pad_ipaddr6, [1])                                                                \
    X(12, ip6addr_field, ipaddr6, )                                                                \
    X(5, uint8_t, ipaddr6_prefix, )                                                                \
    X(0, uint8_t, pad_ipaddr6_local, [3])                                                          \
    X(12, ip6addr_field, ipaddr6_local, )                                                          \
    X(5, uint8_t, ipaddr6_local_prefix, )                                                          \
    X(0, uint8_t, pad_gateway6, [3])                                                               \
    X(12, ip6addr_field, gateway6, )                                                               \
    X(5, uint8_t, gateway6_prefix, )                                                               \
    X(5, uint8_t, enable_ipv6_dns, )                                                               \
    X(0, uint8_t, pad_dns61, [2])                                                                  \
    X(12, ip6addr_field, dns61, )                                                                  \
    X(12, ip6addr_field, dns62, )                                                                  \
    X(5, char, resved, [499])                                                                      \
    X(0, uint8_t, pad_end, [1])
typedef struct wan_line {
    WEBMGMT_WAN_LINE_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} wan_line;
WEBMGMT_STATIC_ASSERT(sizeof(wan_line) == 1116, "wan_line layout");

#define WEBMGMT_WAN_CONFIG_MEMBERS(X)                                                              \
    WEBMGMT_RECORD_HEAD(X)                                                                         \
    X(0, wan_line, wanconfig, [WEBMGMT_WAN_LINES])                                                 \
    X(5, char, resved, [500])
typedef struct wan_config {
    WEBMGMT_WAN_CONFIG_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} wan_config;
WEBMGMT_STATIC_ASSERT(sizeof(wan_config) == 5100, "wan_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(wan_config, lock_location) == 132, "wan_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(wan_config, wanconfig) == 136, "wan_config layout");

/* --- Rule lists ------------------------------------------------------------------------- */

#define WEBMGMT_WEEKDAYS(X)                                                                        \
    X(4, uint8_t, weekday1, )                                                                      \
    X(4, uint8_t, weekday2, )                                                                      \
    X(4, uint8_t, weekday3, )                                                                      \
    X(4, uint8_t, weekday4, )                                                                      \
    X(4, uint8_t, weekday5, )                                                                      \
    X(4, uint8_t, weekday6, )                                                                      \
    X(4, uint8_t, weekday7, )

#define WEBMGMT_RULE_HEAD(X)                                                                       \
    X(1, int32_t, lock_location, )                                                                 \
    X(1, int32_t, id, )                                                                            \
    X(4, char, name, [200])

#define WEBMGMT_QOS_RULE_MEMBERS(X)                                                                \
    WEBMGMT_RULE_HEAD(X)                                                                           \
    X(4, uint8_t, control_type, )                                                                  \
    X(4, char, devmac, [20])                                                                       \
    X(4, uint8_t, ipcontrol, )                                                                     \
    X(2, int16_t, ipgroup_id, )                                                                    \
    X(6, ipaddr_field, devstartip, )                                                               \
    X(6, ipaddr_field, devendip, )                                                                 \
    X(4, uint8_t, timecontrol, )                                                                   \
    X(4, uint8_t, timegroup_id, )                                                                  \
    WEBMGMT_WEEKDAYS(X)                                                                            \
    X(4, char, start_time, [10])                                                                   \
    X(4, char, end_time, [10])                                                                     \
    X(0, uint8_t, pad_bw_up, [3])                                                                  \
    X(1, int32_t, bw_up, )                                                                         \
    X(1, int32_t, bw_down, )                                                                       \
    X(4, uint8_t, bw_shared_mode, )                                                                \
    X(4, uint8_t, status, )                                                                        \
    X(4, char, mark, [200])                                                                        \
    X(5, char, resved, [500])                                                                      \
    X(0, uint8_t, pad_end, [2])
typedef struct qos_rule {
    WEBMGMT_QOS_RULE_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} qos_rule;
WEBMGMT_STATIC_ASSERT(sizeof(qos_rule) == 1008, "qos_rule layout");

#define WEBMGMT_FWURL_RULE_MEMBERS(X)                                                              \
    WEBMGMT_RULE_HEAD(X)                                                                           \
    X(4, char, url, [128])                                                                         \
    X(4, uint8_t, timecontrol, )                                                                   \
    X(4, uint8_t, timegroup_id, )                                                                  \
    WEBMGMT_WEEKDAYS(X)                                                                            \
    X(4, char, start_time, [10])                                                                   \
    X(4, char, end_time, [10])                                                                     \
    X(4, uint8_t, status, )                                                                        \
    X(4, char, mark, [200])                                                                        \
    X(5, char, resved, [500])                                                                      \
    X(0, uint8_t, pad_end, [2])
typedef struct fwurl_rule {
    WEBMGMT_FWURL_RULE_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} fwurl_rule;
WEBMGMT_STATIC_ASSERT(sizeof(fwurl_rule) == 1068, "fwurl_rule layout");

#define WEBMGMT_FWMAC_RULE_MEMBERS(X)                                                              \
    WEBMGMT_RULE_HEAD(X)                                                                           \
    X(4, char, devmac, [20])                                                                       \
    X(4, uint8_t, timecontrol, )                                                                   \
    X(4, uint8_t, timegroup_id, )                                                                  \
    WEBMGMT_WEEKDAYS(X)                                                                            \
    X(4, char, start_time, [10])                                                                   \
    X(4, char, end_time, [10])                                                                     \
    X(4, uint8_t, status, )                                                                        \
    X(4, char, mark, [200])                                                                        \
    X(5, char, resved, [500])                                                                      \
    X(0, uint8_t, pad_end, [2])
typedef struct fwmac_rule {
    WEBMGMT_FWMAC_RULE_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} fwmac_rule;
WEBMGMT_STATIC_ASSERT(sizeof(fwmac_rule) == 960, "fwmac_rule layout");

#define WEBMGMT_TIMEGROUP_MEMBERS(X)                                                               \
    WEBMGMT_RULE_HEAD(X)                                                                           \
    WEBMGMT_WEEKDAYS(X)                                                                            \
    X(4, char, start_time, [10])                                                                   \
    X(4, char, end_time, [10])                                                                     \
    X(4, char, mark, [200])                                                                        \
    X(5, char, resved, [500])                                                                      \
    X(0, uint8_t, pad_end, [1])
typedef struct timegroup_entry {
    WEBMGMT_TIMEGROUP_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} timegroup_entry;
WEBMGMT_STATIC_ASSERT(sizeof(timegroup_entry) == 936, "timegroup_entry layout");

#define WEBMGMT_IPGROUP_MEMBERS(X)                                                                 \
    WEBMGMT_RULE_HEAD(X)                                                                           \
    X(6, ipaddr_field, startip, )                                                                  \
    X(6, ipaddr_field, endip, )                                                                    \
    X(4, char, mark, [200])                                                                        \
    X(5, char, resved, [500])
typedef struct ipgroup_entry {
    WEBMGMT_IPGROUP_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} ipgroup_entry;
WEBMGMT_STATIC_ASSERT(sizeof(ipgroup_entry) == 940, "ipgroup_entry layout");

#define WEBMGMT_VSIPPORT_RULE_MEMBERS(X)                                                           \
    WEBMGMT_RULE_HEAD(X)                                                                           \
    X(6, ipaddr_field, devip, )                                                                    \
    X(4, uint8_t, protocol, )                                                                      \
    X(0, uint8_t, pad_devinnerfromport, [3])                                                       \
    X(1, int32_t, devinnerfromport, )                                                              \
    X(1, int32_t, devinnertoport, )                                                                \
    X(1, int32_t, devexternfromport, )                                                             \
    X(1, int32_t, devexterntoport, )                                                               \
    X(4, uint8_t, wanid, )                                                                         \
    X(4, uint8_t, status, )                                                                        \
    X(4, char, mark, [200])                                                                        \
    X(5, char, resved, [500])                                                                      \
    X(0, uint8_t, pad_end, [2])
typedef struct vsipport_rule {
    WEBMGMT_VSIPPORT_RULE_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} vsipport_rule;
WEBMGMT_STATIC_ASSERT(sizeof(vsipport_rule) == 948, "vsipport_rule layout");

#define WEBMGMT_FWIPPORT_RULE_MEMBERS(X)                                                           \
    WEBMGMT_RULE_HEAD(X)                                                                           \
    X(4, uint8_t, ipcontrol, )                                                                     \
    X(0, uint8_t, pad_ipgroup_id, [1])                                                             \
    X(2, int16_t, ipgroup_id, )                                                                    \
    X(6, ipaddr_field, devstartip, )                                                               \
    X(6, ipaddr_field, devendip, )                                                                 \
    X(1, int32_t, devfromport, )                                                                   \
    X(1, int32_t, devtoport, )                                                                     \
    X(4, uint8_t, protocol, )                                                                      \
    X(4, uint8_t, timecontrol, )                                                                   \
    X(4, uint8_t, timegroup_id, )                                                                  \
    WEBMGMT_WEEKDAYS(X)                                                                            \
    X(4, char, start_time, [10])                                                                   \
    X(4, char, end_time, [10])                                                                     \
    X(4, uint8_t, status, )                                                                        \
    X(4, char, mark, [200])                                                                        \
    X(5, char, resved, [500])                                                                      \
    X(0, uint8_t, pad_end, [1])
typedef struct fwipport_rule {
    WEBMGMT_FWIPPORT_RULE_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} fwipport_rule;
WEBMGMT_STATIC_ASSERT(sizeof(fwipport_rule) == 984, "fwipport_rule layout");

/* The lists: a 16-bit count (32-bit in the two group lists), the elements, reserved room. */
#define WEBMGMT_RULE_LIST_MEMBERS(X, type, capacity)                                               \
    X(2, int16_t, count, )                                                                         \
    X(0, uint8_t, pad_element, [2])                                                                \
    X(0, type, element, [capacity])                                                                \
    X(5, char, resved, [500])
#define WEBMGMT_GROUP_LIST_MEMBERS(X, type, capacity)                                              \
    X(1, int32_t, count, )                                                                         \
    X(0, type, element, [capacity])                                                                \
    X(5, char, resved, [500])
typedef struct qos_list {
    WEBMGMT_RULE_LIST_MEMBERS(WEBMGMT_DECLARE_MEMBER, qos_rule, WEBMGMT_RULE_COUNT)
} qos_list;
WEBMGMT_STATIC_ASSERT(sizeof(qos_list) == 32760, "qos_list layout");
typedef struct fwurl_list {
    WEBMGMT_RULE_LIST_MEMBERS(WEBMGMT_DECLARE_MEMBER, fwurl_rule, WEBMGMT_RULE_COUNT)
} fwurl_list;
WEBMGMT_STATIC_ASSERT(sizeof(fwurl_list) == 34680, "fwurl_list layout");
typedef struct fwmac_list {
    WEBMGMT_RULE_LIST_MEMBERS(WEBMGMT_DECLARE_MEMBER, fwmac_rule, WEBMGMT_RULE_COUNT)
} fwmac_list;
WEBMGMT_STATIC_ASSERT(sizeof(fwmac_list) == 31224, "fwmac_list layout");
typedef struct vsipport_list {
    WEBMGMT_RULE_LIST_MEMBERS(WEBMGMT_DECLARE_MEMBER, vsipport_rule, WEBMGMT_RULE_COUNT)
} vsipport_list;
WEBMGMT_STATIC_ASSERT(sizeof(vsipport_list) == 30840, "vsipport_list layout");
/* The IP/port filter list has no reserved room of its own. */
#define WEBMGMT_FWIPPORT_LIST_MEMBERS(X)                                                           \
    X(2, int16_t, count, )                                                                         \
    X(0, uint8_t, pad_element, [2])                                                                \
    X(0, fwipport_rule, element, [WEBMGMT_RULE_COUNT])
typedef struct fwipport_list {
    WEBMGMT_FWIPPORT_LIST_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} fwipport_list;
WEBMGMT_STATIC_ASSERT(sizeof(fwipport_list) == 31492, "fwipport_list layout");
typedef struct timegroup_list {
    WEBMGMT_GROUP_LIST_MEMBERS(WEBMGMT_DECLARE_MEMBER, timegroup_entry, WEBMGMT_GROUP_COUNT)
} timegroup_list;
WEBMGMT_STATIC_ASSERT(sizeof(timegroup_list) == 15480, "timegroup_list layout");
typedef struct ipgroup_list {
    WEBMGMT_GROUP_LIST_MEMBERS(WEBMGMT_DECLARE_MEMBER, ipgroup_entry, WEBMGMT_GROUP_COUNT)
} ipgroup_list;
WEBMGMT_STATIC_ASSERT(sizeof(ipgroup_list) == 15544, "ipgroup_list layout");

#define WEBMGMT_QOS_CONFIG_MEMBERS(X)                                                              \
    WEBMGMT_RECORD_HEAD(X)                                                                         \
    X(5, uint8_t, mode, )                                                                          \
    X(0, uint8_t, pad_qos, [3])                                                                    \
    X(0, qos_list, qos, )                                                                          \
    X(5, char, resved, [500])
typedef struct qos_config {
    WEBMGMT_QOS_CONFIG_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} qos_config;
WEBMGMT_STATIC_ASSERT(sizeof(qos_config) == 33400, "qos_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(qos_config, lock_location) == 132, "qos_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(qos_config, qos) == 140, "qos_config layout");

#define WEBMGMT_FWURL_CONFIG_MEMBERS(X)                                                            \
    WEBMGMT_RECORD_HEAD(X)                                                                         \
    X(5, uint8_t, mode, )                                                                          \
    X(0, uint8_t, pad_fwurl, [3])                                                                  \
    X(0, fwurl_list, fwurl, )                                                                      \
    X(5, char, resved, [500])
typedef struct fwurl_config {
    WEBMGMT_FWURL_CONFIG_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} fwurl_config;
WEBMGMT_STATIC_ASSERT(sizeof(fwurl_config) == 35320, "fwurl_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(fwurl_config, lock_location) == 132, "fwurl_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(fwurl_config, fwurl) == 140, "fwurl_config layout");

#define WEBMGMT_FWMAC_CONFIG_MEMBERS(X)                                                            \
    WEBMGMT_RECORD_HEAD(X)                                                                         \
    X(5, uint8_t, mode, )                                                                          \
    X(0, uint8_t, pad_fwmac, [3])                                                                  \
    X(0, fwmac_list, fwmac, )                                                                      \
    X(5, char, resved, [500])
typedef struct fwmac_config {
    WEBMGMT_FWMAC_CONFIG_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} fwmac_config;
WEBMGMT_STATIC_ASSERT(sizeof(fwmac_config) == 31864, "fwmac_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(fwmac_config, lock_location) == 132, "fwmac_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(fwmac_config, fwmac) == 140, "fwmac_config layout");

#define WEBMGMT_TIMEGROUP_CONFIG_MEMBERS(X)                                                        \
    WEBMGMT_RECORD_HEAD(X)                                                                         \
    X(0, timegroup_list, usertimegroup, )                                                          \
    X(5, char, resved, [500])
typedef struct timegroup_config {
    WEBMGMT_TIMEGROUP_CONFIG_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} timegroup_config;
WEBMGMT_STATIC_ASSERT(sizeof(timegroup_config) == 16116, "timegroup_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(timegroup_config, lock_location) == 132, "timegroup_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(timegroup_config, usertimegroup) == 136, "timegroup_config layout");

#define WEBMGMT_IPPORT_CONFIG_MEMBERS(X)                                                           \
    WEBMGMT_RECORD_HEAD(X)                                                                         \
    X(0, ipgroup_list, useripgroup, )                                                              \
    X(0, char, resved, [500])
typedef struct ipport_config {
    WEBMGMT_IPPORT_CONFIG_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} ipport_config;
WEBMGMT_STATIC_ASSERT(sizeof(ipport_config) == 16180, "ipport_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(ipport_config, lock_location) == 132, "ipport_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(ipport_config, useripgroup) == 136, "ipport_config layout");

#define WEBMGMT_VSIPPORT_CONFIG_MEMBERS(X)                                                         \
    WEBMGMT_RECORD_HEAD(X)                                                                         \
    X(5, uint8_t, enable, )                                                                        \
    X(0, uint8_t, pad_vsipport, [3])                                                               \
    X(0, vsipport_list, vsipport, )                                                                \
    X(5, char, resved, [500])
typedef struct vsipport_config {
    WEBMGMT_VSIPPORT_CONFIG_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} vsipport_config;
WEBMGMT_STATIC_ASSERT(sizeof(vsipport_config) == 31480, "vsipport_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(vsipport_config, lock_location) == 132, "vsipport_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(vsipport_config, vsipport) == 140, "vsipport_config layout");

#define WEBMGMT_FWIPPORT_CONFIG_MEMBERS(X)                                                         \
    WEBMGMT_RECORD_HEAD(X)                                                                         \
    X(5, uint8_t, mode, )                                                                          \
    X(0, uint8_t, pad_fwipport, [3])                                                               \
    X(0, fwipport_list, fwipport, )                                                                \
    X(5, char, resved, [500])
typedef struct fwipport_config {
    WEBMGMT_FWIPPORT_CONFIG_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} fwipport_config;
WEBMGMT_STATIC_ASSERT(sizeof(fwipport_config) == 32132, "fwipport_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(fwipport_config, lock_location) == 132, "fwipport_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(fwipport_config, fwipport) == 140, "fwipport_config layout");

WEBMGMT_API void lan_field(field_desc *table, lan_config *config);
WEBMGMT_API void wan_field(field_desc *table, wan_config *config);
WEBMGMT_API void qos_field(field_desc *table, qos_config *config);
WEBMGMT_API void fwurl_field(field_desc *table, fwurl_config *config);
WEBMGMT_API void fwmac_field(field_desc *table, fwmac_config *config);
WEBMGMT_API void timegroup_field(field_desc *table, timegroup_config *config);
WEBMGMT_API void ipport_field(field_desc *table, ipport_config *config);
WEBMGMT_API void vsipport_field(field_desc *table, vsipport_config *config);
WEBMGMT_API void fwipport_field(field_desc *table, fwipport_config *config);

WEBMGMT_END_DECLS
#endif /* WEBMGMT_NETWORK_H */
