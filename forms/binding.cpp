// Building and applying form binding tables.
#include "forms/binding.h"

#include "sys/support/text.h"

namespace wm {

void Bindings::put(const char *name, void *address, int16_t code, size_t size) {
    // The last row stays empty: it ends the table. A form never binds that many variables;
    // one more would be dropped rather than overwrite the end.
    if (count_ >= WEBMGMT_FORM_ROWS - 1) return;
    field_desc &row = rows_[count_++];
    copy_bounded(row.name, name);
    row.address = address;
    row.type = code;
    row.size = static_cast<uint16_t>(size);
}

void Bindings::apply(const form_pair *pairs, int count) const {
    if (!pairs || count < 1) return;
    for (int r = 0; r < WEBMGMT_FORM_ROWS; ++r) {
        const field_desc &row = rows_[r];
        // The empty-named end row is scanned like the others: a pair with an empty name
        // reaches save_data_base with code 0, which ignores it.
        for (int i = 0; i < count; ++i)
            if (pairs[i].name && pairs[i].value && std::strcmp(pairs[i].name, row.name) == 0)
                save_data_base(row, pairs[i].value);
        if (row.name[0] == '\0') break;
    }
}

} // namespace wm
