// Sessions as CGI programs live them: one process logs in, later ones check the request.
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <vector>
#include <cstdio>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "support/harness.h"
#include "webmgmt.h"

namespace {

using wmtest::file_exists;
using wmtest::read_file;
using wmtest::run_in_child;
using wmtest::write_file;

const std::string kTok1 = "Aa0123456789bcdE";
const std::string kTok2 = "Zz9876543210yxwV";
const std::string kIp = "192.168.1.20";

struct Sessions : testing::Test {
    wmtest::TempRoot root;
    std::string file = root.path("/var/usertoken");
    Sessions() { write_file(root.path("/var/loginlock"), ""); }

    int login(const std::string &ip, const std::string &token) {
        return run_in_child([&] { return generate_token2save(ip.c_str(), token.c_str()); })
            .exit_code();
    }
    // check_token in a fresh process with the CGI environment: true = logged in.
    bool check(const std::string &ip, const std::string &cookie, const char *query = nullptr) {
        auto r = run_in_child([&] {
            setenv("REMOTE_ADDR", ip.c_str(), 1);
            setenv("HTTP_COOKIE", cookie.c_str(), 1);
            if (query) setenv("QUERY_STRING", query, 1);
            return check_token() == 0 ? 0 : 1;
        });
        EXPECT_TRUE(r.out.empty()) << r.out;
        return r.exit_code() == 0;
    }
    std::string line(const std::string &ip, const std::string &token, long t) {
        return ip + " " + token + " " + std::to_string(t) + "\n";
    }
};

TEST_F(Sessions, LifeAcrossProcesses) {
    int32_t before = get_curr_time();
    ASSERT_EQ(login(kIp, kTok1), 0);
    int32_t after = get_curr_time();
    std::string text = read_file(file);
    long stamp = std::atol(text.c_str() + text.rfind(' '));
    EXPECT_TRUE(stamp >= before && stamp <= after) << text;
    EXPECT_EQ(text, line(kIp, kTok1, stamp));

    EXPECT_TRUE(check(kIp, "stork=" + kTok1));
    EXPECT_TRUE(check(kIp, "lang=en; stork=" + kTok1 + "; x=1"));
    EXPECT_TRUE(check(kIp, "", ("a=1&stork=" + kTok1).c_str()));
    EXPECT_FALSE(check("192.168.1.21", "stork=" + kTok1)) << "other address";
    EXPECT_FALSE(check(kIp, "stork=Aa0123456789bcdF"));
    // The query string wins over the cookie, even when only the cookie is right.
    EXPECT_FALSE(check(kIp, "stork=" + kTok1, "stork=Zz9876543210"));

    // A second login from the same address replaces the token in place.
    ASSERT_EQ(login("192.168.1.99", kTok2), 0);
    ASSERT_EQ(login(kIp, kTok2), 0);
    EXPECT_FALSE(check(kIp, "stork=" + kTok1));
    EXPECT_TRUE(check(kIp, "stork=" + kTok2));
    EXPECT_EQ(read_file(file).find(kIp + " " + kTok2), 0u);

    // Logging out removes the file and every session with it, logged as the device's rm.
    write_file(root.path("/var/cmd_ram"), "");
    EXPECT_EQ(clear_token(), 0);
    EXPECT_FALSE(file_exists(file));
    EXPECT_EQ(read_file(root.path("/tmp/cmdinfo")), "rm -f " + file + "\n");
    EXPECT_FALSE(check(kIp, "stork=" + kTok2));
}

TEST_F(Sessions, SixthAddressDropsTheLastSlotWhateverItsAge) {
    for (int i = 1; i <= 5; ++i)
        ASSERT_EQ(login("10.1.1." + std::to_string(i), kTok1), 0);
    ASSERT_TRUE(check("10.1.1.5", "stork=" + kTok1)); // just refreshed
    ASSERT_EQ(login("fe80::6", kTok2), 0);
    EXPECT_FALSE(check("10.1.1.5", "stork=" + kTok1));
    for (int i = 1; i <= 4; ++i)
        EXPECT_TRUE(check("10.1.1." + std::to_string(i), "stork=" + kTok1));
    std::string text = read_file(file);
    EXPECT_EQ(text.rfind("fe80::6 ", 0), 0u) << text;
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 5);
}

