// Fuzzes the session and login files and the request's token: fields (split at 0xFF) are
// the session file, the login counter, the query string, the cookie header, the client
// address and the connection-tracking counter. Loads, inserts into and saves the table,
// counts an attempt, takes the token as get_token and check_token do, reads the counters.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/stat.h>

#include "fuzz_fields.h"
#include "fuzz_files.h"
#include "webmgmt.h"

namespace {

std::string root;

void require_terminated(const char *field, size_t size) {
    if (!std::memchr(field, '\0', size)) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
    root = fuzzsupport::scratch_path("root");
    for (const char *dir :
         {"", "/var", "/tmp", "/proc", "/proc/sys", "/proc/sys/net", "/proc/sys/net/netfilter"})
        mkdir((root + dir).c_str(), 0700);
    fuzzsupport::write_bytes(root + "/var/loginlock", nullptr, 0);
    setenv("WEBMGMT_ROOT", root.c_str(), 1);
    // "cannot open ..." and the like go to standard output.
    if (!std::freopen("/dev/null", "w", stdout)) return 0;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    auto f = fuzzsupport::split_fields(data, size, 6);
    std::string tokens = root + "/var/usertoken", counter = root + "/var/loginfail";
    auto put = [](const std::string &path, const std::string &text) {
        fuzzsupport::write_bytes(path, reinterpret_cast<const uint8_t *>(text.data()), text.size());
    };

    // The session table: load, look up, insert, save and load again.
    put(tokens, f[0]);
    token_list list{};
    initial_tokenlist(tokens.c_str(), &list);
    if (list.count < 0 || list.count > WEBMGMT_TOKEN_SLOTS + 1) std::abort();
    for (const token_record &slot : list.slot) {
        require_terminated(slot.client_ip, sizeof slot.client_ip);
        require_terminated(slot.token, sizeof slot.token);
    }
    std::string address = fuzzsupport::c_text(f[4]);
    int index = find_tokenbyclientip(address.c_str(), &list);
    if (index < -1 || index >= WEBMGMT_TOKEN_SLOTS) std::abort();
    insert_token(address.c_str(), "0123456789abcdef", &list);
    save_token(tokens.c_str(), &list);
    token_list again{};
    initial_tokenlist(tokens.c_str(), &again);

    // The login counter: one more attempt is one more in the file (up to the limit).
    put(counter, f[1]);
    int32_t time = 0, count = 0;
    read_count(counter.c_str(), &time, &count);
    login_add(counter.c_str());
    int32_t time2 = 0, count2 = 0;
    read_count(counter.c_str(), &time2, &count2);
    if (count2 != (count == INT32_MAX ? INT32_MAX : count + 1)) std::abort();

    // The token of the request, then the whole check against the table written above.
    std::string query = fuzzsupport::c_text(f[2]), cookie = fuzzsupport::c_text(f[3]);
    setenv("QUERY_STRING", query.c_str(), 1);
    setenv("HTTP_COOKIE", cookie.c_str(), 1);
    setenv("REMOTE_ADDR", address.c_str(), 1);
    char token[32] = {};
    if (get_token("stork=", token) == 0 && std::strlen(token) > 16) std::abort();
    check_token();
    unsetenv("QUERY_STRING");
    unsetenv("HTTP_COOKIE");

    // The kernel's connection counters, as files of any content.
    put(root + "/proc/sys/net/netfilter/nf_conntrack_count", f[5]);
    put(root + "/proc/sys/net/netfilter/nf_conntrack_max", f[5]);
    get_current_link_count();
    get_current_link_count_max();
    return 0;
}
