// The console's settings programs (system.cgi, wireless.cgi) run as a web server runs them:
// a CGI environment, the body on standard input, a private device tree with a session table.
// Checked: every refusal names its field and stores nothing (the store's flash copies are
// compared byte for byte), valid values reach the store, and a password change stores the
// digest (compared with sha256sum's) and ends every other session.
#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

#include "store/config_data_api.h"
#include "support/harness.h"

namespace {

const char kClient[] = "10.0.0.1";
const char kToken[] = "AbCdEfGhIjKlMnOp";

std::string program(const std::string &name) {
    const char *bin = std::getenv("WEBMGMT_BIN_DIR");
    std::string dir = bin ? bin : wmtest::binary_dir();
    return dir + "/examples/cgi-bin/" + name;
}

// A tree with the factory defaults in flash, the session lock file and three sessions:
// this client's and two others'.
struct Device {
    wmtest::DefaultsRoot root;
    Device() {
        // A cross build's programs cannot be started from its tests (the emulator runs the
        // test, not the programs it starts): they run in the host build.
        std::string path = program("system.cgi");
        auto probe = wmtest::run_in_child([&] {
            execl(path.c_str(), path.c_str(), static_cast<char *>(nullptr));
            return 127;
        });
        skip = probe.exit_code() == 127 && probe.out.empty();
        wmtest::write_file(root.path("/var/loginlock"), "");
        long now = long(std::time(nullptr));
        wmtest::write_file(root.path("/var/usertoken"),
                           std::string(kClient) + " " + kToken + " " + std::to_string(now) + "\n" +
                               "10.0.0.2 OtherTokenNumber2 " + std::to_string(now) + "\n" +
                               "10.0.0.3 OtherTokenNumber3 " + std::to_string(now) + "\n");
        auto r = wmtest::run_in_child([] {
            int rc = SC_Save_System_Misc_Config2Flash(SC_Get_Misc_System_Config()) |
                     SC_Save_SC_WiFi_Config2Flash(SC_Get_SC_WiFi_Config()) |
                     SC_Save_System_ProductInfo_Config2Flash(SC_Get_ProductInfo_System_Config());
            return rc == CONFIG_OK ? 0 : 1;
        });
        EXPECT_EQ(r.exit_code(), 0);
    }
    bool skip = false;
    std::string flash(const char *section) const {
        return wmtest::read_file(root.path(std::string("/etc/config_flash/") + section + ".bin"));
    }
    std::string sessions() const { return wmtest::read_file(root.path("/var/usertoken")); }
};

struct Answer {
    int status = 0;
    std::string body;
};

// POSTs `body` to the program as this client, with its session token (or sends `method`).
Answer post(const std::string &name, const std::string &body, const char *method = "POST") {
    std::string path = program(name);
    auto r = wmtest::run_in_child(
        [&] {
            setenv("REQUEST_METHOD", method, 1);
            setenv("CONTENT_TYPE", "application/x-www-form-urlencoded", 1);
            setenv("CONTENT_LENGTH", std::to_string(body.size()).c_str(), 1);
            setenv("REMOTE_ADDR", kClient, 1);
            setenv("QUERY_STRING", (std::string("stork=") + kToken).c_str(), 1);
            setenv("HTTP_COOKIE", (std::string("stork=") + kToken).c_str(), 1);
            execl(path.c_str(), path.c_str(), static_cast<char *>(nullptr));
            return 127;
        },
        body);
    Answer a;
    size_t at = r.out.find("Status: ");
    if (at != std::string::npos) a.status = std::atoi(r.out.c_str() + at + 8);
    size_t start = r.out.find("\r\n\r\n");
    if (start != std::string::npos) a.body = r.out.substr(start + 4);
    return a;
}

std::string sha256_hex(const std::string &text) {
    auto r = wmtest::run_shell("sha256sum", text);
    return r.out.substr(0, 64);
}

struct Refusal {
    const char *program;
    std::string body;
    const char *field;
};

// Values the programs refuse; each leaves every flash copy as it was.
std::vector<Refusal> refusals() {
    std::string ssid33(33, 's');
    return {
        {"system.cgi", "form=user&oldpwd=wrong&rootpwd=Valid-pass1&rootpwd2=Valid-pass1", "oldpwd"},
        {"system.cgi", "form=user&oldpwd=admin&rootpwd=short&rootpwd2=short", "rootpwd"},
        {"system.cgi", "form=user&oldpwd=admin&rootpwd=Valid-pass1&rootpwd2=Valid-pass2",
         "rootpwd2"},
        {"system.cgi", "form=user&oldpwd=admin&rootname=", "rootname"},
        {"system.cgi", "form=user&oldpwd=admin&rootname=a%20b", "rootname"},
        {"system.cgi", "form=user&oldpwd=admin&userpwd=" + std::string(64, 'p'), "userpwd"},
        {"system.cgi", "form=actimer&sys_ac_discovery_timeout=0", "sys_ac_discovery_timeout"},
        {"system.cgi", "form=actimer&sys_ac_echo_interval=256", "sys_ac_echo_interval"},
        {"system.cgi", "form=dmz&dmz_enable=1&dmz_host=", "dmz_host"},
        {"system.cgi", "form=dmz&dmz_enable=1&dmz_host=192.168.1.300", "dmz_host"},
        {"system.cgi", "form=dmz&dmz_enable=2", "dmz_enable"},
        {"system.cgi", "form=nat&enable=yes", "enable"},
        {"system.cgi", "form=kvr&m_kvr_2g_rssi_thr=-101", "m_kvr_2g_rssi_thr"},
        {"system.cgi", "form=kvr&m_kvr_5g_rssi_thr=70000", "m_kvr_5g_rssi_thr"},
        {"system.cgi", "form=ddns&enable=1&domain=", "domain"},
        {"system.cgi", "form=ddns&user=" + std::string(100, 'u'), "user"},
        {"system.cgi", "form=ddns&usertype=9", "usertype"},
        {"system.cgi", "form=log&remote_log_enable=1&remote_log_server_host=a;b",
         "remote_log_server_host"},
        {"system.cgi", "form=ntp&ntp_tz=UTC%200", "ntp_tz"},
        {"system.cgi", "form=ntp&enable=1&ntp_server_addr=" + std::string(128, 'n'),
         "ntp_server_addr"},
        {"system.cgi", "form=remote&remote_port=0", "remote_port"},
        {"system.cgi", "form=remote&remote_port=65536", "remote_port"},
        {"system.cgi", "form=timereboot&m_TimeReboot_Hour=24", "m_TimeReboot_Hour"},
        {"system.cgi", "form=timereboot&m_TimeReboot_Hour=-1", "m_TimeReboot_Hour"},
        {"system.cgi", "form=timereboot&m_TimeReboot_Day=32", "m_TimeReboot_Day"},
        {"system.cgi", "form=product&device_name=", "device_name"},
        {"system.cgi", "form=product&default_language=fr", "default_language"},
        {"wireless.cgi", "form=radio&radio=2&m_ssid20=x", "radio"},
        {"wireless.cgi", "form=radio&radio=3", "radio"},
        {"wireless.cgi", "form=radio&radio=0&m_wlan_enable00=1&m_ssid00=" + ssid33, "m_ssid00"},
        {"wireless.cgi", "form=radio&radio=0&m_wlan_enable01=1&m_ssid01=", "m_ssid01"},
        {"wireless.cgi", "form=radio&radio=0&m_ssid00=ok&m_security00=6&m_psk_keystr00=1234567",
         "m_psk_keystr00"},
        {"wireless.cgi", "form=radio&radio=0&m_security00=6&m_psk_keystr00=" + std::string(64, 'k'),
         "m_psk_keystr00"},
        {"wireless.cgi", "form=radio&radio=1&m_security12=1&m_wep_keystr12=1234", "m_wep_keystr12"},
        {"wireless.cgi", "form=radio&radio=1&m_security13=8&m_radius_serverip13=radius",
         "m_radius_serverip13"},
        {"wireless.cgi", "form=radio&radio=0&m_security00=5", "m_security00"},
        {"wireless.cgi", "form=radio&radio=0&m_channel0=14", "m_channel0"},
        {"wireless.cgi", "form=radio&radio=1&m_channel1=6", "m_channel1"},
        {"wireless.cgi", "form=radio&radio=1&m_channel1=150", "m_channel1"},
        {"wireless.cgi", "form=radio&radio=0&m_wirelessbwmode0=2", "m_wirelessbwmode0"},
        {"wireless.cgi", "form=radio&radio=0&m_wlan_txpower0=31", "m_wlan_txpower0"},
        {"wireless.cgi", "form=radio&radio=0&contrystr0=XX", "contrystr0"},
        {"wireless.cgi", "form=radio&radio=0&m_vlanid02=4095", "m_vlanid02"},
        {"wireless.cgi", "form=repeater&radio=0&m_wlan_enable=1&m_ssid=", "m_ssid"},
        {"wireless.cgi", "form=repeater&radio=0&m_security=8", "m_security"},
        {"wireless.cgi", "form=repeater&radio=0&m_bssid=00:11:22:33:44:5G", "m_bssid"},
        {"wireless.cgi", "form=timeclose&m_start_time=24:00", "m_start_time"},
        {"wireless.cgi", "form=timeclose&m_end_time=7:30", "m_end_time"},
    };
}

TEST(SettingsPrograms, RefusalsNameTheFieldAndStoreNothing) {
    Device device;
    if (device.skip) GTEST_SKIP() << "the console programs run in the host build";
    std::string misc = device.flash("misc"), wifi = device.flash("wifi"),
                product = device.flash("productinfo");
    for (const Refusal &r : refusals()) {
        SCOPED_TRACE(std::string(r.program) + " " + r.body.substr(0, 80));
        Answer a = post(r.program, r.body);
        EXPECT_EQ(a.status, 400) << a.body;
        EXPECT_NE(a.body.find(std::string("\"field\":\"") + r.field + "\""), std::string::npos)
            << a.body;
    }
    EXPECT_TRUE(device.flash("misc") == misc);
    EXPECT_TRUE(device.flash("wifi") == wifi);
    EXPECT_TRUE(device.flash("productinfo") == product);
    EXPECT_NE(device.sessions().find("10.0.0.2"), std::string::npos) << "no session ended";
}

// Valid requests reach the store; the flash copy holds the values afterwards.
TEST(SettingsPrograms, ValidValuesAreStored) {
    Device device;
    if (device.skip) GTEST_SKIP() << "the console programs run in the host build";
    struct Case {
        const char *program;
        std::string body;
        std::string stored; // bytes the section's flash copy must hold afterwards
        const char *section;
    };
    std::vector<Case> cases = {
        {"system.cgi", "form=dmz&dmz_enable=1&dmz_host=192.168.1.77", "192.168.1.77", "misc"},
        {"system.cgi", "form=ntp&enable=1&ntp_tz=UTC-8&ntp_server_addr=ntp.example.org",
         "ntp.example.org", "misc"},
        {"system.cgi",
         "form=ddns&enable=1&usertype=1&user=me&pwd=ddns-secret&domain=me.example.net",
         "me.example.net", "misc"},
        {"system.cgi", "form=remote&enable_web=1&remote_port=8443", "router.remote", "misc"},
        {"system.cgi", "form=product&device_name=Lobby%20AP&device_position=Hall", "Lobby AP",
         "productinfo"},
        {"wireless.cgi",
         "form=radio&radio=1&m_channel1=36&m_wirelessbwmode1=2&m_wlan_enable12=1&m_ssid12=Guest-5"
         "&m_security12=6&m_psk_keystr12=" +
             std::string(64, 'a'),
         "Guest-5", "wifi"},
        {"wireless.cgi", "form=repeater&radio=1&m_wlan_enable=1&m_ssid=Upstream&m_security=0",
         "Upstream", "wifi"},
        {"wireless.cgi", "form=timeclose&m_enable=1&m_start_time=23:30&m_end_time=06:15", "06:15",
         "wifi"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.body.substr(0, 80));
        Answer a = post(c.program, c.body);
        EXPECT_EQ(a.status, 200) << a.body;
        EXPECT_EQ(a.body, "{\"result\":0}\n");
        EXPECT_NE(device.flash(c.section).find(c.stored), std::string::npos);
    }
    // The DDNS password is not shown back, only whether one is stored.
    Answer shown = post("system.cgi", "", "GET");
    EXPECT_EQ(shown.status, 200) << shown.body;
    EXPECT_EQ(shown.body.find("ddns-secret"), std::string::npos);
    EXPECT_NE(shown.body.find("\"pwd_set\":\"1\""), std::string::npos) << shown.body;
}

// A password change stores the digest that sha256sum computes, never the password, and
// leaves only this browser's session.
TEST(SettingsPrograms, PasswordChangeStoresTheDigestAndEndsOtherSessions) {
    Device device;
    if (device.skip) GTEST_SKIP() << "the console programs run in the host build";
    const std::string password = "Brand new 9";
    Answer a = post("system.cgi", "form=user&oldpwd=admin&rootname=admin&rootpwd=Brand+new+9"
                                  "&rootpwd2=Brand+new+9&username=&userpwd=");
    EXPECT_EQ(a.status, 200) << a.body;
    std::string misc = device.flash("misc");
    std::string digest = sha256_hex(password);
    ASSERT_EQ(digest.size(), 64u);
    EXPECT_NE(misc.find(digest), std::string::npos);
    EXPECT_EQ(misc.find(password), std::string::npos);
    std::string sessions = device.sessions();
    EXPECT_EQ(sessions.find("10.0.0.2"), std::string::npos) << sessions;
    EXPECT_EQ(sessions.find("10.0.0.3"), std::string::npos) << sessions;
    EXPECT_EQ(sessions.find(std::string(kClient) + " " + kToken), 0u) << sessions;
    // The old password no longer opens the account form; the new one does.
    EXPECT_EQ(post("system.cgi", "form=user&oldpwd=admin").status, 400);
    EXPECT_EQ(post("system.cgi", "form=user&oldpwd=Brand+new+9").status, 200);
}

} // namespace
