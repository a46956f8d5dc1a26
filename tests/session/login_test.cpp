// The login attempt counter, password hashing through tq_versign, random values.
#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <set>
#include <string>
#include <vector>

#include "support/harness.h"
#include "store/config_data_api.h"
#include "webmgmt.h"
#include <sys/stat.h>

namespace {

using wmtest::read_file;
using wmtest::write_file;

TEST(LoginCount, AddsOneToWhateverTheFileHolds) {
    wmtest::TempRoot root;
    struct Case {
        const char *content; // nullptr: no file
        int32_t count_after;
    } cases[] = {
        {nullptr, 1},          {"", 1},        {"1000 4\n", 5},
        {"abc\n", 1},          {"7\n", 1},     {"12abc 5\n", 1},
        {" 12   8 junk\n", 9}, {"1 -3\n", -2}, {"9 2147483647\n", INT32_MAX},
    };
    for (const Case &c : cases) {
        std::string path = root.path("/var/count");
        unlink(path.c_str());
        if (c.content) write_file(path, c.content);
        int32_t before = get_curr_time();
        login_add(path.c_str());
        int32_t after = get_curr_time();
        int32_t time = -1, count = -1;
        read_count(path.c_str(), &time, &count);
        EXPECT_TRUE(time >= before && time <= after) << (c.content ? c.content : "missing");
        EXPECT_EQ(count, c.count_after) << (c.content ? c.content : "missing");
        EXPECT_EQ(read_file(path), std::to_string(time) + " " + std::to_string(count) + "\n");
    }
}

TEST(LoginCount, ReadLeavesValuesAloneWhenThereIsNothingToRead) {
    wmtest::TempRoot root;
    std::string path = root.path("/var/count");
    int32_t time = 11, count = 22;
    read_count(path.c_str(), &time, &count);
    write_file(path, "");
    read_count(path.c_str(), &time, &count);
    write_file(path, "x 5\n");
    read_count(path.c_str(), &time, &count);
    EXPECT_EQ(time, 11);
    EXPECT_EQ(count, 22);
    write_file(path, "99999999999 -99999999999\n");
    read_count(path.c_str(), &time, &count);
    EXPECT_EQ(time, INT32_MAX);
    EXPECT_EQ(count, INT32_MIN);
    save_count(path.c_str(), -5, 0);
    EXPECT_EQ(read_file(path), "-5 0\n");
    save_count(root.path("/nodir/count").c_str(), 1, 1); // silently not written
}

// SHA-256 of each text by python3's hashlib, the independent reference (one run for all).
std::vector<std::string> reference_sha256(const std::vector<std::string> &texts) {
    std::string input;
    for (const std::string &t : texts)
        input += t + '\0';
    auto r =
        wmtest::run_shell("python3 -c 'import hashlib,sys; [print(hashlib.sha256(t)"
                          ".hexdigest()) for t in sys.stdin.buffer.read().split(b\"\\0\")[:-1]]'",
                          input);
    std::vector<std::string> digests;
    for (size_t at = 0; at + 64 <= r.out.size(); at += 65)
        digests.push_back(r.out.substr(at, 64));
    EXPECT_EQ(digests.size(), texts.size()) << r.err;
    return digests;
}

std::string hash_of(const std::string &text, int size = 65) {
    std::string out(size, '\0');
    EXPECT_EQ(to_sha256(text.c_str(), out.data(), size), 0);
    return out.c_str();
}

TEST(ToSha256, ShellCharactersNeverRunACommand) {
    wmtest::TempRoot root;
    std::string canary = root.path("/tmp/canary");
    const std::vector<std::string> payloads = {
        "$(touch " + canary + ")",
        "`touch " + canary + "`",
        "x;touch " + canary,
        "x|touch " + canary,
        "x&&touch " + canary,
        "'\";touch " + canary + ";'",
        "a b\ttouch " + canary,
        "x\ntouch " + canary,
        "admin",
        "",
    };
    auto digests = reference_sha256(payloads);
    ASSERT_EQ(digests.size(), payloads.size());
    for (size_t i = 0; i < payloads.size(); ++i) {
        EXPECT_EQ(hash_of(payloads[i]), digests[i]) << payloads[i];
        EXPECT_FALSE(wmtest::file_exists(canary)) << payloads[i];
    }
}

TEST(ToSha256, BuffersAndCuts) {
    std::string text(200, 'p');
    auto digests = reference_sha256({"secret", text.substr(0, 127 - 18)});
    ASSERT_EQ(digests.size(), 2u);
    EXPECT_EQ(hash_of("secret", 100), digests[0] + "\n") << "the line feed is kept when it fits";
    EXPECT_EQ(hash_of("secret", 10), digests[0].substr(0, 9));
    // The command "tq_versign sha256 <text>" is cut to 127 characters.
    EXPECT_EQ(hash_of(text), digests[1]);

    auto r = wmtest::run_in_child([] {
        setenv("PATH", "/nonexistent", 1);
        char out[65] = "unchanged";
        to_sha256("secret", out, sizeof out);
        std::printf("%s", out);
        return 0;
    });
    EXPECT_EQ(r.out, "unchanged") << "no tool, no output: the buffer stays";
}

TEST(TqVersign, SignverifyWithTheTestKey) {
    wmtest::TempRoot root;
    std::string key = wmtest::source_dir() + "/tests/keys/firmware-signing-TEST-ONLY.key";
    std::string dir = root.path("/tmp/");
    for (std::string name : {"fw.bin", "fw $(touch canary);`touch canary`'\".bin"}) {
        std::string image = dir + name, sig = image + ".sig";
        write_file(image, "firmware image " + name);
        // Paths reach the tools as single words: argv from python, never a shell.
        auto run = [&](const std::string &tool) {
            return wmtest::run_shell("cd '" + dir +
                                         "' && python3 -c 'import subprocess,sys;"
                                         "sys.exit(subprocess.call(sys.argv[1:]))' " +
                                         tool + " \"$A\" \"$B\"",
                                     "")
                .out;
        };
        setenv("A", key.c_str(), 1);
        setenv("B", image.c_str(), 1);
        run(wmtest::source_dir() + "/tools/sign-image");
        setenv("A", image.c_str(), 1);
        setenv("B", sig.c_str(), 1);
        EXPECT_EQ(run("tq_versign signverify"), "Verify Success\n") << name;
        write_file(image, "tampered");
        EXPECT_EQ(run("tq_versign signverify"), "Verify Failure\n") << name;
        EXPECT_FALSE(wmtest::file_exists(dir + "canary"));
    }
    unsetenv("A");
    unsetenv("B");
}

TEST(CreatePasswdRandom, AlphabetLengthAndNeverTheOldValue) {
    char field[16];
    std::memset(field, '#', sizeof field);
    std::memcpy(field, "000000", 7);
    std::set<char> seen;
    for (int i = 0; i < 3000; ++i) {
        std::string old(field, 6);
        create_passwd_random(field);
        ASSERT_EQ(field[6], '\0');
        ASSERT_EQ(field[7], '#') << "nothing after the terminator";
        ASSERT_NE(std::string(field, 6), old) << "draw " << i;
        for (int k = 0; k < 6; ++k) {
            char c = field[k];
            ASSERT_TRUE((c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'y'))
                << int(c);
            seen.insert(c);
        }
    }
    EXPECT_EQ(seen.count('z'), 0u);
}

} // namespace

