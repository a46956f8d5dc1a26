// save_data_base: every conversion code on members of the widths the records use, with
// guard bytes around each member so that any write outside it shows.
#include <arpa/inet.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "webmgmt.h"

namespace {

constexpr unsigned char kGuard = 0xA5;

// A member of N bytes between two guard zones, preset to `fill`.
template <size_t N> struct Guarded {
    unsigned char before[16];
    unsigned char member[N];
    unsigned char after[16];
    explicit Guarded(unsigned char fill = 0x5A) {
        std::memset(before, kGuard, sizeof before);
        std::memset(member, fill, sizeof member);
        std::memset(after, kGuard, sizeof after);
    }
    bool guards_intact() const {
        for (unsigned char c : before)
            if (c != kGuard) return false;
        for (unsigned char c : after)
            if (c != kGuard) return false;
        return true;
    }
    std::string bytes() const { return std::string(reinterpret_cast<const char *>(member), N); }
};

template <size_t N> field_desc row(int16_t code, Guarded<N> &g, uint16_t size = N) {
    field_desc r;
    std::memset(&r, 0, sizeof r);
    std::strcpy(r.name, "v");
    r.address = g.member;
    r.type = code;
    r.size = size;
    return r;
}

template <typename T, size_t N> T read_as(const Guarded<N> &g, size_t offset = 0) {
    T v;
    std::memcpy(&v, g.member + offset, sizeof v);
    return v;
}

struct NumberCase {
    int16_t code;
    const char *value;
    int64_t stored; // as the member's width reads it back
};

// Codes 1, 3, 7, 9: 32 bits; 2, 11: the low 16 bits; 8: 64 bits. Unparsable text is 0.
TEST(SaveDataBase, NumberCodesStoreTheirWidthOnly) {
    const NumberCase cases[] = {
        {1, "42", 42},
        {1, "-7", -7},
        {1, "12abc", 12},
        {1, "abc", 0},
        {9, "2147483647", 2147483647},
        {3, "123456789", 123456789},
        {7, "-5", -5},
        {2, "70000", 4464},
        {2, "-1", -1},
        {11, "65535", -1},
        {11, "300", 300},
        {8, "9000000000", 9000000000LL},
        {8, "-9000000000", -9000000000LL},
    };
    for (const NumberCase &c : cases) {
        SCOPED_TRACE(std::string("code ") + std::to_string(c.code) + " value " + c.value);
        Guarded<8> g(0x33);
        save_data_base(row(c.code, g,
                           c.code == 8                   ? 8
                           : c.code == 2 || c.code == 11 ? 2
                                                         : 4),
                       c.value);
        int64_t got = c.code == 8                   ? read_as<int64_t>(g)
                      : c.code == 2 || c.code == 11 ? read_as<int16_t>(g)
                                                    : read_as<int32_t>(g);
        EXPECT_EQ(got, c.stored);
        size_t width = c.code == 8 ? 8 : c.code == 2 || c.code == 11 ? 2 : 4;
        for (size_t i = width; i < 8; ++i)
            EXPECT_EQ(g.member[i], 0x33) << "byte " << i << " beyond the member changed";
        EXPECT_TRUE(g.guards_intact());
    }
}

TEST(SaveDataBase, IgnoredCodesAndNarrowMembersChangeNothing) {
    struct Case {
        int16_t code;
        uint16_t size;
    } cases[] = {{0, 4}, {13, 4}, {-1, 4}, {1, 2}, {8, 4}, {6, 4}, {10, 5}, {12, 16}, {2, 1}};
    for (const Case &c : cases) {
        SCOPED_TRACE(std::to_string(c.code) + "/" + std::to_string(c.size));
        Guarded<28> g(0x77);
        std::string before = g.bytes();
        save_data_base(row(c.code, g, c.size), "1");
        EXPECT_EQ(g.bytes(), before);
        EXPECT_TRUE(g.guards_intact());
    }
    Guarded<4> g(0x77);
    std::string before = g.bytes();
    save_data_base(row(1, g), nullptr);
    field_desc no_member = row(1, g);
    no_member.address = nullptr;
    save_data_base(no_member, "5");
    EXPECT_EQ(g.bytes(), before);
}

struct TextCase {
    int16_t code;
    const char *value;
    std::string stored; // all 8 bytes of the member
};

// Code 4 copies the value cut to the member (terminated); code 5 is strncpy over the member,
// so a value of 8 characters or more fills it without a terminator. Both clear it first.
TEST(SaveDataBase, TextCodesAreBoundedByTheMember) {
    const TextCase cases[] = {
        {4, "abc", std::string("abc\0\0\0\0\0", 8)},
        {4, "abcdefg", std::string("abcdefg\0", 8)},
        {4, "abcdefgh", std::string("abcdefg\0", 8)},
        {4, "a much longer value than eight", std::string("a much \0", 8)},
        {4, "", std::string(8, '\0')},
        {5, "abc", std::string("abc\0\0\0\0\0", 8)},
        {5, "abcdefgh", "abcdefgh"},
        {5, "abcdefghijk", "abcdefgh"},
        {5, "", std::string(8, '\0')},
    };
    for (const TextCase &c : cases) {
        SCOPED_TRACE(std::string("code ") + std::to_string(c.code) + " value " + c.value);
        Guarded<8> g(0x5A);
        save_data_base(row(c.code, g), c.value);
        EXPECT_EQ(g.bytes(), c.stored);
        EXPECT_TRUE(g.guards_intact());
    }
}

// A text member of 0 or 1 bytes is a one-byte number (a switch or a small mode).
TEST(SaveDataBase, OneByteTextMembersTakeANumber) {
    for (int16_t code : {4, 5}) {
        for (uint16_t size : {0, 1}) {
            Guarded<4> g(0x11);
            save_data_base(row(code, g, size), "258");
            EXPECT_EQ(g.member[0], 2) << code << "/" << size; // 258 in one byte
            EXPECT_EQ(g.member[1], 0x11);
            EXPECT_TRUE(g.guards_intact());
        }
    }
}

// Code 6: inet_addr's result (all ones for an invalid text and for 255.255.255.255) in the
// second word; the leading word and the rest of the address member stay.
TEST(SaveDataBase, Ipv4GoesToTheSecondWord) {
    struct Case {
        const char *value;
        uint32_t v4; // network order
    } cases[] = {
        {"192.168.1.1", htonl(0xC0A80101)}, {"0.0.0.0", 0},
        {"10.0.0.255", htonl(0x0A0000FF)},  {"255.255.255.255", 0xFFFFFFFF},
        {"not an address", 0xFFFFFFFF},     {"", 0xFFFFFFFF},
        {"1.2.3.4.5", 0xFFFFFFFF},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.value);
        Guarded<sizeof(ipaddr_field)> g(0x66);
        save_data_base(row(6, g), c.value);
        EXPECT_EQ(read_as<uint32_t>(g, 0), 0x66666666u);
        EXPECT_EQ(read_as<uint32_t>(g, 4), c.v4);
        EXPECT_EQ(g.bytes().substr(8), std::string(8, '\x66'));
        EXPECT_TRUE(g.guards_intact());
    }
}

