// The access-list form holds the list's lock around its name check and its store: two
// processes adding the same name at once store it once, and the other is told 10.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdio>

#include "store/config_data_api.h"
#include "support/harness.h"

using wmtest::TempRoot;

namespace {

int add_entry(const char *name_value, const char *mac_value) {
    char n[] = "name", m[] = "mac";
    form_pair pairs[] = {{n, const_cast<char *>(name_value)}, {m, const_cast<char *>(mac_value)}};
    return save_wifi_acl_config(0, pairs, 2, 0);
}

// The add waits while another process holds the access-list lock.
TEST(AclLock, AddWaitsForTheLock) {
    TempRoot root;
    EXPECT_EQ(wmtest::result_after_lock_wait(root.path("/var/wifi_acl.lock"),
                                             [] { return add_entry("cam", "00:00:00:00:00:01"); }),
              0);
}

// Both processes are released together; whichever takes the lock first stores the name,
// the other then finds it.
TEST(AclLock, SameNameFromTwoProcessesIsStoredOnce) {
    TempRoot root;
    auto adder = [](const char *mac) {
        return
            [mac](const std::function<bool()> &go) { return go() ? add_entry("same", mac) : -1; };
    };
    auto [ra, rb] = wmtest::run_together(adder("00:00:00:00:00:0A"), adder("00:00:00:00:00:0B"));
    EXPECT_TRUE((ra == 0 && rb == 10) || (ra == 10 && rb == 0)) << ra << " " << rb;
    EXPECT_EQ(wmtest::output_of([] {
                  const wifi_acllist &l = SC_Get_SC_WiFi_Config()->m_radio[0].m_acllist;
                  std::printf("%d", l.count);
                  for (const acl_entry &e : l.element)
                      if (e.id > 0) std::printf(" %d:%s", e.id, e.name);
              }),
              "1 1:same");
    struct stat st {};
    ASSERT_EQ(stat(root.path("/var/config/wifi.bin").c_str(), &st), 0);
    EXPECT_EQ(st.st_size, off_t(sizeof(wifi_config)));
}

} // namespace
