// The lists of the store and the operations shared by all of them.
#pragma once

#include <cstddef>

#include "store/internal/section.h"

namespace wm::store {

namespace lists {

// A list whose elements carry their id in member `id`.
template <typename Element>
constexpr ListDesc make(SectionId s, size_t count_offset, size_t count_size, size_t elem_offset,
                        uint32_t capacity, size_t id_offset) {
    return {s,
            uint32_t(count_offset),
            uint8_t(count_size),
            uint32_t(elem_offset),
            uint32_t(sizeof(Element)),
            capacity,
            uint32_t(id_offset)};
}

#define WM_RULE_LIST(section, record, list, type, capacity)                                        \
    make<type>(section, offsetof(record, list.count), sizeof(int16_t),                             \
               offsetof(record, list.element), capacity, offsetof(type, id))

inline constexpr ListDesc kPortFwList =
    WM_RULE_LIST(kVsIpport, vsipport_config, vsipport, vsipport_rule, WEBMGMT_RULE_COUNT);
inline constexpr ListDesc kIpFilterList =
    WM_RULE_LIST(kFwIpport, fwipport_config, fwipport, fwipport_rule, WEBMGMT_RULE_COUNT);
inline constexpr ListDesc kUrlFilterList =
    WM_RULE_LIST(kFwUrl, fwurl_config, fwurl, fwurl_rule, WEBMGMT_RULE_COUNT);
inline constexpr ListDesc kMacFilterList =
    WM_RULE_LIST(kFwMac, fwmac_config, fwmac, fwmac_rule, WEBMGMT_RULE_COUNT);
inline constexpr ListDesc kQosList =
    WM_RULE_LIST(kQos, qos_config, qos, qos_rule, WEBMGMT_RULE_COUNT);
inline constexpr ListDesc kDhcpStaticList =
    WM_RULE_LIST(kLan, lan_config, dhcp_server_bindlist, lan_bind, WEBMGMT_LAN_BIND_COUNT);
inline constexpr ListDesc kAcDhcpStaticList =
    WM_RULE_LIST(kLan, lan_config, dhcp_server_acbindlist, lan_bind, WEBMGMT_LAN_BIND_COUNT);
#undef WM_RULE_LIST

// The two group lists count in 32 bits.
inline constexpr ListDesc kIpGroupList = make<ipgroup_entry>(
    kIpGroup, offsetof(ipport_config, useripgroup.count), sizeof(int32_t),
    offsetof(ipport_config, useripgroup.element), WEBMGMT_GROUP_COUNT, offsetof(ipgroup_entry, id));
inline constexpr ListDesc kTimeGroupList =
    make<timegroup_entry>(kTimeGroup, offsetof(timegroup_config, usertimegroup.count),
                          sizeof(int32_t), offsetof(timegroup_config, usertimegroup.element),
                          WEBMGMT_GROUP_COUNT, offsetof(timegroup_entry, id));

#define WM_RADIO_ACL(r)                                                                            \
    make<acl_entry>(kWiFi, offsetof(wifi_config, m_radio[r].m_acllist.count), sizeof(int16_t),     \
                    offsetof(wifi_config, m_radio[r].m_acllist.element), WEBMGMT_WIFI_ACL_COUNT,   \
                    offsetof(acl_entry, id))
inline constexpr ListDesc kAclLists[WEBMGMT_WIFI_RADIO_COUNT] = {WM_RADIO_ACL(0), WM_RADIO_ACL(1),
                                                                 WM_RADIO_ACL(2)};
#undef WM_RADIO_ACL
inline constexpr ListDesc kAclExtList = make<acl_entry>(
    kMiscExt, offsetof(misc_ext_config, acl_info.count), sizeof(int32_t),
    offsetof(misc_ext_config, acl_info.info), WEBMGMT_MISC_EXT_ACL_COUNT, offsetof(acl_entry, id));

inline constexpr ListDesc kClientsList = make<client_account>(
    kClients, offsetof(clients_config, count), sizeof(int32_t), offsetof(clients_config, m_client),
    WEBMGMT_CLIENTS, offsetof(client_account, m_id));
inline constexpr ListDesc kClientGroupsList = make<client_group>(
    kClientGroups, offsetof(clients_groups_config, count), sizeof(int32_t),
    offsetof(clients_groups_config, m_group), WEBMGMT_CLIENT_GROUPS, offsetof(client_group, m_id));

// The AP templates, keyed on their group id.
inline constexpr ListDesc kApTemplateList =
    make<ap_template_entry>(kApTemplates, offsetof(ap_template_list_config, count), sizeof(int32_t),
                            offsetof(ap_template_list_config, m_template), WEBMGMT_AP_TEMPLATES,
                            offsetof(ap_template_entry, m_wlan_group_id));

} // namespace lists

// The operations; `list` is the caller's record of the section (may be null), `element` the
// caller's element. Results are the CONFIG_ codes of the public header.
int list_add(const ListDesc &l, void *list, void *element);
int list_modify(const ListDesc &l, void *list, const void *element);
// `after`, when given, runs once the list is stored and while its lock is still held, with
// the deleted id (-1 for delete all); its result becomes the operation's.
using AfterDelete = int (*)(void *context, int32_t id);
int list_delete(const ListDesc &l, void *list, const void *key, AfterDelete after = nullptr,
                void *context = nullptr);
int list_clear(const ListDesc &l, void *list, AfterDelete after = nullptr, void *context = nullptr);

// The id a delete names: the key's text up to its terminator or 5 bytes; false for null.
bool key_id(const void *key, int32_t *id);
// The id of the element in `slot`.
int32_t element_id(const uint8_t *record, const ListDesc &l, uint32_t slot);

} // namespace wm::store
