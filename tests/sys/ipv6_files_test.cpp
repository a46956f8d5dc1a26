// The IPv6 readers on files the test writes into a private device tree: malformed and
// over-long lines are skipped whole, good lines around them still read, and every result
// is cut at its buffer.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "support/harness.h"
#include "webmgmt.h"

namespace {

class Ipv6Files : public ::testing::Test {
  protected:
    // The tree's /proc is a link to the real one: this test writes its own.
    void SetUp() override { root_.own_proc(); }
    void write(const char *fixed, const std::string &text) { root_.put(fixed, text); }
    wmtest::TempRoot root_;
};

const std::string kGoodAddr = "20010db8000000000000000000000001 02 40 00 80     eth0\n";

TEST_F(Ipv6Files, MalformedAddressLinesAreSkipped) {
    struct Case {
        const char *label;
        std::string line;
    } cases[] = {
        {"31 digits", "20010db800000000000000000000001 02 40 00 80 eth0\n"},
        {"not hex", "20010db8000000000000000000000g01 02 40 00 80 eth0\n"},
        {"prefix over 128", "20010db8000000000000000000000002 02 81 00 80 eth0\n"},
        {"name too long", "20010db8000000000000000000000003 02 40 00 80 eth0123456789abcdef\n"},
        {"a field too many", "20010db8000000000000000000000004 02 40 00 80 eth0 x\n"},
        {"a field short", "20010db8000000000000000000000005 02 40 00 eth0\n"},
        {"hex field too wide", "20010db8000000000000000000000006 02 40 000000000 80 eth0\n"},
        {"over-long line",
         "20010db8000000000000000000000007 02 40 00 80 " + std::string(300, ' ') + "eth0\n"},
        {"empty", "\n"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.label);
        write("/proc/net/if_inet6", c.line + kGoodAddr + c.line);
        ipv6_addr_entry list[4];
        ASSERT_EQ(getIfIPV6_list("eth0", list, 4), 1);
        EXPECT_STREQ(list[0].address, "2001:db8::1");
        EXPECT_EQ(list[0].prefix_len, 64);
        EXPECT_EQ(list[0].scope, 0);
        EXPECT_EQ(list[0].flags, 0x80u);
    }
}

TEST_F(Ipv6Files, AddressTextIsCutAtItsBuffer) {
    write("/proc/net/if_inet6", kGoodAddr);
    char text[8];
    std::memset(text, 'x', sizeof text);
    int prefix = 0;
    EXPECT_EQ(getIfIPV6("eth0", 0, text, sizeof text, &prefix), 0);
    EXPECT_STREQ(text, "2001:db");
    EXPECT_EQ(getIfIPV6("eth0", 0, text, 0, nullptr), 0);
    EXPECT_EQ(getIfIPV6(nullptr, 0, text, sizeof text, nullptr), -1);
    unlink(root_.path("/proc/net/if_inet6").c_str());
    EXPECT_EQ(getIfIPV6("eth0", 0, text, sizeof text, &prefix), -1);
    EXPECT_STREQ(text, "");
}

const std::string kGoodRoute = "00000000000000000000000000000000 00 "
                               "00000000000000000000000000000000 00 "
                               "fe800000000000000000000000000001 00000400 00000001 00000000 "
                               "00000003     eth1\n";

TEST_F(Ipv6Files, MalformedRouteLinesAreSkipped) {
    const std::string tail = " 00000000000000000000000000000000 00 "
                             "00000000000000000000000000000000 00000400 00000001 00000000 "
                             "00000003     eth1\n";
    struct Case {
        const char *label;
        std::string line;
    } cases[] = {
        {"prefix over 128", "20010db8000000000000000000000000 ff" + tail},
        {"destination short", "20010db800000000000000000000000 40" + tail},
        {"device missing", "20010db8000000000000000000000000 40 00000000000000000000000000000000 "
                           "00 00000000000000000000000000000000 00000400 00000001 00000000 "
                           "00000003\n"},
        {"over-long", "20010db8000000000000000000000000 40" + std::string(300, ' ') + tail},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.label);
        write("/proc/net/ipv6_route", c.line + kGoodRoute);
        ipv6_route_entry routes[4];
        ASSERT_EQ(ipv6_route_get("eth1", routes, 4), 1);
        EXPECT_STREQ(routes[0].destination, "::");
        EXPECT_STREQ(routes[0].next_hop, "fe80::1");
        EXPECT_EQ(routes[0].metric, 0x400u);
        EXPECT_EQ(routes[0].flags, 3u);
        EXPECT_STREQ(routes[0].device, "eth1");
        char gw[16];
        EXPECT_EQ(ipv6_default_gateway("eth1", gw, sizeof gw), 0);
        EXPECT_STREQ(gw, "fe80::1");
    }
}

TEST_F(Ipv6Files, NameServers) {
    struct Case {
        const char *label;
        std::string file;
        int count;
        const char *dns1, *dns2;
    } cases[] = {
        {"IPv4 servers are passed over",
         "nameserver 192.168.1.1\nnameserver 2001:db8::53\nnameserver 10.0.0.1\n"
         "nameserver fe80::1%br0\nnameserver 2001:db8::54\n",
         2, "2001:db8::53", "fe80::1%br0"},
        {"comments, blanks, tabs",
         "# Interface wan6\n  nameserver\t2001:db8::1 # the ISP's\nsearch lan\n", 1, "2001:db8::1",
         ""},
        {"not the keyword", "nameservers 2001::1\nnameserver2001::1\nnameserver\n", 0, "", ""},
        {"an over-long line is skipped whole",
         "nameserver 10.0.0.1 " + std::string(300, 'x') + " nameserver 2001:db8::8\n" +
             "nameserver 2001:db8::7",
         1, "2001:db8::7", ""},
        {"empty file", "", 0, "", ""},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.label);
        write("/tmp/resolv.conf.auto", c.file);
        char dns1[48], dns2[48];
        EXPECT_EQ(resolv_ipv6_nameserver(dns1, dns2, sizeof dns1), c.count);
        EXPECT_STREQ(dns1, c.dns1);
        EXPECT_STREQ(dns2, c.dns2);
    }
    unlink(root_.path("/tmp/resolv.conf.auto").c_str());
    char dns1[48] = "old", dns2[48] = "old";
    EXPECT_EQ(resolv_ipv6_nameserver(dns1, dns2, sizeof dns1), 0);
    EXPECT_STREQ(dns1, "");
    EXPECT_STREQ(dns2, "");
    // Cut at the size; null buffers are allowed.
    write("/tmp/resolv.conf.auto", "nameserver 2001:db8::53\n");
    char small[5];
    EXPECT_EQ(resolv_ipv6_nameserver(small, nullptr, sizeof small), 1);
    EXPECT_STREQ(small, "2001");
}

} // namespace

namespace {

// The bridge reader goes through the fixed-path module too: under WEBMGMT_ROOT it lists the
// private tree's entries.
TEST(BridgeUnderRoot, ListsThePrivateTreesEntries) {
    wmtest::TempRoot root;
    root.make_dir("/sys/class/net/br-lan/brif/eth0.1");
    root.make_dir("/sys/class/net/eth0");
    char list[32];
    EXPECT_EQ(get_bridge_brif_list("br-lan", list, sizeof list), 1);
    EXPECT_STREQ(list, "eth0.1");
    EXPECT_EQ(get_bridge_brif_list("eth0", list, sizeof list), -1);
    EXPECT_STREQ(list, "");
    EXPECT_EQ(get_bridge_brif_list("br-lan", nullptr, 0), 1);
}

} // namespace
