// The VLANs of the LAN ports, applied to the switch with swconfig. Each command runs from an
// argument vector: the VLAN id comes from the store, which a form filled from a request, so
// it never reaches a shell. The command log keeps the lines the shell would have read.
#include <cstdio>

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

// "port <id> set pvid <vlan>" and "vlan <vlan> set ports "<id> 0t"": the port leaves the
// switch untagged in its VLAN, and the CPU port 0 carries that VLAN tagged.
bool apply_port(const lan_vlan_port &p) {
    char port[8], vlan[8], members[16], line[128];
    std::snprintf(port, sizeof port, "%u", unsigned(p.m_port_id));
    std::snprintf(vlan, sizeof vlan, "%d", int(p.m_vlan_id));
    std::snprintf(members, sizeof members, "%s 0t", port);

    const char *pvid[] = {"swconfig", "dev", kSwitch, "port", port, "set", "pvid", vlan, nullptr};
    std::snprintf(line, sizeof line, "swconfig dev %s port %s set pvid %s", kSwitch, port, vlan);
    bool ok = run_logged(pvid, line);

    const char *ports[] = {"swconfig", "dev",   kSwitch, "vlan", vlan,
                           "set",      "ports", members, nullptr};
    std::snprintf(line, sizeof line, "swconfig dev %s vlan %s set ports \"%s\"", kSwitch, vlan,
                  members);
    return run_logged(ports, line) && ok;
}

} // namespace
} // namespace wm

extern "C" {

int ConfigLanPortVLAN(const lan_config *lan) {
    if (!lan) return -1;
    bool ok = true;
    for (const lan_vlan_port &p : lan->lan_vlan.port)
        if (wm::port_applies(p)) ok = wm::apply_port(p) && ok;
    const char *apply[] = {"swconfig", "dev", wm::kSwitch, "set", "apply", nullptr};
    ok = wm::run_logged(apply, "swconfig dev switch0 set apply") && ok;
    return ok ? 0 : -1;
}

} // extern "C"
