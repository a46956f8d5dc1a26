// The LAN forms: the LAN base settings with IPv6 and port VLANs, the device's DHCP server,
// the controller's DHCP server, and the static leases of either server.
#include <arpa/inet.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "config_data_api.h"
#include "forms/list_ops.h"
#include "forms/address_bindings.h"
#include "sys/support/text.h"

namespace wm {
namespace {

// The port VLAN variables are read into a buffer of this size; a longer value is cut.
constexpr int kVlanText = 16;

// The LAN's own IPv6 settings after the shared address set: the DHCPv6 server and the
// router advertisements.
void bind_lan_ipv6(Bindings &b, lan_config &l) {
    bind_ipv6_addresses(b, l);
    b.add<conv::kTextN>("conn_type6", l.conn_type6);
    b.add<conv::kTextN>("enable_dhcp6", l.enable_dhcp6);
    b.add<conv::kIpv6>("dhcp6_ipstart", l.dhcp6_ipstart);
    b.add<conv::kIpv6>("dhcp6_ipend", l.dhcp6_ipend);
    b.add<conv::kInt2>("dhcp6_lease", l.dhcp6_lease);
    b.add<conv::kTextN>("enable_radvd", l.enable_radvd);
    b.add<conv::kTextN>("ra_flag_M", l.ra_flag_M);
    b.add<conv::kTextN>("ra_flag_O", l.ra_flag_O);
    b.add<conv::kTextN>("ra_flag_A", l.ra_flag_A);
    b.add<conv::kTextN>("disable_ipv4_dns", l.disable_ipv4_dns);
}

// The eight variables both DHCP server forms open with.
void bind_dhcp_server(Bindings &b, lan_dhcpserver &d) {
    b.add<conv::kTextN>("dhcp_server_enable", d.dhcp_server_enable);
    b.add<conv::kIpv4>("dhcp_server_start_ipaddr", d.dhcp_server_start_ipaddr);
    b.add<conv::kIpv4>("dhcp_server_end_ipaddr", d.dhcp_server_end_ipaddr);
    b.add<conv::kIpv4>("dhcp_server_gateway", d.dhcp_server_gateway);
    b.add<conv::kIpv4>("dhcp_server_dns1", d.dhcp_server_dns1);
    b.add<conv::kIpv4>("dhcp_server_dns2", d.dhcp_server_dns2);
    b.add<conv::kInt64>("dhcp_server_leasetime", d.dhcp_server_leasetime);
    b.add<conv::kLong2>("dhcp_server_port", d.dhcp_server_port);
}

// The controller switch and the controller's own address and mask.
void bind_controller(Bindings &b, lan_config &l) {
    b.add<conv::kInt>("ac_enable", l.ac_enable);
    b.add<conv::kIpv4>("acipaddr", l.acipaddr);
    b.add<conv::kIpv4>("acsubnet", l.acsubnet);
}

void bind_lan_base(Bindings &b, lan_config &l) {
    b.add<conv::kIpv4>("ipaddr", l.ipaddr);
    b.add<conv::kIpv4>("subnet", l.subnet);
    b.add<conv::kIpv4>("gateway", l.gateway);
    b.add<conv::kIpv4>("dns1", l.dns1);
    b.add<conv::kIpv4>("dns2", l.dns2);
    b.add<conv::kTextN>("conn_type", l.conn_type);
    b.add<conv::kInt>("lan_addr_type", l.lan_addr_type);
    // "m_enable", "m_vlanid" and "eth_phy_name" are the IPTV settings of the page.
    b.add<conv::kText>("m_enable", l.m_iptv.m_enable);
    b.add<conv::kInt2>("m_vlanid", l.m_iptv.m_vlanid);
    b.add<conv::kTextN>("eth_phy_name", l.m_iptv.eth_phy_name);
    bind_controller(b, l);
    bind_lan_ipv6(b, l);
}

// A static lease as the page sends it.
void bind_static_lease(Bindings &b, dhcp_static_item &e) {
    b.add<conv::kInt>("id", e.id);
    b.add<conv::kText>("devname", e.devname);
    b.add<conv::kText>("devtype", e.devtype);
    b.add<conv::kText>("mac", e.mac);
    b.add<conv::kText>("ip", e.ip);
    b.add<conv::kText>("mark", e.mark);
}

template <size_t D, size_t S> void copy_text(char (&dst)[D], const char (&src)[S]) {
    copy_bounded(dst, member_text(src, S));
}

// The store keeps a lease's device type as a number in one byte, which the view prints
// with %d: the page's text ("2") becomes that number. The dotted address becomes the
// address member; an address the page left empty stays 0.0.0.0.
void to_slot(const dhcp_static_item &e, lan_bind &s) {
    std::memset(&s, 0, sizeof s);
    s.id = e.id;
    char text[sizeof e.ip + 1];
    copy_text(text, e.devtype);
    s.devtype = static_cast<uint8_t>(std::atoi(text));
    copy_text(s.mac, e.mac);
    if (copy_bounded(text, member_text(e.ip, sizeof e.ip)) > 0) s.ip.v4 = inet_addr(text);
    copy_text(s.mark, e.mark);
}

// The store calls of one static-lease list.
struct LeaseList {
    int (*add)(lan_config *, lan_bind *);
    int (*modify)(lan_config *, lan_bind *);
    int (*del)(lan_config *, const void *);
    int (*del_all)();
};
constexpr LeaseList kDeviceLeases{AddDhcpStaticItem, ModifyDhcpStaticItem, DelDhcpStaticItem,
                                  DelAllDhcpStaticItem};
constexpr LeaseList kControllerLeases{AC_AddDhcpStaticItem, AC_ModifyDhcpStaticItem,
                                      AC_DelDhcpStaticItem, AC_DelAllDhcpStaticItem};

// The list is a template argument so that its store calls are direct calls (see save_switch
// in rule_forms.cpp).
template <const LeaseList &list>
int lease_element(lan_config *lan, int op, const form_pair *pairs, int count) {
    if (!lan) return -1;
    if (op == kOpDelete) {
        // The key is the "id" text in a zeroed 32-bit word and a byte; a longer id is cut.
        char key[5];
        std::memset(key, 0, sizeof key);
        get_prop_n("id", key, pairs, count, sizeof key);
        list.del(lan, key); // a delete makes no save call of its own
        return 0;
    }
    if (op == kOpDeleteAll) {
        list.del_all();
        return 0;
    }
    dhcp_static_item item;
    std::memset(&item, 0, sizeof item);
    Bindings b;
    bind_static_lease(b, item);
    b.apply(pairs, count);
    lan_bind slot;
    to_slot(item, slot);
    int rc = op == kOpAdd ? list.add(lan, &slot) : list.modify(lan, &slot);
    SC_Save_System_Lan_Config2Flash(lan);
    return rc;
}

// "m_lan_port_vlan_id0" .. "m_lan_port_vlan_id3": a port's VLAN id changes only when its
// variable is sent.
void apply_port_vlans(lan_config &l, const form_pair *pairs, int count) {
    for (int i = 0; i < WEBMGMT_LAN_PORTS; ++i) {
        char name[32];
        std::snprintf(name, sizeof name, "m_lan_port_vlan_id%d", i);
        char value[kVlanText];
        std::memset(value, 0, sizeof value);
        if (get_prop_n(name, value, pairs, count, sizeof value))
            l.lan_vlan.port[i].m_vlan_id = static_cast<int16_t>(std::atoi(value));
    }
}

} // namespace
} // namespace wm

