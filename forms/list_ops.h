// What the list forms share: the op codes of their element forms, the key the store's
// delete calls take, and the write lock on a list's lock file that a name check holds.
#pragma once

#include <fcntl.h>

#include <cstring>

#include "config_data_api.h"
#include "sys/support/raii.h"
#include "webmgmt.h"

namespace wm {

inline constexpr int kOpDelete = -1;
inline constexpr int kOpDeleteAll = -2;
inline constexpr int kOpAdd = 0;

// The key of a delete: an id as text in a zeroed 32-bit word and a byte.
struct DeleteKey {
    char text[5];
};

// The key named by the form variable `name`. Four characters and the terminator fit; a
// longer id is cut rather than overrun.
inline DeleteKey delete_key(const form_pair *pairs, int count, const char *name = "id") {
    DeleteKey key;
    std::memset(&key, 0, sizeof key);
    get_prop_n(name, key.text, pairs, count, sizeof key.text);
    return key;
}

// The lock file `path`, write-locked (waiting for it) for the life of the object through
// the store's sc_lock_reg, which maps the device's 64-bit lock commands to the host's own.
// A path that is empty or cannot be opened holds no lock; locked() says so.
class ListFileLock {
  public:
    explicit ListFileLock(const char *path) {
        if (path[0] != '\0') fd_.reset(::open(path, O_RDWR | O_CREAT | O_CLOEXEC, 0644));
        if (fd_) sc_lock_reg(fd_.get(), kCmdSetWait, kWrite, 0, SEEK_CUR, 0, 0);
    }
    ~ListFileLock() {
        if (fd_) sc_lock_reg(fd_.get(), kCmdSet, kUnlock, 0, SEEK_CUR, 0, 0);
    }
    ListFileLock(const ListFileLock &) = delete;
    ListFileLock &operator=(const ListFileLock &) = delete;
    bool locked() const { return bool(fd_); }

  private:
    static constexpr int kCmdSet = 13;
    static constexpr int kCmdSetWait = 14;
    static constexpr int kWrite = 1;
    static constexpr int kUnlock = 2;
    UniqueFd fd_;
};

} // namespace wm
