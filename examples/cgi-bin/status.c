/*
 * status.cgi?view=<system|ports|leases|arp>: the live state of the device for the status
 * page, read through the library's probes, for a logged-in browser.
 *
 *   system  uptime, memory class and shown use, load of the aggregate line and four cores
 *           (against the previous sample, kept in /var between requests), connections
 *   ports   each interface of /proc/net/dev (up to twelve): link, speed, duplex, counters,
 *           its IPv4 address, mask and MAC; the default gateway
 *   leases  the DHCP server's leases, in the order the device lists them
 *   arp     the complete ARP entries, with host names from the leases
 *   ipv6    the addresses of the LAN interface ("br-lan", or if=NAME), the IPv6 routes of
 *           every device, the LAN's default gateway and the IPv6 name servers
 */
#include "cgi_common.h"

#include <inttypes.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#define LEASE_FILE "/var/udhcpd.leases"
#define LEASE_PID "/var/run/udhcpd.pid"
#define CPU_STATE "/var/status_cpu"

static void print_pair(const char *name, const char *value, int comma) {
    printf("%s\"%s\":", comma ? "," : "", name);
    cgi_print_json_string(value);
}

static void print_number_pair(const char *name, uint64_t value, int comma) {
    char text[32];
    snprintf(text, sizeof text, "%" PRIu64, value);
    print_pair(name, text, comma);
}

/* The previous load samples of this device tree; zero before the first request. */
static void load_cpu_state(sys_status *status) {
    char path[512];
    FILE *f = fopen(cgi_device_path(CPU_STATE, path, sizeof path), "rb");
    if (!f) return;
    if (fread(status->cpu_prev, sizeof status->cpu_prev, 1, f) != 1)
        memset(status->cpu_prev, 0, sizeof status->cpu_prev);
    fclose(f);
}

/* Written beside and renamed over, so that a concurrent request reads a whole sample. */
static void save_cpu_state(const sys_status *status) {
    char path[512], temp[540];
    cgi_device_path(CPU_STATE, path, sizeof path);
    snprintf(temp, sizeof temp, "%s.%ld", path, (long)getpid());
    FILE *f = fopen(temp, "wb");
    if (!f) return;
    int ok = fwrite(status->cpu_prev, sizeof status->cpu_prev, 1, f) == 1;
    if (fclose(f) != 0 || !ok || rename(temp, path) != 0) remove(temp);
}

static int view_system(void) {
    static sys_status status;
    cpu_sample cpu[WEBMGMT_CPU_SAMPLES];
    mem_sample mem;
    memset(cpu, 0, sizeof cpu);
    load_cpu_state(&status);
    getcpu_usage(cpu, &status);
    save_cpu_state(&status);
    get_mem_use(&mem);
    cgi_begin_json(200, NULL);
    printf("{");
    print_number_pair("uptime", (uint64_t)getSysUptime(), 0);
    print_number_pair("mem_class", mem.mem_class, 1);
    print_number_pair("mem_usage", mem.mem_usage, 1);
    print_number_pair("connections", (uint64_t)get_current_link_count(), 1);
    print_number_pair("connections_max", (uint64_t)get_current_link_count_max(), 1);
    printf(",\"cpu\":[");
    for (int i = 0; i < WEBMGMT_CPU_SAMPLES; ++i) {
        char text[16];
        snprintf(text, sizeof text, "%u", (unsigned)cpu[i].usage);
        if (i) printf(",");
        cgi_print_json_string(text);
    }
    printf("]}\n");
    return 0;
}

