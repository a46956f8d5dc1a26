// The number and address printers of the LAN and WAN views that the other views do not
// need: 64-bit and 32-bit unsigned numbers, one-byte flags, IPv6 addresses.
#pragma once

#include <arpa/inet.h>

#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "views/json_print.h"

namespace wm::json {

// The DHCP lease time: "%llu" of a 64-bit member.
inline void u64(const char *key, uint64_t value, Sep sep = Sep::Comma) {
    std::printf("\"%s\":\"%" PRIu64 "\"%s\n", key, value, sep_text(sep));
}

// The device printed bandwidths and the DHCP port with "%lu" of its 32-bit long; the
// members are 32-bit, printed as such on any host.
inline void u32(const char *key, uint32_t value, Sep sep = Sep::Comma) {
    std::printf("\"%s\":\"%" PRIu32 "\"%s\n", key, value, sep_text(sep));
}

// Prefix lengths and IPv6 switches: "%hhu".
inline void u8(const char *key, uint8_t value, Sep sep = Sep::Comma) {
    std::printf("\"%s\":\"%u\"%s\n", key, unsigned{value}, sep_text(sep));
}

// IPv6 addresses share one 46-byte buffer, cleared once before a block of them.
class Ipv6Printer {
  public:
    Ipv6Printer() { std::memset(text_, 0, sizeof text_); }
    void operator()(const char *key, const ip6addr_field &address, Sep sep = Sep::Comma) {
        inet_ntop(AF_INET6, address.v6, text_, sizeof text_);
        text_view(key, wm::member_text(text_, sizeof text_), sep);
    }

  private:
    char text_[46];
};

} // namespace wm::json
