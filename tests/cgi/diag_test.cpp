// Diagnostic output: byte dumps on the page and in the log file, the MAC-style formatter
// and the page selector.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "support/harness.h"
#include "webmgmt.h"

namespace {

std::string hex(const std::string &bytes, const char *format = "%02x") {
    std::string out;
    char item[4];
    for (unsigned char c : bytes) {
        snprintf(item, sizeof item, format, c);
        out += item;
    }
    return out;
}

std::string bytes_of(int n) {
    std::string s;
    for (int i = 0; i < n; ++i)
        s += char(0xa0 + i);
    return s;
}

TEST(ByteDumps, WholeUpTo39BytesAbbreviatedFrom40) {
    std::string b16 = bytes_of(16), b17 = bytes_of(17), b39 = bytes_of(39), b40 = bytes_of(40),
                b200 = bytes_of(200), t45;
    for (int i = 0; i < 45; ++i)
        t45 += char('A' + i % 26);
    struct Case {
        void (*print)(const void *, int);
        std::string bytes, want;
    } cases[] = {
        {print_hex_string, "", "<empty string>"},
        {print_hex_string, std::string("\x00\x0f\xff", 3), "000fff"},
        {print_hex_string, b39, hex(b39)},
        {print_hex_string, b40,
         hex(b40.substr(0, 10)) + " ... " + hex(b40.substr(30)) + " [40 bytes]"},
        {print_hex_string, b200,
         hex(b200.substr(0, 10)) + " ... " + hex(b200.substr(190)) + " [200 bytes]"},
        // Characters, with the same abbreviation; a zero byte is printed too.
        {print_to_string, "", "<empty string>"},
        {print_to_string, std::string(39, 'a'), std::string(39, 'a')},
        {print_to_string, t45, t45.substr(0, 20) + " ... " + t45.substr(25) + " [45 bytes]"},
        {print_to_string, std::string("a\0b", 3), std::string("a\0b", 3)},
        // Sixteen bytes a line.
        {print_string, "", "\n\n"},
        {print_string, b16, "\n" + hex(b16, "%02x ") + "\n\n"},
        {print_string, b17, "\n" + hex(b16, "%02x ") + "\nb0 \n"},
    };
    for (const auto &c : cases) {
        auto r =
            wmtest::run_in_child([&] { return c.print(c.bytes.data(), int(c.bytes.size())), 0; });
        EXPECT_EQ(r.out, c.want) << c.bytes.size() << " bytes";
    }
}

TEST(ByteDumps, LogFileAppendsWithoutANewline) {
    wmtest::TempRoot root;
    std::string log = root.path("/tmp/system.log");
    DFPrintf(stderr, "a%d", 1);
    DFPrintf(stderr, "%s\n", "b");
    DFPrintf(stderr, "c");
    EXPECT_EQ(wmtest::read_file(log), "a1b\nc");
    unlink(log.c_str());
    DFPrintf(stderr, "%s", std::string(2000, 'x').c_str());
    EXPECT_EQ(wmtest::read_file(log), std::string(1023, 'x'));
    unlink(log.c_str());
    std::string b40 = bytes_of(40);
    DPrint_hex_string(b40.data(), 40);
    EXPECT_EQ(wmtest::read_file(log),
              hex(b40.substr(0, 10)) + " ... " + hex(b40.substr(30)) + " [40 bytes]");
    // Without a /tmp to write to, nothing happens.
    unlink(log.c_str());
    rmdir(root.path("/tmp").c_str());
    DFPrintf(stderr, "lost");
    EXPECT_FALSE(wmtest::file_exists(log));
}

TEST(PrintByteToString, MacAddressesBackToBack) {
    const unsigned char macs[12] = {0x00, 0x11, 0x22, 0x33, 0x44, 0x55,
                                    0x66, 0x77, 0x88, 0x99, 0xaa, 0xbb};
    char text[64] = "list=";
    EXPECT_EQ(print_byte_to_string(text, macs, 12), 0);
    EXPECT_STREQ(text, "list=00:11:22:33:44:55 66:77:88:99:AA:BB");
    char one[16] = "";
    EXPECT_EQ(print_byte_to_string(one, macs + 10, 1), 0);
    EXPECT_STREQ(one, "AA");
    char none[8] = "keep";
    EXPECT_EQ(print_byte_to_string(none, macs, 0), 0);
    EXPECT_EQ(print_byte_to_string(none, macs, -3), 0);
    EXPECT_STREQ(none, "keep");
}

TEST(Gethtmlpage, GetWithPageOnly) {
    struct Case {
        const char *method, *query;
        const char *want; // null: no page
    } cases[] = {
        {"GET", "page=a&b=c", "a&b=c"}, {"get", "x=1&page=p.htm", "p.htm"},
        {"GeT", "apage=x", "x"},        {"GET", "page=", ""},
        {"POST", "page=a", nullptr},    {"GET", "pages=a", nullptr},
        {"GET", nullptr, nullptr},      {nullptr, "page=a", nullptr},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(std::string(c.method ? c.method : "-") + " " + (c.query ? c.query : "-"));
        for (auto [name, value] :
             {std::pair{"REQUEST_METHOD", c.method}, {"QUERY_STRING", c.query}})
            value ? setenv(name, value, 1) : unsetenv(name);
        char out[64] = "untouched";
        char *r = gethtmlpage(out);
        EXPECT_EQ(r, c.want ? out : nullptr);
        EXPECT_STREQ(out, c.want ? c.want : "untouched");
    }
    unsetenv("REQUEST_METHOD");
    unsetenv("QUERY_STRING");
}

TEST(GetBuffer, ZeroedAndFreed) {
    auto *p = static_cast<unsigned char *>(get_buffer(64));
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(std::string(reinterpret_cast<char *>(p), 64), std::string(64, '\0'));
    EXPECT_EQ(free_buffer(p, 64), 0);
    EXPECT_EQ(free_buffer(nullptr, 0), 0);
}

} // namespace
