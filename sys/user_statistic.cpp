// Per-host traffic from the kernel's counter at /proc/mac, with host names from the DHCP
// leases, printed as JSON for the statistics pages.
//
// /proc/mac lists one station a line, seven blank-separated fields:
//     MAC IP up_bytes down_bytes up_rate down_rate bound
// where IP is 0.0.0.0 for a station seen only at layer 2, the rates are bytes per second,
// and bound is 1 for a MAC written to the file alone (bound) and 0 after the MAC followed
// by eleven dashes. Lines of any other shape are skipped.
#include <arpa/inet.h>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>

#include "sys/support/line_reader.h"
#include "sys/support/paths.h"
#include "sys/support/raii.h"
#include "sys/support/text.h"
#include "webmgmt.h"

namespace wm {
namespace {

struct MacLine {
    char mac[18];
    char ip[16];
    uint64_t up, down, up_rate, down_rate;
    int bound;
};

bool parse_number(const char *text, uint64_t &v) {
    if (*text < '0' || *text > '9') return false;
    char *end = nullptr;
    v = std::strtoull(text, &end, 10);
    return *end == '\0';
}

bool parse_mac_line(const char *line, MacLine &m) {
    char f[7][64];
    if (std::sscanf(line, "%63s %63s %63s %63s %63s %63s %63s", f[0], f[1], f[2], f[3], f[4], f[5],
                    f[6]) != 7)
        return false;
    unsigned char mac[6];
    if (std::strlen(f[0]) != 17 || str2mac(f[0], mac) != 0) return false;
    in_addr a{};
    if (::inet_pton(AF_INET, f[1], &a) != 1) return false;
    uint64_t bound = 0;
    if (!parse_number(f[2], m.up) || !parse_number(f[3], m.down) ||
        !parse_number(f[4], m.up_rate) || !parse_number(f[5], m.down_rate) ||
        !parse_number(f[6], bound) || bound > 1)
        return false;
    std::snprintf(m.mac, sizeof m.mac, "%02X:%02X:%02X:%02X:%02X:%02X", mac[0], mac[1], mac[2],
                  mac[3], mac[4], mac[5]);
    ::inet_ntop(AF_INET, &a, m.ip, sizeof m.ip);
    m.bound = int(bound);
    return true;
}

void print_host(const MacLine &m, bool first) {
    char name[21] = "";
    get_DevnamebyMacfromLease(fixed::kLeaseFile, m.mac, name);
    char escaped[2 * sizeof name + 1] = {};
    filter_json_name(name, escaped);
    char up[24], down[24], up_rate[24], down_rate[24];
    Byte_conversion(m.up, up);
    Byte_conversion(m.down, down);
    Byte_conversion(m.up_rate, up_rate);
    Byte_conversion(m.down_rate, down_rate);
    std::printf("%s{\"mac\":\"%s\",\"ip\":\"%s\",\"name\":\"%s\",\"up\":\"%s\",\"down\":\"%s\","
                "\"up_rate\":\"%s\",\"down_rate\":\"%s\",\"bound\":\"%d\"}",
                first ? "" : ",", m.mac, m.ip, escaped, up, down, up_rate, down_rate, m.bound);
}

int show_hosts(bool routed_only) {
    UniqueFd lock_fd(
        ::open(device_path(fixed::kReadUserLock).c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644));
    FileLock lock(lock_fd.get());
    UniqueFile f(std::fopen(proc_mac_path().c_str(), "r"));
    if (!f) {
        // On standard error, so that the page's JSON stays whole.
        std::fprintf(stderr, "cannot open %s!\n", fixed::kProcMac);
        return -1;
    }
    std::printf("[");
    int count = 0;
    char line[512];
    while (read_line(f.get(), line)) {
        MacLine m;
        if (!parse_mac_line(line, m)) continue;
        if (routed_only && std::strcmp(m.ip, "0.0.0.0") == 0) continue;
        print_host(m, count == 0);
        ++count;
    }
    std::printf("]\n");
    return count;
}

} // namespace
} // namespace wm

extern "C" {

int showuser_statistic(void) {
    return wm::show_hosts(true);
}

int showlayer2user_statistic(void) {
    return wm::show_hosts(false);
}

} // extern "C"
