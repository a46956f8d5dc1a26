#include "harness.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <arpa/inet.h>
#include <fcntl.h>
#include <sched.h>
#include <fstream>
#include <sstream>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace wmtest {
namespace {

// Reads both pipes to their ends without letting either fill up.
void collect(int out_fd, int err_fd, ChildResult &r) {
    std::string *dst[2] = {&r.out, &r.err};
    int fds[2] = {out_fd, err_fd};
    int open_count = 2;
    fd_set set;
    while (open_count) {
        FD_ZERO(&set);
        int maxfd = -1;
        for (int fd : fds)
            if (fd >= 0) {
                FD_SET(fd, &set);
                maxfd = std::max(maxfd, fd);
            }
        if (select(maxfd + 1, &set, nullptr, nullptr, nullptr) < 0) continue;
        for (int i = 0; i < 2; ++i) {
            if (fds[i] < 0 || !FD_ISSET(fds[i], &set)) continue;
            char buf[65536];
            ssize_t n = read(fds[i], buf, sizeof buf);
            if (n <= 0) {
                close(fds[i]);
                fds[i] = -1;
                --open_count;
            } else {
                dst[i]->append(buf, size_t(n));
            }
        }
    }
}

} // namespace

TempRoot::TempRoot() {
    const char *old = getenv("WEBMGMT_ROOT");
    had_root_ = old != nullptr;
    if (old) old_root_ = old;
    char templ[] = "/tmp/webmgmt-test-XXXXXX";
    dir_ = mkdtemp(templ);
    for (const char *sub : {"/var", "/var/run", "/tmp", "/usr", "/usr/sbin", "/etc"})
        mkdir((dir_ + sub).c_str(), 0755);
    symlink("/proc", (dir_ + "/proc").c_str());
    setenv("WEBMGMT_ROOT", dir_.c_str(), 1);
}

TempRoot::~TempRoot() {
    if (had_root_)
        setenv("WEBMGMT_ROOT", old_root_.c_str(), 1);
    else
        unsetenv("WEBMGMT_ROOT");
    if (dir_.size() > 10) run_shell("rm -rf '" + dir_ + "'");
}

DefaultsRoot::DefaultsRoot() {
    setenv("WEBMGMT_DEFAULTS_DIR", (source_dir() + "/conf/defaults").c_str(), 1);
}

DefaultsRoot::~DefaultsRoot() {
    unsetenv("WEBMGMT_DEFAULTS_DIR");
}

void TempRoot::make_dir(const std::string &device_path) const {
    for (size_t at = device_path.find('/', 1); at != std::string::npos;
         at = device_path.find('/', at + 1))
        mkdir(path(device_path.substr(0, at)).c_str(), 0755);
    mkdir(path(device_path).c_str(), 0755);
}

void TempRoot::put(const std::string &device_path, const std::string &content) const {
    make_dir(device_path.substr(0, device_path.rfind('/')));
    write_file(path(device_path), content);
}

void TempRoot::own_proc() const {
    unlink(path("/proc").c_str());
    mkdir(path("/proc").c_str(), 0755);
}

