// Field tables of the wireless records: the device's radios and the default AP template.
#include "conf/field_rows.h"
#include "conf/record_head.h"

namespace {

WM_CODES(wifi_codes, WEBMGMT_WIFI_CONFIG_MEMBERS(WM_CODE_OF));
WM_CODES(radio_codes, WEBMGMT_WIFI_RADIO_MEMBERS(WM_CODE_OF));
WM_CODES(vap_codes, WEBMGMT_WIFI_VAP_MEMBERS(WM_CODE_OF));
WM_CODES(acllist_codes, WEBMGMT_WIFI_ACLLIST_MEMBERS(WM_CODE_OF));
WM_CODES(timeclose_codes, WEBMGMT_WIFI_TIMECLOSE_MEMBERS(WM_CODE_OF));
WM_CODES(defap_codes, WEBMGMT_DEFAP_CONFIG_MEMBERS(WM_CODE_OF));

// A VAP in declaration order; `prefix` names the block ("m_radio[0].m_vap[1].").
void vap_rows(wm::RowWriter &w_, wifi_vap &o_) {
    WEBMGMT_WIFI_VAP_MEMBERS(WM_ROW_X)
}

// The repeater block lists its VLAN-tag switch first, then the VAP members as usual.
void repeater_rows(wm::RowWriter &w, wifi_vap &repeater) {
    WM_ROW(w, vap_codes, repeater, m_vlan_tag_enable);
    WM_ROW(w, vap_codes, repeater, m_wlan_enable);
    WM_ROW(w, vap_codes, repeater, m_mode);
    WM_ROW(w, vap_codes, repeater, m_ifname);
    WM_ROW(w, vap_codes, repeater, m_wlan_hide_ssid);
    WM_ROW(w, vap_codes, repeater, m_ssid);
    WM_ROW(w, vap_codes, repeater, m_vlanid);
    WM_ROW(w, vap_codes, repeater, m_lockbssid);
    WM_ROW(w, vap_codes, repeater, m_bssid);
    WM_ROW(w, vap_codes, repeater, m_security);
    WM_ROW(w, vap_codes, repeater, m_securitycipher);
    WM_ROW(w, vap_codes, repeater, m_authmode);
    WM_ROW(w, vap_codes, repeater, m_wep_keytype);
    WM_ROW(w, vap_codes, repeater, m_wep_keystr);
    WM_ROW(w, vap_codes, repeater, m_psk_keytype);
    WM_ROW(w, vap_codes, repeater, m_psk_keystr);
    WM_ROW(w, vap_codes, repeater, m_radius_serverip);
    WM_ROW(w, vap_codes, repeater, m_radius_serverport);
    WM_ROW(w, vap_codes, repeater, m_radius_sharekey);
    WM_ROW(w, vap_codes, repeater, m_tx_pkts);
    WM_ROW(w, vap_codes, repeater, m_rx_pkts);
    WM_ROW(w, vap_codes, repeater, m_tx_bytes);
    WM_ROW(w, vap_codes, repeater, m_rx_bytes);
    WM_ROW(w, vap_codes, repeater, m_bind_eth);
    WM_ROW(w, vap_codes, repeater, m_p2p);
    WM_ROW(w, vap_codes, repeater, resved);
}

void acl_entry_rows(wm::RowWriter &w_, acl_entry &o_) {
    WEBMGMT_ACL_ENTRY_MEMBERS(WM_ROW_X)
}

// The radio settings up to the DFS switch, then the three switches declared last.
void radio_setting_rows(wm::RowWriter &w, wifi_radio &radio) {
    WM_ROW(w, radio_codes, radio, m_radio_type);
    WM_ROW(w, radio_codes, radio, m_phyname);
    WM_ROW(w, radio_codes, radio, m_enable);
    WM_ROW(w, radio_codes, radio, m_phymode);
    WM_ROW(w, radio_codes, radio, m_wirelessmode);
    WM_ROW(w, radio_codes, radio, m_wirelessbwmode);
    WM_ROW(w, radio_codes, radio, m_ampduenable);
    WM_ROW(w, radio_codes, radio, m_wlan_isolate);
    WM_ROW(w, radio_codes, radio, m_wlan_rate);
    WM_ROW(w, radio_codes, radio, m_wlan_beacon_interval);
    WM_ROW(w, radio_codes, radio, m_wlan_rts);
    WM_ROW(w, radio_codes, radio, m_wlan_frag);
    WM_ROW(w, radio_codes, radio, m_wlan_shortGI);
    WM_ROW(w, radio_codes, radio, m_wlan_txpower);
    WM_ROW(w, radio_codes, radio, m_wlan_max_txpower);
    WM_ROW(w, radio_codes, radio, m_channel);
    WM_ROW(w, radio_codes, radio, m_channel_config);
    WM_ROW(w, radio_codes, radio, m_rev_option);
    WM_ROW(w, radio_codes, radio, m_coverage_threshold);
    WM_ROW(w, radio_codes, radio, m_MaxStanum);
    WM_ROW(w, radio_codes, radio, contrystr);
    WM_ROW(w, radio_codes, radio, m_dfs_enable);
    WM_ROW(w, radio_codes, radio, channel_limit_enable);
    WM_ROW(w, radio_codes, radio, m_support_6E);
    WM_ROW(w, radio_codes, radio, m_no_support_160M);
}

void radio_rows(wm::RowWriter &w, wifi_radio &radio, int r) {
    w.prefix("m_radio[%d].", r);
    radio_setting_rows(w, radio);
    for (int v = 0; v < WEBMGMT_WIFI_VAP_COUNT; ++v) {
        // Every VAP row carries its proper indexes, m_p2p included.
        w.prefix("m_radio[%d].m_vap[%d].", r, v);
        vap_rows(w, radio.m_vap[v]);
    }
    w.prefix("m_radio[%d].m_repeater.", r);
    repeater_rows(w, radio.m_repeater);
    w.prefix("m_radio[%d].m_acllist.", r);
    WM_ROW(w, acllist_codes, radio.m_acllist, mode);
    WM_ROW(w, acllist_codes, radio.m_acllist, count);
    for (int e = 0; e < WEBMGMT_WIFI_ACL_COUNT; ++e) {
        w.prefix("m_radio[%d].m_acllist.element[%d].", r, e);
        acl_entry_rows(w, radio.m_acllist.element[e]);
    }
    w.prefix("m_radio[%d].", r);
    WM_ROW(w, radio_codes, radio, m_stanum);
    WM_ROW(w, radio_codes, radio, m_acktimeout);
    WM_ROW(w, radio_codes, radio, m_wmm);
    WM_ROW(w, radio_codes, radio, m_txchainmask);
    WM_ROW(w, radio_codes, radio, m_rxchainmask);
    WM_ROW(w, radio_codes, radio, resved);
}

void defap_vap_rows(wm::RowWriter &w_, defap_vap &o_) {
    WEBMGMT_DEFAP_VAP_MEMBERS(WM_ROW_X)
}
void defap_radio_rows(wm::RowWriter &w_, defap_radio &o_) {
    WEBMGMT_DEFAP_RADIO_MEMBERS(WM_ROW_X)
}
void timereboot_rows(wm::RowWriter &w_, timereboot_config &o_) {
    WEBMGMT_TIMEREBOOT_MEMBERS(WM_ROW_X)
}
void weblogin_rows(wm::RowWriter &w_, defap_weblogin &o_) {
    WEBMGMT_DEFAP_WEBLOGIN_MEMBERS(WM_ROW_X)
}
void defap_iptv_rows(wm::RowWriter &w_, defap_iptv &o_) {
    WEBMGMT_DEFAP_IPTV_MEMBERS(WM_ROW_X)
}

} // namespace

