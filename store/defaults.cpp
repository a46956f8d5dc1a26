// Factory defaults: the defaults file of the section, applied through its field table.
#include <cstdio>
#include <cstdlib>
#include <unistd.h>

#include "store/internal/section.h"
#include "sys/support/paths.h"
#include "sys/support/text.h"

namespace wm::store {

namespace {

// "<stem>.conf" in WEBMGMT_DEFAULTS_DIR when set (the demo, the tests), else in the fixed
// directory.
DevicePath defaults_file(const char *stem) {
    std::string_view dir = env_text("WEBMGMT_DEFAULTS_DIR");
    if (dir.empty()) return device_pathf("%s/%s.conf", fixed::kConfigDefaultsDir, stem);
    DevicePath p;
    std::snprintf(p.text, sizeof p.text, "%.*s/%s.conf", int(dir.size()), dir.data(), stem);
    return p;
}

} // namespace

field_desc *field_table(const Section &s, void *record, int *rows) {
    // One empty row behind the table keeps every walk over it terminated.
    int n = s.builder(nullptr, 0, record) + 1;
    auto *table = static_cast<field_desc *>(std::calloc(size_t(n), sizeof(field_desc)));
    if (!table) return nullptr;
    s.builder(table, n, record);
    *rows = n;
    return table;
}

void load_defaults(const Section &s, void *record) {
    DevicePath path = defaults_file(s.name);
    if (::access(path.c_str(), R_OK) != 0) return;
    int rows = 0;
    HeapPtr<field_desc> table(field_table(s, record, &rows));
    if (!table) return;
    // load_default() looks at most WEBMGMT_FIELD_ROWS rows from where it starts: a larger
    // table (the client accounts) is applied window by window.
    for (int first = 0; first < rows - 1; first += WEBMGMT_FIELD_ROWS - 1)
        load_default(table.get() + first, path.c_str());
}

} // namespace wm::store
