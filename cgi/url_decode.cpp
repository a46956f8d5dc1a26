// URL decoding: splitting request text into pairs and undoing '+' and %XX.
#include "cgi/url_decode.h"

#include <bit>
#include <cstdint>
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

constexpr uint64_t kOnes = 0x0101010101010101u;
constexpr uint64_t kLow7 = 0x7f7f7f7f7f7f7f7fu;

// 0x80 in each byte of `x` that is zero and 0 in every other byte (no carry between bytes).
constexpr uint64_t zero_bytes(uint64_t x) {
    return ~(((x & kLow7) + kLow7) | x | kLow7);
}

// The position in memory of the first byte marked by zero_bytes().
inline size_t first_marked_byte(uint64_t marks) {
    if constexpr (std::endian::native == std::endian::little)
        return size_t(std::countr_zero(marks)) / 8;
    else
        return size_t(std::countl_zero(marks)) / 8;
}

// Eight bytes of `src` to `dst` with their '+'s turned into blanks; returns how many come
// before the first '%' (8 when there is none).
inline size_t plain_run8(const char *src, char *dst) {
    uint64_t word;
    std::memcpy(&word, src, 8);
    uint64_t percents = zero_bytes(word ^ (kOnes * '%'));
    word ^= (zero_bytes(word ^ (kOnes * '+')) >> 7) * ('+' ^ ' ');
    std::memcpy(dst, &word, 8);
    return percents ? first_marked_byte(percents) : 8;
}

// The same for sixteen bytes, compared as one vector where the target has vector
// instructions and as two words elsewhere.
inline size_t plain_run16(const char *src, char *dst) {
#if defined(__SSE2__) || defined(__ARM_NEON)
    using Block = unsigned char __attribute__((vector_size(16)));
    Block block;
    std::memcpy(&block, src, 16);
    Block percents = Block(block == '%');
    block ^= Block(block == '+') & ('+' ^ ' ');
    std::memcpy(dst, &block, 16);
    uint64_t low, high;
    std::memcpy(&low, &percents, 8);
    std::memcpy(&high, reinterpret_cast<const char *>(&percents) + 8, 8);
    if (low) return first_marked_byte(low);
    return high ? 8 + first_marked_byte(high) : 16;
#else
    size_t run = plain_run8(src, dst);
    return run < 8 ? run : 8 + plain_run8(src + 8, dst + 8);
#endif
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
        // Whole blocks while both sides have room for one: the block is stored with its
        // '+'s turned into blanks, and the position moves past it or to its first '%'.
        const size_t room = n - i < limit - w ? n - i : limit - w;
        size_t block = room >= 16 ? 16 : room >= 8 ? 8 : 0;
        if (block) {
            size_t run = block == 16 ? plain_run16(src + i, dst + w) : plain_run8(src + i, dst + w);
            i += run;
            w += run;
            if (run == block) continue;
        } else if (src[i] != '%') {
            dst[w++] = src[i] == '+' ? ' ' : src[i];
            ++i;
            continue;
        }
        // src[i] is a '%'.
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
