// Field tables of the network records: the LAN with its DHCP servers, the WAN lines.
#include "conf/field_rows.h"
#include "conf/record_head.h"

namespace {

WM_CODES(lan_codes, WEBMGMT_LAN_CONFIG_MEMBERS(WM_CODE_OF));
WM_CODES(dhcp_codes, WEBMGMT_LAN_DHCPSERVER_MEMBERS(WM_CODE_OF));
WM_CODES(bindlist_codes, WEBMGMT_LAN_BINDLIST_MEMBERS(WM_CODE_OF));
WM_CODES(vlan_port_codes, WEBMGMT_LAN_VLAN_PORT_MEMBERS(WM_CODE_OF));
WM_CODES(wan_codes, WEBMGMT_WAN_CONFIG_MEMBERS(WM_CODE_OF));
WM_CODES(wan_line_codes, WEBMGMT_WAN_LINE_MEMBERS(WM_CODE_OF));

WM_BLOCK_ROWS(bind_rows, lan_bind, WEBMGMT_LAN_BIND_MEMBERS)
WM_BLOCK_ROWS(iptv_rows, lan_iptv, WEBMGMT_LAN_IPTV_MEMBERS)

void lan_address_rows(wm::RowWriter &w, lan_config &lan) {
    WM_ROW(w, lan_codes, lan, lan_name);
    WM_ROW(w, lan_codes, lan, eth_phy_name);
    WM_ROW(w, lan_codes, lan, lan_addr_type);
    WM_ROW(w, lan_codes, lan, ipaddr);
    WM_ROW(w, lan_codes, lan, subnet);
    WM_ROW(w, lan_codes, lan, gateway);
    WM_ROW(w, lan_codes, lan, dns1);
    WM_ROW(w, lan_codes, lan, dns2);
    WM_ROW(w, lan_codes, lan, stp);
    WM_ROW(w, lan_codes, lan, ac_enable);
    WM_ROW(w, lan_codes, lan, acipaddr);
    WM_ROW(w, lan_codes, lan, acsubnet);
    WM_ROW(w, lan_codes, lan, default_ipaddr);
    WM_ROW(w, lan_codes, lan, default_subnet);
}

// A DHCP server's settings; the factory range follows its reserved room in the table.
void dhcp_rows(wm::RowWriter &w, lan_dhcpserver &d, bool with_defaults) {
    WM_ROW(w, dhcp_codes, d, dhcp_server_enable);
    WM_ROW(w, dhcp_codes, d, dhcp_server_start_ipaddr);
    WM_ROW(w, dhcp_codes, d, dhcp_server_end_ipaddr);
    WM_ROW(w, dhcp_codes, d, dhcp_server_gateway);
    WM_ROW(w, dhcp_codes, d, dhcp_server_dns1);
    WM_ROW(w, dhcp_codes, d, dhcp_server_dns2);
    WM_ROW(w, dhcp_codes, d, dhcp_server_leasetime);
    WM_ROW(w, dhcp_codes, d, dhcp_server_port);
    WM_ROW(w, dhcp_codes, d, resved);
    if (!with_defaults) return;
    WM_ROW(w, dhcp_codes, d, default_dhcp_server_start_ipaddr);
    WM_ROW(w, dhcp_codes, d, default_dhcp_server_end_ipaddr);
    WM_ROW(w, dhcp_codes, d, default_dhcp_server_gateway);
}

void bindlist_rows(wm::RowWriter &w, lan_bindlist &list, const char *name) {
    w.prefix("%s.", name);
    WM_ROW(w, bindlist_codes, list, count);
    for (int i = 0; i < WEBMGMT_LAN_BIND_COUNT; ++i) {
        w.prefix("%s.element[%d].", name, i);
        bind_rows(w, list.element[i]);
    }
    w.prefix("%s.", name);
    WM_ROW(w, bindlist_codes, list, resved);
}

void lan_ipv6_rows(wm::RowWriter &w, lan_config &lan) {
    WM_ROW(w, lan_codes, lan, enable_ipv6);
    WM_ROW(w, lan_codes, lan, ipaddr6);
    WM_ROW(w, lan_codes, lan, ipaddr6_prefix);
    WM_ROW(w, lan_codes, lan, ipaddr6_local);
    WM_ROW(w, lan_codes, lan, ipaddr6_local_prefix);
    WM_ROW(w, lan_codes, lan, gateway6);
    WM_ROW(w, lan_codes, lan, gateway6_prefix);
    WM_ROW(w, lan_codes, lan, enable_ipv6_dns);
    WM_ROW(w, lan_codes, lan, dns61);
    WM_ROW(w, lan_codes, lan, dns62);
    WM_ROW(w, lan_codes, lan, conn_type6);
    WM_ROW(w, lan_codes, lan, enable_dhcp6);
    WM_ROW(w, lan_codes, lan, dhcp6_ipstart);
    WM_ROW(w, lan_codes, lan, dhcp6_ipend);
    WM_ROW(w, lan_codes, lan, dhcp6_lease);
    WM_ROW(w, lan_codes, lan, enable_radvd);
    WM_ROW(w, lan_codes, lan, ra_flag_M);
    WM_ROW(w, lan_codes, lan, ra_flag_O);
    WM_ROW(w, lan_codes, lan, ra_flag_A);
    WM_ROW(w, lan_codes, lan, disable_ipv4_dns);
}

void vlan_port_rows(wm::RowWriter &w, lan_vlan_port &port) {
    WM_ROW(w, vlan_port_codes, port, m_haveport);
    WM_ROW(w, vlan_port_codes, port, m_supportvlan);
    WM_ROW(w, vlan_port_codes, port, m_port_id);
    WM_ROW(w, vlan_port_codes, port, m_vlan_id);
}

// A WAN line in declaration order, except that the port number comes after the reserved
// room.
void wan_line_rows(wm::RowWriter &w, wan_line &l) {
    WM_ROW(w, wan_line_codes, l, lock_location);
    WM_ROW(w, wan_line_codes, l, enable);
    WM_ROW(w, wan_line_codes, l, conn_type);
    WM_ROW(w, wan_line_codes, l, phy_name);
    WM_ROW(w, wan_line_codes, l, fixed_mtu);
    WM_ROW(w, wan_line_codes, l, dhcp_mtu);
    WM_ROW(w, wan_line_codes, l, ipaddr);
    WM_ROW(w, wan_line_codes, l, subnet);
    WM_ROW(w, wan_line_codes, l, gateway);
    WM_ROW(w, wan_line_codes, l, dnsmode);
    WM_ROW(w, wan_line_codes, l, dns1);
    WM_ROW(w, wan_line_codes, l, dns2);
    WM_ROW(w, wan_line_codes, l, ppp_username);
    WM_ROW(w, wan_line_codes, l, ppp_userpwd);
    WM_ROW(w, wan_line_codes, l, ppp_service_name);
    WM_ROW(w, wan_line_codes, l, ppp_ac_name);
    WM_ROW(w, wan_line_codes, l, wan_upload_bandwidth);
    WM_ROW(w, wan_line_codes, l, wan_download_bandwidth);
    WM_ROW(w, wan_line_codes, l, wan_track_enable);
    WM_ROW(w, wan_line_codes, l, wan_track_ip1);
    WM_ROW(w, wan_line_codes, l, wan_track_ip2);
    WM_ROW(w, wan_line_codes, l, wan_dns_priority);
    WM_ROW(w, wan_line_codes, l, wan_line_weight);
    WM_ROW(w, wan_line_codes, l, enable_wan_access_web);
    WM_ROW(w, wan_line_codes, l, wan_access_web_port);
    WM_ROW(w, wan_line_codes, l, enable_mac_clone);
    WM_ROW(w, wan_line_codes, l, clone_mac);
    WM_ROW(w, wan_line_codes, l, enable_ipv6);
    WM_ROW(w, wan_line_codes, l, ipaddr6);
    WM_ROW(w, wan_line_codes, l, ipaddr6_prefix);
    WM_ROW(w, wan_line_codes, l, ipaddr6_local);
    WM_ROW(w, wan_line_codes, l, ipaddr6_local_prefix);
    WM_ROW(w, wan_line_codes, l, gateway6);
    WM_ROW(w, wan_line_codes, l, gateway6_prefix);
    WM_ROW(w, wan_line_codes, l, enable_ipv6_dns);
    WM_ROW(w, wan_line_codes, l, dns61);
    WM_ROW(w, wan_line_codes, l, dns62);
    WM_ROW(w, wan_line_codes, l, resved);
    WM_ROW(w, wan_line_codes, l, wan_port);
}

} // namespace

