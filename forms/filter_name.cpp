// filterate_name: is a rule name already used by another element of its list?
//
// The scan runs under a whole-file write lock on the list's lock file, so the name checks
// of one list are serialised across CGI processes. The add that follows a check is made
// after the lock is released: two requests can both pass (the store orders its writes).
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <span>

#include "config_data_api.h"
#include "forms/list_ops.h"
#include "sys/support/raii.h"
#include "sys/support/text.h"

namespace {

constexpr size_t kLockPathSize = 128;

// True when some slot other than `id` (and not empty, id 0) bears `name`.
template <typename Slot> bool name_taken(std::span<const Slot> slots, const char *name, int id) {
    for (const Slot &s : slots) {
        if (s.id <= 0 || s.id == id) continue;
        if (wm::member_text(s.name, sizeof s.name) == name) return true;
    }
    return false;
}

// Whether the kind's list holds `name` under another id; QoS lists never do.
bool scan_kind(const void *list, int kind, const char *name, int id) {
    switch (kind) {
    case WEBMGMT_KIND_TIMEGROUP:
        return name_taken<timegroup_entry>(
            static_cast<const timegroup_config *>(list)->usertimegroup.element, name, id);
    case WEBMGMT_KIND_IPGROUP:
        return name_taken<ipgroup_entry>(
            static_cast<const ipport_config *>(list)->useripgroup.element, name, id);
    case WEBMGMT_KIND_FWURL:
        return name_taken<fwurl_rule>(static_cast<const fwurl_config *>(list)->fwurl.element, name,
                                      id);
    case WEBMGMT_KIND_FWMAC:
        return name_taken<fwmac_rule>(static_cast<const fwmac_config *>(list)->fwmac.element, name,
                                      id);
    case WEBMGMT_KIND_FWIPPORT:
        return name_taken<fwipport_rule>(
            static_cast<const fwipport_config *>(list)->fwipport.element, name, id);
    case WEBMGMT_KIND_VSIPPORT:
        return name_taken<vsipport_rule>(
            static_cast<const vsipport_config *>(list)->vsipport.element, name, id);
    case WEBMGMT_KIND_ACL:
        return name_taken<acl_entry>(static_cast<const wifi_acllist *>(list)->element, name, id);
    default: // QoS: deliberately never a duplicate
        return false;
    }
}

bool known_kind(int kind) {
    return kind >= WEBMGMT_KIND_TIMEGROUP && kind <= WEBMGMT_KIND_ACL;
}

// The lock-file path of a list record: its text member after the two version bytes. An
// unknown kind (or the access list, which has none) leaves it empty.
void lock_path(const void *list, int kind, char (&path)[kLockPathSize]) {
    std::memset(path, 0, sizeof path);
    if (!known_kind(kind) || kind == WEBMGMT_KIND_ACL) return;
    // Every section record begins with the same head; qos_config stands for all of them.
    const char *member = static_cast<const qos_config *>(list)->lock_file;
    wm::copy_bounded(path, wm::member_text(member, sizeof(qos_config::lock_file)));
}

} // namespace

extern "C" {

int filterate_name(const void *list, const char *name, int id, int kind) {
    if (!list || !name) return -1;
    char path[kLockPathSize];
    lock_path(list, kind, path);

    if (kind == WEBMGMT_KIND_ACL) return scan_kind(list, kind, name, id) ? -1 : 0;
    // An unknown kind keeps the path empty, so the open fails like any missing file.
    wm::ListFileLock lock(path);
    if (!lock.locked()) {
        std::printf("Cannot Lock file %s", path);
        std::fflush(stdout);
        return -1;
    }
    bool taken = scan_kind(list, kind, name, id);
    return taken ? -1 : 0;
}

} // extern "C"
