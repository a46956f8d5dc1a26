// The kernel's connection-tracking counters shown on the dashboard.
#include <cstdint>

#include "session/scan.h"
#include "sys/support/files.h"
#include "sys/support/paths.h"
#include "webmgmt.h"

namespace {

// The number that starts the first line of a /proc counter; 0 when it cannot be read.
int read_counter(const char *fixed) {
    char line[50]; // the first 49 characters are enough for any counter
    if (wm::read_file_text(wm::device_path(fixed).c_str(), line) < 0) return 0;
    int32_t value = 0;
    wm::scan_int32(line, value);
    return value;
}

} // namespace

extern "C" {

int get_current_link_count(void) {
    return read_counter(wm::fixed::kConntrackCount);
}

int get_current_link_count_max(void) {
    return read_counter(wm::fixed::kConntrackMax);
}

} // extern "C"
