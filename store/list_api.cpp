// The list operations of every list, the group deletions that clear references, and the
// access lists.
#include <cstring>
#include <initializer_list>

#include "store/internal/lists.h"

namespace wm::store {
namespace {

bool radio_ok(int radio) {
    return radio >= 0 && radio < WEBMGMT_WIFI_RADIO_COUNT;
}

// -1 stands for every group (delete all).
constexpr int32_t kAnyGroup = -1;

template <typename Rule> bool clear_time_group(Rule &r, int32_t group) {
    if (r.timegroup_id == 0 || (group != kAnyGroup && r.timegroup_id != group)) return false;
    r.timegroup_id = 0;
    if (r.timecontrol == 1) { // it ran on the group's schedule: off, and "always" from now on
        r.timecontrol = 0;
        r.status = 0;
    }
    return true;
}

template <typename Rule> bool clear_ip_group(Rule &r, int32_t group) {
    if (r.ipgroup_id == 0 || (group != kAnyGroup && r.ipgroup_id != group)) return false;
    r.ipgroup_id = 0;
    if (r.ipcontrol == 1) { // it matched the group's range: off, and its own range from now on
        r.ipcontrol = 0;
        r.status = 0;
    }
    return true;
}

// Clears the references to `group` in one stored rule list and in the caller's copy.
template <typename Rule, typename Clear>
int clear_references(const ListDesc &l, void *caller, int32_t group, Clear clear) {
    Transaction t(l.section);
    if (!t.ok()) return CONFIG_ERR_IO;
    bool changed = false;
    auto *rules = reinterpret_cast<Rule *>(t.record() + l.elem_offset);
    for (uint32_t i = 0; i < l.capacity; ++i)
        changed = clear(rules[i], group) || changed;
    if (!changed) return CONFIG_OK;
    int rc = t.commit(true);
    if (rc == CONFIG_OK) t.publish(l, caller);
    return rc;
}

// The rule lists that refer to groups, as the group deletions were given them.
struct IpGroupUsers {
    fwipport_config *ipfilter;
    qos_config *qos;
};
struct TimeGroupUsers {
    fwipport_config *ipfilter;
    fwmac_config *macfilter;
    fwurl_config *urlfilter;
    qos_config *qos;
};

int first_failure(std::initializer_list<int> results) {
    for (int r : results)
        if (r != CONFIG_OK) return r;
    return CONFIG_OK;
}

int clear_ip_group_users(void *context, int32_t group) {
    auto *u = static_cast<IpGroupUsers *>(context);
    return first_failure({
        clear_references<fwipport_rule>(lists::kIpFilterList, u->ipfilter, group,
                                        clear_ip_group<fwipport_rule>),
        clear_references<qos_rule>(lists::kQosList, u->qos, group, clear_ip_group<qos_rule>),
    });
}

int clear_time_group_users(void *context, int32_t group) {
    auto *u = static_cast<TimeGroupUsers *>(context);
    return first_failure({
        clear_references<fwipport_rule>(lists::kIpFilterList, u->ipfilter, group,
                                        clear_time_group<fwipport_rule>),
        clear_references<fwmac_rule>(lists::kMacFilterList, u->macfilter, group,
                                     clear_time_group<fwmac_rule>),
        clear_references<fwurl_rule>(lists::kUrlFilterList, u->urlfilter, group,
                                     clear_time_group<fwurl_rule>),
        clear_references<qos_rule>(lists::kQosList, u->qos, group, clear_time_group<qos_rule>),
    });
}

} // namespace
} // namespace wm::store

using namespace wm::store;

// Add, modify, delete one and delete all of a list whose delete-all takes no argument.
#define LIST_CALLS(Name, record, element, desc)                                                    \
    int Add##Name##Item(record *list, element *e) {                                                \
        return list_add(desc, list, e);                                                            \
    }                                                                                              \
    int Modify##Name##Item(record *list, element *e) {                                             \
        return list_modify(desc, list, e);                                                         \
    }                                                                                              \
    int Del##Name##Item(record *list, const void *key) {                                           \
        return list_delete(desc, list, key);                                                       \
    }                                                                                              \
    int DelAll##Name##Item(void) {                                                                 \
        return list_clear(desc, nullptr);                                                          \
    }

