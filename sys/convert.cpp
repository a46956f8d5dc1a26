// Small text and number conversions: escaping for XML and JSON, the command-line filter,
// case conversion, bit counting and time helpers.
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <sys/time.h>

#include "sys/support/exec.h"
#include "sys/support/raii.h"
#include "sys/support/text.h"
#include "webmgmt.h"

namespace wm {
namespace {

// "YYYY-MM-DD HH:MM:SS" and its terminator: all get_current_time() clears and writes.
constexpr size_t kTimeSize = 20;

bool is_lower(char c) {
    return c >= 'a' && c <= 'z';
}
bool is_upper(char c) {
    return c >= 'A' && c <= 'Z';
}
bool is_alnum(char c) {
    return is_lower(c) || is_upper(c) || (c >= '0' && c <= '9');
}

// Appends `text` at `out` without a terminator; returns the new end.
char *put(char *out, const char *text) {
    size_t n = std::strlen(text);
    std::memcpy(out, text, n);
    return out + n;
}

// The escape for one character, or null when it is copied as it is.
const char *xml_escape(char c) {
    switch (c) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '"':
        return "&quot;";
    case '\'':
        return "&apos;";
    default:
        return nullptr;
    }
}

// Character at `pos`, reading a text shorter than `pos` as ending in NULs rather than
// past its end.
char char_at(const char *text, size_t pos) {
    return pos <= std::strlen(text) ? text[pos] : '\0';
}

} // namespace
} // namespace wm

extern "C" {

void filter_xml_name(const char *text, char *dst) {
    char *out = dst + std::strlen(dst);
    for (const char *p = text; *p; ++p) {
        if (const char *esc = wm::xml_escape(*p))
            out = wm::put(out, esc);
        else
            *out++ = *p;
    }
    *out = '\0';
}

void filter_json_name(const char *text, char *dst) {
    char *out = dst + std::strlen(dst);
    for (const char *p = text; *p; ++p) {
        if (*p == '"' || *p == '\\') *out++ = '\\';
        *out++ = *p;
    }
    *out = '\0';
}

int web_commd_str_filter(char *buffer, int length) {
    for (int i = 0; i < length; ++i) {
        char c = buffer[i];
        if (!(wm::is_alnum(c) || c == ':' || c == '-' || c == '.' || c == ' ' || c == '\0'))
            buffer[i] = '0';
    }
    return 0;
}

void str_replace_char(const char *src, char *dst, const char *chars,
                      const char *const *replacements, int count) {
    char *out = dst + std::strlen(dst);
    for (const char *p = src; *p; ++p) {
        bool replaced = false;
        for (int i = 0; i < count; ++i) {
            if (*p == chars[i]) {
                if (replacements[i]) out = wm::put(out, replacements[i]);
                replaced = true;
            }
        }
        if (!replaced) *out++ = *p;
    }
}

char *strAToa(char *text) {
    for (char *p = text; *p; ++p)
        if (wm::is_upper(*p)) *p = char(*p - 'A' + 'a');
    return text;
}

char *straToA(char *text) {
    for (char *p = text; *p; ++p)
        if (wm::is_lower(*p)) *p = char(*p - 'a' + 'A');
    return text;
}

int low2UpperChar(const char *src, int count, char *dst) {
    for (int i = 0; i < count; ++i)
        dst[i] = wm::is_lower(src[i]) ? char(src[i] - 'a' + 'A') : src[i];
    return 0;
}

int ntod(uint32_t mask) {
    return __builtin_popcount(mask);
}

int mypow2(int n) {
    if (n == 0) return 1;
    if (n < 0 || n >= 32) return 0;
    return int(uint32_t(1) << n);
}

int change_time_to_int(const char *hhmm) {
    auto digit = [hhmm](size_t pos) { return wm::char_at(hhmm, pos) - '0'; };
    return digit(0) * 1000 + digit(1) * 100 + digit(3) * 10 + digit(4);
}

int check_time_one_day(const char *start, const char *end) {
    return change_time_to_int(start) > change_time_to_int(end) ? 1 : 0;
}

int get_current_time(char *dst) {
    std::memset(dst, 0, wm::kTimeSize);
    const char *argv[] = {"date", "+%Y-%m-%d %H:%M:%S", nullptr};
    char line[64];
    if (wm::run_argv_line(argv, line) != -1) wm::copy_bounded({dst, wm::kTimeSize}, line);
    return 0;
}

uint32_t get_now_msec(void) {
    struct timeval tv;
    ::gettimeofday(&tv, nullptr);
    uint64_t ms = uint64_t(tv.tv_sec) * 1000u + uint64_t(tv.tv_usec) / 1000u;
    return uint32_t(ms);
}

int fwritestr(const char *path, const char *text) {
    wm::UniqueFile f(std::fopen(path, "a+"));
    if (!f) return 0;
    std::fprintf(f.get(), "%s\n", text);
    return 1;
}

} // extern "C"
