// MAC and hexadecimal helpers, escaping, filters, case and number conversions, time
// helpers and the firmware check.
#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <climits>
#include <cstring>
#include <random>
#include <string>
#include <sys/stat.h>
#include <sys/time.h>
#include <vector>

#include "support/harness.h"
#include "webmgmt.h"

namespace {

using Bytes = std::vector<unsigned char>;

TEST(MacText, Str2macAndMacIsZero) {
    struct Case {
        const char *text;
        Bytes mac; // empty: refused
    } cases[] = {
        {"001122334455", {0x00, 0x11, 0x22, 0x33, 0x44, 0x55}},
        {"aa:BB:cc:DD:ee:FF", {0xaa, 0xbb, 0xcc, 0xdd, 0xee, 0xff}},
        {"a0:b1-c2:d3-e4:f5", {0xa0, 0xb1, 0xc2, 0xd3, 0xe4, 0xf5}},
        // The second digit is not checked: G reads as the capital after F.
        {"0G1122334455", {0x10, 0x11, 0x22, 0x33, 0x44, 0x55}},
        {"00:11:22:33:4G:55", {0x00, 0x11, 0x22, 0x33, 0x50, 0x55}},
        {"00:11:22:33:44:5", {}},
        {"00:11:22:33:44:55:", {}},
        {"", {}},
        {"G01122334455", {}},
        {"00:11:22:33:G4:55", {}},
        {"00:11:22:334", {}}, // ends in the middle of a byte
        {"::::::::::::", {}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.text);
        unsigned char mac[6] = {};
        EXPECT_EQ(str2mac(c.text, mac), c.mac.empty() ? -1 : 0);
        EXPECT_EQ(Bytes(mac, mac + (c.mac.empty() ? 0 : 6)), c.mac);
    }
    unsigned char zero[6] = {}, last[6] = {0, 0, 0, 0, 0, 1}, first[6] = {0x80};
    EXPECT_EQ(mac_is_zero(zero), 1);
    EXPECT_EQ(mac_is_zero(last), 0);
    EXPECT_EQ(mac_is_zero(first), 0);
}

// c2i and hex2dec read 'g'..'z' as digits 16..35 but not 'G'..'Z'.
TEST(HexDigits, QuirksOfC2iAndHex2dec) {
    struct Digit {
        char c;
        int value;
    } digits[] = {{'0', 0},  {'9', 9},  {'A', 10}, {'F', 15}, {'a', 10},   {'g', 16},
                  {'z', 35}, {'G', -1}, {'/', -1}, {':', -1}, {'\x80', -1}};
    for (const auto &d : digits)
        EXPECT_EQ(c2i(d.c), d.value) << d.c;
    struct Case {
        const char *text;
        int value;
    } cases[] = {
        {"123456789", 591751049}, {"", 0},   {"G", -1},           {"1G", -1},
        {"G1", int(0xFFFFFFF1u)}, {"g", 16}, {"10g", 0x100 | 16},
    };
    for (const auto &c : cases)
        EXPECT_EQ(hex2dec(c.text), c.value) << c.text;
}

// Valid hexadecimal of any length: the value of its last eight digits.
TEST(HexDigits, Hex2decAgreesWithStrtoulOnValidText) {
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

TEST(HexConversions, SplitMacHexToStrAsciiToHexHexToAscii) {
    struct Split {
        std::string text, sep;
        Bytes bytes;
    } splits[] = {
        {"00:11:22:33:44:55", ":", {0x00, 0x11, 0x22, 0x33, 0x44, 0x55}},
        {"0a-0B", "-", {0x0a, 0x0b}},
        {"123", ":", {0x23}},
        {"a:b:c:d:e:f:1:2", ":", {0xa, 0xb, 0xc, 0xd, 0xe, 0xf}},
        {"::aa::bb", ":", {0xaa, 0xbb}},
        {"aa:bb", ":-", {0xbb}}, // ":-" does not occur: one value
        {"aa-bb:cc", "-", {0xaa, 0xcc}},
    };
    for (auto c : splits) {
        unsigned char mac[7];
        memset(mac, 0xEE, sizeof mac);
        int n = split_mac_convert_int_array(c.text.data(), c.sep.c_str(), mac);
        EXPECT_EQ(Bytes(mac, mac + n), c.bytes) << c.text;
        EXPECT_EQ(mac[6], 0xEE);
    }
    struct ToStr {
        const char *hex;
        std::string want; // including the zero bytes written
    } to_str[] = {
        {"414243", "ABC"},
        {"41204", std::string("A\0", 2)},
        {"7F80", std::string("\x7f\0", 2)},
        {"zz41", std::string("\0A", 2)},
        {"", ""},
    };
    for (const auto &c : to_str) {
        char dst[16];
        memset(dst, 'Z', sizeof dst);
        HexToStr(dst, c.hex);
        EXPECT_EQ(std::string(dst, c.want.size() + 1), c.want + '\0') << c.hex;
    }
    struct ToHex {
        const char *hex;
        int length;
        Bytes want;
    } to_hex[] = {
        {"0G12", 4, {}}, {"0a1B", 4, {0x0a, 0x1b}},     {"abc", 3, {}},    {"", 0, {}},
        {"a", 1, {}},    {"1234zz56", 8, {0x12, 0x34}}, {"12", 4, {0x12}}, {"1234", 2, {0x12}},
        {"ff", -2, {}},
    };
    for (const auto &c : to_hex) {
        unsigned char dst[8];
        memset(dst, 0xEE, sizeof dst);
        AsciiToHex(c.hex, dst, c.length);
        Bytes want = c.want;
        want.push_back(0xEE); // nothing written after the last pair
        EXPECT_EQ(Bytes(dst, dst + want.size()), want) << c.hex;
    }
    unsigned char bytes[] = {0x00, 0xab, 0x5f, 0xff};
    char dst[10];
    memset(dst, 'Z', sizeof dst);
    HexToAscii(bytes, dst, 4);
    EXPECT_EQ(std::string(dst, 9), "00AB5FFFZ"); // upper case, no terminator
}

TEST(Escaping, JsonTableAndXmlAppends) {
    struct Case {
        std::string in, json;
    } cases[] = {{"\"'<>&", "\\\"'<>&"}, {"a\\b", "a\\\\b"}, {"", ""}};
    for (const auto &c : cases) {
        char json[64] = "";
        filter_json_name(c.in.c_str(), json);
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
        char hex[3];
        for (char &c : s) {
            c = char(32 + rng() % 95);
            snprintf(hex, sizeof hex, "%02x", c);
            input += hex;
        }
        input += "\n";
        std::vector<char> out(s.size() * 6 + 1, '\0');
        filter_xml_name(s.c_str(), out.data());
        mine += std::string(out.data()) + "\n";
    }
    auto r = wmtest::run_in_child(
        [&] { return execlp("python3", "python3", "-c", script.c_str(), nullptr), 127; }, input);
    ASSERT_EQ(r.exit_code(), 0) << r.err;
    EXPECT_EQ(r.out, mine);
}

TEST(Filters, CommandFilterReplaceCharAndCase) {
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
    const char *reps[] = {"&lt;", "&gt;", "1", "2"};
    char dst[32] = {};
    dst[10] = 'Z';
    str_replace_char("a<b>", dst, "<>", reps, 2);
    EXPECT_EQ(std::string(dst, 11), std::string("a&lt;b&gt;Z")); // no terminator written
    char dst2[16] = {};
    str_replace_char("xa", dst2, "aa", reps + 2, 2); // every matching entry, in order
    EXPECT_STREQ(dst2, "x12");

    char a[] = "AbC-1z\xc3";
    EXPECT_EQ(strAToa(a), a);
    EXPECT_STREQ(a, "abc-1z\xc3");
    EXPECT_EQ(straToA(a), a);
    EXPECT_STREQ(a, "ABC-1Z\xc3");
    char up[8];
    memset(up, 'Q', sizeof up);
    EXPECT_EQ(low2UpperChar("abC\0d", 5, up), 0);
    EXPECT_EQ(std::string(up, 6), std::string("ABC\0DQ", 6));
}

TEST(Numbers, NtodAndMypow2) {
    EXPECT_EQ(ntod(0), 0);
    EXPECT_EQ(ntod(0xffffffffu), 32);
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
    EXPECT_EQ(change_time_to_int("06:30"), 630);
    EXPECT_EQ(change_time_to_int("23:59"), 2359);
    // Short texts are read as ending in NULs, never past their end.
    EXPECT_EQ(change_time_to_int("1"), 1000 - 48 * 111);
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
}

TEST(Clock, CurrentTimeAndMilliseconds) {
    // Bracketed by two readings of date: whatever second boundary falls between them, the
    // library's time lies between the two texts, which compare as times do. In UTC, so that
    // no change of the local clock (summer time ending) can fall between them either.
    const char *old_tz = getenv("TZ");
    bool had_tz = old_tz != nullptr;
    std::string saved_tz = had_tz ? old_tz : "";
    setenv("TZ", "UTC0", 1);
    auto before = wmtest::run_shell("date '+%Y-%m-%d %H:%M:%S'");
    char now[64];
    memset(now, '#', sizeof now);
    EXPECT_EQ(get_current_time(now), 0);
    auto after = wmtest::run_shell("date '+%Y-%m-%d %H:%M:%S'");
    had_tz ? setenv("TZ", saved_tz.c_str(), 1) : unsetenv("TZ");
    EXPECT_EQ(strlen(now), 19u);
    EXPECT_LE(before.out.substr(0, 19), std::string(now));
    EXPECT_LE(std::string(now), after.out.substr(0, 19));
    // It clears and writes the 19 characters and the terminator, nothing behind them.
    EXPECT_EQ(std::string(now + 20, sizeof now - 20), std::string(sizeof now - 20, '#'));

    std::string old = getenv("PATH");
    setenv("PATH", "/nonexistent", 1);
    memset(now, '#', sizeof now);
    EXPECT_EQ(get_current_time(now), 0);
    setenv("PATH", old.c_str(), 1);
    EXPECT_EQ(std::string(now, 20), std::string(20, '\0'));
    EXPECT_EQ(std::string(now + 20, sizeof now - 20), std::string(sizeof now - 20, '#'));

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

// A stand-in signing tool, first in PATH, that prints its first line from a file and
// records its arguments; only the first 254 characters of that line count.
TEST(VerifyImage, ResultFollowsTheToolsFirstLine) {
    wmtest::TempRoot root;
    std::string old_path = getenv("PATH"), tool = root.path("/usr/sbin/tq_versign");
    std::string output = root.path("/tmp/output"), image = root.path("/tmp/my 'image'; x.bin");
    wmtest::write_file(tool, "#!/bin/sh\nprintf '%s|' \"$@\" > \"$(dirname \"$0\")/args\"\n"
                             "cat '" +
                                 output + "'\n");
    chmod(tool.c_str(), 0755);
    setenv("PATH", (root.path("/usr/sbin") + ":" + old_path).c_str(), 1);
    struct Case {
        std::string output;
        int rc;
    } cases[] = {
        {"Verify Success\n", 0},
        {"Verify Failed\n", -1},
        {"\nSuccess\n", -1},
        {"", -1},
        {std::string(240, '.') + "Success\n", 0},
        {std::string(250, '.') + "Success\n", -1},
    };
    for (const auto &c : cases) {
        wmtest::write_file(output, c.output);
        EXPECT_EQ(verify_upgrade_image(image.c_str(), "sig"), c.rc) << c.output;
    }
    EXPECT_EQ(wmtest::read_file(root.path("/usr/sbin/args")), "signverify|--|" + image + "|sig|");
    setenv("PATH", "/nonexistent", 1);
    EXPECT_EQ(verify_upgrade_image("a", "b"), -1);
    setenv("PATH", old_path.c_str(), 1);
}

} // namespace
