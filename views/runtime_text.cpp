// Online times for the pages.
#include <cstdint>
#include <cstdio>

#include "webmgmt.h"

extern "C" {

int get_runtime_web(uint32_t seconds, char *out) {
    constexpr uint32_t kDay = 86400;
    // The pages give 30 bytes; the longest text ("49710Days 23:59:59") needs 19 with its end.
    constexpr std::size_t kRoom = 30;
    const unsigned hours = (seconds % kDay) / 3600, minutes = (seconds % 3600) / 60,
                   secs = seconds % 60;
    if (seconds < kDay)
        return std::snprintf(out, kRoom, "%u:%02u:%02u", seconds / 3600, minutes, secs);
    const unsigned days = seconds / kDay;
    return std::snprintf(out, kRoom, days == 1 ? "%uDay %u:%02u:%02u" : "%uDays %u:%02u:%02u", days,
                         hours, minutes, secs);
}

} // extern "C"
