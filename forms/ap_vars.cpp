// Conversions of the AP-template and managed-AP forms.
#include "forms/ap_vars.h"

#include <arpa/inet.h>

#include <cstdio>
#include <cstring>
#include <type_traits>

#include "conf/number_text.h"

namespace wm {
namespace {

// The name is built in a zeroed 50-byte buffer, as the wireless forms build theirs.
struct VarName {
    char text[50] = {};
};

VarName radio_var(const char *member, int radio) {
    VarName n;
    std::snprintf(n.text, sizeof n.text, "%s%d", member, radio);
    return n;
}

VarName vap_var(const char *member, int radio, int vap) {
    VarName n;
    std::snprintf(n.text, sizeof n.text, "%s%d%d", member, radio, vap);
    return n;
}

void apply_vap(const FormVars &v, defap_vap &p, int r, int i) {
    v.byte(vap_var("m_wlan_enable", r, i).text, p.m_wlan_enable);
    v.byte(vap_var("m_wlan_hide_ssid", r, i).text, p.m_wlan_hide_ssid);
    v.text(vap_var("m_ssid", r, i).text, p.m_ssid);
    v.number(vap_var("m_vlanid", r, i).text, p.m_vlanid);
    v.byte(vap_var("m_security", r, i).text, p.m_security);
    v.byte(vap_var("m_securitycipher", r, i).text, p.m_securitycipher);
    v.byte(vap_var("m_authmode", r, i).text, p.m_authmode);
    v.byte(vap_var("m_wep_keytype", r, i).text, p.m_wep_keytype);
    v.text(vap_var("m_wep_keystr", r, i).text, p.m_wep_keystr);
    v.byte(vap_var("m_psk_keytype", r, i).text, p.m_psk_keytype);
    v.text(vap_var("m_psk_keystr", r, i).text, p.m_psk_keystr);
    v.ipv4(vap_var("m_radius_serverip", r, i).text, p.m_radius_serverip);
    v.number(vap_var("m_radius_serverport", r, i).text, p.m_radius_serverport);
    v.text(vap_var("m_radius_sharekey", r, i).text, p.m_radius_sharekey);
}

// The members both radio records have, in the order of the all-radio wireless form.
template <typename Radio> void apply_radio(const FormVars &v, Radio &radio, int r) {
    v.byte(radio_var("m_radio_type", r).text, radio.m_radio_type);
    v.byte(radio_var("m_wirelessmode", r).text, radio.m_wirelessmode);
    v.byte(radio_var("m_wirelessbwmode", r).text, radio.m_wirelessbwmode);
    v.byte(radio_var("m_ampduenable", r).text, radio.m_ampduenable);
    v.byte(radio_var("m_wlan_isolate", r).text, radio.m_wlan_isolate);
    v.byte(radio_var("m_wlan_rate", r).text, radio.m_wlan_rate);
    v.number(radio_var("m_wlan_beacon_interval", r).text, radio.m_wlan_beacon_interval);
    v.number(radio_var("m_wlan_rts", r).text, radio.m_wlan_rts);
    v.number(radio_var("m_wlan_frag", r).text, radio.m_wlan_frag);
    v.number(radio_var("m_wlan_shortGI", r).text, radio.m_wlan_shortGI);
    v.number(radio_var("m_wlan_txpower", r).text, radio.m_wlan_txpower);
    v.number(radio_var("m_wlan_max_txpower", r).text, radio.m_wlan_max_txpower);
    v.number(radio_var("m_channel", r).text, radio.m_channel);
    v.number(radio_var("m_rev_option", r).text, radio.m_rev_option);
    v.number(radio_var("m_coverage_threshold", r).text, radio.m_coverage_threshold);
    v.number(radio_var("m_MaxStanum", r).text, radio.m_MaxStanum);
    v.text(radio_var("contrystr", r).text, radio.contrystr);
    for (int i = 0; i < WEBMGMT_AP_VAPS; ++i)
        apply_vap(v, radio.m_vap[i], r, i);
}

// A member of the default template's radio copied into the same-named member of the AP's.
template <typename To, typename From> void copy_member(To &to, const From &from) {
    static_assert(std::is_same_v<std::remove_all_extents_t<To>, std::remove_all_extents_t<From>>,
                  "the two radios' members of one name have one type");
    std::memcpy(&to, &from, sizeof to < sizeof from ? sizeof to : sizeof from);
}

} // namespace

void FormVars::byte(const char *name, uint8_t &member) const {
    get_prop_char(name, reinterpret_cast<char *>(&member), pairs_, count_);
}

void FormVars::number(const char *name, int16_t &member) const {
    char value[12] = {};
    if (get_prop_n(name, value, pairs_, count_, sizeof value))
        member = int16_t(text_to_int32(value));
}

void FormVars::number(const char *name, uint32_t &member) const {
    char value[12] = {};
    if (get_prop_n(name, value, pairs_, count_, sizeof value))
        member = uint32_t(text_to_int32(value));
}

void FormVars::text(const char *name, char *member, size_t size) const {
    get_prop_n(name, member, pairs_, count_, int(size));
}

void FormVars::ipv4(const char *name, ipaddr_field &member) const {
    char value[WEBMGMT_GET_PROP_MAX + 1] = {};
    if (get_prop_n(name, value, pairs_, count_, sizeof value)) member.v4 = ::inet_addr(value);
}

void apply_radios(const FormVars &v, defap_radio (&radios)[WEBMGMT_AP_RADIOS]) {
    for (int r = 0; r < WEBMGMT_AP_RADIOS; ++r)
        apply_radio(v, radios[r], r);
}

void apply_radios(const FormVars &v, ap_radio (&radios)[WEBMGMT_AP_RADIOS]) {
    for (int r = 0; r < WEBMGMT_AP_RADIOS; ++r)
        apply_radio(v, radios[r], r);
}

void apply_timereboot(const FormVars &v, timereboot_config &b) {
    v.byte("m_timereboot.m_TimeRebootEnable", b.m_TimeRebootEnable);
    v.byte("m_timereboot.m_TimeRebootType", b.m_TimeRebootType);
    v.byte("m_timereboot.m_TimeReboot_Hour", b.m_TimeReboot_Hour);
    v.byte("m_timereboot.m_TimeReboot_Day", b.m_TimeReboot_Day);
    v.byte("m_timereboot.m_TimeReboot_Month", b.m_TimeReboot_Month);
    v.byte("m_timereboot.m_TimeReboot_Week", b.m_TimeReboot_Week);
}

void apply_weblogin(const FormVars &v, defap_weblogin &b) {
    v.byte("m_weblogin.m_enable", b.m_enable);
    v.byte("m_weblogin.m_usertype", b.m_usertype);
    v.text("m_weblogin.m_username", b.m_username);
    v.text("m_weblogin.m_userpwd", b.m_userpwd);
}

void apply_iptv(const FormVars &v, defap_iptv &b) {
    v.byte("m_iptv.m_enable", b.m_enable);
    v.number("m_iptv.m_vlanid", b.m_vlanid);
}

void copy_template_radio(ap_radio &to, const defap_radio &from) {
#define WM_COPY_SHARED(code, type, name, dims) copy_member(to.name, from.name);
    WEBMGMT_DEFAP_RADIO_MEMBERS(WM_COPY_SHARED)
#undef WM_COPY_SHARED
}

} // namespace wm
