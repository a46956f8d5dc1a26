// Whole-file helpers: crash-safe rewrites and small reads.
#pragma once

#include <cstdio>
#include <span>
#include <string_view>
#include <sys/types.h>

namespace wm {

// Writes a replacement of `target` into `target` + ".cgi"; commit() flushes it to disk and
// renames it onto the target in one step, so that a crash leaves the old or the new file.
// Without commit() the temporary file is removed and the target stays as it was.
class AtomicFile {
  public:
    explicit AtomicFile(const char *target, const char *mode = "w");
    AtomicFile(const AtomicFile &) = delete;
    AtomicFile &operator=(const AtomicFile &) = delete;
    ~AtomicFile();
    FILE *get() const { return file_; }
    explicit operator bool() const { return file_ != nullptr; }
    // `durable` = false skips the flushes to disk but keeps the one-step rename: for
    // runtime state in RAM-backed /var that is rewritten on every request.
    bool commit(bool durable = true);

  private:
    FILE *file_ = nullptr;
    char target_[512];
    char temp_[520];
};

// The same replacement for content that is ready in memory, without a stdio stream: `data`
// goes to `target` + ".cgi", created afresh with permissions `mode` less the umask (never
// those of a temporary a crash left behind), and is renamed onto the target. `durable` as in
// AtomicFile::commit().
bool replace_file(const char *target, std::string_view data, mode_t mode, bool durable);

// Reads up to buffer.size() - 1 bytes of a file and terminates them; -1 when it cannot be
// opened, else the byte count.
long read_file_text(const char *path, std::span<char> buffer);
// The same for a regular file of ours: a short read is its end (as it is for any regular
// file on Linux), so a file that fits is read in one call. Never for /proc files, whose
// reads stop at each record.
long read_regular_file_text(const char *path, std::span<char> buffer);

// Writes all of `data`, retrying short writes; false on error.
bool write_all(int fd, const void *data, size_t length);

} // namespace wm
