// Section files: factory defaults, memory and flash copies, reboot, reset, bad files.
#include <arpa/inet.h>
#include <cstring>
#include <gtest/gtest.h>

#include "store_test_util.h"

using namespace storetest;
using wmtest::TempRoot;

namespace {

class Sections : public ::testing::Test {
  protected:
    void SetUp() override {
        std::string dir = defaults_dir(root);
        wmtest::write_file(dir + "/lan.conf", "# factory LAN\nipaddr=10.1.2.3\n"
                                              "lan_name=\"office\"\nstp=1\n");
    }
    void TearDown() override { unsetenv("WEBMGMT_DEFAULTS_DIR"); }
    TempRoot root;
};

// What a new process finds in the LAN section: its stp switch, or -1 without a record.
int stored_stp() {
    return in_new_process([] {
        lan_config *lan = SC_Get_Lan_System_Config();
        return lan ? int(lan->stp) : 100;
    });
}

TEST_F(Sections, FactoryDefaultsComeFromTheDefaultsFileWithVersionAndLockFile) {
    lan_config *lan = SC_Get_Lan_System_Config();
    ASSERT_NE(lan, nullptr);
    EXPECT_EQ(lan->ipaddr.v4, inet_addr("10.1.2.3"));
    EXPECT_STREQ(lan->lan_name, "office");
    EXPECT_EQ(lan->config_ver.main_version, 1);
    EXPECT_EQ(lan->config_ver.sub_version, 0);
    EXPECT_EQ(std::string(lan->lock_file), root.path("/var/config/lan.lock"));
    // The section built from the defaults is stored in memory, byte for byte, so that the
    // next process reads it; the flash copy is left to the savers. The same record comes
    // back for the rest of the process.
    EXPECT_EQ(wmtest::read_file(memory_copy(root, "lan")),
              std::string(reinterpret_cast<const char *>(lan), sizeof *lan));
    EXPECT_FALSE(wmtest::file_exists(flash_copy(root, "lan")));
    EXPECT_EQ(SC_Get_Lan_System_Config(), lan);
    // The store's own records start from zeros, versioned all the same.
    clients_config *clients = SC_Get_Clients_System_Config();
    ASSERT_NE(clients, nullptr);
    EXPECT_EQ(clients->count, 0);
    EXPECT_EQ(clients->config_ver.main_version, 1);
}

// A section with no stored copy is built once: later processes read what the first stored,
// even when the defaults file changes behind it, until a reset.
TEST_F(Sections, TheSectionBuiltFromTheDefaultsIsReadByTheNextProcess) {
    EXPECT_EQ(stored_stp(), 1);
    std::string defaults = wmtest::read_file(defaults_dir(root) + "/lan.conf");
    wmtest::write_file(defaults_dir(root) + "/lan.conf", defaults + "stp=0\n");
    EXPECT_EQ(stored_stp(), 1);
    EXPECT_EQ(in_new_process([] { return SC_Reset_Config("lan"); }), CONFIG_OK);
    EXPECT_EQ(stored_stp(), 0);
}

TEST_F(Sections, SaversRebootAndReset) {
    lan_config *lan = SC_Get_Lan_System_Config();
    lan->stp = 7;
    ASSERT_EQ(SC_Save_System_Lan_Config2Flash(lan), CONFIG_OK);
    EXPECT_EQ(file_size(memory_copy(root, "lan")), long(sizeof(lan_config)));
    EXPECT_EQ(file_size(flash_copy(root, "lan")), long(sizeof(lan_config)));

    lan->stp = 8;
    ASSERT_EQ(SC_Save_System_Lan_Config(lan), CONFIG_OK);
    EXPECT_EQ(stored_stp(), 8);

    wmtest::run_shell("rm -rf '" + root.path("/var/config") + "'"); // reboot
    EXPECT_EQ(stored_stp(), 7);

    ASSERT_EQ(SC_Reset_Config("lan"), CONFIG_OK);
    EXPECT_FALSE(wmtest::file_exists(flash_copy(root, "lan")));
    EXPECT_EQ(stored_stp(), 1); // the defaults file's value

    // Resetting all returns every section to its defaults.
    SC_Get_Misc_System_Config()->enable_telnet = 1;
    ASSERT_EQ(SC_Save_System_Misc_Config2Flash(SC_Get_Misc_System_Config()), CONFIG_OK);
    SC_Get_Update_System_Config()->m_hour = 3;
    ASSERT_EQ(SC_Save_System_Update_Config(SC_Get_Update_System_Config()), CONFIG_OK);
    ASSERT_EQ(SC_Reset_Config("all"), CONFIG_OK);
    EXPECT_EQ(in_new_process([] {
                  return SC_Get_Misc_System_Config()->enable_telnet * 10 +
                         SC_Get_Update_System_Config()->m_hour;
              }),
              0);
    EXPECT_EQ(SC_Reset_Config("nosuchsection"), CONFIG_ERR_ARGUMENT);
}

TEST_F(Sections, AFileOfTheWrongSizeIsRefusedAndTheNextCopyUsed) {
    lan_config *lan = SC_Get_Lan_System_Config();
    lan->stp = 5;
    ASSERT_EQ(SC_Save_System_Lan_Config2Flash(lan), CONFIG_OK);
    std::string whole = wmtest::read_file(flash_copy(root, "lan"));
    struct Case {
        const char *what;
        std::string memory; // the bad memory copy
        bool keep_flash;
        int expected_stp;
    } cases[] = {
        {"truncated", whole.substr(0, whole.size() - 1), true, 5},
        {"one byte long", whole + "x", true, 5},
        {"empty", "", true, 5},
        {"an older, smaller layout", whole.substr(0, 4096), false, 1},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.what);
        wmtest::write_file(memory_copy(root, "lan"), c.memory);
        if (!c.keep_flash) unlink(flash_copy(root, "lan").c_str());
        auto r = wmtest::run_in_child([] { return int(SC_Get_Lan_System_Config()->stp); });
        EXPECT_EQ(r.exit_code(), c.expected_stp);
        EXPECT_NE(r.err.find(memory_copy(root, "lan")), std::string::npos) << r.err;
        EXPECT_NE(r.err.find("ignored"), std::string::npos) << r.err;
    }
}

