// The request path's own number reading agrees with the C library's strtoll: blanks, signs,
// no digits, values at and beyond the 64-bit limits, text after the number.
#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <string>

#include "sys/support/ascii.h"

namespace {

void expect_as_strtoll(const std::string &text) {
    char *libc_end = nullptr;
    long long expected = std::strtoll(text.c_str(), &libc_end, 10);
    const char *end = nullptr;
    int64_t got = wm::scan_decimal(text.c_str(), &end);
    EXPECT_EQ(got, expected) << '"' << text << '"';
    EXPECT_EQ(end - text.c_str(), libc_end - text.c_str()) << '"' << text << '"';
}

TEST(ScanDecimal, AgreesWithStrtoll) {
    for (const char *text :
         {"", "0", "42", "-42", "+42", " \t\n\v\f\r17x", "- 5", "+-5", "--5", "x12", "007",
          "9223372036854775807", "9223372036854775808", "-9223372036854775808",
          "-9223372036854775809", "99999999999999999999999", "-99999999999999999999999",
          "2147483648", "-", "+", " ", "12 34", "1e5", "0x1F"})
        expect_as_strtoll(text);
    // Short random texts over the characters that matter.
    std::mt19937 rng(7);
    const std::string alphabet = "0123456789 +-\t9x";
    for (int n = 0; n < 20000; ++n) {
        std::string text;
        for (size_t len = rng() % 24; len; --len)
            text += alphabet[rng() % alphabet.size()];
        expect_as_strtoll(text);
    }
}

} // namespace
