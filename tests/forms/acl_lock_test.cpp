// The access-list form holds the list's lock around its name check and its store: two
// processes adding the same name at once store it once, and the other is told 10.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <fstream>
#include <sstream>
#include <string>

#include "store/config_data_api.h"
#include "support/harness.h"

using wmtest::Child;
using wmtest::finish_child;
using wmtest::start_child;
using wmtest::TempRoot;
using wmtest::waiting_for_lock;

namespace {

int add_entry(const char *name_value, const char *mac_value) {
    char n[] = "name", m[] = "mac";
    form_pair pairs[] = {{n, const_cast<char *>(name_value)}, {m, const_cast<char *>(mac_value)}};
    return save_wifi_acl_config(0, pairs, 2, 0);
}

// The add waits while another process holds the access-list lock.
TEST(AclLock, AddWaitsForTheLock) {
    TempRoot root;
    int fd = open(root.path("/var/wifi_acl.lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    ASSERT_GE(fd, 0);
    struct flock fl {};
    fl.l_type = F_WRLCK;
    fl.l_whence = SEEK_SET;
    ASSERT_EQ(fcntl(fd, F_SETLKW, &fl), 0);
    Child adder = start_child([] { return add_entry("cam", "00:00:00:00:00:01"); });
    bool seen = false;
    for (long spins = 0; spins < 100000000 && !seen; ++spins) {
        seen = waiting_for_lock(adder.pid);
        int status;
        if (!seen && waitpid(adder.pid, &status, WNOHANG) == adder.pid)
            FAIL() << "the add finished while the list was locked";
        sched_yield();
    }
    EXPECT_TRUE(seen);
    fl.l_type = F_UNLCK;
    ASSERT_EQ(fcntl(fd, F_SETLK, &fl), 0);
    close(fd);
    EXPECT_EQ(finish_child(adder), 0);
}

// Both processes are released together; whichever takes the lock first stores the name,
// the other then finds it.
TEST(AclLock, SameNameFromTwoProcessesIsStoredOnce) {
    TempRoot root;
    int ready[2], go[2];
    ASSERT_EQ(pipe(ready), 0);
    ASSERT_EQ(pipe(go), 0);
    auto adder = [&](const char *mac) {
        close(ready[0]);
        close(go[1]);
        char byte = 'r';
        if (write(ready[1], &byte, 1) != 1 || read(go[0], &byte, 1) != 1) return -1;
        return add_entry("same", mac);
    };
    Child a = start_child([&] { return adder("00:00:00:00:00:0A"); });
    Child b = start_child([&] { return adder("00:00:00:00:00:0B"); });
    close(ready[1]);
    close(go[0]);
    char byte;
    ASSERT_EQ(read(ready[0], &byte, 1), 1);
    ASSERT_EQ(read(ready[0], &byte, 1), 1);
    ASSERT_EQ(write(go[1], "gg", 2), 2);
    close(go[1]);
    close(ready[0]);
    int ra = finish_child(a), rb = finish_child(b);
    EXPECT_EQ(ra + rb, 10) << ra << " " << rb;
    EXPECT_TRUE((ra == 0 && rb == 10) || (ra == 10 && rb == 0)) << ra << " " << rb;

    auto list = wmtest::run_in_child([] {
        const wifi_acllist &l = SC_Get_SC_WiFi_Config()->m_radio[0].m_acllist;
        std::printf("%d", l.count);
        for (const acl_entry &e : l.element)
            if (e.id > 0) std::printf(" %d:%s", e.id, e.name);
        return 0;
    });
    EXPECT_EQ(list.out, "1 1:same");
    struct stat st {};
    ASSERT_EQ(stat(root.path("/var/config/wifi.bin").c_str(), &st), 0);
    EXPECT_EQ(st.st_size, off_t(sizeof(wifi_config)));
}

} // namespace
