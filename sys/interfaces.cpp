// Interface probes: MAC addresses, IPv4 addresses and masks through interface ioctls, the
// gateway from the kernel's routing table, the broadcast address and the link state.
#include <arpa/inet.h>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <linux/ethtool.h>
#include <linux/sockios.h>
#include <net/if.h>
#include <netinet/in.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include "sys/support/line_reader.h"
#include "sys/support/paths.h"
#include "sys/support/raii.h"
#include "sys/support/text.h"
#include "webmgmt.h"

namespace wm {
namespace {

// The request block for `ifname`, the name cut to the kernel's 16 bytes.
ifreq if_request(const char *ifname) {
    ifreq ifr{};
    std::strncpy(ifr.ifr_name, ifname, IFNAMSIZ - 1);
    return ifr;
}

bool hw_address(int fd, const char *ifname, unsigned char (&mac)[6]) {
    ifreq ifr = if_request(ifname);
    if (::ioctl(fd, SIOCGIFHWADDR, &ifr) < 0) return false;
    std::memcpy(mac, ifr.ifr_hwaddr.sa_data, 6);
    return true;
}

// One IPv4 value of an interface (SIOCGIFADDR, SIOCGIFNETMASK) as dotted text.
int if_ipv4(const char *ifname, unsigned long request, char *dst) {
    if (!ifname || !*ifname) return -1;
    UniqueFd fd(::socket(AF_INET, SOCK_DGRAM, 0));
    if (!fd) return -1;
    ifreq ifr = if_request(ifname);
    if (::ioctl(fd.get(), request, &ifr) < 0) return -1;
    sockaddr_in sin;
    std::memcpy(&sin, &ifr.ifr_addr, sizeof sin);
    if (sin.sin_family != AF_INET) return -1;
    char text[INET_ADDRSTRLEN];
    if (!::inet_ntop(AF_INET, &sin.sin_addr, text, sizeof text)) return -1;
    std::memcpy(dst, text, std::strlen(text) + 1);
    return 0;
}

void dotted(uint32_t network_word, char (&text)[INET_ADDRSTRLEN]) {
    in_addr a{};
    a.s_addr = network_word;
    ::inet_ntop(AF_INET, &a, text, sizeof text);
}

// One line of /proc/net/route after its interface field.
struct Route {
    unsigned long destination, gateway, mask;
    unsigned flags;
    int refcnt, use, metric;
};

bool parse_route(const char *line, Route &r) {
    const char *rest = line + std::strcspn(line, "\t ");
    return std::sscanf(rest, "%lx%lx%X%d%d%d%lx", &r.destination, &r.gateway, &r.flags, &r.refcnt,
                       &r.use, &r.metric, &r.mask) == 7;
}

} // namespace
} // namespace wm

