// Reading uploads: the whole body for the in-memory split, the streaming writer for one
// large file, and the daemon stopper run before a large upload.
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <span>
#include <string_view>
#include <unistd.h>

#include "cgi/multipart.h"
#include "cgi/request_body.h"
#include "sys/support/exec.h"
#include "sys/support/files.h"
#include "sys/support/paths.h"
#include "sys/support/raii.h"
#include "webmgmt.h"

namespace wm {
namespace {

constexpr size_t kChunk = 1024;
constexpr size_t kWindow = 2 * kChunk;
// The header line that precedes the file's bytes in the first chunk.
constexpr std::string_view kFileHeader = "Content-Type: application/octet-stream";
// The CR LF CR LF behind that line.
constexpr size_t kHeaderEnd = 4;

bool read_exact(char *dst, size_t length) {
    size_t got = 0;
    while (got < length) {
        ssize_t n = ::read(STDIN_FILENO, dst + got, length - got);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        got += size_t(n);
    }
    return true;
}

bool write_bytes(FILE *out, std::span<const char> bytes) {
    return bytes.empty() || std::fwrite(bytes.data(), 1, bytes.size(), out) == bytes.size();
}

// What of the first chunk belongs to the file: everything behind the octet-stream line and
// the blank line, or nothing when the line is not in this chunk.
std::span<const char> first_chunk_content(std::span<const char> chunk) {
    const char *at = find_bytes(chunk, kFileHeader);
    if (!at) return {};
    size_t skip = size_t(at - chunk.data()) + kFileHeader.size() + kHeaderEnd;
    return skip < chunk.size() ? chunk.subspan(skip) : std::span<const char>{};
}

// Copies the file of a body of `length` bytes from standard input to `out`, 1024 bytes at
// a time. The last two chunks are held in `window` so that a closing boundary split
// across the two reads is still found; with fewer than three chunks the first chunk's
// content takes the place of the second-to-last, and with one chunk the window's first
// half stays empty. Memory stays at the two buffers whatever the length.
bool stream_file(FILE *out, long length, std::string_view boundary, char *window, char *chunk) {
    long chunks = long((size_t(length) + kChunk - 1) / kChunk);
    size_t held = 0;
    for (long i = 0; i < chunks; ++i) {
        size_t size = i == chunks - 1 ? size_t(length) - size_t(i) * kChunk : kChunk;
        if (!read_exact(chunk, size)) return false;
        std::span<const char> content{chunk, size};
        if (i == 0) content = first_chunk_content(content);
        if (i < chunks - 2) {
            if (!write_bytes(out, content)) return false;
        } else if (i == chunks - 2) {
            // A first chunk without an octet-stream line has no content at all, not even
            // a pointer: memcpy must not see it.
            if (!content.empty()) std::memcpy(window, content.data(), content.size());
            held = content.size();
        } else {
            if (!content.empty()) std::memcpy(window + held, content.data(), content.size());
            size_t filled = held + content.size();
            const char *mark = find_bytes({window, filled}, boundary);
            // The file ends at the CR LF in front of the closing boundary.
            size_t keep = !mark                       ? filled
                          : size_t(mark - window) > 2 ? size_t(mark - window) - 2
                                                      : 0;
            return write_bytes(out, {window, keep});
        }
    }
    return true;
}

int fail_upload(const char *path) {
    // The device's upload removed the target on failure; the temporary file is already
    // gone, and no partial file may be left at the path either.
    wm::remove_file(path);
    return -1;
}

} // namespace
} // namespace wm

extern "C" {

char *read_queue_for_upload(int *length) {
    if (!wm::request_is_post()) return nullptr;
    long content_length = wm::request_content_length();
    if (content_length < 0) return nullptr;
    if (length) *length = int(content_length);
    return wm::read_stdin_body(size_t(content_length));
}

char *read_queue_for_upload1(int *total, char **boundary, int *boundary_length) {
    if (!total || !boundary || !boundary_length || !wm::request_is_post()) return nullptr;
    const char *content_type = std::getenv("CONTENT_TYPE");
    long content_length = wm::request_content_length();
    if (!content_type || content_length < 0) return nullptr;
    bool allocated = *boundary == nullptr;
    int mark_length = get_vhash(content_type, boundary);
    if (mark_length < 0) return nullptr;
    char *buffer = nullptr;
    if (content_length <= long(INT_MAX) - mark_length - 1)
        buffer = wm::read_stdin_body(size_t(content_length), size_t(mark_length) + 1);
    if (!buffer) {
        if (allocated) {
            std::free(*boundary);
            *boundary = nullptr;
        }
        return nullptr;
    }
    // A boundary line in front, so that the buffer always starts with one.
    std::memcpy(buffer, *boundary, size_t(mark_length));
    buffer[mark_length] = '\n';
    *boundary_length = mark_length;
    *total = mark_length + int(content_length);
    buffer[*total] = '\0';
    return buffer;
}

int save_queue_for_upload(const char *path) {
    if (!path || !wm::request_is_post()) return -1;
    const char *content_type = std::getenv("CONTENT_TYPE");
    long length = wm::request_content_length();
    if (!content_type || length < 0) return -1;
    char *mark = nullptr;
    if (get_vhash(content_type, &mark) < 0) return -1;
    wm::HeapPtr<char> boundary(mark);

    // Written next to the target and renamed onto it only when complete.
    wm::AtomicFile out(path, "wb+");
    wm::HeapPtr<char> window(static_cast<char *>(std::malloc(wm::kWindow)));
    wm::HeapPtr<char> chunk(static_cast<char *>(std::malloc(wm::kChunk)));
    if (!out || !window || !chunk) return wm::fail_upload(path);
    if (!wm::stream_file(out.get(), length, boundary.get(), window.get(), chunk.get()) ||
        !out.commit())
        return wm::fail_upload(path);
    return 0;
}

int killDaemon(void) {
    // A fixed command with no request data in it: run through the shell as the device runs
    // it, so that a script without a "#!" line still runs and the status is the shell's.
    // The path is quoted, as the test root that moves it may hold any character.
    auto script = wm::device_path(wm::fixed::kKillForUpload);
    std::string_view path = script.c_str();
    char command[sizeof script.text * 4 + 32] = "'";
    size_t at = 1;
    for (char c : path) {
        const char *piece = c == '\'' ? "'\\''" : nullptr;
        size_t n = piece ? 4 : 1;
        if (at + n + 16 >= sizeof command) return 127 << 8;
        if (piece)
            std::memcpy(command + at, piece, n);
        else
            command[at] = c;
        at += n;
    }
    std::memcpy(command + at, "' > /dev/null", sizeof "' > /dev/null");
    const char *const argv[] = {"/bin/sh", "-c", command, nullptr};
    std::fflush(stdout);
    int status = wm::run_argv(argv);
    // A shell that cannot be started reports as system() does: exit status 127.
    return status < 0 ? 127 << 8 : status;
}

} // extern "C"