using namespace wm;

extern "C" {

void save_lan_base(lan_config *lan, const form_pair *pairs, int count) {
    if (!lan) return;
    apply_port_vlans(*lan, pairs, count);
    Bindings b;
    bind_lan_base(b, *lan);
    b.apply(pairs, count);
    SC_Save_System_Lan_Config2Flash(lan);
}

int save_lan_dev_dhcpserver(lan_config *lan, const form_pair *pairs, int count) {
    if (!lan) return -1;
    Bindings b;
    bind_dhcp_server(b, lan->dev_dhcpserver);
    bind_lan_ipv6(b, *lan);
    b.apply(pairs, count);
    SC_Save_System_Lan_Config2Flash(lan);
    return 0;
}

int save_lan_ac_dhcpserver(const form_pair *pairs, int count) {
    lan_config *lan = SC_Get_Lan_System_Config();
    if (!lan) return -1;
    Bindings b;
    bind_dhcp_server(b, lan->ac_dhcpserver);
    bind_controller(b, *lan);
    b.apply(pairs, count);
    // Controller mode off: the managed-AP list is marked with the fixed value 254.
    if (lan->ac_enable == 0) {
        if (manage_ap_list_config *aps = SC_Get_ManageApList_System_Config())
            aps->m_ac_marker = 254;
    }
    SC_Save_System_Lan_Config2Flash(lan);
    return 0;
}

int save_lan_dhcp_server_bindlist(lan_config *lan, int op, const form_pair *pairs, int count) {
    return lease_element<kDeviceLeases>(lan, op, pairs, count);
}

int save_lan_dhcp_server_acbindlist(int op, const form_pair *pairs, int count) {
    return lease_element<kControllerLeases>(SC_Get_Lan_System_Config(), op, pairs, count);
}

} // extern "C"
