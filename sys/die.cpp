// Fatal errors and allocation helpers: the error globals the programs set, the message
// printer, and allocators that end the process instead of returning null.
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "webmgmt.h"

extern "C" {

const char *bb_applet_name = nullptr;
int bb_default_error_retval = 1;
const char *const bb_msg_memory_exhausted = "memory exhausted";

void bb_verror_msg(const char *format, va_list args) {
    // Page output first, so that the message follows whatever the page already printed.
    std::fflush(stdout);
    // A program that never set its name gets what printf prints for a null text.
    std::fprintf(stderr, "%s: ", bb_applet_name ? bb_applet_name : "(null)");
    std::vfprintf(stderr, format, args);
}

void bb_error_msg_and_die(const char *format, ...) {
    va_list ap;
    va_start(ap, format);
    bb_verror_msg(format, ap);
    va_end(ap);
    std::fputc('\n', stderr);
    std::fflush(stderr);
    std::exit(bb_default_error_retval);
}

void *xmalloc(size_t size) {
    void *p = std::malloc(size);
    if (!p && size) bb_error_msg_and_die("%s", bb_msg_memory_exhausted);
    return p;
}

void *xrealloc(void *block, size_t size) {
    void *p = std::realloc(block, size);
    if (!p && size) bb_error_msg_and_die("%s", bb_msg_memory_exhausted);
    return p;
}

char *safe_strncpy(char *dst, const char *src, size_t size) {
    if (!size) return dst;
    dst[--size] = '\0';
    return std::strncpy(dst, src, size);
}

} // extern "C"
