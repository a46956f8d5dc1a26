// The device's own wireless forms: every radio with its VAPs, the repeater of one radio,
// and the timed switch-off. The first two look each variable up by a name made from the
// member and the radio (and VAP) index, one look-up per member, the first pair of that
// name counting; an absent variable leaves its member as it was.
#include <arpa/inet.h>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "conf/number_text.h"
#include "config_data_api.h"
#include "forms/binding.h"

namespace wm {
namespace {

// The variable names of one radio or VAP: the member's name, then the indexes in decimal
// with nothing between them ("m_channel1", "m_ssid12"); none for the repeater form.
class VarNames {
  public:
    VarNames(const form_pair *pairs, int count, int radio = -1, int vap = -1)
        : pairs_(pairs), count_(count), radio_(radio), vap_(vap) {}

    // The value of the first pair named `member` with the indexes appended, or null.
    const char *value(const char *member) const {
        char name[kNameSize] = {};
        if (radio_ < 0)
            std::snprintf(name, sizeof name, "%s", member);
        else if (vap_ < 0)
            std::snprintf(name, sizeof name, "%s%d", member, radio_);
        else
            std::snprintf(name, sizeof name, "%s%d%d", member, radio_, vap_);
        if (!pairs_) return nullptr;
        for (int i = 0; i < count_; ++i)
            if (pairs_[i].name && pairs_[i].value && std::strcmp(pairs_[i].name, name) == 0)
                return pairs_[i].value;
        return nullptr;
    }

    // A one-byte member: the value's number, low 8 bits.
    void byte(const char *member, uint8_t &out) const {
        if (const char *v = value(member)) out = static_cast<uint8_t>(text_to_int32(v));
    }
    // 16-bit members keep the low 16 bits, so negative values survive.
    void int16(const char *member, int16_t &out) const {
        if (const char *v = value(member)) out = static_cast<int16_t>(text_to_int32(v));
    }
    void int32(const char *member, int32_t &out) const {
        if (const char *v = value(member)) out = text_to_int32(v);
    }
    // A text member: cleared, then filled with at most its size of the value, so a value
    // as long as the member fills it without a terminator and a longer one is cut there.
    template <size_t N> void text(const char *member, char (&out)[N]) const {
        const char *v = value(member);
        if (!v) return;
        std::memset(out, 0, N);
        std::memcpy(out, v, strnlen(v, N));
    }
    // inet_addr's result (all ones for an invalid text) in the address member's IPv4 word.
    void ipv4(const char *member, ipaddr_field &out) const {
        if (const char *v = value(member)) out.v4 = static_cast<uint32_t>(inet_addr(v));
    }
    void mac(const char *member, mac_field &out) const {
        const char *v = value(member);
        if (!v) return;
        std::memset(out.mac, 0, sizeof out.mac);
        str2mac(v, out.mac);
    }

