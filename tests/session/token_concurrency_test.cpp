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
#include <pthread.h>
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

struct Shared {
    pthread_barrier_t phase; // the children and the parent
    std::atomic<int> clears_started;
    int operations[kChildren + 1];
    int unexpected[kChildren + 1]; // checks whose result contradicts the known state
    char first_error[kChildren + 1][120];
};

using Sessions = std::set<std::pair<std::string, std::string>>;

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

void run_child(int me, Shared *sh) {
    std::string address = address_of(me);
    setenv("REMOTE_ADDR", address.c_str(), 1);
    setenv("HTTP_COOKIE", ("stork=" + token_of(me, 99)).c_str(), 1); // never issued
    unsetenv("QUERY_STRING");
    bool vanished = false;
    auto fail = [&](const char *what) {
        if (sh->unexpected[me]++ == 0)
            std::snprintf(sh->first_error[me], sizeof sh->first_error[me], "child %d op %d: %s", me,
                          sh->operations[me], what);
    };
    // expect: 1 = must succeed, 0 = must fail, -1 = unknown, 2 = clear round (may vanish
    // once a clear has started, never come back).
    auto check = [&](int expect) {
        ++sh->operations[me];
        bool ok = check_token() == 0;
        if (expect == 1 && !ok) fail("a live session was refused");
        if (expect == 0 && ok) fail("a session that is not live was accepted");
        if (expect == 2 && !ok && sh->clears_started.load() == 0)
            fail("a session vanished before any clear");
        if (expect == 2 && ok && vanished) fail("a cleared session came back");
        vanished = vanished || (expect == 2 && !ok);
    };
    for (int round = 0; round < kRounds + kClearRounds; ++round) {
        bool clear_round = round >= kRounds;
        bool login_now = in_login_set(me, round);
        bool was_live = round > 0 && in_login_set(me, round - 1);
        // Phase A: the login set logs in, everybody checks.
        pthread_barrier_wait(&sh->phase);
        if (me != kClearer && login_now) {
            std::string token = token_of(me, round);
            ++sh->operations[me];
            if (generate_token2save(address.c_str(), token.c_str()) != 0)
                fail("generate_token2save failed");
            setenv("HTTP_COOKIE", ("lang=en; stork=" + token).c_str(), 1);
        }
        for (int i = 0; me != kClearer && i < kChecksWhileLogin; ++i)
            check(login_now ? 1 : was_live ? -1 : 0);
        pthread_barrier_wait(&sh->phase);
        // Phase B, once the parent has read the file: only checks (and clears).
        pthread_barrier_wait(&sh->phase);
        vanished = false;
        for (int i = 0; me == kClearer && clear_round && i < kClears; ++i) {
            sh->clears_started.fetch_add(1);
            ++sh->operations[me];
            if (clear_token() != 0) fail("clear_token failed");
            check(0);
            check(0);
        }
        for (int i = 0; me != kClearer && i < kChecksAfterLogin; ++i)
            check(!login_now ? 0 : clear_round ? 2 : 1);
        pthread_barrier_wait(&sh->phase);
    }
}

// The sessions of the file; every line must be "ip token time".
std::vector<std::pair<std::string, std::string>> file_sessions(const std::string &text) {
    std::vector<std::pair<std::string, std::string>> out;
    std::istringstream in(text);
    std::string line, ip, token, extra;
    long last_used;
    while (std::getline(in, line)) {
        std::istringstream fields(line);
        EXPECT_TRUE((fields >> ip >> token >> last_used) && !(fields >> extra)) << line;
        out.emplace_back(ip, token);
    }
    EXPECT_TRUE(text.empty() || text.back() == '\n') << text;
    return out;
}

TEST(TokenConcurrency, ManyProcessesIssueAndCheckThroughTheLock) {
    wmtest::TempRoot root;
    wmtest::write_file(root.path("/var/loginlock"), "");
    auto *sh = static_cast<Shared *>(
        mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    ASSERT_NE(sh, MAP_FAILED);
    new (sh) Shared{};
    pthread_barrierattr_t attr;
    pthread_barrierattr_init(&attr);
    pthread_barrierattr_setpshared(&attr, PTHREAD_PROCESS_SHARED);
    ASSERT_EQ(pthread_barrier_init(&sh->phase, &attr, kChildren + 2), 0);

    std::vector<pid_t> pids;
    fflush(nullptr);
    for (int i = 0; i <= kChildren; ++i) {
        pid_t pid = fork();
        ASSERT_GE(pid, 0);
        if (pid == 0) {
            run_child(i, sh);
            _exit(0);
        }
        pids.push_back(pid);
    }

    // No ASSERT from here on: the children wait for the parent at every phase.
    auto sessions = [&] { return file_sessions(wmtest::read_file(root.path("/var/usertoken"))); };
    for (int round = 0; round < kRounds + kClearRounds; ++round) {
        Sessions want;
        for (int c = 0; c < kChildren; ++c)
            if (in_login_set(c, round)) want.insert({address_of(c), token_of(c, round)});
        pthread_barrier_wait(&sh->phase);
        pthread_barrier_wait(&sh->phase);
        // After the logins the file holds exactly this round's five sessions.
        auto after_logins = sessions();
        EXPECT_EQ(after_logins.size(), size_t(kLoginSet)) << "round " << round;
        EXPECT_EQ(Sessions(after_logins.begin(), after_logins.end()), want) << "round " << round;

        sh->clears_started = 0;
        pthread_barrier_wait(&sh->phase);
        pthread_barrier_wait(&sh->phase);
        // Checks never add or drop sessions; the last clear of a clear round empties the
        // table and nothing refills it.
        auto after_checks = sessions();
        EXPECT_EQ(after_checks.size(), round >= kRounds ? 0u : size_t(kLoginSet)) << round;
        for (auto &s : after_checks)
            EXPECT_TRUE(want.count(s)) << s.first << " " << s.second;
    }

    int operations = 0, unexpected = 0;
    for (pid_t pid : pids) {
        int status = 0;
        waitpid(pid, &status, 0);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    }
    for (int i = 0; i <= kChildren; ++i) {
        operations += sh->operations[i];
        unexpected += sh->unexpected[i];
        EXPECT_EQ(sh->unexpected[i], 0) << sh->first_error[i];
    }
    std::printf("[ measured ] %d processes, %d operations, %d unexpected results\n", kChildren + 1,
                operations, unexpected);
    RecordProperty("processes", kChildren + 1);
    RecordProperty("operations", operations);
    RecordProperty("unexpected", unexpected);
    pthread_barrier_destroy(&sh->phase);
    munmap(sh, sizeof(Shared));
}

} // namespace