extern "C" {

void lan_field(field_desc *table, lan_config *config) {
    wm::RowWriter w(table);
    wm::head_rows(w, *config);
    lan_address_rows(w, *config);
    w.prefix("dev_dhcpserver.");
    dhcp_rows(w, config->dev_dhcpserver, true);
    w.prefix("ac_dhcpserver.");
    dhcp_rows(w, config->ac_dhcpserver, false);
    bindlist_rows(w, config->dhcp_server_bindlist, "dhcp_server_bindlist");
    bindlist_rows(w, config->dhcp_server_acbindlist, "dhcp_server_acbindlist");
    w.no_prefix();
    WM_ROW(w, lan_codes, *config, conn_type);
    w.prefix("m_iptv.");
    iptv_rows(w, config->m_iptv);
    w.no_prefix();
    lan_ipv6_rows(w, *config);
    WM_ROW(w, lan_codes, *config, resved);
    for (int i = 0; i < WEBMGMT_LAN_PORTS; ++i) {
        w.prefix("lan_vlan.port[%d].", i);
        vlan_port_rows(w, config->lan_vlan.port[i]);
    }
}

void wan_field(field_desc *table, wan_config *config) {
    wm::RowWriter w(table);
    wm::head_rows(w, *config);
    for (int i = 0; i < WEBMGMT_WAN_LINES; ++i) {
        w.prefix("wanconfig[%d].", i);
        wan_line_rows(w, config->wanconfig[i]);
    }
    w.no_prefix();
    WM_ROW(w, wan_codes, *config, resved);
}

} // extern "C"
