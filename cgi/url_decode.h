// URL decoding of request text, separated from reading the request: the pair-splitting
// loop works on any NUL-terminated buffer, so the fuzzer and the tests can drive it
// without a CGI environment.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

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
    const char *rest; // the text after the pair's '&', or null when the text ends
};
RawPair split_pair(const char *pos);

// Decodes `raw` into `out` ('+' to blank first, then %XX) and terminates it; the decoded
// text is cut to fit. A '%' with fewer than two characters behind it is kept as it stands.
// Returns the decoded length.
size_t decode_component(std::string_view raw, std::span<char> out);

// How the pair loop treats an empty rest: the body loop decodes it as one more (empty)
// pair, the query-string loop stops there.
enum class PairText { body, query };

// Walks the pairs of `text` (null: none), decoding each into the two buffers and calling
// `visit(name_length, value_length)`; the walk ends when `visit` returns false.
template <typename Visit>
void for_each_pair(const char *text, PairText kind, std::span<char> name, std::span<char> value,
                   Visit visit) {
    const char *pos = text;
    while (pos && !(kind == PairText::query && *pos == '\0')) {
        RawPair raw = split_pair(pos);
        size_t name_length = decode_component(raw.name, name);
        size_t value_length = decode_component(raw.value, value);
        if (!visit(name_length, value_length)) return;
        pos = raw.rest;
    }
}

// Decodes the pairs of `text` into pairs[count..capacity) and returns the new count. A pair
// whose heap copy cannot be made is skipped.
int decode_pairs(const char *text, PairText kind, form_pair *pairs, int count, int capacity);

} // namespace wm