extern "C" {

void WiFi_field(field_desc *table, wifi_config *config) {
    wm::RowWriter w(table);
    wm::head_rows(w, *config);
    WM_ROW(w, wifi_codes, *config, m_repeater_radio_id);
    for (int r = 0; r < WEBMGMT_WIFI_RADIO_COUNT; ++r)
        radio_rows(w, config->m_radio[r], r);
    w.prefix("m_timeclosectrl.");
    WM_ROW(w, timeclose_codes, config->m_timeclosectrl, m_enable);
    WM_ROW(w, timeclose_codes, config->m_timeclosectrl, m_start_time);
    WM_ROW(w, timeclose_codes, config->m_timeclosectrl, m_end_time);
    w.no_prefix();
    WM_ROW(w, wifi_codes, *config, kvr_2g_rssi_thr);
    WM_ROW(w, wifi_codes, *config, kvr_5g_rssi_thr);
    WM_ROW(w, wifi_codes, *config, is_5g_first);
    WM_ROW(w, wifi_codes, *config, kvr_enable);
    WM_ROW(w, wifi_codes, *config, resved);
}

void defap_field(field_desc *table, defap_config *config) {
    wm::RowWriter w(table);
    wm::head_rows(w, *config);
    WM_ROW(w, defap_codes, *config, m_wlan_group_id);
    for (int r = 0; r < WEBMGMT_WIFI_RADIO_COUNT; ++r) {
        w.prefix("m_radio[%d].", r);
        defap_radio_rows(w, config->m_radio[r]);
        for (int v = 0; v < WEBMGMT_WIFI_VAP_COUNT; ++v) {
            w.prefix("m_radio[%d].m_vap[%d].", r, v);
            defap_vap_rows(w, config->m_radio[r].m_vap[v]);
        }
    }
    w.prefix("m_timereboot.");
    timereboot_rows(w, config->m_timereboot);
    w.prefix("m_weblogin.");
    weblogin_rows(w, config->m_weblogin);
    w.prefix("m_iptv.");
    defap_iptv_rows(w, config->m_iptv);
    w.no_prefix();
    WM_ROW(w, defap_codes, *config, resved);
}

void aptemp_field(field_desc *, void *) {}

} // extern "C"
