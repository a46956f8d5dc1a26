// The system views: whole documents against golden files for factory, filled and edge
// records; the documents as python3's json module reads them; the particulars the pages rely on.
#include "tests/views/view_check.h"

namespace {

using viewtest::fill_full;
using viewtest::put;

enum class Case { Defaults, Full, Edge };
const char *const kCaseNames[] = {"defaults", "full", "edge"};

std::unique_ptr<productinfo_config> product(Case c) {
    if (c == Case::Defaults) return viewtest::from_defaults(productinfo_field, "productinfo.conf");
    auto p = std::make_unique<productinfo_config>();
    p->upgrade_reset = c == Case::Full ? 1 : 255;
    p->max_device_ap = c == Case::Full ? 128 : -1;
    p->dev_opmode = c == Case::Full ? 2 : INT32_MIN;
    p->dev_spec.support_eth_count = c == Case::Full ? 5 : INT32_MAX;
    if (c == Case::Full) {
        put(p->productname, "AC-1200");
        put(p->device_sn, "SN0042");
        put(p->default_language, "zh_CN");
        put(p->device_name, "office-gw");
        put(p->device_position, "rack 3");
        put(p->device_cpu, "MT7621");
        put(p->config_get_telnet_port_url, "http://example.net/port");
        put(p->dev_spec.support_eth_type, "1,1,1,1,0");
        put(p->resved, "r");
    } else { // every text fills its member, no terminator anywhere
        fill_full(p->productname, 'P');
        fill_full(p->device_sn, 'S');
        fill_full(p->default_language, 'L');
        fill_full(p->device_name, 'N');
        fill_full(p->device_position, 'O');
        fill_full(p->device_cpu, 'C');
        fill_full(p->config_get_telnet_port_url, 'U');
        fill_full(p->dev_spec.support_eth_type, 'T');
        fill_full(p->resved, 'R');
    }
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
    auto text = [&](auto &member, const char *value, char fill) {
        full ? put(member, value) : fill_full(member, fill);
    };
    text(m->sys_user.rootname, "root", 'a');
    text(m->sys_user.rootpwd, "rootsecret", 'b');
    text(m->sys_user.username, "user", 'c');
    text(m->sys_user.userpwd, "usersecret", 'd');
    text(m->sys_user.resved, "u", 'e');
    text(m->sys_actimer.resved, "t", 'f');
    text(m->sys_dzm.dmz_host, "192.168.1.50", 'g');
    text(m->sys_dzm.resved, "z", 'h');
    text(m->sys_log.remote_log_server_host, "log.example.net", 'i');
    text(m->sys_log.resved, "l", 'j');
    text(m->sys_ntp.ntp_tz, "CST-8", 'k');
    text(m->sys_ntp.ntp_server_addr, "ntp.example.net", 'l');
    text(m->sys_ntp.resved, "n", 'm');
    text(m->sys_remote.subdomain, "gw.remote", 'n');
    text(m->sys_remote.web_url, "http://gw.remote/x", 'o');
    text(m->sys_remote.server_addr, "203.0.113.9", 'p');
    text(m->sys_cloud.server, "cloud.example.net", 'q');
    text(m->sys_cloud.bind_code, "B1ND", 'r');
    text(m->sys_cloud.location_x, "12.5", 's');
    text(m->sys_cloud.location_y, "-3.25", 't');
    text(m->sys_cloud.desc, "lobby", 'u');
    text(m->sys_ddns.user, "dnsuser", 'v');
    text(m->sys_ddns.pwd, "dnspwd", 'w');
    text(m->sys_ddns.ip, "198.51.100.7", 'x');
    text(m->sys_ddns.domain, "gw.example.net", 'y');
    text(m->resved, "misc", 'z');
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
            std::string name = std::string(v.name) + "-" + kCaseNames[int(c)] + ".json";
            std::string doc = v.run(c);
            viewtest::expect_golden(name, doc);
            // Status 0 also means: every value a string, no key twice in one object.
            viewtest::Parsed p = viewtest::parse(doc);
            EXPECT_EQ(p.status, 0) << name << ": " << p.message;
        }
    }
}

