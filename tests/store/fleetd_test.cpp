// The fleet stand-in: what it writes is what a fresh process reads through the store's own
// getters and lookups; the same seed writes the same fleet; a fleet beyond the store's
// maximum is refused; following, the online time advances, stations change and the AP goes
// offline for a round, and SIGTERM ends it cleanly.
#include <gtest/gtest.h>

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstring>
#include <thread>

#include "store_test_util.h"

using namespace storetest;

namespace {

class Fleetd : public ::testing::Test {
  protected:
    wmtest::ChildResult run(const std::string &args) {
        return wmtest::run_shell(std::string(WEBMGMT_STORE_EMULATOR) + " '" WEBMGMT_FLEETD "' " +
                                 args);
    }
    wmtest::DefaultsRoot root; // the catalogue's own factory defaults
};

// The stations in use in a table (an entry with signal 0 or a negative time is free).
int stations_in(const sta_table &t) {
    int n = 0;
    for (const sta_entry &s : t.m_sta)
        n += s.m_signal != 0 && s.m_time >= 0;
    return n;
}

TEST_F(Fleetd, WhatItWritesIsReadBackThroughTheStore) {
    auto r = run("--aps 1 --seed 5");
    ASSERT_EQ(r.exit_code(), 0) << r.err;
    EXPECT_EQ(in_new_process([] {
                  manage_ap_list_config *list = SC_Get_ManageApList_System_Config();
                  ap_runtime_config *rt = SC_Get_ApRuntime_System_Config();
                  ap_user_config *users = SC_Get_ApUser_System_Config();
                  ap_template_list_config *tpl = SC_Get_ApTemplateList_System_Config();
                  if (list->count != 1 || rt->count != 1 || users->count != 1) return 1;
                  const ap_device_record &ap = list->m_ap[0];
                  if (ap.m_id != 1 || ap.m_dev_status != 1) return 2;
                  if (std::strcmp(ap.m_dev_name, "ap-01") != 0) return 3;
                  if (ap.m_wlan_radio_num < 1 || ap.m_wlan_radio_num > WEBMGMT_AP_RADIOS) return 4;
                  // The lookups by MAC find this AP's entry and its station table.
                  if (SC_Get_Ap_Info_By_Mac(nullptr, ap.m_dev_mac.mac) != 0) return 5;
                  if (SC_Get_ApUser_Info_By_Mac(users, ap.m_dev_mac.mac) != 0) return 6;
                  if (std::memcmp(rt->m_ap[0].m_dev_mac.mac, ap.m_dev_mac.mac, 6) != 0) return 7;
                  // Stations: the table holds as many as the radios count.
                  int counted = 0;
                  for (const ap_radio &radio : ap.m_conf.m_radio)
                      counted += radio.m_stanum;
                  if (stations_in(users->m_ap[0]) != counted) return 8;
                  // Each radio's survey found neighbours on its band.
                  for (int radio = 0; radio < WEBMGMT_AP_RADIOS; ++radio) {
                      int found = 0;
                      for (const ap_scan_slot &s : rt->m_ap[0].m_scan[radio]) {
                          if (s.m_channel == 0 || s.m_signal == 0) continue;
                          ++found;
                          if ((radio == 0) != (s.m_channel <= 13)) return 9;
                          if (strnlen(s.m_name, sizeof s.m_name) == sizeof s.m_name) return 10;
                      }
                      if (found < 6) return 11;
                  }
                  // Two templates, the first bound to this AP.
                  if (tpl->count != 2 || tpl->m_template[0].m_wlan_group_id != 1) return 12;
                  if (std::memcmp(tpl->m_template[0].m_bind_mac.mac, ap.m_dev_mac.mac, 6) != 0)
                      return 13;
                  return 0;
              }),
              0);
}

TEST_F(Fleetd, TheSameSeedWritesTheSameFleet) {
    ASSERT_EQ(run("--aps 1 --seed 11").exit_code(), 0);
    std::string first = wmtest::read_file(memory_copy(root, "manage_ap"));
    std::string scans = wmtest::read_file(memory_copy(root, "ap_runtime"));
    ASSERT_EQ(run("--aps 1 --seed 11").exit_code(), 0);
    EXPECT_EQ(wmtest::read_file(memory_copy(root, "manage_ap")), first);
    EXPECT_EQ(wmtest::read_file(memory_copy(root, "ap_runtime")), scans);
    ASSERT_EQ(run("--aps 1 --seed 12").exit_code(), 0);
    EXPECT_NE(wmtest::read_file(memory_copy(root, "manage_ap")), first);
}

TEST_F(Fleetd, AnEmptyFleetAndRefusals) {
    ASSERT_EQ(run("--aps 1").exit_code(), 0);
    ASSERT_EQ(run("--aps 0").exit_code(), 0);
    EXPECT_EQ(in_new_process([] {
                  manage_ap_list_config *list = SC_Get_ManageApList_System_Config();
                  return list->count == 0 && list->m_ap[0].m_id == 0 ? 0 : 1;
              }),
              0);
    const std::string before = wmtest::read_file(memory_copy(root, "manage_ap"));
    for (const char *bad :
         {"--aps 2", "--aps -1", "--aps x", "--aps", "--interval-ms 0", "--what"}) {
        auto r = run(bad);
        EXPECT_EQ(r.exit_code(), 2) << bad;
        EXPECT_NE(r.err.find("usage: fleetd"), std::string::npos) << bad;
    }
    EXPECT_EQ(wmtest::read_file(memory_copy(root, "manage_ap")), before);
}

TEST_F(Fleetd, TemplatesSomeoneMadeAreKept) {
    ASSERT_EQ(run("--aps 1").exit_code(), 0);
    ASSERT_EQ(in_new_process([] {
                  ap_template_list_config *t = SC_Get_ApTemplateList_System_Config();
                  std::snprintf(t->m_template[0].m_wlan_group_name,
                                sizeof t->m_template[0].m_wlan_group_name, "renamed");
                  return SC_Save_System_ApTemplateList_Config(t);
              }),
              0);
    ASSERT_EQ(run("--aps 1 --seed 4").exit_code(), 0);
    EXPECT_EQ(in_new_process([] {
                  ap_template_list_config *t = SC_Get_ApTemplateList_System_Config();
                  return std::strcmp(t->m_template[0].m_wlan_group_name, "renamed") == 0 ? 0 : 1;
              }),
              0);
}

struct Snapshot {
    uint32_t online;
    int status;
};
Snapshot snapshot() {
    Snapshot s{};
    std::string out = wmtest::output_of([] {
        manage_ap_list_config *list = SC_Get_ManageApList_System_Config();
        std::printf("%u %d", list->m_ap[0].m_onlinetime, list->m_ap[0].m_dev_status);
    });
    std::sscanf(out.c_str(), "%u %d", &s.online, &s.status);
    return s;
}

TEST_F(Fleetd, FollowingKeepsTheFleetChangingUntilTerminated) {
    ASSERT_EQ(run("--aps 1 --seed 3").exit_code(), 0);
    const Snapshot start = snapshot();
    pid_t pid = fork();
    ASSERT_GE(pid, 0);
    if (pid == 0) {
        // Through the emulator on a cross build; exec keeps the pid the test signals.
        const std::string command = "exec " + std::string(WEBMGMT_STORE_EMULATOR) +
                                    " '" WEBMGMT_FLEETD "' --aps 1 --seed 3 --follow "
                                    "--interval-ms 20 --offline-every 3";
        execl("/bin/sh", "sh", "-c", command.c_str(), static_cast<char *>(nullptr));
        _exit(127);
    }
    // Watched until both changes were seen: each fresh process reads one whole saved record.
    bool advanced = false, offline = false;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(120);
    while (!(advanced && offline) && std::chrono::steady_clock::now() < deadline) {
        Snapshot s = snapshot();
        advanced = advanced || (s.status == 1 && s.online > start.online);
        offline = offline || (s.status == 0 && s.online == 0);
        std::this_thread::sleep_for(std::chrono::milliseconds(5)); // polling, not ordering
    }
    kill(pid, SIGTERM);
    int status = 0;
    ASSERT_EQ(waitpid(pid, &status, 0), pid);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    EXPECT_TRUE(advanced);
    EXPECT_TRUE(offline);
}

} // namespace
