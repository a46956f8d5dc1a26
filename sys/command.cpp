// Running device commands (with the optional command log), killing processes, pid files,
// and the start and stop of the cloud-management client.
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <sys/stat.h>

#include "sys/support/exec.h"
#include <unistd.h>

#include "sys/support/paths.h"
#include "sys/support/raii.h"
#include "sys/support/text.h"
#include "webmgmt.h"

namespace wm {
namespace {

constexpr int kCommandSize = 1024;
constexpr int kLineSize = 255;
constexpr int kMaxWords = 16;

bool device_file_exists(const char *fixed) {
    struct stat st;
    return ::stat(device_path(fixed).c_str(), &st) == 0;
}

} // namespace

// Appends the command to the log chosen by the marker files. With both markers only the
// flash log is written. Appended directly rather than through `echo '...' >>`, so that a
// command holding a quote is logged whole and nothing in it is run a second time.
void log_command(const char *command) {
    const char *log = device_file_exists(fixed::kCmdFlashMarker) ? fixed::kCmdFlashLog
                      : device_file_exists(fixed::kCmdRamMarker) ? fixed::kCmdRamLog
                                                                 : nullptr;
    if (!log) return;
    UniqueFile f(std::fopen(device_path(log).c_str(), "a"));
    if (f) std::fprintf(f.get(), "%s\n", command);
}

void remove_file(const char *path) {
    ::unlink(path);
    char command[kPathSize + 8];
    std::snprintf(command, sizeof command, "rm -f %s", path);
    log_command(command);
}

namespace {

// Runs "tool option arg" without a shell: the argument is split at blanks as the shell
// would split it, but never expanded or interpreted. Logged like do_system's commands.
int run_tool(const char *tool, const char *option, const char *arg) {
    char command[kCommandSize];
    std::snprintf(command, sizeof command, "%s %s %s", tool, option, arg ? arg : "");
    char words[kCommandSize];
    copy_bounded(words, std::string_view{arg ? arg : ""});
    const char *argv[kMaxWords + 3] = {tool, option};
    int argc = 2;
    char *save = nullptr;
    for (char *w = strtok_r(words, " \t\n", &save); w && argc < kMaxWords + 2;
         w = strtok_r(nullptr, " \t\n", &save))
        argv[argc++] = w;
    argv[argc] = nullptr;
    int status = run_argv(argv);
    // What system() reports when the shell cannot find the tool.
    if (status == -1) status = 127 << 8;
    log_command(command);
    return status;
}

} // namespace
} // namespace wm

extern "C" {

int do_system(const char *format, ...) {
    char command[wm::kCommandSize];
    va_list ap;
    va_start(ap, format);
    std::vsnprintf(command, sizeof command, format, ap);
    va_end(ap);
    int status = std::system(command);
    wm::log_command(command);
    return status;
}

int Kill_App_byname(const char *name) {
    return wm::run_tool("killall", "-9", name);
}

int Kill_App_byPid(const char *pid) {
    return wm::run_tool("kill", "-9", pid);
}

int File_Exist(const char *path) {
    struct stat st;
    return path && ::stat(path, &st) == 0 ? 1 : 0;
}

char *getStrvalfromfile(const char *path, char *buffer) {
    wm::UniqueFile f(std::fopen(path, "r"));
    if (!f) return buffer;
    if (std::fgets(buffer, wm::kLineSize, f.get())) {
        size_t n = std::strlen(buffer);
        if (n && buffer[n - 1] == '\n') buffer[n - 1] = '\0';
    }
    return buffer;
}

int getPid(const char *path) {
    wm::UniqueFile f(std::fopen(path, "r"));
    if (!f) return -1;
    char line[wm::kLineSize];
    if (!std::fgets(line, sizeof line, f.get())) return -1;
    char *end = nullptr;
    long pid = std::strtol(line, &end, 10);
    return end == line ? -1 : int(pid);
}

int Cloud_Config(int mode, int enable) {
    char watchdog[wm::kLineSize] = "";
    getStrvalfromfile(wm::device_path(wm::fixed::kCloudWatchdogPid).c_str(), watchdog);
    Kill_App_byPid(watchdog);
    if (mode == 2) return 0;
    Kill_App_byname("cloud-client");
    if (enable == 1) {
        do_system("cloud-client >/dev/null 2>&1 &");
        do_system("checkapp cloud-client 10 1 1 >/dev/null 2>&1 &");
    }
    return 0;
}

} // extern "C"
