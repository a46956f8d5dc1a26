// The login counter under concurrency and on a filesystem that takes no more data, and a
// session that cannot be stored: attempts made at once are each counted, a counter that
// cannot be written stays as it was (so the caller can tell), and a login whose session is
// not in the file is reported as failed.
#include <gtest/gtest.h>

#include <csignal>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "support/harness.h"
#include "webmgmt.h"

namespace {

using wmtest::read_file;
using wmtest::write_file;

int32_t count_in(const std::string &path) {
    int32_t time = -1, count = -1;
    read_count(path.c_str(), &time, &count);
    return count;
}

// Several processes adding at the same moment: every one of their additions is counted
// (an unlocked read-modify-write loses most of them).
TEST(LoginLockout, ConcurrentAdditionsAreAllCounted) {
    wmtest::TempRoot root;
    std::string path = root.path("/var/loginfail");
    constexpr int kProcesses = 4, kEach = 500;
    int start[2];
    ASSERT_EQ(pipe(start), 0);
    std::vector<pid_t> children;
    for (int p = 0; p < kProcesses; ++p) {
        pid_t pid = fork();
        ASSERT_GE(pid, 0);
        if (pid == 0) {
            close(start[1]);
            char c;
            // All start together: when the parent closes the pipe.
            while (read(start[0], &c, 1) > 0) {
            }
            for (int i = 0; i < kEach; ++i)
                login_add(path.c_str());
            _exit(0);
        }
        children.push_back(pid);
    }
    close(start[0]);
    close(start[1]);
    for (pid_t pid : children) {
        int status = 0;
        ASSERT_EQ(waitpid(pid, &status, 0), pid);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    }
    EXPECT_EQ(count_in(path), kProcesses * kEach);
}

// The counter is the owner's alone; a shorter line over a longer one leaves only the new
// line to be read.
TEST(LoginLockout, CounterIsPrivateAndRewrittenWhole) {
    wmtest::TempRoot root;
    std::string path = root.path("/var/loginfail");
    login_add(path.c_str());
    struct stat st {};
    ASSERT_EQ(stat(path.c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0600u);
    write_file(path, "1700000000 123456\ntrailing junk\n");
    save_count(path.c_str(), 5, 1);
    EXPECT_EQ(read_file(path), "5 1\n");
    login_add(path.c_str());
    EXPECT_EQ(count_in(path), 2);
}

// With a file-size limit of 0 nothing can be written (SIGXFSZ ignored, writes fail): the
// count stays, so the login program sees that the attempt was not counted, and
// generate_token2save reports that the session was not stored.
TEST(LoginLockout, NothingWrittenIsNeverReportedAsWritten) {
    wmtest::TempRoot root;
    std::string counter = root.path("/var/loginfail");
    write_file(root.path("/var/loginlock"), "");
    write_file(counter, "1000 3\n");
    auto r = wmtest::run_in_child([&] {
        signal(SIGXFSZ, SIG_IGN);
        struct rlimit none = {0, 0};
        if (setrlimit(RLIMIT_FSIZE, &none) != 0) return 10;
        login_add(counter.c_str());
        save_count(counter.c_str(), 1, 0);
        int32_t time = 0, count = 0;
        read_count(counter.c_str(), &time, &count);
        if (time != 1000 || count != 3) return 11;
        return generate_token2save("10.0.0.1", "0123456789abcdef") == -1 ? 0 : 12;
    });
    EXPECT_EQ(r.exit_code(), 0);
    EXPECT_EQ(read_file(counter), "1000 3\n");
    EXPECT_FALSE(wmtest::file_exists(root.path("/var/usertoken")));
}

// A session file that cannot be replaced: the login is told, and the token never works.
TEST(LoginLockout, SessionThatCannotBeStoredFailsTheLogin) {
    wmtest::TempRoot root;
    write_file(root.path("/var/loginlock"), "");
    ASSERT_EQ(generate_token2save("10.0.0.1", "0123456789abcdef"), 0);
    struct stat st {};
    ASSERT_EQ(stat(root.path("/var/usertoken").c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0600u) << "the tokens are the server user's alone";
    // The temporary copy's name taken by a directory: the table cannot be rewritten.
    ASSERT_EQ(mkdir(root.path("/var/usertoken.cgi").c_str(), 0700), 0);
    EXPECT_EQ(generate_token2save("10.0.0.2", "fedcba9876543210"), -1);
    EXPECT_EQ(auth_token("10.0.0.2", "fedcba9876543210"), -1);
    EXPECT_EQ(auth_token("10.0.0.1", "0123456789abcdef"), 0) << "the older session stays";
}

} // namespace
