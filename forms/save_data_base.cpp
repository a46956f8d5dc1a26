// save_data_base: one form value converted into one record member by its conversion code.
#include <arpa/inet.h>
#include <cstdlib>
#include <cstring>

#include "conf/number_text.h"
#include "forms/binding.h"
#include "sys/support/text.h"

namespace {

// Members may sit at any offset of a packed record: write them bytewise.
template <typename T> void store(void *member, T value) {
    std::memcpy(member, &value, sizeof value);
}

// A member narrower than its code needs is left untouched rather than overrun.
bool wide_enough(const field_desc &row) {
    return row.size >= wm::conv::min_width(row.type);
}

// Codes 4 and 5 on a member of 0 or 1 bytes: a one-byte number.
int store_byte(void *member, const char *value) {
    int n = wm::text_to_int32(value);
    store(member, static_cast<uint8_t>(n));
    return n;
}

// Code 4: the whole value as far as the member holds it, always terminated. The pages'
// values were trusted to fit; a longer one is cut at size - 1 characters.
int store_text(const field_desc &row, const char *value) {
    if (row.size <= 1) return store_byte(row.address, value);
    std::memset(row.address, 0, row.size);
    wm::copy_bounded({static_cast<char *>(row.address), row.size}, value);
    return 0;
}

// Code 5: strncpy over the member, so a value of size characters or more fills the member
// without a terminator (the readers bound their reads by the member's size).
int store_text_n(const field_desc &row, const char *value) {
    if (row.size <= 1) return store_byte(row.address, value);
    std::memset(row.address, 0, row.size);
    std::strncpy(static_cast<char *>(row.address), value, row.size);
    return 0;
}

// Code 6: inet_addr's result, all ones for an invalid text, after the leading word.
int store_ipv4(const field_desc &row, const char *value) {
    in_addr_t a = inet_addr(value);
    store(static_cast<char *>(row.address) + 4, static_cast<uint32_t>(a));
    return static_cast<int>(a);
}

// Code 12: the 16 address bytes after the leading word and the IPv4 word; an invalid text
// leaves the member as it was.
int store_ipv6(const field_desc &row, const char *value) {
    unsigned char bytes[16];
    int rc = inet_pton(AF_INET6, value, bytes);
    if (rc == 1) std::memcpy(static_cast<char *>(row.address) + 8, bytes, sizeof bytes);
    return rc;
}

int store_mac(const field_desc &row, const char *value) {
    std::memset(row.address, 0, 6);
    unsigned char mac[6] = {};
    str2mac(value, mac);
    std::memcpy(row.address, mac, sizeof mac);
    return 0;
}

} // namespace

extern "C" {

int save_data_base(field_desc row, const char *value) {
    using namespace wm::conv;
    if (!row.address || !value || !wide_enough(row)) return 0;
    switch (row.type) {
    case kInt:
    case kInt2: {
        int n = wm::text_to_int32(value);
        store(row.address, static_cast<int32_t>(n));
        return n;
    }
    case kShort:
    case kShort2: {
        int n = wm::text_to_int32(value);
        store(row.address, static_cast<int16_t>(n));
        return n;
    }
    case kLong:
    case kLong2: {
        // long is 32 bits on the device: keep the low 32 bits on wider hosts too.
        auto n = wm::text_to_int32(value);
        store(row.address, n);
        return n;
    }
    case kInt64: {
        long long n = wm::text_to_int64(value);
        store(row.address, static_cast<int64_t>(n));
        return static_cast<int>(n);
    }
    case kText:
        return store_text(row, value);
    case kTextN:
        return store_text_n(row, value);
    case kIpv4:
        return store_ipv4(row, value);
    case kMac:
        return store_mac(row, value);
    case kIpv6:
        return store_ipv6(row, value);
    default: // 0 and codes above 12: the value is ignored
        return 0;
    }
}

} // extern "C"