TEST_F(Sections, AProcessKeepsTheRecordItLoaded) {
    lan_config *lan = SC_Get_Lan_System_Config();
    ASSERT_EQ(in_new_process([] {
                  lan_config *other = SC_Get_Lan_System_Config();
                  other->stp = 9;
                  return SC_Save_System_Lan_Config(other);
              }),
              0);
    EXPECT_EQ(SC_Get_Lan_System_Config(), lan);
    EXPECT_EQ(lan->stp, 1);
    EXPECT_EQ(stored_stp(), 9);
    // A forked child that changes and saves the record it inherited stores its change.
    ASSERT_EQ(in_new_process([lan] {
                  lan->stp = 4;
                  return SC_Save_System_Lan_Config(lan) + (lan->stp != 4);
              }),
              0);
    EXPECT_EQ(stored_stp(), 4);
}

TEST_F(Sections, MaintenanceCallsKnowEverySectionByName) {
    int n = 0;
    for (; SC_Config_Section_Name(n); ++n) {
        uint32_t size = 0;
        EXPECT_NE(SC_Get_Config_By_Name(SC_Config_Section_Name(n), &size), nullptr);
        EXPECT_GT(size, 0u);
    }
    EXPECT_EQ(n, 21);
    uint32_t size = 0;
    EXPECT_EQ(SC_Get_Config_By_Name("ap_templates", &size), SC_Get_ApTemplateList_System_Config());
    EXPECT_EQ(size, 144u + 4u * 107440u);
    EXPECT_EQ(SC_Get_Config_By_Name("nosuch", &size), nullptr);
    EXPECT_EQ(SC_Save_Config_By_Name("nosuch", &size, 0), CONFIG_ERR_ARGUMENT);
}

} // namespace
