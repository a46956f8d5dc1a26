// Fuzzes the multipart split: the first line of the input is the boundary text, the rest
// the body, laid out as read_queue_for_upload1 lays it out (boundary line in front, NUL
// behind). Runs process_file and getDisposition_file on it.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "webmgmt.h"

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
    // The parser's field diagnostic goes to standard output.
    if (!std::freopen("/dev/null", "w", stdout)) return 0;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const char *text = reinterpret_cast<const char *>(data);
    const void *nl = std::memchr(text, '\n', size);
    size_t mark_size = nl ? size_t(static_cast<const char *>(nl) - text) : 0;
    if (mark_size > 100) return 0;
    size_t body_size = nl ? size - mark_size - 1 : size;
    const char *body = nl ? text + mark_size + 1 : text;

    char *boundary = static_cast<char *>(std::malloc(mark_size + 3));
    std::memcpy(boundary, "--", 2);
    std::memcpy(boundary + 2, text, mark_size);
    boundary[mark_size + 2] = '\0';
    size_t blen = std::strlen(boundary); // the boundary text may hold a NUL

    size_t total = blen + 1 + body_size;
    char *buffer = static_cast<char *>(std::malloc(total + 1));
    std::memcpy(buffer, boundary, blen);
    buffer[blen] = '\n';
    std::memcpy(buffer + blen + 1, body, body_size);
    buffer[total] = '\0';

    upload_part parts[WEBMGMT_UPLOAD_PARTS];
    std::memset(parts, 0, sizeof parts);
    int count = process_file(buffer, int(total), boundary, parts);
    for (int i = 0; i < count; ++i) {
        if (parts[i].length && parts[i].data[0] == '\x7f')
            std::fputc(parts[i].data[parts[i].length - 1], stdout);
        if (!std::memchr(parts[i].name, '\0', sizeof parts[i].name)) std::abort();
    }
    free_prop_file(parts, count);

    // One part straight from the body, without the leading boundary line.
    upload_part one;
    std::memset(&one, 0, sizeof one);
    char *cursor = buffer + blen + 1;
    char *start = nullptr;
    int length = -1;
    int status = getDisposition_file(&start, &length, &cursor, buffer + total, boundary, &one);
    if (status == 0 && (length < 0 || start < buffer || start + length > buffer + total))
        std::abort();
    if (cursor < buffer || cursor > buffer + total) std::abort();

    int trimmed = int(body_size);
    char *t = strip_r(buffer + blen + 1, &trimmed, '"', '\r');
    if (trimmed < 0 || t + trimmed > buffer + total) std::abort();

    std::free(buffer);
    std::free(boundary);
    return 0;
}
