// The VLANs of the LAN ports, applied to the switch with swconfig. Each command runs from an
// argument vector: the VLAN id comes from the store, which a form filled from a request, so
// it never reaches a shell. The command log keeps the lines the shell would have read.
#include <cstdio>
#include <cstring>

#include "sys/support/exec.h"
#include "webmgmt.h"

namespace wm {
namespace {

constexpr char kSwitch[] = "switch0";
constexpr int kVlanMin = 1;
constexpr int kVlanMax = 4094;

// Runs the vector and logs `line` for it; true when the tool ran and exited 0.
bool run_logged(const char *const argv[], const char *line) {
    int status = run_argv(argv);
    log_command(line);
    return status == 0;
}

bool port_applies(const lan_vlan_port &p) {
    return p.m_haveport && p.m_supportvlan && p.m_vlan_id >= kVlanMin && p.m_vlan_id <= kVlanMax;
}

// "port <id> set pvid <vlan>": the port leaves the switch untagged in its VLAN.
bool set_pvid(const lan_vlan_port &p) {
    char port[8], vlan[8], line[128];
    std::snprintf(port, sizeof port, "%u", unsigned(p.m_port_id));
    std::snprintf(vlan, sizeof vlan, "%d", int(p.m_vlan_id));
    const char *argv[] = {"swconfig", "dev", kSwitch, "port", port, "set", "pvid", vlan, nullptr};
    std::snprintf(line, sizeof line, "swconfig dev %s port %s set pvid %s", kSwitch, port, vlan);
    return run_logged(argv, line);
}

// "vlan <vlan> set ports "<id> ... 0t"": every port of the VLAN, and the CPU port 0 that
// carries it tagged. One command per VLAN, as the switch replaces a VLAN's member list on
// every "set ports": ports sharing a VLAN are listed together.
bool set_members(const lan_config &lan, int16_t vlan_id) {
    char vlan[8], members[64] = "", line[160];
    std::snprintf(vlan, sizeof vlan, "%d", int(vlan_id));
    for (const lan_vlan_port &p : lan.lan_vlan.port) {
        if (!port_applies(p) || p.m_vlan_id != vlan_id) continue;
        size_t used = std::strlen(members);
        std::snprintf(members + used, sizeof members - used, "%u ", unsigned(p.m_port_id));
    }
    size_t used = std::strlen(members);
    std::snprintf(members + used, sizeof members - used, "0t");
    const char *argv[] = {"swconfig", "dev",   kSwitch, "vlan", vlan,
                          "set",      "ports", members, nullptr};
    std::snprintf(line, sizeof line, "swconfig dev %s vlan %s set ports \"%s\"", kSwitch, vlan,
                  members);
    return run_logged(argv, line);
}

// Whether an earlier port that applies has the same VLAN (its members are set already).
bool vlan_seen(const lan_config &lan, int index) {
    for (int i = 0; i < index; ++i) {
        const lan_vlan_port &p = lan.lan_vlan.port[i];
        if (port_applies(p) && p.m_vlan_id == lan.lan_vlan.port[index].m_vlan_id) return true;
    }
    return false;
}

} // namespace
} // namespace wm

extern "C" {

int ConfigLanPortVLAN(const lan_config *lan) {
    if (!lan) return -1;
    bool ok = true;
    for (const lan_vlan_port &p : lan->lan_vlan.port)
        if (wm::port_applies(p)) ok = wm::set_pvid(p) && ok;
    for (int i = 0; i < WEBMGMT_LAN_PORTS; ++i) {
        const lan_vlan_port &p = lan->lan_vlan.port[i];
        if (wm::port_applies(p) && !wm::vlan_seen(*lan, i))
            ok = wm::set_members(*lan, p.m_vlan_id) && ok;
    }
    const char *apply[] = {"swconfig", "dev", wm::kSwitch, "set", "apply", nullptr};
    ok = wm::run_logged(apply, "swconfig dev switch0 set apply") && ok;
    return ok ? 0 : -1;
}

} // extern "C"