// The administrator password is replaced by its digest and the record reaches flash; a
// missing tool changes nothing and saves nothing.
TEST(PasswordHash, AdministratorPasswordToFlash) {
    wmtest::TempRoot root;
    std::string defaults = root.path("/defaults");
    mkdir(defaults.c_str(), 0755);
    setenv("WEBMGMT_DEFAULTS_DIR", defaults.c_str(), 1);
    std::string flash = root.path("/etc/config_flash/misc.bin");
    std::string digest = reference_sha256({"s3cret pass"})[0];

    auto hash_in_child = [](const char *path_env) {
        return wmtest::run_in_child([&] {
            if (path_env) setenv("PATH", path_env, 1);
            misc_config *misc = SC_Get_Misc_System_Config();
            std::memset(misc->sys_user.rootpwd, 0, sizeof misc->sys_user.rootpwd);
            std::strcpy(misc->sys_user.rootpwd, "s3cret pass");
            passwd_to_sha256(misc);
            std::fwrite(misc->sys_user.rootpwd, 1, sizeof misc->sys_user.rootpwd, stdout);
            return 0;
        });
    };
    auto missing = hash_in_child("/nonexistent");
    EXPECT_EQ(missing.out.substr(0, 12), std::string("s3cret pass\0", 12));
    EXPECT_FALSE(wmtest::file_exists(flash));

    auto hashed = hash_in_child(nullptr);
    EXPECT_EQ(hashed.out, digest);
    ASSERT_TRUE(wmtest::file_exists(flash));
    auto stored = wmtest::run_in_child([] {
        misc_config *misc = SC_Get_Misc_System_Config();
        std::fwrite(misc->sys_user.rootpwd, 1, sizeof misc->sys_user.rootpwd, stdout);
        return 0;
    });
    EXPECT_EQ(stored.out, digest);
    unsetenv("WEBMGMT_DEFAULTS_DIR");
}
