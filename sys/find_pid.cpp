// The /proc scanner and the look-ups of processes by their short command name.
#include <cassert>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include "sys/support/paths.h"
#include "sys/support/raii.h"
#include "sys/support/text.h"
#include "webmgmt.h"

namespace wm {
namespace {

// One scan of /proc at a time, resumed across calls (and across callers) until it ends.
DIR *g_scan_dir = nullptr;
proc_entry g_entry;

constexpr int kStatLineSize = 1024;

bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

// The first line of /proc/<pid>/stat, at most 1023 characters.
bool read_stat_line(int pid, char (&line)[kStatLineSize]) {
    UniqueFile f(std::fopen(device_pathf("/proc/%d/stat", pid).c_str(), "r"));
    return f && std::fgets(line, sizeof line, f.get()) != nullptr;
}

// Fills the command name, state, parent, and resident size from a stat line. The name
// sits between the first "(" and the last ")", since the name itself may hold either.
bool parse_stat_line(char *line, proc_entry &e) {
    char *close = std::strrchr(line, ')');
    if (!close || close[1] != ' ') return false;
    *close = '\0';
    char *open = std::strchr(line, '(');
    if (!open) return false;
    // The kernel keeps names to 15 characters; the record always stays terminated.
    copy_bounded(e.short_cmd, std::string_view{open + 1});
    char letter = 0;
    int ppid = 0;
    long nice = 0, rss_pages = 0;
    int got = std::sscanf(close + 2,
                          "%c %d %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %ld "
                          "%*s %*s %*s %*s %ld",
                          &letter, &ppid, &nice, &rss_pages);
    if (got != 4) return false;
    e.state[0] = letter;
    e.state[1] = (rss_pages != 0 || letter == 'Z') ? ' ' : 'W';
    e.state[2] = nice < 0 ? '<' : nice > 0 ? 'N' : ' ';
    e.state[3] = '\0';
    e.ppid = ppid;
    e.rss = uint32_t(rss_pages) * uint32_t(::getpagesize() / 1024);
    return true;
}

// Fills g_entry for one numbered /proc entry; false when the process is gone or unreadable.
bool read_process(const char *name) {
    std::memset(&g_entry, 0, sizeof g_entry);
    int pid = int(std::strtol(name, nullptr, 10));
    g_entry.pid = pid;
    struct stat st;
    if (::stat(device_pathf("/proc/%d", pid).c_str(), &st) != 0) return false;
    my_getpwuid(g_entry.user, long(st.st_uid), int(sizeof g_entry.user));
    char line[kStatLineSize];
    return read_stat_line(pid, line) && parse_stat_line(line, g_entry);
}

} // namespace
} // namespace wm

extern "C" {

// The C library's assertion report, declared here because <cassert> hides it in release
// builds; the message must stay the device's own.
void __assert_fail(const char *expr, const char *file, unsigned line, const char *function) noexcept
    __attribute__((noreturn));

char *my_getug(char *buffer, const char *name, long id, int bufsize, char prefix) {
    if (bufsize > 0) {
        if (!buffer) __assert_fail("buffer!=NULL", "find_pid.c", 112, "my_getug");
        if (name) return safe_strncpy(buffer, name, size_t(bufsize));
        // The id is cut to the caller's buffer, as the device does.
        if (std::snprintf(buffer, size_t(bufsize), "%ld", id) < 0) buffer[0] = '\0';
    } else if (bufsize < 0 && !name) {
        bb_error_msg_and_die("unknown %cid %ld", prefix, id);
    }
    return const_cast<char *>(name);
}

char *my_getpwuid(char *buffer, long uid, int bufsize) {
    struct passwd *pw = ::getpwuid(uid_t(uid));
    return my_getug(buffer, pw ? pw->pw_name : nullptr, uid, bufsize, 'u');
}

proc_entry *procps_scan(void) {
    if (!wm::g_scan_dir) {
        wm::g_scan_dir = ::opendir(wm::device_path(wm::fixed::kProc).c_str());
        if (!wm::g_scan_dir) bb_error_msg_and_die("Can't open /proc");
    }
    while (struct dirent *d = ::readdir(wm::g_scan_dir)) {
        if (!wm::is_digit(d->d_name[0])) continue;
        if (wm::read_process(d->d_name)) return &wm::g_entry;
    }
    ::closedir(wm::g_scan_dir);
    wm::g_scan_dir = nullptr;
    return nullptr;
}

int32_t *find_pid_by_name(const char *name) {
    auto *list = static_cast<int32_t *>(xmalloc(sizeof(int32_t)));
    while (proc_entry *p = procps_scan()) {
        // Whole-name match: a name never matches a longer command that begins with it.
        if (std::strcmp(p->short_cmd, name) == 0) {
            // The scan is left open on purpose: the next scan resumes after this process.
            list = static_cast<int32_t *>(xrealloc(list, 2 * sizeof(int32_t)));
            list[0] = p->pid;
            list[1] = 0;
            return list;
        }
    }
    list[0] = -1;
    return list;
}

int is_runing(const char *name) {
    int32_t self = int32_t(::getpid());
    int32_t *list = find_pid_by_name(name);
    int32_t found = 0;
    if (list[0] >= 1) {
        // Step over the caller itself; the list ends in 0, so this stops there at the latest.
        const int32_t *p = list;
        while (*p == self)
            ++p;
        found = *p;
    }
    std::free(list);
    return int(found);
}

} // extern "C"