  private:
    static constexpr size_t kNameSize = 50;
    const form_pair *pairs_;
    int count_;
    int radio_;
    int vap_;
};

void apply_radio(wifi_radio &r, const VarNames &n) {
    n.byte("m_radio_type", r.m_radio_type);
    n.byte("channel_limit_enable", r.channel_limit_enable);
    n.byte("m_wirelessmode", r.m_wirelessmode);
    n.byte("m_wirelessbwmode", r.m_wirelessbwmode);
    n.byte("m_ampduenable", r.m_ampduenable);
    n.byte("m_wlan_isolate", r.m_wlan_isolate);
    n.byte("m_wlan_rate", r.m_wlan_rate);

    n.int16("m_wlan_beacon_interval", r.m_wlan_beacon_interval);
    n.int16("m_wlan_rts", r.m_wlan_rts);
    n.int16("m_wlan_frag", r.m_wlan_frag);
    n.int16("m_wlan_shortGI", r.m_wlan_shortGI);
    n.int16("m_wlan_txpower", r.m_wlan_txpower);
    n.int16("m_wlan_max_txpower", r.m_wlan_max_txpower);
    n.int16("m_channel", r.m_channel);
    n.int16("m_channel_config", r.m_channel_config);
    n.int32("m_acktimeout", r.m_acktimeout);
    n.int32("m_wmm", r.m_wmm);
    n.int16("m_rev_option", r.m_rev_option);
    n.int16("m_coverage_threshold", r.m_coverage_threshold);
    n.int16("m_MaxStanum", r.m_MaxStanum);

    n.text("contrystr", r.contrystr);
    n.text("m_phyname", r.m_phyname);

    n.byte("m_enable", r.m_enable);
    n.byte("m_phymode", r.m_phymode);
    n.int16("m_dfs_enable", r.m_dfs_enable);
}

void apply_vap(wifi_vap &v, const VarNames &n) {
    n.byte("m_wlan_enable", v.m_wlan_enable);
    n.byte("m_wlan_hide_ssid", v.m_wlan_hide_ssid);
    n.text("m_ssid", v.m_ssid);
    n.int16("m_vlanid", v.m_vlanid);
    n.byte("m_security", v.m_security);
    n.byte("m_securitycipher", v.m_securitycipher);
    n.byte("m_authmode", v.m_authmode);
    n.byte("m_wep_keytype", v.m_wep_keytype);
    n.text("m_wep_keystr", v.m_wep_keystr);
    n.byte("m_psk_keytype", v.m_psk_keytype);
    n.text("m_psk_keystr", v.m_psk_keystr);
    n.ipv4("m_radius_serverip", v.m_radius_serverip);
    n.int16("m_radius_serverport", v.m_radius_serverport);
    n.text("m_radius_sharekey", v.m_radius_sharekey);
    n.text("m_bind_eth", v.m_bind_eth);
    n.int32("m_mode", v.m_mode);
    n.text("m_ifname", v.m_ifname);
    n.byte("m_lockbssid", v.m_lockbssid);
    n.byte("m_vlan_tag_enable", v.m_vlan_tag_enable);
}

// The repeater block, in the page's order; "m_phymode" chooses the radio's own PHY mode.
void apply_repeater(wifi_radio &radio, const VarNames &n) {
    wifi_vap &r = radio.m_repeater;
    n.byte("m_wlan_enable", r.m_wlan_enable);
    n.byte("m_wlan_hide_ssid", r.m_wlan_hide_ssid);
    n.text("m_ssid", r.m_ssid);
    n.int16("m_vlanid", r.m_vlanid);
    n.byte("m_phymode", radio.m_phymode);
    n.byte("m_security", r.m_security);
    n.byte("m_securitycipher", r.m_securitycipher);
    n.byte("m_authmode", r.m_authmode);
    n.byte("m_wep_keytype", r.m_wep_keytype);
    n.text("m_wep_keystr", r.m_wep_keystr);
    n.byte("m_psk_keytype", r.m_psk_keytype);
    n.text("m_psk_keystr", r.m_psk_keystr);
    n.ipv4("m_radius_serverip", r.m_radius_serverip);
    n.int16("m_radius_serverport", r.m_radius_serverport);
    n.byte("m_p2p", r.m_p2p);
    n.byte("m_vlan_tag_enable", r.m_vlan_tag_enable);
    n.text("m_radius_sharekey", r.m_radius_sharekey);
    n.int32("m_mode", r.m_mode);
    n.text("m_ifname", r.m_ifname);
    n.byte("m_lockbssid", r.m_lockbssid);
    n.mac("m_bssid", r.m_bssid);
}

} // namespace
} // namespace wm

using namespace wm;

extern "C" {

int save_wifi_all_radio_config(wifi_config *record, const form_pair *pairs, int count) {
    if (!record) return -1;
    // Every radio of the record, whatever the device has.
    for (int r = 0; r < WEBMGMT_WIFI_RADIO_COUNT; ++r) {
        wifi_radio &radio = record->m_radio[r];
        apply_radio(radio, VarNames(pairs, count, r));
        for (int v = 0; v < WEBMGMT_WIFI_VAP_COUNT; ++v)
            apply_vap(radio.m_vap[v], VarNames(pairs, count, r, v));
    }
    SC_Save_SC_WiFi_Config2Flash(record); // its result is not the form's
    return 0;
}

int save_wifi_repeater_config(wifi_config *record, const form_pair *pairs, int count, int radio) {
    // The device indexed the radios with the caller's number unchecked.
    if (!record || radio < 0 || radio >= WEBMGMT_WIFI_RADIO_COUNT) return -1;
    record->m_repeater_radio_id = radio;
    apply_repeater(record->m_radio[radio], VarNames(pairs, count));
    SC_Save_SC_WiFi_Config2Flash(record);
    return 0;
}

int save_wifi_timeclose_config(void *, const form_pair *pairs, int count) {
    wifi_config *record = SC_Get_SC_WiFi_Config();
    if (!record) return -1;
    wifi_timeclose &t = record->m_timeclosectrl;
    Bindings b;
    b.add<conv::kText>("m_enable", t.m_enable);
    b.add<conv::kText>("m_start_time", t.m_start_time);
    b.add<conv::kText>("m_end_time", t.m_end_time);
    b.apply(pairs, count);
    SC_Save_SC_WiFi_Config2Flash(record);
    return 0;
}

} // extern "C"
