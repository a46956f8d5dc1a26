// save_data_base: every conversion code on members of the widths the records use, with
// guard bytes around each member so that any write outside it shows.
#include <arpa/inet.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "webmgmt.h"

namespace {

constexpr char kGuard = '\xA5', kPreset = '\x5A';

// A member's bytes as the target stores a number of type T.
template <typename T> std::string bytes_of(T v) {
    return std::string(reinterpret_cast<const char *>(&v), sizeof v);
}
std::string v6(const char *text) { // the reference parse: inet_pton
    unsigned char a[16];
    EXPECT_EQ(inet_pton(AF_INET6, text, a), 1) << text;
    return std::string(reinterpret_cast<const char *>(a), 16);
}
const std::string kKeep4(4, kPreset), kKeep8(8, kPreset), kNul8(8, '\0');

struct Case {
    int16_t code;
    uint16_t size; // the row's member size
    const char *value;
    std::string stored; // the first bytes of the member afterwards; the rest stays as preset
};

// Numbers: codes 1, 3, 7, 9 store 32 bits, 2 and 11 the low 16, 8 all 64; unparsable text is
// 0. Code 4 copies the value cut to the member (terminated); code 5 is strncpy, so a value as
// long as the member fills it without terminator; both clear it first. A text member of 0 or
// 1 bytes takes a one-byte number. Code 6: inet_addr's result (all ones when invalid) in the
// second word. Code 12: the 16 address bytes after the two leading words; a bad text changes
// nothing. Code 10: the member is cleared, then parsed as a MAC. Unknown codes and members
// narrower than the code's width are left alone.
const Case kCases[] = {
    {1, 4, "42", bytes_of<int32_t>(42)},
    {1, 4, "-7", bytes_of<int32_t>(-7)},
    {1, 4, "12abc", bytes_of<int32_t>(12)},
    {1, 4, "abc", bytes_of<int32_t>(0)},
    {9, 4, "2147483647", bytes_of<int32_t>(2147483647)},
    {3, 4, "123456789", bytes_of<int32_t>(123456789)},
    {7, 4, "-5", bytes_of<int32_t>(-5)},
    {2, 2, "70000", bytes_of<int16_t>(4464)},
    {2, 2, "-1", bytes_of<int16_t>(-1)},
    {11, 2, "65535", bytes_of<int16_t>(-1)},
    {11, 2, "300", bytes_of<int16_t>(300)},
    {8, 8, "9000000000", bytes_of<int64_t>(9000000000LL)},
    {8, 8, "-9000000000", bytes_of<int64_t>(-9000000000LL)},
    {4, 8, "abc", std::string("abc\0\0\0\0\0", 8)},
    {4, 8, "abcdefg", std::string("abcdefg\0", 8)},
    {4, 8, "abcdefgh", std::string("abcdefg\0", 8)},
    {4, 8, "a much longer value than eight", std::string("a much \0", 8)},
    {4, 8, "", kNul8},
    {5, 8, "abc", std::string("abc\0\0\0\0\0", 8)},
    {5, 8, "abcdefgh", "abcdefgh"},
    {5, 8, "abcdefghijk", "abcdefgh"},
    {5, 8, "", kNul8},
    {4, 0, "258", "\x02"},
    {4, 1, "258", "\x02"},
    {5, 0, "258", "\x02"},
    {5, 1, "258", "\x02"},
    {6, 16, "192.168.1.1", kKeep4 + "\xC0\xA8\x01\x01"},
    {6, 16, "0.0.0.0", kKeep4 + std::string(4, '\0')},
    {6, 16, "255.255.255.255", kKeep4 + std::string(4, '\xFF')},
    {6, 16, "not an address", kKeep4 + std::string(4, '\xFF')},
    {6, 16, "", kKeep4 + std::string(4, '\xFF')},
    {6, 16, "1.2.3.4.5", kKeep4 + std::string(4, '\xFF')},
    {12, 28, "2001:db8::1", kKeep8 + v6("2001:db8::1")},
    {12, 28, "::", kKeep8 + v6("::")},
    {12, 28, "fe80::1:2:3:4", kKeep8 + v6("fe80::1:2:3:4")},
    {12, 28, "::ffff:192.168.0.1", kKeep8 + v6("::ffff:192.168.0.1")},
    {12, 28, "2001:db8::1::2", ""},
    {12, 28, "192.168.0.1", ""},
    {12, 28, "", ""},
    {10, 6, "00:1A:2b:3C:4d:5E", std::string("\x00\x1A\x2B\x3C\x4D\x5E", 6)},
    {10, 6, "001A2B3C4D5E", std::string("\x00\x1A\x2B\x3C\x4D\x5E", 6)},
    {10, 6, "FF-FF-FF-FF-FF-FF", std::string(6, '\xFF')},
    {10, 6, "garbage", std::string(6, '\0')},
    {0, 4, "1", ""},
    {13, 4, "1", ""},
    {-1, 4, "1", ""},
    {1, 2, "1", ""},
    {8, 4, "1", ""},
    {6, 4, "1", ""},
    {10, 5, "1", ""},
    {12, 16, "1", ""},
    {2, 1, "1", ""},
};

TEST(SaveDataBase, EveryCodeStaysInsideItsMember) {
    for (const Case &c : kCases) {
        SCOPED_TRACE("code " + std::to_string(c.code) + " size " + std::to_string(c.size) +
                     " value '" + c.value + "'");
        char zone[16 + 32 + 16];
        std::memset(zone, kGuard, sizeof zone);
        std::memset(zone + 16, kPreset, 32);
        field_desc row{};
        std::strcpy(row.name, "v");
        row.address = zone + 16;
        row.type = c.code;
        row.size = c.size;
        save_data_base(row, c.value);
        std::string expect = std::string(16, kGuard) + c.stored +
                             std::string(32 - c.stored.size(), kPreset) + std::string(16, kGuard);
        EXPECT_EQ(std::string(zone, sizeof zone), expect);
    }
    // No value, or no member: nothing changes.
    char member[4] = {1, 2, 3, 4};
    field_desc row{};
    row.address = member;
    row.type = 1;
    row.size = 4;
    save_data_base(row, nullptr);
    row.address = nullptr;
    save_data_base(row, "5");
    EXPECT_EQ(std::string(member, 4), std::string("\1\2\3\4", 4));
}

} // namespace