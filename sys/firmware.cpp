// The firmware image's signature check.
#include <cstring>

#include "sys/support/exec.h"
#include "webmgmt.h"

extern "C" {

int verify_upgrade_image(const char *image_path, const char *signature_path) {
    if (!image_path || !signature_path) return -1;
    // The paths go to the tool as arguments after "--": no shell sees them, and a path
    // that begins with "-" is still a path.
    const char *argv[] = {"tq_versign", "signverify", "--", image_path, signature_path, nullptr};
    char line[255];
    if (wm::run_argv_line(argv, line) == -1) return -1;
    return std::strstr(line, "Success") ? 0 : -1;
}

} // extern "C"
