// The printing conventions every JSON view follows, in one place so that each view reads as
// the list of its keys.
//
// Shape of a document:
//   - it opens with `{` and no newline;
//   - a member is one line `"key":"value",` (the last of an object has no comma), every
//     value a quoted string, numbers included;
//   - a nested object opens with the line `"name":{` and closes with `},` (no newline), or
//     `}` when it is the last one, so such a document ends in `}}`;
//   - a list is `"element":[` (no newline) and one `{`-newline ... `}` object per slot,
//     separated by `,` and no newline.
// Values are printed as stored: nothing is escaped (the pages never store a double quote or
// a backslash). Text members are read at most to their member's size, so a member that
// fills its room without a terminator never reads into its neighbour.
#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "sys/support/text.h"
#include "webmgmt.h"

// Everything is written into stdout's own buffer (one fwrite per member line, numbers and
// addresses formatted here), so the bytes stay in order with whatever the program prints
// with stdio before, between and after the views.
namespace wm::json {

// Whether a member line is followed by a comma.
enum class Sep { Comma, Last };

inline const char *sep_text(Sep sep) {
    return sep == Sep::Comma ? "," : "";
}

void open_document();
void close_document();

// `"name":{` and a newline.
void open_object(std::string_view name);
// `},` with no newline: another member or object follows.
void close_object();

// Decimal digits of a number, formatted here into the object's own room.
struct Digits {
    char room[20]; // "-9223372036854775808", or 20 digits of an unsigned 64-bit number
    uint8_t start;
    std::string_view view() const { return {room + start, sizeof room - start}; }
};
Digits signed_digits(int64_t value);
Digits unsigned_digits(uint64_t value);

// "AA:BB:CC:DD:EE:FF" (upper-case hex, as "%02X") and its terminator.
struct MacText {
    char text[18];
};
MacText mac_text(const uint8_t *mac);

// An IPv4 address kept in network order in dotted form, as inet_ntoa prints it, terminated.
struct DottedText {
    char text[16];
};
DottedText dotted_text(uint32_t network_order);

// Flags, modes, 8-bit and 32-bit members: "%d".
void number(std::string_view key, int value, Sep sep = Sep::Comma);

// The account types: "%u".
void unsigned_number(std::string_view key, unsigned value, Sep sep = Sep::Comma);

// 16-bit list counts and group ids: "%hd".
inline void short_number(std::string_view key, int16_t value, Sep sep = Sep::Comma) {
    number(key, value, sep);
}

// The device printed bandwidths, ports and packet counts with "%lu" of its 32-bit long; the
// members are 32-bit, printed as such on any host.
inline void u32(std::string_view key, uint32_t value, Sep sep = Sep::Comma) {
    unsigned_number(key, value, sep);
}

// Prefix lengths and IPv6 switches: "%hhu".
inline void u8(std::string_view key, uint8_t value, Sep sep = Sep::Comma) {
    unsigned_number(key, value, sep);
}

// Byte counts and the DHCP lease time: "%llu" of a 64-bit member.
void u64(std::string_view key, uint64_t value, Sep sep = Sep::Comma);

// A text of known length, printed raw.
void text_view(std::string_view key, std::string_view value, Sep sep = Sep::Comma);

// A fixed-size text member, read at most to its size.
template <size_t N> void text(std::string_view key, const char (&member)[N], Sep sep = Sep::Comma) {
    text_view(key, wm::member_text(member, N), sep);
}

// A member printed with a fixed value whatever the record holds (the empty "resved" of some
// objects, the user password that is never shown).
inline void fixed(std::string_view key, const char *value, Sep sep = Sep::Comma) {
    text_view(key, value, sep);
}

// An IPv4 address member in dotted form, as inet_ntoa prints it.
void ipv4(std::string_view key, const ipaddr_field &address, Sep sep = Sep::Comma);

// An IPv6 address member as inet_ntop prints it.
void ipv6(std::string_view key, const ip6addr_field &address, Sep sep = Sep::Comma);

// A MAC address member in upper-case hex.
inline void mac(std::string_view key, const mac_field &value, Sep sep = Sep::Comma) {
    text_view(key, mac_text(value.mac).text, sep);
}

// A member of a compact document: `"key":"value"` and `tail`, no newline.
void pair(std::string_view key, std::string_view value, std::string_view tail = {});
inline void pair_number(std::string_view key, int64_t value, std::string_view tail = {}) {
    pair(key, signed_digits(value).view(), tail);
}
template <size_t N>
void pair_text(std::string_view key, const char (&member)[N], std::string_view tail = {}) {
    pair(key, wm::member_text(member, N), tail);
}

// Raw text and single characters between members, into the same stream.
void raw(std::string_view text);
inline void raw(char c) {
    putc_unlocked(c, stdout);
}
// A number between raw pieces.
inline void raw_number(int64_t value) {
    raw(signed_digits(value).view());
}

// The `"element":[` list of a fixed table: every slot, whatever the list's count says.
// `print_slot` prints the members of one slot.
template <typename Slot, size_t N, typename PrintSlot>
void slots(const Slot (&table)[N], PrintSlot print_slot) {
    raw("\"element\":[");
    for (size_t i = 0; i < N; ++i) {
        raw("{\n");
        print_slot(table[i]);
        raw(i + 1 < N ? std::string_view{"},"} : std::string_view{"}"});
    }
}

} // namespace wm::json
