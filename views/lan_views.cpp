// Views of the addressing sections: the LAN with its DHCP servers, static leases and IPv6
// settings; the WAN lines; the bypass addressing of the misc section.
#include <iterator>

#include "views/json_print.h"

namespace wm {
namespace {

using json::Sep;

void print_dhcp_server(const char *name, const lan_dhcpserver &d) {
    json::open_object(name);
    json::number("dhcp_server_enable", d.dhcp_server_enable);
    json::ipv4("dhcp_server_start_ipaddr", d.dhcp_server_start_ipaddr);
    json::ipv4("dhcp_server_end_ipaddr", d.dhcp_server_end_ipaddr);
    json::ipv4("dhcp_server_gateway", d.dhcp_server_gateway);
    json::ipv4("dhcp_server_dns1", d.dhcp_server_dns1);
    json::ipv4("dhcp_server_dns2", d.dhcp_server_dns2);
    json::u64("dhcp_server_leasetime", d.dhcp_server_leasetime);
    json::u32("dhcp_server_port", d.dhcp_server_port);
    json::text("resved", d.resved, Sep::Last);
    json::close_object();
}

// The static leases: "id" comes before "lock_location" here, and the list's "resved" comes
// before the list (with its comma); the pages read them so. The list closes with `}]},`.
void print_bindlist(const lan_bindlist &l) {
    json::open_object("dhcp_server_bindlist");
    json::short_number("count", l.count);
    json::number("max_count", int(std::size(l.element)));
    json::text("resved", l.resved);
    json::slots(l.element, [](const lan_bind &b) {
        json::number("id", b.id);
        json::number("lock_location", b.lock_location);
        json::number("devtype", b.devtype);
        json::text("mac", b.mac);
        json::ipv4("ip", b.ip);
        json::text("mark", b.mark);
        json::text("resved", b.resved, Sep::Last);
    });
    json::raw("]");
    json::close_object();
}

void print_lan_ipv6(const lan_config &l) {
    json::u8("enable_ipv6", l.enable_ipv6);
    json::ipv6("ipaddr6", l.ipaddr6);
    json::u8("ipaddr6_prefix", l.ipaddr6_prefix);
    json::ipv6("ipaddr6_local", l.ipaddr6_local);
    json::u8("ipaddr6_local_prefix", l.ipaddr6_local_prefix);
    json::ipv6("gateway6", l.gateway6);
    json::u8("gateway6_prefix", l.gateway6_prefix);
    json::u8("enable_ipv6_dns", l.enable_ipv6_dns);
    json::ipv6("dns61", l.dns61);
    json::ipv6("dns62", l.dns62);
    json::u8("conn_type6", l.conn_type6);
    json::u8("enable_dhcp6", l.enable_dhcp6);
    json::ipv6("dhcp6_ipstart", l.dhcp6_ipstart);
    json::ipv6("dhcp6_ipend", l.dhcp6_ipend);
    json::u32("dhcp6_lease", l.dhcp6_lease);
    json::u8("enable_radvd", l.enable_radvd);
    json::u8("ra_flag_M", l.ra_flag_M);
    json::u8("ra_flag_O", l.ra_flag_O);
    json::u8("ra_flag_A", l.ra_flag_A);
    json::u8("disable_ipv4_dns", l.disable_ipv4_dns);
}

} // namespace
} // namespace wm

using namespace wm;
using json::Sep;

extern "C" {

void printf_Lan_json(const lan_config *config) {
    const lan_config &l = *config;
    json::open_document();
    json::ipv4("ipaddr", l.ipaddr);
    json::ipv4("subnet", l.subnet);
    json::ipv4("gateway", l.gateway);
    json::ipv4("dns1", l.dns1);
    json::ipv4("dns2", l.dns2);
    json::ipv4("acipaddr", l.acipaddr);
    json::ipv4("acsubnet", l.acsubnet);
    json::number("ac_enable", l.ac_enable);
    json::number("lan_addr_type", l.lan_addr_type);
    json::number("stp", l.stp);
    json::number("conn_type", l.conn_type);
    print_dhcp_server("dev_dhcpserver", l.dev_dhcpserver);
    print_dhcp_server("ac_dhcpserver", l.ac_dhcpserver);
    print_bindlist(l.dhcp_server_bindlist);
    print_lan_ipv6(l);
    json::text("resved", l.resved, Sep::Last);
    json::close_document();
}

// Bypass mode: the switch is stored before the addresses but printed after "stp".
void printf_Bypass_json(const misc_config *config) {
    const misc_bypass &p = config->sys_bypass;
    json::open_document();
    json::ipv4("ipaddr", p.ipaddr);
    json::ipv4("subnet", p.subnet);
    json::ipv4("gateway", p.gateway);
    json::ipv4("dns1", p.dns1);
    json::ipv4("dns2", p.dns2);
    json::number("stp", p.stp);
    json::number("enable", p.enable);
    json::number("conn_type", p.conn_type);
    json::text("resved", p.resved, Sep::Last);
    json::close_document();
}

} // extern "C"
