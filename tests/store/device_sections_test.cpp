// The device-management sections: set by dotted name and read back by another process,
// their factory defaults, and the per-template operations of the AP-template list.
#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "store_test_util.h"

using namespace storetest;

namespace {

std::string wmconfig(const std::string &args, int *status = nullptr) {
    auto r =
        wmtest::run_shell(std::string(WEBMGMT_STORE_EMULATOR) + " '" WEBMGMT_WMCONFIG "' " + args);
    if (status) *status = r.exit_code();
    return r.out;
}

// One member of a section as wmconfig sets it, and how a getter of a new process sees it.
struct MemberCase {
    const char *section;
    const char *name;
    const char *value;
    bool (*seen)(); // reads the value through the section's getter
};

const MemberCase kMembers[] = {
    // The last account lies far beyond the rows a catalogue table holds.
    {"clients", "m_client[299].m_name", "last",
     [] { return std::strcmp(SC_Get_Clients_System_Config()->m_client[299].m_name, "last") == 0; }},
    {"clients", "m_sta_mark[7].mark", "desk",
     [] { return std::strcmp(SC_Get_Clients_System_Config()->m_sta_mark[7].mark, "desk") == 0; }},
    {"clients_groups", "m_group[9].m_id", "12",
     [] { return SC_Get_Clients_Groups_System_Config()->m_group[9].m_id == 12; }},
    {"manage_ap", "m_ap[0].m_conf.m_radio[2].m_channel", "149",
     [] {
         return SC_Get_ManageApList_System_Config()->m_ap[0].m_conf.m_radio[2].m_channel == 149;
     }},
    {"manage_ap", "m_ac_marker", "254",
     [] { return SC_Get_ManageApList_System_Config()->m_ac_marker == 254; }},
    {"ap_templates", "m_template[3].m_radio[1].m_vap[2].m_ssid", "lobby",
     [] {
         return std::strcmp(
                    SC_Get_ApTemplateList_System_Config()->m_template[3].m_radio[1].m_vap[2].m_ssid,
                    "lobby") == 0;
     }},
    {"ap_runtime", "m_ap[0].m_scan[1][63].m_signal", "-71",
     [] { return SC_Get_ApRuntime_System_Config()->m_ap[0].m_scan[1][63].m_signal == -71; }},
    {"ap_users", "m_local.m_sta[255].m_time", "86400",
     [] { return SC_Get_ApUser_System_Config()->m_local.m_sta[255].m_time == 86400; }},
    {"update", "m_dhcp_check[2].msg", "lease pool exhausted",
     [] {
         return std::strcmp(SC_Get_Update_System_Config()->m_dhcp_check[2].msg,
                            "lease pool exhausted") == 0;
     }},
};

class DeviceSections : public ::testing::Test {
  protected:
    wmtest::DefaultsRoot root; // the catalogue's own factory defaults
};

TEST_F(DeviceSections, SetByDottedNameIsSeenByANewProcess) {
    for (const MemberCase &c : kMembers) {
        SCOPED_TRACE(std::string(c.section) + " " + c.name);
        int status = -1;
        wmconfig(std::string("set --flash ") + c.section + " '" + c.name + "=" + c.value + "'",
                 &status);
        ASSERT_EQ(status, 0);
        EXPECT_EQ(in_new_process([&] { return c.seen() ? 0 : 1; }), 0);
        EXPECT_EQ(wmconfig(std::string("get ") + c.section + " '" + c.name + "'"),
                  std::string(c.value) + "\n");
    }
    // The flash copy holds the values: without the memory copies (a reboot) they remain.
    for (const char *s : {"clients", "manage_ap", "ap_templates", "update"})
        ASSERT_EQ(unlink(memory_copy(root, s).c_str()), 0) << s;
    for (const MemberCase &c : kMembers)
        EXPECT_EQ(in_new_process([&] { return c.seen() ? 0 : 1; }), 0) << c.name;
}

TEST_F(DeviceSections, FactoryDefaultsOfEverySection) {
    const struct {
        const char *section, *name, *value;
    } cases[] = {
        {"clients", "count", "0"},
        {"clients_groups", "count", "0"},
        {"manage_ap", "m_ac_marker", "0"},
        {"ap_templates", "count", "0"},
        {"ap_runtime", "count", "0"},
        {"ap_users", "count", "0"},
        {"update", "m_hour", "3"},
        {"update", "m_dhcp_check[2].id", "3"},
        {"update", "config_ver.main_version", "1"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(wmconfig(std::string("get ") + c.section + " '" + c.name + "'"),
                  std::string(c.value) + "\n")
            << c.section << " " << c.name;
    // A defaults file may name any member, however far down a large list it lies.
    std::string dir = defaults_dir(root);
    wmtest::write_file(dir + "/clients.conf", "m_client[0].m_id=5\nm_client[299].m_tel=\"555\"\n");
    // The section built from the old file was stored by the first get: back to the defaults.
    wmconfig("reset clients");
    EXPECT_EQ(in_new_process([] {
                  clients_config *c = SC_Get_Clients_System_Config();
                  return c->m_client[0].m_id == 5 && std::strcmp(c->m_client[299].m_tel, "555") == 0
                             ? 0
                             : 1;
              }),
              0);
}

ap_template_entry make_template(const char *name) {
    ap_template_entry t{};
    std::snprintf(t.m_wlan_group_name, sizeof t.m_wlan_group_name, "%s", name);
    return t;
}

TEST_F(DeviceSections, TemplateOperationsChangeOneTemplateOnly) {
    ap_template_list_config *list = SC_Get_ApTemplateList_System_Config();
    static ap_template_entry t; // 107 KB: kept off the stack
    for (int i = 0; i < WEBMGMT_AP_TEMPLATES; ++i) {
        t = make_template(("group" + std::to_string(i)).c_str());
        ASSERT_EQ(AddApTemplateItem(list, &t), CONFIG_OK);
        EXPECT_EQ(t.m_wlan_group_id, i + 1);
    }
    EXPECT_EQ(AddApTemplateItem(list, &t), CONFIG_ERR_FULL);
    t = make_template("renamed");
    t.m_wlan_group_id = 9;
    EXPECT_EQ(ModifyApTemplateItem(list, &t), CONFIG_ERR_NO_ID);
    t.m_wlan_group_id = 2;
    ASSERT_EQ(ModifyApTemplateItem(list, &t), CONFIG_OK);
    ASSERT_EQ(DelApTemplateItem(list, "1"), CONFIG_OK);
    EXPECT_EQ(list->count, 3); // the caller's record follows the stored list
    EXPECT_EQ(in_new_process([] {
                  const ap_template_list_config *l = SC_Get_ApTemplateList_System_Config();
                  return l->count == 3 && l->m_template[0].m_wlan_group_id == 2 &&
                                 std::strcmp(l->m_template[0].m_wlan_group_name, "renamed") == 0 &&
                                 std::strcmp(l->m_template[2].m_wlan_group_name, "group3") == 0
                             ? 0
                             : 1;
              }),
              0);
    ASSERT_EQ(DelAllApTemplateItem(), CONFIG_OK);
    EXPECT_EQ(in_new_process([] { return SC_Get_ApTemplateList_System_Config()->count; }), 0);
}

// Two programs edit different templates at the same time, each many times and each saving
// the whole section in between as a form would: neither loses the other's change.
TEST_F(DeviceSections, TwoProcessesEditingTwoTemplatesKeepBoth) {
    static ap_template_entry t;
    ap_template_list_config *list = SC_Get_ApTemplateList_System_Config();
    for (const char *name : {"left", "right"}) {
        t = make_template(name);
        ASSERT_EQ(AddApTemplateItem(list, &t), CONFIG_OK);
    }
    constexpr int kRounds = 25;
    std::vector<pid_t> children;
    for (int32_t id : {1, 2}) {
        pid_t pid = fork();
        if (pid == 0) {
            ap_template_list_config *mine = SC_Get_ApTemplateList_System_Config();
            for (int i = 1; i <= kRounds; ++i) {
                t = mine->m_template[id - 1];
                t.m_radio[0].m_channel = int16_t(id * 100 + i);
                if (ModifyApTemplateItem(mine, &t) != CONFIG_OK) _exit(1);
                if (SC_Save_System_ApTemplateList_Config2Flash(mine) != CONFIG_OK) _exit(2);
            }
            _exit(0);
        }
        children.push_back(pid);
    }
    for (pid_t pid : children) {
        int status = 0;
        waitpid(pid, &status, 0);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    }
    EXPECT_EQ(in_new_process([] {
                  const ap_template_list_config *l = SC_Get_ApTemplateList_System_Config();
                  return l->count == 2 && l->m_template[0].m_radio[0].m_channel == 100 + kRounds &&
                                 l->m_template[1].m_radio[0].m_channel == 200 + kRounds
                             ? 0
                             : 1;
              }),
              0);
    EXPECT_EQ(file_size(flash_copy(root, "ap_templates")), long(sizeof(ap_template_list_config)));
}

} // namespace
