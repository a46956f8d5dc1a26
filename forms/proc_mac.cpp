// Writing /proc/mac. The device built `echo "<mac>" >/proc/mac` from the request and ran it
// through a shell; the line goes to the file directly here, and only for a real MAC.
#include "forms/proc_mac.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

#include "sys/support/exec.h"
#include "sys/support/files.h"
#include "sys/support/paths.h"
#include "sys/support/raii.h"

namespace wm {
namespace {

constexpr size_t kMacTextLength = 17;
constexpr char kUnbound[] = "-----------";

bool is_hex(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

} // namespace

bool is_mac_text(std::string_view text) {
    if (text.size() != kMacTextLength) return false;
    for (size_t i = 0; i < text.size(); ++i) {
        bool ok = i % 3 == 2 ? text[i] == ':' : is_hex(text[i]);
        if (!ok) return false;
    }
    return true;
}

bool write_proc_mac(std::string_view mac, bool bound, bool logged) {
    if (!is_mac_text(mac)) return false;
    // echo's line: the text, the dashes of an unbound station, a line feed.
    char line[kMacTextLength + sizeof kUnbound + 1];
    int n = std::snprintf(line, sizeof line, "%.*s%s\n", int(mac.size()), mac.data(),
                          bound ? "" : kUnbound);
    if (n <= 0 || size_t(n) >= sizeof line) return false;

    char command[64];
    std::snprintf(command, sizeof command, "echo \"%.*s%s\" >%s", int(mac.size()), mac.data(),
                  bound ? "" : kUnbound, fixed::kProcMac);
    if (logged) log_command(command);

    DevicePath path = proc_mac_path();
    UniqueFd fd(::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644));
    return fd && write_all(fd.get(), line, size_t(n));
}

} // namespace wm
