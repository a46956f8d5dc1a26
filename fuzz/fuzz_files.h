// A private scratch directory for fuzz targets whose functions read and write files.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>
#include <unistd.h>

namespace fuzzsupport {

// The path of `name` in a directory made once per run and removed at exit.
inline std::string scratch_path(const char *name) {
    static std::string dir = [] {
        // tmpfs when there is one: the rewrites sync every file they replace.
        char shm[] = "/dev/shm/webmgmt-fuzz-XXXXXX", tmp[] = "/tmp/webmgmt-fuzz-XXXXXX";
        std::string made = mkdtemp(shm) ? shm : mkdtemp(tmp) ? tmp : ".";
        static std::string to_remove = made;
        std::atexit([] { (void)!std::system(("rm -rf '" + to_remove + "'").c_str()); });
        return made;
    }();
    return dir + "/" + name;
}

inline void write_bytes(const std::string &path, const uint8_t *data, size_t size) {
    FILE *f = std::fopen(path.c_str(), "wb");
    if (!f) std::abort();
    std::fwrite(data, 1, size, f);
    std::fclose(f);
}

} // namespace fuzzsupport
