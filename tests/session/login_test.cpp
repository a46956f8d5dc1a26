// The login attempt counter, password hashing through tq_versign, random values.
#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <set>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "support/harness.h"
#include "store/config_data_api.h"
#include "webmgmt.h"

namespace {

using wmtest::file_exists;
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
    std::string path = root.path("/var/count");
    for (const Case &c : cases) {
        unlink(path.c_str());
        if (c.content) write_file(path, c.content);
        int32_t before = get_curr_time();
        login_add(path.c_str());
        int32_t after = get_curr_time(), time = -1, count = -1;
        read_count(path.c_str(), &time, &count);
        std::string what = c.content ? c.content : "missing";
        EXPECT_TRUE(time >= before && time <= after) << what;
        EXPECT_EQ(count, c.count_after) << what;
        EXPECT_EQ(read_file(path), std::to_string(time) + " " + std::to_string(count) + "\n");
    }
}

TEST(LoginCount, ReadLeavesValuesAloneWhenThereIsNothingToRead) {
    wmtest::TempRoot root;
    std::string path = root.path("/var/count");
    int32_t time = 11, count = 22;
    for (const char *content : {static_cast<const char *>(nullptr), "", "x 5\n"}) {
        if (content) write_file(path, content);
        read_count(path.c_str(), &time, &count);
        EXPECT_EQ(time, 11) << (content ? content : "missing");
        EXPECT_EQ(count, 22);
    }
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
    digests.resize(texts.size());
    return digests;
}

std::string hash_of(const std::string &text, int size = 65) {
    std::string out(size, '\0');
    EXPECT_EQ(to_sha256(text.c_str(), out.data(), size), 0);
    return out.c_str();
}

// Shell characters never run a command, texts that look like options are hashed as text, and
// the buffer and command-line limits hold.
TEST(ToSha256, ShellCharactersBuffersAndCuts) {
    wmtest::TempRoot root;
    std::string canary = root.path("/tmp/canary");
    std::vector<std::string> texts = {
        "$(touch " + canary + ")",
        "`touch " + canary + "`",
        "x;touch " + canary,
        "x|touch " + canary,
        "x&&touch " + canary,
        "'\";touch " + canary + ";'",
        "a b\ttouch " + canary,
        "x\ntouch " + canary,
        "--help", // texts the image tool would read as options: hashed as text
        "-x",
        "--",
        "-",
        "",
        "secret",
    };
    auto digests = reference_sha256(texts);
    for (size_t i = 0; i < texts.size(); ++i) {
        EXPECT_EQ(hash_of(texts[i]), digests[i]) << texts[i];
        EXPECT_FALSE(file_exists(canary)) << texts[i];
    }
    EXPECT_EQ(hash_of("secret", 100), digests.back() + "\n") << "the line feed is kept if it fits";
    EXPECT_EQ(hash_of("secret", 10), digests.back().substr(0, 9));
    // The command "tq_versign sha256 <text>" is cut to 127 characters.
    std::string text(200, 'p');
    EXPECT_EQ(hash_of(text), reference_sha256({text.substr(0, 127 - 18)})[0]);

    auto r = wmtest::run_in_child([] {
        setenv("PATH", "/nonexistent", 1);
        char out[65] = "unchanged";
        to_sha256("secret", out, sizeof out);
        return std::printf("%s", out) > 0 ? 0 : 1;
    });
    EXPECT_EQ(r.out, "unchanged") << "no tool, no output: the buffer stays";
}

// Runs a tool in `dir` with its arguments as single words (no shell); its standard output.
std::string run_tool(const std::string &dir, std::vector<std::string> argv) {
    return wmtest::run_in_child([&] {
               std::vector<char *> args;
               for (std::string &a : argv)
                   args.push_back(a.data());
               args.push_back(nullptr);
               if (chdir(dir.c_str()) != 0) return 126;
               execvp(args[0], args.data());
               return 127;
           })
        .out;
}

TEST(TqVersign, SignverifyWithTheTestKey) {
    wmtest::TempRoot root;
    std::string key = wmtest::source_dir() + "/tests/keys/firmware-signing-TEST-ONLY.key";
    std::string dir = root.path("/tmp/");
    for (std::string name : {"fw.bin", "fw $(touch canary);`touch canary`'\".bin"}) {
        std::string image = dir + name, sig = image + ".sig";
        write_file(image, "firmware image " + name);
        run_tool(dir, {wmtest::source_dir() + "/tools/sign-image", key, image});
        EXPECT_EQ(run_tool(dir, {"tq_versign", "signverify", image, sig}), "Verify Success\n");
        write_file(image, "tampered");
        EXPECT_EQ(run_tool(dir, {"tq_versign", "signverify", image, sig}), "Verify Failure\n");
        EXPECT_FALSE(file_exists(dir + "canary")) << name;
    }
}

TEST(CreatePasswdRandom, AlphabetLengthAndNeverTheOldValue) {
    char field[16];
    std::memset(field, '#', sizeof field);
    std::memcpy(field, "000000", 7);
    std::set<char> seen;
    for (int i = 0; i < 3000; ++i) {
        std::string old(field, 6);
        create_passwd_random(field);
        ASSERT_EQ(std::string(field, 8), std::string(field, 6) + std::string("\0#", 2))
            << "six characters, nothing after the terminator";
        ASSERT_NE(std::string(field, 6), old) << "draw " << i;
        seen.insert(field, field + 6);
    }
    for (char c : seen)
        EXPECT_TRUE((c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'y'))
            << int(c);
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

    // Prints the stored password field after setting it to `password` and hashing it.
    auto in_child = [](const char *path_env, const char *password) {
        return wmtest::run_in_child([&] {
                   if (path_env) setenv("PATH", path_env, 1);
                   misc_config *misc = SC_Get_Misc_System_Config();
                   if (password) {
                       std::memset(misc->sys_user.rootpwd, 0, sizeof misc->sys_user.rootpwd);
                       std::strcpy(misc->sys_user.rootpwd, password);
                       passwd_to_sha256(misc);
                   }
                   std::fwrite(misc->sys_user.rootpwd, 1, sizeof misc->sys_user.rootpwd, stdout);
                   return 0;
               })
            .out;
    };
    EXPECT_EQ(in_child("/nonexistent", "s3cret pass").substr(0, 12),
              std::string("s3cret pass\0", 12));
    EXPECT_FALSE(file_exists(flash));
    EXPECT_EQ(in_child(nullptr, "s3cret pass"), digest);
    ASSERT_TRUE(file_exists(flash));
    EXPECT_EQ(in_child(nullptr, nullptr), digest) << "read back from flash";
    unsetenv("WEBMGMT_DEFAULTS_DIR");
}
