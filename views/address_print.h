// The address printer of the LAN and WAN views that the other views do not need: IPv6
// addresses.
#pragma once

#include <arpa/inet.h>

#include <cstdint>
#include <cstring>

#include "views/json_print.h"

namespace wm::json {

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
