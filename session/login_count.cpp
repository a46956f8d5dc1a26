// The login attempt counter file ("<time> <count>") and the clock the sessions use.
#include <cerrno>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/time.h>
#include <unistd.h>

#include "session/scan.h"
#include "sys/support/raii.h"
#include "webmgmt.h"

namespace {

constexpr size_t kLineSize = 100; // the first line, as fgets reads it

// "%d %d" on the first line: each value is stored only when it is there.
void scan_count_line(const char *line, int32_t *time, int32_t *count) {
    int32_t value = 0;
    const char *rest = line;
    if (!wm::scan_int32(line, value, &rest)) return;
    if (time) *time = value;
    if (wm::scan_int32(rest, value) && count) *count = value;
}

// A whole-file lock on the counter itself, of the open file description, so that closing
// another descriptor of the file in the same process never drops it.
bool lock_counter(int fd, short type) {
    struct flock fl {};
    fl.l_type = type;
    fl.l_whence = SEEK_SET;
    int rc;
    do
        rc = ::fcntl(fd, type == F_UNLCK ? F_OFD_SETLK : F_OFD_SETLKW, &fl);
    while (rc < 0 && errno == EINTR);
    return rc == 0;
}

class CounterLock {
  public:
    CounterLock(int fd, short type) : fd_(fd) { locked_ = fd >= 0 && lock_counter(fd, type); }
    CounterLock(const CounterLock &) = delete;
    CounterLock &operator=(const CounterLock &) = delete;
    ~CounterLock() {
        if (locked_) lock_counter(fd_, F_UNLCK);
    }
    bool locked() const { return locked_; }

  private:
    int fd_;
    bool locked_ = false;
};

// The first line of the open counter, terminated; empty when there is none.
void read_line(int fd, char (&line)[kLineSize]) {
    ssize_t n;
    do
        n = ::pread(fd, line, sizeof line - 1, 0);
    while (n < 0 && errno == EINTR);
    line[n > 0 ? n : 0] = '\0';
    if (char *end = std::strchr(line, '\n')) end[1] = '\0';
}

// Rewrites the counter in place, under the caller's lock. The file keeps its blocks, so
// the count still moves on a full filesystem, and only the first line is ever read: a
// shorter new line followed by the rest of an old one reads as the new line even if the
// truncation is never reached. False when the line could not be written.
bool write_line(int fd, int32_t time, int32_t count) {
    char line[32];
    int n = std::snprintf(line, sizeof line, "%" PRId32 " %" PRId32 "\n", time, count);
    ssize_t written;
    do
        written = ::pwrite(fd, line, size_t(n), 0);
    while (written < 0 && errno == EINTR);
    if (written != n) return false;
    if (::ftruncate(fd, n) != 0) return false;
    return ::fdatasync(fd) == 0;
}

// The counter opened for rewriting: private to its owner when it is created here.
wm::UniqueFd open_for_update(const char *path) {
    return wm::UniqueFd(::open(path, O_RDWR | O_CREAT | O_CLOEXEC | O_NOCTTY, 0600));
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
    wm::UniqueFd fd(::open(path, O_RDONLY | O_CLOEXEC | O_NOCTTY));
    if (!fd) return;
    // Shared with other readers, never in the middle of a rewrite.
    CounterLock lock(fd.get(), F_RDLCK);
    char line[kLineSize];
    read_line(fd.get(), line);
    if (line[0]) scan_count_line(line, time, count);
}

void save_count(const char *path, int32_t time, int32_t count) {
    if (!path) return;
    wm::UniqueFd fd = open_for_update(path);
    CounterLock lock(fd.get(), F_WRLCK);
    if (!lock.locked()) return;
    write_line(fd.get(), time, count);
}

// Read, add one and write back under one exclusive lock: attempts made at the same moment
// by several processes are each counted.
void login_add(const char *path) {
    if (!path) return;
    wm::UniqueFd fd = open_for_update(path);
    CounterLock lock(fd.get(), F_WRLCK);
    if (!lock.locked()) return;
    int32_t now = get_curr_time();
    int32_t time = 0, count = 0;
    char line[kLineSize];
    read_line(fd.get(), line);
    if (line[0]) scan_count_line(line, &time, &count);
    if (count < INT32_MAX) // a count at the limit stays there rather than wrapping
        ++count;
    write_line(fd.get(), now, count);
}

} // extern "C"
