// Printers shared by the wireless, template and managed-AP views: the escaped SSID and key
// texts, members of compact one-line objects, and the VAP and radio blocks that
// the default template, the template list and the managed APs have in common.
#pragma once

#include "views/json_print.h"

namespace wm::json {

// A text member passed through filter_json_name before printing. The member may fill its
// room without a terminator, so it is copied to a terminated text first; every character
// may double, so the escaped text has room for twice the member and the terminator.
template <size_t N>
void escaped(std::string_view key, const char (&member)[N], Sep sep = Sep::Comma) {
    char plain[N + 1] = {};
    std::memcpy(plain, member, N);
    char out[2 * N + 1] = {};
    filter_json_name(plain, out);
    text_view(key, member_text(out, sizeof out), sep);
}

// Members of a compact object, all on one line: `"key":"value"` with a leading comma for
// every member but the first.
struct Inline {
    bool first = true;
    void lead() {
        if (!first) raw(',');
        first = false;
    }
    void number(std::string_view key, long long value) {
        lead();
        pair_number(key, value);
    }
    void text(std::string_view key, std::string_view value) {
        lead();
        pair(key, value);
    }
    template <size_t N> void member(std::string_view key, const char (&value)[N]) {
        text(key, member_text(value, N));
    }
};

// The VAP members of a template and of a managed AP's full configuration, none escaped.
inline void template_vap(const defap_vap &v) {
    number("m_wlan_enable", v.m_wlan_enable);
    number("m_wlan_hide_ssid", v.m_wlan_hide_ssid);
    text("m_ssid", v.m_ssid);
    number("m_vlanid", v.m_vlanid);
    mac("m_bssid", v.m_bssid);
    number("m_security", v.m_security);
    number("m_securitycipher", v.m_securitycipher);
    number("m_authmode", v.m_authmode);
    number("m_wep_keytype", v.m_wep_keytype);
    text("m_wep_keystr", v.m_wep_keystr);
    number("m_psk_keytype", v.m_psk_keytype);
    text("m_psk_keystr", v.m_psk_keystr);
    ipv4("m_radius_serverip", v.m_radius_serverip);
    number("m_radius_serverport", v.m_radius_serverport);
    text("m_radius_sharekey", v.m_radius_sharekey);
    u32("m_tx_pkts", v.m_tx_pkts);
    u32("m_rx_pkts", v.m_rx_pkts);
    u64("m_tx_bytes", v.m_tx_bytes);
    u64("m_rx_bytes", v.m_rx_bytes, Sep::Last);
}

// `"m_vap":[` and the four VAPs, each `{`-newline ... `}`, separated by commas, then `]`.
template <typename Vap, size_t N, typename PrintVap>
void vap_list(const Vap (&vaps)[N], PrintVap print_vap) {
    raw("\"m_vap\":[");
    for (size_t i = 0; i < N; ++i) {
        raw("{\n");
        print_vap(vaps[i]);
        raw(i + 1 < N ? std::string_view{"},"} : std::string_view{"}]"});
    }
}

// `{`-newline and the radio members a template carries, then its VAPs; the caller closes
// the object. A managed AP's radio (it has `m_channel_config`) also shows the channel it
// chose after the configured one.
template <typename Radio> void template_radio(const Radio &r) {
    raw("{\n");
    number("m_radio_type", r.m_radio_type);
    number("m_wirelessmode", r.m_wirelessmode);
    number("m_wirelessbwmode", r.m_wirelessbwmode);
    number("m_ampduenable", r.m_ampduenable);
    number("m_wlan_isolate", r.m_wlan_isolate);
    number("m_wlan_rate", r.m_wlan_rate);
    number("m_wlan_beacon_interval", r.m_wlan_beacon_interval);
    number("m_wlan_rts", r.m_wlan_rts);
    number("m_wlan_frag", r.m_wlan_frag);
    number("m_wlan_shortGI", r.m_wlan_shortGI);
    number("m_wlan_txpower", r.m_wlan_txpower); // the stored level, not the page's
    number("m_wlan_max_txpower", r.m_wlan_max_txpower);
    number("m_channel", r.m_channel);
    if constexpr (requires { r.m_channel_config; }) number("m_channel_config", r.m_channel_config);
    number("m_rev_option", r.m_rev_option);
    number("m_coverage_threshold", r.m_coverage_threshold);
    number("m_MaxStanum", r.m_MaxStanum);
    text("contrystr", r.contrystr);
    vap_list(r.m_vap, template_vap);
}

// The reboot schedule, web login and IPTV objects of a template or an AP, each closed by `},`.
inline void device_blocks(const timereboot_config &r, const defap_weblogin &w,
                          const defap_iptv &t) {
    open_object("m_timereboot");
    number("m_TimeRebootEnable", r.m_TimeRebootEnable);
    number("m_TimeRebootType", r.m_TimeRebootType);
    number("m_TimeReboot_Hour", r.m_TimeReboot_Hour);
    number("m_TimeReboot_Day", r.m_TimeReboot_Day);
    number("m_TimeReboot_Month", r.m_TimeReboot_Month);
    number("m_TimeReboot_Week", r.m_TimeReboot_Week, Sep::Last);
    close_object();
    open_object("m_weblogin");
    number("m_enable", w.m_enable);
    number("m_usertype", w.m_usertype);
    text("m_username", w.m_username);
    text("m_userpwd", w.m_userpwd, Sep::Last);
    close_object();
    open_object("m_iptv");
    number("m_enable", t.m_enable);
    u32("m_vlanid", t.m_vlanid, Sep::Last);
    close_object();
}

} // namespace wm::json
