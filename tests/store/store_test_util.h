// Helpers of the store tests: section files of a private tree, and children that report
// through their exit status.
#pragma once

#include <string>
#include <sys/stat.h>

#include "support/harness.h"
#include "store/config_data_api.h"

namespace storetest {

inline std::string memory_copy(const wmtest::TempRoot &root, const std::string &section) {
    return root.path("/var/config/" + section + ".bin");
}
inline std::string flash_copy(const wmtest::TempRoot &root, const std::string &section) {
    return root.path("/etc/config_flash/" + section + ".bin");
}

inline long file_size(const std::string &path) {
    struct stat st;
    return stat(path.c_str(), &st) == 0 ? long(st.st_size) : -1;
}

// A defaults directory of the test's own, with the given files.
inline std::string defaults_dir(const wmtest::TempRoot &root) {
    std::string dir = root.path("/defaults");
    mkdir(dir.c_str(), 0755);
    setenv("WEBMGMT_DEFAULTS_DIR", dir.c_str(), 1);
    return dir;
}

// Runs `check` in a fresh process (which loads every section anew) and returns its exit
// status: 0 when every check held, else the number of the first that failed.
template <typename F> int in_new_process(F check) {
    return wmtest::run_in_child([&] { return check(); }).exit_code();
}

} // namespace storetest
