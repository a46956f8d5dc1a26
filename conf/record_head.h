// The four rows every record's table begins with.
#pragma once

#include "conf/field_rows.h"

namespace wm {

WM_CODES(version_codes, WEBMGMT_CONFIG_VERSION_MEMBERS(WM_CODE_OF));
WM_CODES(head_codes, WEBMGMT_RECORD_HEAD(WM_CODE_OF));

template <class Record> void head_rows(RowWriter &w, Record &record) {
    w.prefix("config_ver.");
    WM_ROW(w, version_codes, record.config_ver, main_version);
    WM_ROW(w, version_codes, record.config_ver, sub_version);
    w.no_prefix();
    WM_ROW(w, head_codes, record, lock_file);
    WM_ROW(w, head_codes, record, lock_location);
}

} // namespace wm
