#include "sys/support/files.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "sys/support/raii.h"
#include "sys/support/text.h"

namespace wm {
namespace {

constexpr char kTempSuffix[] = ".cgi";

// `target` and its temporary name into the buffers; false (nothing to open) when the target
// is too long for them, so that a cut name is never written.
bool name_temp(const char *target, std::span<char> copy, std::span<char> temp) {
    size_t n = target ? member_text(target, copy.size()).size() : copy.size();
    if (n >= copy.size() || n + sizeof kTempSuffix > temp.size()) return false;
    std::memcpy(copy.data(), target, n + 1);
    std::memcpy(temp.data(), target, n);
    std::memcpy(temp.data() + n, kTempSuffix, sizeof kTempSuffix);
    return true;
}

// Makes a rename onto `target` durable: syncs the directory that holds it.
void sync_parent_dir(const char *target) {
    char dir[512];
    if (copy_bounded(dir, target) >= sizeof dir - 1) return;
    char *slash = std::strrchr(dir, '/');
    if (!slash) return;
    *(slash == dir ? slash + 1 : slash) = '\0';
    UniqueFd d(::open(dir, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (d) ::fsync(d.get());
}

} // namespace

AtomicFile::AtomicFile(const char *target, const char *mode) {
    if (name_temp(target, target_, temp_)) file_ = std::fopen(temp_, mode);
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
    if (durable) sync_parent_dir(target_);
    return true;
}

bool replace_file(const char *target, std::string_view data, mode_t mode, bool durable) {
    char copy[512], temp[520];
    if (!name_temp(target, copy, temp)) return false;
    // Created afresh, so that it has `mode` (less the umask) and not the mode of a temporary
    // a crash left behind.
    constexpr int kCreate = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC;
    UniqueFd fd(::open(temp, kCreate, mode));
    if (!fd && errno == EEXIST && ::unlink(temp) == 0) fd.reset(::open(temp, kCreate, mode));
    bool ok =
        fd && write_all(fd.get(), data.data(), data.size()) && (!durable || ::fsync(fd.get()) == 0);
    ok = ::close(fd.release()) == 0 && ok;
    if (!ok || std::rename(temp, copy) != 0) {
        ::unlink(temp);
        return false;
    }
    if (durable) sync_parent_dir(copy);
    return true;
}

namespace {

long read_text(const char *path, std::span<char> buffer, bool short_read_ends) {
    if (buffer.empty()) return -1;
    UniqueFd fd(::open(path, O_RDONLY | O_CLOEXEC));
    if (!fd) return -1;
    size_t used = 0;
    while (used + 1 < buffer.size()) {
        size_t want = buffer.size() - 1 - used;
        ssize_t n = ::read(fd.get(), buffer.data() + used, want);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) break;
        used += size_t(n);
        if (short_read_ends && size_t(n) < want) break;
    }
    buffer[used] = '\0';
    return long(used);
}

} // namespace

long read_file_text(const char *path, std::span<char> buffer) {
    return read_text(path, buffer, false);
}

long read_regular_file_text(const char *path, std::span<char> buffer) {
    return read_text(path, buffer, true);
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
