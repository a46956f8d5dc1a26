// Bounded text helpers shared by the whole library. Nothing here allocates or throws.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <span>
#include <string_view>

#include "webmgmt.h"

namespace wm {

// Copies as much of `src` as fits and always terminates; returns the length copied.
inline size_t copy_bounded(std::span<char> dst, std::string_view src) {
    if (dst.empty()) return 0;
    size_t n = src.size() < dst.size() - 1 ? src.size() : dst.size() - 1;
    if (n) std::memcpy(dst.data(), src.data(), n);
    dst[n] = '\0';
    return n;
}

// Appends to the NUL-terminated text in `dst`, bounded by the buffer.
inline size_t append_bounded(std::span<char> dst, std::string_view src) {
    size_t used = strnlen(dst.data(), dst.size());
    if (used >= dst.size()) return used;
    return used + copy_bounded(dst.subspan(used), src);
}

// The text of a fixed-size member, which may fill the member without a terminator.
// (memchr rather than strnlen: the request path binds memchr anyway, and each further C
// library function costs a first-call binding in every CGI process.)
inline std::string_view member_text(const char *member, size_t size) {
    const void *end = std::memchr(member, '\0', size);
    return {member, end ? size_t(static_cast<const char *>(end) - member) : size};
}

// The prefix of `s` of at most n characters (string_view::substr may throw, this never does).
constexpr std::string_view head(std::string_view s, size_t n) {
    return {s.data(), n < s.size() ? n : s.size()};
}
// `s` without its first n characters.
constexpr std::string_view tail(std::string_view s, size_t n) {
    return n < s.size() ? std::string_view{s.data() + n, s.size() - n} : std::string_view{};
}

// An environment variable, or an empty view when unset.
inline std::string_view env_text(const char *name) {
    const char *v = std::getenv(name);
    return v ? std::string_view{v} : std::string_view{};
}

// A heap copy of `s` (malloc), NUL-terminated; null when allocation fails.
inline char *heap_copy(std::string_view s) {
    auto *p = static_cast<char *>(std::malloc(s.size() + 1));
    if (!p) return nullptr;
    if (!s.empty()) // an empty view may have no data at all (tail() returns one)
        std::memcpy(p, s.data(), s.size());
    p[s.size()] = '\0';
    return p;
}

inline bool equals_nocase(std::string_view a, std::string_view b) {
    return a.size() == b.size() && strncasecmp(a.data(), b.data(), a.size()) == 0;
}

} // namespace wm
