// Factory defaults: the catalogue's defaults file of the section, applied through its
// field table.
#include <cstdio>
#include <cstdlib>
#include <unistd.h>

#include "store/internal/section.h"
#include "sys/support/paths.h"
#include "sys/support/text.h"

namespace wm::store {

namespace {

// WEBMGMT_DEFAULTS_DIR when set (the demo, the tests), else the fixed directory.
DevicePath defaults_file(const char *name) {
    std::string_view dir = env_text("WEBMGMT_DEFAULTS_DIR");
    if (dir.empty()) return device_pathf("%s/%s", fixed::kConfigDefaultsDir, name);
    DevicePath p;
    std::snprintf(p.text, sizeof p.text, "%.*s/%s", int(dir.size()), dir.data(), name);
    return p;
}

} // namespace

void load_defaults(const Section &s, void *record) {
    if (!s.builder || !s.defaults) return;
    DevicePath path = defaults_file(s.defaults);
    if (::access(path.c_str(), R_OK) != 0) return;
    // One spare zero row behind the table's 2000 keeps every walk over it terminated.
    HeapPtr<field_desc> table(
        static_cast<field_desc *>(std::calloc(WEBMGMT_FIELD_ROWS + 1, sizeof(field_desc))));
    if (!table) return;
    clean_points(table.get());
    s.builder(table.get(), record);
    load_default(table.get(), path.c_str());
}

} // namespace wm::store
