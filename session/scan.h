// Reading the blank-separated fields of the session and counter files the way "%s" and
// "%d" read them, without writing past a field and with one result on every target.
#pragma once

#include <cstdint>
#include <string_view>

#include "sys/support/ascii.h"
#include "sys/support/text.h"

namespace wm {

// The next word of `rest` as "%s" reads it (leading blanks skipped); empty at the end.
inline std::string_view next_word(std::string_view &rest) {
    size_t start = 0;
    while (start < rest.size() && is_c_space(rest[start]))
        ++start;
    size_t end = start;
    while (end < rest.size() && !is_c_space(rest[end]))
        ++end;
    std::string_view word{rest.data() + start, end - start};
    rest = tail(rest, end);
    return word;
}

// The decimal number that starts `text` (blanks and a sign allowed), as "%d" / "%ld" read
// it. Values beyond 32 bits are clamped, as the device's 32-bit scanf stores them.
// Returns false, leaving `out` alone, when no digit follows; `*rest` gets the text after
// the number.
inline bool scan_int32(const char *text, int32_t &out, const char **rest = nullptr) {
    const char *end = nullptr;
    int64_t v = scan_decimal(text, &end);
    if (rest) *rest = end;
    if (end == text) return false;
    if (v > INT32_MAX) v = INT32_MAX;
    if (v < INT32_MIN) v = INT32_MIN;
    out = static_cast<int32_t>(v);
    return true;
}

} // namespace wm
