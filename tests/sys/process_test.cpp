// The /proc scanner and the look-ups by name, checked against ps and pgrep on child
// processes started here (under an emulator the test program itself shows up as the
// emulator, so only children are compared).
#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <map>
#include <pwd.h>
#include <sstream>
#include <string>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <time.h>
#include <vector>

#include "support/harness.h"
#include "webmgmt.h"

namespace {

using wmtest::run_in_child;
using wmtest::run_shell;

// Ends any scan left open, so that the next procps_scan() starts afresh.
void reset_scan() {
    while (procps_scan()) {
    }
}

// The state letter of /proc/<pid>/stat (after the name, which may hold blanks and
// parentheses), or 0 when the file cannot be read.
char proc_state(pid_t pid) {
    std::string stat = wmtest::read_file("/proc/" + std::to_string(pid) + "/stat");
    size_t close = stat.rfind(") ");
    return close == std::string::npos || close + 2 >= stat.size() ? 0 : stat[close + 2];
}

// Whether /proc/<pid>/syscall shows the process blocked in a system call on descriptor 0
// (its read of the pipe), as "<number> 0x0 ...". That file is not there on every kernel,
// and not readable everywhere: then only the state letter tells.
bool blocked_on_stdin(pid_t pid) {
    std::istringstream in(wmtest::read_file("/proc/" + std::to_string(pid) + "/syscall"));
    std::string number, first_argument;
    if (!(in >> number)) return true;
    if (!(in >> first_argument) || number == "running" || number == "-1") return false;
    return first_argument == "0x0";
}

// A child that has settled: a copy of the shell, renamed, that writes one byte to say it is
// ready and then blocks reading a pipe nobody writes to. By the time of the byte it has
// loaded and run all it will; blocked in the read, its state and resident size stay as they
// are while the test compares them. Killed and reaped on scope exit.
class Sleeper {
  public:
    explicit Sleeper(const std::string &exe, int nice_value = 0) {
        int ready[2], input[2];
        if (pipe2(ready, O_CLOEXEC) != 0) return;
        if (pipe2(input, O_CLOEXEC) != 0) {
            close(ready[0]), close(ready[1]);
            return;
        }
        pid_ = fork();
        if (pid_ == 0) {
            if (nice_value) setpriority(PRIO_PROCESS, 0, nice_value);
            // Moved out of the way first, so that neither lands on the other's place.
            int in = fcntl(input[0], F_DUPFD_CLOEXEC, 10),
                out = fcntl(ready[1], F_DUPFD_CLOEXEC, 10);
            if (in < 0 || out < 0 || dup2(in, 0) != 0 || dup2(out, 3) != 3) _exit(126);
            execl(exe.c_str(), exe.c_str(), "-c", "printf x >&3; read line",
                  static_cast<char *>(nullptr));
            _exit(127);
        }
        close(ready[1]);
        close(input[0]);
        input_ = input[1];
        char c = 0;
        ssize_t n;
        while ((n = read(ready[0], &c, 1)) < 0 && errno == EINTR) {
        }
        close(ready[0]);
        if (n != 1 || c != 'x') {
            ADD_FAILURE() << "child " << pid_ << " ended before it was ready";
            return;
        }
        wait_until_blocked();
    }
    ~Sleeper() {
        if (pid_ > 0) kill(pid_, SIGKILL), waitpid(pid_, nullptr, 0);
        if (input_ >= 0) close(input_);
    }
    pid_t pid() const { return pid_; }

