// Owners of file descriptors, stdio streams, directories, heap blocks and whole-file locks.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>
#include <cerrno>

namespace wm {

class UniqueFd {
  public:
    UniqueFd() = default;
    explicit UniqueFd(int fd) : fd_(fd) {}
    UniqueFd(UniqueFd &&o) noexcept : fd_(o.release()) {}
    UniqueFd &operator=(UniqueFd &&o) noexcept {
        reset(o.release());
        return *this;
    }
    UniqueFd(const UniqueFd &) = delete;
    UniqueFd &operator=(const UniqueFd &) = delete;
    ~UniqueFd() { reset(); }
    int get() const { return fd_; }
    explicit operator bool() const { return fd_ >= 0; }
    int release() {
        int fd = fd_;
        fd_ = -1;
        return fd;
    }
    void reset(int fd = -1) {
        if (fd_ >= 0) ::close(fd_);
        fd_ = fd;
    }

  private:
    int fd_ = -1;
};

class UniqueFile {
  public:
    UniqueFile() = default;
    explicit UniqueFile(FILE *f) : f_(f) {}
    UniqueFile(UniqueFile &&o) noexcept : f_(o.release()) {}
    UniqueFile(const UniqueFile &) = delete;
    UniqueFile &operator=(const UniqueFile &) = delete;
    ~UniqueFile() {
        if (f_) std::fclose(f_);
    }
    FILE *get() const { return f_; }
    explicit operator bool() const { return f_ != nullptr; }
    FILE *release() {
        FILE *f = f_;
        f_ = nullptr;
        return f;
    }
    // Closes now and reports fclose's result (0 when nothing was open).
    int close() {
        FILE *f = release();
        return f ? std::fclose(f) : 0;
    }

  private:
    FILE *f_ = nullptr;
};

class UniqueDir {
  public:
    explicit UniqueDir(DIR *d) : d_(d) {}
    UniqueDir(const UniqueDir &) = delete;
    UniqueDir &operator=(const UniqueDir &) = delete;
    ~UniqueDir() {
        if (d_) ::closedir(d_);
    }
    DIR *get() const { return d_; }
    explicit operator bool() const { return d_ != nullptr; }

  private:
    DIR *d_;
};

// A malloc'ed block freed on scope exit.
template <typename T> class HeapPtr {
  public:
    explicit HeapPtr(T *p = nullptr) : p_(p) {}
    HeapPtr(const HeapPtr &) = delete;
    HeapPtr &operator=(const HeapPtr &) = delete;
    ~HeapPtr() { std::free(p_); }
    T *get() const { return p_; }
    T *release() {
        T *p = p_;
        p_ = nullptr;
        return p;
    }
    explicit operator bool() const { return p_ != nullptr; }

  private:
    T *p_;
};

// A whole-file fcntl write lock, taken blocking and released on scope exit. `ofd` selects
// an open-file-description lock, which closing another descriptor of the file does not drop.
class FileLock {
  public:
    FileLock(int fd, bool ofd = false) : fd_(fd), ofd_(ofd) { lock(); }
    // Taken only when lock() is called.
    struct Later {};
    FileLock(int fd, Later) : fd_(fd), ofd_(false) {}
    FileLock(const FileLock &) = delete;
    FileLock &operator=(const FileLock &) = delete;
    ~FileLock() { unlock(); }
    bool locked() const { return locked_; }
    bool lock() {
        if (!locked_) locked_ = fd_ >= 0 && apply(F_WRLCK);
        return locked_;
    }
    void unlock() {
        if (locked_) apply(F_UNLCK);
        locked_ = false;
    }

  private:
    bool apply(short type) {
        struct flock fl {};
        fl.l_type = type;
        fl.l_whence = SEEK_SET;
        // F_SETLKW is the 64-bit command on both targets (_FILE_OFFSET_BITS=64 selects it).
        int cmd = ofd_ ? (type == F_UNLCK ? F_OFD_SETLK : F_OFD_SETLKW)
                       : (type == F_UNLCK ? F_SETLK : F_SETLKW);
        int rc;
        do
            rc = ::fcntl(fd_, cmd, &fl);
        while (rc < 0 && errno == EINTR);
        return rc == 0;
    }
    int fd_;
    bool ofd_;
    bool locked_ = false;
};

} // namespace wm
