// do_system and its command log, the kill helpers, pid files, the cloud client, and the
// fatal-error helpers.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <functional>
#include <sstream>
#include <string>
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
using wmtest::write_file;

// The device tools' stand-ins (first in PATH under CTest) record their calls in a log.
class Commands : public ::testing::Test {
  protected:
    void SetUp() override { setenv("WEBMGMT_FAKE_LOG", root_.path("/tmp/fake.log").c_str(), 1); }
    void TearDown() override { unsetenv("WEBMGMT_FAKE_LOG"); }
    std::string fake_log() { return read_file(root_.path("/tmp/fake.log")); }
    std::string ram_log() { return read_file(root_.path("/tmp/cmdinfo")); }
    std::string flash_log() { return read_file(root_.path("/usr/sbin/cmdinfo")); }
    void set_markers(bool ram, bool flash) {
        for (const char *f :
             {"/var/cmd_ram", "/var/cmd_flash", "/tmp/cmdinfo", "/usr/sbin/cmdinfo"})
            unlink(root_.path(f).c_str());
        if (ram) write_file(root_.path("/var/cmd_ram"), "");
        if (flash) write_file(root_.path("/var/cmd_flash"), "");
    }
    wmtest::TempRoot root_;
};

TEST_F(Commands, LogFollowsTheMarkerFiles) {
    struct Case {
        bool ram, flash, to_ram, to_flash;
    } cases[] = {
        {false, false, false, false},
        {true, false, true, false},
        {false, true, false, true},
        {true, true, false, true}, // both: the flash log only
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(std::to_string(c.ram) + std::to_string(c.flash));
        set_markers(c.ram, c.flash);
        EXPECT_EQ(do_system("true %d", 1), 0);
        EXPECT_EQ(do_system("exit 3"), 3 << 8);
        EXPECT_EQ(ram_log(), c.to_ram ? "true 1\nexit 3\n" : "");
        EXPECT_EQ(flash_log(), c.to_flash ? "true 1\nexit 3\n" : "");
    }
}

TEST_F(Commands, QuotesAreLoggedWholeAndNeverRunAndLongCommandsCut) {
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

    set_markers(false, true);
    std::string longer = "printf %s " + std::string(1090, 'x');
    auto r = run_in_child([&] { return do_system("%s", longer.c_str()) == 0 ? 0 : 1; });
    EXPECT_EQ(r.exit_code(), 0);
    EXPECT_EQ(r.out, std::string(1023 - 10, 'x'));
    EXPECT_EQ(flash_log(), longer.substr(0, 1023) + "\n");
}

// Runs Cloud_Config and waits until every tool it started, backgrounded ones included,
// has ended: they all inherit the pipe's write end, so the read end sees end-of-file only
// when the last of them is gone.
int cloud_config_and_wait(int mode, int enable) {
    int fds[2];
    if (pipe(fds) != 0) return 2;
    Cloud_Config(mode, enable);
    close(fds[1]);
    char c;
    while (read(fds[0], &c, 1) < 0 && errno == EINTR) {
    }
    return 0;
}

TEST_F(Commands, CloudConfigStopsAndRestartsTheClient) {
    const std::string pid_file = root_.path("/var/run/check-cloud-client.pid");
    for (bool with_pid : {true, false})
        for (int mode : {0, 1, 2})
            for (int enable : {0, 1, 2}) {
                SCOPED_TRACE(std::to_string(with_pid) + std::to_string(mode) +
                             std::to_string(enable));
                set_markers(true, false);
                unlink(root_.path("/tmp/fake.log").c_str());
                unlink(pid_file.c_str());
                if (with_pid) write_file(pid_file, "4321\n");
                ASSERT_EQ(
                    run_in_child([&] { return cloud_config_and_wait(mode, enable); }).exit_code(),
                    0);
                bool stop = mode != 2, start = stop && enable == 1;
                std::string kill = with_pid ? "kill -9 4321" : "kill -9";
                std::string stopped = stop ? "killall -9 cloud-client\n" : "";
                EXPECT_EQ(ram_log(), kill + (with_pid ? "\n" : " \n") + stopped +
                                         (start ? "cloud-client >/dev/null 2>&1 &\n"
                                                  "checkapp cloud-client 10 1 1 >/dev/null 2>&1 &\n"
                                                : ""));
                // The two started tools run in the background, in either order.
                std::string fake = fake_log(), head = kill + "\n" + stopped;
                ASSERT_EQ(fake.substr(0, head.size()), head);
                std::string rest = fake.substr(head.size());
                std::string a = "cloud-client \n", b = "checkapp cloud-client 10 1 1\n";
                EXPECT_TRUE(start ? rest == a + b || rest == b + a : rest.empty()) << rest;
            }
}

TEST_F(Commands, FilesAndPidFiles) {
    std::string file = root_.path("/tmp/f"), dangling = root_.path("/tmp/dangling");
    write_file(file, "1");
    ASSERT_EQ(symlink(root_.path("/tmp/none").c_str(), dangling.c_str()), 0);
    EXPECT_EQ(File_Exist(file.c_str()), 1);
    EXPECT_EQ(File_Exist(root_.path("/tmp").c_str()), 1);
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

// Standard error without the warning lines a sanitizer adds ("==pid==...").
std::string without_sanitizer_lines(const std::string &err) {
    std::istringstream in(err);
    std::string out, line;
    while (std::getline(in, line))
        if (line.rfind("==", 0) != 0) out += line + (in.eof() ? "" : "\n");
    return out;
}

TEST(FatalErrors, MessageExitStatusAndAllocationFailure) {
    static const size_t huge = SIZE_MAX - 4096;
    struct Case {
        std::function<void()> body;
        int exit_code;
        std::string out, err;
    } cases[] = {
        {[] { printf("page so far"), bb_error_msg_and_die("bad value %d", 7); }, 1, "page so far",
         "name: bad value 7\n"},
        {[] { bb_default_error_retval = 5, bb_error_msg_and_die("%s", "gone"); }, 5, "",
         "name: gone\n"},
        {[] { xmalloc(huge); }, 1, "", "name: memory exhausted\n"},
        {[] { xrealloc(xmalloc(16), huge); }, 1, "", "name: memory exhausted\n"},
        // A zero-size request is never fatal.
        {[] { free(xmalloc(0)), free(xrealloc(xrealloc(nullptr, 8), 32)); }, 0, "", ""},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.err);
        auto r = run_in_child([&] {
            bb_applet_name = "name";
            c.body();
            return 0;
        });
        EXPECT_EQ(r.exit_code(), c.exit_code);
        EXPECT_EQ(r.out, c.out);
        EXPECT_EQ(without_sanitizer_lines(r.err), c.err);
    }
    EXPECT_STREQ(bb_msg_memory_exhausted, "memory exhausted");
}

TEST(SafeStrncpy, AlwaysTerminates) {
    struct Case {
        const char *src;
        size_t size;
        std::string want;
    } cases[] = {{"hello", 10, "hello"}, {"hello", 6, "hello"}, {"hello", 5, "hell"},
                 {"hello", 1, ""},       {"", 4, ""},           {"abc", 0, std::string(11, 'z')}};
    for (const auto &c : cases) {
        char buf[12];
        memset(buf, 'z', sizeof buf);
        buf[11] = '\0';
        EXPECT_EQ(safe_strncpy(buf, c.src, c.size), buf);
        EXPECT_EQ(std::string(buf), c.want);
        EXPECT_EQ(buf[c.size], 'z'); // nothing written beyond the size
    }
}

} // namespace
