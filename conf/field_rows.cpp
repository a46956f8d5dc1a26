// The row writer shared by the field-table builders.
#include "conf/field_rows.h"

#include <cstdarg>
#include <cstdio>

namespace wm {

void RowWriter::prefix(const char *format, ...) {
    va_list args;
    va_start(args, format);
    vsnprintf(prefix_, sizeof prefix_, format, args);
    va_end(args);
}

void RowWriter::add(const char *name, int index, const char *suffix, int16_t code, void *address,
                    size_t size) {
    // The last row of a table stays empty: it ends every walk over the table.
    ++wanted_;
    if (count_ >= capacity_ - 1) return;
    field_desc &row = table_[count_++];
    // The longest catalogue name is about half the row's name buffer; a longer one is cut.
    int written =
        index >= 0 ? snprintf(row.name, sizeof row.name, "%s%s[%d]%s", prefix_, name, index, suffix)
                   : snprintf(row.name, sizeof row.name, "%s%s%s", prefix_, name, suffix);
    if (written < 0) row.name[0] = '\0';
    row.address = address;
    row.type = code;
    row.size = static_cast<uint16_t>(size);
}

} // namespace wm
