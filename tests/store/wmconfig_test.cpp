// The wmconfig tool: set by dotted name, read back through the getters in another process;
// show, reset, refusals.
#include <arpa/inet.h>
#include <cstring>
#include <gtest/gtest.h>

#include "store_test_util.h"

using namespace storetest;

namespace {

class Wmconfig : public ::testing::Test {
  protected:
    wmtest::ChildResult run(const std::string &args) {
        return wmtest::run_shell(std::string(WEBMGMT_STORE_EMULATOR) + " '" WEBMGMT_WMCONFIG "' " +
                                 args);
    }
    wmtest::DefaultsRoot root; // the catalogue's own factory defaults
};

TEST_F(Wmconfig, SetByDottedNameIsSeenByTheGetterOfAnotherProcess) {
    auto r = run("set --flash lan ipaddr=10.9.8.7 'lan_name=back office' "
                 "'dhcp_server_bindlist.element[1].mark=printer' "
                 "m_iptv.m_vlanid=42");
    ASSERT_EQ(r.exit_code(), 0) << r.err;
    EXPECT_EQ(in_new_process([] {
                  lan_config *lan = SC_Get_Lan_System_Config();
                  int bad = 0;
                  bad |= (lan->ipaddr.v4 != inet_addr("10.9.8.7")) << 0;
                  bad |= (std::strcmp(lan->lan_name, "back office") != 0) << 1;
                  bad |= (std::strcmp(lan->dhcp_server_bindlist.element[1].mark, "printer") != 0)
                         << 2;
                  bad |= (lan->m_iptv.m_vlanid != 42) << 3;
                  return bad;
              }),
              0);
    EXPECT_TRUE(wmtest::file_exists(flash_copy(root, "lan")));

    r = run("show lan ipaddr lan_name m_iptv.m_vlanid");
    EXPECT_EQ(r.out, "lan_name=back office\nipaddr=10.9.8.7\nm_iptv.m_vlanid=42\n");

    // Without --flash only the memory copy changes: a reboot brings the flash value back.
    ASSERT_EQ(run("set wifi 'm_radio[0].m_vap[0].m_ssid=guest'").exit_code(), 0);
    EXPECT_FALSE(wmtest::file_exists(flash_copy(root, "wifi")));
    EXPECT_EQ(run("show wifi 'm_radio[0].m_vap[0].m_ssid'").out,
              "m_radio[0].m_vap[0].m_ssid=guest\n");
}

TEST_F(Wmconfig, ResetBringsBackTheFactoryDefaults) {
    std::string factory = run("show lan ipaddr").out;
    ASSERT_NE(factory, "");
    ASSERT_EQ(run("set --flash lan ipaddr=10.0.0.1").exit_code(), 0);
    EXPECT_EQ(run("show lan ipaddr").out, "ipaddr=10.0.0.1\n");
    ASSERT_EQ(run("reset all").exit_code(), 0);
    EXPECT_EQ(run("show lan ipaddr").out, factory);
    EXPECT_FALSE(wmtest::file_exists(flash_copy(root, "lan")));
    // With --flash the defaults are written to both copies at once.
    ASSERT_EQ(run("reset all --flash").exit_code(), 0);
    EXPECT_EQ(file_size(flash_copy(root, "lan")), long(sizeof(lan_config)));
    EXPECT_EQ(file_size(flash_copy(root, "ap_templates")), long(sizeof(ap_template_list_config)));
    EXPECT_EQ("ipaddr=" + run("get lan ipaddr").out, factory);
}

TEST_F(Wmconfig, RefusesWhatItDoesNotKnow) {
    struct Case {
        const char *args;
        int status;
        const char *message;
    } cases[] = {
        {"set lan nosuchmember=1", 1, "lan has no member nosuchmember"},
        {"get lan nosuchmember", 1, "lan has no member nosuchmember"},
        {"show nosuchsection", 1, "no section nosuchsection"},
        {"reset nosuchsection", 1, "resetting nosuchsection failed"},
        {"set lan", 2, "usage"},
        {"", 2, "usage"},
    };
    const std::string factory = run("show lan").out;
    for (const Case &c : cases) {
        SCOPED_TRACE(c.args);
        auto r = run(c.args);
        EXPECT_EQ(r.exit_code(), c.status);
        EXPECT_NE(r.err.find(c.message), std::string::npos) << r.err;
    }
    // Nothing was changed: lan still holds its factory settings, and only in memory.
    EXPECT_EQ(run("show lan").out, factory);
    EXPECT_FALSE(wmtest::file_exists(flash_copy(root, "lan")));
    auto sections = run("sections");
    EXPECT_NE(sections.out.find("\nwifi\n"), std::string::npos);
    EXPECT_NE(sections.out.find("\nap_templates\n"), std::string::npos);
}

} // namespace
