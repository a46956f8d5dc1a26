// do_system and its command log, the kill helpers, pid files, the cloud client, and the
// fatal-error helpers.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/harness.h"
#include "webmgmt.h"

// Lets xmalloc see a refused huge allocation as null under AddressSanitizer too.
extern "C" const char *__asan_default_options() {
    return "allocator_may_return_null=1";
}

namespace {

using wmtest::read_file;
using wmtest::run_in_child;
using wmtest::TempRoot;
using wmtest::write_file;

// The device tools' stand-ins come first in PATH and record their calls in a log.
class Commands : public ::testing::Test {
  protected:
    void SetUp() override {
        old_path_ = getenv("PATH");
        setenv("PATH", (wmtest::source_dir() + "/tests/fakes:" + old_path_).c_str(), 1);
        setenv("WEBMGMT_FAKE_LOG", root_.path("/tmp/fake.log").c_str(), 1);
    }
    void TearDown() override {
        setenv("PATH", old_path_.c_str(), 1);
        unsetenv("WEBMGMT_FAKE_LOG");
    }
    std::string fake_log() { return read_file(root_.path("/tmp/fake.log")); }
    std::string ram_log() { return read_file(root_.path("/tmp/cmdinfo")); }
    std::string flash_log() { return read_file(root_.path("/usr/sbin/cmdinfo")); }
    void set_markers(bool ram, bool flash) {
        unlink(root_.path("/var/cmd_ram").c_str());
        unlink(root_.path("/var/cmd_flash").c_str());
        if (ram) write_file(root_.path("/var/cmd_ram"), "");
        if (flash) write_file(root_.path("/var/cmd_flash"), "");
    }
    TempRoot root_;
    std::string old_path_;
};

TEST_F(Commands, LogFollowsTheMarkerFiles) {
    struct Case {
        bool ram, flash;
        bool to_ram, to_flash;
    } cases[] = {
        {false, false, false, false},
        {true, false, true, false},
        {false, true, false, true},
        {true, true, false, true}, // both: the flash log only
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(std::to_string(c.ram) + std::to_string(c.flash));
        set_markers(c.ram, c.flash);
        unlink(root_.path("/tmp/cmdinfo").c_str());
        unlink(root_.path("/usr/sbin/cmdinfo").c_str());
        EXPECT_EQ(do_system("true %d", 1), 0);
        EXPECT_EQ(do_system("exit 3"), 3 << 8);
        std::string want = "true 1\nexit 3\n";
        EXPECT_EQ(ram_log(), c.to_ram ? want : "");
        EXPECT_EQ(flash_log(), c.to_flash ? want : "");
    }
}

TEST_F(Commands, QuotesAreLoggedWholeAndNeverRun) {
    set_markers(true, false);
    std::string marker = root_.path("/tmp/injected");
    // Through `echo '...' >> log` the quote would end the echo's text and run the touch.
    std::string command = "true '; touch " + marker + "; '";
    EXPECT_EQ(do_system("%s", command.c_str()), 0);
    EXPECT_FALSE(wmtest::file_exists(marker));
    std::string out = root_.path("/tmp/out");
    do_system("printf '%%s' \"it's\" > %s", out.c_str());
    EXPECT_EQ(read_file(out), "it's");
    EXPECT_EQ(ram_log(), command + "\nprintf '%s' \"it's\" > " + out + "\n");
}

TEST_F(Commands, LongCommandsAreCutTo1023Characters) {
    set_markers(false, true);
    std::string command = "printf %s " + std::string(1090, 'x');
    ASSERT_EQ(command.size(), 1100u);
    auto r = run_in_child([&] { return do_system("%s", command.c_str()) == 0 ? 0 : 1; });
    EXPECT_EQ(r.exit_code(), 0);
    EXPECT_EQ(r.out, std::string(1023 - 10, 'x'));
    EXPECT_EQ(flash_log(), command.substr(0, 1023) + "\n");
}

TEST_F(Commands, KillHelpersRunTheToolsWithoutAShell) {
    set_markers(true, false);
    std::string marker = root_.path("/tmp/injected");
    EXPECT_EQ(Kill_App_byname("udhcpd"), 0);
    EXPECT_EQ(Kill_App_byPid("123"), 0);
    EXPECT_EQ(Kill_App_byPid("12 34"), 0);
    EXPECT_EQ(Kill_App_byPid(("1;touch " + marker).c_str()), 0);
    EXPECT_FALSE(wmtest::file_exists(marker));
    EXPECT_EQ(fake_log(),
              "killall -9 udhcpd\nkill -9 123\nkill -9 12 34\nkill -9 1;touch " + marker + "\n");
    EXPECT_EQ(ram_log(),
              "killall -9 udhcpd\nkill -9 123\nkill -9 12 34\nkill -9 1;touch " + marker + "\n");
}

// Runs Cloud_Config in a child and waits until every tool it started, backgrounded ones
// included, has ended: they all inherit the write end of a pipe, so its read end sees
// end-of-file only when the last of them is gone.
int cloud_config_and_wait(int mode, int enable) {
    int fds[2];
    if (pipe(fds) != 0) return 2;
    Cloud_Config(mode, enable);
    close(fds[1]);
    char c;
    for (;;) {
        ssize_t n = read(fds[0], &c, 1);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return 0;
    }
}

TEST_F(Commands, CloudConfigStopsAndRestartsTheClient) {
    set_markers(true, false);
    for (bool pid_file : {true, false}) {
        for (int mode : {0, 1, 2}) {
            for (int enable : {0, 1, 2}) {
                SCOPED_TRACE(std::to_string(pid_file) + std::to_string(mode) +
                             std::to_string(enable));
                unlink(root_.path("/tmp/cmdinfo").c_str());
                unlink(root_.path("/tmp/fake.log").c_str());
                unlink(root_.path("/var/run/check-cloud-client.pid").c_str());
                if (pid_file) write_file(root_.path("/var/run/check-cloud-client.pid"), "4321\n");
                auto r = run_in_child([&] { return cloud_config_and_wait(mode, enable); });
                ASSERT_EQ(r.exit_code(), 0);
                std::string kill_cmd = pid_file ? "kill -9 4321" : "kill -9 ";
                std::string want_log = kill_cmd + "\n";
                std::string want_fake = (pid_file ? "kill -9 4321" : "kill -9") + std::string("\n");
                if (mode != 2) {
                    want_log += "killall -9 cloud-client\n";
                    want_fake += "killall -9 cloud-client\n";
                }
                bool start = mode != 2 && enable == 1;
                if (start)
                    want_log += "cloud-client >/dev/null 2>&1 &\n"
                                "checkapp cloud-client 10 1 1 >/dev/null 2>&1 &\n";
                EXPECT_EQ(ram_log(), want_log);
                // The two started tools run in the background, in either order.
                std::string fake = fake_log();
                ASSERT_EQ(fake.substr(0, want_fake.size()), want_fake);
                std::string rest = fake.substr(want_fake.size());
                if (start) {
                    EXPECT_TRUE(rest == "cloud-client \ncheckapp cloud-client 10 1 1\n" ||
                                rest == "checkapp cloud-client 10 1 1\ncloud-client \n")
                        << rest;
                } else {
                    EXPECT_EQ(rest, "");
                }
            }
        }
    }
}

TEST_F(Commands, FilesAndPidFiles) {
    std::string file = root_.path("/tmp/f"), dir = root_.path("/tmp"),
                dangling = root_.path("/tmp/dangling");
    write_file(file, "123\nsecond line\n");
    ASSERT_EQ(symlink(root_.path("/tmp/none").c_str(), dangling.c_str()), 0);
    EXPECT_EQ(File_Exist(file.c_str()), 1);
    EXPECT_EQ(File_Exist(dir.c_str()), 1);
    EXPECT_EQ(File_Exist(dangling.c_str()), 0);
    EXPECT_EQ(File_Exist(root_.path("/tmp/none").c_str()), 0);

    struct Case {
        std::string content; // "-" for a missing file
        std::string line;
        int pid;
    } cases[] = {
        {"123\nsecond line\n", "123", 123},
        {"77", "77", 77},
        {" 42 \n", " 42 ", 42},
        {"abc\n", "abc", -1},
        {"", "untouched", -1},
        {"-", "untouched", -1},
        {std::string(300, 'a') + "\n", std::string(254, 'a'), -1},
    };
    std::string path = root_.path("/tmp/pidfile");
    for (const auto &c : cases) {
        SCOPED_TRACE(c.content);
        unlink(path.c_str());
        if (c.content != "-") write_file(path, c.content);
        char buf[255] = "untouched";
        EXPECT_EQ(getStrvalfromfile(path.c_str(), buf), buf);
        EXPECT_EQ(std::string(buf), c.line);
        EXPECT_EQ(getPid(path.c_str()), c.pid);
    }
}

TEST(FatalErrors, MessageAndExitStatus) {
    auto die = run_in_child([] {
        bb_applet_name = "name";
        printf("page so far");
        bb_error_msg_and_die("bad value %d", 7);
        return 0;
    });
    EXPECT_EQ(die.exit_code(), 1);
    EXPECT_EQ(die.out, "page so far");
    EXPECT_EQ(die.err, "name: bad value 7\n");

    auto status = run_in_child([] {
        bb_applet_name = "prog";
        bb_default_error_retval = 5;
        bb_error_msg_and_die("%s", "gone");
        return 0;
    });
    EXPECT_EQ(status.exit_code(), 5);
    EXPECT_EQ(status.err, "prog: gone\n");
    EXPECT_STREQ(bb_msg_memory_exhausted, "memory exhausted");
}

// Standard error without the warning lines a sanitizer adds ("==pid==...").
std::string without_sanitizer_lines(const std::string &err) {
    std::string out, line;
    for (char c : err) {
        line += c;
        if (c == '\n') {
            if (line.rfind("==", 0) != 0) out += line;
            line.clear();
        }
    }
    return out + line;
}

TEST(FatalErrors, AllocationFailureEndsTheProcess) {
    const size_t huge = SIZE_MAX - 4096;
    auto m = run_in_child([&] {
        bb_applet_name = "name";
        xmalloc(huge);
        return 0;
    });
    EXPECT_EQ(m.exit_code(), 1);
    EXPECT_EQ(without_sanitizer_lines(m.err), "name: memory exhausted\n");
    auto r = run_in_child([&] {
        bb_applet_name = "name";
        void *p = xmalloc(16);
        xrealloc(p, huge);
        return 0;
    });
    EXPECT_EQ(r.exit_code(), 1);
    EXPECT_EQ(without_sanitizer_lines(r.err), "name: memory exhausted\n");
    // A zero-size request is never fatal.
    auto zero = run_in_child([] {
        free(xmalloc(0));
        void *p = xrealloc(nullptr, 8);
        free(xrealloc(p, 32));
        return 0;
    });
    EXPECT_EQ(zero.exit_code(), 0);
    EXPECT_EQ(zero.err, "");
}

TEST(SafeStrncpy, AlwaysTerminates) {
    struct Case {
        const char *src;
        size_t size;
        std::string want;
    } cases[] = {{"hello", 10, "hello"},
                 {"hello", 6, "hello"},
                 {"hello", 5, "hell"},
                 {"hello", 1, ""},
                 {"", 4, ""}};
    for (const auto &c : cases) {
        char buf[12];
        memset(buf, 'z', sizeof buf);
        EXPECT_EQ(safe_strncpy(buf, c.src, c.size), buf);
        EXPECT_EQ(std::string(buf), c.want);
        EXPECT_EQ(buf[c.size], 'z'); // nothing written beyond the size
    }
    char untouched = 'q';
    EXPECT_EQ(safe_strncpy(&untouched, "abc", 0), &untouched);
    EXPECT_EQ(untouched, 'q');
}

} // namespace
