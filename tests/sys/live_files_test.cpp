// The live-state readers on /proc/net files and tool output made under a private device
// tree: the cases a running kernel does not produce on demand (names glued to counters,
// names contained in longer names, tables without a default route, switch ports).
#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <cstring>
#include <string>
#include <sys/resource.h>
#include <unistd.h>

#include "support/harness.h"
#include "webmgmt.h"

namespace {

using wmtest::read_file;
using wmtest::run_in_child;
using wmtest::write_file;

// A device tree whose /proc is a directory of the test's own files.
class LiveFiles : public ::testing::Test {
  protected:
    void SetUp() override { root_.own_proc(); }
    void put(const std::string &device_path, const std::string &text) {
        root_.put(device_path, text);
    }
    wmtest::TempRoot root_;
};

constexpr char kRouteHeader[] =
    "Iface\tDestination\tGateway \tFlags\tRefCnt\tUse\tMetric\tMask\t\tMTU\tWindow\tIRTT\n";

// A /proc/net/route line as the kernel prints it (addresses as native-order hex words).
std::string route(const char *dev, const char *dst, const char *gw, unsigned flags,
                  const char *mask) {
    char line[256];
    in_addr d{}, g{}, m{};
    inet_pton(AF_INET, dst, &d);
    inet_pton(AF_INET, gw, &g);
    inet_pton(AF_INET, mask, &m);
    snprintf(line, sizeof line, "%s\t%08X\t%08X\t%04X\t0\t0\t0\t%08X\t0\t0\t0\n", dev, d.s_addr,
             g.s_addr, flags, m.s_addr);
    return line;
}

TEST_F(LiveFiles, GatewayLastMatchWinsAndDefaultStops) {
    struct Case {
        const char *name;
        std::string table;
        const char *ifname;
        const char *gateway; // nullptr: destination untouched
        int gw_ip;           // getIfgwIp result
        const char *exact;
    } cases[] = {
        {"default route", route("eth1", "0.0.0.0", "10.0.0.1", 3, "0.0.0.0"), "eth1", "10.0.0.1", 0,
         "10.0.0.1"},
        {"only a local route: empty text", route("eth1", "10.0.0.0", "0.0.0.0", 1, "255.0.0.0"),
         "eth1", "", -1, nullptr},
        {"default then later route: default stops the scan",
         route("eth1", "0.0.0.0", "10.0.0.1", 3, "0.0.0.0") +
             route("eth1", "10.9.0.0", "10.0.0.9", 3, "255.255.0.0"),
         "eth1", "10.0.0.1", 0, "10.0.0.1"},
        {"last up route wins without default",
         route("eth1", "10.8.0.0", "10.0.0.8", 3, "255.255.0.0") +
             route("eth1", "10.9.0.0", "10.0.0.9", 3, "255.255.0.0"),
         "eth1", "10.0.0.9", -1, nullptr},
        {"down route ignored", route("eth1", "0.0.0.0", "10.0.0.1", 2, "0.0.0.0"), "eth1", nullptr,
         -1, nullptr},
        {"substring: eth1 matches eth1.2", route("eth1.2", "0.0.0.0", "10.2.0.1", 3, "0.0.0.0"),
         "eth1", "10.2.0.1", -1, nullptr},
        {"other interface", route("eth0", "0.0.0.0", "10.0.0.1", 3, "0.0.0.0"), "eth1", nullptr, -1,
         nullptr},
        {"no routes", "", "eth1", nullptr, -1, nullptr},
        {"short line stops",
         "eth1\t00000000\n" + route("eth1", "0.0.0.0", "10.0.0.1", 3, "0.0.0.0"), "eth1", nullptr,
         -1, "10.0.0.1"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        put("/proc/net/route", kRouteHeader + c.table);
        char gw[32] = "untouched";
        getIfGateway(c.ifname, gw);
        EXPECT_STREQ(gw, c.gateway ? c.gateway : "untouched");
        char exact[16] = "untouched";
        EXPECT_EQ(getIfgwIp(c.ifname, exact), c.exact ? 0 : -1);
        EXPECT_STREQ(exact, c.exact ? c.exact : "untouched");
    }
    char gw[16] = "untouched";
    getIfGateway("", gw);
    EXPECT_STREQ(gw, "untouched");
    unlink(root_.path("/proc/net/route").c_str());
    getIfGateway("eth1", gw);
    EXPECT_STREQ(gw, "untouched");
    EXPECT_EQ(getIfgwIp("eth1", gw), -1);
}

constexpr char kDevHeader[] =
    "Inter-|   Receive                                                |  Transmit\n"
    " face |bytes    packets errs drop fifo frame compressed multicast|bytes    packets errs "
    "drop fifo colls carrier compressed\n";

port_map map_of(std::initializer_list<const char *> names, uint8_t ext_switch = 0) {
    port_map m{};
    m.ext_switch = ext_switch;
    int i = 0;
    for (const char *n : names) {
        if (*n) snprintf(m.ifname[i], sizeof m.ifname[i], "%s", n);
        m.role[i] = i == 0 ? WEBMGMT_PORT_ROLE_WAN : WEBMGMT_PORT_ROLE_LAN;
        ++i;
    }
    return m;
}

TEST_F(LiveFiles, NetDevCountersGluedAndSubstringNames) {
    put("/proc/net/dev", std::string(kDevHeader) +
                             // the kernel's own layout
                             "  eth0: 1234567 10 1 2 3 4 5 6 7654321 20 11 12 13 14 15 16\n"
                             // an old kernel's: the name glued to a large first counter
                             "  eth1:4294967296000 30 0 0 0 0 0 0 99 40 0 0 0 0 0 0\n"
                             // a longer name that contains the slot's name: the last match wins
                             "eth2: 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1\n"
                             "veth2.5: 500 5 0 0 0 0 0 0 600 6 0 0 0 0 0 0\n"
                             // a counter above 32 bits saturates as the device's strtoul does
                             "eth3: 0 99999999999 0 0 0 0 0 0 0 0 0 0 0 0 0 0\n"
                             "broken line without colon\n"
                             "eth4: 1 2 3\n");
    port_map m = map_of({"eth0", "eth1", "eth2", "eth3", "", "eth4", "nosuch"}, 1);
    sys_status st{};
    st.port[4].port = 77; // an empty slot is left alone
    get_eth_summary(&st, &m);
    EXPECT_EQ(st.port[0].port, 1);
    EXPECT_STREQ(st.port[0].ifname, "eth0");
    EXPECT_EQ(st.port[0].rx_bytes, 1234567u);
    EXPECT_EQ(st.port[0].rx_packets, 10u);
    EXPECT_EQ(st.port[0].rx_errors, 1u);
    EXPECT_EQ(st.port[0].rx_multicast, 6u);
    EXPECT_EQ(st.port[0].tx_bytes, 7654321u);
    EXPECT_EQ(st.port[0].tx_packets, 20u);
    EXPECT_EQ(st.port[0].tx_compressed, 16u);
    EXPECT_EQ(st.port[1].rx_bytes, 4294967296000u);
    EXPECT_EQ(st.port[1].rx_packets, 30u);
    EXPECT_EQ(st.port[1].tx_bytes, 99u);
    EXPECT_STREQ(st.port[2].ifname, "veth2.5");
    EXPECT_EQ(st.port[2].port, 3);
    EXPECT_EQ(st.port[2].rx_bytes, 500u);
    EXPECT_EQ(st.port[3].rx_packets, 4294967295u);
    EXPECT_EQ(st.port[4].port, 77);
    EXPECT_EQ(st.port[5].port, 0); // too few counters: not read
    EXPECT_EQ(st.port[6].port, 0);
}

TEST_F(LiveFiles, SwitchPortsThroughTheSwitchTool) {
    struct Case {
        const char *output; // nullptr: the tool prints nothing
        uint8_t link, speed, duplex;
    } cases[] = {
        {"port:1 link:up speed:1000baseT full-duplex auto\n", 1, 8, 2},
        {"port:1 link:up speed:100baseT half-duplex auto\n", 1, 4, 0},
        {"port:1 link:up speed:10baseT full-duplex\n", 1, 0, 2},
        {"port:1 link:up speed:2500baseT full-duplex auto\n", 1, 16, 2},
        {"port:1 link:up speed:5000baseT full-duplex auto\n", 1, 0, 2},
        {"port:1 link:up speed:10000baseT full-duplex auto\n", 1, 32, 2},
        {"port:1 link:down\n", 0, 0, 0},
        {"port:1 link:up\n", 1, 0, 0},
        // "up" is looked for in fields 2 to 4 only, as the device's cut gave them
        {"port:1 link:down speed:0 x up\n", 0, 0, 0},
        {nullptr, 0, 0, 0},
    };
    port_map m = map_of({"eth0", "eth1"}, 1);
    for (const Case &c : cases) {
        SCOPED_TRACE(c.output ? c.output : "no output");
        unlink(root_.path("/swconfig/port2").c_str());
        if (c.output) put("/swconfig/port2", c.output);
        port_status s{};
        s.link = 9;
        EXPECT_EQ(getEthStatus("eth1", &s, 1, &m), 0);
        EXPECT_EQ(s.link, c.link);
        EXPECT_EQ(s.speed_code, c.speed);
        EXPECT_EQ(s.duplex, c.duplex);
    }
    // The port number is an argument of its own: nothing reaches a shell.
    setenv("WEBMGMT_FAKE_LOG", root_.path("/tmp/fake.log").c_str(), 1);
    port_status s{};
    getEthStatus("eth0;reboot", &s, 4, &m);
    unsetenv("WEBMGMT_FAKE_LOG");
    EXPECT_EQ(read_file(root_.path("/tmp/fake.log")), "swconfig dev switch1 port 5 get link\n");
}

TEST_F(LiveFiles, ByteConversion) {
    struct Case {
        uint64_t v;
        const char *text;
    } cases[] = {
        {0, "0.0bps"},
        {1023, "1023.0bps"},
        {1024, "1.0Kbps"},
        {1536, "1.0Kbps"}, // the Kbps figure is truncated to whole kilobytes
        {1048575, "1023.0Kbps"},
        {1048576, "1.0Mbps"},
        {1572864, "1.5Mbps"},
        {1073741823, "1024.0Mbps"},
        {1073741824, "1.0Gbps"},
        {1610612736, "1.5Gbps"},
        {UINT64_MAX, "17179869184.0Gbps"},
    };
    for (const Case &c : cases) {
        char text[24];
        Byte_conversion(c.v, text);
        EXPECT_STREQ(text, c.text) << c.v;
    }
}

TEST_F(LiveFiles, PortListsAndDescriptions) {
    port_map m{};
    const char *names[] = {"eth0", "eth1", "", "eth3", "eth4"};
    const uint8_t roles[] = {WEBMGMT_PORT_ROLE_LAN, WEBMGMT_PORT_ROLE_WAN, WEBMGMT_PORT_ROLE_WAN,
                             WEBMGMT_PORT_ROLE_LAN, WEBMGMT_PORT_ROLE_WAN};
    for (int i = 0; i < 5; ++i) {
        snprintf(m.ifname[i], sizeof m.ifname[i], "%s", names[i]);
        m.role[i] = roles[i];
    }
    char text[32];
    EXPECT_EQ(get_wan_ports(&m, text, sizeof text), 2);
    EXPECT_STREQ(text, "2,5");
    EXPECT_EQ(get_lan_ports(&m, text, sizeof text), 2);
    EXPECT_STREQ(text, "1,4");
    EXPECT_EQ(get_lan_ports(&m, text, 3), 2);
    EXPECT_STREQ(text, "1,");
    port_map none{};
    EXPECT_EQ(get_wan_ports(&none, text, sizeof text), 0);
    EXPECT_STREQ(text, "");

    auto out = run_in_child([] {
        char d[16] = "untouched";
        return get_port_desc("eth0", d, sizeof d) == -1 && strcmp(d, "untouched") == 0 ? 0 : 1;
    });
    EXPECT_EQ(out.exit_code(), 0);
    EXPECT_EQ(out.out, "open file error\n");
    put("/etc/lldpd.conf", "configure system hostname router\n"
                           "configure ports eth0 lldp portidsubtype local LAN1\n"
                           "configure ports eth1 lldp portidsubtype local WAN\n"
                           "configure ports eth0 lldp portidsubtype local Uplink-A-very-long-name\n"
                           "configure ports eth10 lldp portidsubtype local Ten\n");
    char d[10] = "";
    EXPECT_EQ(get_port_desc("eth0", d, sizeof d), 0);
    EXPECT_STREQ(d, "Uplink-A-");
    EXPECT_EQ(get_port_desc("eth1", d, sizeof d), 0);
    EXPECT_STREQ(d, "WAN");
    EXPECT_EQ(get_port_desc("eth2", d, sizeof d), -1);
    EXPECT_STREQ(d, "WAN");
}

constexpr char kArpHeader[] =
    "IP address       HW type     Flags       HW address            Mask     Device\n";

std::string arp(const char *ip, const char *flags, const char *mac, const char *dev) {
    char line[200];
    snprintf(line, sizeof line, "%-16s 0x1         %-11s %-21s *        %s\n", ip, flags, mac, dev);
    return line;
}

lan_config *lan_192_168_1() {
    static lan_config lan;
    memset(&lan, 0, sizeof lan);
    inet_pton(AF_INET, "192.168.1.1", &lan.ipaddr.v4);
    inet_pton(AF_INET, "255.255.255.0", &lan.subnet.v4);
    return &lan;
}

TEST_F(LiveFiles, ArpHostTable) {
    std::string table = kArpHeader;
    table += arp("192.168.1.10", "0x2", "aa:bb:cc:00:00:10", "br0");
    table += arp("192.168.1.11", "0x0", "00:00:00:00:00:00", "br0"); // incomplete
    table += arp("10.0.0.5", "0x2", "aa:bb:cc:00:00:05", "eth1");    // outside the LAN
    table += arp("192.168.1.12", "0x6", "Aa:bB:cc:00:00:12", "br0");
    put("/proc/net/arp", table);
    // The host names come from the lease file in the address-server layout.
    const uint8_t host[6] = {0xaa, 0xbb, 0xcc, 0, 0, 0x10};
    put("/var/udhcpd.leases",
        std::string(8, '\0') + wmtest::lease_record(100, "192.168.1.10", host, "laptop"));
    auto *t = new arp_host_table;
    memset(t, 0x5a, sizeof *t);
    EXPECT_EQ(get_arplist(lan_192_168_1(), t), 0);
    ASSERT_EQ(t->count, 2);
    EXPECT_STREQ(t->host[0].ip, "192.168.1.10");
    EXPECT_STREQ(t->host[0].mac, "AA:BB:CC:00:00:10");
    EXPECT_STREQ(t->host[0].hostname, "laptop");
    EXPECT_STREQ(t->host[1].ip, "192.168.1.12");
    EXPECT_STREQ(t->host[1].mac, "AA:BB:CC:00:00:12");
    EXPECT_STREQ(t->host[1].hostname, "");
    EXPECT_EQ(t->host[2].ip[0], 0); // the out-of-subnet host left nothing behind

    // 501 hosts in the subnet: 500 stored.
    table = kArpHeader;
    for (int i = 0; i < 501; ++i) {
        char ip[32], mac[32];
        snprintf(ip, sizeof ip, "192.168.%d.%d", 1, i % 250 + 2);
        snprintf(mac, sizeof mac, "02:00:00:00:%02x:%02x", i / 256, i % 256);
        table += arp(ip, "0x2", mac, "br0");
    }
    put("/proc/net/arp", table);
    EXPECT_EQ(get_arplist(lan_192_168_1(), t), 0);
    EXPECT_EQ(t->count, 500);
    EXPECT_STREQ(t->host[499].mac, "02:00:00:00:01:F3");
    unlink(root_.path("/proc/net/arp").c_str());
    EXPECT_EQ(get_arplist(lan_192_168_1(), t), 0);
    EXPECT_EQ(t->count, 0);
    delete t;
}

TEST_F(LiveFiles, ArpCacheAndIpByMac) {
    std::string table = kArpHeader;
    table += arp("192.168.1.10", "0x2", "aa:bb:cc:00:00:10", "br0");
    table += arp("192.168.1.11", "0x6", "aa:bb:cc:00:00:11", "br0"); // permanent: left out
    table += arp("10.0.0.10", "0x2", "aa:bb:cc:00:00:10", "eth1");   // same MAC: one node
    table += arp("10.0.0.20", "0x2", "aa:bb:cc:00:00:20", "eth1");
    table += arp("192.168.1.12", "0x0", "00:00:00:00:00:00", "br0");
    table += "garbage\n";
    table += arp("192.168.1.30", "0x2", "aa:bb:cc:00:00:30", "br0"); // after the stop
    put("/proc/net/arp", table);
    lease_entry *list = nullptr;
    EXPECT_EQ(get_arp_cache("", &list), 2);
    ASSERT_NE(list, nullptr);
    EXPECT_STREQ(list->ip, "192.168.1.10");
    EXPECT_STREQ(list->mac, "AABBCC000010");
    EXPECT_STREQ(list->hw_type, "1");
    ASSERT_NE(list->next, nullptr);
    EXPECT_STREQ(list->next->ip, "10.0.0.20");
    EXPECT_EQ(list->next->next, nullptr);
    EXPECT_EQ(search_by_mac(list, "AA:BB:CC:00:00:20"), 2);
    EXPECT_EQ(search_by_mac(list, "aa:bb:cc:00:00:10"), 1);
    EXPECT_EQ(search_by_mac(list, "aa:bb:cc:00:00:99"), 0);
    free_leaselist(&list);
    EXPECT_EQ(list, nullptr);
    EXPECT_EQ(get_arp_cache("eth1", &list), 2);
    EXPECT_STREQ(list->ip, "10.0.0.10");
    free_leaselist(&list);

    char ip[16] = "untouched";
    EXPECT_EQ(get_ipbymac_arp("AA:BB:CC:00:00:11", ip), 0);
    EXPECT_STREQ(ip, "192.168.1.11");
    EXPECT_EQ(get_ipbymac_arp("aa:bb:cc:00:00:10", ip), 0);
    EXPECT_STREQ(ip, "192.168.1.10");
    strcpy(ip, "untouched");
    EXPECT_EQ(get_ipbymac_arp("aa:bb:cc:00:00:99", ip), -1);
    EXPECT_STREQ(ip, "untouched");
}

TEST_F(LiveFiles, MacStripAndUpcase) {
    char d[13];
    mac2hexStrip("aa:bb:cc:dd:ee:0f", d);
    EXPECT_STREQ(d, "AABBCCDDEE0F");
    mac2hexStrip("aa-bb-cc-dd-ee-0f", d); // separators are not checked
    EXPECT_STREQ(d, "AABBCCDDEE0F");
    mac2hexStrip("aa:b", d); // a short text gives the digits it has
    EXPECT_STREQ(d, "AAB");
    EXPECT_EQ(chUpcase('q'), 'Q');
    EXPECT_EQ(chUpcase('Q'), 'Q');
    EXPECT_EQ(chUpcase('1'), '1');
}

} // namespace

namespace {

TEST(InterfaceFailures, MessagesAndResults) {
    auto r = run_in_child([] {
        char dst[16] = "untouched";
        int rc = getIfBcastIP("nosuch0", dst, sizeof dst);
        return rc == -1 && strcmp(dst, "untouched") == 0 ? 0 : 1;
    });
    EXPECT_EQ(r.exit_code(), 0);
    EXPECT_EQ(r.out.rfind("getIfBcastIP:", 0), 0u) << r.out;
    EXPECT_NE(r.out.find(" get ifname[nosuch0] ip addr fail\n"), std::string::npos) << r.out;
    // No socket to be had (no descriptor left): the messages, the second one misnamed.
    auto no_socket = run_in_child([] {
        struct rlimit none = {0, 0};
        setrlimit(RLIMIT_NOFILE, &none);
        char m[18];
        int a = getIfMac("eth0", m, 2);
        int b = getIfHalfMac("eth0", m, 1);
        fflush(stdout);
        return a == -1 && b == -1 ? 0 : 1;
    });
    EXPECT_EQ(no_socket.exit_code(), 0);
    EXPECT_EQ(no_socket.out, "getIfMac: open socket error, eth0\ngetIfMac: open socket error");
    char mac[18] = "untouched";
    EXPECT_EQ(getIfMac("nosuch0", mac, 2), -1);
    EXPECT_EQ(getIfHalfMac("nosuch0", mac, 1), -1);
    EXPECT_STREQ(mac, "untouched");
    EXPECT_EQ(getEthUp_Down("nosuch0"), 0);
    EXPECT_EQ(getIfIp("", mac), -1);
    EXPECT_EQ(getIfsubnetIp("nosuch0", mac), -1);
    EXPECT_STREQ(mac, "untouched");
}

} // namespace