TEST_F(Sessions, IdleLimitIs1800Seconds) {
    // The session is stamped from the library's own clock; a check is valid only when the
    // second did not change around it.
    auto check_aged = [&](long age, const std::string &others) {
        for (;;) {
            int32_t now = get_curr_time();
            write_file(file, others + line("10.0.0.1", kTok1, now - age));
            int rc = auth_token("10.0.0.1", kTok1.c_str());
            if (get_curr_time() == now) return std::make_pair(rc, now);
        }
    };
    auto [fresh, now] = check_aged(1799, "");
    EXPECT_EQ(fresh, 0);
    EXPECT_EQ(read_file(file), line("10.0.0.1", kTok1, now)) << "refreshed";
    EXPECT_EQ(check_aged(1800, line("10.0.0.2", kTok2, 5)).first, -1);
    // Removed at that check; another expired session that nobody presented stays.
    EXPECT_EQ(read_file(file), line("10.0.0.2", kTok2, 5));
    write_file(file, "10.0.0.3 " + kTok1); // no time, no line feed: expired at once
    EXPECT_EQ(auth_token("10.0.0.3", kTok1.c_str()), -1);
    // A check in the same second as the last finds the file holding what it would write:
    // the file is left as it is (the same inode), not replaced.
    for (;;) {
        int32_t second = get_curr_time();
        write_file(file, line("10.0.0.1", kTok1, second));
        struct stat before {
        }, after{};
        ASSERT_EQ(stat(file.c_str(), &before), 0);
        ASSERT_EQ(auth_token("10.0.0.1", kTok1.c_str()), 0);
        ASSERT_EQ(stat(file.c_str(), &after), 0);
        if (get_curr_time() != second) continue;
        EXPECT_EQ(after.st_ino, before.st_ino);
        break;
    }
}

TEST_F(Sessions, TokenLengthAndMissingLockFile) {
    unlink(root.path("/var/loginlock").c_str());
    auto r9 = run_in_child([] { return auth_token("10.0.0.1", "123456789") == -1 ? 0 : 1; });
    EXPECT_EQ(r9.exit_code(), 0);
    EXPECT_EQ(r9.out, "") << "refused before the lock file is touched";
    std::string message = "cannot open " + root.path("/var/loginlock") + "!\n";
    for (auto call : {+[] { return auth_token("10.0.0.1", "1234567890"); },
                      +[] { return generate_token2save("10.0.0.1", "1234567890"); },
                      +[] { return clear_token(); }}) {
        // The message goes where the reply goes, and its length is the result.
        auto r = run_in_child([&] { return std::printf("=%d", call()) > 0 ? 0 : 1; });
        EXPECT_EQ(r.out, message + "=" + std::to_string(message.size()));
    }
    auto r = run_in_child([] {
        setenv("REMOTE_ADDR", "10.0.0.1", 1);
        setenv("HTTP_COOKIE", "stork=1234567890", 1);
        return std::printf("=%d", check_token()) > 0 ? 0 : 1;
    });
    EXPECT_EQ(r.out, message + "=-1") << "not logged in";
    EXPECT_FALSE(file_exists(file));
}

TEST(GetToken, QueryBeforeCookieSixteenCharactersNoStopAtSeparators) {
    struct Case {
        const char *query, *cookie;
        int result;
        const char *token;
    } cases[] = {
        {"stork=abc", "stork=def", 0, "abc"},
        {"x=1&stork=0123456789abcdefXYZ", nullptr, 0, "0123456789abcdef"},
        {"nostork", "a=b; stork=1234567890; lang=en", 0, "1234567890; lang"},
        {"xstork=12", nullptr, 0, "12"}, // a plain substring search
        {nullptr, "lang=en", 1, ""},
        {nullptr, nullptr, 1, ""},
        {"stork=", "stork=zz", 0, ""},
    };
    for (const Case &c : cases) {
        auto r = run_in_child([&] {
            c.query ? setenv("QUERY_STRING", c.query, 1) : unsetenv("QUERY_STRING");
            c.cookie ? setenv("HTTP_COOKIE", c.cookie, 1) : unsetenv("HTTP_COOKIE");
            char dst[17] = {};
            int rc = get_token("stork=", dst);
            std::printf("%d:%s", rc, dst);
            return 0;
        });
        EXPECT_EQ(r.out, std::to_string(c.result) + ":" + c.token) << (c.query ? c.query : "-");
    }
}

TEST(TokenTable, LoaderReadsSixLinesAndCutsLongFields) {
    wmtest::TempRoot root;
    std::string path = root.path("/var/t");
    std::string long_ip(70, 'i');
    write_file(path, "1.1.1.1 tokA 100\n\n" + long_ip +
                         " tokC 99999999999\n4.4.4.4\n"
                         "5.5.5.5 tokE -7 extra\n6.6.6.6 tokF 600\n7.7.7.7 tokG 700\n");
    token_list list{};
    initial_tokenlist(path.c_str(), &list);
    EXPECT_EQ(list.count, 6);
    EXPECT_STREQ(list.slot[0].token, "tokA");
    EXPECT_EQ(list.slot[0].last_used, 100);
    EXPECT_EQ(list.slot[1].in_use, 1) << "an empty line still fills a slot";
    EXPECT_STREQ(list.slot[1].client_ip, "");
    EXPECT_EQ(std::string(list.slot[2].client_ip), long_ip.substr(0, 49));
    EXPECT_EQ(list.slot[2].last_used, INT32_MAX);
    EXPECT_STREQ(list.slot[3].token, "");
    EXPECT_EQ(list.slot[4].last_used, -7);
    EXPECT_STREQ(list.spare.client_ip, "6.6.6.6");
    EXPECT_EQ(find_tokenbyclientip("5.5.5.5", &list), 4);
    EXPECT_EQ(find_tokenbyclientip("6.6.6.6", &list), -1) << "the spare is never used";

    list.slot[1].in_use = 0;
    insert_token("8.8.8.8", "tokH", &list); // first free slot
    EXPECT_EQ(find_tokenbyclientip("8.8.8.8", &list), 1);
    insert_token("9.9.9.9", "tokI", &list); // full: shift down, slot 4 lost
    EXPECT_EQ(find_tokenbyclientip("9.9.9.9", &list), 0);
    EXPECT_EQ(find_tokenbyclientip("5.5.5.5", &list), -1);
    list.slot[3].in_use = 0;
    save_token(path.c_str(), &list);
    std::string text = read_file(path);
    EXPECT_EQ(text.substr(0, text.find('\n')),
              "9.9.9.9 tokI " + std::to_string(list.slot[0].last_used));
    EXPECT_NE(text.find("\n1.1.1.1 tokA 100\n8.8.8.8 tokH "), std::string::npos) << text;
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 4) << text;

    token_list empty{};
    initial_tokenlist(root.path("/var/missing").c_str(), &empty);
    EXPECT_EQ(empty.count, 0);
}

