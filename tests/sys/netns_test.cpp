// The interface, port and ARP probes against the real kernel, and the lease readers against
// the real DHCP server, in a network namespace each test makes for itself (an unprivileged
// user namespace): veth pairs with known MACs, addresses, routes and link states, ARP
// entries made with "ip neigh", busybox udhcpd serving udhcpc clients. The references are
// "ip -j" read with Python's json, /sys/class/net and "busybox dumpleases".
#include <gtest/gtest.h>

#include <algorithm>
#include <arpa/inet.h>
#include <functional>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>
#include <vector>

#include "support/harness.h"
#include "support/netns.h"
#include "webmgmt.h"

namespace {

using wmtest::read_file;
using wmtest::run_in_child;
using wmtest::write_file;

using wmtest::check;
using wmtest::write_text;

// The output of a shell command, without the last line feed.
std::string sh(const std::string &command) {
    std::string out = wmtest::run_shell(command).out;
    if (!out.empty() && out.back() == '\n') out.pop_back();
    return out;
}

// A value of "ip -j ..." picked out with a Python expression over the parsed document `d`.
std::string ip_json(const std::string &ip_args, const std::string &expression) {
    return sh("ip -j " + ip_args +
              " | python3 -c 'import json,sys,ipaddress\nd=json.load(sys.stdin)\n" + "print(" +
              expression + ")'");
}

// Runs `body` in a fresh network namespace; compares what it printed with check().
void in_namespace(const std::function<int()> &body) {
    if (system("command -v ip >/dev/null && command -v python3 >/dev/null") != 0)
        GTEST_SKIP() << "ip (iproute2) and python3 are needed";
    wmtest::expect_checks_agree(run_in_child([&] {
        if (!wmtest::enter_namespaces()) return wmtest::kNoNamespace;
        if (system("ip link set lo up") != 0) return 2;
        // No IPv6 chatter: the counters stay what the test makes them.
        write_text("/proc/sys/net/ipv6/conf/default/disable_ipv6", "1");
        write_text("/proc/sys/net/ipv6/conf/all/disable_ipv6", "1");
        int rc = body();
        std::fflush(stdout);
        return rc;
    }));
}

int run(const std::string &command) {
    int rc = system((command + " >&2").c_str());
    if (rc != 0) std::fprintf(stderr, "failed: %s\n", command.c_str());
    return rc;
}

std::string upper(std::string s) {
    for (char &c : s)
        c = char(toupper(static_cast<unsigned char>(c)));
    return s;
}

TEST(KernelProbes, InterfacesRoutesAndLinks) {
    in_namespace([] {
        const char *setup[] = {
            "ip link add v0 address 02:00:00:00:0a:10 type veth peer name v1 address "
            "02:00:00:00:0a:11",
            "ip link add v2 address 02:00:00:00:0b:20 type veth peer name v3 address "
            "02:00:00:00:0b:21",
            "ip addr add 10.20.0.1/24 brd + dev v0",
            "ip addr add 10.30.7.5/16 brd + dev v2",
            "ip link set v0 up",
            "ip link set v1 up",
            "ip link set v2 up", // its peer v3 stays down: no carrier
            "ip route add 10.99.0.0/16 via 10.20.0.9 dev v0",
            "ip route add default via 10.20.0.254 dev v0",
        };
        for (const char *c : setup)
            if (run(c) != 0) return 1;
        for (std::string dev : {"v0", "v2"}) {
            std::string sys_mac = read_file("/sys/class/net/" + dev + "/address");
            sys_mac.pop_back();
            char mac[18] = "";
            getIfMac(dev.c_str(), mac, 2);
            check(dev + " mac form 2", mac, upper(sys_mac));
            getIfMac(dev.c_str(), mac, 3);
            check(dev + " mac form 3", mac, sys_mac);
            getIfMac(dev.c_str(), mac, 1);
            std::string bare = upper(sys_mac);
            bare.erase(std::remove(bare.begin(), bare.end(), ':'), bare.end());
            check(dev + " mac form 1", mac, bare);
            unsigned char raw[6];
            getIfMac(dev.c_str(), raw, 0);
            char raw_text[18];
            snprintf(raw_text, sizeof raw_text, "%02x:%02x:%02x:%02x:%02x:%02x", raw[0], raw[1],
                     raw[2], raw[3], raw[4], raw[5]);
            check(dev + " mac form 0", raw_text, sys_mac);
            char half[9] = "";
            getIfHalfMac(dev.c_str(), half, 1);
            check(dev + " half mac", half, sys_mac.substr(9));
            getIfHalfMac(dev.c_str(), half, 0);
            std::string half_bare = sys_mac.substr(9);
            half_bare.erase(std::remove(half_bare.begin(), half_bare.end(), ':'), half_bare.end());
            check(dev + " half mac bare", half, half_bare);

            char ip[16] = "", mask[16] = "", bcast[16] = "";
            check(dev + " getIfIp", std::to_string(getIfIp(dev.c_str(), ip)) + " " + ip,
                  "0 " + ip_json("addr show dev " + dev, "d[0][\"addr_info\"][0][\"local\"]"));
            check(dev + " getIfsubnetIp",
                  std::to_string(getIfsubnetIp(dev.c_str(), mask)) + " " + mask,
                  "0 " + ip_json("addr show dev " + dev,
                                 "ipaddress.ip_network(\"0.0.0.0/%d\" % "
                                 "d[0][\"addr_info\"][0][\"prefixlen\"]).netmask"));
            check(dev + " getIfBcastIP",
                  std::to_string(getIfBcastIP(dev.c_str(), bcast, sizeof bcast)) + " " + bcast,
                  "0 " + ip_json("addr show dev " + dev, "d[0][\"addr_info\"][0][\"broadcast\"]"));
        }
        char ip[16] = "none";
        check("v1 has no address", std::to_string(getIfIp("v1", ip)) + ip, "-1none");
        check("no such interface", std::to_string(getIfIp("nosuch0", ip)) + ip, "-1none");
        char mac[18] = "untouched";
        check("unknown mac form", std::to_string(getIfMac("v0", mac, 7)) + mac, "0untouched");
        check("no such interface mac", std::to_string(getIfMac("nosuch0", mac, 2)), "-1");

        std::string gw_ref = ip_json("route show default", "d[0][\"gateway\"]");
        char gw[16] = "";
        getIfGateway("v0", gw);
        check("getIfGateway v0", gw, gw_ref);
        char exact[16] = "";
        check("getIfgwIp v0", std::to_string(getIfgwIp("v0", exact)) + " " + exact, "0 " + gw_ref);
        char gw2[16] = "untouched";
        getIfGateway("v2", gw2); // only its subnet route, without gateway
        check("getIfGateway v2", gw2, "");
        check("getIfgwIp v2", std::to_string(getIfgwIp("v2", gw2)), "-1");

        for (std::string dev : {"v0", "v1", "v2", "v3"}) {
            std::string carrier = read_file("/sys/class/net/" + dev + "/carrier");
            check(dev + " getEthUp_Down", std::to_string(getEthUp_Down(dev.c_str())),
                  carrier.empty() ? "0" : carrier.substr(0, 1));
        }
        // veth reports its speed and duplex as /sys shows them.
        port_status s{};
        port_map map{};
        check("getEthStatus v0", std::to_string(getEthStatus("v0", &s, 0, &map)), "0");
        std::string speed = read_file("/sys/class/net/v0/speed");
        check("v0 speed code", std::to_string(s.speed_code),
              std::stoi(speed) == 10000  ? "32"
              : std::stoi(speed) == 1000 ? "8"
                                         : "?");
        check("v0 duplex", std::to_string(s.duplex),
              read_file("/sys/class/net/v0/duplex") == "full\n" ? "2" : "0");
        check("v0 link", std::to_string(s.link), "1");
        check("no such port", std::to_string(getEthStatus("nosuch0", &s, 0, &map)), "-1");

        // The counters of /proc/net/dev for two ports, against /sys (nothing else is sending).
        snprintf(map.ifname[0], sizeof map.ifname[0], "v0");
        snprintf(map.ifname[3], sizeof map.ifname[3], "v3");
        // /sys is read before and after the library's reading; a round in which a counter
        // moved (a stray packet) is read again, so the comparison is made on settled counters.
        auto counters = [&] {
            std::string all;
            for (int slot : {0, 3})
                for (const char *name : {"rx_bytes", "tx_bytes", "tx_packets", "rx_dropped"})
                    all += read_file(std::string("/sys/class/net/") + map.ifname[slot] +
                                     "/statistics/" + name);
            return all;
        };
        sys_status st{};
        for (int round = 0; round < 10; ++round) {
            std::string before = counters();
            st = sys_status{};
            get_eth_summary(&st, &map);
            if (counters() == before) break;
        }
        for (int slot : {0, 3}) {
            std::string dev = map.ifname[slot];
            auto stat = [&](const char *name) {
                std::string v = read_file("/sys/class/net/" + dev + "/statistics/" + name);
                return v.substr(0, v.size() - 1);
            };
            const port_status &p = st.port[slot];
            check(dev + " port", std::to_string(p.port), std::to_string(slot + 1));
            check(dev + " ifname", p.ifname, dev);
            check(dev + " rx_bytes", std::to_string(p.rx_bytes), stat("rx_bytes"));
            check(dev + " tx_bytes", std::to_string(p.tx_bytes), stat("tx_bytes"));
            check(dev + " tx_packets", std::to_string(p.tx_packets), stat("tx_packets"));
            check(dev + " rx_dropped", std::to_string(p.rx_drops), stat("rx_dropped"));
            check(dev + " link", std::to_string(p.link), slot == 0 ? "1" : "0");
        }
        return 0;
    });
}

TEST(KernelProbes, ArpEntriesFromIpNeigh) {
    in_namespace([] {
        const char *setup[] = {
            "ip link add v0 address 02:00:00:00:0a:10 type veth peer name v1",
            "ip link add v2 type veth peer name v3",
            "ip addr add 192.168.5.1/24 dev v0",
            "ip addr add 10.1.0.1/24 dev v2",
            "ip link set v0 up",
            "ip link set v1 up",
            "ip link set v2 up",
            "ip link set v3 up",
            "ip neigh add 192.168.5.20 lladdr 02:aa:00:00:00:20 dev v0 nud stale",
            "ip neigh add 192.168.5.21 lladdr 02:aa:00:00:00:21 dev v0 nud permanent",
            "ip neigh add 192.168.5.22 dev v0 nud incomplete",
            "ip neigh add 10.1.0.30 lladdr 02:aa:00:00:00:20 dev v2 nud stale",
            "ip neigh add 10.1.0.31 lladdr 02:aa:00:00:00:31 dev v2 nud stale",
        };
        for (const char *c : setup)
            if (run(c) != 0) return 1;
        // What "ip neigh" lists, picked out with Python: entries with an address.
        std::string all =
            ip_json("neigh show",
                    "\" \".join(sorted(\"%s=%s\" % (n[\"dst\"], n[\"lladdr\"].upper()) "
                    "for n in d if \"lladdr\" in n and n[\"dst\"].startswith(\"192.168.5.\")))");
        lan_config lan{};
        inet_pton(AF_INET, "192.168.5.1", &lan.ipaddr.v4);
        inet_pton(AF_INET, "255.255.255.0", &lan.subnet.v4);
        auto *t = new arp_host_table;
        check("get_arplist", std::to_string(get_arplist(&lan, t)), "0");
        std::vector<std::string> hosts;
        for (int i = 0; i < t->count; ++i)
            hosts.push_back(std::string(t->host[i].ip) + "=" + t->host[i].mac);
        std::sort(hosts.begin(), hosts.end());
        std::string joined;
        for (const auto &h : hosts)
            joined += (joined.empty() ? "" : " ") + h;
        check("ARP host table (LAN subnet, with addresses)", joined, all);
        delete t;

        // The cache list: complete entries (not permanent), one per MAC, by device.
        std::string complete = ip_json(
            "neigh show", "\" \".join(sorted(\"%s=%s\" % (n[\"dst\"], n[\"lladdr\"].replace(\":\","
                          "\"\").upper()) for n in d if n.get(\"state\") == [\"STALE\"] and "
                          "n[\"dev\"] == \"v0\"))");
        lease_entry *list = nullptr;
        get_arp_cache("v0", &list);
        std::string cache;
        for (lease_entry *n = list; n; n = n->next)
            cache += (cache.empty() ? "" : " ") + std::string(n->ip) + "=" + n->mac;
        check("get_arp_cache v0", cache, complete);
        free_leaselist(&list);
        int all_devices = get_arp_cache("", &list);
        check("get_arp_cache all: one node per MAC", std::to_string(all_devices), "2");
        free_leaselist(&list);

        char ip[16] = "";
        get_ipbymac_arp("02:AA:00:00:00:21", ip);
        check("get_ipbymac_arp permanent", ip, "192.168.5.21");
        get_ipbymac_arp("02:aa:00:00:00:31", ip);
        check("get_ipbymac_arp other device", ip, "10.1.0.31");
        return 0;
    });
}

// Polls `ready` (a condition another process brings about) for up to 60 seconds.
bool wait_for(const std::function<bool()> &ready) {
    for (int i = 0; i < 6000; ++i) {
        if (ready()) return true;
        struct timespec ts = {0, 10 * 1000 * 1000};
        nanosleep(&ts, nullptr);
    }
    return false;
}

long file_size(const std::string &path) {
    struct stat st;
    return stat(path.c_str(), &st) == 0 ? long(st.st_size) : -1;
}

TEST(DhcpServer, LeasesOfUdhcpdClients) {
    if (system("busybox udhcpd --help >/dev/null 2>&1; busybox --list | grep -qx udhcpd") != 0)
        GTEST_SKIP() << "busybox without udhcpd";
    wmtest::TempRoot root;
    // Links named after the tools, so that each process's command name is its own.
    std::string bin = root.path("/tmp");
    for (const char *tool : {"udhcpd", "udhcpc"})
        symlink("/bin/busybox", (bin + "/" + tool).c_str());
    write_file(bin + "/script", "#!/bin/sh\nexit 0\n");
    chmod((bin + "/script").c_str(), 0755);
    write_file(root.path("/etc.udhcpd.conf"),
               "start 10.40.0.100\nend 10.40.0.150\ninterface br0\nmax_leases 50\n"
               "lease_file " +
                   root.path("/var/udhcpd.leases") + "\npidfile " +
                   root.path("/var/run/udhcpd.pid") +
                   "\nauto_time 0\noption subnet 255.255.255.0\noption lease 3600\n");
    in_namespace([&] {
        std::vector<std::string> setup = {"ip link add br0 type bridge",
                                          "ip addr add 10.40.0.1/24 dev br0", "ip link set br0 up"};
        const char *names[] = {"host-one", "host-two", "a-twenty-char-name-x"};
        for (int i = 1; i <= 3; ++i) {
            std::string n = std::to_string(i);
            setup.push_back("ip link add s" + n + " type veth peer name c" + n +
                            " address 02:00:00:00:4" + n + ":0" + n);
            setup.push_back("ip link set s" + n + " master br0");
            setup.push_back("ip link set s" + n + " up");
            setup.push_back("ip link set c" + n + " up");
        }
        for (const auto &c : setup)
            if (run(c) != 0) return 1;
        pid_t server = fork();
        if (server == 0) {
            int devnull = open("/dev/null", O_WRONLY);
            dup2(devnull, 1);
            dup2(devnull, 2);
            execl((bin + "/udhcpd").c_str(), "udhcpd", "-f", root.path("/etc.udhcpd.conf").c_str(),
                  static_cast<char *>(nullptr));
            _exit(127);
        }
        int rc = 0;
        for (int i = 1; i <= 3 && rc == 0; ++i)
            rc = run(bin + "/udhcpc -i c" + std::to_string(i) + " -x hostname:" + names[i - 1] +
                     " -q -n -f -t 60 -T 1 -s " + bin + "/script >/dev/null 2>&1");
        // The server writes its file when asked; wait until all three records are there.
        std::string file = root.path("/var/udhcpd.leases");
        if (rc == 0) {
            kill(server, SIGUSR1);
            if (!wait_for([&] { return file_size(file) == 8 + 3 * 36; })) rc = 3;
        }
        if (rc == 0) {
            std::string copy = root.path("/var/copy.leases");
            write_file(copy, read_file(file));
            // The reference: busybox dumpleases, "MAC IP NAME EXPIRES" columns.
            std::string ref = sh("busybox dumpleases -f '" + copy +
                                 "' | awk 'NR>1 {print toupper($1), $2, $3}' | sort");
            lease_entry *list = nullptr;
            int n = get_addrserver_leases(&list, "/var/copy.leases", nullptr);
            check("lease count", std::to_string(n), "3");
            std::vector<std::string> got;
            for (lease_entry *p = list; p; p = p->next) {
                got.push_back(std::string(p->mac) + " " + p->ip + " " + p->hostname);
                unsigned long expires = strtoul(p->expires, nullptr, 10);
                check(std::string(p->hostname) + " expiry within the lease time",
                      expires > 0 && expires <= 3600 ? "yes" : p->expires, "yes");
            }
            std::sort(got.begin(), got.end());
            std::string joined;
            for (const auto &g : got)
                joined += (joined.empty() ? "" : "; ") + g;
            for (size_t at; (at = ref.find('\n')) != std::string::npos;)
                ref.replace(at, 1, "; ");
            check("leases against dumpleases", joined, ref);
            for (int i = 1; i <= 3; ++i) {
                char name[21] = "";
                std::string mac = "02:00:00:00:4" + std::to_string(i) + ":0" + std::to_string(i);
                get_DevnamebyMacfromLease("/var/copy.leases", mac.c_str(), name);
                check("host name of " + mac, name,
                      sh("busybox dumpleases -f '" + copy + "' | awk 'tolower($1)==\"" + mac +
                         "\" {print $3}'"));
            }
            sort_dhcplist(list);
            std::string order;
            for (lease_entry *p = list; p; p = p->next)
                order += std::string(p->ip) + " ";
            check("sorted by last octet", order,
                  sh("busybox dumpleases -f '" + copy +
                     "' | awk 'NR>1 {print $2}' | sort -t. -k4,4n | tr '\\n' ' '"));
            free_leaselist(&list);
            // Reading through the pid file asks the running server for its leases: the
            // file it rewrites comes back after it is removed.
            unlink(file.c_str());
            get_addrserver_leases(&list, "/var/copy.leases", "/var/run/udhcpd.pid");
            free_leaselist(&list);
            check("server asked for its leases",
                  wait_for([&] { return file_size(file) == 8 + 3 * 36; }) ? "yes" : "no", "yes");
        }
        kill(server, SIGTERM);
        waitpid(server, nullptr, 0);
        return rc;
    });
}

} // namespace
