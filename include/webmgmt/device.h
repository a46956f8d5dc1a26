/*
 * webmgmt: the device-management records: the access points the controller manages, the
 * AP templates it pushes to them, the scan results they report, the stations associated
 * with them and with the device's own radios, the client accounts and groups, the station
 * marks, and the firmware-update schedule.
 *
 * The configuration store owns these sections and lays them out; the layouts below are
 * this library's, chosen where the device's store leaves them open, and written in the
 * same one-list style as the catalogue (see record_types.h). Members carry the field-table
 * code that the store's maintenance tool and its defaults files use to name them; room too
 * large for one field-table row (over 65,535 bytes) is listed with code 0.
 */
#ifndef WEBMGMT_DEVICE_H
#define WEBMGMT_DEVICE_H

#include <stdint.h>

#include "webmgmt/common.h"
#include "webmgmt/record_types.h"
#include "webmgmt/wireless.h"

WEBMGMT_BEGIN_DECLS

/* ===================================================================================== */
/* Managed access points                                                                 */
/* ===================================================================================== */

#define WEBMGMT_AP_RADIOS 3
#define WEBMGMT_AP_VAPS 4
/* The controller manages one device: the views' "max_count" is always 1. */
#define WEBMGMT_AP_MAX 1

/* One radio of a managed AP: the default template's radio members, the channel the AP
 * chose ("m_channel_config" beside the configured one) and its station count now. The four
 * VAPs are the template's VAP blocks: what a template pushes is what the AP reports. */
#define WEBMGMT_AP_RADIO_MEMBERS(X)                                                                \
    X(4, uint8_t, m_radio_type, )                                                                  \
    X(4, uint8_t, m_wirelessmode, )                                                                \
    X(4, uint8_t, m_wirelessbwmode, )                                                              \
    X(4, uint8_t, m_ampduenable, )                                                                 \
    X(4, uint8_t, m_wlan_isolate, )                                                                \
    X(4, uint8_t, m_wlan_rate, )                                                                   \
    X(2, int16_t, m_wlan_beacon_interval, )                                                        \
    X(2, int16_t, m_wlan_rts, )                                                                    \
    X(2, int16_t, m_wlan_frag, )                                                                   \
    X(2, int16_t, m_wlan_shortGI, )                                                                \
    X(2, int16_t, m_wlan_txpower, )                                                                \
    X(2, int16_t, m_wlan_max_txpower, )                                                            \
    X(2, int16_t, m_channel, )                                                                     \
    X(2, int16_t, m_channel_config, )                                                              \
    X(2, int16_t, m_rev_option, )                                                                  \
    X(2, int16_t, m_coverage_threshold, )                                                          \
    X(2, int16_t, m_MaxStanum, )                                                                   \
    X(4, char, contrystr, [4])                                                                     \
    X(2, int16_t, m_stanum, )                                                                      \
    X(0, uint8_t, pad_m_vap, [6])                                                                  \
    X(0, defap_vap, m_vap, [WEBMGMT_AP_VAPS])
typedef struct ap_radio {
    WEBMGMT_AP_RADIO_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} ap_radio;
WEBMGMT_STATIC_ASSERT(sizeof(ap_radio) == 1192, "ap_radio layout");
WEBMGMT_STATIC_ASSERT(offsetof(ap_radio, m_stanum) == 32, "ap_radio layout");
WEBMGMT_STATIC_ASSERT(offsetof(ap_radio, m_vap) == 40, "ap_radio layout");

/* The wireless configuration of one AP: its radios, reboot schedule, web login and IPTV
 * settings (get_ap_conf_by_mac6() returns this block). `m_dev_position`, where the AP is
 * installed, takes the last 64 bytes of what was reserved room. */
