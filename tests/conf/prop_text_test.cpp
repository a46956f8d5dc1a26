// Text helpers beside property files, checked against the shell, python3 and known masks.
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/harness.h"
#include "webmgmt.h"

TEST(PropText, StripOneCharacterEachEnd) {
    struct Case {
        const char *in, *out;
    } cases[] = {{"\"a b\"", "a b"}, {"\"\"x\"\"", "\"x\""}, {"\"", ""}, {"\"\"", ""},
                 {"a\"", "a"},       {"\"a", "a"},           {"", ""},   {"abc", "abc"}};
    for (const auto &c : cases) {
        std::vector<char> buf(c.in, c.in + strlen(c.in) + 1);
        EXPECT_STREQ(strip(buf.data(), '"'), c.out) << c.in;
    }
}

// The shell round trip of add_escape is in prop_file_test; these are the escapes it leaves.
TEST(PropText, EscapeEdges) {
    char out[16];
    EXPECT_STREQ(add_escape("a$b", out), "a\\$b");
    EXPECT_STREQ(strip_escape("\\n\\x\\\\", out), "\\n\\x\\");
    EXPECT_STREQ(strip_escape("end\\", out), "end\\");
}

TEST(PropText, NetmaskPrefixLength) {
    for (int bits = 0; bits <= 32; ++bits) {
        uint32_t mask = bits ? ~0u << (32 - bits) : 0;
        char text[20];
        snprintf(text, sizeof text, "%u.%u.%u.%u", mask >> 24, (mask >> 16) & 255,
                 (mask >> 8) & 255, mask & 255);
        EXPECT_EQ(calc_netpriexlength(text), bits) << text;
    }
    // Octets that are not mask octets count 8 minus their trailing zero bits.
    EXPECT_EQ(calc_netpriexlength("1.3.0.0"), 16);
    EXPECT_EQ(calc_netpriexlength("256.255.0.0"), 8);
    EXPECT_EQ(calc_netpriexlength("255.255"), 16);
    EXPECT_EQ(calc_netpriexlength(""), 0);
}

TEST(PropText, HexConversions) {
    struct Case {
        char c;
        int v;
    } digits[] = {{'0', 0},  {'9', 9},  {'a', 10}, {'f', 15},
                  {'A', 10}, {'F', 15}, {'g', -1}, {' ', -1}};
    for (const auto &d : digits)
        EXPECT_EQ(hex2int(d.c), d.v) << d.c;

    const unsigned char bytes[] = {0x00, 0x7f, 0xab, 0xff, 'A'};
    char *hex = ascii2hex(bytes, 5, nullptr);
    auto py = wmtest::run_shell("python3 -c \"print(bytes([0,0x7f,0xab,0xff,65]).hex().upper(), "
                                "end='')\"");
    EXPECT_EQ(std::string(hex), py.out);
    free(hex);
    char out[16] = "garbage";
    EXPECT_STREQ(ascii2hex(bytes + 4, 1, out), "41");
    hex = ascii2hex(bytes, 0, nullptr);
    EXPECT_STREQ(hex, "");
    free(hex);

    char text[8] = {};
    EXPECT_STREQ(hex2ascii("48692a", text), "Hi*");
    char odd[8] = {};
    EXPECT_STREQ(hex2ascii("414", odd), "A");
}

TEST(PropText, FileCopy) {
    wmtest::TempRoot root;
    std::string src = root.path("/var/src"), dst = root.path("/var/dst");
    std::string content(10000, '\0');
    for (size_t i = 0; i < content.size(); ++i)
        content[i] = char(i * 7);
    wmtest::write_file(src, content);
    EXPECT_EQ(file_copy(src.c_str(), dst.c_str()), 1);
    EXPECT_EQ(wmtest::read_file(dst), content);
    EXPECT_EQ(file_copy(root.path("/var/none").c_str(), dst.c_str()), 0);
    EXPECT_EQ(file_copy(src.c_str(), root.path("/nodir/x").c_str()), 0);
}
