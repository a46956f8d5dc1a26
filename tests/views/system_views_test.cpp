// The system views: whole documents against golden files for factory, filled and edge
// records; the documents as python3's json module reads them; the particulars the pages rely on.
#include "tests/views/view_check.h"

namespace {

using viewtest::Case;
using viewtest::fill_full;
using viewtest::put;

// Fills a text member with `value` in a filled record, to its last byte with `fill` in an
// edge record.
template <size_t N> void text(Case c, char (&member)[N], const char *value, char fill) {
    c == Case::Full ? put(member, value) : fill_full(member, fill);
}

std::unique_ptr<productinfo_config> product(Case c) {
    if (c == Case::Defaults) return viewtest::from_defaults(productinfo_field, "productinfo.conf");
    auto p = std::make_unique<productinfo_config>();
    p->upgrade_reset = c == Case::Full ? 1 : 255;
    p->max_device_ap = c == Case::Full ? 128 : -1;
    p->dev_opmode = c == Case::Full ? 2 : INT32_MIN;
    p->dev_spec.support_eth_count = c == Case::Full ? 5 : INT32_MAX;
    text(c, p->productname, "AC-1200", 'P');
    text(c, p->device_sn, "SN0042", 'S');
    text(c, p->default_language, "zh_CN", 'L');
    text(c, p->device_name, "office-gw", 'N');
    text(c, p->device_position, "rack 3", 'O');
    text(c, p->device_cpu, "MT7621", 'C');
    text(c, p->config_get_telnet_port_url, "http://example.net/port", 'U');
    text(c, p->dev_spec.support_eth_type, "1,1,1,1,0", 'T');
    text(c, p->resved, "r", 'R');
    return p;
}

std::unique_ptr<misc_config> misc(Case c) {
    if (c == Case::Defaults) return viewtest::from_defaults(misc_field, "misc.conf");
    auto m = std::make_unique<misc_config>();
    bool full = c == Case::Full;
    m->sys_user.lock_location = full ? 3 : -1;
    m->sys_user.root_type = full ? 1 : UINT32_MAX;
    m->sys_user.user_type = full ? 2 : UINT32_MAX;
    m->sys_user.userpwdaswifipwd = full ? 1 : 255;
    m->sys_user.userpwd_encrypt = full ? 1 : 255;
    m->sys_user.userpwd_encrypt_type = full ? 2 : 255;
    m->sys_actimer.sys_ac_discovery_timeout = full ? 30 : 255;
    m->sys_actimer.sys_ac_echo_interval = full ? 10 : 255;
    m->sys_dzm.dmz_enable = 1;
    m->sys_log.log_enable = 1;
    m->sys_log.remote_log_enable = full ? 1 : 255;
    m->sys_ntp.enable = 1;
    m->sys_ntp.ntp_server_mode = full ? 2 : 255;
    m->sys_timereboot = {1, 9, 4, 5, 12, 6}; // enable, type, hour, day, month, week
    m->sys_remote.enable_web = 1;
    m->sys_remote.enable_telnet = full ? 1 : 255;
    m->sys_remote.remote_port = full ? 8080 : 65535;
    m->enable_telnet = full ? 0 : 255;
    m->sys_cloud.enable = 1;
    m->sys_speedup = {1, 0, 1};
    m->sys_ddns.enable = 1;
    m->sys_ddns.usertype = full ? 2 : 255;
    m->sys_ddns.conn_status = full ? 1 : 255;
    m->sys_ddns.support_planet = full ? 1 : 255;
    m->sys_ddns.wanid = full ? 3 : 255;
    m->sys_nat.enable = 1;
    text(c, m->sys_user.rootname, "root", 'a');
    text(c, m->sys_user.rootpwd, "rootsecret", 'b');
    text(c, m->sys_user.username, "user", 'c');
    text(c, m->sys_user.userpwd, "usersecret", 'd');
    text(c, m->sys_user.resved, "u", 'e');
    text(c, m->sys_actimer.resved, "t", 'f');
    text(c, m->sys_dzm.dmz_host, "192.168.1.50", 'g');
    text(c, m->sys_dzm.resved, "z", 'h');
    text(c, m->sys_log.remote_log_server_host, "log.example.net", 'i');
    text(c, m->sys_log.resved, "l", 'j');
    text(c, m->sys_ntp.ntp_tz, "CST-8", 'k');
    text(c, m->sys_ntp.ntp_server_addr, "ntp.example.net", 'l');
    text(c, m->sys_ntp.resved, "n", 'm');
    text(c, m->sys_remote.subdomain, "gw.remote", 'n');
    text(c, m->sys_remote.web_url, "http://gw.remote/x", 'o');
    text(c, m->sys_remote.server_addr, "203.0.113.9", 'p');
    text(c, m->sys_cloud.server, "cloud.example.net", 'q');
    text(c, m->sys_cloud.bind_code, "B1ND", 'r');
    text(c, m->sys_cloud.location_x, "12.5", 's');
    text(c, m->sys_cloud.location_y, "-3.25", 't');
    text(c, m->sys_cloud.desc, "lobby", 'u');
    text(c, m->sys_ddns.user, "dnsuser", 'v');
    text(c, m->sys_ddns.pwd, "dnspwd", 'w');
    text(c, m->sys_ddns.ip, "198.51.100.7", 'x');
    text(c, m->sys_ddns.domain, "gw.example.net", 'y');
    text(c, m->resved, "misc", 'z');
    return m;
}

std::unique_ptr<wifi_config> wifi(Case c) {
    if (c == Case::Defaults) return viewtest::from_defaults(WiFi_field, "wifi.conf");
    auto w = std::make_unique<wifi_config>();
    w->kvr_enable = c == Case::Full ? 1 : 255;
    w->is_5g_first = c == Case::Full ? 1 : 255;
    w->kvr_2g_rssi_thr = c == Case::Full ? -75 : INT16_MIN;
    w->kvr_5g_rssi_thr = c == Case::Full ? -70 : INT16_MAX;
    return w;
}

struct View {
    const char *name;
    std::string (*run)(Case);
};
const View kViews[] = {
    {"ProductInfo", [](Case c) { return viewtest::print(printf_ProductInfo_json, *product(c)); }},
    {"Misc", [](Case c) { return viewtest::print(printf_Misc_json, *misc(c)); }},
    {"Dmz", [](Case c) { return viewtest::print(printf_Dmz_json, *misc(c)); }},
    {"DDNS", [](Case c) { return viewtest::print(printf_DDNS_json, *misc(c)); }},
    {"NAT", [](Case c) { return viewtest::print(printf_NAT_json, *misc(c)); }},
    {"kvr", [](Case c) { return viewtest::print(printf_kvr_json, *wifi(c)); }},
};

TEST(SystemViews, WholeDocumentsMatchTheirGoldenFilesAndAreJsonOfStrings) {
    for (const View &v : kViews) {
        for (Case c : {Case::Defaults, Case::Full, Case::Edge}) {
            std::string name = std::string(v.name) + "-" + viewtest::kCaseNames[int(c)] + ".json";
            std::string doc = v.run(c);
            viewtest::expect_golden(name, doc);
            // Status 0 also means: every value a string, no key twice in one object.
            viewtest::Parsed p = viewtest::parse(doc);
            EXPECT_EQ(p.status, 0) << name << ": " << p.message;
        }
    }
}

using viewtest::Expect;
const Expect kExpected[] = {
    {"ProductInfo", Case::Defaults, "productname", "Wireless Router"},
    {"ProductInfo", Case::Edge, "device_cpu", std::string(10, 'C')},
    {"ProductInfo", Case::Edge, "dev_opmode", "-2147483648"},
    {"Misc", Case::Defaults, "sys_user.rootname", "admin"},
    {"Misc", Case::Full, "sys_user.userpwd", ""}, // never printed, whatever is stored
    {"Misc", Case::Edge, "sys_user.userpwd", ""},
    {"Misc", Case::Edge, "sys_user.root_type", "4294967295"}, // %u
    {"Misc", Case::Full, "sys_timereboot.m_TimeReboot_Month", "12"},
    {"Misc", Case::Full, "sys_timereboot.resved", ""},
    {"Misc", Case::Full, "enable_telnet", "0"},
    {"Misc", Case::Full, "sys_cloud.location_y", "-3.25"},
    {"Misc", Case::Edge, "sys_dzm.dmz_host", std::string(20, 'g')},
    {"Misc", Case::Edge, "resved", std::string(490, 'z')},
    {"Dmz", Case::Full, "sys_dzm.dmz_host", "192.168.1.50"},
    {"DDNS", Case::Edge, "sys_ddns.domain", std::string(128, 'y')},
    {"NAT", Case::Defaults, "sys_nat.enable", "1"},
    {"kvr", Case::Defaults, "sys_roaming.m_kvr_2g_rssi_thr", "-75"},
    {"kvr", Case::Edge, "sys_roaming.m_kvr_2g_rssi_thr", "-32768"},
};

TEST(SystemViews, JsonValues) {
    viewtest::expect_values(kExpected, [](const std::string &name, Case c) {
        for (const View &v : kViews)
            if (name == v.name) return v.run(c);
        return std::string();
    });
}

// Values are printed raw: a stored double quote breaks the document, and no view repairs it.
TEST(SystemViews, StoredDoubleQuoteBreaksTheDocumentByDesign) {
    auto m = misc(Case::Full);
    put(m->sys_dzm.dmz_host, "a\"b");
    std::string doc = viewtest::print(printf_Dmz_json, *m);
    EXPECT_NE(doc.find("\"dmz_host\":\"a\"b\",\n"), std::string::npos);
    EXPECT_EQ(viewtest::parse(doc).status, 3) << "this document is meant to be invalid JSON";
}

} // namespace