extern "C" {

int getIfMac(const char *ifname, void *dst, int form) {
    wm::UniqueFd fd(::socket(AF_INET, SOCK_DGRAM, 0));
    if (!fd) {
        std::printf("getIfMac: open socket error, %s\n", ifname);
        return -1;
    }
    unsigned char m[6];
    if (!wm::hw_address(fd.get(), ifname, m)) return -1;
    auto *text = static_cast<char *>(dst);
    switch (form) {
    case 0:
        std::memcpy(dst, m, 6);
        break;
    case 1:
        std::snprintf(text, 13, "%02X%02X%02X%02X%02X%02X", m[0], m[1], m[2], m[3], m[4], m[5]);
        break;
    case 2:
        std::snprintf(text, 18, "%02X:%02X:%02X:%02X:%02X:%02X", m[0], m[1], m[2], m[3], m[4],
                      m[5]);
        break;
    case 3:
        std::snprintf(text, 18, "%02x:%02x:%02x:%02x:%02x:%02x", m[0], m[1], m[2], m[3], m[4],
                      m[5]);
        break;
    default:
        break;
    }
    return 0;
}

int getIfHalfMac(const char *ifname, char *dst, int form) {
    wm::UniqueFd fd(::socket(AF_INET, SOCK_DGRAM, 0));
    if (!fd) {
        std::printf("getIfMac: open socket error");
        return -1;
    }
    unsigned char m[6];
    if (!wm::hw_address(fd.get(), ifname, m)) return -1;
    if (form == 1)
        std::snprintf(dst, 9, "%02x:%02x:%02x", m[3], m[4], m[5]);
    else
        std::snprintf(dst, 7, "%02x%02x%02x", m[3], m[4], m[5]);
    return 0;
}

void getIfGateway(const char *ifname, char *dst) {
    if (!ifname || !*ifname) return;
    wm::UniqueFile f(std::fopen(wm::device_path(wm::fixed::kNetRoute).c_str(), "r"));
    if (!f) return;
    char line[512];
    if (!wm::read_line(f.get(), line)) return;
    while (wm::read_line(f.get(), line)) {
        // Any line that contains the name matches, so "eth0" also matches "eth0.2".
        if (!std::strstr(line, ifname)) continue;
        wm::Route r;
        if (!wm::parse_route(line, r)) break;
        if (!(r.flags & 1u)) continue;
        char text[INET_ADDRSTRLEN] = "";
        if (r.gateway) wm::dotted(uint32_t(r.gateway), text);
        std::memcpy(dst, text, std::strlen(text) + 1);
        if (r.destination == 0) break;
    }
}

int getIfIp(const char *ifname, char *dst) {
    return wm::if_ipv4(ifname, SIOCGIFADDR, dst);
}

int getIfsubnetIp(const char *ifname, char *dst) {
    return wm::if_ipv4(ifname, SIOCGIFNETMASK, dst);
}

int getIfgwIp(const char *ifname, char *dst) {
    if (!ifname || !*ifname) return -1;
    wm::UniqueFile f(std::fopen(wm::device_path(wm::fixed::kNetRoute).c_str(), "r"));
    if (!f) return -1;
    char line[512];
    if (!wm::read_line(f.get(), line)) return -1;
    while (wm::read_line(f.get(), line)) {
        // The interface field itself must be the name: no substring matches here.
        size_t name_len = std::strcspn(line, "\t ");
        if (name_len != std::strlen(ifname) || std::strncmp(line, ifname, name_len) != 0) continue;
        wm::Route r;
        if (!wm::parse_route(line, r)) continue; // an unreadable line is skipped
        if ((r.flags & 1u) && r.destination == 0 && r.mask == 0 && r.gateway) {
            char text[INET_ADDRSTRLEN];
            wm::dotted(uint32_t(r.gateway), text);
            std::memcpy(dst, text, std::strlen(text) + 1);
            return 0;
        }
    }
    return -1;
}

int getIfBcastIP(const char *ifname, char *dst, int size) {
    char ip[INET_ADDRSTRLEN], mask[INET_ADDRSTRLEN];
    if (getIfIp(ifname, ip) < 0) {
        std::printf("%s:%d get ifname[%s] ip addr fail\n", "getIfBcastIP", __LINE__, ifname);
        return -1;
    }
    if (getIfsubnetIp(ifname, mask) < 0) {
        std::printf("%s:%d get ifname[%s] netmask addr fail\n", "getIfBcastIP", __LINE__, ifname);
        return -1;
    }
    in_addr a{}, m{};
    if (::inet_pton(AF_INET, ip, &a) != 1) {
        std::perror("Invalid address");
        return -1;
    }
    if (::inet_pton(AF_INET, mask, &m) != 1) {
        std::perror("Invalid netmask");
        return -1;
    }
    in_addr b{};
    b.s_addr = (a.s_addr & m.s_addr) | ~m.s_addr;
    char text[INET_ADDRSTRLEN];
    ::inet_ntop(AF_INET, &b, text, sizeof text);
    if (size > 0) wm::copy_bounded(std::span<char>(dst, size_t(size)), text);
    return 0;
}

int getEthUp_Down(const char *ifname) {
    wm::UniqueFd fd(::socket(AF_INET, SOCK_DGRAM, 0));
    if (!fd) return 0;
    ifreq ifr = wm::if_request(ifname);
    ethtool_value value{};
    value.cmd = ETHTOOL_GLINK;
    ifr.ifr_data = reinterpret_cast<char *>(&value);
    if (::ioctl(fd.get(), SIOCETHTOOL, &ifr) < 0) return 0;
    return int(value.data);
}

} // extern "C"
