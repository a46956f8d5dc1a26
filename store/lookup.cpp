// By-MAC lookups, the access-list readers and the forms' list lock.
#include <cerrno>
#include <cstring>
#include <fcntl.h>

#include "store/internal/lists.h"

namespace {

int clamp_count(int32_t count, int capacity) {
    return count < 0 ? 0 : (count > capacity ? capacity : count);
}

// Copies the elements in use (id above 0) of an access list into the buffer.
void fill_acl(misc_ext_acl *buffer, const acl_entry *entries, int capacity, int32_t mode) {
    std::memset(buffer, 0, sizeof *buffer);
    buffer->mode = mode;
    for (int i = 0; i < capacity; ++i)
        if (entries[i].id > 0) buffer->info[buffer->count++] = entries[i];
}

// The host's fcntl command for the device's 64-bit lock commands (12, 13, 14) or the
// host's own; -1 for anything else.
int host_lock_command(int cmd) {
    if (cmd == F_GETLK || cmd == 12) return F_GETLK;
    if (cmd == F_SETLK || cmd == 13) return F_SETLK;
    if (cmd == F_SETLKW || cmd == 14) return F_SETLKW;
    return -1;
}

short host_lock_type(int type) {
    switch (type) {
    case 0:
        return F_RDLCK;
    case 1:
        return F_WRLCK;
    case 2:
        return F_UNLCK;
    default:
        return -1;
    }
}

} // namespace

extern "C" {

int SC_Get_Ap_Info_By_Mac(const manage_ap_list_config *list, const uint8_t *mac) {
    if (!list) list = SC_Get_ManageApList_System_Config();
    if (!list || !mac) return -1;
    int n = clamp_count(list->count, WEBMGMT_AP_MAX);
    for (int i = 0; i < n; ++i)
        if (std::memcmp(list->m_ap[i].m_dev_mac.mac, mac, 6) == 0) return i;
    return -1;
}

int SC_Get_ApUser_Info_By_Mac(const ap_user_config *tables, const uint8_t *mac) {
    if (!tables) tables = SC_Get_ApUser_System_Config();
    if (!tables || !mac) return -1;
    int n = clamp_count(tables->count, WEBMGMT_AP_MAX);
    for (int i = 0; i < n; ++i)
        if (std::memcmp(tables->m_ap[i].m_ap_mac.mac, mac, 6) == 0) return i;
    return -1;
}

int GetAclItemList(const wifi_config *wifi, misc_ext_acl *buffer, int radio) {
    if (!wifi) wifi = SC_Get_SC_WiFi_Config();
    if (!wifi || !buffer || radio < 0 || radio >= WEBMGMT_WIFI_RADIO_COUNT) return -1;
    const wifi_acllist &acl = wifi->m_radio[radio].m_acllist;
    fill_acl(buffer, acl.element, WEBMGMT_WIFI_ACL_COUNT, acl.mode);
    return 0;
}

int GetAclItemList_Ext(const misc_ext_config *record, misc_ext_acl *buffer) {
    if (!record) record = SC_Get_Misc_Ext_System_Config();
    if (!record || !buffer) return -1;
    fill_acl(buffer, record->acl_info.info, WEBMGMT_MISC_EXT_ACL_COUNT, record->acl_info.mode);
    return 0;
}

int sc_lock_reg(int fd, int cmd, int type, int64_t offset, int whence, int64_t len, int32_t) {
    int host_cmd = host_lock_command(cmd);
    short host_type = host_lock_type(type);
    if (host_cmd < 0 || host_type < 0) {
        errno = EINVAL;
        return -1;
    }
    struct flock fl {};
    fl.l_type = host_type;
    fl.l_whence = short(whence);
    fl.l_start = off_t(offset);
    fl.l_len = off_t(len);
    int rc;
    do
        rc = ::fcntl(fd, host_cmd, &fl);
    while (rc < 0 && errno == EINTR && host_cmd == F_SETLKW);
    return rc;
}

} // extern "C"
