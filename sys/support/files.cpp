#include "sys/support/files.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

#include "sys/support/raii.h"
#include "sys/support/text.h"

namespace wm {

AtomicFile::AtomicFile(const char *target, const char *mode) {
    // A target too long for the buffers is never opened (never a cut name).
    size_t n = target ? strnlen(target, sizeof target_) : sizeof target_;
    if (n >= sizeof target_) return;
    std::memcpy(target_, target, n + 1);
    std::memcpy(temp_, target, n);
    std::memcpy(temp_ + n, ".cgi", sizeof ".cgi");
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
