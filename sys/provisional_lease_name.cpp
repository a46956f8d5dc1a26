// get_DevnamebyMacfromLease: the host name of a station from the DHCP server's lease file
// (the address-server layout: an 8-byte header, then 36-byte records).
#include <cstdio>
#include <cstring>

#include "sys/support/raii.h"
#include "sys/support/text.h"

namespace {

constexpr long kHeaderSize = 8;
constexpr size_t kRecordSize = 36;
constexpr size_t kMacOffset = 8;
constexpr size_t kNameOffset = 14;
constexpr size_t kNameSize = 20;

} // namespace

extern "C" {

void get_DevnamebyMacfromLease(const char *lease_file, const char *mac, char *name) {
    if (!lease_file || !mac || !name) return;
    wm::UniqueFile f(std::fopen(lease_file, "rb"));
    if (!f || std::fseek(f.get(), kHeaderSize, SEEK_SET) != 0) return;
    unsigned char record[kRecordSize];
    while (std::fread(record, 1, sizeof record, f.get()) == sizeof record) {
        const unsigned char *m = record + kMacOffset;
        char text[18];
        std::snprintf(text, sizeof text, "%02X:%02X:%02X:%02X:%02X:%02X", m[0], m[1], m[2], m[3],
                      m[4], m[5]);
        // Every matching record is copied: the last one wins. The name fills its 20 bytes
        // without a terminator at most, so 21 bytes hold it.
        if (wm::equals_nocase(text, mac))
            wm::copy_bounded(
                {name, kNameSize + 1},
                wm::member_text(reinterpret_cast<const char *>(record + kNameOffset), kNameSize));
    }
}

} // extern "C"
