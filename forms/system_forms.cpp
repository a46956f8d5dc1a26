// The system settings forms: accounts, controller timers, roaming, DMZ, NAT, band steering,
// dynamic DNS, logging, time, remote access, scheduled reboot and product information.
// Each is one binding table over one section, then the section's flash save; the result of
// the save is not passed on (the pages are told 0 whatever it gives).
#include <cstdio>
#include <cstring>

#include "config_data_api.h"
#include "forms/binding.h"
#include "sys/support/text.h"

namespace wm {
namespace {

// The variables of each page, in the order the pages send them.

void bind_user(Bindings &b, misc_user &u) {
    b.add<conv::kTextN>("rootname", u.rootname);
    b.add<conv::kTextN>("rootpwd", u.rootpwd);
    b.add<conv::kInt2>("root_type", u.root_type);
    b.add<conv::kTextN>("username", u.username);
    b.add<conv::kTextN>("userpwd", u.userpwd);
    b.add<conv::kInt2>("user_type", u.user_type);
    b.add<conv::kTextN>("userpwdaswifipwd", u.userpwdaswifipwd);
    b.add<conv::kTextN>("userpwd_encrypt", u.userpwd_encrypt);
    b.add<conv::kTextN>("userpwd_encrypt_type", u.userpwd_encrypt_type);
}

void bind_actimer(Bindings &b, misc_actimer &t) {
    b.add<conv::kTextN>("sys_ac_discovery_timeout", t.sys_ac_discovery_timeout);
    b.add<conv::kTextN>("sys_ac_echo_interval", t.sys_ac_echo_interval);
}

// Band steering and roaming share the wireless record's four members; the variables are
// named as the roaming view prints them.
void bind_kvr(Bindings &b, wifi_config &w) {
    b.add<conv::kText>("m_kvr_enable", w.kvr_enable);
    b.add<conv::kText>("m_is_5g_first", w.is_5g_first);
    b.add<conv::kShort>("m_kvr_2g_rssi_thr", w.kvr_2g_rssi_thr);
    b.add<conv::kShort>("m_kvr_5g_rssi_thr", w.kvr_5g_rssi_thr);
}

void bind_dmz(Bindings &b, misc_dmz &d) {
    b.add<conv::kTextN>("dmz_enable", d.dmz_enable);
    b.add<conv::kTextN>("dmz_host", d.dmz_host);
}

void bind_nat(Bindings &b, misc_nat &n) {
    b.add<conv::kTextN>("enable", n.enable);
}

void bind_ddns(Bindings &b, misc_ddns &d) {
    b.add<conv::kTextN>("enable", d.enable);
    b.add<conv::kTextN>("user", d.user);
    b.add<conv::kTextN>("pwd", d.pwd);
    b.add<conv::kTextN>("usertype", d.usertype);
    b.add<conv::kTextN>("domain", d.domain);
}

void bind_log(Bindings &b, misc_log &l) {
    b.add<conv::kTextN>("log_enable", l.log_enable);
    b.add<conv::kTextN>("remote_log_enable", l.remote_log_enable);
    b.add<conv::kTextN>("remote_log_server_host", l.remote_log_server_host);
}

void bind_ntp(Bindings &b, misc_ntp &n) {
    b.add<conv::kTextN>("enable", n.enable);
    b.add<conv::kTextN>("ntp_tz", n.ntp_tz);
    b.add<conv::kTextN>("ntp_server_mode", n.ntp_server_mode);
    b.add<conv::kTextN>("ntp_server_addr", n.ntp_server_addr);
}

// "enable_telnet" is the remote telnet switch; "local_enable_telnet" the record's own
// telnet switch, the one the system view prints at the top level.
void bind_remote(Bindings &b, misc_config &m) {
    b.add<conv::kTextN>("enable_web", m.sys_remote.enable_web);
    b.add<conv::kTextN>("enable_telnet", m.sys_remote.enable_telnet);
    b.add<conv::kShort2>("remote_port", m.sys_remote.remote_port);
    b.add<conv::kTextN>("local_enable_telnet", m.enable_telnet);
}

void bind_timereboot(Bindings &b, timereboot_config &t) {
    b.add<conv::kText>("m_TimeRebootEnable", t.m_TimeRebootEnable);
    b.add<conv::kText>("m_TimeReboot_Hour", t.m_TimeReboot_Hour);
    b.add<conv::kText>("m_TimeReboot_Day", t.m_TimeReboot_Day);
    b.add<conv::kText>("m_TimeReboot_Week", t.m_TimeReboot_Week);
    b.add<conv::kText>("m_TimeRebootType", t.m_TimeRebootType);
    b.add<conv::kText>("m_TimeReboot_Month", t.m_TimeReboot_Month);
}

void bind_product(Bindings &b, productinfo_config &p) {
    b.add<conv::kTextN>("productname", p.productname);
    b.add<conv::kTextN>("device_sn", p.device_sn);
    b.add<conv::kTextN>("default_language", p.default_language);
    b.add<conv::kTextN>("device_name", p.device_name);
    b.add<conv::kTextN>("device_position", p.device_position);
    b.add<conv::kTextN>("upgrade_reset", p.upgrade_reset);
    b.add<conv::kTextN>("device_cpu", p.device_cpu);
    b.add<conv::kTextN>("ap_mode", p.ap_mode);
    b.add<conv::kTextN>("is_first", p.is_first);
    b.add<conv::kTextN>("fit_to_fat", p.fit_to_fat);
}

// Binds with `bind` over `part` of `record`, applies, saves the record with `save` (when
// given); 0, or -1 for a null record.
template <typename Record, typename Part>
int apply_and_save(Record *record, Part Record::*part, void (*bind)(Bindings &, Part &),
                   const form_pair *pairs, int count, int (*save)(Record *)) {
    if (!record) return -1;
    Bindings b;
    bind(b, record->*part);
    b.apply(pairs, count);
    if (save) save(record); // its result is not the form's
    return 0;
}

// The remote host name and the remote URL made from it. The device formatted both without
// a bound; here each stops at its member, terminated, and nothing of the old text stays
// behind the new one.
void write_remote_texts(misc_remote &r, const productinfo_config *product, const char *host) {
    std::memset(r.subdomain, 0, sizeof r.subdomain);
    std::memset(r.web_url, 0, sizeof r.web_url);
    std::snprintf(r.subdomain, sizeof r.subdomain, "%s.remote", host ? host : "");
    std::string_view remote = member_text(r.subdomain, sizeof r.subdomain);
    // The domain the remote host name lives under, at most its 200 bytes.
    const char *domain = "";
    int domain_length = 0;
    if (product) {
        domain = product->remote_web_config_domain;
        domain_length = static_cast<int>(
            strnlen(product->remote_web_config_domain, sizeof product->remote_web_config_domain));
    }
    std::snprintf(r.web_url, sizeof r.web_url, "http://%.*s%.*s", static_cast<int>(remote.size()),
                  r.subdomain, domain_length, domain);
}

} // namespace
} // namespace wm

