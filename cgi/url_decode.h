// URL decoding of request text, separated from reading the request: the pair-splitting
// loop works on any NUL-terminated buffer, so the fuzzer and the tests can drive it
// without a CGI environment.
#pragma once

#include <bit>
#include <cstddef>
#include <span>
#include <string_view>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "sys/support/text.h"
#include "webmgmt.h"

namespace wm {

// Work buffer sizes of the form decoder: a decoded name keeps at most 127 bytes, a decoded
// value at most 4095.
inline constexpr size_t kFormNameBuffer = 128;
inline constexpr size_t kFormValueBuffer = 4096;
// The query-string lookup uses 1024 bytes for both.
inline constexpr size_t kQueryLookupBuffer = 1024;

// One `name=value` pair as it stands in the request text, before decoding. The name runs
// to the first '=' (it may hold '&'), the value from there to the first '&'. A pair
// without '=' has an empty value and no rest.
struct RawPair {
    std::string_view name;
    std::string_view value;
    bool more;             // an '&' ended the pair
    std::string_view rest; // the text after that '&'
};
// The position of the first `c` in `text`, or npos: sixteen bytes at a time where the
// target has vector instructions (the C library's memchr costs a call for every pair).
inline size_t find_byte(std::string_view text, char c) {
    size_t i = 0;
#if defined(__SSE2__)
    const __m128i wanted = _mm_set1_epi8(c);
    for (; i + 16 <= text.size(); i += 16) {
        __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i *>(text.data() + i));
        if (int hits = _mm_movemask_epi8(_mm_cmpeq_epi8(block, wanted)))
            return i + size_t(std::countr_zero(unsigned(hits)));
    }
#endif
    for (; i < text.size(); ++i)
        if (text[i] == c) return i;
    return std::string_view::npos;
}

// (Inline: the pair loop calls it for every pair.)
inline RawPair split_pair(std::string_view text) {
    size_t eq = find_byte(text, '=');
    if (eq == std::string_view::npos) return {text, {}, false, {}};
    std::string_view name = head(text, eq);
    text.remove_prefix(eq + 1);
    size_t amp = find_byte(text, '&');
    if (amp == std::string_view::npos) return {name, text, false, {}};
    return {name, head(text, amp), true, tail(text, amp + 1)};
}

// Decodes `raw` into `out` ('+' to blank first, then %XX), at most `limit` bytes of it
// (limit < out.size()), and terminates it. A '%' with fewer than two characters behind it
// is kept as it stands. Returns the decoded length.
// Plain runs are copied sixteen bytes at a time: `readable` bytes from raw.data() may be
// read (the text around the component), and any of out's bytes may be written.
size_t decode_component(std::string_view raw, size_t readable, std::span<char> out, size_t limit);

// The same with nothing read beyond `raw` and the whole of `out` but its terminator used.
inline size_t decode_component(std::string_view raw, std::span<char> out) {
    return out.empty() ? 0 : decode_component(raw, raw.size(), out, out.size() - 1);
}

// How the pair loop treats an empty rest: the body loop decodes it as one more (empty)
// pair, the query-string loop stops there.
enum class PairText { body, query };

// Walks the raw pairs of `text` (null: none), calling `visit(pair, end)` with `end` the end
// of the whole text; the walk ends when `visit` returns false.
template <typename Visit> void for_each_raw_pair(const char *text, PairText kind, Visit visit) {
    if (!text) return;
    // The text ends at its terminator; it is measured once, not at every pair.
    std::string_view rest{text};
    const char *end = rest.data() + rest.size();
    for (bool more = true; more && !(kind == PairText::query && rest.empty());) {
        RawPair raw = split_pair(rest);
        if (!visit(raw, end)) return;
        more = raw.more;
        rest = raw.rest;
    }
}

// Walks the pairs of `text`, decoding each into the two buffers and calling
// `visit(name_length, value_length)`; the walk ends when `visit` returns false.
template <typename Visit>
void for_each_pair(const char *text, PairText kind, std::span<char> name, std::span<char> value,
                   Visit visit) {
    for_each_raw_pair(text, kind, [&](const RawPair &raw, const char *) {
        return visit(decode_component(raw.name, name), decode_component(raw.value, value));
    });
}

// Decodes the pairs of `text` into pairs[count..capacity) and returns the new count. A pair
// whose heap copy cannot be made is skipped.
int decode_pairs(const char *text, PairText kind, form_pair *pairs, int count, int capacity);

} // namespace wm
