// Login sessions: issuing, checking and ending them under the lock on /var/loginlock, and
// taking the token from the request.
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

#include "session/token_store.h"
#include "sys/support/exec.h"
#include "sys/support/files.h"
#include "sys/support/paths.h"
#include "sys/support/raii.h"
#include "sys/support/text.h"
#include "webmgmt.h"

// The lock must describe 64-bit offsets on the 32-bit device too.
static_assert(sizeof(((struct flock *)nullptr)->l_start) == 8, "64-bit fcntl locks");

namespace {

constexpr size_t kShortestToken = 10;
constexpr int64_t kIdleLimit = 1800; // seconds without a check that end a session
constexpr size_t kTokenCopy = 16;    // characters taken after "stork="

// The lock commands as the device's 32-bit C library numbers them. A program built there
// passes these; on a 64-bit host they mean nothing to the kernel, so they are mapped.
constexpr int kDeviceGetLk = 5, kDeviceSetLk = 6, kDeviceSetLkw = 7;
constexpr int kDeviceGetLk64 = 12, kDeviceSetLk64 = 13, kDeviceSetLkw64 = 14;

// The host's command for the device's (or the host's own) record-lock command; -1 if it
// is no record-lock command.
int host_lock_command(int command) {
    switch (command) {
    case kDeviceGetLk:
    case kDeviceGetLk64:
        return F_GETLK;
    case kDeviceSetLk:
    case kDeviceSetLk64:
        return F_SETLK;
    case kDeviceSetLkw:
    case kDeviceSetLkw64:
        return F_SETLKW;
    case F_OFD_GETLK:
    case F_OFD_SETLK:
    case F_OFD_SETLKW:
        return command;
    default:
        return -1;
    }
}

// The session lock: /var/loginlock opened read-write (it must exist) and write-locked as a
// whole, blocking (with Later: when lock() is called). The lock is released before the
// descriptor is closed.
class SessionLock {
  public:
    SessionLock() : SessionLock(wm::FileLock::Later{}) { lock(); }
    explicit SessionLock(wm::FileLock::Later later)
        : path_(wm::device_path(wm::fixed::kLoginLock)),
          fd_(::open(path_.c_str(), O_RDWR | O_CLOEXEC, 0644)), lock_(fd_.get(), later) {}
    bool opened() const { return bool(fd_); }
    void lock() { lock_.lock(); }
    // What the caller returns when the lock file cannot be opened: the length of the
    // message, which is printed where the CGI's reply goes.
    int report_open_failure() const { return std::printf("cannot open %s!\n", path_.c_str()); }

  private:
    wm::DevicePath path_;
    wm::UniqueFd fd_;
    wm::FileLock lock_; // declared last: released before the close
};

wm::DevicePath token_file() {
    return wm::device_path(wm::fixed::kUserToken);
}

// The slot of the session (client_ip, token), or -1.
int find_session(const token_list &list, const char *client_ip, const char *token) {
    for (int i = 0; i < WEBMGMT_TOKEN_SLOTS; ++i) {
        const token_record &slot = list.slot[i];
        if (slot.in_use == 1 &&
            wm::member_text(slot.client_ip, sizeof slot.client_ip) == client_ip &&
            wm::member_text(slot.token, sizeof slot.token) == token)
            return i;
    }
    return -1;
}

// Checks and refreshes the session in the loaded table: 0 when it is live, -1 when it is
// unknown or has been idle too long (it is then freed).
int touch_session(token_list &list, const char *client_ip, const char *token, int32_t now) {
    int index = find_session(list, client_ip, token);
    if (index < 0) return -1;
    token_record &slot = list.slot[index];
    if (int64_t(now) - slot.last_used >= kIdleLimit) {
        slot.in_use = 0;
        return -1;
    }
    slot.last_used = now;
    return 0;
}

// One check of a session against the table in `file`: its result, and the table the check
// leaves, which must be written unless the file holds it already (after a check in the same
// second, say). An expired session is freed, and so leaves the file.
struct SessionCheck {
    int result;
    bool rewrite;
    size_t size;
    char text[wm::kTokenTextMax];
};

void check_session_in(const char *file, const char *client_ip, const char *token, int32_t now,
                      SessionCheck &check) {
    token_list list{};
    wm::TokenText before;
    wm::read_token_text(file, before);
    if (before.present) wm::parse_token_text(before.view(), list);
    check.result = touch_session(list, client_ip, token, now);
    check.size = wm::format_token_text(list, check.text);
    check.rewrite = !before.present || before.view() != std::string_view(check.text, check.size);
}

// The at most 16 characters after `name` in `text`; false when `name` is absent.
bool copy_after(const char *text, const char *name, char *dst) {
    if (!text) return false;
    std::string_view all{text}, key{name};
    size_t at = all.find(key);
    if (at == std::string_view::npos) return false;
    std::string_view value = wm::head(all.data() + at + key.size(), kTokenCopy);
    std::memcpy(dst, value.data(), value.size());
    dst[value.size()] = '\0';
    return true;
}

} // namespace

