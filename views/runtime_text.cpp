// Online times for the pages.
#include <cstdint>
#include <cstring>

#include "webmgmt.h"

namespace {

// The decimal digits of `value` at `p`; returns the end.
char *put_decimal(char *p, unsigned value) {
    char digits[10];
    char *d = digits + sizeof digits;
    do {
        *--d = char('0' + value % 10);
        value /= 10;
    } while (value);
    size_t n = size_t(digits + sizeof digits - d);
    std::memcpy(p, d, n);
    return p + n;
}

// Two digits, as "%02u" prints a value below 100.
char *put_two(char *p, unsigned value) {
    *p++ = char('0' + value / 10);
    *p++ = char('0' + value % 10);
    return p;
}

} // namespace

extern "C" {

// "%u:%02u:%02u" below a day, "%uDay %u:%02u:%02u" or "%uDays ..." from one day on. The pages
// give 30 bytes; the longest text ("49710Days 23:59:59") needs 19 with its end, so the
// length returned is the length written, as snprintf's would be.
int get_runtime_web(uint32_t seconds, char *out) {
    constexpr uint32_t kDay = 86400;
    char *p = out;
    unsigned hours = seconds / 3600;
    if (seconds >= kDay) {
        const unsigned days = seconds / kDay;
        p = put_decimal(p, days);
        std::memcpy(p, days == 1 ? "Day " : "Days ", days == 1 ? 4 : 5);
        p += days == 1 ? 4 : 5;
        hours = (seconds % kDay) / 3600;
    }
    p = put_decimal(p, hours);
    *p++ = ':';
    p = put_two(p, (seconds % 3600) / 60);
    *p++ = ':';
    p = put_two(p, seconds % 60);
    *p = '\0';
    return int(p - out);
}

} // extern "C"
