// Lease files in both layouts against files built by Python's struct, the documented order
// of the lease list, the host-name look-up, and the signals sent to the DHCP server.
#include <gtest/gtest.h>

#include <algorithm>

#include <csignal>
#include <cstring>
#include <random>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utime.h>
#include <vector>

#include "support/harness.h"
#include "webmgmt.h"

namespace {

using wmtest::run_in_child;
using wmtest::run_shell;
using wmtest::write_file;

class Leases : public ::testing::Test {
  protected:
    // Builds a lease file with lease_files.py; returns what the reader must list, in file
    // order and in the documented order.
    std::pair<std::string, std::string> build(const char *kind, const std::string &device_path,
                                              int seed, int count) {
        auto r = run_shell("python3 '" + wmtest::source_dir() + "/tests/sys/lease_files.py' " +
                           kind + " '" + root_.path(device_path) + "' " + std::to_string(seed) +
                           " " + std::to_string(count));
        EXPECT_EQ(r.exit_code(), 0) << r.err;
        size_t cut = r.out.find("--\n");
        return {r.out.substr(0, cut), r.out.substr(cut + 3)};
    }
    wmtest::TempRoot root_;
};

std::string listing(const lease_entry *n) {
    std::string text;
    for (; n; n = n->next)
        text += std::string(n->mac) + " " + n->ip + " " + n->expires + " " + n->hostname + "\n";
    return text;
}

TEST_F(Leases, LegacyLayoutAsPythonBuiltIt) {
    for (int seed : {1, 2, 3}) {
        auto [in_file_order, sorted] = build("legacy", "/var/udhcpd.leases", seed, 200);
        lease_entry *list = nullptr;
        int n = get_leases(&list);
        EXPECT_EQ(n, int(std::count(in_file_order.begin(), in_file_order.end(), '\n')));
        EXPECT_EQ(listing(list), in_file_order);
        free_leaselist(&list);
    }
}

TEST_F(Leases, AddressServerLayoutAndTheDocumentedOrder) {
    auto [in_file_order, sorted] = build("server", "/var/pool.leases", 7, 1000);
    lease_entry *list = nullptr;
    get_addrserver_leases(&list, "/var/pool.leases", "/var/run/none.pid");
    EXPECT_EQ(listing(list), in_file_order);
    sort_dhcplist(list);
    EXPECT_EQ(listing(list), sorted);
    // Appending to a list that has nodes counts the new ones only.
    EXPECT_EQ(get_addrserver_leases(&list, "/var/pool.leases", ""),
              int(std::count(in_file_order.begin(), in_file_order.end(), '\n')));
    free_leaselist(&list);
}

TEST_F(Leases, OrderIsByLastOctetFirst) {
    std::string file(8, '\0');
    for (const char *ip : {"192.168.1.20", "192.168.2.10", "192.168.1.10"}) {
        const uint8_t mac[6] = {2, 0, 0, 0, 0, uint8_t(atoi(strrchr(ip, '.') + 1))};
        file += wmtest::lease_record(256, ip, mac, "");
    }
    write_file(root_.path("/var/l"), file);
    lease_entry *list = nullptr;
    ASSERT_EQ(get_addrserver_leases(&list, "/var/l", nullptr), 3);
    sort_dhcplist(list);
    EXPECT_STREQ(list->ip, "192.168.1.10");
    EXPECT_STREQ(list->next->ip, "192.168.2.10");
    EXPECT_STREQ(list->next->next->ip, "192.168.1.20");
    free_leaselist(&list);
    sort_dhcplist(nullptr);
}

// The device's exchange, written out plainly: the reference for lists with repeated keys.
void documented_exchange(std::vector<lease_entry> &v) {
    for (size_t i = 0; i < v.size(); ++i)
        for (size_t j = i + 1; j < v.size(); ++j)
            if (v[i].sort_key > v[j].sort_key) std::swap(v[i], v[j]);
}

TEST_F(Leases, RepeatedKeysKeepTheExchangeOrder) {
    std::mt19937 rng(16);
    for (int round = 0; round < 200; ++round) {
        int n = 1 + int(rng() % 60);
        int distinct = 1 + int(rng() % 8);
        std::vector<lease_entry> expected(static_cast<size_t>(n));
        lease_entry *head = nullptr, **tail = &head;
        for (int i = 0; i < n; ++i) {
            auto *node = static_cast<lease_entry *>(get_buffer(int(sizeof(lease_entry))));
            node->sort_key = uint32_t(rng() % unsigned(distinct)) * 0x01000000u;
            node->reserved = i;
            snprintf(node->ip, sizeof node->ip, "node %d", i);
            expected[size_t(i)] = *node;
            *tail = node;
            tail = &node->next;
        }
        documented_exchange(expected);
        sort_dhcplist(head);
        int i = 0;
        for (lease_entry *p = head; p; p = p->next, ++i) {
            ASSERT_EQ(p->reserved, expected[size_t(i)].reserved) << "round " << round;
            ASSERT_STREQ(p->ip, expected[size_t(i)].ip);
        }
        EXPECT_EQ(i, n);
        free_leaselist(&head);
    }
}

TEST_F(Leases, HostNameByMacLastRecordWins) {
    std::string file(8, '\0');
    auto rec = [&](const char *name, uint8_t last, uint32_t expiry) {
        const uint8_t mac[6] = {0xaa, 0xbb, 0xcc, 0xdd, 0xee, last};
        file += wmtest::lease_record(expiry, "0.0.0.0", mac, name);
    };
    rec("first", 1, 10);
    rec("other", 2, 10);
    rec("second-twenty-chars!", 1, 0); // even an ended lease names the host
    write_file(root_.path("/var/udhcpd.leases"), file);
    char name[21] = "untouched";
    EXPECT_EQ(get_DevnamebyMacfromLease("/var/udhcpd.leases", "aa:bb:cc:dd:ee:01", name), 0);
    EXPECT_STREQ(name, "second-twenty-chars!");
    EXPECT_EQ(get_DevnamebyMacfromLease("/var/udhcpd.leases", "AA:BB:CC:DD:EE:02", name), 0);
    EXPECT_STREQ(name, "other");
    EXPECT_EQ(get_DevnamebyMacfromLease("/var/udhcpd.leases", "AA:BB:CC:DD:EE:03", name), -1);
    EXPECT_STREQ(name, "other");
    EXPECT_EQ(get_DevnamebyMacfromLease("/var/missing", "AA:BB:CC:DD:EE:02", name), -1);
}

TEST_F(Leases, UnreadableFileAndAssertions) {
    auto r = run_in_child([] {
        lease_entry *list = nullptr;
        return get_leases(&list) + get_addrserver_leases(&list, "/var/nothing", nullptr);
    });
    EXPECT_EQ(r.exit_code(), 0);
    EXPECT_EQ(r.err, "could not open input file: No such file or directory\n"
                     "could not open input file: No such file or directory\n");
    unsigned char record[36] = {};
    EXPECT_NE(run_in_child([&] {
                  add_lease(nullptr, record);
                  return 0;
              }).err.find("mac_ip_list"),
              std::string::npos);
    lease_entry node{};
    EXPECT_NE(run_in_child([&] {
                  add_addrserverlease(&node, nullptr);
                  return 0;
              }).err.find("lease"),
              std::string::npos);
}

// A child that waits for SIGUSR1 (which would end it) and tells whether it got one.
struct Sleeper {
    pid_t pid = -1;
    Sleeper() {
        pid = fork();
        if (pid == 0) {
            execlp("sleep", "sleep", "600", static_cast<char *>(nullptr));
            _exit(127);
        }
    }
    bool killed_by_usr1() {
        kill(pid, SIGTERM);
        int status = 0;
        waitpid(pid, &status, 0);
        return WIFSIGNALED(status) && WTERMSIG(status) == SIGUSR1;
    }
};

TEST_F(Leases, SignalsOnlyARunningDhcpServer) {
    // A pid file that names some other process: never signalled.
    Sleeper other;
    write_file(root_.path("/var/run/udhcpd.pid"), std::to_string(other.pid) + "\n");
    write_file(root_.path("/var/udhcpd.leases"), "");
    write_file(root_.path("/var/p.leases"), std::string(8, '\0'));
    lease_entry *list = nullptr;
    EXPECT_EQ(get_leases(&list), 0);
    EXPECT_EQ(get_addrserver_leases(&list, "/var/p.leases", "/var/run/udhcpd.pid"), 0);
    delay_get_lease_by_kill("", 0, other.pid);
    EXPECT_FALSE(other.killed_by_usr1());
}

TEST_F(Leases, DelayedSignalNamesTheServerFile) {
    // A process whose command name is udhcpd: a link to sleep under that name.
    std::string link = root_.path("/tmp/udhcpd");
    ASSERT_EQ(run_shell("ln -s \"$(command -v sleep)\" '" + link + "'").exit_code(), 0);
    auto start = [&] {
        pid_t pid = fork();
        if (pid == 0) {
            execl(link.c_str(), "udhcpd", "600", static_cast<char *>(nullptr));
            _exit(127);
        }
        // Settled once its stat file shows the new name.
        for (;;) {
            auto stat = wmtest::read_file("/proc/" + std::to_string(pid) + "/stat");
            if (stat.find("(udhcpd)") != std::string::npos) break;
            sched_yield();
        }
        return pid;
    };
    auto got_usr1 = [](pid_t pid) {
        kill(pid, SIGTERM);
        int status = 0;
        waitpid(pid, &status, 0);
        return WIFSIGNALED(status) && WTERMSIG(status) == SIGUSR1;
    };
    struct Case {
        const char *name;
        const char *ifname;
        int index;
        const char *file; // the file that is made fresh, or nullptr
        bool old;         // made 2 minutes old instead
        bool signalled;
    } cases[] = {
        {"no file", "", 0, nullptr, false, true},
        {"fresh main file", "", 0, "/var/udhcpd.leases", false, false},
        {"old main file", "", 0, "/var/udhcpd.leases", true, true},
        {"fresh pool file", "br0", 2, "/var/udhcpd_br0.2.leases", false, false},
        {"pool file is not the main file", "br0", 2, "/var/udhcpd.leases", false, true},
        {"index 0 reads the main file", "br0", 0, "/var/udhcpd.leases", false, false},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        unlink(root_.path("/var/udhcpd.leases").c_str());
        unlink(root_.path("/var/udhcpd_br0.2.leases").c_str());
        if (c.file) {
            write_file(root_.path(c.file), "");
            if (c.old) {
                struct utimbuf t = {time(nullptr) - 120, time(nullptr) - 120};
                utime(root_.path(c.file).c_str(), &t);
            }
        }
        pid_t pid = start();
        delay_get_lease_by_kill(c.ifname, c.index, pid);
        EXPECT_EQ(got_usr1(pid), c.signalled);
    }
    delay_get_lease_by_kill("", 0, 1); // pid below 2: nothing, not even init
}

} // namespace
