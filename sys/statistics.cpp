// System statistics for the status page: memory size and the use it shows, processor load
// per core from /proc/stat, the uptime, and the first line of a command's output.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/sysinfo.h>

#include "sys/support/paths.h"
#include "sys/support/raii.h"
#include "webmgmt.h"

namespace wm {
namespace {

struct MemClass {
    uint64_t up_to_kb;
    uint32_t megabytes;
};
// Nominal sizes by the kilobytes the kernel reports. Above the last row the class stays
// at the 512 it starts from, as the device has always shown it.
constexpr MemClass kMemClasses[] = {{255743, 128},   {511487, 256},   {599399, 512},
                                    {1246751, 1024}, {2593403, 2048}, {5086907, 4096}};

uint32_t shown_use(uint32_t used) {
    if (used > 69) return 70;
    if (used >= 50) return used - 20;
    if (used >= 40) return used - 15;
    if (used >= 30) return used - 10;
    return used;
}

// A /proc/stat line: its name, then up to seven counters (missing ones are 0), each read
// in decimal and kept to 32 bits as the device's int fields keep them.
void parse_stat_line(const char *line, uint32_t (&v)[7]) {
    const char *p = line;
    while (*p == ' ' || *p == '\t')
        ++p;
    while (*p && *p != ' ' && *p != '\t' && *p != '\n')
        ++p;
    for (uint32_t &x : v) {
        char *end = nullptr;
        long long n = std::strtoll(p, &end, 10);
        if (end == p) {
            x = 0;
            p = "";
            continue;
        }
        x = uint32_t(n);
        p = end;
    }
}

// The load since the previous sample, in the device's signed arithmetic; 5 stands for
// "no new information" (same tick, or a figure out of range).
uint32_t load_since(uint32_t total, uint32_t idle, const cpu_previous &prev) {
    if (total == prev.total) return 5;
    int32_t d_total = int32_t(total - prev.total);
    int32_t d_idle_100 = int32_t((idle - prev.idle) * 100u);
    if (d_total == -1 && d_idle_100 == INT32_MIN) return 5;
    int32_t usage = 100 - d_idle_100 / d_total;
    return uint32_t(usage) > 100 ? 5 : uint32_t(usage);
}

} // namespace
} // namespace wm

extern "C" {

uint32_t get_mem_use(mem_sample *mem) {
    struct sysinfo si {};
    ::sysinfo(&si);
    mem->uptime = si.uptime;
    for (int i = 0; i < 3; ++i)
        mem->loads[i] = si.loads[i];
    mem->totalram = si.totalram;
    mem->freeram = si.freeram;
    mem->sharedram = si.sharedram;
    mem->bufferram = si.bufferram;
    mem->totalswap = si.totalswap;
    mem->freeswap = si.freeswap;
    mem->procs = si.procs;
    mem->mem_unit = si.mem_unit;
    mem->totalhigh = si.totalhigh;
    mem->freehigh = si.freehigh;
    mem->mem_class = 512;
    // The unit is taken as a divisor: byte counts (unit 0 or 1) become kilobytes.
    uint64_t unit = si.mem_unit <= 1 ? 1024 : si.mem_unit;
    uint64_t total = mem->totalram / unit;
    uint64_t free_kb = mem->freeram / unit;
    for (const wm::MemClass &c : wm::kMemClasses) {
        if (total <= c.up_to_kb) {
            mem->mem_class = c.megabytes;
            break;
        }
    }
    uint32_t used = total ? uint32_t(100 * (total - free_kb) / total) : 0;
    mem->mem_usage = wm::shown_use(used);
    return mem->mem_usage;
}

long getSysUptime(void) {
    struct sysinfo si {};
    ::sysinfo(&si);
    return si.uptime;
}

int getcpu_usage(cpu_sample *cpu, sys_status *status) {
    FILE *raw = std::fopen(wm::device_path(wm::fixed::kProcStat).c_str(), "r");
    if (!raw) return 0;
    wm::UniqueFile f(raw);
    if (std::setvbuf(raw, nullptr, _IONBF, 0) != 0) return f.close();
    for (int i = 0; i < WEBMGMT_CPU_SAMPLES; ++i)
        cpu[i].usage = 0;
    for (int i = 0; i < WEBMGMT_CPU_SAMPLES; ++i) {
        std::rewind(raw);
        char line[1024];
        uint32_t v[7] = {};
        for (int l = 0; l <= i; ++l) {
            if (!std::fgets(line, sizeof line, raw)) break;
            wm::parse_stat_line(line, v);
        }
        cpu_sample &c = cpu[i];
        c.user = v[0];
        c.nice = v[1];
        c.system = v[2];
        c.idle = v[3];
        c.iowait = v[4];
        c.irq = v[5];
        c.softirq = v[6];
        uint32_t total = 0;
        for (uint32_t x : v)
            total += x;
        cpu_previous &prev = status->cpu_prev[i];
        if (prev.total < 1) {
            c.first_total = total;
            c.first_idle = c.idle;
        } else {
            c.total = total;
            c.last_idle = c.idle;
            c.usage = wm::load_since(total, c.idle, prev);
        }
        prev.total = total;
        prev.idle = c.idle;
    }
    return f.close();
}

int get_cmd_res(const char *command, char *buffer, int size) {
    if (!command || !buffer || size <= 0) return -1;
    FILE *p = ::popen(command, "r");
    if (!p) return -1;
    // Only the first line is kept; closing the pipe ends a tool that would print more.
    std::fgets(buffer, size, p);
    ::pclose(p);
    return 0;
}

} // extern "C"
