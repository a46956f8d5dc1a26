// The kernel's ARP table: the LAN host table of the client pages, the IP of a MAC, and the
// list of complete entries.
#include <arpa/inet.h>
#include <cstdio>
#include <cstring>
#include <netinet/in.h>
#include <strings.h>

#include "sys/support/line_reader.h"
#include "sys/support/paths.h"
#include "sys/support/raii.h"
#include "sys/support/text.h"
#include "webmgmt.h"

namespace wm {
namespace {

// One /proc/net/arp line; every field is cut to its buffer.
struct ArpLine {
    char ip[64];
    char hw_type[16];
    char flags[16];
    char mac[64];
    char mask[64];
    char device[64];
};

int scan_text_line(const char *line, ArpLine &a) {
    return std::sscanf(line, "%63s 0x%15s 0x%15s %63s %63s %63s", a.ip, a.hw_type, a.flags, a.mac,
                       a.mask, a.device);
}

void append_node(lease_entry **head, lease_entry *node) {
    lease_entry **tail = head;
    while (*tail)
        tail = &(*tail)->next;
    *tail = node;
}

} // namespace
} // namespace wm

extern "C" {

int get_arplist(const struct lan_config *lan, arp_host_table *table) {
    std::memset(table, 0, sizeof *table);
    wm::UniqueFile f(std::fopen(wm::device_path(wm::fixed::kNetArp).c_str(), "r"));
    if (!f) return 0;
    char line[512];
    int count = 0;
    if (wm::read_line(f.get(), line)) {
        while (count < WEBMGMT_ARP_HOSTS && wm::read_line(f.get(), line)) {
            wm::ArpLine a;
            if (wm::scan_text_line(line, a) < 4) continue;
            if (std::strcmp(a.mac, "00:00:00:00:00:00") == 0) continue;
            arp_host &h = table->host[count];
            std::memset(&h, 0, sizeof h);
            wm::copy_bounded(h.ip, a.ip);
            low2UpperChar(a.mac, int(strnlen(a.mac, sizeof h.mac - 1)), h.mac);
            in_addr addr{};
            if (::inet_pton(AF_INET, a.ip, &addr) != 1) continue;
            if ((addr.s_addr ^ lan->ipaddr.v4) & lan->subnet.v4) continue;
            get_DevnamebyMacfromLease(wm::fixed::kLeaseFile, h.mac, h.hostname);
            ++count;
        }
        // A host outside the subnet was written into the next free slot: clear it again.
        if (count < WEBMGMT_ARP_HOSTS) std::memset(&table->host[count], 0, sizeof(arp_host));
    }
    table->count = count;
    return f.close();
}

int get_ipbymac_arp(const char *mac, char *ip) {
    wm::UniqueFile f(std::fopen(wm::device_path(wm::fixed::kNetArp).c_str(), "r"));
    if (!f) return -1;
    char line[512];
    if (!wm::read_line(f.get(), line)) return -1;
    while (wm::read_line(f.get(), line)) {
        wm::ArpLine a;
        if (wm::scan_text_line(line, a) < 4) continue;
        if (strncasecmp(a.mac, mac, std::strlen(a.mac)) == 0) {
            wm::copy_bounded(std::span<char>(ip, 16), a.ip);
            return 0;
        }
    }
    return -1;
}

int get_arp_cache(const char *device, lease_entry **head) {
    wm::UniqueFile f(std::fopen(wm::device_path(wm::fixed::kNetArp).c_str(), "r"));
    if (!f) return 0;
    char line[512];
    if (!wm::read_line(f.get(), line)) return 0;
    int added = 0;
    while (wm::read_line(f.get(), line)) {
        char ip[64], mac[64], mask[64], dev[64] = "";
        unsigned hw = 0, flags = 0;
        if (std::sscanf(line, "%63s 0x%x 0x%x %63s %63s %63s", ip, &hw, &flags, mac, mask, dev) < 4)
            break;
        if (device && *device && std::strcmp(device, dev) != 0) continue;
        // Complete entries only: permanent and published ones are left out.
        if (flags != 2) continue;
        if (search_by_mac(*head, mac)) continue;
        auto *node = static_cast<lease_entry *>(get_buffer(int(sizeof(lease_entry))));
        if (!node) return 0;
        wm::copy_bounded(node->ip, ip);
        std::snprintf(node->hw_type, sizeof node->hw_type, "%x", hw);
        mac2hexStrip(mac, node->mac);
        wm::append_node(head, node);
        ++added;
    }
    return added;
}

int search_by_mac(lease_entry *head, const char *mac) {
    // Both kinds of list are searched: lease nodes hold the MAC with colons, ARP nodes the
    // digits alone, and the given text has colons; the digits are compared.
    char want[13];
    mac2hexStrip(mac, want);
    int position = 1;
    for (lease_entry *n = head; n; n = n->next, ++position) {
        char have[13];
        if (strnlen(n->mac, sizeof n->mac) == 12)
            wm::copy_bounded(have, wm::member_text(n->mac, sizeof n->mac));
        else
            mac2hexStrip(n->mac, have);
        if (strcasecmp(have, want) == 0) return position;
    }
    return 0;
}

void mac2hexStrip(const char *mac, char *dst) {
    static constexpr int kPlaces[12] = {0, 1, 3, 4, 6, 7, 9, 10, 12, 13, 15, 16};
    size_t len = strnlen(mac, 17);
    int out = 0;
    for (int place : kPlaces) {
        // A text shorter than a MAC gives the digits it has, never bytes past its end.
        if (size_t(place) >= len) break;
        dst[out++] = chUpcase(mac[place]);
    }
    dst[out] = '\0';
}

char chUpcase(char c) {
    return (c >= 'a' && c <= 'z') ? char(c - 'a' + 'A') : c;
}

void dump_macip(lease_entry *head) {
    std::printf("dump mac ip\n");
    for (lease_entry *n = head; n; n = n->next)
        std::printf("%s\t%s\t%s\t\n", n->ip, n->mac, n->expires);
    std::printf("---------------------------\n");
}

} // extern "C"
