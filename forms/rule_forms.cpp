// The rule-list forms: a switch form per list (its master switch) and an element form per
// list (add, modify, delete one, delete all).
#include <cstring>

#include "config_data_api.h"
#include "forms/list_ops.h"
#include "forms/rule_bindings.h"
#include "forms/rule_items.h"

namespace wm {
namespace {

bool duplicate_check_on(const rule_config_set *config) {
    return config && config->misc && config->misc->need_filter_firewall != 0;
}

// What differs between the lists' element forms.
template <typename Record, typename Item, typename Slot> struct ElementForm {
    void (*bind)(Bindings &, Item &);
    int kind;
    // The list's content filter, or null (URL filter and QoS have none).
    int (*content)(const Record *, const Item *, const rule_config_set *);
    int (*add)(Record *, Slot *);
    int (*modify)(Record *, Slot *);
    int (*save)(Record *);
};

// Add or modify: bind, check for duplicates when the switch is on, store, save.
template <typename Record, typename Item, typename Slot>
int add_or_modify(const ElementForm<Record, Item, Slot> &f, Record *list, int op,
                  const form_pair *pairs, int count, const rule_config_set *config) {
    Item item;
    std::memset(&item, 0, sizeof item);
    Bindings b;
    f.bind(b, item);
    b.apply(pairs, count);

    if (duplicate_check_on(config)) {
        if (filterate_name(list, item.name, item.id, f.kind) != 0) return WEBMGMT_FORM_DUPLICATE;
        if (f.content && f.content(list, &item, config) != 0) return WEBMGMT_FORM_DUPLICATE;
    }
    Slot slot;
    to_slot(item, slot);
    int rc = op == kOpAdd ? f.add(list, &slot) : f.modify(list, &slot);
    f.save(list);
    return rc;
}

// Switch form: one row, a one-byte switch or mode, then the list's save call. The save call
// is a template argument so that it is a direct call: a store address kept in a table would
// be looked up by the loader in every process, form or not.
template <auto save, typename Record>
int save_switch(Record *list, uint8_t &member, const char *name, const form_pair *pairs,
                int count) {
    Bindings b;
    b.add<conv::kTextN>(name, member);
    b.apply(pairs, count);
    save(list);
    return 0;
}

// The content filters that need no config set, adapted to the common shape.
int vsipport_content(const vsipport_config *l, const vsipport_item *i, const rule_config_set *) {
    return filterate_vsipport_data(l, i);
}
int ipgroup_content(const ipport_config *l, const ipgroup_item *i, const rule_config_set *) {
    return filterate_ipgroup_data(l, i);
}
int timegroup_content(const timegroup_config *l, const timegroup_item *i, const rule_config_set *) {
    return filterate_timegroup_data(l, i);
}

constexpr ElementForm<vsipport_config, vsipport_item, vsipport_rule> kVsIpport{
    bind_vsipport, WEBMGMT_KIND_VSIPPORT, vsipport_content,
    AddPortFwItem, ModifyPortFwItem,      SC_Save_System_VsIpport_Config};
constexpr ElementForm<fwipport_config, fwipport_item, fwipport_rule> kFwIpport{
    bind_fwipport,   WEBMGMT_KIND_FWIPPORT, filterate_fwipport_data,
    AddIpFilterItem, ModifyIpFilterItem,    SC_Save_System_FwIpport_Config};
constexpr ElementForm<ipport_config, ipgroup_item, ipgroup_entry> kIpGroup{
    bind_ipgroup,   WEBMGMT_KIND_IPGROUP, ipgroup_content,
    AddIpGroupItem, ModifyIpGroupItem,    SC_Save_System_IpGroup_Config};
constexpr ElementForm<timegroup_config, timegroup_item, timegroup_entry> kTimeGroup{
    bind_timegroup,   WEBMGMT_KIND_TIMEGROUP, timegroup_content,
    AddTimeGroupItem, ModifyTimeGroupItem,    SC_Save_System_TimeGroup_Config};
constexpr ElementForm<fwurl_config, fwurl_item, fwurl_rule> kFwUrl{
    bind_fwurl,       WEBMGMT_KIND_FWURL,  nullptr,
    AddUrlFilterItem, ModifyUrlFilterItem, SC_Save_System_FwUrl_Config};
constexpr ElementForm<fwmac_config, fwmac_item, fwmac_rule> kFwMac{
    bind_fwmac,       WEBMGMT_KIND_FWMAC,  filterate_fwmac_data,
    AddMacFilterItem, ModifyMacFilterItem, SC_Save_System_FwMac_Config};
constexpr ElementForm<qos_config, qos_item, qos_rule> kQos{
    bind_qos, WEBMGMT_KIND_QOS, nullptr, AddQosItem, ModifyQosItem, SC_Save_System_Qos_Config};

// The element form of a list whose delete calls take (list, key) and no argument.
template <typename Record, typename Item, typename Slot>
int rule_element(const ElementForm<Record, Item, Slot> &f, Record *list, int op,
                 const form_pair *pairs, int count, const rule_config_set *config,
                 int (*del)(Record *, const void *), int (*del_all)()) {
    if (!list) return -1;
    if (op == kOpDelete) {
        DeleteKey key = delete_key(pairs, count);
        del(list, &key); // a delete makes no save call of its own
        return 0;
    }
    if (op == kOpDeleteAll) {
        del_all();
        return 0;
    }
    return add_or_modify(f, list, op, pairs, count, config);
}

} // namespace
} // namespace wm