struct Expect {
    const char *view;
    Case record;
    const char *path;
    std::string value;
};
const Expect kExpected[] = {
    {"ProductInfo", Case::Defaults, "productname", "Wireless Router"},
    {"ProductInfo", Case::Defaults, "support_eth_count", "5"},
    {"ProductInfo", Case::Full, "config_get_telnet_port_url", "http://example.net/port"},
    {"ProductInfo", Case::Full, "max_device_ap", "128"},
    {"ProductInfo", Case::Edge, "device_cpu", std::string(10, 'C')},
    {"ProductInfo", Case::Edge, "resved", std::string(96, 'R')},
    {"ProductInfo", Case::Edge, "dev_opmode", "-2147483648"},
    {"Misc", Case::Defaults, "sys_user.rootname", "admin"},
    {"Misc", Case::Defaults, "sys_ntp.ntp_server_addr", "pool.ntp.org"},
    {"Misc", Case::Full, "sys_user.rootpwd", "rootsecret"},
    {"Misc", Case::Full, "sys_user.userpwd", ""}, // never printed, whatever is stored
    {"Misc", Case::Edge, "sys_user.userpwd", ""},
    {"Misc", Case::Edge, "sys_user.root_type", "4294967295"}, // %u
    {"Misc", Case::Full, "sys_timereboot.m_TimeReboot_Week", "6"},
    {"Misc", Case::Full, "sys_timereboot.m_TimeReboot_Month", "12"},
    {"Misc", Case::Full, "sys_timereboot.resved", ""},
    {"Misc", Case::Full, "sys_remote.remote_port", "8080"},
    {"Misc", Case::Full, "sys_remote.enable_telnet", "1"},
    {"Misc", Case::Full, "enable_telnet", "0"},
    {"Misc", Case::Full, "sys_cloud.location_y", "-3.25"},
    {"Misc", Case::Full, "sys_speedup.enable_soft_nomangle", "1"},
    {"Misc", Case::Edge, "sys_dzm.dmz_host", std::string(20, 'g')},
    {"Misc", Case::Edge, "sys_actimer.sys_ac_echo_interval", "255"},
    {"Misc", Case::Edge, "resved", std::string(490, 'z')},
    {"Dmz", Case::Full, "sys_dzm.dmz_host", "192.168.1.50"},
    {"Dmz", Case::Full, "sys_log.remote_log_server_host", "log.example.net"},
    {"DDNS", Case::Full, "sys_ddns.pwd", "dnspwd"},
    {"DDNS", Case::Full, "sys_ddns.wanid", "3"},
    {"DDNS", Case::Edge, "sys_ddns.domain", std::string(128, 'y')},
    {"NAT", Case::Defaults, "sys_nat.enable", "1"},
    {"kvr", Case::Defaults, "sys_roaming.m_kvr_2g_rssi_thr", "-75"},
    {"kvr", Case::Full, "sys_roaming.m_kvr_5g_rssi_thr", "-70"},
    {"kvr", Case::Edge, "sys_roaming.m_kvr_2g_rssi_thr", "-32768"},
    {"kvr", Case::Edge, "sys_roaming.m_is_5g_first", "255"},
};

TEST(SystemViews, JsonValues) {
    std::map<std::string, viewtest::Parsed> parsed; // one python3 run per document
    for (const Expect &e : kExpected) {
        for (const View &v : kViews) {
            if (std::strcmp(v.name, e.view) != 0) continue;
            std::string key = std::string(v.name) + kCaseNames[int(e.record)];
            if (!parsed.count(key)) parsed[key] = viewtest::parse(v.run(e.record));
            const viewtest::Parsed &p = parsed[key];
            EXPECT_EQ(p.at(e.path), e.value)
                << e.view << " " << kCaseNames[int(e.record)] << " " << e.path;
        }
    }
}

// Exact pieces of the documents that the pages depend on.
TEST(SystemViews, ExactBytes) {
    auto m = misc(Case::Full);
    m->sys_nat.enable = 1;
    EXPECT_EQ(viewtest::print(printf_NAT_json, *m), "{\"sys_nat\":{\n\"enable\":\"1\"\n}}");
    std::string doc = viewtest::print(printf_Misc_json, *m);
    const char *pieces[] = {
        "\"userpwd\":\"\",\n",
        "\"m_TimeReboot_Week\":\"6\",\n\"m_TimeReboot_Month\":\"12\",\n\"resved\":\"\"\n},",
        "},\"sys_dzm\":{\n",
        "\"enable_soft_nomangle\":\"1\"\n},\"enable_telnet\":\"0\",\n\"resved\":\"misc\"\n}",
    };
    for (const char *piece : pieces)
        EXPECT_NE(doc.find(piece), std::string::npos) << piece;
    EXPECT_EQ(doc.front(), '{');
    EXPECT_EQ(doc.find("\"sys_dmz\""), std::string::npos);
    EXPECT_NE(viewtest::print(printf_kvr_json, *wifi(Case::Full))
                  .find("{\"sys_roaming\":{\n\"m_kvr_enable\":\"1\",\n\"m_is_5g_first\":\"1\",\n"
                        "\"m_kvr_2g_rssi_thr\":\"-75\",\n"),
              std::string::npos);
    std::string dmz = viewtest::print(printf_Dmz_json, *m);
    EXPECT_EQ(dmz.substr(0, 11), "{\"sys_dzm\":");
    EXPECT_EQ(dmz.substr(dmz.size() - 3), "\n}}");
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
