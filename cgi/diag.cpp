// Diagnostic output: the log file, byte dumps, the MAC-style formatter, the page selector
// and the zeroing allocator.
#include <cctype>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "sys/support/paths.h"
#include "sys/support/raii.h"
#include "sys/support/text.h"

namespace wm {
namespace {

constexpr int kLogBufferSize = 1024;

// The abbreviated dump shared by the hex and text printers: everything when short, else
// the first and last `edge` items with the length behind. Items are emitted with their
// length, so that a zero byte printed as a character is written too.
template <typename Emit>
void dump_abbreviated(const unsigned char *bytes, int length, int edge, Emit emit) {
    if (length <= 0) {
        emit(std::string_view{"<empty string>"});
        return;
    }
    bool as_hex = edge == 10;
    auto one = [&](int i) {
        char item[3];
        if (as_hex) {
            std::snprintf(item, sizeof item, "%02x", bytes[i]);
            emit(std::string_view{item, 2});
        } else {
            item[0] = char(bytes[i]);
            emit(std::string_view{item, 1});
        }
    };
    if (length > 39) {
        for (int i = 0; i < edge; ++i)
            one(i);
        emit(std::string_view{" ... "});
        for (int i = length - edge; i < length; ++i)
            one(i);
        char tail[32];
        std::snprintf(tail, sizeof tail, " [%d bytes]", length);
        emit(std::string_view{tail});
        return;
    }
    for (int i = 0; i < length; ++i)
        one(i);
}

void emit_stdout(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
}
void emit_log(std::string_view text) {
    DFPrintf(stderr, "%.*s", int(text.size()), text.data());
}

} // namespace
} // namespace wm

extern "C" {

void DFPrintf(FILE *, const char *format, ...) {
    // Static as on the device: one message at a time, single-threaded CGI processes.
    static char buffer[wm::kLogBufferSize + 1];
    std::memset(buffer, 0, sizeof buffer);
    va_list ap;
    va_start(ap, format);
    int n = std::vsnprintf(buffer, wm::kLogBufferSize, format, ap);
    va_end(ap);
    if (n < 0) return;
    if (n > wm::kLogBufferSize - 1) n = wm::kLogBufferSize - 1;
    buffer[n] = '\n';
    auto path = wm::device_path(wm::fixed::kSystemLog);
    wm::UniqueFile log(std::fopen(path.c_str(), "a"));
    if (!log) return;
    std::fwrite(buffer, 1, size_t(n), log.get());
}

void print_hex_string(const void *bytes, int length) {
    wm::dump_abbreviated(static_cast<const unsigned char *>(bytes), length, 10, wm::emit_stdout);
}

void DPrint_hex_string(const void *bytes, int length) {
    wm::dump_abbreviated(static_cast<const unsigned char *>(bytes), length, 10, wm::emit_log);
}

void print_to_string(const void *bytes, int length) {
    wm::dump_abbreviated(static_cast<const unsigned char *>(bytes), length, 20, wm::emit_stdout);
}

void print_string(const void *bytes, int length) {
    auto *p = static_cast<const unsigned char *>(bytes);
    std::putchar('\n');
    for (int i = 0; i < length; ++i) {
        std::printf("%02x ", p[i]);
        if ((i + 1) % 16 == 0) std::putchar('\n');
    }
    std::putchar('\n');
}

int print_byte_to_string(char *text, const void *bytes, int length) {
    if (length < 1) return 0;
    auto *p = static_cast<const unsigned char *>(bytes);
    char *end = text + std::strlen(text);
    for (int i = 0; i < length; ++i) {
        std::sprintf(end, "%02X", p[i]);
        end += 2;
        if (i + 1 < length) *end++ = (i + 1) % 6 == 0 ? ' ' : ':';
    }
    *end = '\0';
    return 0;
}

char *gethtmlpage(char *out) {
    const char *method = std::getenv("REQUEST_METHOD");
    const char *query = std::getenv("QUERY_STRING");
    if (!method || strcasecmp(method, "GET") != 0 || !query) return nullptr;
    const char *page = std::strstr(query, "page=");
    if (!page) return nullptr;
    std::strcpy(out, page + 5);
    return out;
}

void *get_buffer(int size) {
    return size < 0 ? nullptr : std::calloc(1, size_t(size));
}

int free_buffer(void *buffer, int) {
    std::free(buffer);
    return 0;
}

} // extern "C"
