// Field tables: assigning record members by dotted name, from text or a defaults file.
#include <arpa/inet.h>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "conf/number_text.h"
#include "sys/support/raii.h"
#include "sys/support/text.h"
#include "webmgmt.h"

namespace {

// The device copied each defaults value into a buffer of this size; longer values are cut
// to it instead of running past it.
constexpr size_t kDefaultValueSize = 500;

// Where the address records keep their addresses: the IPv4 word after a leading word, the
// IPv6 bytes after the leading word and the IPv4 slot.
constexpr size_t kIpv4Offset = 4;
constexpr size_t kIpv6Offset = 8;
constexpr size_t kIpv6Bytes = 16;

template <typename T> void store(const field_desc &row, T value) {
    if (row.size >= sizeof value) std::memcpy(row.address, &value, sizeof value);
}

// Codes 4 and 5: a one-byte member takes the number; a text member is zeroed and gets the
// text with its terminator, never more than the text holds nor more than the member.
void store_bytes(const field_desc &row, const char *text) {
    if (row.size == 0) return;
    if (row.size < 2) {
        store(row, static_cast<uint8_t>(wm::text_to_int32(text)));
        return;
    }
    std::memset(row.address, 0, row.size);
    size_t length = strnlen(text, row.size);
    std::memcpy(row.address, text, length < row.size ? length + 1 : length);
}

void store_ipv4(const field_desc &row, const char *text) {
    // inet_addr's all-ones error result is stored as it stands.
    uint32_t address = inet_addr(text);
    if (row.size >= kIpv4Offset + sizeof address)
        std::memcpy(static_cast<char *>(row.address) + kIpv4Offset, &address, sizeof address);
}

void store_ipv6(const field_desc &row, const char *text) {
    unsigned char address[kIpv6Bytes];
    if (row.size >= kIpv6Offset + kIpv6Bytes && inet_pton(AF_INET6, text, address) == 1)
        std::memcpy(static_cast<char *>(row.address) + kIpv6Offset, address, kIpv6Bytes);
}

void assign(const field_desc &row, const char *text) {
    switch (row.type) {
    case 1:
    case 9:
        store(row, wm::text_to_int32(text));
        break;
    case 2:
        store(row, static_cast<int16_t>(wm::text_to_int32(text)));
        break;
    case 3:
    case 7:
        store(row, wm::text_to_int32(text));
        break;
    case 4:
    case 5:
        store_bytes(row, text);
        break;
    case 6:
        store_ipv4(row, text);
        break;
    case 8:
        store(row, wm::text_to_int64(text));
        break;
    case 12:
        store_ipv6(row, text);
        break;
    default: // 10 and 11 are the form converter's; other codes are not acted on
        break;
    }
}

// The rows of a table by name, built once per load_default() so that each defaults line
// finds its rows without a scan of the table. Open addressing over row numbers: rows with the
// same name lie along one probe sequence in table order, so duplicates are assigned in the
// order set_value() assigns them.
class RowIndex {
  public:
    explicit RowIndex(const field_desc *table) : table_(table) {
        std::memset(slots_, 0, sizeof slots_);
        for (int i = 0; i < WEBMGMT_FIELD_ROWS && table[i].name[0]; ++i) {
            if (!table[i].address) continue;
            size_t at = hash(wm::member_text(table[i].name, sizeof table[i].name));
            while (slots_[at])
                at = (at + 1) & kMask;
            slots_[at] = uint16_t(i + 1);
        }
    }
    // Calls `visit(row)` for every row named `name`, in table order.
    template <typename Visit> void for_each(std::string_view name, Visit visit) const {
        for (size_t at = hash(name); slots_[at]; at = (at + 1) & kMask) {
            const field_desc &row = table_[slots_[at] - 1];
            if (wm::member_text(row.name, sizeof row.name) == name) visit(row);
        }
    }

  private:
    static constexpr size_t kSlots = 4096; // a power of two above twice the rows
    static constexpr size_t kMask = kSlots - 1;
    static_assert(kSlots >= 2 * WEBMGMT_FIELD_ROWS);
    static size_t hash(std::string_view name) {
        uint32_t h = 2166136261u; // FNV-1a
        for (char c : name)
            h = (h ^ static_cast<unsigned char>(c)) * 16777619u;
        return h & kMask;
    }
    const field_desc *table_;
    uint16_t slots_[kSlots];
};

void add_row(field_desc *row, const char *name, void *address, int16_t type, uint16_t size) {
    wm::copy_bounded(row->name, name);
    row->address = address;
    row->type = type;
    row->size = size;
}

} // namespace

extern "C" {

int set_value(field_desc *table, const char *name, const char *text) {
    // A name too long for a row matches none.
    if (!table || !name || !text ||
        strnlen(name, WEBMGMT_FIELD_NAME_SIZE) >= WEBMGMT_FIELD_NAME_SIZE)
        return 0;
    for (int i = 0; i < WEBMGMT_FIELD_ROWS && table[i].name[0]; ++i) {
        const field_desc &row = table[i];
        if (row.address && strncmp(row.name, name, sizeof row.name) == 0) assign(row, text);
    }
    return 0;
}

int load_default(field_desc *table, const char *path) {
    wm::HeapPtr<prop_pair> pairs(
        static_cast<prop_pair *>(std::calloc(WEBMGMT_PROP_PAIRS, sizeof(prop_pair))));
    if (!pairs) return 0;
    int count = load_prop('=', path, pairs.get());
    if (table) {
        RowIndex index(table);
        for (int i = 0; i < count; ++i) {
            const char *name = pairs.get()[i].name;
            // A name too long for a row matches none, as in set_value().
            if (!name || strnlen(name, WEBMGMT_FIELD_NAME_SIZE) >= WEBMGMT_FIELD_NAME_SIZE)
                continue;
            char value[kDefaultValueSize] = {};
            char text[kDefaultValueSize] = {};
            wm::copy_bounded(value, pairs.get()[i].value);
            wm::copy_bounded(text, strip(value, '"'));
            index.for_each(name, [&](const field_desc &row) { assign(row, text); });
        }
    }
    free_prop(pairs.get(), count);
    return 0;
}

void clean_points(field_desc *table) {
    if (table) std::memset(table, 0, sizeof(field_desc) * WEBMGMT_FIELD_ROWS);
}

int ShowVar_field(field_desc *table, void *record) {
    if (!table || !record) return 0;
    auto *bytes = static_cast<char *>(record);
    add_row(&table[0], "product_internal_name", bytes, 5, 50);
    add_row(&table[1], "eth_ra_m", bytes + 50, 5, 1);
    add_row(&table[2], "eth_ra_o", bytes + 51, 5, 1);
    return 3;
}

} // extern "C"
