// Decoding a 4 KiB form body of 100 pairs, as a settings page posts it.
#include <cstdio>
#include <cstdlib>
#include <string>
#include <unistd.h>

#include <benchmark/benchmark.h>

#include "webmgmt.h"

namespace {

std::string form_body() {
    std::string body;
    for (int i = 0; body.size() < 4096 - 48 || i < 100; ++i) {
        if (i == 100) break;
        char pair[64];
        std::snprintf(pair, sizeof pair, "%sfield_%02d=value+%d%%2B%%3D%%41bcdefghijklmn",
                      i ? "&" : "", i, i);
        body += pair;
    }
    while (body.size() < 4096)
        body += 'x';
    return body;
}

void put_on_stdin(const std::string &body) {
    int fds[2];
    if (pipe(fds) != 0 || write(fds[1], body.data(), body.size()) != ssize_t(body.size()))
        std::abort();
    close(fds[1]);
    dup2(fds[0], STDIN_FILENO);
    close(fds[0]);
}

void BM_ProcessQueue4KiB(benchmark::State &state) {
    const std::string body = form_body();
    setenv("REQUEST_METHOD", "POST", 1);
    setenv("CONTENT_LENGTH", std::to_string(body.size()).c_str(), 1);
    form_pair pairs[WEBMGMT_FORM_PAIRS];
    int n = 0;
    for (auto _ : state) {
        state.PauseTiming();
        put_on_stdin(body);
        state.ResumeTiming();
        n = process_queue(pairs);
        state.PauseTiming();
        for (int i = 0; i < n; ++i) {
            std::free(pairs[i].name);
            std::free(pairs[i].value);
        }
        state.ResumeTiming();
    }
    if (n != 100) state.SkipWithError("expected 100 pairs");
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(body.size()));
}
BENCHMARK(BM_ProcessQueue4KiB);

} // namespace

BENCHMARK_MAIN();
