// The LAN, WAN and bypass views: whole documents against golden files (factory defaults,
// every member filled, edge values), values as python3's json module reads them, IPv6
// addresses as python3's ipaddress module writes them, and the shapes the pages rely on.
#include <string>

#include "tests/views/view_check.h"

namespace {

using viewtest::Case;
using viewtest::fill_full;
using viewtest::put;

void v4(ipaddr_field &a, const std::string &dotted) {
    a.v4 = viewtest::ipv4(dotted.c_str());
}
void v6(ip6addr_field &a, const char *text) {
    inet_pton(AF_INET6, text, a.v6);
}

void fill_dhcp(lan_dhcpserver &d, int net) {
    std::string p = "10." + std::to_string(net) + ".0.";
    d.dhcp_server_enable = 1;
    v4(d.dhcp_server_start_ipaddr, p + "100");
    v4(d.dhcp_server_end_ipaddr, p + "200");
    v4(d.dhcp_server_gateway, p + "1");
    v4(d.dhcp_server_dns1, "8.8.8." + std::to_string(net));
    v4(d.dhcp_server_dns2, "1.1.1." + std::to_string(net));
    d.dhcp_server_leasetime = 86400ull * net;
    d.dhcp_server_port = 67;
    put(d.resved, "dhcp-" + std::to_string(net));
}

void fill_lease(lan_bind &b, int i) {
    b.id = i + 1;
    b.lock_location = 200 + i;
    b.devtype = uint8_t(i % 4);
    char mac[20];
    std::snprintf(mac, sizeof mac, "00:11:22:33:44:%02X", i);
    put(b.mac, mac);
    v4(b.ip, "192.168.1." + std::to_string(10 + i));
    put(b.mark, "lease-" + std::to_string(i));
    put(b.resved, "r" + std::to_string(i));
}

std::unique_ptr<lan_config> make_lan(Case c) {
    if (c == Case::Defaults) return viewtest::from_defaults(lan_field, "lan.conf");
    auto r = std::make_unique<lan_config>();
    lan_config &l = *r;
    if (c == Case::Full) {
        v4(l.ipaddr, "192.168.1.1"), v4(l.subnet, "255.255.255.0"), v4(l.gateway, "192.168.1.254");
        v4(l.dns1, "192.168.1.2"), v4(l.dns2, "192.168.1.3");
        v4(l.acipaddr, "172.16.0.1"), v4(l.acsubnet, "255.255.0.0");
        l.ac_enable = 1, l.lan_addr_type = 2, l.stp = 1, l.conn_type = 3;
        fill_dhcp(l.dev_dhcpserver, 1);
        fill_dhcp(l.ac_dhcpserver, 2);
        l.dhcp_server_bindlist.count = WEBMGMT_LAN_BIND_COUNT;
        for (int i = 0; i < WEBMGMT_LAN_BIND_COUNT; ++i)
            fill_lease(l.dhcp_server_bindlist.element[i], i);
        put(l.dhcp_server_bindlist.resved, "binds");
        fill_lease(l.dhcp_server_acbindlist.element[0], 99); // not printed by this view
        l.enable_ipv6 = 1;
        v6(l.ipaddr6, "2001:db8::1"), l.ipaddr6_prefix = 64;
        v6(l.ipaddr6_local, "fe80::1"), l.ipaddr6_local_prefix = 10;
        v6(l.gateway6, "2001:db8::ffff"), l.gateway6_prefix = 48;
        l.enable_ipv6_dns = 1;
        v6(l.dns61, "2001:4860:4860::8888"), v6(l.dns62, "::ffff:192.0.2.1");
        l.conn_type6 = 2, l.enable_dhcp6 = 1;
        v6(l.dhcp6_ipstart, "2001:db8::100"), v6(l.dhcp6_ipend, "2001:db8::1ff");
        l.dhcp6_lease = 7200, l.enable_radvd = 1, l.ra_flag_M = 1, l.ra_flag_O = 0;
        l.ra_flag_A = 1, l.disable_ipv4_dns = 0;
        put(l.resved, "record");
        return r;
    }
    // Edge: a lease time past 32 bits, the largest numbers, full-width texts without a
    // terminator, all-ones addresses.
    v4(l.ipaddr, "255.255.255.255");
    l.ac_enable = -1, l.lan_addr_type = INT32_MIN, l.stp = 255, l.conn_type = 255;
    l.dev_dhcpserver.dhcp_server_leasetime = UINT64_MAX;
    l.dev_dhcpserver.dhcp_server_port = UINT32_MAX;
    l.ac_dhcpserver.dhcp_server_leasetime = 4294967296ull;
    fill_full(l.dev_dhcpserver.resved, 'D');
    l.dhcp_server_bindlist.count = -1;
    lan_bind &b = l.dhcp_server_bindlist.element[WEBMGMT_LAN_BIND_COUNT - 1];
    b.id = INT32_MIN, b.devtype = 255;
    fill_full(b.mac, 'M'), fill_full(b.mark, 'K'), fill_full(b.resved, 'R');
    fill_full(l.dhcp_server_bindlist.resved, 'L');
    l.enable_ipv6 = 255, l.ipaddr6_prefix = 255;
    v6(l.ipaddr6, "ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff");
    l.dhcp6_lease = UINT32_MAX;
    fill_full(l.resved, 'Z');
    return r;
}

std::unique_ptr<wan_config> make_wan(Case c) {
    if (c == Case::Defaults) return viewtest::from_defaults(wan_field, "wan.conf");
    auto r = std::make_unique<wan_config>();
    for (int i = 0; i < WEBMGMT_WAN_LINES; ++i) {
        wan_line &w = r->wanconfig[i];
        std::string n = std::to_string(i);
        if (c == Case::Edge) {
            w.lock_location = -1, w.enable = 255, w.fixed_mtu = UINT32_MAX;
            w.wan_upload_bandwidth = UINT32_MAX, w.wan_download_bandwidth = 4294967295u;
            w.wan_access_web_port = 65536, w.enable_l2tp = 255;
            fill_full(w.phy_name, 'P'), fill_full(w.ppp_username, 'U');
            fill_full(w.ppp_userpwd, 'W'), fill_full(w.clone_mac, 'C');
            fill_full(w.resved, 'R');
            w.ipaddr6_prefix = 128;
            continue;
        }
        w.lock_location = 300 + i, w.enable = i != 3, w.conn_type = uint8_t(i),
        w.wan_port = uint8_t(i + 1);
        put(w.phy_name, "eth0." + n);
        w.fixed_mtu = 1500 - i, w.dhcp_mtu = 1492 - i;
        v4(w.ipaddr, "100.64." + n + ".2"), v4(w.subnet, "255.255.255.252");
        v4(w.gateway, "100.64." + n + ".1"), w.dnsmode = 1;
        v4(w.dns1, "9.9.9." + n), v4(w.dns2, "149.112.112." + n);
        put(w.ppp_username, "user" + n), put(w.ppp_userpwd, "secret" + n);
        put(w.ppp_service_name, "svc" + n), put(w.ppp_ac_name, "ac" + n);
        w.wan_upload_bandwidth = 10000 * (i + 1), w.wan_download_bandwidth = 100000 * (i + 1);
        w.wan_track_enable = 1, v4(w.wan_track_ip1, "8.8.4." + n),
        v4(w.wan_track_ip2, "8.8.8." + n);
        w.wan_dns_priority = uint32_t(i), w.wan_line_weight = uint32_t(10 * i);
        w.enable_wan_access_web = 1, w.wan_access_web_port = 8080 + i;
        w.enable_mac_clone = 1, put(w.clone_mac, "02:00:00:00:00:0" + n);
        w.enable_ping_wan = 1, w.enable_ipsec = 0, w.enable_pptp = 1, w.enable_l2tp = 0;
        w.enable_ipv6 = 1;
        v6(w.ipaddr6, ("2001:db8:" + n + "::2").c_str()), w.ipaddr6_prefix = 64;
        v6(w.ipaddr6_local, "fe80::2"), w.ipaddr6_local_prefix = 64;
        v6(w.gateway6, ("2001:db8:" + n + "::1").c_str()), w.gateway6_prefix = 64;
        w.enable_ipv6_dns = 1, v6(w.dns61, "2620:fe::fe"), v6(w.dns62, "2620:fe::9");
        put(w.resved, "line" + n);
    }
    c == Case::Edge ? fill_full(r->resved, 'Z') : put(r->resved, "record");
    return r;
}

std::unique_ptr<misc_config> make_misc(Case c) {
    if (c == Case::Defaults) return viewtest::from_defaults(misc_field, "misc.conf");
    auto r = std::make_unique<misc_config>();
    misc_bypass &p = r->sys_bypass;
    if (c == Case::Full) {
        p.enable = 1, p.stp = 1, p.conn_type = 2;
        v4(p.ipaddr, "192.168.0.2"), v4(p.subnet, "255.255.255.0"), v4(p.gateway, "192.168.0.1");
        v4(p.dns1, "192.168.0.1"), v4(p.dns2, "8.8.8.8");
        put(p.resved, "bypass");
    } else {
        p.enable = 255, p.stp = 254, p.conn_type = 253;
        v4(p.dns2, "255.255.255.255");
        fill_full(p.resved, 'B');
    }
    return r;
}

std::string run(const std::string &view, Case c) {
    if (view == "Lan") return viewtest::print(printf_Lan_json, *make_lan(c));
    if (view == "Wan") return viewtest::print(printf_Wan_json, *make_wan(c));
    return viewtest::print(printf_Bypass_json, *make_misc(c));
}

const char *const kViews[] = {"Lan", "Wan", "Bypass"};

// The goldens pin the particular shapes: the lease list's "resved" before "element", `}]},`
// after the last lease, "id" before "lock_location"; the WAN list with no count, closed by
// `}],`.
TEST(LanViews, WholeDocumentsMatchTheirGoldenFiles) {
    for (const char *v : kViews)
        for (Case c : {Case::Defaults, Case::Full, Case::Edge})
            viewtest::expect_golden(std::string(v) + "-" + viewtest::kCaseNames[int(c)] + ".json",
                                    run(v, c));
}

using viewtest::Expect;
const Expect kExpected[] = {
    {"Lan", Case::Defaults, "ipaddr", "192.168.1.1"},
    {"Lan", Case::Defaults, "dhcp_server_bindlist.element#len", "32"},
    {"Lan", Case::Full, "dhcp_server_bindlist.resved", "binds"},
    {"Lan", Case::Full, "dhcp_server_bindlist.element[31].mac", "00:11:22:33:44:1F"},
    {"Lan", Case::Full, "dhcp_server_bindlist.element[7].ip", "192.168.1.17"},
    {"Lan", Case::Full, "dhcp_server_bindlist.element[7].devtype", "3"},
    {"Lan", Case::Full, "dhcp6_lease", "7200"},
    {"Lan", Case::Edge, "dev_dhcpserver.dhcp_server_leasetime", "18446744073709551615"},
    {"Lan", Case::Edge, "ac_dhcpserver.dhcp_server_leasetime", "4294967296"},
    {"Lan", Case::Edge, "dev_dhcpserver.dhcp_server_port", "4294967295"},
    {"Lan", Case::Edge, "dev_dhcpserver.resved", std::string(500, 'D')},
    {"Lan", Case::Edge, "ac_enable", "-1"},
    {"Lan", Case::Edge, "dhcp_server_bindlist.count", "-1"},
    {"Lan", Case::Edge, "dhcp_server_bindlist.element[31].devtype", "255"},
    {"Lan", Case::Edge, "dhcp_server_bindlist.element[31].mac", std::string(20, 'M')},
    {"Lan", Case::Edge, "dhcp_server_bindlist.element[0].ip", "0.0.0.0"},
    {"Lan", Case::Edge, "enable_ipv6", "255"},
    {"Lan", Case::Edge, "dhcp6_lease", "4294967295"},
    {"Lan", Case::Edge, "dns61", "::"},
    {"Wan", Case::Defaults, "wanconfig#len", "4"},
    {"Wan", Case::Full, "wanconfig[2].ppp_userpwd", "secret2"},
    {"Wan", Case::Full, "wanconfig[3].enable", "0"},
    {"Wan", Case::Edge, "wanconfig[0].wan_upload_bandwidth", "4294967295"},
    {"Wan", Case::Edge, "wanconfig[3].ppp_userpwd", std::string(64, 'W')},
    {"Wan", Case::Edge, "wanconfig[3].resved", std::string(499, 'R')},
    {"Wan", Case::Edge, "wanconfig[0].gateway6", "::"},
    {"Bypass", Case::Full, "enable", "1"},
    {"Bypass", Case::Edge, "stp", "254"},
    {"Bypass", Case::Edge, "resved", std::string(200, 'B')},
};

TEST(LanViews, JsonValues) {
    viewtest::expect_values(kExpected, [](const std::string &v, Case c) { return run(v, c); });
}

// Every IPv6 member names the address the record holds, as python3's ipaddress module reads
// both (glibc writes a mapped IPv4 address in dotted form, Python in hexadecimal), and is
// in the compressed form Python writes otherwise.
TEST(LanViews, Ipv6AddressesAsPythonReadsThem) {
    const std::pair<const char *, const char *> members[] = {
        {"ipaddr6", "2001:db8::1"},      {"ipaddr6_local", "fe80::1"},
        {"gateway6", "2001:db8::ffff"},  {"dns61", "2001:4860:4860::8888"},
        {"dns62", "::ffff:192.0.2.1"},   {"dhcp6_ipstart", "2001:db8::100"},
        {"dhcp6_ipend", "2001:db8::1ff"}};
    viewtest::Parsed p = viewtest::parse(run("Lan", Case::Full));
    ASSERT_EQ(p.status, 0) << p.message;
    std::string script = "from ipaddress import IPv6Address as A\n";
    for (auto [key, stored] : members)
        script += "g, s = A('" + p.at(key) + "'), A('" + stored +
                  "')\n"
                  "print('" +
                  key + "', g == s and (g.ipv4_mapped is not None or str(g) == '" + p.at(key) +
                  "'))\n";
    auto py = wmtest::run_shell("python3 -", script);
    ASSERT_EQ(py.exit_code(), 0) << py.err;
    for (auto [key, stored] : members)
        EXPECT_NE(py.out.find(std::string(key) + " True"), std::string::npos) << key << py.out;
}

} // namespace
