// The IPv6 state of the interfaces as the kernel lists it in its text files: the addresses
// (/proc/net/if_inet6), the routes (/proc/net/ipv6_route), and the name servers the network
// daemon wrote into its resolver file. Every field of the kernel's lines has a fixed width,
// so each line is parsed into bounded fields first and only then used.
#include <arpa/inet.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <span>
#include <string_view>

#include "sys/support/lines.h"
#include "sys/support/paths.h"
#include "sys/support/raii.h"
#include "sys/support/text.h"
#include "webmgmt.h"

namespace wm {
namespace {

constexpr size_t kLineSize = 256;
constexpr size_t kIfNameSize = 16;
constexpr int kMaxFields = 10;

// Splits `line` at blanks into at most kMaxFields fields; the count, or -1 for more.
int split(std::string_view line, std::string_view (&fields)[kMaxFields]) {
    int n = 0;
    size_t at = 0;
    while (at < line.size()) {
        while (at < line.size() && (line[at] == ' ' || line[at] == '\t'))
            ++at;
        if (at == line.size()) break;
        size_t end = at;
        while (end < line.size() && line[end] != ' ' && line[end] != '\t')
            ++end;
        if (n == kMaxFields) return -1;
        fields[n++] = std::string_view(line.data() + at, end - at);
        at = end;
    }
    return n;
}

int hex_value(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

// A hexadecimal field of 1 to 8 digits.
bool parse_hex(std::string_view f, uint32_t &value) {
    if (f.empty() || f.size() > 8) return false;
    value = 0;
    for (char c : f) {
        int d = hex_value(c);
        if (d < 0) return false;
        value = value << 4 | uint32_t(d);
    }
    return true;
}

// 32 hexadecimal digits into the compressed text form of the address.
bool parse_address(std::string_view f, char (&text)[WEBMGMT_IPV6_TEXT]) {
    if (f.size() != 32) return false;
    in6_addr a{};
    for (size_t i = 0; i < 16; ++i) {
        int hi = hex_value(f[2 * i]), lo = hex_value(f[2 * i + 1]);
        if (hi < 0 || lo < 0) return false;
        a.s6_addr[i] = uint8_t(hi << 4 | lo);
    }
    return ::inet_ntop(AF_INET6, &a, text, sizeof text) != nullptr;
}

bool parse_name(std::string_view f, char (&name)[kIfNameSize]) {
    if (f.empty() || f.size() >= kIfNameSize) return false;
    copy_bounded(name, f);
    return true;
}

// "<address> <index> <prefix> <scope> <flags> <name>"
bool parse_addr_line(std::string_view line, ipv6_addr_entry &e, char (&name)[kIfNameSize]) {
    std::string_view f[kMaxFields];
    uint32_t index, prefix, scope, flags;
    if (split(line, f) != 6) return false;
    if (!parse_address(f[0], e.address) || !parse_hex(f[1], index) || !parse_hex(f[2], prefix) ||
        !parse_hex(f[3], scope) || !parse_hex(f[4], flags) || !parse_name(f[5], name))
        return false;
    if (prefix > 128) return false;
    e.prefix_len = int32_t(prefix);
    e.scope = int32_t(scope);
    e.flags = flags;
    return true;
}

// "<destination> <prefix> <source> <prefix> <next hop> <metric> <refs> <use> <flags> <dev>"
bool parse_route_line(std::string_view line, ipv6_route_entry &e) {
    std::string_view f[kMaxFields];
    char source[WEBMGMT_IPV6_TEXT];
    uint32_t prefix, source_prefix, refs, use;
    if (split(line, f) != 10) return false;
    if (!parse_address(f[0], e.destination) || !parse_hex(f[1], prefix) ||
        !parse_address(f[2], source) || !parse_hex(f[3], source_prefix) ||
        !parse_address(f[4], e.next_hop) || !parse_hex(f[5], e.metric) || !parse_hex(f[6], refs) ||
        !parse_hex(f[7], use) || !parse_hex(f[8], e.flags) || !parse_name(f[9], e.device))
        return false;
    if (prefix > 128) return false;
    e.prefix_len = int32_t(prefix);
    return true;
}

// The kernel's placeholder for "no route" that it lists at the end of every table walk: a
// rejecting default route on lo of the highest metric. It is no route of the system's.
constexpr uint32_t kRtfReject = 0x0200;
bool null_entry(const ipv6_route_entry &e) {
    return (e.flags & kRtfReject) && e.metric == UINT32_MAX && e.prefix_len == 0 &&
           std::strcmp(e.device, "lo") == 0;
}

bool parse_real_route(std::string_view line, ipv6_route_entry &e) {
    return parse_route_line(line, e) && !null_entry(e);
}

// Calls `use` with every well-formed line of `fixed` parsed by `parse`, until it returns
// false.
template <typename Entry, typename Parse, typename Use>
void scan(const char *fixed, Parse parse, Use use) {
    UniqueFile f(std::fopen(device_path(fixed).c_str(), "r"));
    if (!f) return;
    char line[kLineSize];
    while (next_line(f.get(), line)) {
        Entry e;
        std::memset(&e, 0, sizeof e);
        if (parse(std::string_view(line), e) && !use(e)) return;
    }
}

bool same_name(const char *want, const char *have) {
    return want && std::strncmp(want, have, kIfNameSize) == 0;
}

// Every address of `ifname`, handed to `use` until it returns false.
template <typename Use> void scan_addresses(const char *ifname, Use use) {
    char name[kIfNameSize];
    scan<ipv6_addr_entry>(
        fixed::kIfInet6,
        [&](std::string_view line, ipv6_addr_entry &e) { return parse_addr_line(line, e, name); },
        [&](const ipv6_addr_entry &e) { return same_name(ifname, name) ? use(e) : true; });
}

// The address of a "nameserver" line, or an empty view.
std::string_view nameserver_of(std::string_view line) {
    constexpr std::string_view kKey = "nameserver";
    size_t at = line.find_first_not_of(" \t");
    if (at == std::string_view::npos) return {};
    line = tail(line, at);
    if (head(line, kKey.size()) != kKey) return {};
    line = tail(line, kKey.size());
    if (line.empty() || (line[0] != ' ' && line[0] != '\t')) return {};
    at = line.find_first_not_of(" \t");
    if (at == std::string_view::npos) return {};
    line = tail(line, at);
    return head(line, line.find_first_of(" \t#;"));
}

void put_text(char *out, size_t size, std::string_view text) {
    if (out && size) copy_bounded(std::span<char>(out, size), text);
}

} // namespace
} // namespace wm

using namespace wm;

extern "C" {

int getIfIPV6(const char *ifname, int scope, char *out, size_t size, int *prefix) {
    put_text(out, size, "");
    bool found = false;
    scan_addresses(ifname, [&](const ipv6_addr_entry &e) {
        if (e.scope != scope) return true;
        put_text(out, size, e.address);
        if (prefix) *prefix = e.prefix_len;
        found = true;
        return false;
    });
    return found ? 0 : -1;
}

int getIfIPV6_list(const char *ifname, ipv6_addr_entry *list, int capacity) {
    int n = 0;
    if (!list || capacity <= 0) return 0;
    scan_addresses(ifname, [&](const ipv6_addr_entry &e) {
        list[n++] = e;
        return n < capacity;
    });
    return n;
}

int ipv6_route_get(const char *ifname, ipv6_route_entry *routes, int capacity) {
    int n = 0;
    if (!routes || capacity <= 0) return 0;
    bool every = !ifname || !*ifname;
    scan<ipv6_route_entry>(fixed::kIpv6Route, parse_real_route, [&](const ipv6_route_entry &e) {
        if (!every && !same_name(ifname, e.device)) return true;
        routes[n++] = e;
        return n < capacity;
    });
    return n;
}

int ipv6_default_gateway(const char *ifname, char *out, size_t size) {
    put_text(out, size, "");
    bool found = false;
    // As the IPv4 look-up, the last match wins.
    scan<ipv6_route_entry>(fixed::kIpv6Route, parse_real_route, [&](const ipv6_route_entry &e) {
        if (e.prefix_len == 0 && std::strcmp(e.destination, "::") == 0 &&
            same_name(ifname, e.device)) {
            put_text(out, size, e.next_hop);
            found = true;
        }
        return true;
    });
    return found ? 0 : -1;
}

int resolv_ipv6_nameserver(char *dns1, char *dns2, size_t size) {
    put_text(dns1, size, "");
    put_text(dns2, size, "");
    UniqueFile f(std::fopen(device_path(fixed::kResolvAuto).c_str(), "r"));
    if (!f) return 0;
    char line[kLineSize];
    int found = 0;
    while (found < 2 && next_line(f.get(), line)) {
        std::string_view address = nameserver_of(line);
        if (address.find(':') == std::string_view::npos) continue;
        put_text(found == 0 ? dns1 : dns2, size, address);
        ++found;
    }
    return found;
}

} // extern "C"
