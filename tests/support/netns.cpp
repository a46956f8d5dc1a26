#include "support/netns.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cstdio>
#include <sstream>

namespace wmtest {

std::string ip_tool() {
    for (const char *p : {"/usr/sbin/ip", "/sbin/ip", "/usr/bin/ip", "/bin/ip"})
        if (access(p, X_OK) == 0) return p;
    return "";
}

bool write_text(const char *path, const std::string &text) {
    int fd = open(path, O_WRONLY | O_CLOEXEC);
    if (fd < 0) return false;
    bool ok = write(fd, text.data(), text.size()) == ssize_t(text.size());
    close(fd);
    return ok;
}

bool enter_namespaces() {
    uid_t uid = getuid();
    gid_t gid = getgid();
    if (unshare(CLONE_NEWUSER | CLONE_NEWNET | CLONE_NEWNS) != 0) return false;
    write_text("/proc/self/setgroups", "deny");
    if (!write_text("/proc/self/uid_map", "0 " + std::to_string(uid) + " 1\n") ||
        !write_text("/proc/self/gid_map", "0 " + std::to_string(gid) + " 1\n"))
        return false;
    return mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           mount("sysfs", "/sys", "sysfs", 0, nullptr) == 0;
}

void check(const std::string &name, const std::string &library, const std::string &reference) {
    auto one_line = [](const std::string &s) {
        std::string out;
        for (char c : s)
            out += c == '\n' ? "\\n" : c == '\t' ? "\\t" : std::string(1, c);
        return out;
    };
    std::printf("%s\t%s\t%s\n", one_line(name).c_str(), one_line(library).c_str(),
                one_line(reference).c_str());
}

void expect_checks_agree(const ChildResult &r) {
    if (r.exit_code() == kNoNamespace)
        GTEST_SKIP() << "this machine refuses an unprivileged user and network namespace";
    EXPECT_EQ(r.exit_code(), 0) << r.err;
    std::istringstream lines(r.out);
    std::string line;
    int checks = 0;
    while (std::getline(lines, line)) {
        size_t a = line.find('\t'), b = line.rfind('\t');
        ASSERT_TRUE(a != std::string::npos && b != a) << line;
        EXPECT_EQ(line.substr(a + 1, b - a - 1), line.substr(b + 1)) << line.substr(0, a);
        ++checks;
    }
    EXPECT_GT(checks, 0) << r.err;
}

} // namespace wmtest
