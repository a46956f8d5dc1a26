// The text conversions on arbitrary input: MAC parsing, hexadecimal helpers and the XML
// and JSON escapes, each with buffers of the size its callers must provide.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "webmgmt.h"

namespace {

// A NUL-terminated heap copy, so that reading past the input's end is caught.
char *terminated(const uint8_t *data, size_t size) {
    auto *s = static_cast<char *>(std::malloc(size + 1));
    std::memcpy(s, data, size);
    s[size] = '\0';
    return s;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (size > 4096) return 0;
    char *text = terminated(data, size);
    size_t len = std::strlen(text);

    unsigned char mac[6];
    str2mac(text, mac);
    mac_is_zero(mac);
    hex2dec(text);

    // The separator is the first byte, the rest is the text to split.
    if (len > 1) {
        char sep[2] = {text[0], '\0'};
        char *copy = terminated(reinterpret_cast<const uint8_t *>(text + 1), len - 1);
        unsigned char parts[6];
        split_mac_convert_int_array(copy, sep, parts);
        std::free(copy);
    }

    auto *half = static_cast<char *>(std::malloc(len / 2 + 1));
    HexToStr(half, text);
    std::free(half);

    auto *bytes = static_cast<unsigned char *>(std::malloc(len / 2 + 1));
    AsciiToHex(text, bytes, int(len));
    std::free(bytes);

    auto *xml = static_cast<char *>(std::calloc(6 * len + 1, 1));
    filter_xml_name(text, xml);
    std::free(xml);

    auto *json = static_cast<char *>(std::calloc(2 * len + 1, 1));
    filter_json_name(text, json);
    std::free(json);

    char *filtered = terminated(data, size);
    web_commd_str_filter(filtered, int(size));
    std::free(filtered);

    change_time_to_int(text);

    std::free(text);
    return 0;
}