using namespace wm;

extern "C" {

int save_vsipport_config(vsipport_config *list, const form_pair *pairs, int count) {
    return list ? save_switch<SC_Save_System_VsIpport_Config>(list, list->enable, "enable", pairs,
                                                              count)
                : -1;
}
int save_fwipport_config(fwipport_config *list, const form_pair *pairs, int count) {
    return list
               ? save_switch<SC_Save_System_FwIpport_Config>(list, list->mode, "mode", pairs, count)
               : -1;
}
int save_fwurl_config(fwurl_config *list, const form_pair *pairs, int count) {
    return list ? save_switch<SC_Save_System_FwUrl_Config>(list, list->mode, "mode", pairs, count)
                : -1;
}
int save_fwmac_config(fwmac_config *list, const form_pair *pairs, int count) {
    return list ? save_switch<SC_Save_System_FwMac_Config>(list, list->mode, "mode", pairs, count)
                : -1;
}
int save_qos_config(qos_config *list, const form_pair *pairs, int count) {
    return list ? save_switch<SC_Save_System_Qos_Config>(list, list->mode, "mode", pairs, count)
                : -1;
}

int save_vsipport_config_element(vsipport_config *list, int op, const form_pair *pairs, int count,
                                 rule_config_set *config) {
    return rule_element(kVsIpport, list, op, pairs, count, config, DelPortFwItem, DelAllPortFwItem);
}
int save_fwipport_config_element(fwipport_config *list, int op, const form_pair *pairs, int count,
                                 rule_config_set *config) {
    return rule_element(kFwIpport, list, op, pairs, count, config, DelIpFilterItem,
                        DelAllIpFilterItem);
}
int save_fwurl_config_element(fwurl_config *list, int op, const form_pair *pairs, int count,
                              rule_config_set *config) {
    return rule_element(kFwUrl, list, op, pairs, count, config, DelUrlFilterItem,
                        DelAllUrlFilterItem);
}
int save_fwmac_config_element(fwmac_config *list, int op, const form_pair *pairs, int count,
                              rule_config_set *config) {
    return rule_element(kFwMac, list, op, pairs, count, config, DelMacFilterItem,
                        DelAllMacFilterItem);
}
int save_qos_config_element(qos_config *list, int op, const form_pair *pairs, int count,
                            rule_config_set *config) {
    return rule_element(kQos, list, op, pairs, count, config, DelQosItem, DelAllQosItem);
}

// The group lists come from the config set; deleting a group hands the store the rule lists
// that refer to groups, so that it can clear the references.
int save_ipgroup_config_element(rule_config_set *config, int op, const form_pair *pairs,
                                int count) {
    ipport_config *list = config ? config->ipgroup : nullptr;
    if (!list) return -1;
    if (op == kOpDelete) {
        DeleteKey key = delete_key(pairs, count);
        DelIpGroupItem(list, config->fwipport, config->qos, &key);
        return 0;
    }
    if (op == kOpDeleteAll) {
        DelAllIpGroupItem(list);
        return 0;
    }
    return add_or_modify(kIpGroup, list, op, pairs, count, config);
}

int save_timegroup_config_element(rule_config_set *config, int op, const form_pair *pairs,
                                  int count) {
    timegroup_config *list = config ? config->timegroup : nullptr;
    if (!list) return -1;
    if (op == kOpDelete) {
        DeleteKey key = delete_key(pairs, count);
        DelTimeGroupItem(list, config->fwipport, config->fwmac, config->fwurl, config->qos, &key);
        return 0;
    }
    if (op == kOpDeleteAll) {
        DelAllTimeGroupItem(list);
        return 0;
    }
    return add_or_modify(kTimeGroup, list, op, pairs, count, config);
}

} // extern "C"
