// Walking a record by its member list.
//
// The public headers declare each record block once as X(code, type, name, dimensions).
// MemberList<T> makes that list visible to C++ for the blocks listed below: visit() calls
// a visitor with each member's name, code and the member itself, in declaration order.
// From it come the field tables of the store's own sections (every coded member one row,
// nested blocks and arrays named as the catalogue names them) and the layout dumps.
#pragma once

#include <cstddef>
#include <cstdio>
#include <type_traits>

#include "conf/field_rows.h"
#include "webmgmt.h"

namespace wm {

template <class T> struct MemberList { static constexpr bool listed = false; };

#define WM_VISIT_MEMBER(code, type, name, dims) v(#name, int16_t(code), o_.name);
#define WM_MEMBER_LIST(T, members)                                                                 \
    template <> struct MemberList<T> {                                                             \
        static constexpr bool listed = true;                                                       \
        static constexpr const char *type_name = #T;                                               \
        template <class Record, class V> static void visit(Record &o_, V &&v) {                    \
            members(WM_VISIT_MEMBER)                                                               \
        }                                                                                          \
    }

WM_MEMBER_LIST(config_version, WEBMGMT_CONFIG_VERSION_MEMBERS);
WM_MEMBER_LIST(timereboot_config, WEBMGMT_TIMEREBOOT_MEMBERS);
WM_MEMBER_LIST(defap_vap, WEBMGMT_DEFAP_VAP_MEMBERS);
WM_MEMBER_LIST(defap_radio, WEBMGMT_DEFAP_RADIO_MEMBERS);
WM_MEMBER_LIST(defap_weblogin, WEBMGMT_DEFAP_WEBLOGIN_MEMBERS);
WM_MEMBER_LIST(defap_iptv, WEBMGMT_DEFAP_IPTV_MEMBERS);
WM_MEMBER_LIST(ap_radio, WEBMGMT_AP_RADIO_MEMBERS);
WM_MEMBER_LIST(ap_config_body, WEBMGMT_AP_CONFIG_BODY_MEMBERS);
WM_MEMBER_LIST(ap_device_record, WEBMGMT_AP_DEVICE_MEMBERS);
WM_MEMBER_LIST(manage_ap_list_config, WEBMGMT_MANAGE_AP_LIST_MEMBERS);
WM_MEMBER_LIST(ap_template_entry, WEBMGMT_AP_TEMPLATE_MEMBERS);
WM_MEMBER_LIST(ap_template_list_config, WEBMGMT_AP_TEMPLATE_LIST_MEMBERS);
WM_MEMBER_LIST(ap_scan_slot, WEBMGMT_AP_SCAN_SLOT_MEMBERS);
WM_MEMBER_LIST(ap_runtime_entry, WEBMGMT_AP_RUNTIME_ENTRY_MEMBERS);
WM_MEMBER_LIST(ap_runtime_config, WEBMGMT_AP_RUNTIME_MEMBERS);
WM_MEMBER_LIST(sta_entry, WEBMGMT_STA_ENTRY_MEMBERS);
WM_MEMBER_LIST(sta_table, WEBMGMT_STA_TABLE_MEMBERS);
WM_MEMBER_LIST(ap_user_config, WEBMGMT_AP_USER_MEMBERS);
WM_MEMBER_LIST(client_account, WEBMGMT_CLIENT_ACCOUNT_MEMBERS);
WM_MEMBER_LIST(sta_mark, WEBMGMT_STA_MARK_MEMBERS);
WM_MEMBER_LIST(clients_config, WEBMGMT_CLIENTS_CONFIG_MEMBERS);
WM_MEMBER_LIST(client_group, WEBMGMT_CLIENT_GROUP_MEMBERS);
WM_MEMBER_LIST(clients_groups_config, WEBMGMT_CLIENTS_GROUPS_CONFIG_MEMBERS);
WM_MEMBER_LIST(dhcp_check_msg, WEBMGMT_DHCP_CHECK_MSG_MEMBERS);
WM_MEMBER_LIST(update_config, WEBMGMT_UPDATE_CONFIG_MEMBERS);
WM_MEMBER_LIST(dhcp_static_item, WEBMGMT_DHCP_STATIC_ITEM_MEMBERS);
WM_MEMBER_LIST(port_status, WEBMGMT_PORT_STATUS_MEMBERS);
WM_MEMBER_LIST(mem_sample, WEBMGMT_MEM_SAMPLE_MEMBERS);
WM_MEMBER_LIST(cpu_sample, WEBMGMT_CPU_SAMPLE_MEMBERS);
WM_MEMBER_LIST(cpu_previous, WEBMGMT_CPU_PREVIOUS_MEMBERS);
WM_MEMBER_LIST(sys_status, WEBMGMT_SYS_STATUS_MEMBERS);
WM_MEMBER_LIST(arp_host, WEBMGMT_ARP_HOST_MEMBERS);
WM_MEMBER_LIST(arp_host_table, WEBMGMT_ARP_TABLE_MEMBERS);
WM_MEMBER_LIST(lease_entry, WEBMGMT_LEASE_ENTRY_MEMBERS);
WM_MEMBER_LIST(port_map, WEBMGMT_PORT_MAP_MEMBERS);
WM_MEMBER_LIST(ipv6_addr_entry, WEBMGMT_IPV6_ADDR_ENTRY_MEMBERS);
WM_MEMBER_LIST(ipv6_route_entry, WEBMGMT_IPV6_ROUTE_ENTRY_MEMBERS);

// The rows of one member at `path` (the dotted name of its parent, "" or ending in '.'):
// listed blocks and arrays of them are walked, other coded members become rows as the
// catalogue's builders make them (texts one row, MACs ".mac", other arrays a row per
// element). Padding and room too large for a row carry code 0 and make none.
template <class T>
void member_rows(RowWriter &w, const char *path, const char *name, int16_t code, T &member) {
    char inner[WEBMGMT_FIELD_NAME_SIZE];
    if constexpr (std::is_array_v<T> && MemberList<std::remove_all_extents_t<T>>::listed) {
        for (size_t i = 0; i < std::extent_v<T>; ++i) {
            // A name longer than a row's is cut, as the row writer cuts it.
            if (std::snprintf(inner, sizeof inner, "%s[%zu]", name, i) < 0) inner[0] = '\0';
            member_rows(w, path, inner, code, member[i]);
        }
    } else if constexpr (MemberList<T>::listed) {
        if (std::snprintf(inner, sizeof inner, "%s%s.", path, name) < 0) inner[0] = '\0';
        MemberList<T>::visit(
            member, [&](const char *n, int16_t c, auto &m) { member_rows(w, inner, n, c, m); });
    } else if (code != 0) {
        w.prefix("%s", path);
        add_member(w, name, -1, code, member);
    }
}

// Every row of a listed record; returns the rows the whole table needs (RowWriter::wanted).
template <class Record> int record_rows(field_desc *table, int capacity, Record &record) {
    RowWriter w(table, capacity);
    MemberList<Record>::visit(
        record, [&](const char *n, int16_t c, auto &m) { member_rows(w, "", n, c, m); });
    return w.wanted();
}

} // namespace wm
