// URL decoding: splitting request text into pairs and undoing '+' and %XX.
#include "cgi/url_decode.h"

#include <bit>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "sys/support/text.h"

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

#if !defined(__SSE2__)
// Without SSE2 the blocks are compared as vectors (NEON) or as 64-bit words.
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
#endif

// Sixteen bytes of `src` to `dst` with their '+'s turned into blanks; returns how many come
// before the first '%' (16 when there is none). One vector where the target has vector
// instructions, two words elsewhere.
inline size_t plain_run16(const char *src, char *dst) {
#if defined(__SSE2__)
    __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i *>(src));
    int percents = _mm_movemask_epi8(_mm_cmpeq_epi8(block, _mm_set1_epi8('%')));
    __m128i pluses = _mm_cmpeq_epi8(block, _mm_set1_epi8('+'));
    block = _mm_xor_si128(block, _mm_and_si128(pluses, _mm_set1_epi8('+' ^ ' ')));
    _mm_storeu_si128(reinterpret_cast<__m128i *>(dst), block);
    return percents ? size_t(std::countr_zero(unsigned(percents))) : 16;
#elif defined(__ARM_NEON)
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

size_t decode_component(std::string_view raw, size_t readable, std::span<char> out, size_t limit) {
    if (out.empty()) return 0;
    if (limit >= out.size()) limit = out.size() - 1;
    char *__restrict dst = out.data();
    const char *__restrict src = raw.data();
    const size_t n = raw.size();
    // A block is read at i while i < read_end and stored at w while w < write_end.
    const size_t read_end = readable >= 16 ? readable - 15 : 0;
    const size_t write_end = out.size() >= 16 ? out.size() - 15 : 0;
    size_t w = 0;
    size_t i = 0;
    while (i < n && w < limit) {
        // Where a plain run from here would stop: the component's end or the room's.
        const size_t plain_end = i + (n - i < limit - w ? n - i : limit - w);
        bool at_percent = false;
        // Whole blocks, stored with their '+'s turned into blanks; what lies past the
        // component or the room is overwritten later or left behind the terminator.
        while (i < read_end && w < write_end) {
            size_t run = plain_run16(src + i, dst + w);
            if (run >= plain_end - i) {
                w += plain_end - i;
                i = plain_end;
                break;
            }
            i += run;
            w += run;
            if (run < 16) {
                at_percent = true;
                break;
            }
        }
        if (i == plain_end) break; // the component or the room ended inside the run
        if (!at_percent && src[i] != '%') {
            dst[w++] = char(plus_as_blank(src[i]));
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

namespace {

// One component decoded straight into its heap copy: room for the raw text (decoding only
// shortens it) cut at `limit`, and for the decoder's block stores. Null when allocation fails.
char *decode_to_heap(std::string_view raw, const char *text_end, size_t limit) {
    constexpr size_t kBlockRoom = 16;
    size_t room = (raw.size() < limit ? raw.size() : limit) + kBlockRoom;
    auto *copy = static_cast<char *>(std::malloc(room));
    size_t readable =
        raw.data() ? size_t(text_end - raw.data()) : 0; // an empty value may have no text
    if (copy) decode_component(raw, readable, {copy, room}, limit);
    return copy;
}

} // namespace

int decode_pairs(const char *text, PairText kind, form_pair *pairs, int count, int capacity) {
    if (!pairs || count >= capacity) return count;
    for_each_raw_pair(text, kind, [&](const RawPair &raw, const char *end) {
        // A pair whose copies cannot be made leaves its entry to the next pair.
        char *name = decode_to_heap(raw.name, end, kFormNameBuffer - 1);
        char *value = name ? decode_to_heap(raw.value, end, kFormValueBuffer - 1) : nullptr;
        if (value) {
            pairs[count].name = name;
            pairs[count].value = value;
            ++count;
        } else {
            std::free(name);
        }
        return count < capacity;
    });
    return count;
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
