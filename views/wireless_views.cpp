// Views of the device's own radios, its timed switch-off and the AP templates the controller
// pushes to managed APs.
#include <algorithm>

#include "views/wireless_print.h"

namespace wm {
namespace {

using json::Sep;

// The repeater (client) interface: its SSID and WEP key are escaped, its PSK key is not.
void print_repeater(const wifi_vap &r) {
    json::open_object("m_repeater");
    json::number("m_wlan_enable", r.m_wlan_enable);
    json::number("m_wlan_hide_ssid", r.m_wlan_hide_ssid);
    json::escaped("m_ssid", r.m_ssid);
    json::number("m_vlanid", r.m_vlanid);
    json::number("m_mode", r.m_mode);
    json::text("m_ifname", r.m_ifname);
    json::number("m_lockbssid", r.m_lockbssid);
    json::mac("m_bssid", r.m_bssid);
    json::number("m_security", r.m_security);
    json::number("m_securitycipher", r.m_securitycipher);
    json::number("m_authmode", r.m_authmode);
    json::number("m_p2p", r.m_p2p);
    json::number("m_wep_keytype", r.m_wep_keytype);
    json::escaped("m_wep_keystr", r.m_wep_keystr);
    json::number("m_psk_keytype", r.m_psk_keytype);
    json::text("m_psk_keystr", r.m_psk_keystr);
    json::ipv4("m_radius_serverip", r.m_radius_serverip);
    json::number("m_radius_serverport", r.m_radius_serverport);
    json::text("m_radius_sharekey", r.m_radius_sharekey);
    json::u32("m_tx_pkts", r.m_tx_pkts);
    json::u32("m_rx_pkts", r.m_rx_pkts);
    json::u64("m_tx_bytes", r.m_tx_bytes);
    json::u64("m_rx_bytes", r.m_rx_bytes);
    json::number("m_vlan_tag_enable", r.m_vlan_tag_enable, Sep::Last);
    json::close_object();
}

// A VAP of the device: its SSID and PSK key are escaped, its WEP key is not (the pages
// expect the repeater's keys the other way round).
void print_vap(const wifi_vap &v) {
    json::number("m_wlan_enable", v.m_wlan_enable);
    json::number("m_wlan_hide_ssid", v.m_wlan_hide_ssid);
    json::escaped("m_ssid", v.m_ssid);
    json::number("m_vlanid", v.m_vlanid);
    json::number("m_mode", v.m_mode);
    json::text("m_ifname", v.m_ifname);
    json::number("m_lockbssid", v.m_lockbssid);
    json::mac("m_bssid", v.m_bssid);
    json::number("m_security", v.m_security);
    json::number("m_securitycipher", v.m_securitycipher);
    json::number("m_authmode", v.m_authmode);
    json::number("m_wep_keytype", v.m_wep_keytype);
    json::text("m_wep_keystr", v.m_wep_keystr);
    json::number("m_psk_keytype", v.m_psk_keytype);
    json::escaped("m_psk_keystr", v.m_psk_keystr);
    json::ipv4("m_radius_serverip", v.m_radius_serverip);
    json::number("m_radius_serverport", v.m_radius_serverport);
    json::text("m_radius_sharekey", v.m_radius_sharekey);
    json::text("m_bind_eth", v.m_bind_eth);
    json::u32("m_tx_pkts", v.m_tx_pkts);
    json::u32("m_rx_pkts", v.m_rx_pkts);
    json::u64("m_tx_bytes", v.m_tx_bytes);
    json::u64("m_rx_bytes", v.m_rx_bytes);
    json::number("m_vlan_tag_enable", v.m_vlan_tag_enable, Sep::Last);
}

void print_radio(const wifi_radio &r) {
    json::raw("{\n");
    json::number("m_radio_type", r.m_radio_type);
    json::number("m_wirelessmode", r.m_wirelessmode);
    json::number("m_wirelessbwmode", r.m_wirelessbwmode);
    json::number("m_ampduenable", r.m_ampduenable);
    json::number("m_wlan_isolate", r.m_wlan_isolate);
    json::number("m_wlan_rate", r.m_wlan_rate);
    json::number("m_wlan_beacon_interval", r.m_wlan_beacon_interval);
    json::number("m_wlan_rts", r.m_wlan_rts);
    json::number("m_wlan_frag", r.m_wlan_frag);
    json::number("m_wlan_shortGI", r.m_wlan_shortGI);
    json::number("m_wlan_txpower", r.m_wlan_txpower);
    json::number("m_wlan_max_txpower", r.m_wlan_max_txpower);
    json::number("m_channel", r.m_channel);
    json::number("m_channel_config", r.m_channel_config);
    json::number("m_rev_option", r.m_rev_option);
    json::number("m_coverage_threshold", r.m_coverage_threshold);
    json::number("m_MaxStanum", r.m_MaxStanum);
    json::number("m_acktimeout", r.m_acktimeout);
    json::number("m_wmm", r.m_wmm);
    json::number("m_txchainmask", r.m_txchainmask);
    json::number("m_rxchainmask", r.m_rxchainmask);
    json::text("contrystr", r.contrystr); // the pages spell the country so
    json::text("m_phyname", r.m_phyname);
    json::number("m_enable", r.m_enable);
    json::number("m_phymode", r.m_phymode);
    json::number("m_dfs_enable", r.m_dfs_enable);
    json::number("channel_limit_enable", r.channel_limit_enable);
    print_repeater(r.m_repeater);
    json::vap_list(r.m_vap, print_vap);
    json::close_object();
}

void print_timeclose(const wifi_timeclose &t) {
    json::open_object("m_timeclosectrl");
    json::number("m_enable", t.m_enable);
    json::text("m_start_time", t.m_start_time);
    json::text("m_end_time", t.m_end_time, Sep::Last);
}

// The radios of a template. The page reads the reboot, login and IPTV objects and "resved"
// as members of the third radio object, so they are printed inside it.
template <size_t N>
void print_template_body(const defap_radio (&radios)[3], const timereboot_config &reboot,
                         const defap_weblogin &login, const defap_iptv &iptv,
                         const char (&resved)[N]) {
    json::raw("\"m_radio\":[");
    for (int i = 0; i < 3; ++i) {
        json::template_radio(radios[i]);
        if (i < 2) json::raw("},");
    }
    json::raw(',');
    json::device_blocks(reboot, login, iptv);
    json::text("resved", resved, Sep::Last);
    json::raw("}]}");
}

} // namespace
} // namespace wm

