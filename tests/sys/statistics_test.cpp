// Statistics: memory classes through a stand-in for the kernel's sysinfo, processor load on
// committed /proc/stat samples, the uptime against /proc/uptime, the one-line command
// reader, and per-host traffic from /proc/mac checked with Python's json.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstring>
#include <string>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/sysinfo.h>
#include <unistd.h>

#include "support/harness.h"
#include "webmgmt.h"

namespace {
bool g_fake_sysinfo = false;
struct sysinfo g_fake_info;
} // namespace

// The library asks the kernel through sysinfo(); this definition in the test program comes
// first, so a test can supply the kernel's answer. Otherwise the kernel answers.
extern "C" int sysinfo(struct sysinfo *info) {
    if (g_fake_sysinfo) {
        *info = g_fake_info;
        return 0;
    }
    return int(syscall(SYS_sysinfo, info));
}

namespace {

using wmtest::read_file;
using wmtest::run_in_child;
using wmtest::run_shell;
using wmtest::write_file;

struct FakeSysinfo {
    FakeSysinfo(unsigned long total, unsigned long free_ram, unsigned unit) {
        memset(&g_fake_info, 0, sizeof g_fake_info);
        g_fake_info.totalram = total;
        g_fake_info.freeram = free_ram;
        g_fake_info.mem_unit = unit;
        g_fake_info.uptime = 4242;
        g_fake_info.procs = 77;
        g_fake_sysinfo = true;
    }
    ~FakeSysinfo() { g_fake_sysinfo = false; }
};

TEST(Statistics, MemoryClassTable) {
    struct Case {
        unsigned long total;
        unsigned unit;
        uint32_t mem_class;
    } cases[] = {
        {268435456, 1, 256}, // 256 MiB in bytes
        {268435456, 0, 256},
        {255743, 1024, 128},
        {255744, 1024, 256},
        {511487, 1024, 256},
        {511488, 1024, 512},
        {599399, 1024, 512},
        {599400, 1024, 1024},
        {600000, 1024, 1024},
        {1246751, 1024, 1024},
        {1246752, 1024, 2048},
        {2593403, 1024, 2048},
        {2593404, 1024, 4096},
        {5086907, 1024, 4096},
        {5086908, 1024, 512}, // above the table: stays 512
        {6000000, 1024, 512},
        // any other unit divides as well: 4096-byte units give a small class
        {1000000, 4096, 128},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(std::to_string(c.total) + " unit " + std::to_string(c.unit));
        unsigned long scale = c.unit == 1024 ? 1024 : 1;
        // A 32-bit kernel's longs cannot report more than 4 GiB in bytes.
        if (uint64_t(c.total) * scale > uint64_t(ULONG_MAX)) continue;
        FakeSysinfo fake(c.total * scale, c.total * scale, c.unit == 1024 ? 1 : c.unit);
        mem_sample m;
        memset(&m, 0xff, sizeof m);
        EXPECT_EQ(get_mem_use(&m), 0u);
        EXPECT_EQ(m.mem_class, c.mem_class);
        EXPECT_EQ(m.uptime, 4242);
        EXPECT_EQ(m.procs, 77);
        EXPECT_EQ(m.totalram, c.total * scale);
    }
}

TEST(Statistics, MemoryUseShown) {
    struct Case {
        unsigned used_percent;
        uint32_t shown;
    } cases[] = {{100, 70}, {85, 70}, {70, 70}, {69, 49}, {55, 35}, {50, 30}, {49, 34}, {45, 30},
                 {40, 25},  {39, 29}, {35, 25}, {30, 20}, {29, 29}, {25, 25}, {0, 0}};
    for (const Case &c : cases) {
        SCOPED_TRACE(c.used_percent);
        const unsigned long total_kb = 1000000;
        FakeSysinfo fake(total_kb * 1024, (100 - c.used_percent) * (total_kb / 100) * 1024, 1);
        mem_sample m{};
        EXPECT_EQ(get_mem_use(&m), c.shown);
        EXPECT_EQ(m.mem_usage, c.shown);
    }
}

TEST(Statistics, UptimeAgainstProcUptime) {
    double before = std::stod(read_file("/proc/uptime"));
    long up = getSysUptime();
    double after = std::stod(read_file("/proc/uptime"));
    EXPECT_GE(up, long(std::floor(before)) - 1);
    EXPECT_LE(up, long(std::ceil(after)) + 1);
}

class ProcStat : public ::testing::Test {
  protected:
    void SetUp() override { root_.own_proc(); }
    void sample(const std::string &name) {
        write_file(root_.path("/proc/stat"),
                   read_file(wmtest::source_dir() + "/tests/sys/data/proc_stat/" + name));
    }
    wmtest::TempRoot root_;
    cpu_sample cpu_[WEBMGMT_CPU_SAMPLES];
    sys_status status_{};
};

TEST_F(ProcStat, LoadPerCoreBetweenSamples) {
    struct Case {
        const char *first, *second;
        uint32_t usage[WEBMGMT_CPU_SAMPLES];
    } cases[] = {
        // One core: the lines after cpu0 (intr, ctxt, btime) are read as cores.
        {"1core_a", "1core_b", {30, 30, 100, 100, 5}},
        {"2core_a", "2core_b", {38, 100, 0, 5, 100}},
        {"4core_a", "4core_b", {40, 40, 0, 100, 20}},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.first);
        status_ = sys_status{};
        sample(c.first);
        EXPECT_EQ(getcpu_usage(cpu_, &status_), 0);
        for (int i = 0; i < WEBMGMT_CPU_SAMPLES; ++i) {
            EXPECT_EQ(cpu_[i].usage, 0u) << "first call, record " << i;
            EXPECT_EQ(cpu_[i].first_total, status_.cpu_prev[i].total);
        }
        // A second call within the same tick: nothing new, the fixed 5.
        EXPECT_EQ(getcpu_usage(cpu_, &status_), 0);
        for (int i = 0; i < WEBMGMT_CPU_SAMPLES; ++i)
            EXPECT_EQ(cpu_[i].usage, 5u) << "same tick, record " << i;
        sample(c.second);
        EXPECT_EQ(getcpu_usage(cpu_, &status_), 0);
        for (int i = 0; i < WEBMGMT_CPU_SAMPLES; ++i)
            EXPECT_EQ(cpu_[i].usage, c.usage[i]) << "record " << i;
    }
    // The counters of a record that is really the intr line of a one-core file.
    status_ = sys_status{};
    sample("1core_b");
    getcpu_usage(cpu_, &status_);
    EXPECT_EQ(cpu_[2].user, 200u);
    EXPECT_EQ(cpu_[2].softirq, 2u);
    EXPECT_EQ(cpu_[3].user, 6000u);
    EXPECT_EQ(cpu_[3].nice, 0u);
    EXPECT_EQ(cpu_[2].first_total, 212u);
}

