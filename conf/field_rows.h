// Filling field tables from the records' member lists.
//
// The public header declares each record block once as X(code, type, name, dimensions).
// Builders take every row's type code from that list, its name from the member's own
// name, and its address and size from the member of the given record instance, so that
// none of them can drift from the struct. Where a table lists a block's members in
// declaration order the list is expanded directly (WM_ROWS_OF); where its order differs,
// the builder names the members one by one (WM_ROW), each checked against the list.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "webmgmt.h"

namespace wm {

// Appends rows to a zeroed table, keeping the last row empty as its terminator.
class RowWriter {
  public:
    // `capacity` rows, the last of which stays empty; the catalogue's tables hold
    // WEBMGMT_FIELD_ROWS. The store's maintenance tables may be larger.
    explicit RowWriter(field_desc *table, int capacity = WEBMGMT_FIELD_ROWS)
        : table_(table), capacity_(capacity) {}

    // The text put before the member names of the following rows ("m_radio[1].m_vap[2].").
    void prefix(const char *format, ...) WEBMGMT_PRINTF(2, 3);
    void no_prefix() { prefix_[0] = '\0'; }

    // One row named prefix + name (+ suffix), or prefix + name + "[index]" when index >= 0.
    void add(const char *name, int index, const char *suffix, int16_t code, void *address,
             size_t size);

    int count() const { return count_; }
    // The rows the builder asked for, written or not: the capacity a whole table needs.
    int wanted() const { return wanted_; }

  private:
    field_desc *table_;
    int capacity_;
    int count_ = 0;
    int wanted_ = 0;
    char prefix_[WEBMGMT_FIELD_NAME_SIZE] = {};
};

// The rows of one member: a text (char array) is one row over the whole buffer, a MAC
// member one row named with ".mac", any other array one row per element.
template <class T>
void add_member(RowWriter &w, const char *name, int index, int16_t code, T &member) {
    if constexpr (std::is_array_v<T> && !std::is_same_v<std::remove_extent_t<T>, char>) {
        for (size_t i = 0; i < std::extent_v<T>; ++i)
            add_member(w, name, static_cast<int>(i), code, member[i]);
    } else if constexpr (std::is_same_v<T, mac_field>) {
        w.add(name, index, ".mac", code, member.mac, sizeof member.mac);
    } else {
        w.add(name, index, "", code, &member, sizeof member);
    }
}

} // namespace wm

// The type codes of a member list as constants: codes::member_name.
#define WM_CODE_OF(code, type, name, dims) [[maybe_unused]] static constexpr int16_t name = code;
#define WM_CODES(tag, ...)                                                                         \
    struct tag {                                                                                   \
        __VA_ARGS__                                                                                \
    }

// One listed member of `obj` (a block whose codes are `codes`), by name.
#define WM_ROW(w, codes, obj, member)                                                              \
    do {                                                                                           \
        static_assert(codes::member != 0, "not a listed member: " #member);                        \
        wm::add_member(w, #member, -1, codes::member, (obj).member);                               \
    } while (0)

// Every listed member of a block in declaration order: the member list expanded with the
// writer `w_` and the block `o_` in scope.
#define WM_ROW_X(code, type, name, dims)                                                           \
    if constexpr (code != 0) wm::add_member(w_, #name, -1, code, o_.name);

// A function writing the rows of a block listed whole, in declaration order.
#define WM_BLOCK_ROWS(fn, type, members)                                                           \
    [[maybe_unused]] void fn(wm::RowWriter &w_, type &o_) {                                        \
        members(WM_ROW_X)                                                                          \
    }
