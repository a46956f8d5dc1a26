// Decimal text to the integer widths of the device, the same on every build.
#pragma once

#include <cstdint>
#include <cstdlib>

namespace wm {

// atoi/atol as the 32-bit device computes them: out-of-range text saturates at the 32-bit
// limits (a 64-bit host's atol would wrap it instead when it is stored in 32 bits).
inline int32_t text_to_int32(const char *text) {
    long long v = std::strtoll(text, nullptr, 10);
    if (v > INT32_MAX) return INT32_MAX;
    if (v < INT32_MIN) return INT32_MIN;
    return int32_t(v);
}

inline int64_t text_to_int64(const char *text) {
    return std::strtoll(text, nullptr, 10);
}

} // namespace wm