/* The interfaces of /proc/net/dev, in the file's order, as the board's port map. */
static void host_port_map(port_map *map) {
    char path[512], line[512];
    memset(map, 0, sizeof *map);
    FILE *f = fopen(cgi_device_path("/proc/net/dev", path, sizeof path), "r");
    if (!f) return;
    int slot = 0;
    for (int n = 0; slot < WEBMGMT_PORT_COUNT && fgets(line, sizeof line, f); ++n) {
        char *colon = strchr(line, ':');
        if (n < 2 || !colon) continue;
        *colon = '\0';
        char *name = line + strspn(line, " \t");
        if (strlen(name) >= sizeof map->ifname[slot]) continue;
        snprintf(map->ifname[slot], sizeof map->ifname[slot], "%s", name);
        map->role[slot] = slot == 0 ? WEBMGMT_PORT_ROLE_WAN : WEBMGMT_PORT_ROLE_LAN;
        ++slot;
    }
    fclose(f);
}

static const char *speed_text(uint8_t code, uint8_t link) {
    if (!link) return "";
    switch (code) {
    case 4:
        return "100 Mb/s";
    case 8:
        return "1000 Mb/s";
    case 16:
        return "2500 Mb/s";
    case 32:
        return "10000 Mb/s";
    default:
        return "10 Mb/s or unknown";
    }
}

static int view_ports(void) {
    static port_map map;
    static sys_status status;
    host_port_map(&map);
    get_eth_summary(&status, &map);
    cgi_begin_json(200, NULL);
    char gateway[16] = "", gateway_if[20] = "";
    printf("{\"ports\":[");
    int first = 1;
    for (int i = 0; i < WEBMGMT_PORT_COUNT; ++i) {
        const port_status *p = &status.port[i];
        if (!map.ifname[i][0] || p->port == 0) continue;
        const char *ifname = map.ifname[i];
        char ip[16] = "", mask[16] = "", mac[18] = "", rx[24], tx[24];
        getIfIp(ifname, ip);
        getIfsubnetIp(ifname, mask);
        if (getIfMac(ifname, mac, 2) != 0) mac[0] = '\0';
        if (!gateway[0] && getIfgwIp(ifname, gateway) == 0)
            snprintf(gateway_if, sizeof gateway_if, "%s", ifname);
        Byte_conversion(p->rx_bytes, rx);
        Byte_conversion(p->tx_bytes, tx);
        printf("%s{", first ? "" : ",");
        first = 0;
        print_number_pair("port", (uint64_t)p->port, 0);
        print_pair("ifname", ifname, 1);
        print_pair("link", p->link ? "up" : "down", 1);
        print_pair("speed", speed_text(p->speed_code, p->link), 1);
        print_pair("duplex", !p->link ? "" : p->duplex == 2 ? "full" : "half", 1);
        print_pair("rx", rx, 1);
        print_pair("tx", tx, 1);
        print_number_pair("rx_packets", p->rx_packets, 1);
        print_number_pair("tx_packets", p->tx_packets, 1);
        print_pair("ip", ip, 1);
        print_pair("mask", mask, 1);
        print_pair("mac", mac, 1);
        printf("}");
    }
    printf("]");
    print_pair("gateway", gateway, 1);
    print_pair("gateway_if", gateway_if, 1);
    printf("}\n");
    return 0;
}

static int view_leases(void) {
    lease_entry *list = NULL;
    get_addrserver_leases(&list, LEASE_FILE, LEASE_PID);
    sort_dhcplist(list);
    cgi_begin_json(200, NULL);
    printf("{\"leases\":[");
    for (lease_entry *n = list; n; n = n->next) {
        printf("%s{", n == list ? "" : ",");
        print_pair("name", n->hostname, 0);
        print_pair("mac", n->mac, 1);
        print_pair("ip", n->ip, 1);
        print_pair("expires", n->expires, 1);
        printf("}");
    }
    printf("]}\n");
    free_leaselist(&list);
    return 0;
}

