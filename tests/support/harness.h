// Test helpers: private device trees, child processes with captured output, files.
#pragma once

#include <cstring>
#include <functional>
#include <gtest/gtest.h>
#include <random>
#include <sys/types.h>
#include <string>
#include <utility>

#include "webmgmt.h"

namespace wmtest {

// A private device tree for one test: sets WEBMGMT_ROOT to a fresh directory with var/,
// tmp/, usr/sbin/ and a proc link to the real /proc; removes it all afterwards.
class TempRoot {
  public:
    TempRoot();
    ~TempRoot();
    TempRoot(const TempRoot &) = delete;
    TempRoot &operator=(const TempRoot &) = delete;
    const std::string &dir() const { return dir_; }
    // `device_path` (such as "/var/usertoken") inside the tree.
    std::string path(const std::string &device_path) const { return dir_ + device_path; }
    // Makes the directory `device_path` inside the tree, and those above it.
    void make_dir(const std::string &device_path) const;
    // Writes `content` to `device_path` inside the tree, making the directories it needs.
    void put(const std::string &device_path, const std::string &content) const;
    // Makes /proc a directory of the test's own instead of the link to the real one.
    void own_proc() const;

  private:
    std::string dir_;
    std::string old_root_;
    bool had_root_ = false;
};

// A TempRoot whose store starts from the catalogue's factory defaults (conf/defaults).
class DefaultsRoot : public TempRoot {
  public:
    DefaultsRoot();
    ~DefaultsRoot();
};

struct ChildResult {
    int status = -1; // wait status
    std::string out; // what the child wrote on standard output
    std::string err; // and on standard error
    int exit_code() const;
};

// Runs `body` in a forked child whose standard input is `input`; the child exits with the
// value `body` returns. Use it for anything that prints, exits or reads standard input.
ChildResult run_in_child(const std::function<int()> &body, const std::string &input = "");

// What `body`, run in a child, prints on standard output (the child must end normally).
std::string output_of(const std::function<void()> &body);

// A form handler: the pairs process_queue decoded.
using Form = std::function<int(const form_pair *, int)>;

// A CGI program in a child handling a urlencoded POST of `body`: process_queue decodes it
// and `handle` gets the pairs; the child exits with what `handle` returns.
ChildResult run_post(const std::string &body, const Form &handle);

// One such request handed to `form`: the form's result (-999 when the child reported none).
int post_form(const std::string &body, const Form &form);

// "%XX" for every byte but letters, digits and "-._".
std::string url_encode(const std::string &s);

// A random generator with a fresh seed, which the failures of its scope name.
class SeededRandom : public std::mt19937 {
  public:
    SeededRandom() : SeededRandom(std::random_device{}()) {}

  private:
    explicit SeededRandom(unsigned seed)
        : std::mt19937(seed), trace_(__FILE__, __LINE__, "seed " + std::to_string(seed)) {}
    ::testing::ScopedTrace trace_;
};

// A text member as far as its terminator or its end.
template <size_t N> std::string text(const char (&member)[N]) {
    return std::string(member, strnlen(member, N));
}
// Writes `value` into a text member; a value as long as the member leaves no terminator.
template <size_t N> void put(char (&member)[N], const std::string &value) {
    std::memset(member, 0, N);
    std::memcpy(member, value.data(), value.size() < N ? value.size() : N);
}
// A MAC as text, "00:1A:..." (upper case) or "00:1a:..." (lower case).
std::string mac_text(const uint8_t *mac, bool upper = true);

// One lease as the address server stores it: 36 bytes, the expiry and the address in
// network order, the MAC, a host name of up to 20 bytes. Its file is an 8-byte header
// (std::string(8, '\0')) and the leases.
std::string lease_record(uint32_t expiry, const char *ip, const uint8_t *mac,
                         const std::string &name);

// A label as a test-parameter name: every character but letters and digits made '_'.
std::string param_name(std::string label);

// A forked child that reports one int through a pipe: started by start_child, collected by
// finish_child (which also expects a clean exit).
struct Child {
    pid_t pid = -1;
    int fd = -1;
};
Child start_child(const std::function<int()> &body);
int finish_child(const Child &c);

// Whether /proc/locks shows process `pid` waiting for a lock. A waiter's line reads
// "<n>: -> <kind> <mode> <access> <pid> <device:inode> <start> <end>"; only the pid field
// counts (another test's lock may start at an offset that reads like the pid).
bool waiting_for_lock(pid_t pid);

// Holds a write lock on `path` while `body` runs in a child; once the kernel lists the
// child as waiting for that lock (watched without a clock), runs `while_waiting`, releases
// the lock and returns the child's result. A child that ends before it waits is a failure.
int result_after_lock_wait(const std::string &path, const std::function<int()> &body,
                           const std::function<void()> &while_waiting = {});

// Two children released at once: each calls the `go` it is given when it is ready, which
// returns (true) once both are; their results.
using Racer = std::function<int(const std::function<bool()> &go)>;
std::pair<int, int> run_together(const Racer &a, const Racer &b);

// Runs a shell command line and captures its output.
ChildResult run_shell(const std::string &command, const std::string &input = "");

std::string read_file(const std::string &path);
void write_file(const std::string &path, const std::string &content);
bool file_exists(const std::string &path);

// The source tree and the build tree of the project.
std::string source_dir();
std::string binary_dir();

} // namespace wmtest
