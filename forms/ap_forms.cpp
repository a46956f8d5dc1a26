// The managed AP's forms: binding it to a template (and unbinding it), its own settings
// (name, group, position, reboot schedule) and its radios and VAPs.
#include <cstring>

#include "config_data_api.h"
#include "conf/number_text.h"
#include "forms/ap_vars.h"
#include "sys/support/text.h"

namespace wm {
namespace {

constexpr int kOpBind = 0;
constexpr int kOpUnbind = -1;

// The managed AP named by "m_dev_mac" (as the views print it), or null.
ap_device_record *sent_ap(manage_ap_list_config *aps, const form_pair *pairs, int count) {
    char text[20] = {};
    uint8_t mac[6];
    if (!get_prop_n("m_dev_mac", text, pairs, count, sizeof text) || str2mac(text, mac) != 0)
        return nullptr;
    int i = SC_Get_Ap_Info_By_Mac(aps, mac);
    return i >= 0 && i < WEBMGMT_AP_MAX ? &aps->m_ap[i] : nullptr;
}

// The template named by "m_wlan_group_id", or null.
ap_template_entry *sent_template(ap_template_list_config *list, const form_pair *pairs, int count) {
    char value[12] = {};
    if (!get_prop_n("m_wlan_group_id", value, pairs, count, sizeof value)) return nullptr;
    int32_t id = text_to_int32(value);
    if (id <= 0) return nullptr;
    for (ap_template_entry &t : list->m_template)
        if (t.m_wlan_group_id == id) return &t;
    return nullptr;
}

// What a bound AP takes from its template: the radios (the members the two radio records
// share) and the three device blocks. The controller pushes this body to the AP.
void take_template(ap_config_body &conf, const ap_template_entry &t) {
    for (int r = 0; r < WEBMGMT_AP_RADIOS; ++r)
        copy_template_radio(conf.m_radio[r], t.m_radio[r]);
    conf.m_timereboot = t.m_timereboot;
    conf.m_weblogin = t.m_weblogin;
    conf.m_iptv = t.m_iptv;
}

} // namespace
} // namespace wm

using namespace wm;

extern "C" {

int save_ap_template_bind(manage_ap_list_config *aps, ap_template_list_config *list, int op,
                          const form_pair *pairs, int count) {
    if (!aps || !list || (op != kOpBind && op != kOpUnbind)) return -1;
    ap_device_record *ap = sent_ap(aps, pairs, count);
    ap_template_entry *t = sent_template(list, pairs, count);
    if (!ap || !t) return -1;
    if (op == kOpBind) {
        t->m_bind_mac = ap->m_dev_mac;
        t->m_member_mac = ap->m_dev_mac;
        copy_bounded(ap->m_group_name,
                     member_text(t->m_wlan_group_name, sizeof t->m_wlan_group_name));
        take_template(ap->m_conf, *t);
    } else {
        std::memset(&t->m_bind_mac, 0, sizeof t->m_bind_mac);
        std::memset(&t->m_member_mac, 0, sizeof t->m_member_mac);
        std::memset(ap->m_group_name, 0, sizeof ap->m_group_name);
    }
    // The template through the store's per-template call, so that another program's change
    // to another template is kept; the AP list whole.
    ModifyApTemplateItem(list, t);
    SC_Save_System_ManageApList_Config2Flash(aps);
    return 0;
}

int save_ap_config(manage_ap_list_config *aps, const form_pair *pairs, int count) {
    if (!aps) return -1;
    ap_device_record *ap = sent_ap(aps, pairs, count);
    if (!ap) return -1;
    FormVars v(pairs, count);
    v.text("m_dev_name", ap->m_dev_name);
    v.text("m_group_name", ap->m_group_name);
    v.text("m_dev_position", ap->m_conf.m_dev_position);
    v.byte("m_TimeRebootEnable", ap->m_TimeRebootEnable);
    v.text("m_RebootTime", ap->m_RebootTime);
    apply_timereboot(v, ap->m_conf.m_timereboot);
    return SC_Save_System_ManageApList_Config2Flash(aps);
}

int save_ap_radio_config(manage_ap_list_config *aps, const form_pair *pairs, int count) {
    if (!aps) return -1;
    ap_device_record *ap = sent_ap(aps, pairs, count);
    if (!ap) return -1;
    apply_radios(FormVars(pairs, count), ap->m_conf.m_radio);
    return SC_Save_System_ManageApList_Config2Flash(aps);
}

} // extern "C"