  private:
    // After its byte the child's only way to sleep is the read: wait for that state by
    // re-reading /proc, the only place that shows it. The bound, a minute, is far beyond what
    // a loaded machine needs; the test fails on it rather than compare a running child.
    void wait_until_blocked() const {
        auto blocked = [this] { return proc_state(pid_) == 'S' && blocked_on_stdin(pid_); };
        for (int i = 0; i < 60000 && pid_ > 0 && !blocked(); ++i) {
            struct timespec pause = {0, 1000000};
            nanosleep(&pause, nullptr);
        }
        EXPECT_TRUE(blocked()) << "child " << pid_ << " never blocked in its read (state "
                               << proc_state(pid_) << ")";
    }
    pid_t pid_ = -1;
    int input_ = -1;
};

// Copies of the shell under chosen names live in the private tree.
class Processes : public ::testing::Test {
  protected:
    std::string copy_sleep(const std::string &name) {
        std::string path = root_.path("/usr/sbin/" + name);
        run_shell("cp \"$(command -v sh)\" '" + path + "'");
        return path;
    }
    // A command name unique to this test process (at most 15 characters).
    static std::string unique_name(const char *stem) {
        return stem + std::to_string(getpid() % 100000);
    }
    wmtest::TempRoot root_;
};

struct PsRow {
    int ppid = 0;
    std::string stat, comm;
    unsigned rss = 0;
};

PsRow ps_row(pid_t pid) {
    auto r = run_shell("ps -o ppid=,stat=,rss=,comm= -p " + std::to_string(pid));
    PsRow row;
    std::istringstream in(r.out);
    in >> row.ppid >> row.stat >> row.rss;
    std::getline(in >> std::ws, row.comm);
    return row;
}

// The stat file's resident-size field, in kilobytes, as awk counts the fields after the
// name (the name itself may hold blanks and parentheses).
unsigned stat_rss_kb(pid_t pid) {
    auto r = run_shell("sed 's/.*) //' /proc/" + std::to_string(pid) +
                       "/stat | awk -v ps=\"$(getconf PAGESIZE)\" '{print $22 * ps / 1024}'");
    return unsigned(strtoul(r.out.c_str(), nullptr, 10));
}

std::vector<int> pgrep(const std::string &name) {
    auto r = run_shell("pgrep -x '" + name + "'");
    std::vector<int> pids;
    std::istringstream in(r.out);
    for (int p; in >> p;)
        pids.push_back(p);
    return pids;
}

// All entries of one full scan, by pid.
std::map<int, proc_entry> scan_all() {
    reset_scan();
    std::map<int, proc_entry> all;
    while (proc_entry *e = procps_scan())
        all[e->pid] = *e;
    return all;
}

TEST_F(Processes, ScanOfChildrenMatchesPs) {
    Sleeper plain(copy_sleep(unique_name("wmscan"))), paren(copy_sleep("a)b"));
    Sleeper spaced(copy_sleep("x) y (z")), niced(copy_sleep(unique_name("wmnice")), 5);
    struct passwd *pw = getpwuid(getuid());
    std::string user = (pw ? pw->pw_name : std::to_string(getuid())).substr(0, 8);
    auto all = scan_all();
    for (const Sleeper *s : {&plain, &paren, &spaced, &niced}) {
        SCOPED_TRACE(s->pid());
        ASSERT_EQ(all.count(s->pid()), 1u);
        const proc_entry &e = all[s->pid()];
        PsRow ps = ps_row(s->pid());
        EXPECT_EQ(e.short_cmd, ps.comm);
        EXPECT_EQ(e.ppid, ps.ppid);
        EXPECT_EQ(e.ppid, getpid());
        EXPECT_EQ(e.state[0], ps.stat[0]);
        // ps reads the exact resident size from the status file; the stat file's count
        // may lag behind it a little, so the two only agree roughly.
        EXPECT_GT(e.rss, 0u);
        EXPECT_NEAR(double(e.rss), double(ps.rss), ps.rss * 0.3);
        EXPECT_EQ(e.rss, stat_rss_kb(s->pid()));
        EXPECT_EQ(e.state[1], ' '); // resident pages
        EXPECT_EQ(e.state[2] == 'N', ps.stat.find('N') != std::string::npos);
        EXPECT_EQ(e.state[2], s == &niced ? 'N' : ' ');
        EXPECT_EQ(e.state[3], '\0');
        EXPECT_EQ(e.user, user);
    }
    EXPECT_STREQ(all[paren.pid()].short_cmd, "a)b");
    EXPECT_STREQ(all[spaced.pid()].short_cmd, "x) y (z");
}

TEST_F(Processes, ZombieHasNoResidentPagesButNoW) {
    pid_t pid = fork();
    if (pid == 0) _exit(0);
    siginfo_t info;
    // Waits for the exit but leaves the child a zombie.
    ASSERT_EQ(waitid(P_PID, id_t(pid), &info, WEXITED | WNOWAIT), 0);
    auto all = scan_all();
    PsRow ps = ps_row(pid);
    waitpid(pid, nullptr, 0);
    ASSERT_EQ(all.count(pid), 1u);
    EXPECT_EQ(all[pid].state[0], 'Z');
    EXPECT_EQ(ps.stat[0], 'Z');
    EXPECT_EQ(all[pid].rss, 0u);
    EXPECT_EQ(all[pid].state[1], ' ');
}

TEST_F(Processes, MissingProcEndsTheProcess) {
    reset_scan();
    unlink(root_.path("/proc").c_str());
    auto r = run_in_child([] {
        bb_applet_name = "scan";
        procps_scan();
        return 0;
    });
    EXPECT_EQ(r.exit_code(), 1);
    EXPECT_EQ(r.err, "scan: Can't open /proc\n");
}

TEST_F(Processes, FindPidByNameMatchesPgrepAndResumesAfterEachMatch) {
    std::string name = unique_name("wmtwin");
    std::string exe = copy_sleep(name);
    Sleeper first(exe), second(exe);
    std::vector<int> expected = pgrep(name);
    ASSERT_EQ(expected.size(), 2u);
    expected.push_back(-1); // that exhausted the scan; the next one starts afresh
    expected.push_back(expected[0]);
    reset_scan();
    // Each call continues the scan where the previous match left it.
    for (int pid : expected) {
        int32_t *list = find_pid_by_name(name.c_str());
        EXPECT_EQ(list[0], pid);
        EXPECT_TRUE(pid < 0 || list[1] == 0); // one pid a call
        free(list);
    }
    reset_scan();
}

TEST_F(Processes, FindPidByNameTakesWholeNamesLikePgrep) {
    std::string name = unique_name("wmwhole");
    Sleeper s(copy_sleep(name));
    // A long file name shows up cut to the kernel's 15 characters.
    std::string long_name = "wmlongname-" + std::to_string(getpid()) + "-abcdef";
    Sleeper l(copy_sleep(long_name));
    struct Case {
        std::string query;
        pid_t want;
    } cases[] = {
        {name, s.pid()},  {name.substr(0, name.size() - 1), -1},
        {name + "x", -1}, {long_name.substr(0, 15), l.pid()},
        {long_name, -1},  {name + ")", -1},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.query);
        reset_scan();
        int32_t *list = find_pid_by_name(c.query.c_str());
        EXPECT_EQ(list[0], c.want);
        auto ref = pgrep(c.query);
        EXPECT_EQ(ref.empty() ? -1 : ref[0], c.want);
        free(list);
    }
    reset_scan();
    EXPECT_EQ(is_runing(name.c_str()), s.pid());
    reset_scan();
    EXPECT_EQ(is_runing("wm-nothing-here"), 0);
}