extern "C" {

LIST_CALLS(PortFw, vsipport_config, vsipport_rule, lists::kPortFwList)
LIST_CALLS(IpFilter, fwipport_config, fwipport_rule, lists::kIpFilterList)
LIST_CALLS(UrlFilter, fwurl_config, fwurl_rule, lists::kUrlFilterList)
LIST_CALLS(MacFilter, fwmac_config, fwmac_rule, lists::kMacFilterList)
LIST_CALLS(Qos, qos_config, qos_rule, lists::kQosList)
LIST_CALLS(DhcpStatic, lan_config, lan_bind, lists::kDhcpStaticList)
LIST_CALLS(Clients, clients_config, client_account, lists::kClientsList)
LIST_CALLS(ClientsGroups, clients_groups_config, client_group, lists::kClientGroupsList)
LIST_CALLS(ApTemplate, ap_template_list_config, ap_template_entry, lists::kApTemplateList)

int AC_AddDhcpStaticItem(lan_config *lan, lan_bind *e) {
    return list_add(lists::kAcDhcpStaticList, lan, e);
}
int AC_ModifyDhcpStaticItem(lan_config *lan, lan_bind *e) {
    return list_modify(lists::kAcDhcpStaticList, lan, e);
}
int AC_DelDhcpStaticItem(lan_config *lan, const void *key) {
    return list_delete(lists::kAcDhcpStaticList, lan, key);
}
int AC_DelAllDhcpStaticItem(void) {
    return list_clear(lists::kAcDhcpStaticList, nullptr);
}

int AddIpGroupItem(ipport_config *list, ipgroup_entry *e) {
    return list_add(lists::kIpGroupList, list, e);
}
int ModifyIpGroupItem(ipport_config *list, ipgroup_entry *e) {
    return list_modify(lists::kIpGroupList, list, e);
}
// The references are cleared while the group list is still locked, so that no add can give
// a new group the old id in between.
int DelIpGroupItem(ipport_config *list, fwipport_config *ipfilter, qos_config *qos,
                   const void *key) {
    IpGroupUsers users{ipfilter, qos};
    return list_delete(lists::kIpGroupList, list, key, clear_ip_group_users, &users);
}
int DelAllIpGroupItem(ipport_config *list) {
    IpGroupUsers users{nullptr, nullptr};
    return list_clear(lists::kIpGroupList, list, clear_ip_group_users, &users);
}

int AddTimeGroupItem(timegroup_config *list, timegroup_entry *e) {
    return list_add(lists::kTimeGroupList, list, e);
}
int ModifyTimeGroupItem(timegroup_config *list, timegroup_entry *e) {
    return list_modify(lists::kTimeGroupList, list, e);
}
int DelTimeGroupItem(timegroup_config *list, fwipport_config *ipfilter, fwmac_config *macfilter,
                     fwurl_config *urlfilter, qos_config *qos, const void *key) {
    TimeGroupUsers users{ipfilter, macfilter, urlfilter, qos};
    return list_delete(lists::kTimeGroupList, list, key, clear_time_group_users, &users);
}
int DelAllTimeGroupItem(timegroup_config *list) {
    TimeGroupUsers users{nullptr, nullptr, nullptr, nullptr};
    return list_clear(lists::kTimeGroupList, list, clear_time_group_users, &users);
}

int AddAclItem(wifi_config *wifi, acl_entry *e, int radio) {
    return radio_ok(radio) ? list_add(lists::kAclLists[radio], wifi, e) : CONFIG_ERR_ARGUMENT;
}
int ModifyAclItem(wifi_config *wifi, acl_entry *e, int radio) {
    return radio_ok(radio) ? list_modify(lists::kAclLists[radio], wifi, e) : CONFIG_ERR_ARGUMENT;
}
int DelAclItem(wifi_config *wifi, const void *key, int radio) {
    return radio_ok(radio) ? list_delete(lists::kAclLists[radio], wifi, key) : CONFIG_ERR_ARGUMENT;
}
int DelAllAclItem(wifi_config *wifi, int radio) {
    return radio_ok(radio) ? list_clear(lists::kAclLists[radio], wifi) : CONFIG_ERR_ARGUMENT;
}

int AddAclItem_Ext(misc_ext_config *record, acl_entry *e) {
    return list_add(lists::kAclExtList, record, e);
}
int ModifyAclItem_Ext(misc_ext_config *record, acl_entry *e) {
    return list_modify(lists::kAclExtList, record, e);
}
int DelAclItem_Ext(misc_ext_config *record, const void *key) {
    return list_delete(lists::kAclExtList, record, key);
}

} // extern "C"
