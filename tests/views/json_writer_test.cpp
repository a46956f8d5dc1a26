// The member writer under every view: numbers and addresses as the C library prints them,
// and the view's bytes in order with what the program prints itself, however stdout is
// buffered.
#include <arpa/inet.h>
#include <climits>
#include <cstdio>
#include <memory>
#include <random>
#include <string>

#include "view_check.h"

namespace {

// Every slot of the port-forwarding list with random and extreme numbers and addresses.
std::unique_ptr<vsipport_config> random_record(std::mt19937 &rng) {
    auto r = std::make_unique<vsipport_config>();
    std::memset(r.get(), 0, sizeof *r);
    const int32_t extremes[] = {INT32_MIN, INT32_MIN + 1, -1, 0, 1, 9, 10, 99, 100, INT32_MAX};
    const uint32_t addresses[] = {0u, 0xffffffffu, 0x01020304u, 0x0a00000au, 0xc0a80001u};
    int i = 0;
    for (vsipport_rule &s : r->vsipport.element) {
        bool edge = i < int(std::size(extremes));
        s.id = edge ? extremes[i] : int32_t(rng());
        s.lock_location =
            edge ? extremes[std::size(extremes) - 1 - i] : int32_t(rng() >> rng() % 32);
        s.devinnerfromport = int32_t(rng()) >> (rng() % 32);
        s.devexterntoport = -int32_t(rng() % 100000);
        s.devip.v4 = i < int(std::size(addresses)) ? addresses[i] : uint32_t(rng());
        s.protocol = uint8_t(rng());
        ++i;
    }
    r->vsipport.count = int16_t(rng() % 33);
    return r;
}

// The C library's dotted form of an address kept in network order.
std::string c_library_dotted(uint32_t v4) {
    in_addr in{};
    in.s_addr = v4;
    return inet_ntoa(in);
}

TEST(JsonWriter, NumbersAndAddressesAsTheCLibraryPrintsThem) {
    wmtest::SeededRandom rng;
    for (int round = 0; round < 4; ++round) {
        auto r = random_record(rng);
        viewtest::Parsed p = viewtest::parse(viewtest::print(printf_VsIpport_json, *r));
        ASSERT_EQ(p.status, 0) << p.message;
        EXPECT_EQ(p.at("vsipport.count"), std::to_string(r->vsipport.count));
        for (size_t i = 0; i < std::size(r->vsipport.element); ++i) {
            const vsipport_rule &s = r->vsipport.element[i];
            std::string at = "vsipport.element[" + std::to_string(i) + "].";
            EXPECT_EQ(p.at(at + "id"), std::to_string(s.id));
            EXPECT_EQ(p.at(at + "lock_location"), std::to_string(s.lock_location));
            EXPECT_EQ(p.at(at + "devinnerfromport"), std::to_string(s.devinnerfromport));
            EXPECT_EQ(p.at(at + "devexterntoport"), std::to_string(s.devexterntoport));
            EXPECT_EQ(p.at(at + "devip"), c_library_dotted(s.devip.v4));
            EXPECT_EQ(p.at(at + "protocol"), std::to_string(int(s.protocol)));
        }
    }
}

// The C library's forms of the members the wireless and LAN views print with the library's
// own formatting: "%02X" MACs, "%llu" and "%u" counts, inet_ntop's IPv6 addresses.
std::string c_library_u64(uint64_t v) {
    char text[24];
    std::snprintf(text, sizeof text, "%llu", static_cast<unsigned long long>(v));
    return text;
}
std::string c_library_ipv6(const ip6addr_field &a) {
    char text[INET6_ADDRSTRLEN];
    return inet_ntop(AF_INET6, a.v6, text, sizeof text);
}

// An IPv6 address with runs of zero groups where the compressed form has choices to make,
// IPv4-mapped and IPv4-compatible forms, or random bytes.
void random_ipv6(std::mt19937 &rng, ip6addr_field &a, int kind) {
    std::memset(a.v6, 0, sizeof a.v6);
    for (int group = 0; group < 8; ++group) {
        bool zero = kind % 2 ? rng() % 2 : rng() % 5 == 0;
        uint16_t w = zero ? 0 : uint16_t(rng() >> (rng() % 16));
        a.v6[2 * group] = uint8_t(w >> 8);
        a.v6[2 * group + 1] = uint8_t(w);
    }
    if (kind % 7 == 2) { // ::ffff:a.b.c.d, ::a.b.c.d, ::0.0.0.1 and neighbours
        std::memset(a.v6, 0, 12);
        if (rng() % 2) a.v6[10] = a.v6[11] = 0xff;
        if (rng() % 3 == 0) std::memset(a.v6 + 12, 0, 3);
        if (rng() % 4 == 0) a.v6[9] = 1;
    }
}

TEST(JsonWriter, MacsCountsAndIpv6AsTheCLibraryPrintsThem) {
    wmtest::SeededRandom rng;
    const uint64_t extremes[] = {0, 9, 10, UINT32_MAX, uint64_t(UINT32_MAX) + 1, UINT64_MAX};
    for (int round = 0; round < 4; ++round) {
        auto w = std::make_unique<wifi_config>();
        std::memset(w.get(), 0, sizeof *w);
        int n = 0;
        for (wifi_radio &r : w->m_radio)
            for (wifi_vap &v : r.m_vap) {
                for (uint8_t &b : v.m_bssid.mac)
                    b = uint8_t(rng());
                v.m_tx_bytes = n < int(std::size(extremes))
                                   ? extremes[n]
                                   : uint64_t(rng()) << (rng() % 33) | rng();
                v.m_rx_bytes = uint64_t(rng()) << 32 | rng();
                v.m_tx_pkts = uint32_t(rng());
                ++n;
            }
        viewtest::Parsed p = viewtest::parse(viewtest::print(
            +[](const wifi_config *c) { printf_WiFi_json(c, WEBMGMT_WIFI_RADIO_COUNT); }, *w));
        ASSERT_EQ(p.status, 0) << p.message;
        for (size_t r = 0; r < std::size(w->m_radio); ++r)
            for (size_t i = 0; i < std::size(w->m_radio[r].m_vap); ++i) {
                const wifi_vap &v = w->m_radio[r].m_vap[i];
                std::string at =
                    "m_radio[" + std::to_string(r) + "].m_vap[" + std::to_string(i) + "].";
                EXPECT_EQ(p.at(at + "m_bssid"), wmtest::mac_text(v.m_bssid.mac));
                EXPECT_EQ(p.at(at + "m_tx_bytes"), c_library_u64(v.m_tx_bytes));
                EXPECT_EQ(p.at(at + "m_rx_bytes"), c_library_u64(v.m_rx_bytes));
                EXPECT_EQ(p.at(at + "m_tx_pkts"), c_library_u64(v.m_tx_pkts));
            }
    }
    for (int round = 0; round < 24; ++round) {
        auto l = std::make_unique<lan_config>();
        std::memset(l.get(), 0, sizeof *l);
        ip6addr_field *fields[] = {&l->ipaddr6, &l->ipaddr6_local, &l->gateway6,   &l->dns61,
                                   &l->dns62,   &l->dhcp6_ipstart, &l->dhcp6_ipend};
        const char *keys[] = {"ipaddr6", "ipaddr6_local", "gateway6",   "dns61",
                              "dns62",   "dhcp6_ipstart", "dhcp6_ipend"};
        int kind = round;
        for (ip6addr_field *f : fields)
            random_ipv6(rng, *f, kind++);
        if (round == 0) std::memset(l->ipaddr6.v6, 0, 16); // "::"
        viewtest::Parsed p = viewtest::parse(viewtest::print(printf_Lan_json, *l));
        ASSERT_EQ(p.status, 0) << p.message;
        for (size_t i = 0; i < std::size(fields); ++i)
            EXPECT_EQ(p.at(keys[i]), c_library_ipv6(*fields[i])) << keys[i];
    }
}

// Online times against the C library's formatted print, at random and at the boundaries.
TEST(JsonWriter, OnlineTimesAsTheCLibraryPrintsThem) {
    std::mt19937 rng(std::random_device{}());
    for (int i = 0; i < 20000; ++i) {
        uint32_t s = i < 200 ? uint32_t(86400 * (i / 4) + (i % 4 < 2 ? i % 4 : 86400 - i % 4 + 1))
                             : uint32_t(rng() >> (rng() % 32));
        char expected[30];
        int expected_length =
            s < 86400 ? std::snprintf(expected, sizeof expected, "%u:%02u:%02u", s / 3600,
                                      (s % 3600) / 60, s % 60)
                      : std::snprintf(expected, sizeof expected,
                                      s / 86400 == 1 ? "%uDay %u:%02u:%02u" : "%uDays %u:%02u:%02u",
                                      s / 86400, (s % 86400) / 3600, (s % 3600) / 60, s % 60);
        char out[30];
        std::memset(out, 'x', sizeof out);
        ASSERT_EQ(get_runtime_web(s, out), expected_length) << s;
        ASSERT_STREQ(out, expected) << s;
    }
}

// A CGI program prints its header with stdio, then the view, then more text: the three
// arrive in that order whether stdout is a buffered pipe, line-buffered or unbuffered.
TEST(JsonWriter, ViewBytesStayInOrderWithTheProgramsOwnOutput) {
    misc_config m{};
    std::memset(&m, 0, sizeof m);
    std::snprintf(m.sys_user.rootname, sizeof m.sys_user.rootname, "admin");
    m.sys_ntp.ntp_server_mode = -7;
    std::string view = viewtest::print(printf_Misc_json, m);
    ASSERT_GT(view.size(), 1000u);
    for (int mode : {_IOFBF, _IOLBF, _IONBF}) {
        SCOPED_TRACE(mode);
        std::string out = wmtest::run_in_child([&] {
                              std::setvbuf(stdout, nullptr, mode, mode == _IONBF ? 0 : 64);
                              std::printf("Content-Type: application/json\r\n\r\n");
                              printf_Misc_json(&m);
                              std::putchar('\n');
                              printf_Misc_json(&m);
                              std::fputs("<end>", stdout);
                              return 0;
                          }).out;
        EXPECT_EQ(out, "Content-Type: application/json\r\n\r\n" + view + "\n" + view + "<end>");
    }
}

} // namespace
