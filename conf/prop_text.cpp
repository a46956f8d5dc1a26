// Small text helpers used beside property files: quotes, escapes, masks, hex, copies.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "conf/number_text.h"
#include "sys/support/raii.h"
#include "webmgmt.h"

namespace {

// The characters a double-quoted shell value must escape.
bool needs_escape(char c) {
    return c == '\\' || c == '`' || c == '"' || c == '$';
}

// How many doublings (kept to 8 bits) turn the octet to 0: its one-bits for a mask octet.
int octet_prefix(const char *text) {
    unsigned v = static_cast<unsigned>(wm::text_to_int32(text)) & 0xffu;
    int doublings = 0;
    while (v) {
        v = (v << 1) & 0xffu;
        ++doublings;
    }
    return doublings;
}

constexpr char kUpperHex[] = "0123456789ABCDEF";

} // namespace

extern "C" {

char *strip(char *text, int c) {
    if (!text) return text;
    size_t length = std::strlen(text);
    if (length && text[length - 1] == char(c)) text[length - 1] = '\0';
    return text[0] && text[0] == char(c) ? text + 1 : text;
}

char *add_escape(const char *src, char *dst) {
    if (!src || !dst) return dst;
    char *out = dst;
    for (; *src; ++src) {
        if (needs_escape(*src)) *out++ = '\\';
        *out++ = *src;
    }
    *out = '\0';
    return dst;
}

char *strip_escape(const char *src, char *dst) {
    if (!src || !dst) return dst;
    char *out = dst;
    while (*src) {
        if (src[0] == '\\' && needs_escape(src[1])) ++src;
        *out++ = *src++;
    }
    *out = '\0';
    return dst;
}

int calc_netpriexlength(const char *mask) {
    if (!mask) return 0;
    int total = octet_prefix(mask);
    const char *at = mask;
    for (int i = 0; i < 3 && (at = std::strchr(at, '.')) != nullptr; ++i)
        total += octet_prefix(++at);
    return total;
}

int file_copy(const char *src_path, const char *dst_path) {
    if (!src_path || !dst_path) return 0;
    wm::UniqueFile src(std::fopen(src_path, "rb"));
    if (!src) return 0;
    wm::UniqueFile dst(std::fopen(dst_path, "wb"));
    if (!dst) return 0;
    char block[4096];
    size_t n;
    while ((n = std::fread(block, 1, sizeof block, src.get())) > 0)
        if (std::fwrite(block, 1, n, dst.get()) != n) return 0;
    return std::ferror(src.get()) || dst.close() != 0 ? 0 : 1;
}

int hex2int(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

char *ascii2hex(const void *bytes, int length, char *out) {
    size_t count = length > 0 ? size_t(length) : 0;
    if (!out) {
        // One byte more than the two digits per byte, for the terminator.
        out = static_cast<char *>(std::calloc(2 * count + 1, 1));
        if (!out) return nullptr;
    }
    const auto *in = static_cast<const unsigned char *>(bytes);
    for (size_t i = 0; in && i < count; ++i) {
        out[2 * i] = kUpperHex[in[i] >> 4];
        out[2 * i + 1] = kUpperHex[in[i] & 0xf];
    }
    out[in ? 2 * count : 0] = '\0';
    return out;
}

char *hex2ascii(const char *hex, char *out) {
    if (!hex || !out) return out;
    size_t length = std::strlen(hex);
    for (size_t i = 0; i + 1 < length; i += 2) {
        int value = hex2int(hex[i]) * 16 + hex2int(hex[i + 1]);
        // Each byte is appended after the text so far, so a zero byte is overwritten.
        out[std::strlen(out)] = static_cast<char>(static_cast<unsigned char>(value & 0xff));
    }
    out[length / 2] = '\0';
    return out;
}

} // extern "C"
