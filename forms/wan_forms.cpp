// The WAN forms: one WAN line, the bypass addressing and the cloud binding (both in the
// misc section).
#include <iterator>

#include "config_data_api.h"
#include "forms/address_bindings.h"

namespace wm {
namespace {

void bind_wan_line(Bindings &b, wan_line &w) {
    b.add<conv::kTextN>("enable", w.enable);
    b.add<conv::kTextN>("conn_type", w.conn_type);
    b.add<conv::kTextN>("phy_name", w.phy_name);
    b.add<conv::kInt2>("fixed_mtu", w.fixed_mtu);
    b.add<conv::kInt2>("dhcp_mtu", w.dhcp_mtu);
    b.add<conv::kIpv4>("ipaddr", w.ipaddr);
    b.add<conv::kIpv4>("subnet", w.subnet);
    b.add<conv::kIpv4>("gateway", w.gateway);
    b.add<conv::kTextN>("dnsmode", w.dnsmode);
    b.add<conv::kIpv4>("dns1", w.dns1);
    b.add<conv::kIpv4>("dns2", w.dns2);
    b.add<conv::kTextN>("ppp_username", w.ppp_username);
    b.add<conv::kTextN>("ppp_userpwd", w.ppp_userpwd);
    b.add<conv::kTextN>("ppp_service_name", w.ppp_service_name);
    b.add<conv::kTextN>("ppp_ac_name", w.ppp_ac_name);
    b.add<conv::kLong2>("wan_upload_bandwidth", w.wan_upload_bandwidth);
    b.add<conv::kLong2>("wan_download_bandwidth", w.wan_download_bandwidth);
    b.add<conv::kTextN>("wan_track_enable", w.wan_track_enable);
    b.add<conv::kIpv4>("wan_track_ip1", w.wan_track_ip1);
    b.add<conv::kIpv4>("wan_track_ip2", w.wan_track_ip2);
    b.add<conv::kInt2>("wan_dns_priority", w.wan_dns_priority);
    b.add<conv::kInt2>("wan_line_weight", w.wan_line_weight);
    b.add<conv::kTextN>("enable_wan_access_web", w.enable_wan_access_web);
    b.add<conv::kInt2>("wan_access_web_port", w.wan_access_web_port);
    b.add<conv::kTextN>("enable_mac_clone", w.enable_mac_clone);
    // The clone MAC is kept as the page's text; the view prints it with %s.
    b.add<conv::kTextN>("clone_mac", w.clone_mac);
    b.add<conv::kTextN>("enable_ping_wan", w.enable_ping_wan);
    b.add<conv::kTextN>("enable_ipsec", w.enable_ipsec);
    b.add<conv::kTextN>("enable_pptp", w.enable_pptp);
    b.add<conv::kTextN>("enable_l2tp", w.enable_l2tp);
    b.add<conv::kTextN>("wan_port", w.wan_port);
    bind_ipv6_addresses(b, w);
}

void bind_bypass(Bindings &b, misc_bypass &p) {
    b.add<conv::kIpv4>("ipaddr", p.ipaddr);
    b.add<conv::kIpv4>("subnet", p.subnet);
    b.add<conv::kIpv4>("gateway", p.gateway);
    b.add<conv::kIpv4>("dns1", p.dns1);
    b.add<conv::kIpv4>("dns2", p.dns2);
    b.add<conv::kTextN>("stp", p.stp);
    b.add<conv::kTextN>("conn_type", p.conn_type);
    b.add<conv::kTextN>("enable", p.enable);
}

// The cloud texts are copied with strncpy over their members: a value of the full width is
// kept without a terminator.
void bind_cloud(Bindings &b, misc_cloud &c) {
    b.add<conv::kTextN>("server", c.server);
    b.add<conv::kTextN>("bind_code", c.bind_code);
    b.add<conv::kTextN>("enable", c.enable);
    b.add<conv::kTextN>("location_x", c.location_x);
    b.add<conv::kTextN>("location_y", c.location_y);
    b.add<conv::kTextN>("desc", c.desc);
}

} // namespace
} // namespace wm

using namespace wm;

extern "C" {

int save_wan_base(wan_config *wan, int line, const form_pair *pairs, int count) {
    // The page's line index is not trusted: one outside the record's lines writes nothing.
    if (!wan || line < 0 || line >= int(std::size(wan->wanconfig))) return -1;
    Bindings b;
    bind_wan_line(b, wan->wanconfig[line]);
    b.apply(pairs, count);
    SC_Save_System_Wan_Config2Flash(wan);
    return 0;
}

int save_bypass_base(const form_pair *pairs, int count) {
    misc_config *misc = SC_Get_Misc_System_Config();
    if (!misc) return -1;
    Bindings b;
    bind_bypass(b, misc->sys_bypass);
    b.apply(pairs, count);
    SC_Save_System_Misc_Config2Flash(misc);
    return 0;
}

int save_cloud_base(misc_config *misc, const form_pair *pairs, int count) {
    if (!misc) return -1;
    Bindings b;
    bind_cloud(b, misc->sys_cloud);
    b.apply(pairs, count);
    SC_Save_System_Misc_Config2Flash(misc);
    return 0;
}

} // extern "C"
