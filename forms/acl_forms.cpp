// The wireless access-list forms: the mode of all radios, a radio's list, the global list.
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>

#include "config_data_api.h"
#include "forms/list_ops.h"
#include "forms/binding.h"
#include "sys/support/paths.h"
#include "sys/support/raii.h"

namespace wm {
namespace {

// An access-list entry as the pages send it; the MAC is kept as the text "mac" carries.
void bind_acl(Bindings &b, acl_entry &e) {
    b.add<conv::kInt>("id", e.id);
    b.add<conv::kText>("name", e.name);
    b.add<conv::kText>("status", e.status);
    b.add<conv::kText>("mark", e.mark);
    b.add<conv::kText>("mac", e.mac);
}

acl_entry bound_entry(const form_pair *pairs, int count) {
    acl_entry e;
    std::memset(&e, 0, sizeof e);
    Bindings b;
    bind_acl(b, e);
    b.apply(pairs, count);
    return e;
}

bool radio_ok(int radio) {
    return radio >= 0 && radio < WEBMGMT_WIFI_RADIO_COUNT;
}

// Add or modify under the access-list lock: the lock is taken before the wireless section
// is read, so a request that waited for it checks the list another one just stored.
int add_or_modify_acl(int op, const form_pair *pairs, int count, int radio) {
    acl_entry e = bound_entry(pairs, count);

    wifi_config *wifi = nullptr;
    int rc;
    {
        ListFileLock lock(device_path(fixed::kWifiAclLock).c_str());
        if (!lock.locked()) {
            std::printf("Cannot Lock file %s", fixed::kWifiAclLock);
            std::fflush(stdout);
            return WEBMGMT_FORM_DUPLICATE;
        }
        wifi = SC_Get_SC_WiFi_Config();
        if (!wifi) {
            rc = -1;
        } else if (filterate_name(&wifi->m_radio[radio].m_acllist, e.name, e.id,
                                  WEBMGMT_KIND_ACL) != 0) {
            rc = WEBMGMT_FORM_DUPLICATE;
        } else {
            rc = op == kOpAdd ? AddAclItem(wifi, &e, radio) : ModifyAclItem(wifi, &e, radio);
        }
    }
    if (wifi && rc != WEBMGMT_FORM_DUPLICATE) SC_Save_SC_WiFi_Config(wifi);
    return rc;
}

} // namespace
} // namespace wm

using namespace wm;

extern "C" {

int save_wifi_acl_mode_config(int mode) {
    wifi_config *wifi = SC_Get_SC_WiFi_Config();
    if (!wifi) return -1;
    for (wifi_radio &r : wifi->m_radio)
        r.m_acllist.mode = mode;
    SC_Save_SC_WiFi_Config(wifi);
    return 0;
}

int save_wifi_acl_config(int op, const form_pair *pairs, int count, int radio) {
    // The device indexed the radios with whatever it was given.
    if (!radio_ok(radio)) return -1;
    if (op == kOpDelete) {
        DeleteKey key = delete_key(pairs, count);
        DelAclItem(SC_Get_SC_WiFi_Config(), &key, radio);
        return 0;
    }
    if (op == kOpDeleteAll) {
        DelAllAclItem(SC_Get_SC_WiFi_Config(), radio);
        return 0;
    }
    return add_or_modify_acl(op, pairs, count, radio);
}

int save_wifi_acl_config_ext(int op, const form_pair *pairs, int count) {
    misc_ext_config *ext = SC_Get_Misc_Ext_System_Config();
    if (!ext) return -1;
    int rc = 0;
    if (op == kOpDelete) {
        DeleteKey key = delete_key(pairs, count);
        DelAclItem_Ext(ext, &key);
    } else {
        // This list has no delete-all: -2 modifies like any other op but 0.
        acl_entry e = bound_entry(pairs, count);
        rc = op == kOpAdd ? AddAclItem_Ext(ext, &e) : ModifyAclItem_Ext(ext, &e);
    }
    SC_Save_System_Misc_Ext_Config(ext);
    return rc;
}

} // extern "C"
