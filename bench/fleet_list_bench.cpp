// The managed-AP list page as the console serves it: fleet.cgi?do=list run as a whole CGI
// process over a fleet that fleetd wrote, for an empty fleet and for the store's maximum;
// against the floor of the same run, the same program answering a request it has no view
// for. Wall time per request from Google Benchmark; the
// instructions of one request from valgrind's callgrind when it is installed (counter
// "instructions"). The view alone is also timed for 1, 8 and 128 calls in one process, the
// way the program composes a page from one call per device.
#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "webmgmt.h"

namespace {

std::string g_build; // the build tree: this program lives in its bench/ folder
std::string g_root;  // the private device tree of this run

std::string build_dir() {
    char self[PATH_MAX] = {};
    ssize_t n = readlink("/proc/self/exe", self, sizeof self - 1);
    std::string path(self, n > 0 ? size_t(n) : 0);
    path = path.substr(0, path.rfind('/')); // bench/
    return path.substr(0, path.rfind('/'));
}

void prepare_tree() {
    char dir[] = "/tmp/webmgmt-bench-XXXXXX";
    if (!mkdtemp(dir)) std::abort();
    g_root = dir;
    for (const char *sub : {"/var", "/tmp", "/etc", "/usr"})
        mkdir((g_root + sub).c_str(), 0755);
    setenv("WEBMGMT_ROOT", g_root.c_str(), 1);
    // The catalogue's factory defaults, in the source tree this file belongs to.
    std::string source = __FILE__;
    source = source.substr(0, source.rfind("/bench/"));
    setenv("WEBMGMT_DEFAULTS_DIR", (source + "/conf/defaults").c_str(), 1);
    std::string libs = g_build + ":" + g_build + "/store";
    setenv("LD_LIBRARY_PATH", libs.c_str(), 1);
    int fd = open((g_root + "/var/loginlock").c_str(), O_CREAT | O_WRONLY, 0644);
    if (fd >= 0) close(fd);
    // A logged-in browser at 127.0.0.1.
    generate_token2save("127.0.0.1", "benchtoken000001");
    setenv("REMOTE_ADDR", "127.0.0.1", 1);
    setenv("HTTP_COOKIE", "stork=benchtoken000001", 1);
    setenv("REQUEST_METHOD", "GET", 1);
}

void write_fleet(int aps) {
    std::string command = "'" + g_build + "/fleetd' --aps " + std::to_string(aps) + " --seed 9";
    if (std::system(command.c_str()) != 0) std::abort();
}

// Runs one CGI request as the web server does: a fresh process, its answer to /dev/null.
int run_cgi(const std::string &program, const char *query) {
    pid_t pid = fork();
    if (pid == 0) {
        setenv("QUERY_STRING", query, 1);
        int null = open("/dev/null", O_WRONLY);
        dup2(null, STDOUT_FILENO);
        execl(program.c_str(), program.c_str(), static_cast<char *>(nullptr));
        _exit(127);
    }
    int status = 0;
    waitpid(pid, &status, 0);
    return status;
}

// The instructions of one request, counted by callgrind (0 when valgrind is missing).
double instructions(const std::string &program, const char *query) {
    if (std::system("command -v valgrind >/dev/null 2>&1") != 0) return 0;
    std::string command = "QUERY_STRING='" + std::string(query) +
                          "' valgrind --tool=callgrind --callgrind-out-file=/dev/null '" + program +
                          "' 2>&1 >/dev/null | sed -n 's/.*Collected : //p'";
    FILE *p = popen(command.c_str(), "r");
    if (!p) return 0;
    double n = 0;
    if (std::fscanf(p, "%lf", &n) != 1) n = 0;
    pclose(p);
    return n;
}

void request(benchmark::State &state, const std::string &program, const char *query) {
    for (auto _ : state)
        if (run_cgi(program, query) != 0) state.SkipWithError("the program failed");
    state.counters["instructions"] = instructions(program, query);
}

// The floor: the same program answering a request it has no view for (process start, the
// libraries, the session check, a 404 answer).
void BM_Floor_NoView(benchmark::State &state) {
    request(state, g_build + "/examples/cgi-bin/fleet.cgi", "do=none");
}

void BM_ListPage(benchmark::State &state) {
    write_fleet(int(state.range(0)));
    request(state, g_build + "/examples/cgi-bin/fleet.cgi", "do=list&ip=&mac=");
}

// The view for `calls` devices in one process (the page's composition), output discarded.
void BM_ListView_Calls(benchmark::State &state) {
    static ap_device_record ap;
    ap.m_id = 1;
    ap.m_wlan_radio_num = 3;
    std::snprintf(ap.m_dev_name, sizeof ap.m_dev_name, "ap-01");
    FILE *saved = stdout;
    stdout = std::fopen("/dev/null", "w");
    for (auto _ : state)
        for (int64_t i = 0; i < state.range(0); ++i)
            printf_ManageApList_json(&ap, 3, "", "");
    std::fclose(stdout);
    stdout = saved;
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

} // namespace

BENCHMARK(BM_Floor_NoView)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ListPage)->Arg(0)->Arg(WEBMGMT_AP_MAX)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ListView_Calls)->Arg(1)->Arg(8)->Arg(128)->Unit(benchmark::kMicrosecond);

int main(int argc, char **argv) {
    g_build = build_dir();
    prepare_tree();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    std::string cleanup = "rm -rf '" + g_root + "'";
    return std::system(cleanup.c_str()) == 0 ? 0 : 1;
}
