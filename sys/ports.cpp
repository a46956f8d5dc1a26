// Port probes: link, speed and duplex of each Ethernet port (ethtool, or the switch tool
// on boards with an external switch), the /proc/net/dev counters, rates for display, the
// WAN and LAN port lists and the port descriptions lldpd announces.
#include <cerrno>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <linux/ethtool.h>
#include <linux/sockios.h>
#include <net/if.h>
#include <string_view>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include "sys/support/exec.h"
#include "sys/support/line_reader.h"
#include "sys/support/paths.h"
#include "sys/support/raii.h"
#include "sys/support/text.h"
#include "webmgmt.h"

namespace wm {
namespace {

struct SpeedCode {
    int mbps;
    uint8_t code;
};
constexpr SpeedCode kSpeedCodes[] = {{10, 0}, {100, 4}, {1000, 8}, {2500, 16}, {10000, 32}};

uint8_t speed_code(long mbps) {
    for (const SpeedCode &s : kSpeedCodes)
        if (s.mbps == mbps) return s.code;
    return 0;
}

// Fields 2 to 4 of a blank-separated line, joined by blanks, as "cut -d' ' -f2,3,4" gives
// them (every blank separates, so empty fields count; a line without blanks stays whole).
void cut_fields_2_to_4(const char *line, std::span<char> out) {
    std::string_view text{line, std::strcspn(line, "\n")};
    out[0] = '\0';
    if (text.find(' ') == std::string_view::npos) {
        copy_bounded(out, text);
        return;
    }
    size_t from = std::string_view::npos, to = text.size();
    size_t start = 0;
    for (int field = 1; field <= 4; ++field) {
        size_t end = text.find(' ', start);
        if (field == 2) from = start;
        if (end == std::string_view::npos) {
            to = text.size();
            break;
        }
        to = end;
        start = end + 1;
    }
    if (from != std::string_view::npos && from <= text.size())
        copy_bounded(out, head(tail(text, from), to - from));
}

// The port's state from the external switch's tool, run without a shell.
void switch_port_status(port_status &status, int index) {
    char port[16];
    std::snprintf(port, sizeof port, "%d", index + 1);
    const char *argv[] = {"swconfig", "dev", "switch1", "port", port, "get", "link", nullptr};
    char line[256] = "";
    if (run_argv_line(argv, line, true) < 0) return;
    char cut[256];
    cut_fields_2_to_4(line, cut);
    if (!std::strstr(cut, "up")) return;
    status.link = 1;
    if (std::strstr(cut, "speed:")) {
        int mbps = 0;
        if (std::sscanf(cut, "link:up speed:%dbaseT", &mbps) == 1)
            status.speed_code = speed_code(mbps);
    }
    if (std::strstr(cut, "full-duplex")) status.duplex = 2;
}

uint32_t counter32(const char *text) {
    // Saturated as the 32-bit device's strtoul does, on every build.
    unsigned long long v = std::strtoull(text, nullptr, 10);
    return v > UINT32_MAX ? UINT32_MAX : uint32_t(v);
}

// One /proc/net/dev line: the interface name (before the colon; kernels that glue the
// name to the first counter are read the same) and the sixteen counters.
bool parse_dev_line(char *line, char (&name)[64], char *(&fields)[16]) {
    char *colon = std::strchr(line, ':');
    if (!colon) return false;
    *colon = '\0';
    char *n = line;
    while (*n == ' ' || *n == '\t')
        ++n;
    copy_bounded(name, std::string_view{n});
    char *save = nullptr;
    char *p = colon + 1;
    for (int i = 0; i < 16; ++i) {
        fields[i] = strtok_r(p, " \t", &save);
        p = nullptr;
        if (!fields[i]) return false;
    }
    return true;
}

void fill_counters(port_status &s, char *const (&f)[16]) {
    s.rx_bytes = std::strtoull(f[0], nullptr, 10);
    s.rx_packets = counter32(f[1]);
    s.rx_errors = counter32(f[2]);
    s.rx_drops = counter32(f[3]);
    s.rx_fifo = counter32(f[4]);
    s.rx_frame = counter32(f[5]);
    s.rx_compressed = counter32(f[6]);
    s.rx_multicast = counter32(f[7]);
    s.tx_bytes = std::strtoull(f[8], nullptr, 10);
    s.tx_packets = counter32(f[9]);
    s.tx_errors = counter32(f[10]);
    s.tx_drops = counter32(f[11]);
    s.tx_fifo = counter32(f[12]);
    s.tx_collisions = counter32(f[13]);
    s.tx_carrier = counter32(f[14]);
    s.tx_compressed = counter32(f[15]);
}

int port_list(const port_map *map, uint8_t role, char *dst, int size) {
    if (!map || !dst || size <= 0) return 0;
    std::span<char> out(dst, size_t(size));
    out[0] = '\0';
    int count = 0;
    for (int i = 0; i < WEBMGMT_PORT_COUNT; ++i) {
        if (map->role[i] != role || !map->ifname[i][0]) continue;
        char number[8];
        std::snprintf(number, sizeof number, count ? ",%d" : "%d", i + 1);
        append_bounded(out, number);
        ++count;
    }
    return count;
}

} // namespace
} // namespace wm

