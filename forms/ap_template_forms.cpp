// The default AP template's forms, one per panel of its page, and the template list's
// element form (add, modify, delete one, delete all) with its name check.
//
// The name check runs under the list's lock file, held from the check to the store's add or
// modify, and checks the list the store handed back from that add or modify: a CGI process
// loads the list once, so its own copy cannot show what another process added meanwhile.
// When the stored list then holds the name twice, the change is taken back before the lock
// is released, so two processes adding one name end with one template and one refusal.
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "config_data_api.h"
#include "forms/list_ops.h"
#include "conf/number_text.h"
#include "forms/ap_vars.h"
#include "sys/support/raii.h"
#include "sys/support/text.h"

namespace wm {
namespace {

DeleteKey key_of(int32_t id) {
    DeleteKey key;
    std::memset(&key, 0, sizeof key);
    char digits[12];
    std::snprintf(digits, sizeof digits, "%d", int(id));
    copy_bounded(key.text, digits);
    return key;
}

int32_t sent_id(const form_pair *pairs, int count) {
    char value[12] = {};
    if (!get_prop_n("m_wlan_group_id", value, pairs, count, sizeof value)) return 0;
    return text_to_int32(value);
}

// The list's lock file, write-locked while a name is checked. A list whose lock file cannot
// be opened is still checked, under no lock.
struct LockFile {
    char path[sizeof(ap_template_list_config::lock_file) + 1];
};
LockFile lock_file_of(const ap_template_list_config &list) {
    LockFile f{};
    copy_bounded(f.path, member_text(list.lock_file, sizeof list.lock_file));
    return f;
}

// Whether a used template other than `id` bears `name`.
bool name_taken(const ap_template_list_config &list, const char *name, int32_t id) {
    std::string_view want = member_text(name, sizeof list.m_template[0].m_wlan_group_name);
    for (const ap_template_entry &t : list.m_template) {
        if (t.m_wlan_group_id <= 0 || t.m_wlan_group_id == id) continue;
        if (member_text(t.m_wlan_group_name, sizeof t.m_wlan_group_name) == want) return true;
    }
    return false;
}

// A zeroed heap record: a template is too large for a CGI program's stack.
template <typename T> T *New() {
    return static_cast<T *>(std::calloc(1, sizeof(T)));
}

const ap_template_entry *find_template(const ap_template_list_config &list, int32_t id) {
    if (id <= 0) return nullptr;
    for (const ap_template_entry &t : list.m_template)
        if (t.m_wlan_group_id == id) return &t;
    return nullptr;
}

// The variables every template form sends: identity, radios, blocks.
void apply_template(const FormVars &v, ap_template_entry &t) {
    v.text("m_wlan_group_name", t.m_wlan_group_name);
    v.text("m_modelname", t.m_modelname);
    apply_radios(v, t.m_radio);
    apply_timereboot(v, t.m_timereboot);
    apply_weblogin(v, t.m_weblogin);
    apply_iptv(v, t.m_iptv);
}

// A new template: the default template's radios and blocks, then the request.
int add_template(ap_template_list_config *list, const FormVars &v) {
    HeapPtr<ap_template_entry> t(New<ap_template_entry>());
    if (!t) return -1;
    ap_template_entry &e = *t.get();
    if (const defap_config *def = SC_Get_DefApTemplate_System_Config()) {
        std::memcpy(e.m_radio, def->m_radio, sizeof e.m_radio);
        e.m_timereboot = def->m_timereboot;
        e.m_weblogin = def->m_weblogin;
        e.m_iptv = def->m_iptv;
    }
    apply_template(v, e);
    e.m_wlan_group_id = 0;

    ListFileLock lock(lock_file_of(*list).path);
    int rc = AddApTemplateItem(list, &e);
    if (rc == CONFIG_ERR_FULL) return -1;
    if (rc != CONFIG_OK) return rc;
    if (name_taken(*list, e.m_wlan_group_name, e.m_wlan_group_id)) {
        DeleteKey key = key_of(e.m_wlan_group_id);
        DelApTemplateItem(list, &key);
        return WEBMGMT_FORM_DUPLICATE;
    }
    SC_Save_System_ApTemplateList_Config2Flash(list);
    return rc;
}

// A stored template changed: its stored content, then the request.
int modify_template(ap_template_list_config *list, int32_t id, const FormVars &v) {
    const ap_template_entry *stored = find_template(*list, id);
    if (!stored) return -1;
    HeapPtr<ap_template_entry> before(New<ap_template_entry>()), t(New<ap_template_entry>());
    if (!before || !t) return -1;
    ap_template_entry &e = *t.get();
    std::memcpy(before.get(), stored, sizeof *stored);
    std::memcpy(&e, stored, sizeof *stored);
    apply_template(v, e);
    e.m_wlan_group_id = id;

    ListFileLock lock(lock_file_of(*list).path);
    int rc = ModifyApTemplateItem(list, &e);
    if (rc == CONFIG_ERR_NO_ID) return -1;
    if (rc != CONFIG_OK) return rc;
    if (name_taken(*list, e.m_wlan_group_name, id)) {
        ModifyApTemplateItem(list, before.get());
        return WEBMGMT_FORM_DUPLICATE;
    }
    SC_Save_System_ApTemplateList_Config2Flash(list);
    return rc;
}

} // namespace
} // namespace wm

using namespace wm;

extern "C" {

int save_defap_radio_config(defap_config *record, const form_pair *pairs, int count) {
    if (!record) return -1;
    apply_radios(FormVars(pairs, count), record->m_radio);
    return SC_Save_System_DefApTemplate_Config2Flash(record);
}

int save_defap_timereboot_config(defap_config *record, const form_pair *pairs, int count) {
    if (!record) return -1;
    apply_timereboot(FormVars(pairs, count), record->m_timereboot);
    return SC_Save_System_DefApTemplate_Config2Flash(record);
}

int save_defap_weblogin_config(defap_config *record, const form_pair *pairs, int count) {
    if (!record) return -1;
    apply_weblogin(FormVars(pairs, count), record->m_weblogin);
    return SC_Save_System_DefApTemplate_Config2Flash(record);
}

int save_defap_iptv_config(defap_config *record, const form_pair *pairs, int count) {
    if (!record) return -1;
    apply_iptv(FormVars(pairs, count), record->m_iptv);
    return SC_Save_System_DefApTemplate_Config2Flash(record);
}

int save_apTemplate_config_element(ap_template_list_config *list, int op, const form_pair *pairs,
                                   int count) {
    if (!list) return -1;
    FormVars v(pairs, count);
    if (op == kOpDelete) {
        DeleteKey key = delete_key(pairs, count, "m_wlan_group_id");
        DelApTemplateItem(list, &key);
        return 0;
    }
    if (op == kOpDeleteAll) {
        DelAllApTemplateItem();
        return 0;
    }
    if (op == kOpAdd) return add_template(list, v);
    return modify_template(list, sent_id(pairs, count), v);
}

} // extern "C"
