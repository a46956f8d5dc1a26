// The kernel's IPv6 address and route lists and the resolver file from arbitrary bytes:
// every reader must stay inside its lines and its caller's buffers.
#include <sys/stat.h>

#include <cstdint>
#include <cstdlib>
#include <string>

#include "fuzz_files.h"
#include "webmgmt.h"

namespace {

const std::string &root() {
    static const std::string dir = [] {
        std::string d = fuzzsupport::scratch_path("root");
        mkdir(d.c_str(), 0755);
        mkdir((d + "/proc").c_str(), 0755);
        mkdir((d + "/proc/net").c_str(), 0755);
        mkdir((d + "/tmp").c_str(), 0755);
        setenv("WEBMGMT_ROOT", d.c_str(), 1);
        return d;
    }();
    return dir;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const std::string &dir = root();
    for (const char *file : {"/proc/net/if_inet6", "/proc/net/ipv6_route", "/tmp/resolv.conf.auto"})
        fuzzsupport::write_bytes(dir + file, data, size);

    ipv6_addr_entry addrs[8];
    ipv6_route_entry routes[8];
    char text[WEBMGMT_IPV6_TEXT], small[3], dns1[20], dns2[20];
    int prefix = 0;
    for (const char *name : {"eth0", "br-lan", "lo", ""}) {
        getIfIPV6_list(name, addrs, 8);
        for (int scope : {0, 0x10, 0x20}) {
            getIfIPV6(name, scope, text, sizeof text, &prefix);
            getIfIPV6(name, scope, small, sizeof small, nullptr);
        }
        ipv6_route_get(name, routes, 8);
        ipv6_default_gateway(name, text, sizeof text);
        ipv6_default_gateway(name, small, sizeof small);
    }
    resolv_ipv6_nameserver(dns1, dns2, sizeof dns1);
    resolv_ipv6_nameserver(small, nullptr, sizeof small);
    return 0;
}
