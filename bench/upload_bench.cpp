// Peak memory of the streaming upload writer: each run forks a child that saves a body fed
// through a pipe with save_queue_for_upload and reports the child's peak resident set.
// A second child that only reads the body with a 1 KiB buffer gives the baseline of a
// forked process, so the difference is what the writer itself holds.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "webmgmt.h"

namespace {

const std::string kBoundary = "------------------------bench0123456789";

std::string preamble() {
    return "--" + kBoundary +
           "\r\nContent-Disposition: form-data; name=\"fw\"; filename=\"fw.bin\"\r\n"
           "Content-Type: application/octet-stream\r\n\r\n";
}
std::string closing() {
    return "\r\n--" + kBoundary + "--\r\n";
}

void write_all(int fd, const char *p, size_t n) {
    while (n) {
        ssize_t w = write(fd, p, n);
        if (w <= 0) return;
        p += w;
        n -= size_t(w);
    }
}

// Feeds the body in 64 KiB pieces so that the parent never holds the whole file.
void feed_body(int fd, size_t file_size) {
    std::string head = preamble(), tail = closing();
    write_all(fd, head.data(), head.size());
    char piece[65536];
    unsigned seed = 12345;
    for (size_t sent = 0; sent < file_size;) {
        size_t n = file_size - sent < sizeof piece ? file_size - sent : sizeof piece;
        for (size_t i = 0; i < n; ++i) {
            seed = seed * 1103515245u + 12345u;
            piece[i] = char(seed >> 16);
        }
        write_all(fd, piece, n);
        sent += n;
    }
    write_all(fd, tail.data(), tail.size());
}

// Runs one child with the body on its standard input; returns its peak RSS in KiB, or -1.
long child_peak_kib(size_t file_size, const std::string &path, bool save) {
    size_t length = preamble().size() + file_size + closing().size();
    int fds[2];
    if (pipe(fds) != 0) return -1;
    pid_t pid = fork();
    if (pid == 0) {
        dup2(fds[0], STDIN_FILENO);
        close(fds[0]);
        close(fds[1]);
        setenv("REQUEST_METHOD", "POST", 1);
        setenv("CONTENT_TYPE", ("multipart/form-data; boundary=" + kBoundary).c_str(), 1);
        setenv("CONTENT_LENGTH", std::to_string(length).c_str(), 1);
        if (save) _exit(save_queue_for_upload(path.c_str()) == 0 ? 0 : 1);
        char buf[1024];
        while (read(STDIN_FILENO, buf, sizeof buf) > 0) {
        }
        _exit(0);
    }
    close(fds[0]);
    feed_body(fds[1], file_size);
    close(fds[1]);
    int status = 0;
    struct rusage usage {};
    if (wait4(pid, &status, 0, &usage) != pid || !WIFEXITED(status) || WEXITSTATUS(status))
        return -1;
    return usage.ru_maxrss;
}

void BM_StreamingUploadPeakMemory(benchmark::State &state) {
    size_t file_size = size_t(state.range(0)) << 20;
    char dir[] = "/tmp/webmgmt-bench-XXXXXX";
    if (!mkdtemp(dir)) {
        state.SkipWithError("no temporary directory");
        return;
    }
    std::string path = std::string(dir) + "/fw.bin";
    long peak = 0, baseline = 0;
    for (auto _ : state) {
        long saved = child_peak_kib(file_size, path, true);
        struct stat st {};
        if (saved < 0 || stat(path.c_str(), &st) != 0 || size_t(st.st_size) != file_size) {
            state.SkipWithError("upload failed");
            break;
        }
        long idle = child_peak_kib(file_size, path, false);
        peak = saved > peak ? saved : peak;
        baseline = idle > baseline ? idle : baseline;
        unlink(path.c_str());
    }
    rmdir(dir);
    state.counters["upload_MiB"] = double(state.range(0));
    state.counters["peak_rss_KiB"] = double(peak);
    state.counters["reader_only_rss_KiB"] = double(baseline);
    state.counters["writer_extra_KiB"] = double(peak - baseline);
}

BENCHMARK(BM_StreamingUploadPeakMemory)
    ->Arg(1)
    ->Arg(64)
    ->Iterations(3)
    ->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