// The table is read in one piece and cut into lines as fgets() with a 100-byte buffer cuts
// them: the C library's fgets is the reference, on lines that cross the buffer, lack their
// line feed or hold a NUL.
TEST(TokenTable, LinesAreCutAsFgetsCutsThem) {
    wmtest::TempRoot root;
    std::string path = root.path("/var/t");
    const std::string files[] = {
        std::string(150, 'a') + " tokA 1\nb tokB 2\n",
        std::string(98, 'c') + "\nd tokD 4",
        std::string("e\0f tokE 5\ng tokG 6\n", 20) + std::string(99, 'h'),
        std::string(99, 'i') + std::string(99, 'j') + std::string(99, 'k') + "\n",
        "\n\n\n\n\n\n\n",
    };
    for (const std::string &text : files) {
        write_file(path, text);
        std::vector<std::string> lines;
        std::unique_ptr<FILE, int (*)(FILE *)> f(std::fopen(path.c_str(), "r"), std::fclose);
        char line[100];
        while (lines.size() < 6 && std::fgets(line, sizeof line, f.get()))
            lines.emplace_back(line); // up to a NUL, as the loader's scan sees it
        token_list list{};
        initial_tokenlist(path.c_str(), &list);
        SCOPED_TRACE(text);
        ASSERT_EQ(list.count, int(lines.size()));
        for (size_t i = 0; i < lines.size(); ++i) {
            const token_record &slot = i < 5 ? list.slot[i] : list.spare;
            std::string ip = lines[i].substr(0, lines[i].find_first_of(" \n"));
            EXPECT_EQ(slot.client_ip, ip.substr(0, sizeof slot.client_ip - 1)) << i;
            EXPECT_EQ(slot.in_use, 1);
        }
    }
}

TEST(LockReg, DeviceCommandNumbersLockTheWholeFile) {
    wmtest::TempRoot root;
    std::string path = root.path("/var/loginlock");
    write_file(path, "");
    // Another process, the host's python, tries the same lock.
    auto python_can_lock = [&] {
        return wmtest::run_shell("python3 -c 'import fcntl,sys; f=open(sys.argv[1],\"r+\");"
                                 "fcntl.lockf(f, fcntl.LOCK_EX|fcntl.LOCK_NB)' '" +
                                 path + "'")
                   .exit_code() == 0;
    };
    int fd = open(path.c_str(), O_RDWR);
    // 14 and 13 are the 32-bit device's blocking and non-blocking 64-bit set-lock commands.
    ASSERT_EQ(lock_reg(fd, 14, F_WRLCK, 0, SEEK_SET, 0), 0);
    EXPECT_FALSE(python_can_lock());
    auto other = run_in_child([&] {
        int fd2 = open(path.c_str(), O_RDWR);
        return lock_reg(fd2, 13, F_WRLCK, 0, SEEK_SET, 0) == -1 ? 0 : 1;
    });
    EXPECT_EQ(other.exit_code(), 0);
    ASSERT_EQ(lock_reg(fd, 13, F_UNLCK, 0, SEEK_SET, 0), 0);
    EXPECT_TRUE(python_can_lock());
    EXPECT_EQ(lock_reg(fd, 99, F_WRLCK, 0, SEEK_SET, 0), -1);
    EXPECT_EQ(errno, EINVAL);
    close(fd);
}

TEST(LinkCount, ReadsTheConntrackCountersOrZero) {
    wmtest::TempRoot root;
    root.own_proc();
    EXPECT_EQ(get_current_link_count(), 0);
    EXPECT_EQ(get_current_link_count_max(), 0);
    root.put("/proc/sys/net/netfilter/nf_conntrack_count", "137\n");
    root.put("/proc/sys/net/netfilter/nf_conntrack_max", "65536\n");
    EXPECT_EQ(get_current_link_count(), 137);
    EXPECT_EQ(get_current_link_count_max(), 65536);
}

} // namespace