using namespace wm;

extern "C" {

int save_sys_user(const form_pair *pairs, int count) {
    return apply_and_save(SC_Get_Misc_System_Config(), &misc_config::sys_user, bind_user, pairs,
                          count, SC_Save_System_Misc_Config2Flash);
}

int save_sys_actimer(const form_pair *pairs, int count) {
    return apply_and_save(SC_Get_Misc_System_Config(), &misc_config::sys_actimer, bind_actimer,
                          pairs, count, SC_Save_System_Misc_Config2Flash);
}

// The system record keeps no roaming settings: the roaming page's values go to the
// wireless record's roaming members, in this process only (nothing is saved), where a view
// printed by the same program shows them.
int save_sys_aproaming(const form_pair *pairs, int count) {
    wifi_config *w = SC_Get_SC_WiFi_Config();
    if (!w) return -1;
    Bindings b;
    bind_kvr(b, *w);
    b.apply(pairs, count);
    return 0;
}

int save_sys_dzm(misc_config *record, const form_pair *pairs, int count) {
    return apply_and_save(record, &misc_config::sys_dzm, bind_dmz, pairs, count,
                          SC_Save_System_Misc_Config2Flash);
}

int save_sys_nat(misc_config *record, const form_pair *pairs, int count) {
    return apply_and_save(record, &misc_config::sys_nat, bind_nat, pairs, count,
                          SC_Save_System_Misc_Config2Flash);
}

int save_sys_kvr(wifi_config *record, const form_pair *pairs, int count) {
    if (!record) return -1;
    Bindings b;
    bind_kvr(b, *record);
    b.apply(pairs, count);
    SC_Save_SC_WiFi_Config2Flash(record);
    return 0;
}

int save_sys_ddns(misc_config *record, const form_pair *pairs, int count) {
    return apply_and_save(record, &misc_config::sys_ddns, bind_ddns, pairs, count,
                          SC_Save_System_Misc_Config2Flash);
}

int save_sys_log(const form_pair *pairs, int count) {
    return apply_and_save(SC_Get_Misc_System_Config(), &misc_config::sys_log, bind_log, pairs,
                          count, SC_Save_System_Misc_Config2Flash);
}

int save_sys_ntp(misc_config *record, const form_pair *pairs, int count) {
    return apply_and_save(record, &misc_config::sys_ntp, bind_ntp, pairs, count,
                          SC_Save_System_Misc_Config2Flash);
}

int save_sys_remote(const form_pair *pairs, int count, const char *host) {
    misc_config *misc = SC_Get_Misc_System_Config();
    productinfo_config *product = SC_Get_ProductInfo_System_Config();
    if (!misc) return -1;
    Bindings b;
    bind_remote(b, *misc);
    b.apply(pairs, count);
    write_remote_texts(misc->sys_remote, product, host);
    SC_Save_System_Misc_Config2Flash(misc);
    if (product) SC_Save_System_ProductInfo_Config2Flash(product);
    return 0;
}

int save_sys_timereboot(misc_config *record, const form_pair *pairs, int count) {
    return apply_and_save(record, &misc_config::sys_timereboot, bind_timereboot, pairs, count,
                          SC_Save_System_Misc_Config2Flash);
}

// The wireless record is fetched as on the device, though no variable of this page
// belongs to it.
int save_product_Info(const form_pair *pairs, int count) {
    (void)SC_Get_SC_WiFi_Config();
    productinfo_config *product = SC_Get_ProductInfo_System_Config();
    if (!product) return -1;
    Bindings b;
    bind_product(b, *product);
    b.apply(pairs, count);
    SC_Save_System_ProductInfo_Config2Flash(product);
    return 0;
}

} // extern "C"
