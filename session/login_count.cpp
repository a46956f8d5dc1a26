// The login attempt counter file ("<time> <count>") and the clock the sessions use.
#include <cinttypes>
#include <cstdio>
#include <sys/time.h>
#include <unistd.h>

#include "session/scan.h"
#include "sys/support/files.h"
#include "sys/support/raii.h"
#include "webmgmt.h"

namespace {

// "%d %d" on the first line: each value is stored only when it is there.
void scan_count_line(const char *line, int32_t *time, int32_t *count) {
    int32_t value = 0;
    const char *rest = line;
    if (!wm::scan_int32(line, value, &rest)) return;
    if (time) *time = value;
    if (wm::scan_int32(rest, value) && count) *count = value;
}

} // namespace

extern "C" {

int32_t get_curr_time(void) {
    struct timeval now {};
    ::gettimeofday(&now, nullptr);
    // The device keeps seconds in a 32-bit long; the host's wider clock is cut the same way.
    return static_cast<int32_t>(static_cast<uint32_t>(now.tv_sec));
}

void read_count(const char *path, int32_t *time, int32_t *count) {
    if (!path) return;
    wm::UniqueFile file(std::fopen(path, "r"));
    char line[100];
    if (!file || !std::fgets(line, sizeof line, file.get())) return;
    scan_count_line(line, time, count);
}

void save_count(const char *path, int32_t time, int32_t count) {
    if (!path) return;
    wm::AtomicFile file(path);
    if (!file) return;
    std::fprintf(file.get(), "%" PRId32 " %" PRId32 "\n", time, count);
    file.commit();
}

void login_add(const char *path) {
    if (!path) return;
    int32_t now = get_curr_time();
    int32_t time = 0, count = 0;
    if (::access(path, F_OK) == 0) {
        read_count(path, &time, &count);
        if (count < INT32_MAX) // a count at the limit stays there rather than wrapping
            ++count;
    } else {
        count = 1;
    }
    save_count(path, now, count);
}

} // extern "C"
