// ConfigLanPortVLAN against a switch tool that records its argument vectors: which ports are
// applied, the vectors exactly (one argument stays one argument), the command log's lines,
// and the result when a run fails.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "support/harness.h"
#include "webmgmt.h"

namespace {

struct Port {
    uint8_t have, support, id;
    int16_t vlan;
};

struct Case {
    const char *label;
    Port ports[WEBMGMT_LAN_PORTS];
    const char *fail_on; // the argument the fake fails on, or null
    int result;
    const char *vectors; // what the fake recorded, one bracketed argument each
};

// The command log's lines for recorded vectors: "swconfig" and the arguments, an argument
// with a blank in double quotes.
std::string logged(const std::string &vectors) {
    std::string log = "swconfig";
    for (size_t at = 0; at < vectors.size(); ++at) {
        size_t end = vectors.find_first_of("]\n", at);
        if (vectors[at] == '\n') {
            log += "\n";
            if (at + 1 < vectors.size()) log += "swconfig";
            continue;
        }
        std::string arg = vectors.substr(at + 1, end - at - 1);
        log += arg.find(' ') == std::string::npos ? " " + arg : " \"" + arg + "\"";
        at = end;
    }
    return log;
}

const Case kCases[] = {
    {"two ports apply; one without VLANs, one with VLAN 0 skipped",
     {{1, 1, 1, 10}, {1, 0, 2, 20}, {1, 1, 3, 0}, {1, 1, 4, 4094}},
     nullptr,
     0,
     "[dev][switch0][port][1][set][pvid][10]\n"
     "[dev][switch0][port][4][set][pvid][4094]\n"
     "[dev][switch0][vlan][10][set][ports][1 0t]\n"
     "[dev][switch0][vlan][4094][set][ports][4 0t]\n"
     "[dev][switch0][set][apply]\n"},
    {"ports sharing a VLAN are its members together",
     {{1, 1, 1, 10}, {1, 1, 2, 10}, {1, 1, 3, 20}, {1, 1, 4, 10}},
     nullptr,
     0,
     "[dev][switch0][port][1][set][pvid][10]\n"
     "[dev][switch0][port][2][set][pvid][10]\n"
     "[dev][switch0][port][3][set][pvid][20]\n"
     "[dev][switch0][port][4][set][pvid][10]\n"
     "[dev][switch0][vlan][10][set][ports][1 2 4 0t]\n"
     "[dev][switch0][vlan][20][set][ports][3 0t]\n"
     "[dev][switch0][set][apply]\n"},
    {"no port exists: the switch is still applied",
     {{0, 1, 1, 10}, {0, 1, 2, 20}, {0, 0, 0, 0}, {0, 0, 0, 0}},
     nullptr,
     0,
     "[dev][switch0][set][apply]\n"},
    {"VLAN ids outside 1..4094 skip their ports",
     {{1, 1, 1, 4095}, {1, 1, 2, -1}, {1, 1, 3, 1}, {1, 1, 0, 32767}},
     nullptr,
     0,
     "[dev][switch0][port][3][set][pvid][1]\n"
     "[dev][switch0][vlan][1][set][ports][3 0t]\n"
     "[dev][switch0][set][apply]\n"},
    {"a failed run: the others still run, the result is -1",
     {{1, 1, 1, 10}, {1, 1, 2, 20}, {0, 0, 0, 0}, {0, 0, 0, 0}},
     "pvid",
     -1,
     "[dev][switch0][port][1][set][pvid][10]\n"
     "[dev][switch0][port][2][set][pvid][20]\n"
     "[dev][switch0][vlan][10][set][ports][1 0t]\n"
     "[dev][switch0][vlan][20][set][ports][2 0t]\n"
     "[dev][switch0][set][apply]\n"},
    {"the apply fails",
     {{0, 0, 0, 0}, {0, 0, 0, 0}, {0, 0, 0, 0}, {0, 0, 0, 0}},
     "apply",
     -1,
     "[dev][switch0][set][apply]\n"},
};

class PortVlan : public ::testing::Test {
  protected:
    void SetUp() override {
        old_path_ = std::getenv("PATH") ? std::getenv("PATH") : "";
        // This test's own recording switch tool comes before every other stand-in.
        std::string path = wmtest::source_dir() + "/tests/sys/fakes-vlan:" + old_path_;
        setenv("PATH", path.c_str(), 1);
        setenv("WEBMGMT_SWCONFIG_LOG", root_.path("/tmp/swconfig.log").c_str(), 1);
        wmtest::write_file(root_.path("/var/cmd_ram"), "");
    }
    void TearDown() override {
        setenv("PATH", old_path_.c_str(), 1);
        unsetenv("WEBMGMT_SWCONFIG_LOG");
        unsetenv("WEBMGMT_SWCONFIG_FAIL_ON");
    }
    wmtest::TempRoot root_;
    std::string old_path_;
};

TEST_F(PortVlan, AppliesThePortsThatHaveVlans) {
    for (const Case &c : kCases) {
        SCOPED_TRACE(c.label);
        unlink(root_.path("/tmp/swconfig.log").c_str());
        unlink(root_.path("/tmp/cmdinfo").c_str());
        if (c.fail_on)
            setenv("WEBMGMT_SWCONFIG_FAIL_ON", c.fail_on, 1);
        else
            unsetenv("WEBMGMT_SWCONFIG_FAIL_ON");
        lan_config lan;
        std::memset(&lan, 0, sizeof lan);
        for (int i = 0; i < WEBMGMT_LAN_PORTS; ++i) {
            lan_vlan_port &p = lan.lan_vlan.port[i];
            p.m_haveport = c.ports[i].have;
            p.m_supportvlan = c.ports[i].support;
            p.m_port_id = c.ports[i].id;
            p.m_vlan_id = c.ports[i].vlan;
        }
        EXPECT_EQ(ConfigLanPortVLAN(&lan), c.result);
        EXPECT_EQ(wmtest::read_file(root_.path("/tmp/swconfig.log")), c.vectors);
        EXPECT_EQ(wmtest::read_file(root_.path("/tmp/cmdinfo")), logged(c.vectors));
    }
}

TEST_F(PortVlan, NoRecordNoRun) {
    EXPECT_EQ(ConfigLanPortVLAN(nullptr), -1);
    EXPECT_FALSE(wmtest::file_exists(root_.path("/tmp/swconfig.log")));
}

TEST_F(PortVlan, ToolMissingIsAFailure) {
    setenv("PATH", "/nonexistent", 1);
    lan_config lan;
    std::memset(&lan, 0, sizeof lan);
    EXPECT_EQ(ConfigLanPortVLAN(&lan), -1);
    // Still logged as the command the device would have run.
    EXPECT_EQ(wmtest::read_file(root_.path("/tmp/cmdinfo")), "swconfig dev switch0 set apply\n");
}

} // namespace
