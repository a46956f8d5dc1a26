// The IPv6 members the LAN form and the WAN form share: the same variable names, bound with
// the same codes, to members of the same names in either record.
#pragma once

#include "forms/binding.h"

namespace wm {

// "enable_ipv6" .. "dns62": the switch, the global and link-local addresses with their
// prefix lengths, the gateway, the DNS switch and the two DNS servers.
template <typename Record> void bind_ipv6_addresses(Bindings &b, Record &r) {
    b.add<conv::kTextN>("enable_ipv6", r.enable_ipv6);
    b.add<conv::kIpv6>("ipaddr6", r.ipaddr6);
    b.add<conv::kTextN>("ipaddr6_prefix", r.ipaddr6_prefix);
    b.add<conv::kIpv6>("ipaddr6_local", r.ipaddr6_local);
    b.add<conv::kTextN>("ipaddr6_local_prefix", r.ipaddr6_local_prefix);
    b.add<conv::kIpv6>("gateway6", r.gateway6);
    b.add<conv::kTextN>("gateway6_prefix", r.gateway6_prefix);
    b.add<conv::kTextN>("enable_ipv6_dns", r.enable_ipv6_dns);
    b.add<conv::kIpv6>("dns61", r.dns61);
    b.add<conv::kIpv6>("dns62", r.dns62);
}

} // namespace wm
