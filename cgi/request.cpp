// Request decoding: the POST body and the query string into name/value pairs.
#include <cstdlib>

#include "cgi/request_body.h"
#include "webmgmt.h"

extern "C" {

char *read_queue(void) {
    if (!wm::request_is_post())
        return nullptr;
    long length = wm::request_content_length();
    if (length <= 0)
        return nullptr;
    return wm::read_stdin_body(size_t(length));
}

int free_buff(void *buffer, int) {
    std::free(buffer);
    return 0;
}

} // extern "C"