extern "C" {

int getEthStatus(const char *ifname, port_status *status, int index, const port_map *map) {
    status->link = 0;
    if (map && map->ext_switch == 1) {
        wm::switch_port_status(*status, index);
        return 0;
    }
    wm::UniqueFd fd(::socket(AF_INET, SOCK_DGRAM, 0));
    if (!fd) return -1;
    ifreq ifr{};
    std::strncpy(ifr.ifr_name, ifname, IFNAMSIZ - 1);
    ethtool_cmd cmd{};
    cmd.cmd = ETHTOOL_GSET;
    ifr.ifr_data = reinterpret_cast<char *>(&cmd);
    if (::ioctl(fd.get(), SIOCETHTOOL, &ifr) < 0) return -1;
    status->speed_code = wm::speed_code(long(ethtool_cmd_speed(&cmd)));
    status->duplex = cmd.duplex == DUPLEX_FULL ? 2 : cmd.duplex;
    status->link = uint8_t(getEthUp_Down(ifname));
    return 0;
}

void get_eth_summary(sys_status *status, const port_map *map) {
    for (int slot = 0; slot < WEBMGMT_PORT_COUNT; ++slot) {
        std::string_view want = wm::member_text(map->ifname[slot], sizeof map->ifname[slot]);
        if (want.empty()) continue;
        wm::UniqueFile f(std::fopen(wm::device_path(wm::fixed::kNetDev).c_str(), "r"));
        if (!f) continue;
        char line[1024];
        if (!wm::read_line(f.get(), line) || !wm::read_line(f.get(), line)) continue;
        while (wm::read_line(f.get(), line)) {
            char name[64];
            char *fields[16];
            if (!wm::parse_dev_line(line, name, fields)) continue;
            // A substring test: the slot's name also matches longer names containing it,
            // and the last matching line wins.
            if (std::string_view{name}.find(want) == std::string_view::npos) continue;
            port_status &s = status->port[slot];
            s.port = slot + 1;
            wm::copy_bounded(s.ifname, name);
            wm::fill_counters(s, fields);
            char ifname[sizeof map->ifname[slot] + 1];
            wm::copy_bounded(ifname, want);
            getEthStatus(ifname, &s, slot, map);
        }
    }
}

void Byte_conversion(uint64_t value, char *dst) {
    constexpr size_t kSize = 24;
    if (value >= 1024 && value < 1048576)
        std::snprintf(dst, kSize, "%.1f%s", double(value / 1024), "Kbps");
    else if (value >= 1048576 && value < 1073741824)
        std::snprintf(dst, kSize, "%.1f%s", double(value) / 1048576.0, "Mbps");
    else if (value >= 1073741824)
        std::snprintf(dst, kSize, "%.1f%s", double(value) / 1073741824.0, "Gbps");
    else
        std::snprintf(dst, kSize, "%.1f%s", double(float(value)), "bps");
}

int get_wan_ports(const port_map *map, char *dst, int size) {
    return wm::port_list(map, WEBMGMT_PORT_ROLE_WAN, dst, size);
}

int get_lan_ports(const port_map *map, char *dst, int size) {
    return wm::port_list(map, WEBMGMT_PORT_ROLE_LAN, dst, size);
}

int get_port_desc(const char *ifname, char *dst, int size) {
    wm::UniqueFile f(std::fopen(wm::device_path(wm::fixed::kLldpdConf).c_str(), "r"));
    if (!f) {
        std::printf("open file error\n");
        return -1;
    }
    char line[512];
    char found[128];
    bool have = false;
    while (wm::read_line(f.get(), line)) {
        char w[7][128];
        if (std::sscanf(line, "%127s %127s %127s %127s %127s %127s %127s", w[0], w[1], w[2], w[3],
                        w[4], w[5], w[6]) != 7)
            continue;
        if (std::strcmp(w[0], "configure") || std::strcmp(w[1], "ports") ||
            std::strcmp(w[2], ifname) || std::strcmp(w[3], "lldp") ||
            std::strcmp(w[4], "portidsubtype") || std::strcmp(w[5], "local"))
            continue;
        wm::copy_bounded(found, w[6]);
        have = true;
    }
    if (!have) return -1;
    if (size > 0) wm::copy_bounded(std::span<char>(dst, size_t(size)), found);
    return 0;
}

} // extern "C"