TEST_F(ProcStat, OutOfRangeLoadFallsBackToFive) {
    write_file(root_.path("/proc/stat"), "cpu 100 0 0 100 0 0 0\n");
    getcpu_usage(cpu_, &status_);
    // Idle grew by more than the total: a negative load, shown as 5.
    write_file(root_.path("/proc/stat"), "cpu 0 0 0 300 0 0 0\n");
    getcpu_usage(cpu_, &status_);
    EXPECT_EQ(cpu_[0].usage, 5u);
    EXPECT_EQ(cpu_[0].total, 300u);
    EXPECT_EQ(cpu_[0].last_idle, 300u);
    unlink(root_.path("/proc/stat").c_str());
    cpu_[0].usage = 9;
    EXPECT_EQ(getcpu_usage(cpu_, &status_), 0);
    EXPECT_EQ(cpu_[0].usage, 9u); // no file: nothing touched
}

TEST(Statistics, LoadOfTheRunningKernel) {
    cpu_sample cpu[WEBMGMT_CPU_SAMPLES];
    sys_status status{};
    EXPECT_EQ(getcpu_usage(cpu, &status), 0);
    unsigned long long user = 0;
    sscanf(read_file("/proc/stat").c_str(), "cpu %llu", &user);
    EXPECT_LE(cpu[0].user, user);
    EXPECT_GT(cpu[0].first_total, 0u);
    EXPECT_EQ(getcpu_usage(cpu, &status), 0);
    for (const cpu_sample &c : cpu)
        EXPECT_LE(c.usage, 100u);
}

