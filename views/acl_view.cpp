// The wireless access-list view: the list of each radio, or the global list for all three.
#include <cstring>
#include <memory>

#include "config_data_api.h"
#include "sys/support/raii.h"
#include "views/json_print.h"

namespace {

using namespace wm::json;

void entry(const acl_entry &e) {
    raw('{');
    pair_number("id", e.id, ",");
    pair_text("name", e.name, ",");
    pair_text("mac", e.mac, ",");
    pair_number("status", e.status, ",");
    pair_text("mark", e.mark, "},");
}

} // namespace

extern "C" {

void printf_WiFi_ACL_json(const wifi_config *wifi, const uint8_t *use_ext,
                          const misc_ext_config *ext) {
    const bool extended = use_ext && *use_ext == 1;
    // The list the store fills is 119,292 bytes: too large for a CGI program's stack.
    wm::HeapPtr<misc_ext_acl> owner(static_cast<misc_ext_acl *>(std::malloc(sizeof(misc_ext_acl))));
    misc_ext_acl *list = owner.get();
    raw("{\"acl\":[");
    for (int radio = 0; wifi && list && radio < WEBMGMT_WIFI_RADIO_COUNT; ++radio) {
        std::memset(list, 0, sizeof *list);
        if (extended)
            GetAclItemList_Ext(ext, list);
        else
            GetAclItemList(wifi, list, radio);
        // A count outside the list's room shows only what the room holds.
        int shown = list->count < 0                            ? 0
                    : list->count > WEBMGMT_MISC_EXT_ACL_COUNT ? WEBMGMT_MISC_EXT_ACL_COUNT
                                                               : list->count;
        raw('{');
        pair_number("count", int16_t(list->count), ",");
        pair_number("mode", wifi->m_radio[radio].m_acllist.mode, ",\"element\":[");
        for (int i = 0; i < shown; ++i)
            entry(list->info[i]);
        raw("{}]},");
    }
    raw("{}],");
    pair_number("max_count", extended ? WEBMGMT_MISC_EXT_ACL_COUNT : WEBMGMT_WIFI_ACL_COUNT, "}");
}

} // extern "C"
