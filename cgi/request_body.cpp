#include "cgi/request_body.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <strings.h>
#include <unistd.h>

#include "sys/support/ascii.h"

namespace wm {

bool request_is_post() {
    const char *method = std::getenv("REQUEST_METHOD");
    return method && !equals_ascii_nocase(method, "GET");
}

bool request_is_get() {
    const char *method = std::getenv("REQUEST_METHOD");
    return method && equals_ascii_nocase(method, "GET");
}

long request_content_length() {
    const char *len = std::getenv("CONTENT_LENGTH");
    if (!len) return -1;
    // atoi() as the device's 32-bit C library computes it: out-of-range lengths saturate.
    const char *end = nullptr;
    int64_t v = scan_decimal(len, &end);
    return long(v > INT32_MAX ? INT32_MAX : v < INT32_MIN ? INT32_MIN : v);
}

char *read_stdin_body(size_t length, size_t extra_front) {
    if (length > size_t(INT_MAX) || extra_front > size_t(INT_MAX)) return nullptr;
    auto *buffer = static_cast<char *>(std::malloc(length + 1 + extra_front));
    if (!buffer) return nullptr;
    char *body = buffer + extra_front;
    size_t got = 0;
    while (got < length) {
        ssize_t n = ::read(STDIN_FILENO, body + got, length - got);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) {
            std::free(buffer);
            return nullptr;
        }
        got += size_t(n);
    }
    body[length] = '\0';
    return buffer;
}

} // namespace wm
