#include "sys/support/operand.h"

#include <climits>
#include <cstdio>

namespace wm {

namespace {

constexpr bool is_blank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

} // namespace

int positive_pid(std::string_view text) {
    size_t begin = 0, end = text.size();
    while (begin < end && is_blank(text[begin]))
        ++begin;
    while (end > begin && is_blank(text[end - 1]))
        --end;
    if (begin == end) return 0;
    long long value = 0;
    for (size_t i = begin; i < end; ++i) {
        char c = text[i];
        if (c < '0' || c > '9') return 0;
        value = value * 10 + (c - '0');
        if (value > INT_MAX) return 0;
    }
    return int(value);
}

bool plain_operand(std::string_view name) {
    if (name.empty() || name.front() == '-') return false;
    for (char c : name) {
        auto u = static_cast<unsigned char>(c);
        if (u <= ' ' || u == 0x7f) return false;
    }
    return true;
}

size_t log_line_text(std::span<char> out, std::string_view text) {
    if (out.empty()) return 0;
    size_t used = 0;
    auto put = [&](std::string_view piece) {
        if (used + piece.size() >= out.size()) return false;
        for (char c : piece)
            out[used++] = c;
        return true;
    };
    for (char c : text) {
        auto u = static_cast<unsigned char>(c);
        char escaped[5];
        std::string_view piece{&c, 1};
        if (c == '\n') {
            piece = "\\n";
        } else if (c == '\r') {
            piece = "\\r";
        } else if (u < 0x20 || u == 0x7f) {
            std::snprintf(escaped, sizeof escaped, "\\x%02x", u);
            piece = {escaped, 4};
        }
        if (!put(piece)) break;
    }
    out[used] = '\0';
    return used;
}

} // namespace wm