extern "C" {

int lock_reg(int fd, int command, int type, int64_t start, int whence, int64_t length) {
    int host_command = host_lock_command(command);
    if (host_command < 0) {
        errno = EINVAL;
        return -1;
    }
    struct flock lock {};
    lock.l_type = static_cast<short>(type);
    lock.l_whence = static_cast<short>(whence);
    lock.l_start = start;
    lock.l_len = length;
    return ::fcntl(fd, host_command, &lock);
}

int auth_token(const char *client_ip, const char *token) {
    int32_t now = get_curr_time();
    if (!client_ip || !token || std::strlen(token) < kShortestToken) return -1;
    SessionLock lock{wm::FileLock::Later{}};
    if (!lock.opened()) return lock.report_open_failure();
    wm::DevicePath file = token_file();
    SessionCheck check;
    // The file is only ever replaced whole, so a read without the lock sees a whole table;
    // a check that leaves the file as it is needs the lock no more than a read does.
    check_session_in(file.c_str(), client_ip, token, now, check);
    if (!check.rewrite) return check.result;
    // Read again under the lock: another process may have replaced the file meanwhile.
    lock.lock();
    check_session_in(file.c_str(), client_ip, token, now, check);
    if (check.rewrite) wm::replace_file(file.c_str(), {check.text, check.size}, 0600, false);
    return check.result;
}

int generate_token2save(const char *client_ip, const char *token) {
    if (!client_ip || !token) return -1;
    SessionLock lock;
    if (!lock.opened()) return lock.report_open_failure();
    token_list list{};
    wm::DevicePath file = token_file();
    initial_tokenlist(file.c_str(), &list);
    insert_token(client_ip, token, &list);
    // A session that is not in the file would never be accepted: the login must not
    // answer as though it were (a full /var, a read-only file system).
    return wm::write_token_file(file.c_str(), &list) ? 0 : -1;
}

int clear_token(void) {
    SessionLock lock;
    if (!lock.opened()) return lock.report_open_failure();
    wm::DevicePath file = token_file();
    wm::remove_file(file.c_str());
    return 0;
}

int get_token(const char *name, char *dst) {
    if (!name || !dst) return 1;
    // The query string wins over the cookie.
    if (copy_after(std::getenv("QUERY_STRING"), name, dst)) return 0;
    if (copy_after(std::getenv("HTTP_COOKIE"), name, dst)) return 0;
    return 1;
}

int check_token(void) {
    char token[32] = {};
    if (get_token("stork=", token) != 0) return -1;
    const char *client_ip = std::getenv("REMOTE_ADDR");
    if (!client_ip) return -1;
    return auth_token(client_ip, token) == 0 ? 0 : -1;
}

} // extern "C"
