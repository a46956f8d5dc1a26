// URL decoding: splitting request text into pairs and undoing '+' and %XX.
#include "cgi/url_decode.h"

#include <cstring>

namespace wm {
namespace {

// One hexadecimal digit as the device reads it: no validation. Bytes are taken as
// unsigned (as on the ARM target), so the result is the same on every host; other
// characters give meaningless nibbles, and the arithmetic wraps modulo 256.
constexpr unsigned nibble(unsigned char c) {
    return c > '@' ? unsigned(c & ~0x20) - 55u : unsigned(c) - unsigned('0');
}

constexpr char hex_byte(unsigned char high, unsigned char low) {
    return char(static_cast<unsigned char>((nibble(high) << 4) + nibble(low)));
}

// The '+' to blank step, applied before percent decoding; it also reaches the two
// characters behind a '%'.
constexpr unsigned char plus_as_blank(char c) {
    return c == '+' ? ' ' : static_cast<unsigned char>(c);
}

} // namespace

RawPair split_pair(const char *pos) {
    const char *eq = std::strchr(pos, '=');
    if (!eq) return {std::string_view{pos}, {}, nullptr};
    const char *value = eq + 1;
    const char *amp = std::strchr(value, '&');
    if (!amp) return {{pos, size_t(eq - pos)}, std::string_view{value}, nullptr};
    return {{pos, size_t(eq - pos)}, {value, size_t(amp - value)}, amp + 1};
}

size_t decode_component(std::string_view raw, std::span<char> out) {
    if (out.empty()) return 0;
    char *__restrict dst = out.data();
    const char *__restrict src = raw.data();
    const size_t limit = out.size() - 1;
    const size_t n = raw.size();
    size_t w = 0;
    size_t i = 0;
    while (i < n && w < limit) {
        // The run up to the next '%' is copied in one pass that also turns '+' into blanks
        // (a loop the compiler turns into whole-vector moves), then the %XX is decoded.
        size_t room = n - i < limit - w ? n - i : limit - w;
        const auto *pct = static_cast<const char *>(std::memchr(src + i, '%', room));
        size_t run = pct ? size_t(pct - (src + i)) : room;
        for (size_t k = 0; k < run; ++k) {
            char c = src[i + k];
            dst[w + k] = c == '+' ? ' ' : c;
        }
        w += run;
        i += run;
        if (!pct || w >= limit) break;
        if (i + 2 < n) {
            dst[w++] = hex_byte(plus_as_blank(src[i + 1]), plus_as_blank(src[i + 2]));
            i += 3;
        } else {
            dst[w++] = '%';
            ++i;
        }
    }
    dst[w] = '\0';
    return w;
}

} // namespace wm

extern "C" {

char *makeword(char *word, const char *line, char stop, char **rest) {
    size_t n = 0;
    const char *end = nullptr;
    if (line) {
        while (line[n] && line[n] != stop)
            ++n;
        std::memcpy(word, line, n);
        if (line[n] == stop && stop != '\0') end = line + n + 1;
    }
    word[n] = '\0';
    if (rest) *rest = const_cast<char *>(end);
    return word;
}

char *plustospace(char *s) {
    for (char *p = s; p && *p; ++p)
        if (*p == '+') *p = ' ';
    return s;
}

char *unescape_url(char *s) {
    if (!s) return s;
    size_t w = 0;
    for (size_t r = 0; s[r]; ++r, ++w) {
        // A '%' near the end keeps its characters: the pair behind it would run past the
        // terminator.
        if (s[r] == '%' && s[r + 1] && s[r + 2]) {
            s[w] = x2c(s + r + 1);
            r += 2;
        } else {
            s[w] = s[r];
        }
    }
    s[w] = '\0';
    return s;
}

char x2c(const char *two_chars) {
    return wm::hex_byte(static_cast<unsigned char>(two_chars[0]),
                        static_cast<unsigned char>(two_chars[1]));
}

} // extern "C"
