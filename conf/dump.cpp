// Byte dumps used by the field-table diagnostics and the upload parser: 16 bytes a line.
#include <cstdio>

#include "webmgmt.h"

namespace wm {
namespace {

template <typename PrintByte>
void dump_bytes(const char *label, const void *bytes, int length, PrintByte print_byte) {
    if (label) std::printf("%s(%d):\n", label, length);
    const auto *p = static_cast<const unsigned char *>(bytes);
    for (int i = 0; p && i < length; ++i) {
        print_byte(p[i]);
        if ((i + 1) % 16 == 0) std::putchar('\n');
    }
    std::putchar('\n');
}

} // namespace
} // namespace wm

extern "C" {

void print_string_array(const char *label, const void *bytes, int length) {
    wm::dump_bytes(label, bytes, length, [](unsigned char c) { std::putchar(c); });
}

void print_hex_array(const char *label, const void *bytes, int length) {
    wm::dump_bytes(label, bytes, length, [](unsigned char c) { std::printf("%02x ", c); });
}

} // extern "C"
