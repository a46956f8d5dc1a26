// The traffic counter's /proc/mac lines from arbitrary bytes, printed by both host lists.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/stat.h>

#include "fuzz_files.h"
#include "webmgmt.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static const std::string root = [] {
        std::string r = fuzzsupport::scratch_path("mac-root");
        for (const char *d : {"", "/var", "/proc"})
            mkdir((r + d).c_str(), 0755);
        setenv("WEBMGMT_ROOT", r.c_str(), 1);
        if (!std::freopen("/dev/null", "w", stdout)) std::abort();
        return r;
    }();
    fuzzsupport::write_bytes(root + "/proc/mac", data, size);
    showuser_statistic();
    showlayer2user_statistic();
    return 0;
}
