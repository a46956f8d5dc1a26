// The LAN, DHCP, static-lease, WAN, bypass and cloud forms as a CGI program drives them: a
// POST body decoded by process_queue in a child process, the records from the store's
// getters; then the section as another program reads it back (the wmconfig tool, by
// dotted name), addresses compared as python3's ipaddress module reads them.
#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "store/config_data_api.h"
#include "support/harness.h"
#include "tests/views/view_check.h"

namespace {

using wmtest::Form;
using Device = wmtest::DefaultsRoot;
using wmtest::post_form;

// `wmconfig show section names...`: every member by its dotted name.
std::map<std::string, std::string> show(const std::string &section, const std::string &names = "") {
    auto r = wmtest::run_shell(std::string(WEBMGMT_FORMS_EMULATOR) +
                               " '" WEBMGMT_WMCONFIG "' show " + section + " " + names);
    EXPECT_EQ(r.exit_code(), 0) << r.err;
    std::map<std::string, std::string> out;
    std::istringstream lines(r.out);
    for (std::string line; std::getline(lines, line);)
        if (size_t eq = line.find('='); eq != std::string::npos)
            out[line.substr(0, eq)] = line.substr(eq + 1);
    return out;
}

// How a stored value is compared with what the page sent.
enum class Kind { Same, Address };

// A member by its dotted name and its value: "name=value" the text shown, "name~value" an
// address python3's ipaddress module finds equal to the one shown.
struct Stored {
    std::string name;
    std::string value;
    Kind kind = Kind::Same;
    Stored(const char *pair) {
        std::string s = pair;
        size_t at = s.find_first_of("=~");
        name = s.substr(0, at), value = s.substr(at + 1);
        kind = s[at] == '~' ? Kind::Address : Kind::Same;
    }
    Stored(const char *n, std::string v) : name(n), value(std::move(v)) {}
};

// Every (shown, sent) address pair names the same address for python3's ipaddress module.
void expect_same_addresses(const std::vector<std::pair<std::string, std::string>> &pairs) {
    if (pairs.empty()) return;
    std::string script = "import ipaddress as i\n";
    for (auto &[shown, sent] : pairs)
        script += "print(i.ip_address('" + shown + "') == i.ip_address('" + sent + "'))\n";
    auto py = wmtest::run_shell("python3 -", script);
    ASSERT_EQ(py.exit_code(), 0) << py.err;
    std::istringstream lines(py.out);
    for (auto &[shown, sent] : pairs) {
        std::string line;
        std::getline(lines, line);
        EXPECT_EQ(line, "True") << shown << " stored for " << sent;
    }
}

// The bypass members are in no field table: they are read back through the bypass view.
std::map<std::string, std::string> bypass_view() {
    viewtest::Parsed p =
        viewtest::parse(wmtest::output_of([] { printf_Bypass_json(SC_Get_Misc_System_Config()); }));
    EXPECT_EQ(p.status, 0) << p.message;
    return p.values;
}

void expect_stored(const char *section, const std::vector<Stored> &expected) {
    std::string names;
    for (const Stored &s : expected)
        names += " '" + s.name + "'";
    auto got = std::string(section) == "bypass" ? bypass_view() : show(section, names);
    std::vector<std::pair<std::string, std::string>> addresses;
    for (const Stored &s : expected) {
        ASSERT_TRUE(got.count(s.name)) << section << " " << s.name;
        if (s.kind == Kind::Address)
            addresses.emplace_back(got[s.name], s.value);
        else
            EXPECT_EQ(got[s.name], s.value) << section << " " << s.name;
    }
    expect_same_addresses(addresses);
}

// A form, the body a page sends, and what the section then holds.
struct FormCase {
    const char *label;
    Form form;
    std::string body;
    int result;
    const char *section;
    std::vector<Stored> stored;
};

int lan_base(const form_pair *p, int n) {
    save_lan_base(SC_Get_Lan_System_Config(), p, n);
    return 0;
}
int dev_dhcp(const form_pair *p, int n) {
    return save_lan_dev_dhcpserver(SC_Get_Lan_System_Config(), p, n);
}
Form wan_line(int line) {
    return [line](const form_pair *p, int n) {
        return save_wan_base(SC_Get_Wan_System_Config(), line, p, n);
    };
}
int cloud(const form_pair *p, int n) {
    return save_cloud_base(SC_Get_Misc_System_Config(), p, n);
}

const std::string kLong(130, 'x');

std::vector<FormCase> form_cases() {
    return {
        {"LAN base",
         lan_base,
         "ipaddr=10.20.30.1&subnet=255.255.240.0&gateway=10.20.30.254&dns1=10.20.30.2"
         "&dns2=9.9.9.9&conn_type=2&lan_addr_type=1&m_enable=1&m_vlanid=45&eth_phy_name=eth0.45"
         "&ac_enable=1&acipaddr=172.31.0.1&acsubnet=255.255.0.0&enable_ipv6=1"
         "&ipaddr6=2001:DB8:1:0::1&ipaddr6_prefix=64&ipaddr6_local=fe80::0:1"
         "&ipaddr6_local_prefix=10&gateway6=2001:db8:1::fffe&gateway6_prefix=48"
         "&enable_ipv6_dns=1&dns61=2001:4860:4860::8888&dns62=::ffff:192.0.2.53"
         "&conn_type6=1&enable_dhcp6=1&dhcp6_ipstart=2001:db8:1::100"
         "&dhcp6_ipend=2001:db8:1::1ff&dhcp6_lease=86400&enable_radvd=1&ra_flag_M=1"
         "&ra_flag_O=1&ra_flag_A=0&disable_ipv4_dns=1"
         "&m_lan_port_vlan_id0=100&m_lan_port_vlan_id1=4094&m_lan_port_vlan_id3=65535"
         "&m_lan_port_vlan_id4=7",
         0,
         "lan",
         {"ipaddr~10.20.30.1", "subnet~255.255.240.0", "gateway~10.20.30.254", "dns2~9.9.9.9",
          "conn_type=2", "lan_addr_type=1", "m_iptv.m_enable=1", "m_iptv.m_vlanid=45",
          "m_iptv.eth_phy_name=eth0.45", "ac_enable=1", "acipaddr~172.31.0.1",
          "acsubnet~255.255.0.0", "enable_ipv6=1", "ipaddr6~2001:db8:1::1", "ipaddr6_prefix=64",
          "ipaddr6_local~fe80::1", "gateway6~2001:db8:1::fffe", "dns61~2001:4860:4860::8888",
          "dns62~::ffff:c000:235", "dhcp6_ipstart~2001:db8:1::100", "dhcp6_ipend~2001:db8:1::1ff",
          "dhcp6_lease=86400", "ra_flag_O=1", "ra_flag_A=0", "disable_ipv4_dns=1",
          // 16-bit VLAN ids; port 2's variable was not sent, and there is no port 4.
          "lan_vlan.port[0].m_vlan_id=100", "lan_vlan.port[1].m_vlan_id=4094",
          "lan_vlan.port[2].m_vlan_id=1", "lan_vlan.port[3].m_vlan_id=-1"}},
        {"device DHCP server",
         dev_dhcp,
         "dhcp_server_enable=1&dhcp_server_start_ipaddr=10.20.30.100"
         "&dhcp_server_end_ipaddr=10.20.30.199&dhcp_server_gateway=10.20.30.1"
         "&dhcp_server_dns1=1.1.1.1&dhcp_server_dns2=nonsense"
         "&dhcp_server_leasetime=8589934592&dhcp_server_port=6767&enable_dhcp6=1"
         "&dhcp6_ipend=2001:db8::ff",
         0,
         "lan",
         {"dev_dhcpserver.dhcp_server_enable=1",
          "dev_dhcpserver.dhcp_server_start_ipaddr~10.20.30.100",
          "dev_dhcpserver.dhcp_server_end_ipaddr~10.20.30.199",
          "dev_dhcpserver.dhcp_server_dns1~1.1.1.1",
          "dev_dhcpserver.dhcp_server_dns2~255.255.255.255", // inet_addr's failure
          "dev_dhcpserver.dhcp_server_leasetime=8589934592", // past 32 bits
          "dev_dhcpserver.dhcp_server_port=6767",
          "ac_dhcpserver.dhcp_server_leasetime=86400", // the other server: untouched
          "enable_dhcp6=1", "dhcp6_ipend~2001:db8::ff"}},
        {"controller DHCP server",
         save_lan_ac_dhcpserver,
         "dhcp_server_enable=1&dhcp_server_start_ipaddr=172.31.0.10"
         "&dhcp_server_leasetime=0&dhcp_server_port=67&ac_enable=1&acipaddr=172.31.0.1"
         "&acsubnet=255.255.0.0",
         0,
         "lan",
         {"ac_dhcpserver.dhcp_server_enable=1",
          "ac_dhcpserver.dhcp_server_start_ipaddr~172.31.0.10",
          "ac_dhcpserver.dhcp_server_leasetime=0", "ac_dhcpserver.dhcp_server_port=67",
          "dev_dhcpserver.dhcp_server_port=67", "ac_enable=1", "acipaddr~172.31.0.1"}},
        {"WAN line 1",
         wan_line(1),
         "enable=1&conn_type=2&phy_name=eth1&fixed_mtu=1492&dhcp_mtu=1400&ipaddr=100.64.1.2"
         "&subnet=255.255.255.252&gateway=100.64.1.1&dnsmode=1&dns1=9.9.9.9&dns2=8.8.8.8"
         "&ppp_username=alice&ppp_userpwd=s3cret&ppp_service_name=isp&ppp_ac_name=bras"
         "&wan_upload_bandwidth=4294967295&wan_download_bandwidth=100000&wan_track_enable=1"
         "&wan_track_ip1=8.8.4.4&wan_track_ip2=1.0.0.1&wan_dns_priority=2&wan_line_weight=30"
         "&enable_wan_access_web=1&wan_access_web_port=8443&enable_mac_clone=1"
         "&clone_mac=02:AA:BB:CC:DD:EE&enable_ping_wan=1&enable_ipsec=1&enable_pptp=0"
         "&enable_l2tp=1&wan_port=2&enable_ipv6=1&ipaddr6=2001:db8:9::2&ipaddr6_prefix=64"
         "&gateway6=2001:db8:9::1&dns61=2620:fe::fe",
         0,
         "wan",
         {"wanconfig[1].enable=1", "wanconfig[1].conn_type=2", "wanconfig[1].phy_name=eth1",
          "wanconfig[1].fixed_mtu=1492", "wanconfig[1].ipaddr~100.64.1.2",
          "wanconfig[1].dns2~8.8.8.8", "wanconfig[1].ppp_userpwd=s3cret",
          // the device's 32-bit atol stops at the largest long
          "wanconfig[1].wan_upload_bandwidth=2147483647", "wanconfig[1].wan_track_ip2~1.0.0.1",
          "wanconfig[1].wan_line_weight=30", "wanconfig[1].wan_access_web_port=8443",
          "wanconfig[1].clone_mac=02:AA:BB:CC:DD:EE", "wanconfig[1].wan_port=2",
          "wanconfig[1].ipaddr6~2001:db8:9::2", "wanconfig[1].gateway6~2001:db8:9::1",
          "wanconfig[1].dns61~2620:fe::fe"}},
        {"bypass",
         save_bypass_base,
         "ipaddr=192.168.0.2&subnet=255.255.255.0&gateway=192.168.0.1&dns1=192.168.0.1"
         "&dns2=8.8.8.8&stp=1&conn_type=1&enable=1",
         0,
         "bypass",
         {"ipaddr~192.168.0.2", "gateway~192.168.0.1", "dns2~8.8.8.8", "stp=1", "conn_type=1",
          "enable=1"}},
        // A server name of the member's full width or more is cut to 100 bytes.
        {"cloud",
         cloud,
         "server=" + kLong +
             "&bind_code=ABC123&enable=1&location_x=113.9&location_y=22.5"
             "&desc=lobby",
         0,
         "misc",
         {{"sys_cloud.server", kLong.substr(0, 100)},
          "sys_cloud.bind_code=ABC123",
          "sys_cloud.enable=1",
          "sys_cloud.location_y=22.5",
          "sys_cloud.desc=lobby"}},
    };
}

void PrintTo(const FormCase &c, std::ostream *os) {
    *os << c.label;
}

class LanForms : public ::testing::TestWithParam<FormCase> {
  protected:
    Device device;
};

TEST_P(LanForms, StoresWhatThePageSent) {
    const FormCase &c = GetParam();
    EXPECT_EQ(post_form(c.body, c.form), c.result);
    expect_stored(c.section, c.stored);
}

INSTANTIATE_TEST_SUITE_P(Forms, LanForms, ::testing::ValuesIn(form_cases()),
                         [](const auto &p) { return wmtest::param_name(p.param.label); });

// Only the variables sent change: every other member of the section stays as it was.
TEST(LanFormsOnly, AWanFormChangesOnlyWhatItCarries) {
    Device device;
    auto before = show("wan");
    ASSERT_GT(before.size(), 100u);
    EXPECT_EQ(post_form("ppp_username=bob&ppp_userpwd=pw", wan_line(2)), 0);
    auto after = show("wan");
    std::vector<std::string> changed;
    for (auto &[name, value] : after)
        if (before[name] != value) changed.push_back(name + "=" + value);
    EXPECT_EQ(changed, (std::vector<std::string>{"wanconfig[2].ppp_username=bob",
                                                 "wanconfig[2].ppp_userpwd=pw"}));
}

// A line index outside the record is refused and writes nothing at all.
TEST(LanFormsOnly, AWanLineOutsideTheRecordIsRefused) {
    Device device;
    auto before = show("wan");
    for (int line : {-1, WEBMGMT_WAN_LINES, 1000})
        EXPECT_EQ(post_form("ppp_username=mallory&enable=1", wan_line(line)), -1) << line;
    EXPECT_EQ(show("wan"), before);
}

// Switching the controller off marks the managed-AP list with 254; on leaves it alone.
TEST(LanFormsOnly, ControllerSwitchMarksTheManagedApList) {
    Device device;
    for (auto [enable, marker] : {std::pair{"0", 254}, std::pair{"1", 0}}) {
        int got = post_form(std::string("ac_enable=") + enable, [](const form_pair *p, int n) {
            SC_Get_ManageApList_System_Config()->m_ac_marker = 0;
            int rc = save_lan_ac_dhcpserver(p, n);
            return rc == 0 ? int(SC_Get_ManageApList_System_Config()->m_ac_marker) : -rc;
        });
        EXPECT_EQ(got, marker) << enable;
    }
}

// Both static-lease lists: add, modify, delete one, delete all, read back by a fresh
// process (the device's list through the LAN view and python3's json module).
struct LeaseCase {
    const char *list; // member name in the LAN section
    int (*form)(int op, const form_pair *, int);
};
const LeaseCase kLeaseLists[] = {
    {"dhcp_server_bindlist",
     [](int op, const form_pair *p, int n) {
         return save_lan_dhcp_server_bindlist(SC_Get_Lan_System_Config(), op, p, n);
     }},
    {"dhcp_server_acbindlist", save_lan_dhcp_server_acbindlist},
};

TEST(LanFormsOnly, StaticLeaseLifecycle) {
    for (const LeaseCase &l : kLeaseLists) {
        Device device;
        auto op = [&](int o) {
            return [&l, o](const form_pair *p, int n) { return l.form(o, p, n); };
        };
        std::string list = l.list;
        auto slot = [&](int i, const char *m) {
            return list + ".element[" + std::to_string(i) + "]." + m;
        };
        ASSERT_EQ(post_form("devname=printer&devtype=2&mac=00:11:22:33:44:55&ip=192.168.1.20"
                            "&mark=hall",
                            op(0)),
                  CONFIG_OK);
        ASSERT_EQ(post_form("devname=tv&devtype=3&mac=00:11:22:33:44:66&ip=192.168.1.21", op(0)),
                  CONFIG_OK);
        auto got = show("lan");
        EXPECT_EQ(got[list + ".count"], "2");
        EXPECT_EQ(got[slot(0, "id")], "1");
        EXPECT_EQ(got[slot(0, "devtype")], "2"); // the page's text, kept as its number
        EXPECT_EQ(got[slot(0, "mac")], "00:11:22:33:44:55");
        EXPECT_EQ(got[slot(0, "ip")], "192.168.1.20");
        EXPECT_EQ(got[slot(0, "mark")], "hall");
        EXPECT_EQ(got[slot(1, "id")], "2");

        EXPECT_EQ(post_form("id=1&devtype=1&mac=00:11:22:33:44:77&ip=192.168.1.30", op(1)),
                  CONFIG_OK);
        EXPECT_EQ(post_form("id=9&mac=00:11:22:33:44:88", op(1)), CONFIG_ERR_NO_ID);
        got = show("lan");
        EXPECT_EQ(got[slot(0, "mac")], "00:11:22:33:44:77");
        EXPECT_EQ(got[slot(0, "ip")], "192.168.1.30");
        EXPECT_EQ(got[slot(0, "mark")], ""); // a modify replaces the whole lease

        if (list == "dhcp_server_bindlist") {
            viewtest::Parsed v = viewtest::parse(
                wmtest::output_of([] { printf_Lan_json(SC_Get_Lan_System_Config()); }));
            ASSERT_EQ(v.status, 0) << v.message;
            viewtest::expect_at(v, {"dhcp_server_bindlist.count=2",
                                    "dhcp_server_bindlist.element[0].devtype=1",
                                    "dhcp_server_bindlist.element[1].ip=192.168.1.21"});
        }

        // A delete key longer than the 4 digits the key holds is cut, not overrun.
        EXPECT_EQ(post_form("id=1", op(-1)), 0);
        EXPECT_EQ(post_form("id=2000000000000", op(-1)), 0);
        got = show("lan");
        EXPECT_EQ(got[list + ".count"], "1");
        EXPECT_EQ(got[slot(0, "id")], "2");
        EXPECT_EQ(post_form("", op(-2)), 0);
        EXPECT_EQ(show("lan")[list + ".count"], "0");
    }
}

} // namespace
