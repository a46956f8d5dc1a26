// Fuzzes the console's readers of the request: the cookie header, the query string and the
// headers that tell where a login was posted from. Fields (split at 0xFF): HTTP_COOKIE,
// QUERY_STRING, HTTP_ORIGIN, HTTP_REFERER, HTTP_HOST, HTTP_SEC_FETCH_SITE; the name looked
// for is "stork" and, from the first byte of the cookie, a short name.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

extern "C" {
#include "cgi_common.h"
}
#include "fuzz_fields.h"

namespace {

void set_or_unset(const char *name, const std::string &value, bool present) {
    if (present)
        setenv(name, value.c_str(), 1);
    else
        unsetenv(name);
}

// The buffer is never written beyond `size`, and a found value is terminated inside it.
void read_with(int (*reader)(const char *, char *, size_t), const char *name, size_t size) {
    char out[80];
    std::memset(out, 'Z', sizeof out);
    int rc = reader(name, out, size);
    for (size_t i = size; i < sizeof out; ++i)
        if (out[i] != 'Z') std::abort();
    if (rc == 0 && !std::memchr(out, '\0', size)) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
    if (!std::freopen("/dev/null", "w", stdout)) return 0;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    auto f = fuzzsupport::split_fields(data, size, 6);
    const char *vars[] = {"HTTP_COOKIE",  "QUERY_STRING", "HTTP_ORIGIN",
                          "HTTP_REFERER", "HTTP_HOST",    "HTTP_SEC_FETCH_SITE"};
    for (int i = 0; i < 6; ++i)
        set_or_unset(vars[i], fuzzsupport::c_text(f[i]), !f[i].empty() || i < 2);
    char name[2] = {f[0].empty() ? 'a' : f[0][0], '\0'};
    if (!name[0]) name[0] = 'a';
    for (size_t buffer : {size_t(1), size_t(17), size_t(64)}) {
        read_with(cgi_cookie, "stork", buffer);
        read_with(cgi_cookie, name, buffer);
        read_with(cgi_query_value, "stork", buffer);
        read_with(cgi_query_value, name, buffer);
    }
    cgi_require_same_origin();
    return 0;
}
