// The WAN view: every WAN line of the record, whatever its state.
#include "views/json_print.h"

namespace wm {
namespace {

using json::Sep;

void print_wan_line(const wan_line &w) {
    json::number("lock_location", w.lock_location);
    json::number("enable", w.enable);
    json::number("conn_type", w.conn_type);
    json::number("wan_port", w.wan_port);
    json::text("phy_name", w.phy_name);
    json::unsigned_number("fixed_mtu", w.fixed_mtu);
    json::unsigned_number("dhcp_mtu", w.dhcp_mtu);
    json::ipv4("ipaddr", w.ipaddr);
    json::ipv4("subnet", w.subnet);
    json::ipv4("gateway", w.gateway);
    json::number("dnsmode", w.dnsmode);
    json::ipv4("dns1", w.dns1);
    json::ipv4("dns2", w.dns2);
    json::text("ppp_username", w.ppp_username);
    json::text("ppp_userpwd", w.ppp_userpwd); // the page shows the stored password
    json::text("ppp_service_name", w.ppp_service_name);
    json::text("ppp_ac_name", w.ppp_ac_name);
    json::u32("wan_upload_bandwidth", w.wan_upload_bandwidth);
    json::u32("wan_download_bandwidth", w.wan_download_bandwidth);
    json::number("wan_track_enable", w.wan_track_enable);
    json::ipv4("wan_track_ip1", w.wan_track_ip1);
    json::ipv4("wan_track_ip2", w.wan_track_ip2);
    json::unsigned_number("wan_dns_priority", w.wan_dns_priority);
    json::unsigned_number("wan_line_weight", w.wan_line_weight);
    json::number("enable_wan_access_web", w.enable_wan_access_web);
    json::unsigned_number("wan_access_web_port", w.wan_access_web_port);
    json::number("enable_mac_clone", w.enable_mac_clone);
    json::number("enable_ping_wan", w.enable_ping_wan);
    json::number("enable_ipsec", w.enable_ipsec);
    json::number("enable_pptp", w.enable_pptp);
    json::number("enable_l2tp", w.enable_l2tp);
    json::text("clone_mac", w.clone_mac);
    json::u8("enable_ipv6", w.enable_ipv6);
    json::ipv6("ipaddr6", w.ipaddr6);
    json::u8("ipaddr6_prefix", w.ipaddr6_prefix);
    json::ipv6("ipaddr6_local", w.ipaddr6_local);
    json::u8("ipaddr6_local_prefix", w.ipaddr6_local_prefix);
    json::ipv6("gateway6", w.gateway6);
    json::u8("gateway6_prefix", w.gateway6_prefix);
    json::u8("enable_ipv6_dns", w.enable_ipv6_dns);
    json::ipv6("dns61", w.dns61);
    json::ipv6("dns62", w.dns62);
    json::text("resved", w.resved, Sep::Last);
}

} // namespace
} // namespace wm

using namespace wm;

extern "C" {

// The lines are a list named "wanconfig", with no count or max_count.
void printf_Wan_json(const wan_config *config) {
    json::open_document();
    json::raw("\"wanconfig\":[");
    size_t n = std::size(config->wanconfig);
    for (size_t i = 0; i < n; ++i) {
        json::raw("{\n");
        print_wan_line(config->wanconfig[i]);
        json::raw(i + 1 < n ? "}," : "}");
    }
    json::raw("],");
    json::text("resved", config->resved, json::Sep::Last);
    json::close_document();
}

} // extern "C"
