// Words from files and requests handed to device tools: pid files and process names that a
// tool would read as options or as several operands, passwords and image paths that begin
// with "-", and line feeds that would forge command-log lines. Stand-in tools first in PATH
// record their argument vectors one bracketed word each, so "kill -9 '1 2'" and
// "kill -9 1 2" are told apart.
#include <gtest/gtest.h>

#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "support/harness.h"
#include "webmgmt.h"

namespace {

using wmtest::read_file;
using wmtest::write_file;

constexpr int kRefused = 1 << 8; // what a failed kill reports; nothing ran

class Injection : public ::testing::Test {
  protected:
    void SetUp() override {
        bin_ = root_.path("/tmp/bin");
        mkdir(bin_.c_str(), 0755);
        // Records "name [arg] [arg]..." and answers like the image tool when asked.
        std::string script = "#!/bin/sh\n"
                             "{ printf '%s' \"${0##*/}\"; for a; do printf ' [%s]' \"$a\"; done;"
                             " echo; } >> '" +
                             root_.path("/tmp/argv.log") +
                             "'\n"
                             "[ \"${0##*/}\" = tq_versign ] && echo 'Verify Success'\n"
                             "exit 0\n";
        for (const char *tool : {"kill", "killall", "tq_versign", "checkapp", "cloud-client"}) {
            std::string path = bin_ + "/" + tool;
            write_file(path, script);
            chmod(path.c_str(), 0755);
        }
        old_path_ = getenv("PATH");
        setenv("PATH", (bin_ + ":" + old_path_).c_str(), 1);
        write_file(root_.path("/var/cmd_ram"), "");
    }
    void TearDown() override { setenv("PATH", old_path_.c_str(), 1); }
    std::string argv_log() { return read_file(root_.path("/tmp/argv.log")); }
    std::string command_log() { return read_file(root_.path("/tmp/cmdinfo")); }
    void clear_logs() {
        unlink(root_.path("/tmp/argv.log").c_str());
        unlink(root_.path("/tmp/cmdinfo").c_str());
    }
    wmtest::TempRoot root_;
    std::string bin_, old_path_;
};

// Every text that is not one positive decimal pid runs nothing and logs nothing.
TEST_F(Injection, KillTakesOnlyOnePositiveDecimalPid) {
    struct Case {
        const char *text;
        const char *argv; // what kill received, "" for not run
    } cases[] = {
        {"123", "kill [-9] [123]\n"},
        {" 42 \n", "kill [-9] [42]\n"},
        {"2147483647", "kill [-9] [2147483647]\n"},
        {"-1", ""},
        {"0", ""},
        {"00", ""},
        {"-s KILL -1", ""},
        {"1 2", ""},
        {"+5", ""},
        {"-9", ""},
        {"--", ""},
        {"1\nkill -9 1", ""},
        {"2147483648", ""},
        {"99999999999999999999", ""},
        {"0x10", ""},
        {"12abc", ""},
        {"1;reboot", ""},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.text);
        clear_logs();
        int status = Kill_App_byPid(c.text);
        EXPECT_EQ(argv_log(), c.argv);
        if (*c.argv) {
            EXPECT_EQ(status, 0);
            // The log shows the command as it ran: one line.
            std::string logged = c.argv;
            EXPECT_EQ(command_log(), "kill -9 " +
                                         logged.substr(logged.find("] [") + 3,
                                                       logged.size() - 2 - logged.find("] [") - 3) +
                                         "\n");
        } else {
            EXPECT_EQ(status, kRefused);
            EXPECT_EQ(command_log(), "");
        }
    }
}

TEST_F(Injection, KillallTakesOnlyANameThatIsNoOption) {
    struct Case {
        const char *name;
        bool runs;
    } cases[] = {
        {"udhcpd", true}, {"cloud-client", true}, {"-1", false}, {"--help", false}, {"-s", false},
        {"a b", false},   {"a\nb", false},        {"", false},   {"a\tb", false},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        clear_logs();
        int status = Kill_App_byname(c.name);
        EXPECT_EQ(status, c.runs ? 0 : kRefused);
        EXPECT_EQ(argv_log(), c.runs ? "killall [-9] [" + std::string(c.name) + "]\n" : "");
        EXPECT_EQ(command_log(), c.runs ? "killall -9 " + std::string(c.name) + "\n" : "");
    }
    EXPECT_EQ(Kill_App_byname(nullptr), kRefused);
}

// The cloud client's watchdog pid file: a hostile one stops nothing but the client itself,
// and getPid never hands out a pid that is not one positive number.
TEST_F(Injection, CloudConfigAndGetPidWithHostilePidFiles) {
    std::string pid_file = root_.path("/var/run/check-cloud-client.pid");
    struct Case {
        const char *content;
        int pid;
    } cases[] = {
        {"-1\n", -1},  {"0\n", -1},      {"-s KILL -1\n", -1}, {"1 2\n", -1}, {"-9 1\n", -1},
        {"12x\n", -1}, {"4321\n", 4321}, {" 77 \n", 77},       {"1\n2\n", 1}, // only the first line
                                                                              // counts
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.content);
        clear_logs();
        write_file(pid_file, c.content);
        EXPECT_EQ(getPid(pid_file.c_str()), c.pid);
        ASSERT_EQ(wmtest::run_in_child([] { return Cloud_Config(0, 0); }).exit_code(), 0);
        std::string kill = c.pid > 0 ? "kill [-9] [" + std::to_string(c.pid) + "]\n" : "";
        EXPECT_EQ(argv_log(), kill + "killall [-9] [cloud-client]\n");
        std::string logged = c.pid > 0 ? "kill -9 " + std::to_string(c.pid) + "\n" : "";
        EXPECT_EQ(command_log(), logged + "killall -9 cloud-client\n");
    }
}

// A password or an image path that begins with "-" reaches the image tool after "--".
TEST_F(Injection, ImageToolOperandsFollowDoubleDash) {
    for (const char *password : {"--help", "-x", "-", "secret"}) {
        SCOPED_TRACE(password);
        clear_logs();
        char out[65] = "";
        to_sha256(password, out, sizeof out);
        EXPECT_EQ(argv_log(), "tq_versign [sha256] [--] [" + std::string(password) + "]\n");
    }
    clear_logs();
    EXPECT_EQ(verify_upgrade_image("-image.bin", "--sig"), 0);
    EXPECT_EQ(argv_log(), "tq_versign [signverify] [--] [-image.bin] [--sig]\n");
}

// A line feed in a name, pid or path written to the command log stays on its line.
TEST_F(Injection, CommandLogKeepsOneLinePerCommand) {
    clear_logs();
    std::string out = root_.path("/tmp/out");
    do_system("printf '%%s' 'a\nkill -9 1' > %s", out.c_str());
    EXPECT_EQ(read_file(out), "a\nkill -9 1") << "the command itself runs as given";
    do_system("true 'x\r\ny\x01z\x7f'");
    EXPECT_EQ(command_log(),
              "printf '%s' 'a\\nkill -9 1' > " + out + "\ntrue 'x\\r\\ny\\x01z\\x7f'\n");
    // A name with a line feed is refused before it is ever run or logged.
    clear_logs();
    Kill_App_byname("x\nreboot");
    EXPECT_EQ(command_log(), "");
}

} // namespace
