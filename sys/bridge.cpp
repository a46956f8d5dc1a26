// The member ports of a bridge, from the kernel's own list of them: the entries of
// /sys/class/net/<bridge>/brif.
#include <dirent.h>
#include <net/if.h>

#include <cstring>
#include <span>
#include <string_view>

#include "sys/support/paths.h"
#include "sys/support/raii.h"
#include "sys/support/text.h"
#include "webmgmt.h"

namespace wm {
namespace {

// A name that can only name an entry of /sys/class/net: no separator, not "." or "..",
// short enough for the kernel.
bool interface_name(const char *name) {
    if (!name) return false;
    size_t n = strnlen(name, IFNAMSIZ);
    if (n == 0 || n >= IFNAMSIZ) return false;
    std::string_view v(name, n);
    return v != "." && v != ".." && v.find('/') == std::string_view::npos;
}

int list_members(const char *bridge, std::span<char> out) {
    if (!out.empty()) out[0] = '\0';
    if (!interface_name(bridge)) return -1;
    UniqueDir dir(::opendir(device_pathf("%s/%s/brif", fixed::kSysClassNet, bridge).c_str()));
    if (!dir) return -1;
    int count = 0;
    while (const dirent *e = ::readdir(dir.get())) {
        std::string_view name(e->d_name);
        if (name == "." || name == "..") continue;
        if (!out.empty()) {
            if (count) append_bounded(out, " ");
            append_bounded(out, name);
        }
        ++count;
    }
    return count;
}

} // namespace
} // namespace wm

extern "C" {

int get_bridge_brif_list(const char *bridge, char *out, size_t size) {
    return wm::list_members(bridge, out ? std::span<char>(out, size) : std::span<char>());
}

int get_bridge_brif_count(const char *bridge) {
    return wm::list_members(bridge, {});
}

} // extern "C"
