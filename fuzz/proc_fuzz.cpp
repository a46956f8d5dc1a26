// Fuzzes what the library reads about processes and hands to tools: fields (split at 0xFF)
// are a pid file, two /proc/<pid>/stat files and a text for the command log. Checks that a
// pid is only ever a positive number, that the scanner's record stays terminated, and that
// a command-log line can never be split.
#include <cctype>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/stat.h>

#include "fuzz_fields.h"
#include "fuzz_files.h"
#include "sys/support/operand.h"
#include "webmgmt.h"

namespace {

std::string root;

void put(const std::string &path, const std::string &text) {
    fuzzsupport::write_bytes(path, reinterpret_cast<const uint8_t *>(text.data()), text.size());
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
    root = fuzzsupport::scratch_path("root");
    for (const char *dir : {"", "/proc", "/proc/101", "/proc/202", "/var", "/var/run"})
        mkdir((root + dir).c_str(), 0700);
    setenv("WEBMGMT_ROOT", root.c_str(), 1);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    auto f = fuzzsupport::split_fields(data, size, 4);

    // The pid file: getPid answers a positive pid or -1, never 0 or another negative.
    std::string pid_file = root + "/var/run/check-cloud-client.pid";
    put(pid_file, f[0]);
    int pid = getPid(pid_file.c_str());
    if (pid == 0 || pid < -1) std::abort();
    char line[255 + 16];
    std::memset(line, 'Z', sizeof line);
    line[0] = '\0';
    getStrvalfromfile(pid_file.c_str(), line);
    for (size_t i = 255; i < sizeof line; ++i)
        if (line[i] != 'Z') std::abort(); // the documented 255-byte buffer is respected
    int text_pid = wm::positive_pid(line);
    if (text_pid < 0) std::abort();
    if (text_pid > 0) { // only digits between the blanks
        for (const char *p = line; *p; ++p)
            if (!std::isdigit(static_cast<unsigned char>(*p)) && !std::strchr(" \t\n\r", *p))
                std::abort();
    }
    if (wm::plain_operand(line) && (line[0] == '-' || std::strpbrk(line, " \t\n"))) std::abort();

    // Two processes whose stat files are the fuzzer's; the scan ends and starts afresh.
    put(root + "/proc/101/stat", f[1]);
    put(root + "/proc/202/stat", f[2]);
    int seen = 0;
    while (proc_entry *p = procps_scan()) {
        if (!std::memchr(p->short_cmd, '\0', sizeof p->short_cmd)) std::abort();
        if (!std::memchr(p->user, '\0', sizeof p->user)) std::abort();
        if (++seen > 2) std::abort();
    }
    int *pids = find_pid_by_name("fuzz");
    std::free(pids);
    while (procps_scan()) { // finish the scan find_pid_by_name may have left open
    }

    // The command log: whatever the text, one line.
    std::string text = fuzzsupport::c_text(f[3]);
    char logged[4096];
    size_t n = wm::log_line_text(logged, text);
    if (n != std::strlen(logged) || std::strchr(logged, '\n') || std::strchr(logged, '\r'))
        std::abort();
    return 0;
}
