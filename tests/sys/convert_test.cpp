// MAC and hexadecimal helpers, escaping, filters, case and number conversions, time
// helpers and the firmware check.
#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <climits>
#include <cstring>
#include <random>
#include <string>
#include <sys/time.h>
#include <vector>

#include "support/harness.h"
#include "webmgmt.h"

namespace {

using Bytes = std::vector<unsigned char>;

TEST(Str2mac, AcceptedAndRefusedTexts) {
    struct Case {
        const char *text;
        int rc;
        Bytes mac;
    } cases[] = {
        {"001122334455", 0, {0x00, 0x11, 0x22, 0x33, 0x44, 0x55}},
        {"00-11-22-33-44-55", 0, {0x00, 0x11, 0x22, 0x33, 0x44, 0x55}},
        {"aa:BB:cc:DD:ee:FF", 0, {0xaa, 0xbb, 0xcc, 0xdd, 0xee, 0xff}},
        {"a0:b1-c2:d3-e4:f5", 0, {0xa0, 0xb1, 0xc2, 0xd3, 0xe4, 0xf5}},
        // The second digit is not checked: G reads as the capital after F.
        {"0G1122334455", 0, {0x10, 0x11, 0x22, 0x33, 0x44, 0x55}},
        {"00:11:22:33:44:5", -1, {}},
        {"00:11:22:33:44:55:", -1, {}},
        {"", -1, {}},
        {"G01122334455", -1, {}},
        {"00:11:22:33:4G:55", 0, {0x00, 0x11, 0x22, 0x33, 0x50, 0x55}},
        {"00:11:22:33:G4:55", -1, {}},
        {"00:11:22:334", -1, {}}, // ends in the middle of a byte
        {"::::::::::::", -1, {}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.text);
        unsigned char mac[6] = {};
        EXPECT_EQ(str2mac(c.text, mac), c.rc);
        if (c.rc == 0) {
            EXPECT_EQ(Bytes(mac, mac + 6), c.mac);
        }
    }
}

TEST(MacIsZero, OnlyAllZero) {
    unsigned char zero[6] = {}, last[6] = {0, 0, 0, 0, 0, 1}, first[6] = {0x80, 0, 0, 0, 0, 0};
    EXPECT_EQ(mac_is_zero(zero), 1);
    EXPECT_EQ(mac_is_zero(last), 0);
    EXPECT_EQ(mac_is_zero(first), 0);
}

TEST(C2i, EveryCharacter) {
    for (int c = -128; c < 128; ++c) {
        int want = -1;
        if (c >= '0' && c <= '9')
            want = c - '0';
        else if (c >= 'A' && c <= 'F')
            want = c - 'A' + 10;
        else if (c >= 'a' && c <= 'z')
            want = c - 'a' + 10;
        EXPECT_EQ(c2i(char(c)), want) << c;
    }
    EXPECT_EQ(c2i('g'), 16);
    EXPECT_EQ(c2i('G'), -1);
    EXPECT_EQ(c2i('z'), 35);
}

TEST(Hex2dec, Table) {
    struct Case {
        const char *text;
        int value;
    } cases[] = {
        {"1A", 26},
        {"123456789", 591751049},
        {"ff", 255},
        {"FFFFFFFF", -1},
        {"", 0},
        {"0", 0},
        {"G", -1},
        {"1G", -1},
        {"G1", int(0xFFFFFFF1u)},
        {"g", 16},
        {"10g", 0x100 | 16},
        {"7fffffff", INT_MAX},
        {"80000000", INT_MIN},
        {"abcdef0123456789", 0x23456789},
    };
    for (const auto &c : cases)
        EXPECT_EQ(hex2dec(c.text), c.value) << c.text;
}

// Valid hexadecimal of any length: the value of its last eight digits.
TEST(Hex2dec, AgreesWithStrtoulOnValidText) {
    std::mt19937 rng(7);
    const char digits[] = "0123456789abcdefABCDEF";
    for (int i = 0; i < 500; ++i) {
        std::string s(rng() % 20 + 1, '0');
        for (char &c : s)
            c = digits[rng() % 22];
        std::string last8 = s.size() > 8 ? s.substr(s.size() - 8) : s;
        EXPECT_EQ(uint32_t(hex2dec(s.c_str())), uint32_t(strtoul(last8.c_str(), nullptr, 16))) << s;
    }
}

TEST(SplitMac, PartsAndWholeText) {
    struct Case {
        std::string text, sep;
        int count;
        Bytes bytes;
    } cases[] = {
        {"00:11:22:33:44:55", ":", 6, {0x00, 0x11, 0x22, 0x33, 0x44, 0x55}},
        {"0a-0B", "-", 2, {0x0a, 0x0b}},
        {"1A", ":", 1, {0x1a}},
        {"123", ":", 1, {0x23}},
        {"a:b:c:d:e:f:1:2", ":", 6, {0xa, 0xb, 0xc, 0xd, 0xe, 0xf}},
        {"::aa::bb", ":", 2, {0xaa, 0xbb}},
        {"aa:bb", ":-", 1, {0xbb}}, // ":-" does not occur: one value
        {"aa-bb:cc", "-", 2, {0xaa, 0xcc}},
    };
    for (auto c : cases) {
        SCOPED_TRACE(c.text);
        unsigned char mac[7];
        memset(mac, 0xEE, sizeof mac);
        EXPECT_EQ(split_mac_convert_int_array(c.text.data(), c.sep.c_str(), mac), c.count);
        EXPECT_EQ(Bytes(mac, mac + c.count), c.bytes);
        EXPECT_EQ(mac[6], 0xEE);
    }
}

TEST(HexToStr, PrintableBytesOnly) {
    struct Case {
        const char *hex;
        std::string want; // including the zero bytes written
    } cases[] = {
        {"414243", "ABC"},
        {"41204", std::string("A\0", 2)},
        {"7F80", std::string("\x7f\0", 2)},
        {"zz41", std::string("\0A", 2)},
        {"2122", "!\""},
        {"", ""},
    };
    for (const auto &c : cases) {
        char dst[16];
        memset(dst, 'Z', sizeof dst);
        HexToStr(dst, c.hex);
        EXPECT_EQ(std::string(dst, c.want.size()), c.want) << c.hex;
        EXPECT_EQ(dst[c.want.size()], '\0');
    }
}

TEST(HexToAscii, UpperCaseWithoutTerminator) {
    unsigned char bytes[] = {0x00, 0xab, 0x5f, 0xff};
    char dst[10];
    memset(dst, 'Z', sizeof dst);
    HexToAscii(bytes, dst, 4);
    EXPECT_EQ(std::string(dst, 9), "00AB5FFFZ");
}

TEST(AsciiToHex, StopsAtTheFirstNonHexPair) {
    struct Case {
        const char *hex;
        int length;
        Bytes want;
    } cases[] = {
        {"0G12", 4, {}}, {"0a1B", 4, {0x0a, 0x1b}},     {"abc", 3, {}},    {"", 0, {}},
        {"a", 1, {}},    {"1234zz56", 8, {0x12, 0x34}}, {"12", 4, {0x12}}, {"1234", 2, {0x12}},
        {"ff", -2, {}},
    };
    for (const auto &c : cases) {
        unsigned char dst[8];
        memset(dst, 0xEE, sizeof dst);
        AsciiToHex(c.hex, dst, c.length);
        EXPECT_EQ(Bytes(dst, dst + c.want.size()), c.want) << c.hex;
        EXPECT_EQ(dst[c.want.size()], 0xEE) << c.hex;
    }
}

TEST(Escaping, XmlAndJsonTables) {
    struct Case {
        std::string in, xml, json;
    } cases[] = {
        {"a<b&c", "a&lt;b&amp;c", "a<b&c"}, {"\"'<>&", "&quot;&apos;&lt;&gt;&amp;", "\\\"'<>&"},
        {"a\\b", "a\\b", "a\\\\b"},         {"", "", ""},
        {"plain", "plain", "plain"},
    };
    for (const auto &c : cases) {
        char xml[64] = "", json[64] = "";
        filter_xml_name(c.in.c_str(), xml);
        filter_json_name(c.in.c_str(), json);
        EXPECT_EQ(std::string(xml), c.xml);
        EXPECT_EQ(std::string(json), c.json);
    }
    char appended[32] = "x=";
    filter_xml_name("<", appended);
    EXPECT_STREQ(appended, "x=&lt;");
}

// The XML escaping against Python's, on printable random texts.
TEST(Escaping, XmlAgreesWithPython) {
    std::mt19937 rng(11);
    std::string script = "import sys\nfrom xml.sax.saxutils import escape\n"
                         "for l in sys.stdin.read().split('\\n')[:-1]:\n"
                         "    print(escape(bytes.fromhex(l).decode('latin-1'),"
                         " {'\"': '&quot;', \"'\": '&apos;'}))\n";
    std::string input, mine;
    for (int i = 0; i < 200; ++i) {
        std::string s(rng() % 12, ' ');
        for (char &c : s)
            c = char(32 + rng() % 95);
        char hex[64] = "";
        for (unsigned char c : s)
            snprintf(hex + strlen(hex), 4, "%02x", c);
        input += std::string(hex) + "\n";
        std::vector<char> out(s.size() * 6 + 1, '\0');
        filter_xml_name(s.c_str(), out.data());
        mine += std::string(out.data()) + "\n";
    }
    auto r = wmtest::run_in_child(
        [&] {
            execlp("python3", "python3", "-c", script.c_str(), static_cast<char *>(nullptr));
            return 127;
        },
        input);
    ASSERT_EQ(r.exit_code(), 0) << r.err;
    EXPECT_EQ(r.out, mine);
}

TEST(WebCommdStrFilter, KeepsOnlySafeCharacters) {
    struct Case {
        std::string in, out;
    } cases[] = {
        {"a;b|c", "a0b0c"},
        {"AZaz09:-. ", "AZaz09:-. "},
        {"\t$`'\"\\&>", "00000000"},
        {std::string("ab\0;d", 5), std::string("ab\0"
                                               "0d",
                                               5)},
        {"\xc3\xa9", "00"},
    };
    for (auto c : cases) {
        EXPECT_EQ(web_commd_str_filter(c.in.data(), int(c.in.size())), 0);
        EXPECT_EQ(c.in, c.out);
    }
}

TEST(StrReplaceChar, EveryMatchingEntryInOrder) {
    const char *reps[] = {"&lt;", "&gt;", "1", "2"};
    char dst[32] = {};
    dst[10] = 'Z';
    str_replace_char("a<b>", dst, "<>", reps, 2);
    EXPECT_EQ(std::string(dst, 11), std::string("a&lt;b&gt;Z")); // no terminator written
    const char *twice[] = {"1", "2"};
    char dst2[16] = {};
    str_replace_char("xa", dst2, "aa", twice, 2);
    EXPECT_STREQ(dst2, "x12");
}

TEST(CaseConversion, InPlaceAndCounted) {
    char a[] = "AbC-1z\xc3";
    EXPECT_EQ(strAToa(a), a);
    EXPECT_STREQ(a, "abc-1z\xc3");
    EXPECT_EQ(straToA(a), a);
    EXPECT_STREQ(a, "ABC-1Z\xc3");
    char dst[8];
    memset(dst, 'Q', sizeof dst);
    EXPECT_EQ(low2UpperChar("abC\0d", 5, dst), 0);
    EXPECT_EQ(std::string(dst, 6), std::string("ABC\0DQ", 6));
}

TEST(Numbers, NtodAndMypow2) {
    EXPECT_EQ(ntod(0), 0);
    EXPECT_EQ(ntod(0xffffffffu), 32);
    EXPECT_EQ(ntod(0xffffff00u), 24);
    EXPECT_EQ(ntod(htonl(0xfffffe00u)), 23);
    EXPECT_EQ(ntod(0x80000000u), 1);
    struct Case {
        int n, value;
    } cases[] = {{0, 1},        {-1, 0},       {-100, 0}, {1, 2},  {10, 1024},
                 {30, 1 << 30}, {31, INT_MIN}, {32, 0},   {40, 0}, {INT_MAX, 0}};
    for (const auto &c : cases)
        EXPECT_EQ(mypow2(c.n), c.value) << c.n;
}

TEST(TimeText, HhmmAndOverMidnight) {
    EXPECT_EQ(change_time_to_int("22:00"), 2200);
    EXPECT_EQ(change_time_to_int("06:30"), 630);
    EXPECT_EQ(change_time_to_int("23:59"), 2359);
    struct Case {
        const char *start, *end;
        int over;
    } cases[] = {{"22:00", "06:00", 1},
                 {"06:00", "22:00", 0},
                 {"12:00", "12:00", 0},
                 {"00:01", "00:00", 1},
                 {"", "", 0}};
    for (const auto &c : cases)
        EXPECT_EQ(check_time_one_day(c.start, c.end), c.over) << c.start << " " << c.end;
    // Short texts are read as ending in NULs, never past their end.
    EXPECT_EQ(change_time_to_int("1"), 1000 - 48 * 111);
}

TEST(Clock, CurrentTimeAndMilliseconds) {
    auto before = wmtest::run_shell("date '+%Y-%m-%d %H:%M:%S'");
    char now[64];
    memset(now, 'Z', sizeof now);
    EXPECT_EQ(get_current_time(now), 0);
    auto after = wmtest::run_shell("date '+%Y-%m-%d %H:%M:%S'");
    std::string b = before.out.substr(0, 19), a = after.out.substr(0, 19);
    EXPECT_EQ(strlen(now), 19u);
    EXPECT_LE(b, std::string(now));
    EXPECT_LE(std::string(now), a);

    std::string old = getenv("PATH");
    setenv("PATH", "/nonexistent", 1);
    memset(now, 'Z', sizeof now);
    EXPECT_EQ(get_current_time(now), 0);
    setenv("PATH", old.c_str(), 1);
    EXPECT_STREQ(now, "");

    struct timeval t0, t1;
    gettimeofday(&t0, nullptr);
    uint32_t ms = get_now_msec();
    gettimeofday(&t1, nullptr);
    uint32_t ms0 = uint32_t(uint64_t(t0.tv_sec) * 1000 + uint64_t(t0.tv_usec) / 1000);
    uint32_t ms1 = uint32_t(uint64_t(t1.tv_sec) * 1000 + uint64_t(t1.tv_usec) / 1000);
    EXPECT_LE(ms - ms0, ms1 - ms0); // wraps like the 32-bit value does
}

TEST(Fwritestr, AppendsLines) {
    wmtest::TempRoot root;
    std::string path = root.path("/tmp/out");
    EXPECT_EQ(fwritestr(path.c_str(), "a"), 1);
    EXPECT_EQ(fwritestr(path.c_str(), "b c"), 1);
    EXPECT_EQ(wmtest::read_file(path), "a\nb c\n");
    EXPECT_EQ(fwritestr(root.path("/none/out").c_str(), "a"), 0);
}

// A stand-in signing tool in a directory of its own, first in PATH.
class VerifyImage : public ::testing::Test {
  protected:
    void SetUp() override {
        old_path_ = getenv("PATH");
        setenv("PATH", (root_.path("/usr/sbin") + ":" + old_path_).c_str(), 1);
    }
    void TearDown() override { setenv("PATH", old_path_.c_str(), 1); }
    void tool(const std::string &body) {
        std::string path = root_.path("/usr/sbin/tq_versign");
        wmtest::write_file(path, "#!/bin/sh\n" + body);
        chmod(path.c_str(), 0755);
    }
    wmtest::TempRoot root_;
    std::string old_path_;
};

TEST_F(VerifyImage, ResultFollowsTheToolsFirstLine) {
    // Prints success when the signature file says "good", and records its arguments.
    tool("printf '%s|' \"$@\" > \"$(dirname \"$0\")/args\"\n"
         "if [ \"$(cat \"$3\")\" = good ]; then echo 'Verify Success'; else echo 'Verify "
         "Failed'; fi\n");
    std::string image = root_.path("/tmp/my 'image'; x.bin"), good = root_.path("/tmp/good.sig"),
                bad = root_.path("/tmp/bad.sig");
    wmtest::write_file(image, "img");
    wmtest::write_file(good, "good");
    wmtest::write_file(bad, "bad");
    EXPECT_EQ(verify_upgrade_image(image.c_str(), good.c_str()), 0);
    EXPECT_EQ(wmtest::read_file(root_.path("/usr/sbin/args")),
              "signverify|" + image + "|" + good + "|");
    EXPECT_EQ(verify_upgrade_image(image.c_str(), bad.c_str()), -1);
}

TEST_F(VerifyImage, OnlyTheFirst254CharactersOfTheFirstLineCount) {
    struct Case {
        std::string output;
        int rc;
    } cases[] = {
        {"Success\n", 0},
        {"\nSuccess\n", -1},
        {"", -1},
        {std::string(240, '.') + "Success\n", 0},
        {std::string(250, '.') + "Success\n", -1},
        {"no success\n", -1},
    };
    std::string out = root_.path("/tmp/output");
    tool("cat '" + out + "'\n");
    for (const auto &c : cases) {
        wmtest::write_file(out, c.output);
        EXPECT_EQ(verify_upgrade_image("a", "b"), c.rc) << c.output;
    }
}

TEST_F(VerifyImage, MissingToolFails) {
    setenv("PATH", "/nonexistent", 1);
    EXPECT_EQ(verify_upgrade_image("a", "b"), -1);
}

} // namespace
