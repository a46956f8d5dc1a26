// Request decoding: the POST body and the query string into name/value pairs.
#include <cstdlib>
#include <cstring>
#include <strings.h>

#include "cgi/request_body.h"
#include "cgi/url_decode.h"
#include "sys/support/text.h"
#include "webmgmt.h"

extern "C" {

int process_queue_n(form_pair *pairs, int capacity) {
    char *body = read_queue();
    // A GET request stores nothing, not even the query string's pairs; the page reads
    // those with get_content_from_querystring().
    if (!body && wm::request_is_get()) return 0;
    int count = 0;
    if (body) count = wm::decode_pairs(body, wm::PairText::body, pairs, count, capacity);
    count =
        wm::decode_pairs(std::getenv("QUERY_STRING"), wm::PairText::query, pairs, count, capacity);
    // Later code and child processes must not see the request's query or referer (a
    // variable that is not set costs no search of the environment).
    if (std::getenv("QUERY_STRING")) unsetenv("QUERY_STRING");
    if (std::getenv("HTTP_REFERER")) unsetenv("HTTP_REFERER");
    std::free(body);
    return count;
}

int process_queue(form_pair *pairs) {
    return process_queue_n(pairs, WEBMGMT_FORM_PAIRS);
}

char *read_queue(void) {
    if (!wm::request_is_post()) return nullptr;
    long length = wm::request_content_length();
    if (length <= 0) return nullptr;
    return wm::read_stdin_body(size_t(length));
}

int get_content_from_querystring(const char *name, char *out) {
    const char *query = std::getenv("QUERY_STRING");
    if (!query || !name || !out) return -1;
    char name_buf[wm::kQueryLookupBuffer];
    char value_buf[wm::kQueryLookupBuffer];
    int result = -1;
    wm::for_each_pair(query, wm::PairText::query, name_buf, value_buf, [&](size_t, size_t) {
        if (strcasecmp(name_buf, name) != 0) return true;
        std::strcpy(out, value_buf);
        result = 0;
        return false;
    });
    return result;
}

int free_buff(void *buffer, int) {
    std::free(buffer);
    return 0;
}

} // extern "C"