TEST(Statistics, CommandFirstLine) {
    char buf[16];
    memset(buf, 'x', sizeof buf);
    EXPECT_EQ(get_cmd_res("printf 'abcdefghijklmnopqrstuvwxyz\\nsecond\\n'", buf, sizeof buf), 0);
    EXPECT_STREQ(buf, "abcdefghijklmno");
    EXPECT_EQ(get_cmd_res("echo short; echo second", buf, sizeof buf), 0);
    EXPECT_STREQ(buf, "short\n");
    // A first line far longer than the pipe holds: the tool is not waited for forever.
    char big[100];
    EXPECT_EQ(get_cmd_res("head -c 1000000 /dev/zero | tr '\\0' a; echo", big, sizeof big), 0);
    EXPECT_EQ(std::string(big), std::string(99, 'a'));
    strcpy(buf, "untouched");
    EXPECT_EQ(get_cmd_res("true", buf, sizeof buf), 0);
    EXPECT_STREQ(buf, "untouched");
    EXPECT_EQ(get_cmd_res("echo x", buf, 0), -1);
    EXPECT_STREQ(buf, "untouched");
}

class HostTraffic : public ::testing::Test {
  protected:
    void SetUp() override { root_.own_proc(); }
    // Runs one of the two printers and reads its output back through Python's json.
    std::string printed(int (*show)(void), int expected_count) {
        auto r = run_in_child([&] { return show() == expected_count ? 0 : 1; });
        EXPECT_EQ(r.exit_code(), 0) << r.out;
        auto py = run_shell("python3 -c 'import json,sys\n"
                            "for h in json.load(sys.stdin):\n"
                            "  print(\"|\".join(h[k] for k in (\"mac\",\"ip\",\"name\",\"up\","
                            "\"down\",\"up_rate\",\"down_rate\",\"bound\")))'",
                            r.out);
        EXPECT_EQ(py.exit_code(), 0) << r.out << py.err;
        return py.out;
    }
    wmtest::TempRoot root_;
};

TEST_F(HostTraffic, RoutedAndLayerTwoHosts) {
    // Under WEBMGMT_ROOT /proc/mac is the plain file beside the tree's state.
    write_file(root_.path("/var/proc_mac"),
               "aa:bb:cc:00:00:01 192.168.1.10 1536 1572864 100 2048 1\n"
               "AA:BB:CC:00:00:02 0.0.0.0 10 20 0 0 0\n"
               "aa:bb:cc:00:00:03 192.168.1.30 0 0 0 0 0 extra\n" // the seven fields are read

               "aa:bb:cc:00:00:04 192.168.1.40 x 0 0 0 0\n"
               "aa:bb:cc:00:00:05-----------\n"
               "aa:bb:cc:00:00:06 192.168.1.60 0 0 0 0 2\n"
               "\n"
               "aa:bb:cc:00:00:07 192.168.1.70 1073741824 0 0 0 0\n");
    std::string leases(8, '\0');
    unsigned char rec[36] = {0, 0, 0, 9, 192, 168, 1, 10, 0xaa, 0xbb, 0xcc, 0, 0, 1};
    memcpy(rec + 14, "a \"quoted\" \\name", 16);
    leases.append(reinterpret_cast<char *>(rec), 36);
    write_file(root_.path("/var/udhcpd.leases"), leases);
    EXPECT_EQ(printed(showuser_statistic, 3),
              "AA:BB:CC:00:00:01|192.168.1.10|a \"quoted\" \\name|1.0Kbps|1.5Mbps|100.0bps|"
              "2.0Kbps|1\n"
              "AA:BB:CC:00:00:03|192.168.1.30||0.0bps|0.0bps|0.0bps|0.0bps|0\n"
              "AA:BB:CC:00:00:07|192.168.1.70||1.0Gbps|0.0bps|0.0bps|0.0bps|0\n");
    EXPECT_EQ(printed(showlayer2user_statistic, 4),
              "AA:BB:CC:00:00:01|192.168.1.10|a \"quoted\" \\name|1.0Kbps|1.5Mbps|100.0bps|"
              "2.0Kbps|1\n"
              "AA:BB:CC:00:00:02|0.0.0.0||10.0bps|20.0bps|0.0bps|0.0bps|0\n"
              "AA:BB:CC:00:00:03|192.168.1.30||0.0bps|0.0bps|0.0bps|0.0bps|0\n"
              "AA:BB:CC:00:00:07|192.168.1.70||1.0Gbps|0.0bps|0.0bps|0.0bps|0\n");
    EXPECT_TRUE(wmtest::file_exists(root_.path("/var/readuserlock")));
}

TEST_F(HostTraffic, NoCounterFile) {
    auto r = run_in_child([] { return showuser_statistic() == -1 ? 0 : 1; });
    EXPECT_EQ(r.exit_code(), 0);
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(r.err, "cannot open /proc/mac!\n");
}

} // namespace