constexpr int kNameHidden = 3;

// A child process named like the processes it looks for. An emulator such as qemu-user
// answers for its own /proc entry itself and may show another name.
TEST_F(Processes, IsRuningCountsTheCallerItselfAsNotRunning) {
    std::string name = unique_name("wmself");
    std::string exe = copy_sleep(name);
    reset_scan();
    auto alone = run_in_child([&] {
        if (prctl(PR_SET_NAME, name.c_str()) != 0) return kNameHidden;
        auto all = scan_all();
        if (!all.count(getpid()) || name != all[getpid()].short_cmd) return kNameHidden;
        return is_runing(name.c_str()) == 0 ? 0 : 1;
    });
    if (alone.exit_code() == kNameHidden)
        GTEST_SKIP() << "this process's name cannot be changed where /proc shows it";
    EXPECT_EQ(alone.exit_code(), 0);
    // With a second process of that name, only the first one in /proc counts: when the
    // caller comes first the answer is still 0.
    auto pair = run_in_child([&] {
        if (prctl(PR_SET_NAME, name.c_str()) != 0) return 2;
        Sleeper other(exe);
        int want = other.pid() > getpid() ? 0 : other.pid();
        return is_runing(name.c_str()) == want ? 0 : 1;
    });
    EXPECT_EQ(pair.exit_code(), 0);
}

TEST(MyGetug, NamesIdsSizesAndFatalCases) {
    char buf[9];
    EXPECT_EQ(my_getug(buf, "root", 0, 9, 'u'), buf);
    EXPECT_STREQ(buf, "root");
    EXPECT_EQ(my_getug(buf, "averylongusername", 0, 9, 'u'), buf);
    EXPECT_STREQ(buf, "averylon");
    EXPECT_EQ(my_getug(buf, nullptr, 1234, 9, 'u'), nullptr);
    EXPECT_STREQ(buf, "1234");
    EXPECT_EQ(my_getug(buf, nullptr, 1234567890, 5, 'u'), nullptr);
    EXPECT_STREQ(buf, "1234");
    const char *name = "daemon";
    EXPECT_EQ(my_getug(nullptr, name, 1, 0, 'u'), name);
    EXPECT_EQ(my_getug(nullptr, nullptr, 1, 0, 'u'), nullptr);
    EXPECT_EQ(my_getpwuid(buf, 0, 9), buf);
    EXPECT_STREQ(buf, getpwuid(0) ? getpwuid(0)->pw_name : "0");

    auto unknown = run_in_child([] {
        bb_applet_name = "ps";
        return my_getug(nullptr, nullptr, 42, -1, 'g'), 0;
    });
    EXPECT_EQ(unknown.exit_code(), 1);
    EXPECT_EQ(unknown.err, "ps: unknown gid 42\n");
    auto no_buffer = run_in_child([] { return my_getug(nullptr, "x", 1, 9, 'u'), 0; });
    EXPECT_TRUE(WIFSIGNALED(no_buffer.status));
    EXPECT_NE(no_buffer.err.find("buffer!=NULL"), std::string::npos) << no_buffer.err;
}

} // namespace
