// The managed-AP views and the site-survey views: golden documents for a factory record, an
// AP with three radios fully set and online times around the day boundaries; the documents
// through python3's json module (the full configuration after the caller's opening) and the
// survey through python3's XML parser; the filters, the template modes and the bounds.

#include "tests/views/view_check.h"

namespace {

using viewtest::fill_full;
using viewtest::put;

const uint8_t kMac[6] = {0x00, 0x1E, 0x42, 0xAB, 0x0C, 0xD9};

void fill_ap(ap_device_record &ap, uint32_t online) {
    ap.m_ip = viewtest::ipv4("192.168.10.20");
    ap.m_lock_src = 2;
    ap.m_id = 1;
    put(ap.m_dev_name, "lobby-ap");
    std::memcpy(ap.m_dev_mac.mac, kMac, 6);
    ap.m_dev_status = 1;
    ap.m_dev_upgrade_status = 0;
    ap.m_onlinetime = online;
    put(ap.m_sw_ver, "V2.1.7");
    ap.m_wlan_radio_num = 3;
    ap.m_TimeRebootEnable = 1;
    put(ap.m_RebootTime, "03:30");
    put(ap.m_dev_modelname, "AP-300");
    for (int r = 0; r < 3; ++r) {
        ap_radio &radio = ap.m_conf.m_radio[r];
        radio.m_radio_type = uint8_t(r + 1);
        radio.m_wirelessmode = 9;
        radio.m_wirelessbwmode = 1;
        radio.m_wlan_beacon_interval = 100;
        radio.m_wlan_txpower = int16_t(r + 2); // shown as 25, 50, 75
        radio.m_wlan_max_txpower = 23;
        radio.m_channel = int16_t(r == 0 ? 6 : r == 1 ? 149 : 100);
        radio.m_channel_config = 0;
        radio.m_coverage_threshold = -85;
        radio.m_MaxStanum = 64;
        radio.m_stanum = int16_t(3 * r + 1); // 1 + 4 + 7
        put(radio.contrystr, "CN");
        for (int v = 0; v < 4; ++v) {
            defap_vap &vap = radio.m_vap[v];
            vap.m_wlan_enable = v < 2;
            put(vap.m_ssid, "Fleet-" + std::to_string(r) + std::to_string(v));
            vap.m_vlanid = int16_t(v);
            vap.m_bssid = {{0x00, 0x1E, 0x42, 0xAB, uint8_t(r), uint8_t(v)}};
            vap.m_security = 6;
            vap.m_authmode = 9;
            put(vap.m_psk_keystr, "key-" + std::to_string(v));
            vap.m_radius_serverip.v4 = viewtest::ipv4("10.1.1.1");
            vap.m_tx_bytes = 1ULL << 40;
        }
    }
    ap.m_conf.m_timereboot = {1, 1, 3, 0, 0, 0};
    ap.m_conf.m_weblogin.m_enable = 1;
    put(ap.m_conf.m_weblogin.m_username, "admin");
    put(ap.m_conf.m_weblogin.m_userpwd, "ap-pass");
    ap.m_conf.m_iptv.m_vlanid = 85;
    put(ap.m_conf.resved, "conf");
}

std::unique_ptr<ap_device_record> ap_at(uint32_t online) {
    auto ap = std::make_unique<ap_device_record>();
    fill_ap(*ap, online);
    return ap;
}

// What a view prints, run in a child as a CGI program runs it.
constexpr auto out = wmtest::output_of;

// The opening the device-management program prints before a full configuration.
const std::string kCallerOpening = "{\"ap\":[";

TEST(ApViews, WholeDocumentsMatchTheirGoldenFiles) {
    // The factory list holds no device: a zeroed slot (id 0, not registered).
    auto factory = std::make_unique<manage_ap_list_config>();
    auto a = ap_at(86399), b = ap_at(86400), c = ap_at(172800);
    static ap_template_list_config templates;
    templates.m_template[0].m_wlan_group_id = 1;
    std::memcpy(templates.m_template[0].m_bind_mac.mac, kMac, 6);
    const struct {
        const char *name;
        std::string doc;
        int json_status; // 0 JSON of strings; 3 not JSON on purpose
    } docs[] = {
        {"ManageApList-none.json", out([] { printf_ManageApList_json(nullptr, 1, "", ""); }), 0},
        {"ManageApList-factory.json",
         out([&] { printf_ManageApList_json(&factory->m_ap[0], 1, "", ""); }), 0},
        {"ManageApList-86399.json", out([&] { printf_ManageApList_json(a.get(), 1, "", ""); }), 0},
        {"ManageApList-86400.json", out([&] { printf_ManageApList_json(b.get(), 3, "", ""); }), 0},
        {"ManageApList-172800.json", out([&] { printf_ManageApList_json(c.get(), 0, 0, 0); }), 0},
        {"ApTemplateList_mac-bound.json",
         out([&] { printf_ApTemplateList_mac_json(a.get(), templates.m_template, 0, 2); }), 3},
        {"Ap_cf-full.json",
         kCallerOpening + out([&] { printf_Ap_cf_json(c.get(), "00:1E:42:AB:0C:D9"); }), 0},
    };
    for (const auto &d : docs) {
        viewtest::expect_golden(d.name, d.doc);
        viewtest::Parsed p = viewtest::parse(d.doc);
        EXPECT_EQ(p.status, d.json_status) << d.name << ": " << p.message;
    }
}

TEST(ApViews, ListRowAsThePageReadsIt) {
    auto ap = ap_at(172800 + 3661);
    viewtest::Parsed p =
        viewtest::parse(out([&] { printf_ManageApList_json(ap.get(), 1, "", ""); }));
    ASSERT_EQ(p.status, 0) << p.message;
    const char *row = "ApDevList.data[0].";
    auto at = [&](const std::string &k) { return p.at(row + k); };
    EXPECT_EQ(p.at("ApDevList.data#len"), "2"); // the row and the {} sentinel
    EXPECT_EQ(at("m_ip"), std::to_string(viewtest::ipv4("192.168.10.20")));
    EXPECT_EQ(at("m_dev_ip"), "192.168.10.20");
    EXPECT_EQ(at("m_dev_mac"), "00:1E:42:AB:0C:D9");
    EXPECT_EQ(at("m_onlinetime"), "2Days 1:01:01");
    EXPECT_EQ(at("m_CurrentTime"), "176461");
    EXPECT_EQ(at("m_sw_name"), "V2.1.7");
    EXPECT_EQ(at("m_stanum"), "12");
    EXPECT_EQ(at("m_radio#len"), "3");
    EXPECT_EQ(at("m_radio[0].m_wlan_txpower"), "25");
    EXPECT_EQ(at("m_radio[2].m_wlan_txpower"), "75");
    EXPECT_EQ(at("m_radio[2].m_stanum"), "7");
    EXPECT_EQ(at("m_radio[1].m_vap[3].m_bssid"), "00:1E:42:AB:01:03");
    viewtest::expect_at(p,
                        {"ApDevList.count=1", "ApDevList.stasumnum=12", "ApDevList.max_count=1"});
}

TEST(ApViews, ModesAndFilters) {
    auto ap = ap_at(5);
    auto count = [&](int mode, const char *ip, const char *mac) {
        viewtest::Parsed p =
            viewtest::parse(out([&] { printf_ManageApList_json(ap.get(), mode, ip, mac); }));
        EXPECT_EQ(p.status, 0) << p.message;
        return p.at("ApDevList.count") + "/" + p.at("ApDevList.sumcount") + "/" +
               p.at("ApDevList.onlinecount") + "/" + p.at("ApDevList.data#len");
    };
    EXPECT_EQ(count(3, "", ""), "1/1/1/2");
    EXPECT_EQ(count(3, "168.10", ""), "1/1/1/2");
    EXPECT_EQ(count(3, "", "AB:0C"), "1/1/1/2");
    EXPECT_EQ(count(3, "", "ab:0c"), "0/1/1/1"); // the MAC text is upper case
    EXPECT_EQ(count(3, "192.168.10.20", "FF"), "0/1/1/1");
    EXPECT_EQ(count(3, "10.0.0", ""), "0/1/1/1");
    EXPECT_EQ(count(2, "", ""), "0/1/1/1");
    EXPECT_EQ(count(7, "10.0.0", "FF"), "1/1/1/2"); // filters only in mode 3
    ap->m_id = 0;
    EXPECT_EQ(count(1, "", ""), "0/0/0/1");
    // More radios claimed than the record holds: the three it has.
    ap->m_id = 1;
    ap->m_wlan_radio_num = 200;
    viewtest::Parsed p =
        viewtest::parse(out([&] { printf_ManageApList_json(ap.get(), 1, "", ""); }));
    EXPECT_EQ(p.at("ApDevList.data[0].m_radio#len"), "3");
    EXPECT_EQ(p.at("ApDevList.stasumnum"), "12");
}

TEST(ApViews, TemplateDevicesByMode) {
    auto ap = ap_at(60);
    static ap_template_list_config list;
    ap_template_entry &t = list.m_template[1];
    auto doc = [&](int mode) {
        return out([&] { printf_ApTemplateList_mac_json(ap.get(), list.m_template, 1, mode); });
    };
    auto tail = [](const std::string &d) { return d.substr(d.rfind("{}],")); };
    // Candidates: registered, not the member, in no group.
    EXPECT_NE(doc(1).find("{\"m_lock_src\":\"2\",\"m_sn\":\"1\",\"m_group_name\":\"\""),
              std::string::npos);
    EXPECT_NE(doc(1).find("\"m_dev_modelname\":\"AP-300\"},\"m_radio\":["), std::string::npos);
    std::memcpy(t.m_member_mac.mac, kMac, 6);
    EXPECT_EQ(tail(doc(1)),
              "{}],\"count\":\"0\",\"pagenum\":\"1\",\"pagecount\":\"1\",\"sumcount\":"
              "\"0\",\"onlinecount\":\"0\",\"stasumnum\":\"0\",\"max_count\":\"1\"}}");
    std::memset(t.m_member_mac.mac, 0, 6);
    put(ap->m_group_name, "g");
    EXPECT_EQ(doc(1), "{\"ApDevList\":{\"data\":[" + tail(doc(1)));
    // Bound device: none, this one, or one the controller no longer has.
    EXPECT_EQ(doc(2), "{\"ApDevList\":{\"data\":[" + tail(doc(2)));
    std::memcpy(t.m_bind_mac.mac, kMac, 6);
    EXPECT_NE(doc(2).find("\"m_sn\":\"1\""), std::string::npos);
    t.m_bind_mac = {{0x0a, 0x0b, 0x0c, 0xd0, 0xe0, 0xf0}};
    std::string deleted = doc(2);
    EXPECT_NE(deleted.find("\"m_dev_name\":\"Deleted\",\"m_dev_ip\":\"0\",\"m_dev_mac\":"
                           "\"0A:0B:0C:D0:E0:F0\""),
              std::string::npos);
    EXPECT_EQ(tail(deleted),
              "{}],\"count\":\"1\",\"pagenum\":\"1\",\"pagecount\":\"1\",\"sumcount\":"
              "\"1\",\"onlinecount\":\"0\",\"stasumnum\":\"0\",\"max_count\":\"1\"}}");
    // The Deleted row alone is well-formed.
    EXPECT_EQ(viewtest::parse(deleted).status, 0);
    // A template index outside the array: the empty list.
    const std::string empty = "{\"ApDevList\":{\"max_count\":\"1\",\"count\":\"0\",\"pagenum\":"
                              "\"1\",\"pagecount\":\"0\",\"sumcount\":\"0\",\"onlinecount\":\"0\","
                              "\"stasumnum\":\"0\"}}";
    for (int index : {-1, WEBMGMT_AP_TEMPLATES, INT32_MAX})
        EXPECT_EQ(out([&] { printf_ApTemplateList_mac_json(ap.get(), list.m_template, index, 2); }),
                  empty);
    EXPECT_EQ(out([&] { printf_ApTemplateList_mac_json(nullptr, list.m_template, 0, 1); }), empty);
}

TEST(ApViews, FullConfigurationSelectedByModelOrExactMac) {
    auto ap = ap_at(100);
    std::string by_mac = out([&] { printf_Ap_cf_json(ap.get(), "00:1E:42:AB:0C:D9"); });
    EXPECT_EQ(by_mac.substr(by_mac.size() - 3), "}]}");
    EXPECT_EQ(out([&] { printf_Ap_mode_json(ap.get(), "AP-300"); }), by_mac);
    EXPECT_EQ(out([&] { printf_Ap_cf_json(ap.get(), "00:1e:42:ab:0c:d9"); }), "");
    EXPECT_EQ(out([&] { printf_Ap_mode_json(ap.get(), ""); }), "");
    EXPECT_EQ(out([&] { printf_Ap_mode_json(ap.get(), "AP-30"); }), "");
    // Alone it is not JSON; after the caller's opening it is.
    EXPECT_EQ(viewtest::parse(by_mac).status, 3);
    ap->m_wlan_radio_num = 1; // every radio is printed whatever this says
    viewtest::Parsed p = viewtest::parse(
        kCallerOpening + out([&] { printf_Ap_cf_json(ap.get(), "00:1E:42:AB:0C:D9"); }));
    ASSERT_EQ(p.status, 0) << p.message;
    viewtest::expect_at(p, {"ap#len=1", "ap[0].index_ap=0", "ap[0].m_radio#len=3",
                            "ap[0].m_radio[2].m_wlan_txpower=4", // the stored level
                            "ap[0].m_radio[1].m_vap[2].m_psk_keystr=key-2",
                            "ap[0].m_radio[0].m_vap[0].m_tx_bytes=1099511627776",
                            "ap[0].m_weblogin.m_userpwd=ap-pass", "ap[0].m_iptv.m_vlanid=85",
                            "ap[0].resved=conf", "ap[0].m_sn=1", "ap[0].m_stanum=1",
                            "ap[0].m_onlinetime=0:01:40"});
}

TEST(ApViews, DashboardReadsTheConnectionCounters) {
    wmtest::TempRoot root;
    root.own_proc();
    root.put("/proc/sys/net/netfilter/nf_conntrack_count", "321\n");
    root.put("/proc/sys/net/netfilter/nf_conntrack_max", "65536\n");
    auto ap = ap_at(1);
    EXPECT_EQ(
        out([&] { printf_Mian_Info_json(ap.get()); }),
        "{\"ApDevList\":{\"count\":\"1\",\"linkcount\":\"321\",\"linkcountmax\":\"65536\","
        "\"sumcount\":\"1\",\"onlinecount\":\"1\",\"stasumnum\":\"12\",\"max_count\":\"1\"}}");
    ap->m_id = -4;
    EXPECT_EQ(out([&] { printf_Mian_Info_json(ap.get()); }),
              "{\"ApDevList\":{\"count\":\"0\",\"linkcount\":\"321\",\"linkcountmax\":\"65536\","
              "\"sumcount\":\"0\",\"onlinecount\":\"0\",\"stasumnum\":\"0\",\"max_count\":\"1\"}}");
    EXPECT_EQ(
        viewtest::parse(out([] { printf_Mian_Info_json(nullptr); })).at("ApDevList.linkcount"),
        "321");
}

TEST(ApViews, UpdateScheduleShowsTheRawAccessResults) {
    wmtest::TempRoot root;
    update_config u{};
    u.m_enable = 1;
    u.m_type = 2;
    u.m_hour = 23;
    u.m_min = 59;
    put(u.m_dev_modelname, "AP-300");
    fill_full(u.m_dev_array_index, '7');
    auto doc = [&] { return out([&] { printf_update_online_time_json(&u); }); };
    const std::string head = "{\"m_enable\":\"1\",\n\"m_type\":\"2\",\n\"m_hour\":\"23\",\n"
                             "\"m_min\":\"59\",\n\"m_isreset\":\"0\",\n\"m_dev_modelname\":"
                             "\"AP-300\",\n\"m_dev_array_index\":\"7777777777777777\",\n";
    EXPECT_EQ(doc(), head + "\"m_have_ac_rom\":\"-1\",\n\"m_have_ap_rom\":\"-1\"\n}");
    root.put("/var/upgrade_sw.bin", "image");
    root.put("/tmp/up_fireware/up.bin", "image");
    EXPECT_EQ(doc(), head + "\"m_have_ac_rom\":\"0\",\n\"m_have_ap_rom\":\"0\"\n}");
}

TEST(ApViews, DhcpCheckMessages) {
    update_config u{};
    u.m_dhcp_check[0] = {1, "two DHCP servers on the LAN"};
    u.m_dhcp_check[2].id = 255;
    fill_full(u.m_dhcp_check[2].msg, 'm');
    std::string doc = out([&] { printf_dhcp_check_json(&u); });
    EXPECT_EQ(doc.substr(0, 60),
              "{\"info\":[{\n\"msg\":\"two DHCP servers on the LAN\",\n\"id\":\"1\"\n},{");
    viewtest::Parsed p = viewtest::parse(doc);
    ASSERT_EQ(p.status, 0) << p.message;
    EXPECT_EQ(p.at("info#len"), "3");
    EXPECT_EQ(p.at("info[1].msg"), "");
    EXPECT_EQ(p.at("info[2].msg"), std::string(81, 'm'));
    EXPECT_EQ(p.at("info[2].id"), "255");
}

// ---- The site survey ----------------------------------------------------------------------

struct Survey {
    manage_ap_list_config list{};
    ap_runtime_config runtime{};
    ap_scan_context context{&list, &runtime};
};

std::unique_ptr<Survey> survey() {
    auto s = std::make_unique<Survey>();
    fill_ap(s->list.m_ap[0], 10);
    ap_scan_slot *slots = s->runtime.m_ap[0].m_scan[1];
    auto slot = [&](int i, const char *name, int channel, int signal, char quality) {
        put(slots[i].m_name, name);
        slots[i].m_channel = int16_t(channel);
        slots[i].m_signal = int16_t(signal);
        slots[i].m_quality = quality;
        slots[i].m_bssid = {{0xA0, 0xB1, 0xC2, 0xD3, 0xE4, uint8_t(i)}};
    };
    // Names stored with their quotes are what make the document well-formed.
    slot(0, "\"Office\"", 6, -45, 'A');
    slot(2, "unknown", 11, -80, 'C');
    slot(3, "\"skipped\"", 0, -50, 'B'); // no channel
    slot(4, "\"skipped\"", 1, 0, 'B');   // no signal
    slot(63, "\"Cafe 5G\"", 149, 30, 'B');
    return s;
}

std::string scan(void (*view)(const ap_scan_context *, int, int), const Survey &s, int ap,
                 int radio) {
    return out([&] { view(&s.context, ap, radio); });
}

// Every data element and channel line as python3's XML parser reads them.
std::string xml_read(const std::string &doc) {
    wmtest::ChildResult r = wmtest::run_shell(
        "python3 -c 'import sys, xml.etree.ElementTree as E\n"
        "root = E.fromstring(sys.stdin.buffer.read())\n"
        "for e in root:\n"
        "    print(e.tag, e.text.strip() if e.text else \"\", sorted(e.attrib.items()))'",
        doc);
    return r.exit_code() == 0 ? r.out : "refused: " + r.err;
}

TEST(ScanViews, GoldenDocumentsAndWhatAnXmlParserReads) {
    auto s = survey();
    std::string g = scan(printf_ApScan24_json, *s, 0, 1);
    std::string a = scan(printf_ApScan58_json, *s, 0, 1);
    viewtest::expect_golden("ApScan24-radio1.xml", g);
    viewtest::expect_golden("ApScan58-radio1.xml", a);
    std::string read = xml_read(g);
    EXPECT_NE(read.find("chnel 6 [('curr', '1')]\n"), std::string::npos) << read;
    EXPECT_NE(read.find("chnel 7 []\n"), std::string::npos) << read;
    EXPECT_NE(read.find("data  [('bssid', 'A0:B1:C2:D3:E4:00'), ('channel', '6'), ('id', '0'), "
                        "('name', 'Office'), ('quality', 'A'), ('value', '-45')]"),
              std::string::npos)
        << read;
    EXPECT_NE(read.find("('id', '2'), ('name', 'unknown')"), std::string::npos) << read;
    EXPECT_NE(read.find("('id', '63'), ('name', 'Cafe 5G')"), std::string::npos) << read;
    EXPECT_EQ(read.find("skipped"), std::string::npos);
    // 2.4 GHz lists 1 to 13; radio 0 is on 6. 5 GHz lists 36..64 and 149..165, radio 1 on
    // 149 marked; radio 2 on 100 marks nothing, as 100 is not listed.
    size_t lines = 0;
    for (size_t at = 0; (at = read.find("chnel ", at)) != std::string::npos; ++at)
        ++lines;
    EXPECT_EQ(lines, 13u);
    std::string read5 = xml_read(a);
    EXPECT_NE(read5.find("chnel 149 [('curr', '1')]\nchnel 153 []\n"), std::string::npos) << read5;
    EXPECT_EQ(read5.find("chnel 100"), std::string::npos);
    EXPECT_NE(read5.find("chnel 64 []\nchnel 149"), std::string::npos);
}

TEST(ScanViews, UnquotedNamesAreWrittenAsStored) {
    auto s = survey();
    put(s->runtime.m_ap[0].m_scan[0][5].m_name, "Home");
    s->runtime.m_ap[0].m_scan[0][5].m_channel = 3;
    s->runtime.m_ap[0].m_scan[0][5].m_signal = -60;
    s->runtime.m_ap[0].m_scan[0][5].m_quality = 'D';
    std::string doc = scan(printf_ApScan24_json, *s, 0, 0);
    EXPECT_NE(
        doc.find("<data id=\"5\" channel=\"3\" value=\"-60\" name=Home bssid=\"00:00:00:00:00:"
                 "00\" quality=\"D\"> </data>\n"),
        std::string::npos)
        << doc;
    EXPECT_EQ(xml_read(doc).rfind("refused", 0), 0u) << "meant to be malformed XML";
    // A name filling its field without a terminator stops at the field.
    fill_full(s->runtime.m_ap[0].m_scan[0][5].m_name, 'x');
    doc = scan(printf_ApScan24_json, *s, 0, 0);
    EXPECT_NE(doc.find("name=" + std::string(32, 'x') + " bssid="), std::string::npos);
}

TEST(ScanViews, EmptyListAndTwoMarkedChannels) {
    auto s = survey();
    s->list.m_ap[0].m_conf.m_radio[1].m_channel = 11;
    std::string doc = scan(printf_ApScan24_json, *s, 0, 2);
    std::string want = "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n\n<datas>\n";
    for (int c = 1; c <= 13; ++c)
        want += (c == 6 || c == 11 ? "<chnel curr=\"1\">" : "<chnel>") + std::to_string(c) +
                "</chnel>\n";
    EXPECT_EQ(doc, want + "</datas>\n");
}

TEST(ScanViews, IndexesOutsideTheTablesPrintNothing) {
    auto s = survey();
    for (auto view : {printf_ApScan24_json, printf_ApScan58_json}) {
        EXPECT_EQ(scan(view, *s, -1, 0), "");
        EXPECT_EQ(scan(view, *s, WEBMGMT_AP_MAX, 0), "");
        EXPECT_EQ(scan(view, *s, 0, -1), "");
        EXPECT_EQ(scan(view, *s, 0, WEBMGMT_AP_RADIOS), "");
        EXPECT_EQ(out([&] { view(nullptr, 0, 0); }), "");
        ap_scan_context half{&s->list, nullptr};
        EXPECT_EQ(out([&] { view(&half, 0, 0); }), "");
    }
}

} // namespace