#define WEBMGMT_AP_CONFIG_BODY_MEMBERS(X)                                                          \
    X(0, ap_radio, m_radio, [WEBMGMT_AP_RADIOS])                                                   \
    X(0, timereboot_config, m_timereboot, )                                                        \
    X(0, defap_weblogin, m_weblogin, )                                                             \
    X(0, defap_iptv, m_iptv, )                                                                     \
    X(5, char, resved, [436])                                                                      \
    X(4, char, m_dev_position, [64])                                                               \
    X(0, uint8_t, pad_end, [4])
typedef struct ap_config_body {
    WEBMGMT_AP_CONFIG_BODY_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} ap_config_body;
WEBMGMT_STATIC_ASSERT(sizeof(ap_config_body) == 4160, "ap_config_body layout");
WEBMGMT_STATIC_ASSERT(offsetof(ap_config_body, m_timereboot) == 3576, "ap_config_body layout");
WEBMGMT_STATIC_ASSERT(offsetof(ap_config_body, m_iptv) == 3648, "ap_config_body layout");
WEBMGMT_STATIC_ASSERT(offsetof(ap_config_body, m_dev_position) == 4092, "ap_config_body layout");

/* One managed device. `m_ip` is its IPv4 address in network order (the views print it as
 * a number and dotted); `m_id` of 0 or less means not registered; `m_group_name` is the
 * template group it belongs to (empty: none); `m_onlinetime` its seconds online. */
#define WEBMGMT_AP_DEVICE_MEMBERS(X)                                                               \
    X(9, uint32_t, m_ip, )                                                                         \
    X(1, int32_t, m_lock_src, )                                                                    \
    X(1, int32_t, m_id, )                                                                          \
    X(4, char, m_group_name, [64])                                                                 \
    X(4, char, m_dev_name, [64])                                                                   \
    X(5, mac_field, m_dev_mac, )                                                                   \
    X(4, uint8_t, m_dev_status, )                                                                  \
    X(4, uint8_t, m_dev_upgrade_status, )                                                          \
    X(9, uint32_t, m_onlinetime, )                                                                 \
    X(4, char, m_sw_ver, [64])                                                                     \
    X(4, uint8_t, m_wlan_radio_num, )                                                              \
    X(4, uint8_t, m_TimeRebootEnable, )                                                            \
    X(4, char, m_RebootTime, [32])                                                                 \
    X(4, char, m_dev_modelname, [64])                                                              \
    X(0, uint8_t, pad_m_conf, [6])                                                                 \
    X(0, ap_config_body, m_conf, )
typedef struct ap_device_record {
    WEBMGMT_AP_DEVICE_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} ap_device_record;
WEBMGMT_STATIC_ASSERT(sizeof(ap_device_record) == 4480, "ap_device_record layout");
WEBMGMT_STATIC_ASSERT(offsetof(ap_device_record, m_dev_mac) == 140, "ap_device_record layout");
WEBMGMT_STATIC_ASSERT(offsetof(ap_device_record, m_conf) == 320, "ap_device_record layout");

/* The managed-AP list section. `m_ac_marker` is set to 254 by the controller's DHCP form
 * when controller mode is switched off. */
#define WEBMGMT_MANAGE_AP_LIST_MEMBERS(X)                                                          \
    WEBMGMT_RECORD_HEAD(X)                                                                         \
    X(4, uint8_t, m_ac_marker, )                                                                   \
    X(0, uint8_t, pad_count, [3])                                                                  \
    X(1, int32_t, count, )                                                                         \
    X(0, ap_device_record, m_ap, [WEBMGMT_AP_MAX])                                                 \
    X(5, char, resved, [500])                                                                      \
    X(0, uint8_t, pad_end, [4])
typedef struct manage_ap_list_config {
    WEBMGMT_MANAGE_AP_LIST_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} manage_ap_list_config;
