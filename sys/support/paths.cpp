#include "sys/support/paths.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <span>

#include "sys/support/text.h"

namespace wm {

const char *device_root() {
    const char *root = std::getenv("WEBMGMT_ROOT");
    return root ? root : "";
}

// Joined without a formatted print: every request builds several of these.
DevicePath device_path(const char *fixed) {
    DevicePath p;
    size_t n = copy_bounded(p.text, device_root());
    copy_bounded(std::span<char>(p.text).subspan(n), fixed ? fixed : "");
    return p;
}

DevicePath device_pathf(const char *format, ...) {
    char fixed[kPathSize];
    va_list ap;
    va_start(ap, format);
    std::vsnprintf(fixed, sizeof fixed, format, ap);
    va_end(ap);
    return device_path(fixed);
}

DevicePath proc_mac_path() {
    return device_root()[0] == '\0' ? device_path(fixed::kProcMac)
                                    : device_path(fixed::kProcMacStandIn);
}

} // namespace wm
