// Character tests of the C locale and "%d", done here: the request path needs them for a
// few bytes, and the C library's locale-aware and formatted forms cost a first-call binding
// and their own setup in every CGI process.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace wm {

// isspace() of the C locale: blank, tab, newline, vertical tab, form feed, carriage return.
constexpr bool is_c_space(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

constexpr char ascii_lower(char c) {
    return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c;
}

// strcasecmp() == 0 of the C locale.
constexpr bool equals_ascii_nocase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (ascii_lower(a[i]) != ascii_lower(b[i])) return false;
    return true;
}

// "%d" of `value` written at `p` (at most 11 bytes, no terminator); returns the end.
inline char *put_decimal(char *p, int32_t value) {
    char digits[11];
    char *d = digits + sizeof digits;
    // The magnitude as unsigned, so that INT32_MIN needs no special case.
    uint32_t magnitude = value < 0 ? 0u - uint32_t(value) : uint32_t(value);
    do {
        *--d = char('0' + magnitude % 10);
        magnitude /= 10;
    } while (magnitude);
    if (value < 0) *--d = '-';
    while (d < digits + sizeof digits)
        *p++ = *d++;
    return p;
}

// strtoll(text, end, 10) of the C locale: leading blanks, a sign, then digits; saturates at
// the 64-bit limits. `*end` is `text` when no digit follows.
inline int64_t scan_decimal(const char *text, const char **end) {
    const char *p = text;
    while (is_c_space(*p))
        ++p;
    const bool negative = *p == '-';
    if (*p == '-' || *p == '+') ++p;
    if (*p < '0' || *p > '9') {
        *end = text;
        return 0;
    }
    const uint64_t limit = negative ? uint64_t(INT64_MAX) + 1 : uint64_t(INT64_MAX);
    uint64_t magnitude = 0;
    for (; *p >= '0' && *p <= '9'; ++p) {
        unsigned digit = unsigned(*p - '0');
        magnitude = magnitude > (limit - digit) / 10 ? limit : magnitude * 10 + digit;
    }
    *end = p;
    return negative ? int64_t(0 - magnitude) : int64_t(magnitude);
}

} // namespace wm