WEBMGMT_STATIC_ASSERT(sizeof(manage_ap_list_config) == 5128, "manage_ap_list_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(manage_ap_list_config, m_ac_marker) == 136,
                      "manage_ap_list_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(manage_ap_list_config, m_ap) == 144, "manage_ap_list_config layout");

/* ===================================================================================== */
/* AP templates                                                                          */
/* ===================================================================================== */

#define WEBMGMT_AP_TEMPLATES 4
/* Each template of the list occupies this many bytes; the views step through the array by
 * it. The device keeps room for a whole wireless configuration in each, most of it unused. */
#define WEBMGMT_AP_TEMPLATE_SIZE 107440

/* One template of the list: the default template's radios and device blocks under a group
 * id and name. `m_wlan_group_id` of 0 or less marks an unused template (it is the id the
 * list operations key on). A device whose MAC equals `m_member_mac` belongs to the group;
 * `m_bind_mac` is the device bound to the template (all zero: none). The reserved room is
 * too large for one field-table row and is listed with code 0. */
#define WEBMGMT_AP_TEMPLATE_MEMBERS(X)                                                             \
    X(1, int32_t, m_wlan_group_id, )                                                               \
    X(4, char, m_wlan_group_name, [64])                                                            \
    X(4, char, m_modelname, [64])                                                                  \
    X(5, mac_field, m_member_mac, )                                                                \
    X(5, mac_field, m_bind_mac, )                                                                  \
    X(0, defap_radio, m_radio, [WEBMGMT_AP_RADIOS])                                                \
    X(0, timereboot_config, m_timereboot, )                                                        \
    X(0, defap_weblogin, m_weblogin, )                                                             \
    X(0, defap_iptv, m_iptv, )                                                                     \
    X(0, char, resved, [WEBMGMT_AP_TEMPLATE_SIZE - 3776])
typedef struct ap_template_entry {
    WEBMGMT_AP_TEMPLATE_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} ap_template_entry;
WEBMGMT_STATIC_ASSERT(sizeof(ap_template_entry) == WEBMGMT_AP_TEMPLATE_SIZE, "AP template size");
WEBMGMT_STATIC_ASSERT(offsetof(ap_template_entry, m_radio) == 144, "ap_template_entry layout");
WEBMGMT_STATIC_ASSERT(offsetof(ap_template_entry, m_iptv) == 3768, "ap_template_entry layout");
WEBMGMT_STATIC_ASSERT(offsetof(ap_template_entry, resved) == 3776, "ap_template_entry layout");

/* The AP-template list section: a count and the template array. */
#define WEBMGMT_AP_TEMPLATE_LIST_MEMBERS(X)                                                        \
    WEBMGMT_RECORD_HEAD(X)                                                                         \
    X(1, int32_t, count, )                                                                         \
    X(0, uint8_t, pad_m_template, [4])                                                             \
    X(0, ap_template_entry, m_template, [WEBMGMT_AP_TEMPLATES])
typedef struct ap_template_list_config {
    WEBMGMT_AP_TEMPLATE_LIST_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} ap_template_list_config;
WEBMGMT_STATIC_ASSERT(sizeof(ap_template_list_config) == 144 + 4 * WEBMGMT_AP_TEMPLATE_SIZE,
                      "ap_template_list_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(ap_template_list_config, m_template) == 144,
                      "ap_template_list_config layout");

/* ===================================================================================== */
/* Wireless scan results                                                                 */
/* ===================================================================================== */

#define WEBMGMT_SCAN_SLOTS 64

/* One slot of a scan list: shown when both channel and signal are non-zero. The name is
 * NUL-terminated within its 32 bytes when the AP wrote it well; readers stop at the field. */
#define WEBMGMT_AP_SCAN_SLOT_MEMBERS(X)                                                            \
    X(4, char, m_name, [32])                                                                       \
    X(5, mac_field, m_bssid, )                                                                     \
    X(2, int16_t, m_signal, )                                                                      \
    X(4, char, m_quality, )                                                                        \
    X(0, uint8_t, pad_m_channel, [1])                                                              \
    X(2, int16_t, m_channel, )
typedef struct ap_scan_slot {
    WEBMGMT_AP_SCAN_SLOT_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} ap_scan_slot;
WEBMGMT_STATIC_ASSERT(sizeof(ap_scan_slot) == 44, "ap_scan_slot layout");
WEBMGMT_STATIC_ASSERT(offsetof(ap_scan_slot, m_channel) == 42, "ap_scan_slot layout");

/* What one managed AP reported at run time: a scan list per radio. */
#define WEBMGMT_AP_RUNTIME_ENTRY_MEMBERS(X)                                                        \
    X(5, mac_field, m_dev_mac, )                                                                   \
    X(0, uint8_t, pad_m_scan, [2])                                                                 \
    X(0, ap_scan_slot, m_scan, [WEBMGMT_AP_RADIOS][WEBMGMT_SCAN_SLOTS])
typedef struct ap_runtime_entry {
    WEBMGMT_AP_RUNTIME_ENTRY_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} ap_runtime_entry;
WEBMGMT_STATIC_ASSERT(sizeof(ap_runtime_entry) == 8456, "ap_runtime_entry layout");

/* The AP runtime-information table: entry i belongs to managed AP i of the list. */
#define WEBMGMT_AP_RUNTIME_MEMBERS(X)                                                              \
    WEBMGMT_RECORD_HEAD(X)                                                                         \
    X(1, int32_t, count, )                                                                         \
    X(0, ap_runtime_entry, m_ap, [WEBMGMT_AP_MAX])                                                 \
    X(5, char, resved, [500])
typedef struct ap_runtime_config {
    WEBMGMT_AP_RUNTIME_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} ap_runtime_config;
WEBMGMT_STATIC_ASSERT(sizeof(ap_runtime_config) == 9096, "ap_runtime_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(ap_runtime_config, m_ap) == 140, "ap_runtime_config layout");

/* What the two scan views are given: the managed-AP list (for the radios' current
 * channels) and the runtime table (for the scan lists), both as the store returned them. */
typedef struct ap_scan_context {
    const manage_ap_list_config *ap_list;
    const ap_runtime_config *runtime;
} ap_scan_context;
WEBMGMT_STATIC_ASSERT(sizeof(ap_scan_context) == 2 * sizeof(void *), "ap_scan_context layout");

/* ===================================================================================== */
/* Stations                                                                              */
/* ===================================================================================== */

#define WEBMGMT_STATIONS 256

/* One associated station. `m_time` below 0 or `m_signal` 0 mark an unused entry. */
#define WEBMGMT_STA_ENTRY_MEMBERS(X)                                                               \
    X(4, uint8_t, m_radioid, )                                                                     \
    X(4, uint8_t, m_wlanid, )                                                                      \
    X(5, mac_field, m_mac, )                                                                       \
    X(4, char, m_ip, [16])                                                                         \
    X(1, int32_t, m_signal, )                                                                      \
    X(1, int32_t, m_tx_rate, )                                                                     \
    X(1, int32_t, m_rx_rate, )                                                                     \
    X(1, int32_t, m_time, )
typedef struct sta_entry {
    WEBMGMT_STA_ENTRY_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} sta_entry;
WEBMGMT_STATIC_ASSERT(sizeof(sta_entry) == 40, "sta_entry layout");
WEBMGMT_STATIC_ASSERT(offsetof(sta_entry, m_signal) == 24, "sta_entry layout");

/* The stations of one AP (`m_ap_mac` zero for the device's own radios). */
#define WEBMGMT_STA_TABLE_MEMBERS(X)                                                               \
    X(5, mac_field, m_ap_mac, )                                                                    \
    X(0, uint8_t, pad_m_sta, [2])                                                                  \
    X(0, sta_entry, m_sta, [WEBMGMT_STATIONS])
typedef struct sta_table {
    WEBMGMT_STA_TABLE_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} sta_table;
WEBMGMT_STATIC_ASSERT(sizeof(sta_table) == 10248, "sta_table layout");

/* The station tables: the device's own radios, then one per managed AP (`count` of them in
 * use). */
#define WEBMGMT_AP_USER_MEMBERS(X)                                                                 \
    WEBMGMT_RECORD_HEAD(X)                                                                         \
    X(1, int32_t, count, )                                                                         \
    X(0, sta_table, m_local, )                                                                     \
    X(0, sta_table, m_ap, [WEBMGMT_AP_MAX])                                                        \
    X(5, char, resved, [500])
typedef struct ap_user_config {
    WEBMGMT_AP_USER_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} ap_user_config;
WEBMGMT_STATIC_ASSERT(sizeof(ap_user_config) == 21136, "ap_user_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(ap_user_config, m_local) == 140, "ap_user_config layout");

/* ===================================================================================== */
/* Client accounts, client groups and station marks                                      */
/* ===================================================================================== */

#define WEBMGMT_CLIENTS 300
#define WEBMGMT_CLIENT_GROUPS 10
#define WEBMGMT_STA_MARKS 300
/* save_user_mark() refuses a mark when more entries than this are in use. */
#define WEBMGMT_STA_MARKS_USABLE 256

/* One client account, also the working element of the client form. `m_id` of 0 or less
 * marks a free slot; `m_is_deny` 1 puts it on the blacklist; `m_is_bindmac` 1 binds the
 * MAC to the account. The texts hold 30 (open id) and 20 characters and a terminator. */
#define WEBMGMT_CLIENT_ACCOUNT_MEMBERS(X)                                                          \
    X(1, int32_t, m_id, )                                                                          \
    X(5, mac_field, m_haddr, )                                                                     \
    X(2, int16_t, m_max_conn, )                                                                    \
    X(2, int16_t, m_limit_up, )                                                                    \
    X(2, int16_t, m_limit_down, )                                                                  \
    X(2, int16_t, m_allow_time, )                                                                  \
    X(4, uint8_t, m_is_deny, )                                                                     \
    X(4, uint8_t, m_is_attck, )                                                                    \
    X(4, uint8_t, m_auth_type, )                                                                   \
    X(4, uint8_t, m_group_id, )                                                                    \
    X(4, uint8_t, m_state, )                                                                       \
    X(4, uint8_t, m_role, )                                                                        \
    X(4, uint8_t, m_is_bindmac, )                                                                  \
    X(0, uint8_t, pad_m_vlan, [1])                                                                 \
    X(2, uint16_t, m_vlan, )                                                                       \
    X(9, uint32_t, m_max_on_line, )                                                                \
    X(9, uint32_t, m_start_time, )                                                                 \
    X(9, uint32_t, m_end_time, )                                                                   \
    X(9, uint32_t, m_last_time, )                                                                  \
    X(4, char, m_open_id, [31])                                                                    \
    X(4, char, m_card_id, [21])                                                                    \
    X(4, char, m_name, [21])                                                                       \
    X(4, char, m_account, [21])                                                                    \
    X(4, char, m_pass, [21])                                                                       \
    X(4, char, m_tel, [21])                                                                        \
    X(4, char, m_mark, [100])                                                                      \
    X(5, char, resved, [120])
typedef struct client_account {
    WEBMGMT_CLIENT_ACCOUNT_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} client_account;
WEBMGMT_STATIC_ASSERT(sizeof(client_account) == 400, "client_account layout");
WEBMGMT_STATIC_ASSERT(offsetof(client_account, m_vlan) == 26, "client_account layout");
WEBMGMT_STATIC_ASSERT(offsetof(client_account, m_open_id) == 44, "client_account layout");

/* One station mark: in use when the first byte of the MAC is non-zero. */
#define WEBMGMT_STA_MARK_MEMBERS(X)                                                                \
    X(5, mac_field, mac, )                                                                         \
    X(4, char, mark, [85])
typedef struct sta_mark {
    WEBMGMT_STA_MARK_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} sta_mark;
WEBMGMT_STATIC_ASSERT(sizeof(sta_mark) == 91, "sta_mark layout");

/* The clients section: the accounts, then the station-mark table. */
#define WEBMGMT_CLIENTS_CONFIG_MEMBERS(X)                                                          \
    WEBMGMT_RECORD_HEAD(X)                                                                         \
    X(1, int32_t, count, )                                                                         \
    X(0, client_account, m_client, [WEBMGMT_CLIENTS])                                              \
    X(0, sta_mark, m_sta_mark, [WEBMGMT_STA_MARKS])                                                \
    X(5, char, resved, [500])
typedef struct clients_config {
    WEBMGMT_CLIENTS_CONFIG_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} clients_config;
WEBMGMT_STATIC_ASSERT(sizeof(clients_config) == 147940, "clients_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(clients_config, m_client) == 140, "clients_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(clients_config, m_sta_mark) == 120140, "clients_config layout");

/* One client group, also the working element of the group form. */
#define WEBMGMT_CLIENT_GROUP_MEMBERS(X)                                                            \
    X(1, int32_t, m_id, )                                                                          \
    X(4, char, m_name, [20])                                                                       \
    X(5, char, resved, [100])
typedef struct client_group {
    WEBMGMT_CLIENT_GROUP_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} client_group;
WEBMGMT_STATIC_ASSERT(sizeof(client_group) == 124, "client_group layout");

#define WEBMGMT_CLIENTS_GROUPS_CONFIG_MEMBERS(X)                                                   \
    WEBMGMT_RECORD_HEAD(X)                                                                         \
    X(1, int32_t, count, )                                                                         \
    X(0, client_group, m_group, [WEBMGMT_CLIENT_GROUPS])                                           \
    X(5, char, resved, [500])
typedef struct clients_groups_config {
    WEBMGMT_CLIENTS_GROUPS_CONFIG_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} clients_groups_config;
WEBMGMT_STATIC_ASSERT(sizeof(clients_groups_config) == 1880, "clients_groups_config layout");

/* ===================================================================================== */
/* Firmware-update schedule and DHCP-check messages                                      */
/* ===================================================================================== */

#define WEBMGMT_DHCP_CHECK_MSGS 3

#define WEBMGMT_DHCP_CHECK_MSG_MEMBERS(X)                                                          \
    X(4, uint8_t, id, )                                                                            \
    X(4, char, msg, [81])
typedef struct dhcp_check_msg {
    WEBMGMT_DHCP_CHECK_MSG_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} dhcp_check_msg;
WEBMGMT_STATIC_ASSERT(sizeof(dhcp_check_msg) == 82, "dhcp_check_msg layout");

/* The update section: when the firmware update runs (m_type, m_hour, m_min), whether it
 * resets the configuration, the model and image index it is for, and the messages of the
 * last DHCP check. */
#define WEBMGMT_UPDATE_CONFIG_MEMBERS(X)                                                           \
    WEBMGMT_RECORD_HEAD(X)                                                                         \
    X(4, uint8_t, m_enable, )                                                                      \
    X(4, uint8_t, m_type, )                                                                        \
    X(4, uint8_t, m_hour, )                                                                        \
    X(4, uint8_t, m_min, )                                                                         \
    X(4, uint8_t, m_isreset, )                                                                     \
    X(4, char, m_dev_modelname, [64])                                                              \
    X(4, char, m_dev_array_index, [16])                                                            \
    X(0, dhcp_check_msg, m_dhcp_check, [WEBMGMT_DHCP_CHECK_MSGS])                                  \
    X(5, char, resved, [500])                                                                      \
    X(0, uint8_t, pad_end, [1])
typedef struct update_config {
    WEBMGMT_UPDATE_CONFIG_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} update_config;
WEBMGMT_STATIC_ASSERT(sizeof(update_config) == 968, "update_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(update_config, m_dhcp_check) == 221, "update_config layout");

WEBMGMT_END_DECLS
#endif /* WEBMGMT_DEVICE_H */
