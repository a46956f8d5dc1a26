// The store's sections: where each lives, how it is loaded once per process, and how it is
// written crash-safely under a lock that no form ever holds.
#pragma once

#include <cstddef>
#include <cstdint>

#include "store/config_data_api.h"
#include "sys/support/raii.h"

namespace wm::store {

enum SectionId : int {
    kLan,
    kWan,
    kMisc,
    kMiscExt,
    kProductInfo,
    kWiFi,
    kDefAp,
    kQos,
    kFwUrl,
    kFwMac,
    kTimeGroup,
    kIpGroup,
    kVsIpport,
    kFwIpport,
    kClients,
    kClientGroups,
    kManageAp,
    kApTemplates,
    kApRuntime,
    kApUser,
    kUpdate,
    kSectionCount
};

// Writes the section's field table over `record` into `table` (at most `capacity` rows, the
// last left empty) and returns the rows the whole table needs.
using Builder = int (*)(field_desc *table, int capacity, void *record);

struct Section {
    const char *name; // file stem: <name>.bin, <name>.lock; defaults file <name>.conf
    uint32_t size;
    Builder builder; // the field table: the catalogue's builder, or one made from the members
};

// A list inside a section: a count member, then `capacity` elements, each with a 32-bit id.
struct ListDesc {
    SectionId section;
    uint32_t count_offset;
    uint8_t count_size; // 2 or 4 bytes
    uint32_t elem_offset;
    uint32_t elem_size;
    uint32_t capacity;
    uint32_t id_offset; // of the id within an element
    uint32_t count_end() const { return count_offset + count_size; }
    uint32_t elem_end() const { return elem_offset + elem_size * capacity; }
};

inline constexpr uint8_t kMainVersion = 1;
inline constexpr uint8_t kSubVersion = 0;

const Section &section(SectionId id);
// The section whose stem is `name`, or -1.
int section_index(const char *name);
// The lists of every section (regions that the list operations own).
const ListDesc *const *all_lists(size_t *count);

// This process's record of the section, loaded on first use; null when memory runs out.
void *get(SectionId id);
// Writes `record` as the section (memory copy, and the flash copy too when `flash`); lists
// that the caller left as it last saw them keep what other processes stored meanwhile.
int save(SectionId id, const void *record, bool flash);
// Removes both copies; the next getter rebuilds the section from its defaults.
int reset(SectionId id);

// The stored section, locked for one read-modify-write.
class Transaction {
  public:
    explicit Transaction(SectionId id);
    Transaction(const Transaction &) = delete;
    Transaction &operator=(const Transaction &) = delete;
    bool ok() const { return lock_.locked() && record_; }
    uint8_t *record() const { return record_.get(); }
    // Writes the record to the memory copy and, with `flash`, to the flash copy.
    int commit(bool flash);
    // Copies the bytes [begin, end) of the committed record into `caller` (when not null),
    // into this process's record and into what this process last saw of the section.
    void publish(uint32_t begin, uint32_t end, void *caller);
    // The same for the count and the elements of a list.
    void publish(const ListDesc &l, void *caller) {
        publish(l.count_offset, l.count_end(), caller);
        publish(l.elem_offset, l.elem_end(), caller);
    }

  private:
    SectionId id_;
    UniqueFd fd_;
    FileLock lock_;
    HeapPtr<uint8_t> record_;
};

// Fills `record` with the factory defaults of the section (defaults.cpp).
void load_defaults(const Section &s, void *record);
// The section's field table over `record` in a heap table of `*rows` rows (the last empty),
// or null when memory runs out.
field_desc *field_table(const Section &s, void *record, int *rows);

} // namespace wm::store
