// The bridge and IPv6 probes against the real kernel: each case runs in a child that makes
// its own user, network and mount namespaces (with a sysfs of that network namespace), sets
// up bridges, veths, addresses and routes with `ip`, and prints what the probes read beside
// what `ip -j` reports, normalised by Python's json and ipaddress modules.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "support/harness.h"
#include "support/netns.h"
#include "webmgmt.h"

namespace {

using wmtest::check;
using wmtest::ip_tool;

// Runs the setup commands (each an `ip` command line after the tool's name).
bool run_ip(const std::vector<std::string> &commands) {
    for (const auto &c : commands) {
        std::string line = ip_tool() + " " + c + " >&2";
        if (std::system(line.c_str()) != 0) {
            std::fprintf(stderr, "failed: %s\n", line.c_str());
            return false;
        }
    }
    return true;
}

// `ip -j <args>` normalised by the reference script.
std::string reference(const std::string &args, const char *mode) {
    return wmtest::run_shell(ip_tool() + " -j " + args + " | python3 " + wmtest::source_dir() +
                             "/tests/sys/ip_json.py " + mode)
        .out;
}

std::string sorted_lines(std::vector<std::string> lines) {
    std::sort(lines.begin(), lines.end());
    std::string out;
    for (const auto &l : lines)
        out += l + "\n";
    return out;
}

// Runs `checks` in a child in fresh namespaces after the setup; compares its check() lines.
void in_namespace(const std::vector<std::string> &setup, const std::function<void()> &checks) {
    wmtest::expect_checks_agree(wmtest::run_in_child([&] {
        unsetenv("WEBMGMT_ROOT"); // the kernel's own files
        if (!wmtest::enter_namespaces()) return wmtest::kNoNamespace;
        if (!run_ip(setup)) return 3;
        checks();
        std::fflush(stdout);
        return 0;
    }));
}

std::vector<std::string> split_words(const char *text) {
    std::vector<std::string> words;
    std::istringstream in(text);
    for (std::string w; in >> w;)
        words.push_back(w);
    return words;
}

TEST(NetnsProbes, BridgeMembersAreTheKernelsList) {
    if (ip_tool().empty()) GTEST_SKIP() << "no ip tool";
    in_namespace(
        {"link add br0 type bridge", "link add br1 type bridge",
         "link add v0a type veth peer name v0b", "link add v1a type veth peer name v1b",
         "link add v2a type veth peer name v2b", "link set v0a master br0",
         "link set v1a master br0", "link set v2a master br0"},
        [] {
            char list[256];
            int n = get_bridge_brif_list("br0", list, sizeof list);
            auto words = split_words(list);
            check("br0 members", sorted_lines(words), reference("link show master br0", "members"));
            check("br0 count",
                  std::to_string(n) + " " + std::to_string(get_bridge_brif_count("br0")) + "\n",
                  std::to_string(words.size()) + " " + std::to_string(words.size()) + "\n");
            // A bridge without members, an interface that is no bridge, names that would
            // leave the directory, no name.
            check("edges",
                  std::to_string(get_bridge_brif_list("br1", list, sizeof list)) + "[" + list +
                      "] " + std::to_string(get_bridge_brif_count("v0a")) + " " +
                      std::to_string(get_bridge_brif_count("../br0")) + " " +
                      std::to_string(get_bridge_brif_count("br0/brif")) + " " +
                      std::to_string(get_bridge_brif_count("..")) + " " +
                      std::to_string(get_bridge_brif_count("")) + " " +
                      std::to_string(get_bridge_brif_count(nullptr)) + "\n",
                  "0[] -1 -1 -1 -1 -1 -1\n");
            // A buffer too small for the list: cut and terminated, the count still whole.
            get_bridge_brif_list("br0", list, sizeof list);
            char small[6];
            std::memset(small, 'x', sizeof small);
            int whole = get_bridge_brif_list("br0", small, sizeof small);
            bool prefix = std::string(list).rfind(small, 0) == 0;
            check("cut",
                  std::to_string(whole) + " " + std::to_string(strnlen(small, 6)) + " " +
                      (prefix ? "prefix" : small) + "\n",
                  "3 5 prefix\n");
        });
}

std::string address_lines(const char *ifname) {
    ipv6_addr_entry list[16];
    int n = getIfIPV6_list(ifname, list, 16);
    std::vector<std::string> lines;
    for (int i = 0; i < n; ++i)
        lines.push_back(std::string(list[i].address) + " " + std::to_string(list[i].prefix_len) +
                        " " + std::to_string(list[i].scope));
    return sorted_lines(lines);
}

std::string route_lines(const char *ifname) {
    ipv6_route_entry routes[32];
    int n = ipv6_route_get(ifname, routes, 32);
    std::vector<std::string> lines;
    for (int i = 0; i < n; ++i)
        lines.push_back(std::string(routes[i].destination) + " " +
                        std::to_string(routes[i].prefix_len) + " " + routes[i].next_hop + " " +
                        std::to_string(routes[i].metric));
    return sorted_lines(lines);
}

// Addresses are added without duplicate detection and with no automatic link-local one,
// so nothing changes after the setup.
const std::vector<std::string> kIpv6Setup = {
    "link add br0 type bridge",
    "link set dev br0 addrgenmode none",
    "link add v0a type veth peer name v0b",
    "link set dev v0a addrgenmode none",
    "link set dev v0b addrgenmode none",
    "link set br0 up",
    "-6 addr add 2001:db8::1/64 dev br0 nodad",
    "-6 addr add 2001:db8:0:1:0:0:0:10/80 dev br0 nodad",
    "-6 addr add fe80::1234/64 dev br0 nodad",
    "-6 addr add 2001:db8:ffff::2/128 dev v0a nodad",
    "-6 route add 2001:db8:1::/48 via 2001:db8::2 dev br0 metric 5",
    "-6 route add 2001:db8:2::/64 dev br0",
    "-6 route add default via 2001:db8::fffe dev br0 metric 7",
};

TEST(NetnsProbes, AddressesAreThoseIpLists) {
    if (ip_tool().empty()) GTEST_SKIP() << "no ip tool";
    in_namespace(kIpv6Setup, [] {
        check("br0", address_lines("br0"), reference("-6 addr show dev br0", "addrs"));
        check("v0a", address_lines("v0a"), reference("-6 addr show dev v0a", "addrs"));
        // The exact name only: "br" and "br00" are other interfaces.
        check("names", address_lines("br") + address_lines("br00"), "");
        char text[WEBMGMT_IPV6_TEXT];
        int prefix = -1;
        int rc = getIfIPV6("br0", 0x20, text, sizeof text, &prefix);
        check("link scope", std::to_string(rc) + " " + text + " " + std::to_string(prefix) + "\n",
              "0 fe80::1234 64\n");
        rc = getIfIPV6("v0a", 0, text, sizeof text, &prefix);
        check("global", std::to_string(rc) + " " + text + " " + std::to_string(prefix) + "\n",
              "0 2001:db8:ffff::2 128\n");
        rc = getIfIPV6("v0a", 0x20, text, sizeof text, &prefix);
        check("none", std::to_string(rc) + "[" + text + "]\n", "-1[]\n");
        // A capacity of one keeps one.
        ipv6_addr_entry one[1];
        check("capacity", std::to_string(getIfIPV6_list("br0", one, 1)) + "\n", "1\n");
    });
}

TEST(NetnsProbes, RoutesAreThoseIpLists) {
    if (ip_tool().empty()) GTEST_SKIP() << "no ip tool";
    in_namespace(kIpv6Setup, [] {
        check("br0", route_lines("br0"), reference("-6 route show table all dev br0", "routes"));
        check("all", route_lines(""), reference("-6 route show table all", "routes"));
        char gw[WEBMGMT_IPV6_TEXT];
        int rc = ipv6_default_gateway("br0", gw, sizeof gw);
        check("gateway", std::to_string(rc) + " " + gw + "\n", "0 2001:db8::fffe\n");
        rc = ipv6_default_gateway("v0a", gw, sizeof gw);
        check("no gateway", std::to_string(rc) + "[" + gw + "]\n", "-1[]\n");
    });
}

} // namespace
