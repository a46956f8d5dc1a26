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

#include "sys/support/text.h"
#include "webmgmt.h"

namespace wm::json {

// Whether a member line is followed by a comma.
enum class Sep { Comma, Last };

inline const char *sep_text(Sep sep) {
    return sep == Sep::Comma ? "," : "";
}

inline void open_document() {
    std::putchar('{');
}
inline void close_document() {
    std::putchar('}');
}

// `"name":{` and a newline.
inline void open_object(const char *name) {
    std::printf("\"%s\":{\n", name);
}
// `},` with no newline: another member or object follows.
inline void close_object() {
    std::fputs("},", stdout);
}

// Flags, modes, 8-bit and 32-bit members: "%d".
inline void number(const char *key, int value, Sep sep = Sep::Comma) {
    std::printf("\"%s\":\"%d\"%s\n", key, value, sep_text(sep));
}

// The account types: "%u".
inline void unsigned_number(const char *key, unsigned value, Sep sep = Sep::Comma) {
    std::printf("\"%s\":\"%u\"%s\n", key, value, sep_text(sep));
}

// 16-bit list counts and group ids: "%hd".
inline void short_number(const char *key, int16_t value, Sep sep = Sep::Comma) {
    std::printf("\"%s\":\"%hd\"%s\n", key, value, sep_text(sep));
}

// A text of known length, printed raw.
inline void text_view(const char *key, std::string_view value, Sep sep = Sep::Comma) {
    std::printf("\"%s\":\"%.*s\"%s\n", key, static_cast<int>(value.size()), value.data(),
                sep_text(sep));
}

// A fixed-size text member, read at most to its size.
template <size_t N> void text(const char *key, const char (&member)[N], Sep sep = Sep::Comma) {
    text_view(key, wm::member_text(member, N), sep);
}

// A member printed with a fixed value whatever the record holds (the empty "resved" of some
// objects, the user password that is never shown).
inline void fixed(const char *key, const char *value, Sep sep = Sep::Comma) {
    text_view(key, value, sep);
}

// An IPv4 address member in dotted form. inet_ntoa's buffer is shared, so its text is copied
// into a buffer of our own at once.
inline void ipv4(const char *key, const ipaddr_field &address, Sep sep = Sep::Comma) {
    in_addr in{};
    in.s_addr = address.v4;
    char dotted[20];
    wm::copy_bounded(dotted, inet_ntoa(in));
    text_view(key, wm::member_text(dotted, sizeof dotted), sep);
}

// The `"element":[` list of a fixed table: every slot, whatever the list's count says.
// `print_slot` prints the members of one slot.
template <typename Slot, size_t N, typename PrintSlot>
void slots(const Slot (&table)[N], PrintSlot print_slot) {
    std::fputs("\"element\":[", stdout);
    for (size_t i = 0; i < N; ++i) {
        std::fputs("{\n", stdout);
        print_slot(table[i]);
        std::fputs(i + 1 < N ? "}," : "}", stdout);
    }
}

} // namespace wm::json