extern "C" {

void printf_WiFi_json(const wifi_config *config, int32_t radio_count) {
    using namespace wm;
    json::open_document();
    json::number("m_repeater_radio_id", config->m_repeater_radio_id);
    json::raw("\"m_radio\":[");
    // The record holds three radios; a larger count prints those three.
    const int32_t radios = std::min<int32_t>(radio_count, WEBMGMT_WIFI_RADIO_COUNT);
    for (int32_t i = 0; i < radios; ++i)
        print_radio(config->m_radio[i]);
    json::raw("{}],");
    print_timeclose(config->m_timeclosectrl);
    json::raw("}}");
}

void printf_WiFi_Timeclosectrl_json(const wifi_config *config) {
    using namespace wm;
    json::open_document();
    json::number("m_repeater_radio_id", config->m_repeater_radio_id);
    print_timeclose(config->m_timeclosectrl);
    json::close_object();
    json::text("resved", config->resved, json::Sep::Last);
    json::close_document();
}

void printf_DefApTemplate_json(const defap_config *config) {
    using namespace wm;
    json::open_document();
    json::number("m_wlan_group_id", config->m_wlan_group_id);
    print_template_body(config->m_radio, config->m_timereboot, config->m_weblogin, config->m_iptv,
                        config->resved);
}

void printf_ApTemplateList_cf_json(const ap_template_entry *templates, int index) {
    using namespace wm;
    if (!templates || index < 0 || index >= WEBMGMT_AP_TEMPLATES) return;
    const ap_template_entry &t = templates[index];
    json::open_document();
    print_template_body(t.m_radio, t.m_timereboot, t.m_weblogin, t.m_iptv, t.resved);
}

void printf_ApTemplateList_json(const ap_template_entry *entry) {
    using namespace wm;
    if (!entry) return;
    json::raw("{\"WlanGroupList\":{\"data\":[");
    const bool used = entry->m_wlan_group_id >= 1;
    if (used) {
        json::Inline row;
        json::raw('{');
        row.number("WlanGroup_Id", entry->m_wlan_group_id);
        row.member("WlanGroup_Name", entry->m_wlan_group_name);
        row.text("WlanGroup_ApNum", "0");
        row.text("m_index", "0");
        row.member("WlanGroup_ModelName", entry->m_modelname);
        json::raw("},");
    }
    // The page counts rows with a bare number, unlike every other view.
    json::raw("{\"WlanGroup_Id\":\"0\",\"WlanGroup_Name\":\"\",\"WlanGroup_ApNum\":\"\"}],"
              "\"count\":");
    json::raw(used ? "1}}" : "0}}");
}

} // extern "C"
