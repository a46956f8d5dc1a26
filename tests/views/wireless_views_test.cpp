// The device's wireless views and the AP-template views: whole documents against golden
// files (factory defaults, three radios fully set, hostile texts of full width), the
// documents as python3's json module reads them, and the quirks the pages rely on.
#include "tests/views/view_check.h"

namespace {

using viewtest::fill_full;
using viewtest::put;

// Full width, made only of characters that escape or that HTML treats specially.
template <size_t N> void hostile(char (&member)[N]) {
    static const char kPattern[] = "\"\\<&";
    for (size_t i = 0; i < N; ++i)
        member[i] = kPattern[i % 4];
}
template <size_t N> std::string hostile_text() {
    char m[N];
    hostile(m);
    return std::string(m, N);
}

void fill_vap(wifi_vap &v, int radio, int vap) {
    v.m_wlan_enable = 1;
    v.m_mode = 3;
    v.m_wlan_hide_ssid = vap == 3 ? 1 : 0;
    put(v.m_ifname, "ath" + std::to_string(radio) + std::to_string(vap));
    put(v.m_ssid, "Office-" + std::to_string(radio) + "-" + std::to_string(vap));
    v.m_vlanid = int16_t(100 * radio + vap);
    v.m_lockbssid = 1;
    v.m_bssid = {{0x00, 0x1A, 0x2B, uint8_t(radio), uint8_t(vap), 0xEF}};
    v.m_security = 6;
    v.m_securitycipher = 8;
    v.m_authmode = 9;
    v.m_wep_keytype = 1;
    put(v.m_wep_keystr, "wep-" + std::to_string(vap));
    v.m_psk_keytype = 1;
    put(v.m_psk_keystr, "psk-" + std::to_string(radio) + std::to_string(vap));
    v.m_radius_serverip.v4 = viewtest::ipv4("10.0.0.2");
    v.m_radius_serverport = 1812;
    put(v.m_radius_sharekey, "radius");
    v.m_tx_pkts = UINT32_MAX;
    v.m_rx_pkts = 7;
    v.m_tx_bytes = UINT64_MAX;
    v.m_rx_bytes = 5000000000ULL;
    put(v.m_bind_eth, "eth0.2");
    v.m_p2p = 1;
    v.m_vlan_tag_enable = 1;
}

std::unique_ptr<wifi_config> wifi_defaults() {
    return viewtest::from_defaults(WiFi_field, "wifi.conf");
}

std::unique_ptr<wifi_config> wifi_full() {
    auto w = std::make_unique<wifi_config>();
    w->m_repeater_radio_id = 1;
    for (int r = 0; r < 3; ++r) {
        wifi_radio &radio = w->m_radio[r];
        radio.m_radio_type = uint8_t(r + 1);
        put(radio.m_phyname, "wifi" + std::to_string(r));
        radio.m_enable = 1;
        radio.m_phymode = 2;
        radio.m_wirelessmode = 9;
        radio.m_wirelessbwmode = 2;
        radio.m_ampduenable = 1;
        radio.m_wlan_isolate = 1;
        radio.m_wlan_rate = 255;
        radio.m_wlan_beacon_interval = 100;
        radio.m_wlan_rts = 2347;
        radio.m_wlan_frag = 2346;
        radio.m_wlan_shortGI = 1;
        radio.m_wlan_txpower = 4;
        radio.m_wlan_max_txpower = 27;
        radio.m_channel = r == 0 ? 6 : 149;
        radio.m_channel_config = r == 0 ? 11 : 36;
        radio.m_rev_option = -1;
        radio.m_coverage_threshold = -90;
        radio.m_MaxStanum = 64;
        put(radio.contrystr, "CN");
        radio.m_dfs_enable = 1;
        radio.m_acktimeout = 64;
        radio.m_wmm = 1;
        radio.m_txchainmask = 3;
        radio.m_rxchainmask = 3;
        radio.channel_limit_enable = 1;
        for (int v = 0; v < 4; ++v)
            fill_vap(radio.m_vap[v], r, v);
        fill_vap(radio.m_repeater, r, 9);
    }
    w->m_timeclosectrl.m_enable = 1;
    put(w->m_timeclosectrl.m_start_time, "23:00");
    put(w->m_timeclosectrl.m_end_time, "06:30");
    put(w->resved, "wifi");
    return w;
}

// The four escaped places hold full-width hostile texts; the raw places hold plain text, so
// that the document stays JSON and python3 can say what the page will read.
std::unique_ptr<wifi_config> wifi_hostile() {
    auto w = wifi_full();
    for (wifi_radio &r : w->m_radio) {
        hostile(r.m_repeater.m_ssid);
        hostile(r.m_repeater.m_wep_keystr);
        for (wifi_vap &v : r.m_vap) {
            hostile(v.m_ssid);
            hostile(v.m_psk_keystr);
        }
    }
    fill_full(w->m_timeclosectrl.m_start_time, '9');
    fill_full(w->m_timeclosectrl.m_end_time, '8');
    fill_full(w->resved, 'r');
    return w;
}

// What a view prints, run in a child as a CGI program runs it.
constexpr auto out = wmtest::output_of;

std::string wifi_doc(const wifi_config &w, int32_t radios) {
    return out([&] { printf_WiFi_json(&w, radios); });
}

void fill_template_vap(defap_vap &v, int radio, int vap) {
    v.m_wlan_enable = 1;
    v.m_wlan_hide_ssid = 0;
    put(v.m_ssid, "Fleet-" + std::to_string(radio) + "-" + std::to_string(vap));
    v.m_vlanid = int16_t(10 + vap);
    v.m_bssid = {{0x02, 0, 0, 0, uint8_t(radio), uint8_t(vap)}};
    v.m_security = 9;
    v.m_securitycipher = 7;
    v.m_authmode = 9;
    v.m_wep_keytype = 0;
    put(v.m_wep_keystr, "wep-key");
    v.m_psk_keytype = 1;
    put(v.m_psk_keystr, "fleet-secret");
    v.m_radius_serverip.v4 = viewtest::ipv4("192.0.2.1");
    v.m_radius_serverport = -1;
    put(v.m_radius_sharekey, "share");
    v.m_tx_pkts = 1;
    v.m_rx_pkts = 2;
    v.m_tx_bytes = 3;
    v.m_rx_bytes = UINT64_MAX;
}

void fill_template_radio(defap_radio &r, int i) {
    r.m_radio_type = uint8_t(i + 1);
    r.m_wirelessmode = 9;
    r.m_wirelessbwmode = 1;
    r.m_ampduenable = 1;
    r.m_wlan_isolate = 0;
    r.m_wlan_rate = 0;
    r.m_wlan_beacon_interval = 100;
    r.m_wlan_rts = 2347;
    r.m_wlan_frag = 2346;
    r.m_wlan_shortGI = 1;
    r.m_wlan_txpower = 3;
    r.m_wlan_max_txpower = 20;
    r.m_channel = int16_t(i == 0 ? 1 : 44);
    r.m_rev_option = 0;
    r.m_coverage_threshold = -95;
    r.m_MaxStanum = 128;
    put(r.contrystr, "US");
    for (int v = 0; v < 4; ++v)
        fill_template_vap(r.m_vap[v], i, v);
}

std::unique_ptr<defap_config> defap_full() {
    auto d = std::make_unique<defap_config>();
    d->m_wlan_group_id = 7;
    for (int i = 0; i < 3; ++i)
        fill_template_radio(d->m_radio[i], i);
    d->m_timereboot = {1, 2, 3, 4, 5, 6};
    d->m_weblogin.m_enable = 1;
    d->m_weblogin.m_usertype = 2;
    put(d->m_weblogin.m_username, "apadmin");
    put(d->m_weblogin.m_userpwd, "appass");
    d->m_iptv.m_enable = 1;
    d->m_iptv.m_vlanid = 4000000000U;
    put(d->resved, "defap");
    return d;
}

std::unique_ptr<ap_template_list_config> templates_full() {
    auto list = std::make_unique<ap_template_list_config>();
    list->count = 2;
    for (int t = 0; t < 2; ++t) {
        ap_template_entry &e = list->m_template[t];
        e.m_wlan_group_id = t + 1;
        put(e.m_wlan_group_name, "group-" + std::to_string(t + 1));
        put(e.m_modelname, "AP-300");
        for (int i = 0; i < 3; ++i)
            fill_template_radio(e.m_radio[i], i);
        e.m_timereboot = {1, 0, 4, 0, 0, 0};
        put(e.m_weblogin.m_username, "tpl");
        e.m_iptv.m_vlanid = 45;
    }
    return list;
}

TEST(WirelessViews, WholeDocumentsMatchTheirGoldenFilesAndAreJsonOfStrings) {
    auto defaults = wifi_defaults();
    auto full = wifi_full();
    auto bad = wifi_hostile();
    auto defap = defap_full();
    auto defap_factory = viewtest::from_defaults(defap_field, "defap.conf");
    auto list = templates_full();
    const struct {
        const char *name;
        std::string doc;
    } docs[] = {
        {"WiFi-defaults.json", wifi_doc(*defaults, 2)},
        {"WiFi-full.json", wifi_doc(*full, 3)},
        {"WiFi-hostile.json", wifi_doc(*bad, 3)},
        {"WiFi-none.json", wifi_doc(*full, 0)},
        {"WiFi_Timeclosectrl-full.json", out([&] { printf_WiFi_Timeclosectrl_json(full.get()); })},
        {"WiFi_Timeclosectrl-edge.json", out([&] { printf_WiFi_Timeclosectrl_json(bad.get()); })},
        {"DefApTemplate-defaults.json",
         out([&] { printf_DefApTemplate_json(defap_factory.get()); })},
        {"DefApTemplate-full.json", out([&] { printf_DefApTemplate_json(defap.get()); })},
        {"ApTemplateList_cf-full.json",
         out([&] { printf_ApTemplateList_cf_json(list->m_template, 1); })},
    };
    for (const auto &d : docs) {
        viewtest::expect_golden(d.name, d.doc);
        viewtest::Parsed p = viewtest::parse(d.doc);
        EXPECT_EQ(p.status, 0) << d.name << ": " << p.message;
    }
}

TEST(WirelessViews, EscapedPlacesGiveBackTheStoredTextAndRawPlacesStayRaw) {
    auto w = wifi_hostile();
    viewtest::Parsed p = viewtest::parse(wifi_doc(*w, 3));
    ASSERT_EQ(p.status, 0) << p.message;
    const std::string ssid = hostile_text<64>(), wep = hostile_text<30>();
    for (int r = 0; r < 3; ++r) {
        std::string radio = "m_radio[" + std::to_string(r) + "].";
        EXPECT_EQ(p.at(radio + "m_repeater.m_ssid"), ssid);
        EXPECT_EQ(p.at(radio + "m_repeater.m_wep_keystr"), wep);
        for (int v = 0; v < 4; ++v) {
            std::string vap = radio + "m_vap[" + std::to_string(v) + "].";
            EXPECT_EQ(p.at(vap + "m_ssid"), ssid);
            EXPECT_EQ(p.at(vap + "m_psk_keystr"), ssid);
        }
    }
    // The radio array ends in the {} sentinel.
    EXPECT_EQ(p.at("m_radio#len"), "4");
    EXPECT_EQ(p.at("m_timeclosectrl.m_start_time"), std::string(10, '9'));

    // A VAP's WEP key and the repeater's PSK key are printed as stored: a quote in either
    // breaks the document, as on the device.
    for (int which = 0; which < 2; ++which) {
        auto raw = wifi_full();
        if (which)
            put(raw->m_radio[0].m_repeater.m_psk_keystr, "a\"b");
        else
            put(raw->m_radio[0].m_vap[0].m_wep_keystr, "a\"b");
        std::string doc = wifi_doc(*raw, 1);
        EXPECT_NE(doc.find(which ? "\"m_psk_keystr\":\"a\"b\"" : "\"m_wep_keystr\":\"a\"b\""),
                  std::string::npos);
        EXPECT_EQ(viewtest::parse(doc).status, 3) << "meant to be invalid JSON";
    }
}

TEST(WirelessViews, RadioCountIsBoundedByTheRecord) {
    auto w = wifi_full();
    EXPECT_EQ(wifi_doc(*w, 0), wifi_doc(*w, -5));
    EXPECT_EQ(wifi_doc(*w, 3), wifi_doc(*w, 4));
    EXPECT_EQ(wifi_doc(*w, 3), wifi_doc(*w, INT32_MAX));
    viewtest::Parsed one = viewtest::parse(wifi_doc(*w, 1));
    viewtest::expect_at(one, {"m_radio#len=2", "m_radio[0].m_channel=6",
                              "m_radio[0].m_vap[3].m_bssid=00:1A:2B:00:03:EF",
                              "m_radio[0].m_vap[0].m_tx_bytes=18446744073709551615",
                              "m_radio[0].m_coverage_threshold=-90"});
}

TEST(WirelessViews, TemplateObjectsStandInsideTheThirdRadio) {
    auto d = defap_full();
    viewtest::Parsed p = viewtest::parse(out([&] { printf_DefApTemplate_json(d.get()); }));
    ASSERT_EQ(p.status, 0) << p.message;
    viewtest::expect_at(
        p, {"m_wlan_group_id=7", "m_radio#len=3", "m_radio[2].m_timereboot.m_TimeReboot_Week=6",
            "m_radio[2].m_weblogin.m_userpwd=appass", "m_radio[2].m_iptv.m_vlanid=4000000000",
            "m_radio[2].resved=defap", "m_radio[0].m_vap[1].m_wep_keystr=wep-key",
            "m_radio[1].m_vap[0].m_radius_serverport=-1"});
}

TEST(WirelessViews, TemplateIndexOutsideTheArrayPrintsNothing) {
    auto list = templates_full();
    for (int index : {-1, WEBMGMT_AP_TEMPLATES, INT32_MAX, INT32_MIN})
        EXPECT_EQ(out([&] { printf_ApTemplateList_cf_json(list->m_template, index); }), "")
            << index;
    EXPECT_EQ(out([&] { printf_ApTemplateList_cf_json(nullptr, 0); }), "");
    // No group id member in the list's template view; the rest as the default template.
    viewtest::Parsed p =
        viewtest::parse(out([&] { printf_ApTemplateList_cf_json(list->m_template, 0); }));
    ASSERT_EQ(p.status, 0) << p.message;
    EXPECT_EQ(p.at("m_wlan_group_id"), "<missing>");
    EXPECT_EQ(p.at("m_radio[2].m_iptv.m_vlanid"), "45");
}

TEST(WirelessViews, TemplateListRowCountIsABareNumber) {
    auto list = templates_full();
    EXPECT_EQ(
        out([&] { printf_ApTemplateList_json(&list->m_template[1]); }),
        "{\"WlanGroupList\":{\"data\":[{\"WlanGroup_Id\":\"2\",\"WlanGroup_Name\":\"group-2\","
        "\"WlanGroup_ApNum\":\"0\",\"m_index\":\"0\",\"WlanGroup_ModelName\":\"AP-300\"},"
        "{\"WlanGroup_Id\":\"0\",\"WlanGroup_Name\":\"\",\"WlanGroup_ApNum\":\"\"}],"
        "\"count\":1}}");
    EXPECT_EQ(out([&] { printf_ApTemplateList_json(&list->m_template[3]); }),
              "{\"WlanGroupList\":{\"data\":[{\"WlanGroup_Id\":\"0\",\"WlanGroup_Name\":\"\","
              "\"WlanGroup_ApNum\":\"\"}],\"count\":0}}");
    EXPECT_EQ(out([&] { printf_ApTemplateList_json(nullptr); }), "");
    // JSON, but "count" is a number: the parser's check of string values says so (status 4).
    EXPECT_EQ(
        viewtest::parse(out([&] { printf_ApTemplateList_json(&list->m_template[0]); })).status, 4);
    // Full-width name without terminator: stops at its field.
    fill_full(list->m_template[0].m_wlan_group_name, 'N');
    std::string doc = out([&] { printf_ApTemplateList_json(&list->m_template[0]); });
    EXPECT_NE(doc.find("\"WlanGroup_Name\":\"" + std::string(64, 'N') + "\",\"WlanGroup_ApNum\""),
              std::string::npos);
}

} // namespace
