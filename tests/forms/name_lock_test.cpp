// Two CGI processes adding the same name to one list at once. The name check runs under the
// list's lock; the add comes after the lock is released, so both can pass the check: the
// store then holds both elements, and its file stays whole.
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

// The name check waits while another process holds the list's lock.
TEST(NameLock, CheckWaitsForTheListLock) {
    TempRoot root;
    auto path = wmtest::run_in_child([] {
        std::printf("%s", SC_Get_VsIpport_System_Config()->lock_file);
        return 0;
    });
    ASSERT_FALSE(path.out.empty());
    int fd = open(path.out.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    ASSERT_GE(fd, 0);
    struct flock fl {};
    fl.l_type = F_WRLCK;
    fl.l_whence = SEEK_SET;
    ASSERT_EQ(fcntl(fd, F_SETLKW, &fl), 0);

    Child checker = start_child([] {
        return filterate_name(SC_Get_VsIpport_System_Config(), "web", 0, WEBMGMT_KIND_VSIPPORT);
    });
    // Wait (without a clock) until the kernel lists the child as a waiter on our lock.
    bool seen = false;
    for (long spins = 0; spins < 100000000 && !seen; ++spins) {
        seen = waiting_for_lock(checker.pid);
        int status;
        if (!seen && waitpid(checker.pid, &status, WNOHANG) == checker.pid)
            FAIL() << "the check finished while the list was locked";
        sched_yield();
    }
    EXPECT_TRUE(seen);
    fl.l_type = F_UNLCK;
    ASSERT_EQ(fcntl(fd, F_SETLK, &fl), 0);
    close(fd);
    EXPECT_EQ(finish_child(checker), 0);
}

// Both processes fetch the list, then add the same name at once: both checks pass (each
// scans its own copy; the add is not under the check's lock), both elements are stored.
TEST(NameLock, SameNameFromTwoProcessesIsStoredTwice) {
    TempRoot root;
    int ready[2], go[2];
    ASSERT_EQ(pipe(ready), 0);
    ASSERT_EQ(pipe(go), 0);
    auto adder = [&](int outer_port) {
        close(ready[0]);
        close(go[1]);
        rule_config_set set{};
        set.misc = SC_Get_Misc_System_Config();
        set.misc->need_filter_firewall = 1;
        set.vsipport = SC_Get_VsIpport_System_Config();
        char byte = 'r';
        if (write(ready[1], &byte, 1) != 1 || read(go[0], &byte, 1) != 1) return -1;
        char name[] = "name", value[] = "same", ipn[] = "innerip", ipv[] = "10.1.1.1";
        form_pair pairs[] = {{name, value}, {ipn, ipv}};
        // The two adds differ in content only by their outer port, so the content filter
        // passes too.
        char portn[] = "extren_Port_From", portv[16];
        std::snprintf(portv, sizeof portv, "%d", outer_port);
        form_pair all[] = {pairs[0], pairs[1], {portn, portv}};
        return save_vsipport_config_element(set.vsipport, 0, all, 3, &set);
    };
    Child a = start_child([&] { return adder(8001); });
    Child b = start_child([&] { return adder(8002); });
    close(ready[1]);
    close(go[0]);
    char byte;
    ASSERT_EQ(read(ready[0], &byte, 1), 1);
    ASSERT_EQ(read(ready[0], &byte, 1), 1);
    ASSERT_EQ(write(go[1], "gg", 2), 2);
    close(go[1]);
    close(ready[0]);
    EXPECT_EQ(finish_child(a), CONFIG_OK);
    EXPECT_EQ(finish_child(b), CONFIG_OK);

    auto list = wmtest::run_in_child([] {
        const vsipport_config *c = SC_Get_VsIpport_System_Config();
        std::printf("%d", c->vsipport.count);
        for (const auto &e : c->vsipport.element)
            if (e.id > 0) std::printf(" %d:%s", e.id, e.name);
        return 0;
    });
    size_t named = 0;
    for (size_t at = list.out.find(":same"); at != std::string::npos;
         at = list.out.find(":same", at + 1))
        ++named;
    EXPECT_EQ(list.out.substr(0, 2), "2 ") << list.out;
    EXPECT_EQ(named, 2u) << list.out;
    struct stat st {};
    ASSERT_EQ(stat(root.path("/var/config/vsipport.bin").c_str(), &st), 0);
    EXPECT_EQ(st.st_size, off_t(sizeof(vsipport_config)));
    // A later check in a fresh process sees the name.
    auto later = wmtest::run_in_child([] {
        return filterate_name(SC_Get_VsIpport_System_Config(), "same", 0, WEBMGMT_KIND_VSIPPORT) +
               10;
    });
    EXPECT_EQ(later.exit_code(), 9);
}

} // namespace
