// Many CGI processes at once issuing and checking sessions through the real lock file.
//
// The children work in rounds. In round r five of them (the "login set") log in from their
// own addresses while all the others check their own (stale) tokens; then all of them
// check. Five new addresses push the previous five out of the full table, and a session
// that has just logged in cannot be pushed out by the four logins after it, so the result
// of every check of a live session is known in advance, and so is the whole file at the
// end of each phase. In the last rounds a further process runs clear_token while the
// others check: a session then may vanish, but never before a clear has started and never
// come back.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <set>
#include <sstream>
#include <string>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "support/harness.h"
#include "webmgmt.h"

namespace {

constexpr int kChildren = 32;
constexpr int kLoginSet = WEBMGMT_TOKEN_SLOTS;
constexpr int kRounds = 6;      // plain rounds
constexpr int kClearRounds = 2; // rounds with clear_token running
constexpr int kChecksWhileLogin = 8;
constexpr int kChecksAfterLogin = 24;
constexpr int kClears = 12;
constexpr int kClearer = kChildren; // index of the process that runs clear_token

struct ChildTally {
    int operations;
    int unexpected; // checks whose result contradicts the known state
    char first_error[120];
};

struct Shared {
    std::atomic<int> clears_started;
    ChildTally tally[kChildren + 1];
};

std::string address_of(int child) {
    return "10.0." + std::to_string(child / 8) + "." + std::to_string(child % 8 + 1);
}

// 16 characters, unique per child and round.
std::string token_of(int child, int round) {
    char text[17];
    std::snprintf(text, sizeof text, "c%02dr%02d-s3ss10n!", child, round);
    return text;
}

bool in_login_set(int child, int round) {
    for (int k = 0; k < kLoginSet; ++k)
        if ((round * kLoginSet + k) % kChildren == child) return true;
    return false;
}

// One child: its state is what it knows about its own session.
class Client {
  public:
    Client(int index, Shared *shared) : index_(index), shared_(shared) {
        setenv("REMOTE_ADDR", address_of(index).c_str(), 1);
        unsetenv("QUERY_STRING");
    }

    void login(int round) {
        token_ = token_of(index_, round);
        count_op();
        if (generate_token2save(address_of(index_).c_str(), token_.c_str()) != 0)
            fail("generate_token2save failed");
        setenv("HTTP_COOKIE", ("lang=en; stork=" + token_).c_str(), 1);
    }

    // expect: 1 = must succeed, 0 = must fail, -1 = unknown, 2 = clear round (may vanish
    // once a clear has started, never come back).
    void check(int expect) {
        if (token_.empty()) setenv("HTTP_COOKIE", ("stork=" + token_of(index_, 99)).c_str(), 1);
        count_op();
        bool ok = check_token() == 0;
        if (expect == 1 && !ok) fail("a live session was refused");
        if (expect == 0 && ok) fail("a session that is not live was accepted");
        if (expect == 2) {
            if (!ok && shared_->clears_started.load() == 0)
                fail("a session vanished before any clear");
            if (ok && vanished_) fail("a cleared session came back");
            vanished_ = vanished_ || !ok;
        }
    }

    void reset_vanished() { vanished_ = false; }

  private:
    void count_op() { ++shared_->tally[index_].operations; }
    void fail(const char *what) {
        ChildTally &t = shared_->tally[index_];
        if (t.unexpected++ == 0)
            std::snprintf(t.first_error, sizeof t.first_error, "child %d op %d: %s", index_,
                          t.operations, what);
    }

    int index_;
    Shared *shared_;
    std::string token_;
    bool vanished_ = false;
};

// Phase barrier: each child waits for one byte on its own pipe, reports on a shared one.
class Barrier {
  public:
    Barrier() {
        for (auto &p : go_)
            EXPECT_EQ(pipe(p), 0);
        EXPECT_EQ(pipe(done_), 0);
    }
    ~Barrier() {
        for (auto &p : go_)
            close(p[1]);
        close(done_[0]);
    }
    void child_side(int index) {
        for (int i = 0; i <= kChildren; ++i) {
            close(go_[i][1]);
            if (i != index) close(go_[i][0]);
        }
        close(done_[0]);
        me_ = index;
    }
    void parent_side() {
        for (auto &p : go_)
            close(p[0]);
        close(done_[1]);
    }
    bool wait_go() {
        char c = 0;
        return read(go_[me_][0], &c, 1) == 1 && c == 'g';
    }
    void report_done() {
        char c = 'd';
        (void)!write(done_[1], &c, 1);
    }
    // Starts a phase in every child and waits until all have finished it.
    bool run_phase(char command = 'g') {
        for (auto &p : go_)
            if (write(p[1], &command, 1) != 1) return false;
        if (command != 'g') return true;
        for (int n = 0; n <= kChildren; ++n) {
            char c;
            if (read(done_[0], &c, 1) != 1) return false;
        }
        return true;
    }

