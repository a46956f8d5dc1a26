// Reading and ordering a lease file of 100, 1,000 and 10,000 leases with distinct
// addresses, against the floor of the device's own exchange sort on the same lists, and
// the console's lease page as the web server runs it.
//
// The lease list must cost n log n where addresses are distinct: 10,000 leases at most
// about 15 times 1,000 (the exchange: 100 times).
#include <arpa/inet.h>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <algorithm>
#include <vector>

#include <benchmark/benchmark.h>

#include "webmgmt.h"

namespace {

// A device tree with a lease file of `n` leases at distinct random addresses.
std::string lease_root(int n) {
    static std::string base = [] {
        char dir[] = "/tmp/webmgmt-lease-bench-XXXXXX";
        if (!mkdtemp(dir)) std::abort();
        static std::string made = dir;
        std::atexit([] { (void)!std::system(("rm -rf '" + made + "'").c_str()); });
        return made;
    }();
    std::string root = base + "/" + std::to_string(n);
    mkdir(root.c_str(), 0755);
    mkdir((root + "/var").c_str(), 0755);
    std::mt19937 rng{uint32_t(n)};
    std::vector<uint32_t> addrs;
    for (uint32_t a = 0x0A000001; addrs.size() < size_t(n); a += 1 + rng() % 3)
        addrs.push_back(a);
    std::shuffle(addrs.begin(), addrs.end(), rng);
    std::string file(8, '\0');
    for (int i = 0; i < n; ++i) {
        unsigned char r[36] = {0, 0, 0x0e, 0x10};
        uint32_t ip = htonl(addrs[size_t(i)]);
        std::memcpy(r + 4, &ip, 4);
        r[8] = 2;
        r[12] = uint8_t(i >> 8);
        r[13] = uint8_t(i);
        std::snprintf(reinterpret_cast<char *>(r + 14), 20, "host-%d", i);
        file.append(reinterpret_cast<char *>(r), 36);
    }
    FILE *f = std::fopen((root + "/var/udhcpd.leases").c_str(), "wb");
    std::fwrite(file.data(), 1, file.size(), f);
    std::fclose(f);
    return root;
}

void BM_LeaseListReadAndSort(benchmark::State &state) {
    std::string root = lease_root(int(state.range(0)));
    setenv("WEBMGMT_ROOT", root.c_str(), 1);
    for (auto _ : state) {
        lease_entry *list = nullptr;
        int n = get_addrserver_leases(&list, "/var/udhcpd.leases", nullptr);
        sort_dhcplist(list);
        benchmark::DoNotOptimize(list);
        free_leaselist(&list);
        if (n != state.range(0)) state.SkipWithError("lease count");
    }
    state.SetComplexityN(state.range(0));
    unsetenv("WEBMGMT_ROOT");
}
BENCHMARK(BM_LeaseListReadAndSort)->Arg(100)->Arg(1000)->Arg(10000)->Complexity();

// The floor: the same reading, ordered by the device's exchange of node contents.
void exchange_sort(lease_entry *head) {
    for (lease_entry *a = head; a; a = a->next)
        for (lease_entry *b = a->next; b; b = b->next)
            if (a->sort_key > b->sort_key) {
                lease_entry t = *a;
                std::memcpy(static_cast<void *>(a), b, offsetof(lease_entry, next));
                std::memcpy(static_cast<void *>(b), &t, offsetof(lease_entry, next));
            }
}

void BM_DeviceExchangeSort(benchmark::State &state) {
    std::string root = lease_root(int(state.range(0)));
    setenv("WEBMGMT_ROOT", root.c_str(), 1);
    for (auto _ : state) {
        lease_entry *list = nullptr;
        get_addrserver_leases(&list, "/var/udhcpd.leases", nullptr);
        exchange_sort(list);
        benchmark::DoNotOptimize(list);
        free_leaselist(&list);
    }
    state.SetComplexityN(state.range(0));
    unsetenv("WEBMGMT_ROOT");
}
BENCHMARK(BM_DeviceExchangeSort)->Arg(100)->Arg(1000)->Arg(10000)->Complexity();

// The console's lease page: status.cgi run as the web server runs it, on 1,000 leases.
void BM_LeasePage(benchmark::State &state) {
    // The program lies in the build tree beside this one: bench/.. /examples/cgi-bin.
    char self[4096] = "";
    ssize_t len = readlink("/proc/self/exe", self, sizeof self - 1);
    std::string exe(self, len > 0 ? size_t(len) : 0);
    std::string cgi = exe.substr(0, exe.rfind("/bench/")) + "/examples/cgi-bin/status.cgi";
    std::string root = lease_root(int(state.range(0)));
    // A logged-in browser at 127.0.0.1, through the library's own session table.
    mkdir((root + "/var/run").c_str(), 0755);
    FILE *lock = std::fopen((root + "/var/loginlock").c_str(), "w");
    if (lock) std::fclose(lock);
    setenv("WEBMGMT_ROOT", root.c_str(), 1);
    if (generate_token2save("127.0.0.1", "benchbenchbench1") != 0) {
        state.SkipWithError("no session");
        return;
    }
    unsetenv("WEBMGMT_ROOT");
    for (auto _ : state) {
        pid_t pid = fork();
        if (pid == 0) {
            setenv("WEBMGMT_ROOT", root.c_str(), 1);
            setenv("REQUEST_METHOD", "GET", 1);
            setenv("QUERY_STRING", "view=leases", 1);
            setenv("REMOTE_ADDR", "127.0.0.1", 1);
            setenv("HTTP_COOKIE", "stork=benchbenchbench1", 1);
            if (!std::freopen("/dev/null", "w", stdout)) _exit(126);
            execl(cgi.c_str(), cgi.c_str(), static_cast<char *>(nullptr));
            _exit(127);
        }
        int status = 0;
        waitpid(pid, &status, 0);
        if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
            state.SkipWithError("status.cgi failed");
    }
}
BENCHMARK(BM_LeasePage)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
