// The form decoder on fuzzed requests: the input up to its first NUL is the POST body, the
// rest the query string. The body goes through standard input (a pipe), as in a CGI
// program; the first byte also picks how CONTENT_LENGTH and the method are set.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <unistd.h>

#include "cgi/url_decode.h"
#include "webmgmt.h"

namespace {

constexpr size_t kPipeRoom = 60000; // stays below the pipe's buffer, so writing never blocks

void feed_stdin(const std::string &body) {
    int fds[2];
    if (pipe(fds) != 0) abort();
    if (!body.empty() && write(fds[1], body.data(), body.size()) != ssize_t(body.size())) abort();
    close(fds[1]);
    dup2(fds[0], STDIN_FILENO);
    close(fds[0]);
}

void set_request(uint8_t mode, const std::string &body, const std::string &query) {
    setenv("REQUEST_METHOD", mode % 5 == 4 ? "get" : "POST", 1);
    std::string length = std::to_string(body.size());
    if (mode % 5 == 1)
        length = std::to_string(body.size() + 5); // longer than the body: a short read
    else if (mode % 5 == 2)
        length = "0";
    else if (mode % 5 == 3)
        length = "-7";
    setenv("CONTENT_LENGTH", length.c_str(), 1);
    setenv("QUERY_STRING", query.c_str(), 1);
    setenv("HTTP_REFERER", "http://fuzz/", 1);
}

void decode_request(uint8_t mode, const std::string &body, const std::string &query) {
    set_request(mode, body, query);
    feed_stdin(body);
    form_pair pairs[40] = {};
    int n = process_queue_n(pairs, int(sizeof pairs / sizeof pairs[0]) - (mode % 7));
    for (int i = 0; i < n; ++i) {
        free(pairs[i].name);
        free(pairs[i].value);
    }
}

void lookup_query(const std::string &query) {
    setenv("QUERY_STRING", query.c_str(), 1);
    char out[1024];
    get_content_from_querystring("page", out);
    unsetenv("QUERY_STRING");
}

// The in-place helpers on an exact-size copy, so that any read past the end is caught.
void in_place_helpers(const std::string &text) {
    char *copy = strdup(text.c_str());
    char *word = static_cast<char *>(malloc(text.size() + 1));
    char *rest = nullptr;
    makeword(word, copy, '&', &rest);
    unescape_url(plustospace(copy));
    free(word);
    free(copy);
}

// The decoder as the device's loop states it, one byte at a time: the name to the first
// '=', the value to the next '&', '+' to blank, then %XX when two characters follow, each
// cut at the decoder's buffers. The block decoder must give the same pairs.
std::string reference_component(const std::string &raw, size_t limit) {
    std::string out;
    for (size_t i = 0; i < raw.size() && out.size() < limit; ++i) {
        auto blank = [](char c) { return c == '+' ? ' ' : c; };
        if (raw[i] == '%' && i + 2 < raw.size()) {
            out += x2c((std::string{blank(raw[i + 1]), blank(raw[i + 2])}).c_str());
            i += 2;
        } else {
            out += blank(raw[i]);
        }
    }
    return out;
}

void check_against_reference(const std::string &body, const form_pair *pairs, int n) {
    std::string rest = body;
    for (int i = 0; i < n; ++i) {
        size_t eq = rest.find('=');
        std::string name = rest.substr(0, eq), value;
        bool more = false;
        if (eq != std::string::npos) {
            size_t amp = rest.find('&', eq + 1);
            value =
                rest.substr(eq + 1, amp == std::string::npos ? std::string::npos : amp - eq - 1);
            more = amp != std::string::npos;
            rest = more ? rest.substr(amp + 1) : "";
        }
        // Compared as C strings: a decoded NUL ends the text the caller sees.
        if (std::strcmp(reference_component(name, wm::kFormNameBuffer - 1).c_str(),
                        pairs[i].name) != 0 ||
            std::strcmp(reference_component(value, wm::kFormValueBuffer - 1).c_str(),
                        pairs[i].value) != 0)
            abort();
        if (!more && i + 1 < n) abort(); // no pair after the last
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (size == 0) return 0;
    uint8_t mode = data[0];
    std::string input(reinterpret_cast<const char *>(data + 1), size - 1);
    size_t nul = input.find('\0');
    std::string body = input.substr(0, nul);
    std::string query = nul == std::string::npos ? "" : input.substr(nul + 1);
    query = query.substr(0, query.find('\0'));
    if (body.size() < kPipeRoom) decode_request(mode, body, query);
    // The splitting loop straight on a buffer, with a tight capacity.
    form_pair few[3] = {};
    int n = wm::decode_pairs(body.c_str(), wm::PairText::body, few, 0, 3);
    check_against_reference(body, few, n);
    for (int i = 0; i < n; ++i) {
        free(few[i].name);
        free(few[i].value);
    }
    lookup_query(query);
    in_place_helpers(body);
    return 0;
}
