#include "sys/support/files.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

#include "sys/support/raii.h"
#include "sys/support/text.h"

namespace wm {

AtomicFile::AtomicFile(const char *target, const char *mode) {
    int n = std::snprintf(target_, sizeof target_, "%s", target);
    int m = std::snprintf(temp_, sizeof temp_, "%s.cgi", target);
    if (n < 0 || n >= int(sizeof target_) || m < 0 || m >= int(sizeof temp_)) return;
    file_ = std::fopen(temp_, mode);
}

AtomicFile::~AtomicFile() {
    if (file_) {
        std::fclose(file_);
        ::unlink(temp_);
    }
}

bool AtomicFile::commit(bool durable) {
    if (!file_) return false;
    bool ok = std::fflush(file_) == 0 && (!durable || ::fsync(fileno(file_)) == 0);
    ok = (std::fclose(file_) == 0) && ok;
    file_ = nullptr;
    if (!ok || std::rename(temp_, target_) != 0) {
        ::unlink(temp_);
        return false;
    }
    if (!durable) return true;
    // Make the rename itself durable: sync the directory that holds the target.
    char dir[sizeof target_];
    copy_bounded(dir, target_);
    char *slash = std::strrchr(dir, '/');
    if (slash) {
        *(slash == dir ? slash + 1 : slash) = '\0';
        UniqueFd d(::open(dir, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (d) ::fsync(d.get());
    }
    return true;
}

long read_file_text(const char *path, std::span<char> buffer) {
    if (buffer.empty()) return -1;
    UniqueFd fd(::open(path, O_RDONLY | O_CLOEXEC));
    if (!fd) return -1;
    size_t used = 0;
    while (used + 1 < buffer.size()) {
        ssize_t n = ::read(fd.get(), buffer.data() + used, buffer.size() - 1 - used);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) break;
        used += size_t(n);
    }
    buffer[used] = '\0';
    return long(used);
}

bool write_all(int fd, const void *data, size_t length) {
    const char *p = static_cast<const char *>(data);
    while (length) {
        ssize_t n = ::write(fd, p, length);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        p += n;
        length -= size_t(n);
    }
    return true;
}

} // namespace wm
