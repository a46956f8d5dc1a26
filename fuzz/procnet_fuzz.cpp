// The kernel's tables from arbitrary bytes: /proc/net/route, /proc/net/dev, /proc/net/arp
// and /proc/stat (the first byte picks the file) read by every reader of each.
#include <arpa/inet.h>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <sys/stat.h>

#include "fuzz_files.h"
#include "webmgmt.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static const std::string root = [] {
        std::string r = fuzzsupport::scratch_path("proc-root");
        for (const char *d : {"", "/var", "/proc", "/proc/net"})
            mkdir((r + d).c_str(), 0755);
        setenv("WEBMGMT_ROOT", r.c_str(), 1);
        return r;
    }();
    if (size < 1) return 0;
    static const char *const files[] = {"/proc/net/route", "/proc/net/dev", "/proc/net/arp",
                                        "/proc/stat"};
    int which = data[0] % 4;
    fuzzsupport::write_bytes(root + files[which], data + 1, size - 1);
    switch (which) {
    case 0: {
        char gw[16] = "", exact[16] = "";
        getIfGateway("eth0", gw);
        getIfGateway("e", gw);
        getIfgwIp("eth0", exact);
        break;
    }
    case 1: {
        static port_map map;
        static sys_status status;
        std::snprintf(map.ifname[0], sizeof map.ifname[0], "eth0");
        std::snprintf(map.ifname[1], sizeof map.ifname[1], "e");
        get_eth_summary(&status, &map);
        break;
    }
    case 2: {
        static arp_host_table table;
        static lan_config lan;
        get_arplist(&lan, &table);
        lease_entry *list = nullptr;
        get_arp_cache("", &list);
        free_leaselist(&list);
        char ip[16];
        get_ipbymac_arp("AA:BB:CC:DD:EE:FF", ip);
        break;
    }
    default: {
        static sys_status status;
        cpu_sample cpu[WEBMGMT_CPU_SAMPLES];
        getcpu_usage(cpu, &status);
        getcpu_usage(cpu, &status);
        break;
    }
    }
    return 0;
}
