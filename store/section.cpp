// Section files: the memory copy under /var, the flash copy, the factory defaults; the
// per-process record; crash-safe writes serialised by open-file-description locks.
#include "store/internal/section.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/uio.h>
#include <sys/stat.h>
#include <unistd.h>

#include "sys/support/files.h"
#include "sys/support/paths.h"
#include "sys/support/text.h"

namespace wm::store {
namespace {

// This process's copy of a section and what it last read or wrote of its lists (`seen`, kept
// only for a section that has lists). The pid and root tell a forked child, or a test that
// moved WEBMGMT_ROOT, to load afresh.
struct Cached {
    uint8_t *record;
    uint8_t *seen;
    pid_t pid;
    char root[kPathSize];
};
constinit Cached g_cache[kSectionCount] = {};

// "<dir>/<name><suffix>" under the device root, joined without a formatted print.
DevicePath section_file(const char *dir, const char *name, const char *suffix) {
    char fixed[kPathSize];
    std::span<char> room(fixed);
    size_t n = copy_bounded(room, dir);
    n += copy_bounded(room.subspan(n), "/");
    n += copy_bounded(room.subspan(n), name);
    copy_bounded(room.subspan(n), suffix);
    return device_path(fixed);
}

// mkdir -p of the directory that holds `path`. The directory itself is tried first: it
// usually exists, and then one call is all it costs.
void make_parent_dirs(const char *path) {
    char dir[kPathSize];
    copy_bounded(dir, path);
    char *last = std::strrchr(dir, '/');
    if (!last || last == dir) return;
    *last = '\0';
    if (::mkdir(dir, 0755) == 0 || errno != ENOENT) return;
    for (char *p = dir + 1; *p; ++p) {
        if (*p != '/') continue;
        *p = '\0';
        ::mkdir(dir, 0755);
        *p = '/';
    }
    ::mkdir(dir, 0755);
}

enum class ReadResult { kOk, kMissing, kRefused };

// Reads `size` bytes from the start of `fd` into `out` and checks that nothing follows, in
// one call for a whole section: it asks for the byte behind the section too, and a read of a
// regular file that stops short of what it asked for has met the end of the file.
bool read_all_then_end(int fd, uint8_t *out, uint32_t size) {
    uint8_t behind;
    uint32_t got = 0;
    for (;;) {
        struct iovec parts[2] = {{out + got, size - got}, {&behind, 1}};
        ssize_t n = ::readv(fd, parts, 2);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0 || uint64_t(got) + uint64_t(n) > size) return false;
        got += uint32_t(n);
        if (n == 0 || got == size) return got == size;
    }
}

// Reads exactly `size` bytes; a file of any other size is refused, never read past its end.
ReadResult read_exact(const char *path, void *out, uint32_t size) {
    UniqueFd fd(::open(path, O_RDONLY | O_CLOEXEC));
    if (!fd) return ReadResult::kMissing;
    if (read_all_then_end(fd.get(), static_cast<uint8_t *>(out), size)) return ReadResult::kOk;
    // Messages go straight to descriptor 2: the store needs no stdio stream of its own.
    off_t held = ::lseek(fd.get(), 0, SEEK_END);
    if (held >= 0 && held != off_t(size))
        ::dprintf(STDERR_FILENO,
                  "config_data_api: %s holds %lld bytes, the section has %u; ignored\n", path,
                  static_cast<long long>(held), size);
    else
        ::dprintf(STDERR_FILENO, "config_data_api: %s ended early; ignored\n", path);
    return ReadResult::kRefused;
}

// The memory copy lives in RAM on the device: flushing it to a disk buys nothing, so only
// the flash copy is synced. Both are replaced in one step.
bool write_copy(const char *path, const void *record, uint32_t size, bool durable) {
    make_parent_dirs(path);
    AtomicFile f(path, "wb");
    if (!f || std::fwrite(record, 1, size, f.get()) != size) return false;
    return f.commit(durable);
}

// Every record starts with the version bytes and then the lock-file path.
struct Head {
    uint8_t main_version;
    uint8_t sub_version;
    char lock_file[128];
};

void set_lock_file(const Section &s, void *record) {
    auto *head = static_cast<Head *>(record);
    DevicePath lock = section_file(fixed::kConfigMemoryDir, s.name, ".lock");
    std::memset(head->lock_file, 0, sizeof head->lock_file);
    // A path that does not fit is left empty: the forms then fail to lock, never lock a
    // truncated name.
    if (std::strlen(lock.c_str()) < sizeof head->lock_file)
        copy_bounded(head->lock_file, lock.c_str());
}

enum class Source { kMemory, kFlash, kDefaults };

// The stored section: the memory copy, else the flash copy, else the factory defaults.
Source load_current(SectionId id, void *record) {
    const Section &s = section(id);
    Source source = Source::kMemory;
    if (read_exact(section_file(fixed::kConfigMemoryDir, s.name, ".bin").c_str(), record, s.size) !=
        ReadResult::kOk) {
        source = Source::kFlash;
        if (read_exact(section_file(fixed::kConfigFlashDir, s.name, ".bin").c_str(), record,
                       s.size) != ReadResult::kOk) {
            source = Source::kDefaults;
            std::memset(record, 0, s.size);
            load_defaults(s, record);
            auto *head = static_cast<Head *>(record);
            head->main_version = kMainVersion;
            head->sub_version = kSubVersion;
        }
    }
    set_lock_file(s, record);
    return source;
}

bool same_list(const ListDesc &l, const uint8_t *a, const uint8_t *b) {
    return std::memcmp(a + l.count_offset, b + l.count_offset, l.count_size) == 0 &&
           std::memcmp(a + l.elem_offset, b + l.elem_offset, l.elem_end() - l.elem_offset) == 0;
}

// Calls `each` with every list of section `id`.
template <typename Each> void for_each_list(SectionId id, Each each) {
    size_t n = 0;
    const ListDesc *const *lists = all_lists(&n);
    for (size_t i = 0; i < n; ++i)
        if (lists[i]->section == id) each(*lists[i]);
}

bool has_lists(SectionId id) {
    bool any = false;
    for_each_list(id, [&](const ListDesc &) { any = true; });
    return any;
}

// Copies list `l` (its count and elements) from one record of its section to another.
void copy_list(const ListDesc &l, uint8_t *to, const uint8_t *from) {
    std::memcpy(to + l.count_offset, from + l.count_offset, l.count_size);
    std::memcpy(to + l.elem_offset, from + l.elem_offset, l.elem_end() - l.elem_offset);
}

// Keeps in `seen` what same_list() compares later.
void keep_lists(SectionId id, uint8_t *seen, const uint8_t *record) {
    for_each_list(id, [&](const ListDesc &l) { copy_list(l, seen, record); });
}

bool cache_is_current(const Cached &c) {
    return c.record && c.pid == ::getpid() && std::strcmp(c.root, device_root()) == 0;
}

// This process's cache when it is current, else null; never reloads it, since the caller's
// record may be the stale cache itself (a forked child saving the record it inherited).
Cached *current_cache(SectionId id) {
    Cached &c = g_cache[id];
    return cache_is_current(c) ? &c : nullptr;
}

int open_store_lock(const Section &s);

// Writes the memory copy of a section this process built from its defaults, under the
// store's lock and only while neither copy exists: a save made meanwhile is never replaced.
void store_built(SectionId id, const void *record) {
    const Section &s = section(id);
    UniqueFd fd(open_store_lock(s));
    FileLock lock(fd.get(), true);
    if (!lock.locked()) return;
    DevicePath memory = section_file(fixed::kConfigMemoryDir, s.name, ".bin");
    DevicePath flash = section_file(fixed::kConfigFlashDir, s.name, ".bin");
    if (::access(memory.c_str(), F_OK) == 0 || ::access(flash.c_str(), F_OK) == 0) return;
    write_copy(memory.c_str(), record, s.size, false);
}

Cached *load_cache(SectionId id) {
    Cached &c = g_cache[id];
    if (cache_is_current(c)) return &c;
    const Section &s = section(id);
    if (!c.record) {
        bool lists = has_lists(id);
        c.record = static_cast<uint8_t *>(std::malloc(s.size));
        c.seen = lists ? static_cast<uint8_t *>(std::malloc(s.size)) : nullptr;
        if (!c.record || (lists && !c.seen)) {
            std::free(c.record);
            std::free(c.seen);
            c.record = c.seen = nullptr;
            return nullptr;
        }
    }
    Source source = load_current(id, c.record);
    if (c.seen) keep_lists(id, c.seen, c.record);
    // The forms create the lock files in the memory directory: it must exist (it does when
    // the memory copy was read from it). A section built from its defaults is stored there,
    // so that the next process reads it instead of building it again.
    if (source == Source::kDefaults)
        store_built(id, c.record);
    else if (source == Source::kFlash)
        make_parent_dirs(section_file(fixed::kConfigMemoryDir, s.name, ".lock").c_str());
    c.pid = ::getpid();
    copy_bounded(c.root, device_root());
    return &c;
}

// The store's own lock file of a section: never the file the forms lock, so that a store
// call made while a form holds its lock neither waits for it nor, by closing, releases it.
int open_store_lock(const Section &s) {
    DevicePath lock = section_file(fixed::kConfigMemoryDir, s.name, ".store-lock");
    int fd = ::open(lock.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    if (fd < 0 && errno == ENOENT) {
        make_parent_dirs(lock.c_str()); // a fresh boot has no memory directory yet
        fd = ::open(lock.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    }
    return fd;
}

} // namespace

void *get(SectionId id) {
    Cached *c = load_cache(id);
    return c ? c->record : nullptr;
}

Transaction::Transaction(SectionId id)
    : id_(id), fd_(open_store_lock(section(id))), lock_(fd_.get(), true),
      record_(static_cast<uint8_t *>(std::malloc(section(id).size))) {
    if (ok()) load_current(id, record_.get());
}

int Transaction::commit(bool flash) {
    const Section &s = section(id_);
    if (!ok()) return CONFIG_ERR_IO;
    DevicePath memory = section_file(fixed::kConfigMemoryDir, s.name, ".bin");
    if (!write_copy(memory.c_str(), record_.get(), s.size, false)) return CONFIG_ERR_IO;
    if (flash) {
        DevicePath copy = section_file(fixed::kConfigFlashDir, s.name, ".bin");
        if (!write_copy(copy.c_str(), record_.get(), s.size, true)) return CONFIG_ERR_IO;
    }
    return CONFIG_OK;
}

void Transaction::publish(uint32_t begin, uint32_t end, void *caller) {
    const uint8_t *from = record_.get() + begin;
    size_t n = end - begin;
    Cached *c = current_cache(id_);
    if (caller) std::memmove(static_cast<uint8_t *>(caller) + begin, from, n);
    if (c) {
        if (c->record != caller) std::memcpy(c->record + begin, from, n);
        if (c->seen) std::memcpy(c->seen + begin, from, n);
    }
}

int save(SectionId id, const void *record, bool flash) {
    const Section &s = section(id);
    if (!record) return CONFIG_ERR_ARGUMENT;
    // Without a current cache this process saw no list of the section: the record is stored
    // whole.
    Cached *c = current_cache(id);
    Transaction t(id);
    if (!t.ok()) return CONFIG_ERR_IO;
    // Start from the caller's record; keep the stored list wherever the caller did not touch
    // it, so that an add another process made since this one read the section survives.
    HeapPtr<uint8_t> stored(static_cast<uint8_t *>(std::malloc(s.size)));
    if (!stored) return CONFIG_ERR_IO;
    std::memcpy(stored.get(), t.record(), s.size);
    std::memcpy(t.record(), record, s.size);
    if (c && c->seen) {
        for_each_list(id, [&](const ListDesc &l) {
            if (same_list(l, c->seen, t.record())) copy_list(l, t.record(), stored.get());
        });
    }
    set_lock_file(s, t.record());
    int rc = t.commit(flash);
    if (rc == CONFIG_OK) t.publish(0, s.size, const_cast<void *>(record));
    return rc;
}

int reset(SectionId id) {
    const Section &s = section(id);
    Transaction t(id);
    if (!t.ok()) return CONFIG_ERR_IO;
    for (const char *dir : {fixed::kConfigMemoryDir, fixed::kConfigFlashDir}) {
        DevicePath p = section_file(dir, s.name, ".bin");
        if (::unlink(p.c_str()) != 0 && errno != ENOENT) return CONFIG_ERR_IO;
    }
    g_cache[id].pid = 0; // reload on the next get
    return CONFIG_OK;
}

int section_index(const char *name) {
    if (!name) return -1;
    for (int i = 0; i < kSectionCount; ++i)
        if (std::strcmp(section(SectionId(i)).name, name) == 0) return i;
    return -1;
}

} // namespace wm::store
