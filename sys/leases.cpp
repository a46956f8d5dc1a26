// The DHCP server's lease files in their two layouts, the host lists made from them, their
// order, and the host-name look-up by MAC.
#include <arpa/inet.h>
#include <cassert>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <netinet/in.h>
#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

#include "sys/support/paths.h"
#include "sys/support/raii.h"
#include "sys/support/text.h"
#include "webmgmt.h"

extern "C" void __assert_fail(const char *expr, const char *file, unsigned line,
                              const char *function) noexcept __attribute__((noreturn));

namespace wm {
namespace {

constexpr size_t kLegacyRecord = 24;
constexpr size_t kServerRecord = 36;
constexpr size_t kServerHeader = 8;

uint32_t word_at(const unsigned char *p) {
    uint32_t w;
    std::memcpy(&w, p, 4);
    return w;
}

void mac_text(const unsigned char *m, char *dst, size_t size) {
    std::snprintf(dst, size, "%02X:%02X:%02X:%02X:%02X:%02X", m[0], m[1], m[2], m[3], m[4], m[5]);
}

bool all_zero(const unsigned char *p, size_t n) {
    for (size_t i = 0; i < n; ++i)
        if (p[i]) return false;
    return true;
}

// Asks the DHCP server to write its leases, but only when the pid file names a running
// udhcpd: a stale or planted pid file never makes us signal another process.
void ask_server_for_leases(const char *pidfile) {
    int pid = getPid(device_path(pidfile).c_str());
    if (pid > 0 && process_is(pid, kLeaseServerName)) ::kill(pid, SIGUSR1);
    ::usleep(1000);
}

// Reads a lease file of fixed-size records after a header: a record whose eight bytes at
// `zero_from` are all zero has no client, one whose expiry word is zero has no lease; the
// others become nodes filled by `add`, appended to the list.
int read_leases(lease_entry **head, const char *path, size_t header, size_t record_size,
                size_t zero_from, size_t expiry_at, void (*add)(lease_entry *, const void *)) {
    UniqueFile f(std::fopen(device_path(path).c_str(), "rb"));
    if (!f) {
        std::perror("could not open input file");
        return 0;
    }
    unsigned char record[kServerRecord];
    if (header && std::fread(record, 1, header, f.get()) != header) return 0;
    lease_entry **tail = head;
    while (*tail)
        tail = &(*tail)->next;
    int count = 0;
    while (std::fread(record, 1, record_size, f.get()) == record_size) {
        if (all_zero(record + zero_from, 8)) continue;
        if (word_at(record + expiry_at) == 0) continue;
        auto *node = static_cast<lease_entry *>(get_buffer(int(sizeof(lease_entry))));
        if (!node) break;
        add(node, record);
        *tail = node;
        tail = &node->next;
        ++count;
    }
    return count;
}

} // namespace

bool process_is(int pid, const char *name) {
    if (pid <= 0) return false;
    UniqueFile f(std::fopen(device_pathf("/proc/%d/stat", pid).c_str(), "r"));
    if (!f) return false;
    char line[512];
    if (!std::fgets(line, sizeof line, f.get())) return false;
    char *open = std::strchr(line, '(');
    char *close = std::strrchr(line, ')');
    if (!open || !close || close < open) return false;
    std::string_view comm{open + 1, size_t(close - open - 1)};
    return comm == name;
}

} // namespace wm

extern "C" {

void add_lease(lease_entry *node, const void *record) {
    if (!node) __assert_fail("mac_ip_list", "mac_ip.c", 131, "add_lease");
    if (!record) __assert_fail("lease", "mac_ip.c", 132, "add_lease");
    auto *r = static_cast<const unsigned char *>(record);
    wm::mac_text(r, node->mac, sizeof node->mac);
    in_addr a{};
    a.s_addr = wm::word_at(r + 16);
    wm::copy_bounded(node->ip, ::inet_ntoa(a));
    std::snprintf(node->expires, sizeof node->expires, "%u", ntohl(wm::word_at(r + 20)));
}

void add_addrserverlease(lease_entry *node, const void *record) {
    if (!node) __assert_fail("mac_ip_list", "mac_ip.c", 146, "add_addrserverlease");
    if (!record) __assert_fail("lease", "mac_ip.c", 147, "add_addrserverlease");
    auto *r = static_cast<const unsigned char *>(record);
    wm::mac_text(r + 8, node->mac, sizeof node->mac);
    in_addr a{};
    a.s_addr = wm::word_at(r + 4);
    wm::copy_bounded(node->ip, ::inet_ntoa(a));
    std::snprintf(node->expires, sizeof node->expires, "%u", ntohl(wm::word_at(r)));
    // The name field may fill its 20 bytes without a terminator.
    wm::copy_bounded(node->hostname, wm::member_text(reinterpret_cast<const char *>(r + 14), 20));
    node->sort_key = a.s_addr;
}

int get_leases(lease_entry **head) {
    wm::ask_server_for_leases(wm::fixed::kLeaseServerPid);
    return wm::read_leases(head, wm::fixed::kLeaseFile, 0, wm::kLegacyRecord, 0, 20, add_lease);
}

int get_addrserver_leases(lease_entry **head, const char *path, const char *pidfile) {
    if (pidfile && *pidfile) wm::ask_server_for_leases(pidfile);
    return wm::read_leases(head, path, wm::kServerHeader, wm::kServerRecord, 8, 0,
                           add_addrserverlease);
}

void free_leaselist(lease_entry **head) {
    lease_entry *n = *head;
    while (n) {
        lease_entry *next = n->next;
        free_buffer(n, int(sizeof(lease_entry)));
        n = next;
    }
    *head = nullptr;
}

void delay_get_lease_by_kill(const char *ifname, int index, int pid) {
    if (pid < 2) return;
    wm::DevicePath path = (ifname && *ifname && index > 0)
                              ? wm::device_pathf(wm::fixed::kLeasePoolFormat, ifname, index)
                              : wm::device_path(wm::fixed::kLeaseFile);
    struct stat st;
    if (::stat(path.c_str(), &st) == 0 && std::time(nullptr) - st.st_mtime < 60) return;
    if (wm::process_is(pid, wm::kLeaseServerName)) ::kill(pid, SIGUSR1);
}

int get_DevnamebyMacfromLease(const char *path, const char *mac, char *name) {
    wm::UniqueFile f(std::fopen(wm::device_path(path).c_str(), "rb"));
    if (!f) return -1;
    unsigned char record[wm::kServerRecord];
    if (std::fread(record, 1, wm::kServerHeader, f.get()) != wm::kServerHeader) return -1;
    int found = -1;
    while (std::fread(record, 1, wm::kServerRecord, f.get()) == wm::kServerRecord) {
        char text[18];
        wm::mac_text(record + 8, text, sizeof text);
        if (strcasecmp(text, mac) != 0) continue;
        // Every match is copied: the last record for the MAC wins.
        wm::copy_bounded(std::span<char>(name, 21),
                         wm::member_text(reinterpret_cast<const char *>(record + 14), 20));
        found = 0;
    }
    return found;
}

} // extern "C"
