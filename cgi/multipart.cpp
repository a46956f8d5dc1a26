// The multipart parser: boundary string, header values and the split into file parts.
// Nothing here reads the request; see upload.cpp for that.
#include "cgi/multipart.h"

#include <climits>
#include <cstdlib>
#include <cstring>

#include "sys/support/text.h"
#include "webmgmt.h"

namespace wm {
namespace {

constexpr std::string_view kBoundaryKey = "boundary=";
// The bytes of the first boundary line shown when a part has no Content-Type.
constexpr int kFieldDiagnosticBytes = 32;
// process_file stops when no more than this many bytes remain: too few for another part.
constexpr long kMinPartBytes = 17;

} // namespace

const char *find_bytes(std::span<const char> bytes, std::string_view pattern) {
    if (pattern.empty() || bytes.size() < pattern.size()) return nullptr;
    return static_cast<const char *>(
        ::memmem(bytes.data(), bytes.size(), pattern.data(), pattern.size()));
}

bool extract_header(char **pos, const char *limit, std::string_view key, char sep,
                    std::span<char> dst) {
    if (!pos || !*pos || *pos >= limit || dst.empty()) return false;
    const char *found = find_bytes({*pos, size_t(limit - *pos)}, key);
    if (!found) return false;
    char *p = *pos + (found - *pos) + key.size();
    if (p >= limit || *p != sep) return false;
    ++p;
    // The whole rest of the line is the value (a name keeps its "; filename=..." tail):
    // callers compare against it as it stands.
    size_t used = 0;
    for (; p < limit && *p != '\r' && *p != '\n'; ++p) {
        if (*p != '"' && used + 1 < dst.size()) dst[used++] = *p;
    }
    dst[used] = '\0';
    *pos = p;
    return true;
}

} // namespace wm

extern "C" {

char *hex_search(const char *from, const char *to, const char *pattern, int length) {
    if (!from || !to || !pattern || length <= 0 || to <= from) return nullptr;
    return const_cast<char *>(wm::find_bytes({from, size_t(to - from)}, {pattern, size_t(length)}));
}

int get_vhash(const char *content_type, char **boundary) {
    if (!content_type || !boundary) return -1;
    const char *at = std::strstr(content_type, wm::kBoundaryKey.data());
    if (!at) return -1;
    const char *value = at + wm::kBoundaryKey.size();
    size_t size = std::strlen(content_type) + 3;
    // An empty boundary would match everywhere and split nothing sensibly.
    if (!*value || size > size_t(INT_MAX)) return -1;
    char *dst = *boundary;
    if (!dst) {
        dst = static_cast<char *>(std::calloc(size, 1));
        if (!dst) return -1;
        *boundary = dst;
    }
    std::memcpy(dst, "--", 2);
    size_t value_length = std::strlen(value);
    std::memcpy(dst + 2, value, value_length + 1);
    return int(value_length + 2);
}

char *strip_r(char *text, int *length, char c1, char c2) {
    if (!text || !length || *length <= 0) return text;
    auto trimmed = [&](char c) { return c == c1 || c == c2; };
    int begin = 0, end = *length;
    while (begin < end && trimmed(text[begin]))
        ++begin;
    while (end > begin && trimmed(text[end - 1]))
        --end;
    *length = end - begin;
    return text + begin;
}

int getDisposition_file(char **data_start, int *data_length, char **cursor, char *end,
                        const char *boundary, upload_part *part) {
    if (!cursor || !*cursor || !end || *cursor > end || !boundary || !part) return -1;
    std::string_view mark{boundary};
    const char *first = wm::find_bytes({*cursor, size_t(end - *cursor)}, mark);
    if (!first) {
        *cursor = end;
        return -1;
    }
    char *after_first = *cursor + (first - *cursor) + mark.size();
    const char *found_next = wm::find_bytes({after_first, size_t(end - after_first)}, mark);
    if (!found_next) {
        *cursor = end;
        return -2;
    }
    char *next = after_first + (found_next - after_first);
    char *pos = after_first;
    if (!wm::extract_header(&pos, next, "name", '=', part->name)) {
        *cursor = next;
        return -3;
    }
    if (!wm::extract_header(&pos, next, "Content-Type", ':', part->content_type)) {
        // A plain form field: show where it starts and skip it. The 32 bytes may run on
        // into the next boundary, as on the device; only the buffer's end bounds them.
        long shown = end - after_first;
        print_string_array(
            nullptr, after_first,
            int(shown < wm::kFieldDiagnosticBytes ? shown : wm::kFieldDiagnosticBytes));
        *cursor = next;
        return -4;
    }
    if (!wm::extract_header(&pos, next, "Content-Transfer-Encoding", ':', part->transfer_encoding))
        part->transfer_encoding[0] = '\0';

    // Content: past the CR LF CR LF ending the headers, up to the CR LF before the next
    // boundary. A header block that runs into the boundary leaves an empty content, and
    // the cursor always moves forward, even for a boundary shorter than its CR LF.
    char *stop = next - first > 2 ? next - 2 : next;
    char *start = stop - pos > 4 ? pos + 4 : stop;
    if (data_start) *data_start = start;
    if (data_length) *data_length = int(stop - start);
    *cursor = stop;
    return 0;
}

int process_file(char *buffer, int length, const char *boundary, upload_part *parts) {
    if (!buffer || length <= 0 || !boundary || !parts) return 0;
    char *cursor = buffer;
    char *end = buffer + length;
    int count = 0;
    while (count < WEBMGMT_UPLOAD_PARTS && end - cursor > wm::kMinPartBytes) {
        upload_part &part = parts[count];
        char *start = nullptr;
        int size = 0;
        if (getDisposition_file(&start, &size, &cursor, end, boundary, &part) != 0 ||
            part.name[0] == '\0')
            continue;
        auto *copy = static_cast<char *>(std::malloc(size ? size_t(size) : 1));
        if (!copy) continue;
        if (size) std::memcpy(copy, start, size_t(size));
        part.data = copy;
        part.length = uint32_t(size);
        ++count;
    }
    return count;
}

int free_prop_file(upload_part *parts, int count) {
    for (int i = 0; parts && i < count; ++i) {
        std::free(parts[i].data);
        parts[i].data = nullptr;
    }
    return 1;
}

} // extern "C"
