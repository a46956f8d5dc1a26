// The system and wireless settings forms as a CGI program drives them: the POST body on
// standard input, decoded by process_queue, the form applied to the store's records in
// that process, and the record read back from flash by a fresh process. Every record
// starts filled with a pattern, so the whole record is compared: the member holds exactly
// the bytes expected and every byte around it is as it was.
#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "store/config_data_api.h"
#include "support/harness.h"

using wmtest::TempRoot;

namespace {

enum class Sec { Misc, Wifi, Product };

// One member of a record: where it lies and how wide it is.
struct Member {
    Sec sec;
    size_t offset;
    size_t size;
};

const misc_config &misc_shape() {
    static misc_config m;
    return m;
}
const wifi_config &wifi_shape() {
    static wifi_config w;
    return w;
}
const productinfo_config &product_shape() {
    static productinfo_config p;
    return p;
}

template <typename Record, typename M> Member at(Sec sec, const Record &r, const M &m) {
    return {sec, size_t(reinterpret_cast<const char *>(&m) - reinterpret_cast<const char *>(&r)),
            sizeof m};
}
#define MISC(m) at(Sec::Misc, misc_shape(), misc_shape().m)
#define WIFI(m) at(Sec::Wifi, wifi_shape(), wifi_shape().m)
#define PRODUCT(m) at(Sec::Product, product_shape(), product_shape().m)

// The bytes a member should hold.
std::string text_n(const std::string &v, size_t size) { // cut at the member, zero-filled
    std::string out = v.substr(0, size);
    out.resize(size, '\0');
    return out;
}
std::string text_z(const std::string &v, size_t size) { // cut before the last byte
    return text_n(v.substr(0, size - 1), size);
}
template <typename T> std::string raw(T v) {
    return std::string(reinterpret_cast<const char *>(&v), sizeof v);
}
std::string u8(int v) {
    return raw(uint8_t(v));
}
std::string i16(int v) {
    return raw(int16_t(v));
}
std::string i32(int v) {
    return raw(int32_t(v));
}
std::string ip4(const char *text) {
    return raw(uint32_t(inet_addr(text)));
}

std::string long_text(size_t n) {
    std::string s;
    for (size_t i = 0; i < n; ++i)
        s += char('a' + i % 26);
    return s;
}

// The sections the forms store, in the order of Sec.
const struct {
    const char *file;
    size_t size;
    void *(*record)();
} kSections[] = {
    {"misc", sizeof(misc_config), []() -> void * { return SC_Get_Misc_System_Config(); }},
    {"wifi", sizeof(wifi_config), []() -> void * { return SC_Get_SC_WiFi_Config(); }},
    {"productinfo", sizeof(productinfo_config),
     []() -> void * { return SC_Get_ProductInfo_System_Config(); }},
};
void *record_of(Sec sec) {
    return kSections[int(sec)].record();
}
size_t size_of(Sec sec) {
    return kSections[int(sec)].size;
}
const char *file_of(Sec sec) {
    return kSections[int(sec)].file;
}

constexpr size_t kHead = offsetof(misc_config, sys_user); // version, lock file, lock place
constexpr char kDomain[] = ".cloud.example.net";

// Every record filled with 0xA5 after its head, the product's remote domain set, all
// saved to flash.
void prime(const TempRoot &) {
    auto r = wmtest::run_in_child([] {
        for (Sec sec : {Sec::Misc, Sec::Wifi, Sec::Product}) {
            auto *bytes = static_cast<char *>(record_of(sec));
            std::memset(bytes + kHead, 0xA5, size_of(sec) - kHead);
        }
        productinfo_config *p = SC_Get_ProductInfo_System_Config();
        std::memset(p->remote_web_config_domain, 0, sizeof p->remote_web_config_domain);
        std::strcpy(p->remote_web_config_domain, kDomain);
        int rc = SC_Save_System_Misc_Config2Flash(SC_Get_Misc_System_Config()) |
                 SC_Save_SC_WiFi_Config2Flash(SC_Get_SC_WiFi_Config()) |
                 SC_Save_System_ProductInfo_Config2Flash(p);
        return rc == CONFIG_OK ? 0 : 1;
    });
    ASSERT_EQ(r.exit_code(), 0) << r.err;
}

// Removes the section files (".bin") of a store directory.
void remove_section_files(const std::string &dir) {
    DIR *d = opendir(dir.c_str());
    if (!d) return;
    while (const dirent *e = readdir(d)) {
        std::string name = e->d_name;
        if (name.size() > 4 && name.compare(name.size() - 4, 4, ".bin") == 0)
            unlink((dir + "/" + name).c_str());
    }
    closedir(d);
}

// A section as a fresh process reads it; with `after_reboot` the memory copies are gone
// first, so what it reads is the flash copy.
std::string stored(const TempRoot &root, Sec sec, bool after_reboot = true) {
    if (after_reboot) remove_section_files(root.path("/var/config"));
    std::string out =
        wmtest::output_of([sec] { std::fwrite(record_of(sec), 1, size_of(sec), stdout); });
    EXPECT_EQ(out.size(), size_of(sec));
    return out;
}

using wmtest::Form;
using wmtest::url_encode;
constexpr auto post = wmtest::post_form;

// The forms, called as the pages' programs call them.
const std::vector<std::pair<std::string, Form>> &forms() {
    static const std::vector<std::pair<std::string, Form>> table = {
        {"user", [](const form_pair *p, int n) { return save_sys_user(p, n); }},
        {"actimer", [](const form_pair *p, int n) { return save_sys_actimer(p, n); }},
        {"dzm",
         [](const form_pair *p, int n) { return save_sys_dzm(SC_Get_Misc_System_Config(), p, n); }},
        {"nat",
         [](const form_pair *p, int n) { return save_sys_nat(SC_Get_Misc_System_Config(), p, n); }},
        {"kvr",
         [](const form_pair *p, int n) { return save_sys_kvr(SC_Get_SC_WiFi_Config(), p, n); }},
        {"ddns", [](const form_pair *p,
                    int n) { return save_sys_ddns(SC_Get_Misc_System_Config(), p, n); }},
        {"log", [](const form_pair *p, int n) { return save_sys_log(p, n); }},
        {"ntp",
         [](const form_pair *p, int n) { return save_sys_ntp(SC_Get_Misc_System_Config(), p, n); }},
        {"remote", [](const form_pair *p, int n) { return save_sys_remote(p, n, "AC1234"); }},
        {"timereboot",
         [](const form_pair *p, int n) {
             return save_sys_timereboot(SC_Get_Misc_System_Config(), p, n);
         }},
        {"product", [](const form_pair *p, int n) { return save_product_Info(p, n); }},
        {"allradio",
         [](const form_pair *p, int n) {
             return save_wifi_all_radio_config(SC_Get_SC_WiFi_Config(), p, n);
         }},
        {"repeater1",
         [](const form_pair *p, int n) {
             return save_wifi_repeater_config(SC_Get_SC_WiFi_Config(), p, n, 1);
         }},
        {"timeclose",
         [](const form_pair *p, int n) { return save_wifi_timeclose_config(nullptr, p, n); }},
    };
    return table;
}

const Form &form_named(const std::string &name) {
    for (const auto &[n, f] : forms())
        if (n == name) return f;
    static const Form none = [](const form_pair *, int) { return -998; };
    return none;
}

// One variable sent to one form and the bytes its member must hold afterwards. Every
// request of the remote form also writes the host name and the URL, every request of the
// repeater form the radio's index: the test adds those members.
struct Row {
    std::string form;
    std::string variable;
    std::string value;
    Member member;
    std::string bytes;
};
#define VAP(r, v, m) WIFI(m_radio[r].m_vap[v].m)
#define REP(m) WIFI(m_radio[1].m_repeater.m)
const Member kNothing = {Sec::Wifi, 0, 0};

std::vector<Row> also_written(const std::string &form) {
    const std::string host = "AC1234.remote";
    if (form == "remote")
        return {{"", "", "", MISC(sys_remote.subdomain), text_n(host, 128)},
                {"", "", "", MISC(sys_remote.web_url), text_n("http://" + host + kDomain, 512)}};
    if (form == "repeater1") return {{"", "", "", WIFI(m_repeater_radio_id), i32(1)}};
    return {};
}

std::vector<Row> rows() {
    const std::string l300 = long_text(300);
    std::vector<Row> t = {
        // Accounts: texts of 64 bytes (cut there, unterminated), 32-bit types, switches.
        {"user", "rootname", "root", MISC(sys_user.rootname), text_n("root", 64)},
        {"user", "rootname", l300, MISC(sys_user.rootname), text_n(l300, 64)},
        {"user", "rootpwd", "s3cret pw", MISC(sys_user.rootpwd), text_n("s3cret pw", 64)},
        {"user", "rootpwd", l300, MISC(sys_user.rootpwd), text_n(l300, 64)},
        {"user", "root_type", "7", MISC(sys_user.root_type), i32(7)},
        {"user", "root_type", "-1", MISC(sys_user.root_type), i32(-1)},
        {"user", "username", "guest", MISC(sys_user.username), text_n("guest", 64)},
        {"user", "username", l300, MISC(sys_user.username), text_n(l300, 64)},
        {"user", "userpwd", l300, MISC(sys_user.userpwd), text_n(l300, 64)},
        {"user", "user_type", "2", MISC(sys_user.user_type), i32(2)},
        {"user", "userpwdaswifipwd", "1", MISC(sys_user.userpwdaswifipwd), u8(1)},
        {"user", "userpwd_encrypt", "257", MISC(sys_user.userpwd_encrypt), u8(1)},
        {"user", "userpwd_encrypt_type", "-1", MISC(sys_user.userpwd_encrypt_type), u8(255)},
        // Controller timers: one byte each.
        {"actimer", "sys_ac_discovery_timeout", "20", MISC(sys_actimer.sys_ac_discovery_timeout),
         u8(20)},
        {"actimer", "sys_ac_echo_interval", "300", MISC(sys_actimer.sys_ac_echo_interval), u8(44)},
        // DMZ, NAT.
        {"dzm", "dmz_enable", "1", MISC(sys_dzm.dmz_enable), u8(1)},
        {"dzm", "dmz_host", "192.168.1.50", MISC(sys_dzm.dmz_host), text_n("192.168.1.50", 20)},
        {"dzm", "dmz_host", l300, MISC(sys_dzm.dmz_host), text_n(l300, 20)},
        {"nat", "enable", "0", MISC(sys_nat.enable), u8(0)},
        {"nat", "enable", "abc", MISC(sys_nat.enable), u8(0)},
        // Band steering: switches of one byte, 16-bit thresholds keeping their sign.
        {"kvr", "m_kvr_enable", "1", WIFI(kvr_enable), u8(1)},
        {"kvr", "m_is_5g_first", "1", WIFI(is_5g_first), u8(1)},
        {"kvr", "m_kvr_2g_rssi_thr", "-75", WIFI(kvr_2g_rssi_thr), i16(-75)},
        {"kvr", "m_kvr_5g_rssi_thr", "-32769", WIFI(kvr_5g_rssi_thr), i16(32767)},
        {"kvr", "m_kvr_5g_rssi_thr", "70000", WIFI(kvr_5g_rssi_thr), i16(4464)},
        // Dynamic DNS: the domain of 128 characters or more fills its member unterminated.
        {"ddns", "enable", "1", MISC(sys_ddns.enable), u8(1)},
        {"ddns", "user", l300, MISC(sys_ddns.user), text_n(l300, 100)},
        {"ddns", "pwd", "p@ss", MISC(sys_ddns.pwd), text_n("p@ss", 100)},
        {"ddns", "pwd", l300, MISC(sys_ddns.pwd), text_n(l300, 100)},
        {"ddns", "usertype", "3", MISC(sys_ddns.usertype), u8(3)},
        {"ddns", "domain", "me.ddns.example", MISC(sys_ddns.domain),
         text_n("me.ddns.example", 128)},
        {"ddns", "domain", long_text(128), MISC(sys_ddns.domain), long_text(128)},
        {"ddns", "domain", l300, MISC(sys_ddns.domain), text_n(l300, 128)},
        // System log.
        {"log", "log_enable", "1", MISC(sys_log.log_enable), u8(1)},
        {"log", "remote_log_enable", "1", MISC(sys_log.remote_log_enable), u8(1)},
        {"log", "remote_log_server_host", l300, MISC(sys_log.remote_log_server_host),
         text_n(l300, 50)},
        // Time.
        {"ntp", "enable", "1", MISC(sys_ntp.enable), u8(1)},
        {"ntp", "ntp_tz", "UTC-8", MISC(sys_ntp.ntp_tz), text_n("UTC-8", 20)},
        {"ntp", "ntp_tz", l300, MISC(sys_ntp.ntp_tz), text_n(l300, 20)},
        {"ntp", "ntp_server_mode", "2", MISC(sys_ntp.ntp_server_mode), u8(2)},
        {"ntp", "ntp_server_addr", l300, MISC(sys_ntp.ntp_server_addr), text_n(l300, 128)},
        // Remote access: the port keeps its low 16 bits; host name and URL always written.
        {"remote", "enable_web", "1", MISC(sys_remote.enable_web), u8(1)},
        {"remote", "enable_telnet", "1", MISC(sys_remote.enable_telnet), u8(1)},
        {"remote", "remote_port", "8080", MISC(sys_remote.remote_port), i16(8080)},
        {"remote", "remote_port", "70000", MISC(sys_remote.remote_port), i16(4464)},
        {"remote", "local_enable_telnet", "1", MISC(enable_telnet), u8(1)},
        // Scheduled reboot: one byte each.
        {"timereboot", "m_TimeRebootEnable", "1", MISC(sys_timereboot.m_TimeRebootEnable), u8(1)},
        {"timereboot", "m_TimeReboot_Hour", "23", MISC(sys_timereboot.m_TimeReboot_Hour), u8(23)},
        {"timereboot", "m_TimeReboot_Day", "31", MISC(sys_timereboot.m_TimeReboot_Day), u8(31)},
        {"timereboot", "m_TimeReboot_Week", "6", MISC(sys_timereboot.m_TimeReboot_Week), u8(6)},
        {"timereboot", "m_TimeRebootType", "2", MISC(sys_timereboot.m_TimeRebootType), u8(2)},
        {"timereboot", "m_TimeReboot_Month", "12", MISC(sys_timereboot.m_TimeReboot_Month), u8(12)},
        // Product information.
        {"product", "productname", l300, PRODUCT(productname), text_n(l300, 50)},
        {"product", "device_sn", "SN0001", PRODUCT(device_sn), text_n("SN0001", 50)},
        {"product", "device_sn", l300, PRODUCT(device_sn), text_n(l300, 50)},
        {"product", "default_language", l300, PRODUCT(default_language), text_n(l300, 10)},
        {"product", "device_name", l300, PRODUCT(device_name), text_n(l300, 100)},
        {"product", "device_position", "Hall 2", PRODUCT(device_position), text_n("Hall 2", 100)},
        {"product", "device_position", l300, PRODUCT(device_position), text_n(l300, 100)},
        {"product", "upgrade_reset", "1", PRODUCT(upgrade_reset), u8(1)},
        {"product", "device_cpu", l300, PRODUCT(device_cpu), text_n(l300, 10)},
        {"product", "ap_mode", "2", PRODUCT(ap_mode), u8(2)},
        {"product", "is_first", "0", PRODUCT(is_first), u8(0)},
        {"product", "fit_to_fat", "1", PRODUCT(fit_to_fat), u8(1)},
        // All radios: radio members "<member><radio>", VAP members "<member><radio><vap>".
        {"allradio", "m_radio_type2", "1", WIFI(m_radio[2].m_radio_type), u8(1)},
        {"allradio", "channel_limit_enable0", "1", WIFI(m_radio[0].channel_limit_enable), u8(1)},
        {"allradio", "m_wirelessbwmode1", "3", WIFI(m_radio[1].m_wirelessbwmode), u8(3)},
        {"allradio", "m_wlan_beacon_interval0", "100", WIFI(m_radio[0].m_wlan_beacon_interval),
         i16(100)},
        {"allradio", "m_wlan_txpower1", "-3", WIFI(m_radio[1].m_wlan_txpower), i16(-3)},
        {"allradio", "m_channel1", "149", WIFI(m_radio[1].m_channel), i16(149)},
        {"allradio", "m_channel_config2", "65537", WIFI(m_radio[2].m_channel_config), i16(1)},
        {"allradio", "m_acktimeout0", "-5", WIFI(m_radio[0].m_acktimeout), i32(-5)},
        {"allradio", "m_wmm2", "1", WIFI(m_radio[2].m_wmm), i32(1)},
        {"allradio", "m_MaxStanum1", "128", WIFI(m_radio[1].m_MaxStanum), i16(128)},
        {"allradio", "contrystr0", "US", WIFI(m_radio[0].contrystr), text_n("US", 4)},
        {"allradio", "contrystr1", "CN_long", WIFI(m_radio[1].contrystr), text_n("CN_l", 4)},
        {"allradio", "m_phyname2", l300, WIFI(m_radio[2].m_phyname), text_n(l300, 16)},
        {"allradio", "m_enable0", "0", WIFI(m_radio[0].m_enable), u8(0)},
        {"allradio", "m_phymode2", "300", WIFI(m_radio[2].m_phymode), u8(44)},
        {"allradio", "m_dfs_enable1", "1", WIFI(m_radio[1].m_dfs_enable), i16(1)},
        {"allradio", "m_wlan_enable12", "1", VAP(1, 2, m_wlan_enable), u8(1)},
        {"allradio", "m_wlan_hide_ssid03", "1", VAP(0, 3, m_wlan_hide_ssid), u8(1)},
        {"allradio", "m_ssid10", "Office", VAP(1, 0, m_ssid), text_n("Office", 64)},
        {"allradio", "m_ssid23", l300, VAP(2, 3, m_ssid), text_n(l300, 64)},
        {"allradio", "m_vlanid21", "4094", VAP(2, 1, m_vlanid), i16(4094)},
        {"allradio", "m_security00", "4", VAP(0, 0, m_security), u8(4)},
        {"allradio", "m_securitycipher01", "2", VAP(0, 1, m_securitycipher), u8(2)},
        {"allradio", "m_authmode02", "1", VAP(0, 2, m_authmode), u8(1)},
        {"allradio", "m_wep_keytype10", "1", VAP(1, 0, m_wep_keytype), u8(1)},
        {"allradio", "m_wep_keystr11", l300, VAP(1, 1, m_wep_keystr), text_n(l300, 30)},
        {"allradio", "m_psk_keytype12", "1", VAP(1, 2, m_psk_keytype), u8(1)},
        {"allradio", "m_psk_keystr13", "correct horse battery", VAP(1, 3, m_psk_keystr),
         text_n("correct horse battery", 64)},
        {"allradio", "m_psk_keystr20", long_text(64), VAP(2, 0, m_psk_keystr), long_text(64)},
        {"allradio", "m_psk_keystr22", l300, VAP(2, 2, m_psk_keystr), text_n(l300, 64)},
        {"allradio", "m_radius_serverip00", "10.0.0.9", VAP(0, 0, m_radius_serverip.v4),
         ip4("10.0.0.9")},
        {"allradio", "m_radius_serverip01", "not an address", VAP(0, 1, m_radius_serverip.v4),
         i32(-1)},
        {"allradio", "m_radius_serverport02", "1812", VAP(0, 2, m_radius_serverport), i16(1812)},
        {"allradio", "m_radius_sharekey03", l300, VAP(0, 3, m_radius_sharekey), text_n(l300, 64)},
        {"allradio", "m_bind_eth10", l300, VAP(1, 0, m_bind_eth), text_n(l300, 16)},
        {"allradio", "m_mode11", "2", VAP(1, 1, m_mode), i32(2)},
        {"allradio", "m_ifname12", l300, VAP(1, 2, m_ifname), text_n(l300, 16)},
        {"allradio", "m_lockbssid13", "1", VAP(1, 3, m_lockbssid), u8(1)},
        {"allradio", "m_vlan_tag_enable20", "1", VAP(2, 0, m_vlan_tag_enable), u8(1)},
        // No variable of the form: nothing changes, the record is still saved.
        {"allradio", "m_ssid30", "no radio 3", kNothing, ""},
        // The repeater of radio 1: bare names, m_phymode is the radio's own.
        {"repeater1", "m_wlan_enable", "1", REP(m_wlan_enable), u8(1)},
        {"repeater1", "m_ssid", l300, REP(m_ssid), text_n(l300, 64)},
        {"repeater1", "m_vlanid", "-2", REP(m_vlanid), i16(-2)},
        {"repeater1", "m_phymode", "9", WIFI(m_radio[1].m_phymode), u8(9)},
        {"repeater1", "m_security", "3", REP(m_security), u8(3)},
        {"repeater1", "m_wep_keystr", l300, REP(m_wep_keystr), text_n(l300, 30)},
        {"repeater1", "m_psk_keystr", l300, REP(m_psk_keystr), text_n(l300, 64)},
        {"repeater1", "m_radius_serverip", "192.0.2.1", REP(m_radius_serverip.v4),
         ip4("192.0.2.1")},
        {"repeater1", "m_radius_serverport", "1813", REP(m_radius_serverport), i16(1813)},
        {"repeater1", "m_p2p", "1", REP(m_p2p), u8(1)},
        {"repeater1", "m_vlan_tag_enable", "1", REP(m_vlan_tag_enable), u8(1)},
        {"repeater1", "m_radius_sharekey", l300, REP(m_radius_sharekey), text_n(l300, 64)},
        {"repeater1", "m_mode", "3", REP(m_mode), i32(3)},
        {"repeater1", "m_ifname", l300, REP(m_ifname), text_n(l300, 16)},
        {"repeater1", "m_lockbssid", "1", REP(m_lockbssid), u8(1)},
        {"repeater1", "m_bssid", "00:11:22:33:44:55", REP(m_bssid),
         std::string("\x00\x11\x22\x33\x44\x55", 6)},
        // The timed switch-off: times cut before their last byte, always terminated.
        {"timeclose", "m_enable", "1", WIFI(m_timeclosectrl.m_enable), u8(1)},
        {"timeclose", "m_start_time", "07:30", WIFI(m_timeclosectrl.m_start_time),
         text_z("07:30", 10)},
        {"timeclose", "m_start_time", l300, WIFI(m_timeclosectrl.m_start_time), text_z(l300, 10)},
        {"timeclose", "m_end_time", l300, WIFI(m_timeclosectrl.m_end_time), text_z(l300, 10)},
    };
    return t;
}

std::string row_name(const Row &r) {
    return r.form + " " + r.variable + "=" +
           (r.value.size() > 20 ? r.value.substr(0, 20) + "..." : r.value);
}

// The first differing byte of two records, as text for the failure message.
std::string first_difference(const std::string &got, const std::string &want) {
    for (size_t i = 0; i < got.size() && i < want.size(); ++i)
        if (got[i] != want[i]) {
            char t[96];
            std::snprintf(t, sizeof t, "first difference at byte %zu: got 0x%02X, want 0x%02X", i,
                          unsigned(uint8_t(got[i])), unsigned(uint8_t(want[i])));
            return t;
        }
    return got.size() == want.size() ? "none" : "sizes differ";
}

// The rows run one after the other on one tree: each compares the records after its request
// with the records before it.
TEST(SettingsForms, EachVariableStoresItsMemberAndNothingElse) {
    TempRoot root;
    prime(root);
    std::string before[3];
    for (Sec sec : {Sec::Misc, Sec::Wifi, Sec::Product})
        before[int(sec)] = stored(root, sec);
    for (const Row &row : rows()) {
        SCOPED_TRACE(row_name(row));
        ASSERT_EQ(post(row.variable + "=" + url_encode(row.value), form_named(row.form)), 0);
        for (Sec sec : {Sec::Misc, Sec::Wifi, Sec::Product}) {
            std::string want = before[int(sec)];
            std::vector<Row> changes = also_written(row.form);
            changes.push_back(row);
            for (const Row &c : changes) {
                if (c.member.sec != sec) continue;
                ASSERT_EQ(c.bytes.size(), c.member.size) << "the table's expectation";
                want.replace(c.member.offset, c.member.size, c.bytes);
            }
            std::string got = stored(root, sec);
            EXPECT_TRUE(got == want) << file_of(sec) << ": " << first_difference(got, want);
            before[int(sec)] = got;
        }
    }
}

// Every form saves to flash even when no variable of its own is sent; a fresh process after
// a reboot sees the form's record as the form left it.
TEST(SettingsForms, SaveReachesFlashWithoutVariables) {
    TempRoot root;
    prime(root);
    for (const auto &[name, form] : forms()) {
        SCOPED_TRACE(name);
        remove_section_files(root.path("/etc/config_flash"));
        EXPECT_EQ(post("unrelated=1", form), 0);
        struct stat st;
        bool wifi =
            name == "kvr" || name == "allradio" || name == "repeater1" || name == "timeclose";
        bool product = name == "product" || name == "remote";
        bool misc = !wifi && name != "product";
        EXPECT_EQ(stat(root.path("/etc/config_flash/wifi.bin").c_str(), &st) == 0, wifi);
        EXPECT_EQ(stat(root.path("/etc/config_flash/misc.bin").c_str(), &st) == 0, misc);
        EXPECT_EQ(stat(root.path("/etc/config_flash/productinfo.bin").c_str(), &st) == 0, product);
    }
}

// A repeated variable: the binding-table forms take its last value, the radio forms (one
// look-up per member) its first.
TEST(SettingsForms, RepeatedVariables) {
    TempRoot root;
    prime(root);
    EXPECT_EQ(post("dmz_host=first&dmz_host=last", form_named("dzm")), 0);
    EXPECT_EQ(post("m_ssid01=first&m_ssid01=last", form_named("allradio")), 0);
    std::string misc = stored(root, Sec::Misc), wifi = stored(root, Sec::Wifi);
    Member host = MISC(sys_dzm.dmz_host), ssid = WIFI(m_radio[0].m_vap[1].m_ssid);
    EXPECT_EQ(misc.substr(host.offset, host.size), text_n("last", 20));
    EXPECT_EQ(wifi.substr(ssid.offset, ssid.size), text_n("first", 64));
}

// The roaming form changes the record of its own process only: the same process's view
// shows the values, nothing is saved.
TEST(SettingsForms, RoamingChangesOnlyTheLiveRecord) {
    TempRoot root;
    prime(root);
    std::string before = stored(root, Sec::Wifi, false);
    std::string flash_before = wmtest::read_file(root.path("/etc/config_flash/wifi.bin"));
    std::string body = "m_kvr_enable=1&m_is_5g_first=1&m_kvr_2g_rssi_thr=-70&m_kvr_5g_rssi_thr=-65";
    auto r = wmtest::run_post(body, [](const form_pair *pairs, int n) {
        if (save_sys_aproaming(pairs, n) != 0) return 1;
        printf_kvr_json(SC_Get_SC_WiFi_Config());
        return 0;
    });
    ASSERT_EQ(r.exit_code(), 0);
    EXPECT_EQ(r.out, "{\"sys_roaming\":{\n\"m_kvr_enable\":\"1\",\n\"m_is_5g_first\":\"1\",\n"
                     "\"m_kvr_2g_rssi_thr\":\"-70\",\n\"m_kvr_5g_rssi_thr\":\"-65\"\n}}");
    EXPECT_TRUE(stored(root, Sec::Wifi, false) == before);
    EXPECT_TRUE(wmtest::read_file(root.path("/etc/config_flash/wifi.bin")) == flash_before);
}

// The remote host name and URL stop at their members, terminated, however long the
// device's host text is.
TEST(SettingsForms, RemoteTextsStopAtTheirMembers) {
    TempRoot root;
    prime(root);
    std::string host = long_text(200);
    EXPECT_EQ(post("enable_web=1",
                   [&](const form_pair *p, int n) { return save_sys_remote(p, n, host.c_str()); }),
              0);
    std::string misc = stored(root, Sec::Misc);
    Member sub = MISC(sys_remote.subdomain), url = MISC(sys_remote.web_url);
    std::string subdomain = host + ".remote";
    EXPECT_EQ(misc.substr(sub.offset, sub.size), text_z(subdomain, 128));
    EXPECT_EQ(misc.substr(url.offset, url.size),
              text_z("http://" + subdomain.substr(0, 127) + kDomain, 512));
    // A null host is an empty one.
    EXPECT_EQ(post("", [](const form_pair *p, int n) { return save_sys_remote(p, n, nullptr); }),
              0);
    misc = stored(root, Sec::Misc);
    EXPECT_EQ(misc.substr(url.offset, url.size),
              text_n(std::string("http://.remote") + kDomain, 512));
}

// The repeater form names its radio even when nothing is sent; a radio the record does not
// have changes nothing and is refused.
TEST(SettingsForms, RepeaterRadioIndex) {
    TempRoot root;
    prime(root);
    std::string before = stored(root, Sec::Wifi);
    Member id = WIFI(m_repeater_radio_id);
    EXPECT_EQ(
        post("", [](const form_pair *p,
                    int n) { return save_wifi_repeater_config(SC_Get_SC_WiFi_Config(), p, n, 2); }),
        0);
    std::string want = before;
    want.replace(id.offset, id.size, i32(2));
    EXPECT_TRUE(stored(root, Sec::Wifi) == want);
    for (int radio : {3, -1, 1000000}) {
        EXPECT_EQ(post("m_ssid=x&m_phymode=1",
                       [radio](const form_pair *p, int n) {
                           return save_wifi_repeater_config(SC_Get_SC_WiFi_Config(), p, n, radio);
                       }),
                  -1);
        EXPECT_TRUE(stored(root, Sec::Wifi) == want) << radio;
    }
}

// The forms answer 0 when the store cannot write, and -1 for a missing record.
TEST(SettingsForms, ResultIgnoresTheSave) {
    TempRoot root;
    prime(root);
    // The flash directory made a file: every flash save fails.
    wmtest::run_shell("rm -rf '" + root.path("/etc/config_flash") + "' && touch '" +
                      root.path("/etc/config_flash") + "'");
    auto r = wmtest::run_in_child(
        [] { return SC_Save_System_Misc_Config2Flash(SC_Get_Misc_System_Config()) == CONFIG_OK; });
    ASSERT_EQ(r.exit_code(), 0) << "the save should fail in this tree";
    for (const auto &[name, form] : forms()) {
        SCOPED_TRACE(name);
        EXPECT_EQ(post("enable=1&m_ssid00=x", form), 0);
    }
    EXPECT_EQ(save_sys_dzm(nullptr, nullptr, 0), -1);
    EXPECT_EQ(save_sys_nat(nullptr, nullptr, 0), -1);
    EXPECT_EQ(save_sys_kvr(nullptr, nullptr, 0), -1);
    EXPECT_EQ(save_sys_ddns(nullptr, nullptr, 0), -1);
    EXPECT_EQ(save_sys_ntp(nullptr, nullptr, 0), -1);
    EXPECT_EQ(save_sys_timereboot(nullptr, nullptr, 0), -1);
    EXPECT_EQ(save_wifi_all_radio_config(nullptr, nullptr, 0), -1);
    EXPECT_EQ(save_wifi_repeater_config(nullptr, nullptr, 0, 0), -1);
}

// The whole page at once: every variable of the three radios and their four VAPs (303 in
// all), decoded by process_queue and applied in one call. The expected record is the one
// before with each member set to its value by hand.
TEST(SettingsForms, AllRadiosInOneRequest) {
    TempRoot root;
    prime(root);
    std::string before = stored(root, Sec::Wifi);
    wifi_config want;
    std::memcpy(&want, before.data(), sizeof want);
    std::string body;
    int variables = 0;
    auto send = [&](const std::string &name, const std::string &value) {
        body += (body.empty() ? "" : "&") + name + "=" + url_encode(value);
        ++variables;
    };
    for (int r = 0; r < 3; ++r) {
        wifi_radio &w = want.m_radio[r];
        const std::string R = std::to_string(r);
        int k = 10 * r; // distinct numbers per radio
        auto byte = [&](const char *name, uint8_t &m) {
            send(name + R, std::to_string(++k));
            m = uint8_t(k);
        };
        auto i16v = [&](const char *name, int16_t &m) {
            send(name + R, std::to_string(-1000 - ++k));
            m = int16_t(-1000 - k);
        };
        auto i32v = [&](const char *name, int32_t &m) {
            send(name + R, std::to_string(100000 + ++k));
            m = 100000 + k;
        };
        byte("m_radio_type", w.m_radio_type);
        byte("channel_limit_enable", w.channel_limit_enable);
        byte("m_wirelessmode", w.m_wirelessmode);
        byte("m_wirelessbwmode", w.m_wirelessbwmode);
        byte("m_ampduenable", w.m_ampduenable);
        byte("m_wlan_isolate", w.m_wlan_isolate);
        byte("m_wlan_rate", w.m_wlan_rate);
        i16v("m_wlan_beacon_interval", w.m_wlan_beacon_interval);
        i16v("m_wlan_rts", w.m_wlan_rts);
        i16v("m_wlan_frag", w.m_wlan_frag);
        i16v("m_wlan_shortGI", w.m_wlan_shortGI);
        i16v("m_wlan_txpower", w.m_wlan_txpower);
        i16v("m_wlan_max_txpower", w.m_wlan_max_txpower);
        i16v("m_channel", w.m_channel);
        i16v("m_channel_config", w.m_channel_config);
        i32v("m_acktimeout", w.m_acktimeout);
        i32v("m_wmm", w.m_wmm);
        i16v("m_rev_option", w.m_rev_option);
        i16v("m_coverage_threshold", w.m_coverage_threshold);
        i16v("m_MaxStanum", w.m_MaxStanum);
        send("contrystr" + R, "C" + R);
        std::memset(w.contrystr, 0, sizeof w.contrystr);
        std::memcpy(w.contrystr, ("C" + R).data(), 2);
        send("m_phyname" + R, "phy" + R);
        std::memset(w.m_phyname, 0, sizeof w.m_phyname);
        std::memcpy(w.m_phyname, ("phy" + R).data(), 4);
        byte("m_enable", w.m_enable);
        byte("m_phymode", w.m_phymode);
        i16v("m_dfs_enable", w.m_dfs_enable);
        for (int v = 0; v < 4; ++v) {
            wifi_vap &a = w.m_vap[v];
            const std::string RV = R + std::to_string(v);
            auto vbyte = [&](const char *name, uint8_t &m) {
                send(name + RV, std::to_string(++k));
                m = uint8_t(k);
            };
            auto vtext = [&](const char *name, char *m, size_t size) {
                std::string value = std::string(name).substr(2, 6) + "-" + RV;
                send(name + RV, value);
                std::memset(m, 0, size);
                std::memcpy(m, value.data(), value.size());
            };
            vbyte("m_wlan_enable", a.m_wlan_enable);
            vbyte("m_wlan_hide_ssid", a.m_wlan_hide_ssid);
            vtext("m_ssid", a.m_ssid, sizeof a.m_ssid);
            send("m_vlanid" + RV, std::to_string(100 + v));
            a.m_vlanid = int16_t(100 + v);
            vbyte("m_security", a.m_security);
            vbyte("m_securitycipher", a.m_securitycipher);
            vbyte("m_authmode", a.m_authmode);
            vbyte("m_wep_keytype", a.m_wep_keytype);
            vtext("m_wep_keystr", a.m_wep_keystr, sizeof a.m_wep_keystr);
            vbyte("m_psk_keytype", a.m_psk_keytype);
            vtext("m_psk_keystr", a.m_psk_keystr, sizeof a.m_psk_keystr);
            std::string ip = "10." + R + "." + std::to_string(v) + ".1";
            send("m_radius_serverip" + RV, ip);
            a.m_radius_serverip.v4 = inet_addr(ip.c_str());
            send("m_radius_serverport" + RV, std::to_string(1812 + v));
            a.m_radius_serverport = int16_t(1812 + v);
            vtext("m_radius_sharekey", a.m_radius_sharekey, sizeof a.m_radius_sharekey);
            vtext("m_bind_eth", a.m_bind_eth, sizeof a.m_bind_eth);
            send("m_mode" + RV, std::to_string(v));
            a.m_mode = v;
            vtext("m_ifname", a.m_ifname, sizeof a.m_ifname);
            vbyte("m_lockbssid", a.m_lockbssid);
            vbyte("m_vlan_tag_enable", a.m_vlan_tag_enable);
        }
    }
    ASSERT_EQ(variables, 303);
    auto r = wmtest::run_post(body, [](const form_pair *pairs, int n) {
        std::printf("pairs=%d rc=%d", n,
                    save_wifi_all_radio_config(SC_Get_SC_WiFi_Config(), pairs, n));
        return 0;
    });
    EXPECT_EQ(r.out, "pairs=303 rc=0");
    std::string got = stored(root, Sec::Wifi);
    std::string expected(reinterpret_cast<const char *>(&want), sizeof want);
    EXPECT_TRUE(got == expected) << first_difference(got, expected);
}

} // namespace
