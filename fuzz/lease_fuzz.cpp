// Lease files from arbitrary bytes, read in both layouts, sorted, searched by MAC: every
// node stays terminated and inside its block, whatever the file holds.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <sys/stat.h>

#include "fuzz_files.h"
#include "webmgmt.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static const std::string root = [] {
        std::string r = fuzzsupport::scratch_path("lease-root");
        mkdir(r.c_str(), 0755);
        mkdir((r + "/var").c_str(), 0755);
        setenv("WEBMGMT_ROOT", r.c_str(), 1);
        return r;
    }();
    fuzzsupport::write_bytes(root + "/var/udhcpd.leases", data, size);
    lease_entry *list = nullptr;
    get_leases(&list);
    get_addrserver_leases(&list, "/var/udhcpd.leases", nullptr);
    sort_dhcplist(list);
    for (lease_entry *n = list; n; n = n->next) {
        char name[21];
        get_DevnamebyMacfromLease("/var/udhcpd.leases", n->mac, name);
        if (search_by_mac(list, n->mac) == 0) std::abort();
    }
    free_leaselist(&list);
    return 0;
}
