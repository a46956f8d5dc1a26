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

#include "sys/support/operand.h"

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
    // A line feed in a name, pid or path would start a second line that reads as a command.
    char line[kCommandSize * 4];
    log_line_text(line, command);
    UniqueFile f(std::fopen(device_path(log).c_str(), "a"));
    if (f) std::fprintf(f.get(), "%s\n", line);
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

// What kill or killall reports for an operand it cannot use: run nothing, fail as they do.
constexpr int kRefusedStatus = 1 << 8;

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
    // A name that killall could read as an option, or that would split into several
    // names, is not run.
    if (!name || !wm::plain_operand(name)) return wm::kRefusedStatus;
    return wm::run_tool("killall", "-9", name);
}

int Kill_App_byPid(const char *pid) {
    // An empty text (a missing pid file) runs "kill -9" alone, which kills nothing. Any
    // other text must be one positive decimal pid: "-1" (every process), "0" (the caller's
    // group), "-s KILL -1" or "1 2" never reach kill.
    std::string_view text{pid ? pid : ""};
    if (text.find_first_not_of(" \t\n") == std::string_view::npos)
        return wm::run_tool("kill", "-9", "");
    int value = wm::positive_pid(text);
    if (value <= 0) return wm::kRefusedStatus;
    char digits[16];
    std::snprintf(digits, sizeof digits, "%d", value);
    return wm::run_tool("kill", "-9", digits);
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
    // Only a positive decimal pid on a line of its own: "-1", "0" or "1 2" would make a
    // caller's kill reach every process or a whole group.
    int pid = wm::positive_pid(line);
    return pid > 0 ? pid : -1;
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