  private:
    int go_[kChildren + 1][2];
    int done_[2];
    int me_ = -1;
};

void run_child(int index, Shared *shared, Barrier &barrier) {
    Client client(index, shared);
    for (int round = 0; round < kRounds + kClearRounds; ++round) {
        bool clear_round = round >= kRounds;
        bool login_now = in_login_set(index, round);
        bool was_live = round > 0 && in_login_set(index, round - 1);
        // Phase A: the login set logs in, everybody checks.
        if (!barrier.wait_go()) return;
        if (index != kClearer) {
            if (login_now) client.login(round);
            for (int i = 0; i < kChecksWhileLogin; ++i)
                client.check(login_now ? 1 : was_live ? -1 : 0);
        }
        barrier.report_done();
        // Phase B: only checks (and, in the clear rounds, clears).
        if (!barrier.wait_go()) return;
        client.reset_vanished();
        if (index == kClearer) {
            for (int i = 0; clear_round && i < kClears; ++i) {
                shared->clears_started.fetch_add(1);
                ++shared->tally[index].operations;
                EXPECT_EQ(clear_token(), 0);
                for (int j = 0; j < 2; ++j)
                    client.check(0);
            }
        } else {
            for (int i = 0; i < kChecksAfterLogin; ++i)
                client.check(!login_now ? 0 : clear_round ? 2 : 1);
        }
        barrier.report_done();
    }
    barrier.wait_go();
}

struct FileSession {
    std::string ip, token;
    long last_used;
    bool operator<(const FileSession &o) const { return ip + " " + token < o.ip + " " + o.token; }
};

// Parses the session file strictly: every line "ip token time".
bool parse_sessions(const std::string &text, std::vector<FileSession> &out) {
    std::istringstream in(text);
    std::string line;
    while (std::getline(in, line)) {
        std::istringstream fields(line);
        FileSession s;
        std::string extra;
        if (!(fields >> s.ip >> s.token >> s.last_used) || (fields >> extra)) return false;
        out.push_back(s);
    }
    return text.empty() || text.back() == '\n';
}

std::set<std::pair<std::string, std::string>> login_set_sessions(int round) {
    std::set<std::pair<std::string, std::string>> want;
    for (int c = 0; c < kChildren; ++c)
        if (in_login_set(c, round)) want.insert({address_of(c), token_of(c, round)});
    return want;
}

TEST(TokenConcurrency, ManyProcessesIssueAndCheckThroughTheLock) {
    wmtest::TempRoot root;
    wmtest::write_file(root.path("/var/loginlock"), "");
    auto *shared = static_cast<Shared *>(
        mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    ASSERT_NE(shared, MAP_FAILED);
    new (shared) Shared{};

    Barrier barrier;
    std::vector<pid_t> pids;
    fflush(nullptr);
    for (int i = 0; i <= kChildren; ++i) {
        pid_t pid = fork();
        ASSERT_GE(pid, 0);
        if (pid == 0) {
            barrier.child_side(i);
            run_child(i, shared, barrier);
            _exit(testing::Test::HasFailure() ? 1 : 0);
        }
        pids.push_back(pid);
    }
    barrier.parent_side();

    for (int round = 0; round < kRounds + kClearRounds; ++round) {
        bool clear_round = round >= kRounds;
        ASSERT_TRUE(barrier.run_phase()) << "round " << round;
        auto want = login_set_sessions(round);
        // After the logins the file holds exactly this round's five sessions.
        std::vector<FileSession> sessions;
        ASSERT_TRUE(parse_sessions(wmtest::read_file(root.path("/var/usertoken")), sessions));
        std::set<std::pair<std::string, std::string>> got;
        for (auto &s : sessions)
            got.insert({s.ip, s.token});
        EXPECT_EQ(sessions.size(), size_t(kLoginSet)) << "round " << round;
        EXPECT_EQ(got, want) << "round " << round;

        shared->clears_started = 0;
        ASSERT_TRUE(barrier.run_phase()) << "round " << round;
        sessions.clear();
        ASSERT_TRUE(parse_sessions(wmtest::read_file(root.path("/var/usertoken")), sessions));
        EXPECT_LE(sessions.size(), size_t(kLoginSet));
        // Checks never add or drop sessions; the last clear of a clear round empties the
        // table and nothing refills it.
        EXPECT_EQ(sessions.size(), clear_round ? 0u : size_t(kLoginSet)) << "round " << round;
        for (auto &s : sessions) {
            EXPECT_TRUE(want.count({s.ip, s.token})) << s.ip << " " << s.token;
        }
    }
    barrier.run_phase('q');

    int operations = 0, unexpected = 0;
    for (pid_t pid : pids) {
        int status = 0;
        waitpid(pid, &status, 0);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    }
    for (const ChildTally &t : shared->tally) {
        operations += t.operations;
        unexpected += t.unexpected;
        EXPECT_EQ(t.unexpected, 0) << t.first_error;
    }
    std::printf("[ measured ] %d processes, %d operations, %d unexpected results\n", kChildren + 1,
                operations, unexpected);
    RecordProperty("processes", kChildren + 1);
    RecordProperty("operations", operations);
    RecordProperty("unexpected", unexpected);
    munmap(shared, sizeof(Shared));
}

} // namespace