int ChildResult::exit_code() const {
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

ChildResult run_in_child(const std::function<int()> &body, const std::string &input) {
    ChildResult r;
    int in[2], out[2], err[2];
    if (pipe(in) || pipe(out) || pipe(err)) return r;
    fflush(nullptr);
    pid_t pid = fork();
    if (pid == 0) {
        dup2(in[0], 0);
        dup2(out[1], 1);
        dup2(err[1], 2);
        for (int fd : {in[0], in[1], out[0], out[1], err[0], err[1]})
            close(fd);
        int rc = body();
        fflush(nullptr);
        _exit(rc);
    }
    close(in[0]);
    close(out[1]);
    close(err[1]);
    // Feed standard input from a second child so that a large body cannot deadlock us.
    pid_t feeder = fork();
    if (feeder == 0) {
        close(out[0]);
        close(err[0]);
        size_t off = 0;
        while (off < input.size()) {
            ssize_t n = write(in[1], input.data() + off, input.size() - off);
            if (n <= 0) break;
            off += size_t(n);
        }
        _exit(0);
    }
    close(in[1]);
    collect(out[0], err[0], r);
    waitpid(pid, &r.status, 0);
    waitpid(feeder, nullptr, 0);
    return r;
}

std::string output_of(const std::function<void()> &body) {
    ChildResult r = run_in_child([&] {
        body();
        return 0;
    });
    EXPECT_EQ(r.exit_code(), 0) << r.err;
    return r.out;
}

ChildResult run_post(const std::string &body, const Form &handle) {
    return run_in_child(
        [&] {
            setenv("REQUEST_METHOD", "POST", 1);
            setenv("CONTENT_TYPE", "application/x-www-form-urlencoded", 1);
            setenv("CONTENT_LENGTH", std::to_string(body.size()).c_str(), 1);
            static form_pair pairs[WEBMGMT_FORM_PAIRS];
            int n = process_queue(pairs);
            return handle(pairs, n);
        },
        body);
}

int post_form(const std::string &body, const Form &form) {
    ChildResult r = run_post(body, [&](const form_pair *p, int n) {
        std::printf("\nrc=%d", form(p, n));
        return 0;
    });
    size_t at = r.out.rfind("\nrc=");
    EXPECT_EQ(r.exit_code(), 0) << r.err;
    EXPECT_NE(at, std::string::npos) << r.out << r.err;
    return at == std::string::npos ? -999 : std::atoi(r.out.c_str() + at + 4);
}

std::string url_encode(const std::string &s) {
    std::string out;
    for (unsigned char c : s) {
        if (std::isalnum(c) || c == '.' || c == '-' || c == '_') {
            out += char(c);
        } else {
            char hex[4];
            std::snprintf(hex, sizeof hex, "%%%02X", c);
            out += hex;
        }
    }
    return out;
}

std::string mac_text(const uint8_t *mac, bool upper) {
    char t[18];
    std::snprintf(t, sizeof t,
                  upper ? "%02X:%02X:%02X:%02X:%02X:%02X" : "%02x:%02x:%02x:%02x:%02x:%02x", mac[0],
                  mac[1], mac[2], mac[3], mac[4], mac[5]);
    return t;
}

std::string lease_record(uint32_t expiry, const char *ip, const uint8_t *mac,
                         const std::string &name) {
    std::string rec(36, '\0');
    uint32_t e = htonl(expiry);
    std::memcpy(&rec[0], &e, 4);
    inet_pton(AF_INET, ip, &rec[4]);
    std::memcpy(&rec[8], mac, 6);
    std::memcpy(&rec[14], name.data(), std::min<size_t>(name.size(), 20));
    return rec;
}

std::string param_name(std::string label) {
    for (char &c : label)
        if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
    return label;
}

ChildResult run_shell(const std::string &command, const std::string &input) {
    return run_in_child(
        [&] {
            execl("/bin/sh", "sh", "-c", command.c_str(), static_cast<char *>(nullptr));
            return 127;
        },
        input);
}

std::string read_file(const std::string &path) {
    std::ifstream f(path, std::ios::binary);
    std::stringstream ss;
    ss << f.rdbuf();
    return ss.str();
}

void write_file(const std::string &path, const std::string &content) {
    std::ofstream f(path, std::ios::binary | std::ios::trunc);
    f << content;
}

bool file_exists(const std::string &path) {
    struct stat st;
    return lstat(path.c_str(), &st) == 0;
}

std::string source_dir() {
    return WEBMGMT_SOURCE_DIR;
}
std::string binary_dir() {
    const char *b = getenv("WEBMGMT_BIN_DIR");
    return b ? b : WEBMGMT_BINARY_DIR;
}

Child start_child(const std::function<int()> &body) {
    int p[2];
    if (pipe(p) != 0) return {};
    std::fflush(nullptr);
    pid_t pid = fork();
    if (pid == 0) {
        close(p[0]);
        int v = body();
        if (write(p[1], &v, sizeof v) != sizeof v) _exit(2);
        _exit(0);
    }
    close(p[1]);
    return {pid, p[0]};
}

int finish_child(const Child &c) {
    int v = -999;
    if (read(c.fd, &v, sizeof v) != sizeof v) v = -998;
    close(c.fd);
    int status = 0;
    waitpid(c.pid, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    return v;
}

bool waiting_for_lock(pid_t pid) {
    std::ifstream locks("/proc/locks");
    std::string line;
    while (std::getline(locks, line)) {
        std::istringstream fields(line);
        std::string number, arrow, kind, mode, access;
        long who = 0;
        if (fields >> number >> arrow >> kind >> mode >> access >> who && arrow == "->" &&
            who == long(pid))
            return true;
    }
    return false;
}

int result_after_lock_wait(const std::string &path, const std::function<int()> &body,
                           const std::function<void()> &while_waiting) {
    int fd = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    EXPECT_GE(fd, 0) << path;
    struct flock fl {};
    fl.l_type = F_WRLCK;
    fl.l_whence = SEEK_SET;
    EXPECT_EQ(fcntl(fd, F_SETLKW, &fl), 0);
    Child c = start_child(body);
    bool seen = false;
    for (long spins = 0; spins < 100000000 && !seen; ++spins) {
        seen = waiting_for_lock(c.pid);
        int status;
        if (!seen && waitpid(c.pid, &status, WNOHANG) == c.pid) {
            ADD_FAILURE() << "the child finished while " << path << " was locked";
            return -997;
        }
        sched_yield();
    }
    EXPECT_TRUE(seen);
    if (while_waiting) while_waiting();
    fl.l_type = F_UNLCK;
    EXPECT_EQ(fcntl(fd, F_SETLK, &fl), 0);
    close(fd);
    return finish_child(c);
}

std::pair<int, int> run_together(const Racer &a, const Racer &b) {
    int ready[2], go[2];
    if (pipe(ready) != 0 || pipe(go) != 0) return {-997, -997};
    auto racer = [&](const Racer &r) {
        return start_child([&] {
            close(ready[0]);
            close(go[1]);
            return r([&] {
                char byte = 'r';
                return write(ready[1], &byte, 1) == 1 && read(go[0], &byte, 1) == 1;
            });
        });
    };
    Child ca = racer(a), cb = racer(b);
    close(ready[1]);
    close(go[0]);
    char byte;
    EXPECT_EQ(read(ready[0], &byte, 1), 1);
    EXPECT_EQ(read(ready[0], &byte, 1), 1);
    EXPECT_EQ(write(go[1], "gg", 2), 2);
    close(go[1]);
    close(ready[0]);
    int ra = finish_child(ca);
    return {ra, finish_child(cb)};
}

} // namespace wmtest