static int view_arp(void) {
    lease_entry *list = NULL;
    get_arp_cache("", &list);
    cgi_begin_json(200, NULL);
    printf("{\"arp\":[");
    for (lease_entry *n = list; n; n = n->next) {
        /* The list holds the MAC's digits alone; the lease file is searched with colons. */
        char mac[18] = "", name[21] = "";
        const char *d = n->mac;
        if (strlen(d) == 12)
            snprintf(mac, sizeof mac, "%.2s:%.2s:%.2s:%.2s:%.2s:%.2s", d, d + 2, d + 4, d + 6,
                     d + 8, d + 10);
        get_DevnamebyMacfromLease(LEASE_FILE, mac, name);
        printf("%s{", n == list ? "" : ",");
        print_pair("ip", n->ip, 0);
        print_pair("mac", mac, 1);
        print_pair("hw_type", n->hw_type, 1);
        print_pair("name", name, 1);
        printf("}");
    }
    printf("]}\n");
    free_leaselist(&list);
    return 0;
}

#define LAN_IFNAME "br-lan"

static int view_ipv6(void) {
    char ifname[16] = LAN_IFNAME, sent[64];
    if (cgi_query_value("if", sent, sizeof sent) == 0) {
        size_t n = strlen(sent);
        if (n == 0 || n >= sizeof ifname ||
            strspn(sent, "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789._-") !=
                n) {
            cgi_reply_error(400, "if: an interface name of letters, digits, '.', '_' or '-'");
            return 0;
        }
        memcpy(ifname, sent, n + 1);
    }
    static ipv6_addr_entry addresses[16];
    static ipv6_route_entry routes[64];
    int na = getIfIPV6_list(ifname, addresses, 16);
    int nr = ipv6_route_get("", routes, 64);
    char gateway[WEBMGMT_IPV6_TEXT] = "", dns1[WEBMGMT_IPV6_TEXT] = "",
         dns2[WEBMGMT_IPV6_TEXT] = "";
    if (ipv6_default_gateway(ifname, gateway, sizeof gateway) != 0) gateway[0] = '\0';
    int nd = resolv_ipv6_nameserver(dns1, dns2, sizeof dns1);
    cgi_begin_json(200, NULL);
    printf("{");
    print_pair("ifname", ifname, 0);
    printf(",\"addresses\":[");
    for (int i = 0; i < na; ++i) {
        printf("%s{", i ? "," : "");
        print_pair("address", addresses[i].address, 0);
        print_number_pair("prefix", (uint64_t)addresses[i].prefix_len, 1);
        print_pair("scope",
                   addresses[i].scope == 0      ? "global"
                   : addresses[i].scope == 0x20 ? "link"
                   : addresses[i].scope == 0x10 ? "host"
                                                : "other",
                   1);
        printf("}");
    }
    printf("],\"routes\":[");
    for (int i = 0; i < nr; ++i) {
        printf("%s{", i ? "," : "");
        print_pair("destination", routes[i].destination, 0);
        print_number_pair("prefix", (uint64_t)routes[i].prefix_len, 1);
        print_pair("next_hop", routes[i].next_hop, 1);
        print_number_pair("metric", (uint64_t)(uint32_t)routes[i].metric, 1);
        print_pair("device", routes[i].device, 1);
        printf("}");
    }
    printf("]");
    print_pair("gateway", gateway, 1);
    printf(",\"dns\":[");
    if (nd > 0) cgi_print_json_string(dns1);
    if (nd > 1) {
        printf(",");
        cgi_print_json_string(dns2);
    }
    printf("]}\n");
    return 0;
}

static const struct {
    const char *name;
    int (*print)(void);
} kViews[] = {{"system", view_system}, {"ports", view_ports}, {"leases", view_leases},
              {"arp", view_arp},       {"ipv6", view_ipv6},   {NULL, NULL}};

int main(void) {
    if (cgi_require_session(0) != 0) return 0;
    char name[32];
    if (cgi_query_value("view", name, sizeof name) != 0) {
        cgi_reply_error(400, "name the view: status.cgi?view=system|ports|leases|arp|ipv6");
        return 0;
    }
    for (size_t i = 0; kViews[i].name; ++i)
        if (strcmp(kViews[i].name, name) == 0) return kViews[i].print();
    cgi_reply_error(404, "no such view");
    return 0;
}
