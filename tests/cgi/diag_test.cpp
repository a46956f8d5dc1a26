// Diagnostic output: byte dumps on the page, the log file, the MAC-style formatter and
// the page selector.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <sys/stat.h>

#include "support/harness.h"
#include "webmgmt.h"

namespace {

using wmtest::run_in_child;

std::string hex(const std::string &bytes) {
    std::string out;
    char item[3];
    for (unsigned char c : bytes) {
        snprintf(item, sizeof item, "%02x", c);
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

template <typename Print> std::string printed(Print print, const std::string &bytes) {
    return run_in_child([&] {
               print(bytes.data(), int(bytes.size()));
               return 0;
           })
        .out;
}

TEST(PrintHexString, WholeUpTo39BytesAbbreviatedFrom40) {
    EXPECT_EQ(printed(print_hex_string, ""), "<empty string>");
    EXPECT_EQ(printed(print_hex_string, std::string("\x00\x0f\xff", 3)), "000fff");
    std::string b39 = bytes_of(39), b40 = bytes_of(40), b200 = bytes_of(200);
    EXPECT_EQ(printed(print_hex_string, b39), hex(b39));
    EXPECT_EQ(printed(print_hex_string, b39).size(), 78u);
    EXPECT_EQ(printed(print_hex_string, b40),
              hex(b40.substr(0, 10)) + " ... " + hex(b40.substr(30)) + " [40 bytes]");
    EXPECT_EQ(printed(print_hex_string, b200),
              hex(b200.substr(0, 10)) + " ... " + hex(b200.substr(190)) + " [200 bytes]");
}

TEST(PrintToString, CharactersWithTheSameAbbreviation) {
    std::string t39(39, 'a'), t45;
    for (int i = 0; i < 45; ++i)
        t45 += char('A' + i % 26);
    EXPECT_EQ(printed(print_to_string, ""), "<empty string>");
    EXPECT_EQ(printed(print_to_string, t39), t39);
    EXPECT_EQ(printed(print_to_string, t45),
              t45.substr(0, 20) + " ... " + t45.substr(25) + " [45 bytes]");
    // Every byte is printed as a character, a zero byte too.
    std::string with_nul("a\0b", 3);
    EXPECT_EQ(printed(print_to_string, with_nul), with_nul);
}

TEST(PrintString, SixteenBytesALine) {
    std::string b16 = bytes_of(16), b17 = bytes_of(17);
    std::string line16;
    for (unsigned char c : b16) {
        char item[4];
        snprintf(item, sizeof item, "%02x ", c);
        line16 += item;
    }
    EXPECT_EQ(printed(print_string, ""), "\n\n");
    EXPECT_EQ(printed(print_string, b16), "\n" + line16 + "\n\n");
    EXPECT_EQ(printed(print_string, b17), "\n" + line16 + "\nb0 \n");
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
        auto set = [](const char *name, const char *v) {
            if (v)
                setenv(name, v, 1);
            else
                unsetenv(name);
        };
        set("REQUEST_METHOD", c.method);
        set("QUERY_STRING", c.query);
        char out[64] = "untouched";
        char *r = gethtmlpage(out);
        if (c.want) {
            EXPECT_EQ(r, out);
            EXPECT_STREQ(out, c.want);
        } else {
            EXPECT_EQ(r, nullptr);
        }
    }
    unsetenv("REQUEST_METHOD");
    unsetenv("QUERY_STRING");
}

TEST(DFPrintf, AppendsWithoutANewline) {
    wmtest::TempRoot root;
    std::string log = root.path("/tmp/system.log");
    DFPrintf(stderr, "a%d", 1);
    DFPrintf(stderr, "%s\n", "b");
    DFPrintf(stderr, "c");
    EXPECT_EQ(wmtest::read_file(log), "a1b\nc");
    unlink(log.c_str());
    std::string longer(2000, 'x');
    DFPrintf(stderr, "%s", longer.c_str());
    EXPECT_EQ(wmtest::read_file(log), std::string(1023, 'x'));
    unlink(log.c_str());
    DPrint_hex_string("\x01\x02\xff", 3);
    EXPECT_EQ(wmtest::read_file(log), "0102ff");
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

TEST(GetBuffer, ZeroedAndFreed) {
    auto *p = static_cast<unsigned char *>(get_buffer(64));
    ASSERT_NE(p, nullptr);
    for (int i = 0; i < 64; ++i)
        EXPECT_EQ(p[i], 0);
    EXPECT_EQ(free_buffer(p, 64), 0);
    EXPECT_EQ(free_buffer(nullptr, 0), 0);
}

} // namespace
