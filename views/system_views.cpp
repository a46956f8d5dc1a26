// Views of the system sections: product information, the misc settings (users, timers, DMZ,
// log, NTP, timed reboot, remote access, cloud, speed-up), DNS, NAT and roaming.
#include "views/json_print.h"

namespace wm {
namespace {

using json::Sep;

void print_sys_user(const misc_user &u) {
    json::open_object("sys_user");
    json::number("lock_location", u.lock_location);
    json::text("rootname", u.rootname);
    json::text("rootpwd", u.rootpwd);
    json::unsigned_number("root_type", u.root_type);
    json::text("username", u.username);
    // The page never gets the user's password back, only the administrator's.
    json::fixed("userpwd", "");
    json::unsigned_number("user_type", u.user_type);
    json::number("userpwdaswifipwd", u.userpwdaswifipwd);
    json::number("userpwd_encrypt", u.userpwd_encrypt);
    json::number("userpwd_encrypt_type", u.userpwd_encrypt_type);
    json::text("resved", u.resved, Sep::Last);
    json::close_object();
}

void print_sys_actimer(const misc_actimer &t) {
    json::open_object("sys_actimer");
    json::number("lock_location", t.lock_location);
    json::number("sys_ac_discovery_timeout", t.sys_ac_discovery_timeout);
    json::number("sys_ac_echo_interval", t.sys_ac_echo_interval);
    json::text("resved", t.resved, Sep::Last);
    json::close_object();
}

// The pages know this object as "sys_dzm".
void print_sys_dzm(const misc_dmz &d) {
    json::open_object("sys_dzm");
    json::number("lock_location", d.lock_location);
    json::number("dmz_enable", d.dmz_enable);
    json::text("dmz_host", d.dmz_host);
    json::text("resved", d.resved, Sep::Last);
    json::close_object();
}

// Closed by the caller: `},` in the misc view, `}` at the end of the DMZ view.
void print_sys_log_members(const misc_log &l) {
    json::open_object("sys_log");
    json::number("lock_location", l.lock_location);
    json::number("log_enable", l.log_enable);
    json::number("remote_log_enable", l.remote_log_enable);
    json::text("remote_log_server_host", l.remote_log_server_host);
    json::text("resved", l.resved, Sep::Last);
}

void print_sys_ntp(const misc_ntp &n) {
    json::open_object("sys_ntp");
    json::number("lock_location", n.lock_location);
    json::number("enable", n.enable);
    json::text("ntp_tz", n.ntp_tz);
    json::number("ntp_server_mode", n.ntp_server_mode);
    json::text("ntp_server_addr", n.ntp_server_addr);
    json::text("resved", n.resved, Sep::Last);
    json::close_object();
}

// The record keeps month before week; the page expects week first.
void print_sys_timereboot(const timereboot_config &r) {
    json::open_object("sys_timereboot");
    json::number("m_TimeRebootEnable", r.m_TimeRebootEnable);
    json::number("m_TimeReboot_Hour", r.m_TimeReboot_Hour);
    json::number("m_TimeReboot_Day", r.m_TimeReboot_Day);
    json::number("m_TimeReboot_Week", r.m_TimeReboot_Week);
    json::number("m_TimeReboot_Month", r.m_TimeReboot_Month);
    json::fixed("resved", "", Sep::Last);
    json::close_object();
}

void print_sys_remote(const misc_remote &r) {
    json::open_object("sys_remote");
    json::number("enable_web", r.enable_web);
    json::number("enable_telnet", r.enable_telnet);
    json::text("subdomain", r.subdomain);
    json::text("web_url", r.web_url);
    json::text("server_addr", r.server_addr);
    json::number("remote_port", r.remote_port);
    json::fixed("resved", "", Sep::Last);
    json::close_object();
}

void print_sys_cloud(const misc_cloud &c) {
    json::open_object("sys_cloud");
    json::number("enable", c.enable);
    json::text("server", c.server);
    json::text("bind_code", c.bind_code);
    json::text("location_x", c.location_x);
    json::text("location_y", c.location_y);
    json::text("desc", c.desc);
    json::fixed("resved", "", Sep::Last);
    json::close_object();
}

// The only object of the misc view without a "resved" member.
void print_sys_speedup(const misc_speedup &s) {
    json::open_object("sys_speedup");
    json::number("enable_hand", s.enable_hand);
    json::number("enable_soft_cache", s.enable_soft_cache);
    json::number("enable_soft_nomangle", s.enable_soft_nomangle, Sep::Last);
    json::close_object();
}

} // namespace
} // namespace wm