// Code 12: the 16 address bytes 8 bytes into the member; a bad text leaves it untouched.
TEST(SaveDataBase, Ipv6GoesAfterTheTwoLeadingWords) {
    const char *good[] = {"2001:db8::1", "::", "fe80::1:2:3:4", "::ffff:192.168.0.1"};
    for (const char *text : good) {
        SCOPED_TRACE(text);
        Guarded<sizeof(ip6addr_field)> g(0x44);
        save_data_base(row(12, g), text);
        unsigned char expect[16];
        ASSERT_EQ(inet_pton(AF_INET6, text, expect), 1);
        EXPECT_EQ(g.bytes().substr(0, 8), std::string(8, '\x44'));
        EXPECT_EQ(g.bytes().substr(8, 16), std::string(reinterpret_cast<char *>(expect), 16));
        EXPECT_EQ(g.bytes().substr(24), std::string(4, '\x44'));
        EXPECT_TRUE(g.guards_intact());
    }
    const char *bad[] = {"2001:db8::1::2", "192.168.0.1", "", "gggg::"};
    for (const char *text : bad) {
        SCOPED_TRACE(text);
        Guarded<sizeof(ip6addr_field)> g(0x44);
        std::string before = g.bytes();
        save_data_base(row(12, g), text);
        EXPECT_EQ(g.bytes(), before);
    }
}

// Code 10: the member is cleared, then str2mac parses the text into it.
TEST(SaveDataBase, MacIsClearedThenParsed) {
    struct Case {
        const char *value;
        std::string stored;
    } cases[] = {
        {"00:1A:2b:3C:4d:5E", std::string("\x00\x1A\x2B\x3C\x4D\x5E", 6)},
        {"001A2B3C4D5E", std::string("\x00\x1A\x2B\x3C\x4D\x5E", 6)},
        {"FF-FF-FF-FF-FF-FF", std::string(6, '\xFF')},
        {"garbage", std::string(6, '\0')},
        {"", std::string(6, '\0')},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.value);
        Guarded<6> g(0x99);
        save_data_base(row(10, g), c.value);
        EXPECT_EQ(g.bytes(), c.stored);
        EXPECT_TRUE(g.guards_intact());
    }
}

} // namespace
