// The wireless access-list view: the list of each radio, or the global list for all three.
#include <cstdio>
#include <cstring>
#include <memory>
#include <string_view>

#include "config_data_api.h"
#include "sys/support/raii.h"
#include "sys/support/text.h"

namespace {

void entry(const acl_entry &e) {
    std::string_view name = wm::member_text(e.name, sizeof e.name);
    std::string_view mac = wm::member_text(e.mac, sizeof e.mac);
    std::string_view mark = wm::member_text(e.mark, sizeof e.mark);
    std::printf(
        "{\"id\":\"%d\",\"name\":\"%.*s\",\"mac\":\"%.*s\",\"status\":\"%d\",\"mark\":\"%.*s\"},",
        e.id, int(name.size()), name.data(), int(mac.size()), mac.data(), e.status,
        int(mark.size()), mark.data());
}

} // namespace

extern "C" {

void printf_WiFi_ACL_json(const wifi_config *wifi, const uint8_t *use_ext,
                          const misc_ext_config *ext) {
    const bool extended = use_ext && *use_ext == 1;
    // The list the store fills is 119,292 bytes: too large for a CGI program's stack.
    wm::HeapPtr<misc_ext_acl> owner(static_cast<misc_ext_acl *>(std::malloc(sizeof(misc_ext_acl))));
    misc_ext_acl *list = owner.get();
    std::fputs("{\"acl\":[", stdout);
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
        std::printf("{\"count\":\"%hd\",\"mode\":\"%d\",\"element\":[", int16_t(list->count),
                    wifi->m_radio[radio].m_acllist.mode);
        for (int i = 0; i < shown; ++i)
            entry(list->info[i]);
        std::fputs("{}]},", stdout);
    }
    std::printf("{}],\"max_count\":\"%d\"}",
                extended ? WEBMGMT_MISC_EXT_ACL_COUNT : WEBMGMT_WIFI_ACL_COUNT);
}

} // extern "C"