namespace json = wm::json;

extern "C" {

void printf_ProductInfo_json(const productinfo_config *p) {
    json::open_document();
    json::text("productname", p->productname);
    json::text("device_sn", p->device_sn);
    json::text("default_language", p->default_language);
    json::text("device_name", p->device_name);
    json::text("device_position", p->device_position);
    json::number("upgrade_reset", p->upgrade_reset);
    json::text("device_cpu", p->device_cpu);
    json::number("max_device_ap", p->max_device_ap);
    json::text("config_get_telnet_port_url", p->config_get_telnet_port_url);
    json::number("dev_opmode", p->dev_opmode);
    json::number("support_eth_count", p->dev_spec.support_eth_count);
    json::text("support_eth_type", p->dev_spec.support_eth_type);
    json::text("resved", p->resved, json::Sep::Last);
    json::close_document();
}

void printf_Misc_json(const misc_config *m) {
    json::open_document();
    wm::print_sys_user(m->sys_user);
    wm::print_sys_actimer(m->sys_actimer);
    wm::print_sys_dzm(m->sys_dzm);
    wm::print_sys_log_members(m->sys_log);
    json::close_object();
    wm::print_sys_ntp(m->sys_ntp);
    wm::print_sys_timereboot(m->sys_timereboot);
    wm::print_sys_remote(m->sys_remote);
    wm::print_sys_cloud(m->sys_cloud);
    wm::print_sys_speedup(m->sys_speedup);
    // A second telnet switch of the record, apart from the one of "sys_remote".
    json::number("enable_telnet", m->enable_telnet);
    json::text("resved", m->resved, json::Sep::Last);
    json::close_document();
}

void printf_Dmz_json(const misc_config *m) {
    json::open_document();
    wm::print_sys_dzm(m->sys_dzm);
    wm::print_sys_log_members(m->sys_log);
    json::close_document();
    json::close_document();
}

void printf_DDNS_json(const misc_config *m) {
    const misc_ddns &d = m->sys_ddns;
    json::open_document();
    json::open_object("sys_ddns");
    json::number("enable", d.enable);
    json::text("user", d.user);
    json::text("pwd", d.pwd);
    json::text("ip", d.ip);
    json::text("domain", d.domain);
    json::number("usertype", d.usertype);
    json::number("conn_status", d.conn_status);
    json::number("support_planet", d.support_planet);
    json::number("wanid", d.wanid, json::Sep::Last);
    json::close_document();
    json::close_document();
}

void printf_NAT_json(const misc_config *m) {
    json::open_document();
    json::open_object("sys_nat");
    json::number("enable", m->sys_nat.enable, json::Sep::Last);
    json::close_document();
    json::close_document();
}

// The record keeps the thresholds before the switches; the page expects the switches first.
void printf_kvr_json(const wifi_config *w) {
    json::open_document();
    json::open_object("sys_roaming");
    json::number("m_kvr_enable", w->kvr_enable);
    json::number("m_is_5g_first", w->is_5g_first);
    json::number("m_kvr_2g_rssi_thr", w->kvr_2g_rssi_thr);
    json::number("m_kvr_5g_rssi_thr", w->kvr_5g_rssi_thr, json::Sep::Last);
    json::close_document();
    json::close_document();
}

} // extern "C"
