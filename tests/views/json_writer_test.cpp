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
    std::random_device seed_source;
    unsigned seed = seed_source();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 rng(seed);
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
