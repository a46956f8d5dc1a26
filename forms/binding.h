// Form binding tables: which form variable fills which member of a working record, and how.
//
// A row's width is never written by hand: Bindings::add deduces it from the member it is
// given, and refuses at compile time a member too narrow for the row's conversion code, so
// no binding can name the wrong width.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "webmgmt.h"

namespace wm {

// The conversion codes of save_data_base.
namespace conv {
inline constexpr int16_t kInt = 1;     // atoi, 32 bits
inline constexpr int16_t kShort = 2;   // atoi, low 16 bits
inline constexpr int16_t kLong = 3;    // atol, 32 bits
inline constexpr int16_t kText = 4;    // text, bounded by the member
inline constexpr int16_t kTextN = 5;   // strncpy over the member (may stay unterminated)
inline constexpr int16_t kIpv4 = 6;    // inet_addr into the second 32-bit word
inline constexpr int16_t kLong2 = 7;   // atol, 32 bits
inline constexpr int16_t kInt64 = 8;   // atoll, 64 bits
inline constexpr int16_t kInt2 = 9;    // atoi, 32 bits
inline constexpr int16_t kMac = 10;    // str2mac into 6 bytes
inline constexpr int16_t kShort2 = 11; // atoi, low 16 bits
inline constexpr int16_t kIpv6 = 12;   // inet_pton, 8 bytes into the member

// The fewest bytes a member of each code must have; 0 when any width will do.
constexpr size_t min_width(int16_t code) {
    switch (code) {
    case kInt:
    case kLong:
    case kLong2:
    case kInt2:
        return 4;
    case kShort:
    case kShort2:
        return 2;
    case kIpv4:
        return 8;
    case kInt64:
        return 8;
    case kMac:
        return 6;
    case kIpv6:
        return 24;
    default:
        return 0;
    }
}
} // namespace conv

// A form's binding table: WEBMGMT_FORM_ROWS zeroed rows, so the first unused row ends it.
class Bindings {
  public:
    Bindings() { std::memset(rows_, 0, sizeof rows_); }
    Bindings(const Bindings &) = delete;
    Bindings &operator=(const Bindings &) = delete;

    // Binds the form variable `name` to `member` with conversion `Code`; the row's size is
    // the member's own.
    template <int16_t Code, typename Member> void add(const char *name, Member &member) {
        static_assert(std::is_trivially_copyable_v<Member>, "members are plain data");
        static_assert(sizeof(Member) >= conv::min_width(Code), "member too narrow for its code");
        static_assert(sizeof(Member) <= UINT16_MAX, "member wider than a row can say");
        put(name, &member, Code, sizeof(Member));
    }

    // The rows, ending in an empty-named row.
    const field_desc *rows() const { return rows_; }
    int count() const { return count_; }

    // Applies the table to the request's pairs: every pair named like a row is converted
    // into the row's member, in pair order, so a repeated variable's last value wins and an
    // absent one leaves its member as it was.
    void apply(const form_pair *pairs, int count) const;

  private:
    void put(const char *name, void *address, int16_t code, size_t size);

    field_desc rows_[WEBMGMT_FORM_ROWS];
    int count_ = 0;
};

} // namespace wm
