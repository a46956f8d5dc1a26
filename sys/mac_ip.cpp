// MAC text and hexadecimal helpers.
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "webmgmt.h"

namespace wm {
namespace {

constexpr char kUpperHex[] = "0123456789ABCDEF";

bool is_hex_digit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

// A digit's value; anything that is neither a digit nor a small letter is read as if it
// were a capital, which is how the second digit of a MAC byte has always been taken.
unsigned lenient_digit(char c) {
    if (c >= '0' && c <= '9') return unsigned(c - '0');
    if (c >= 'a' && c <= 'f') return unsigned(c - 'a' + 10);
    return unsigned(c - 'A' + 10);
}

} // namespace
} // namespace wm

extern "C" {

int str2mac(const char *text, unsigned char *mac) {
    size_t len = std::strlen(text);
    if (len != 12 && len != 17) return -1;
    const char *p = text;
    for (int i = 0; i < 6; ++i) {
        if (*p == ':' || *p == '-') ++p;
        if (!wm::is_hex_digit(p[0])) return -1;
        // A text that ends in the middle of a byte is refused rather than read past its end.
        if (p[1] == '\0') return -1;
        mac[i] =
            static_cast<unsigned char>((wm::lenient_digit(p[0]) << 4) + wm::lenient_digit(p[1]));
        p += 2;
    }
    return 0;
}

int mac_is_zero(const unsigned char *mac) {
    for (int i = 0; i < 6; ++i)
        if (mac[i]) return 0;
    return 1;
}

int c2i(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    // The small letters all pass, g to z giving 16 to 35.
    if (c >= 'a' && c <= 'z') return c - 'a' + 10;
    return -1;
}

int hex2dec(const char *text) {
    size_t len = std::strlen(text);
    uint32_t value = 0;
    for (size_t i = 0; i < len; ++i) {
        size_t shift = 4 * (len - 1 - i);
        // Digits beyond the eighth from the end drop out; an invalid digit (-1) sets every
        // bit from its place upwards.
        if (shift < 32) value |= uint32_t(c2i(text[i])) << shift;
    }
    return int(value);
}

int split_mac_convert_int_array(char *text, const char *separators, unsigned char *mac) {
    if (!std::strstr(text, separators)) {
        mac[0] = static_cast<unsigned char>(hex2dec(text));
        return 1;
    }
    int count = 0;
    char *save = nullptr;
    for (char *part = strtok_r(text, separators, &save); part && count < 6;
         part = strtok_r(nullptr, separators, &save))
        mac[count++] = static_cast<unsigned char>(hex2dec(part));
    return count;
}

void HexToStr(char *dst, const char *hex) {
    size_t pairs = std::strlen(hex) / 2;
    for (size_t i = 0; i < pairs; ++i) {
        char pair[3] = {hex[2 * i], hex[2 * i + 1], '\0'};
        long v = std::strtol(pair, nullptr, 16);
        dst[i] = (v >= 33 && v <= 127) ? char(v) : '\0';
    }
    dst[pairs] = '\0';
}

void HexToAscii(const unsigned char *bytes, char *dst, int count) {
    for (int i = 0; i < count; ++i) {
        dst[2 * i] = wm::kUpperHex[bytes[i] >> 4];
        dst[2 * i + 1] = wm::kUpperHex[bytes[i] & 0x0f];
    }
}

void AsciiToHex(const char *hex, unsigned char *dst, int length) {
    if (length < 2 || length % 2) return;
    for (int i = 0; i + 1 < length; i += 2) {
        if (!wm::is_hex_digit(hex[i]) || !wm::is_hex_digit(hex[i + 1])) return;
        dst[i / 2] = static_cast<unsigned char>((wm::lenient_digit(hex[i]) << 4) |
                                                wm::lenient_digit(hex[i + 1]));
    }
}

} // extern "C"
