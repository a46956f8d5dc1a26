// Property files: the line format, lookups, and rewrites read back by the device's shell.
#include <csignal>
#include <cstring>
#include <random>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

#include "support/harness.h"
#include "webmgmt.h"

using wmtest::read_file;
using wmtest::write_file;

namespace {

// Pairs loaded from a file, freed afterwards.
struct Loaded {
    std::vector<prop_pair> pairs;
    int count = 0;
    Loaded(int separator, const std::string &path, int capacity = WEBMGMT_PROP_PAIRS + 1)
        : pairs(size_t(capacity)) {
        count = capacity == WEBMGMT_PROP_PAIRS + 1
                    ? load_prop(separator, path.c_str(), pairs.data())
                    : load_prop_n(separator, path.c_str(), pairs.data(), capacity);
    }
    ~Loaded() { free_prop(pairs.data(), count); }
    std::string name(int i) const { return pairs[size_t(i)].name; }
    std::string value(int i) const { return pairs[size_t(i)].value; }
};

std::string escaped(const std::string &raw) {
    std::vector<char> out(raw.size() * 2 + 1);
    add_escape(raw.c_str(), out.data());
    return out.data();
}

// The values the shell sees after sourcing the file, NUL-separated.
std::vector<std::string> shell_values(const std::string &file, int count) {
    std::string script = ". '" + file + "'; printf '%s\\0'";
    for (int i = 0; i < count; ++i)
        script += " \"$K" + std::to_string(i) + "\"";
    auto r = wmtest::run_shell(script);
    EXPECT_EQ(r.exit_code(), 0) << r.err;
    std::vector<std::string> values;
    for (size_t start = 0, end; (end = r.out.find('\0', start)) != std::string::npos;
         start = end + 1)
        values.push_back(r.out.substr(start, end - start));
    return values;
}

// Pairs over the given names and values, which must outlive them.
std::vector<prop_pair> pairs_of(std::vector<std::string> &names, std::vector<std::string> &values) {
    std::vector<prop_pair> pairs;
    for (size_t i = 0; i < names.size(); ++i)
        pairs.push_back({names[i].data(), values[i].data()});
    return pairs;
}

const std::vector<std::string> kShellValues = {"a b",
                                               "say \"hi\" twice",
                                               "$HOME and ${PATH}",
                                               "`id` $(id)",
                                               "back\\slash\\",
                                               "\\\"$`",
                                               "",
                                               "it's; rm -rf x &",
                                               "tab\there",
                                               "trailing\\",
                                               "\\n"};

} // namespace

TEST(PropLines, ParseTable) {
    struct Case {
        int separator;
        const char *line;
        int result;
        const char *name, *value;
    } cases[] = {
        {'=', "setenv LAN_IP=192.168.1.1", 1, "LAN_IP", "192.168.1.1"},
        {'=', "export; setenv X=1", 1, "X", "1"},
        {'=', "NAME=\"a b\"", 1, "NAME", "\"a b\""},
        {'=', "A=b=c", 1, "A", "b=c"},
        {'=', "  NAME  extra=val ", 1, "NAME", "val "},
        {'=', "K=", 1, "K", ""},
        {'=', "=v", 1, "", "v"},
        {'=', " #x=1", 1, "#x", "1"},
        {'=', "#x=1", 0, nullptr, nullptr},
        {'=', "no separator", 0, nullptr, nullptr},
        {'=', "", 0, nullptr, nullptr},
        {' ', "NAME value with blanks", 1, "NAME", "value with blanks"},
        {'\t', "NAME\tv=1", 1, "NAME", "v=1"},
        {99, "NAME\tv", 1, "NAME", "v"},
        {99, "NAME=v", 0, nullptr, nullptr},
    };
    for (const auto &c : cases) {
        prop_pair pair{nullptr, nullptr};
        ASSERT_EQ(get_pr(c.separator, c.line, &pair), c.result) << c.line;
        if (c.result) {
            EXPECT_STREQ(pair.name, c.name) << c.line;
            EXPECT_STREQ(pair.value, c.value) << c.line;
            free_prop(&pair, 1);
        } else {
            EXPECT_EQ(pair.name, nullptr);
        }
    }
}

TEST(PropLines, LoadSkipsCommentsAndCutsLongLines) {
    wmtest::TempRoot root;
    std::string path = root.path("/var/p.conf");
    std::string at_limit(1021, 'a'), over_limit(1021, 'b');
    write_file(path, "# comment=1\nsetenv A=1\n\nno separator\nK=" + at_limit +
                         "\nL=" + over_limit + "M=2\nlast=no newline");
    Loaded l('=', path);
    // The 1,023-character line fills one read; its newline is then an empty line. The
    // longer line's remainder is read as a line of its own.
    ASSERT_EQ(l.count, 5);
    EXPECT_EQ(l.name(0), "A");
    EXPECT_EQ(l.value(1), at_limit);
    EXPECT_EQ(l.value(2), over_limit);
    EXPECT_EQ(l.name(3), "M");
    EXPECT_EQ(l.value(4), "no newline");
    EXPECT_EQ(load_prop('=', root.path("/var/missing").c_str(), l.pairs.data()), 0);

    // The loader stops at the array's capacity.
    std::string text;
    for (int i = 0; i < WEBMGMT_PROP_PAIRS + 100; ++i)
        text += "K" + std::to_string(i) + "=" + std::to_string(i) + "\n";
    write_file(path, text);
    Loaded all('=', path);
    EXPECT_EQ(all.count, WEBMGMT_PROP_PAIRS);
    EXPECT_EQ(all.pairs[WEBMGMT_PROP_PAIRS].name, nullptr);
    Loaded three('=', path, 3);
    EXPECT_EQ(three.count, 3);
    EXPECT_EQ(three.value(2), "2");
    Loaded none('=', path, 0);
    EXPECT_EQ(none.count, 0);
}

TEST(PropLookup, QuotesLimitsAndCounts) {
    std::string v4096(4096, 'x'), v4097(4097, 'x'), v5000(5000, 'y');
    prop_pair pairs[] = {{(char *)"NAME", (char *)"\"a b\""}, {(char *)"NAME", (char *)"second"},
                         {(char *)"MAX", v4096.data()},       {(char *)"OVER", v4097.data()},
                         {(char *)"HUGE", v5000.data()},      {(char *)"N", (char *)"300"}};
    char out[8192] = "untouched";
    EXPECT_EQ(get_prop_max("NAME", out, pairs, 6, sizeof out), out);
    EXPECT_STREQ(out, "a b");
    EXPECT_EQ(get_prop("NAME", out, pairs, 6), out);
    EXPECT_STREQ(out, "\"a b\"");
    EXPECT_EQ(get_prop_max("MAX", out, pairs, 6, sizeof out), out);
    EXPECT_EQ(strlen(out), 4096u);
    EXPECT_EQ(get_prop_max("OVER", out, pairs, 6, sizeof out), nullptr);
    // Found but too long for `out`: `out` keeps its text.
    strcpy(out, "kept");
    EXPECT_EQ(get_prop_max("NAME", out, pairs, 6, 3), out);
    EXPECT_STREQ(out, "kept");
    EXPECT_EQ(get_prop("HUGE", out, pairs, 6), out);
    EXPECT_EQ(strlen(out), size_t(WEBMGMT_GET_PROP_MAX));
    char small[4];
    EXPECT_EQ(get_prop_n("NAME", small, pairs, 6, sizeof small), small);
    EXPECT_STREQ(small, "\"a ");
    char byte = 0;
    EXPECT_EQ(get_prop_char("N", &byte, pairs, 6), &byte);
    EXPECT_EQ((unsigned char)byte, 300 % 256);
    for (int count : {0, -1}) {
        strcpy(out, "kept");
        EXPECT_EQ(get_prop("NAME", out, pairs, count), nullptr);
        EXPECT_EQ(get_prop_max("NAME", out, pairs, count, sizeof out), nullptr);
        EXPECT_STREQ(out, "kept");
    }
    EXPECT_EQ(get_prop("name", out, pairs, 6), nullptr);
    // Request pairs are looked up by the same functions.
    form_pair form[] = {{(char *)"id", (char *)"7"}};
    EXPECT_EQ(get_prop("id", out, form, 1), out);
    EXPECT_STREQ(out, "7");
}

TEST(PropLookup, PutPropReplacesAndGrows) {
    prop_pair pairs[2] = {{strdup("A"), strdup("short")}, {strdup("B"), strdup("x")}};
    EXPECT_STREQ(put_prop("A", "ab", pairs, 2), "ab");
    EXPECT_STREQ(pairs[0].value, "ab");
    std::string longer(300, 'L');
    EXPECT_STREQ(put_prop("B", longer.c_str(), pairs, 2), longer.c_str());
    EXPECT_EQ(std::string(pairs[1].value), longer);
    EXPECT_EQ(put_prop("C", "v", pairs, 2), nullptr);
    EXPECT_EQ(put_prop("A", "v", pairs, 0), nullptr);
    EXPECT_EQ(free_prop(pairs, 2), 1);
}

TEST(PropLookup, DumpAndHiddenFields) {
    wmtest::TempRoot root;
    prop_pair pairs[] = {{(char *)"A", (char *)"1"}, {(char *)"B", (char *)"x y"}};
    EXPECT_EQ(wmtest::output_of([&] { dump_prop(pairs, 2); }), "<br> A=1</br>\n<br> B=x y</br>\n");
    EXPECT_NE(read_file(root.path("/tmp/system.log")).find("<br> B=x y</br>\n"), std::string::npos);
    EXPECT_EQ(wmtest::output_of([&] {
                  generate_hidder_from_prop(pairs, 2);
                  generate_hidder_from_prop(pairs, 0);
              }),
              "<input type=\"hidden\" name=\"A\" value=\"${A}\">\n"
              "<input type=\"hidden\" name=\"B\" value=\"${B}\">\n"
              "\"A\",\n\"B\",\n");
}

TEST(PropSave, RewritesOnlyKnownKeysAndDropsUnterminatedLastLine) {
    wmtest::TempRoot root;
    std::string path = root.path("/var/p.conf");
    std::string long_line = "L=" + std::string(1500, 'z');
    write_file(path, "# c\nA=1\nB=2\n" + long_line + "\nA=3\nC=tail");
    prop_pair pairs[] = {{(char *)"A", (char *)"x"},
                         {(char *)"A", (char *)"last wins"},
                         {(char *)"Z", (char *)"not added"}};
    ASSERT_EQ(save_prop('=', path.c_str(), pairs, 3), 1);
    EXPECT_EQ(read_file(path), "# c\nA=\"last wins\"\nB=2\n" + long_line + "\nA=\"last wins\"\n");
    EXPECT_FALSE(wmtest::file_exists(path + ".cgi"));

    write_file(path, "A 1\nB\t2\n");
    prop_pair one[] = {{(char *)"A", (char *)"v"}, {(char *)"B", (char *)"w"}};
    ASSERT_EQ(save_prop(' ', path.c_str(), one, 2), 1);
    EXPECT_EQ(read_file(path), "A \"v\"\nB\t2\n");
    ASSERT_EQ(save_prop('\t', path.c_str(), one, 2), 1);
    EXPECT_EQ(read_file(path), "A \"v\"\nB\t\"w\"\n");
    EXPECT_EQ(save_prop('=', root.path("/var/missing").c_str(), one, 2), 0);
    EXPECT_FALSE(wmtest::file_exists(root.path("/var/missing.cgi")));
}

TEST(PropSave, GlobalConfReplacesQuotedAndAppendsPlain) {
    wmtest::TempRoot root;
    std::string path = root.path("/var/g.conf");
    struct Case {
        const char *before, *prefix, *key, *value, *after;
    } cases[] = {
        {"", "", "K", "v", "K=v\n"},
        {"A=1\n", "", "K", "v", "A=1\nK=v\n"},
        {"K=old\n", "", "K", "v", "K=\"v\"\n"},
        {"K=1\nA=2\nK=3\n", "", "K", "v", "K=\"v\"\nA=2\nK=\"v\"\n"},
        {"A=1\nK=old", "", "K", "v", "A=1\n"}, // unterminated last line: dropped, found
        {"A=1\nB=2", "", "K", "v", "A=1\nK=v\n"},
        {"setenv K=1\n", "setenv ", "K", "v", "setenv K=1\nsetenv K=v\n"},
        {"K=1\n", "setenv ", "K", "v", "setenv K=\"v\"\n"},
        {"KK=1\nK\n", "", "K", "v", "KK=1\nK\nK=v\n"},
    };
    for (const auto &c : cases) {
        write_file(path, c.before);
        ASSERT_EQ(save_global_conf('=', path.c_str(), c.prefix, c.key, c.value), 1);
        EXPECT_EQ(read_file(path), c.after) << c.before;
    }
    write_file(path, "K 1\n");
    ASSERT_EQ(save_global_conf(' ', path.c_str(), "", "K", "v"), 1);
    EXPECT_EQ(read_file(path), "K \"v\"\n");
    EXPECT_EQ(save_global_conf('=', root.path("/var/none").c_str(), "", "K", "v"), 0);
}

TEST(PropSave, ShellReadsEscapedValues) {
    wmtest::TempRoot root;
    std::string path = root.path("/var/sh.conf"), initial;
    const int n = int(kShellValues.size());
    std::vector<std::string> names, values;
    for (int i = 0; i < n; ++i) {
        names.push_back("K" + std::to_string(i));
        values.push_back(escaped(kShellValues[size_t(i)]));
        initial += names.back() + "=old\n";
    }
    write_file(path, initial);
    ASSERT_EQ(save_prop('=', path.c_str(), pairs_of(names, values).data(), n), 1);
    EXPECT_EQ(shell_values(path, n), kShellValues);

    // The same values set one by one; the loader then gives the escaped text back.
    write_file(path, initial);
    for (int i = 0; i < n; ++i)
        ASSERT_EQ(save_global_conf('=', path.c_str(), "", names[size_t(i)].c_str(),
                                   values[size_t(i)].c_str()),
                  1);
    EXPECT_EQ(shell_values(path, n), kShellValues);
    Loaded l('=', path);
    ASSERT_EQ(l.count, n);
    for (int i = 0; i < n; ++i) {
        char out[256] = {}, raw[256] = {};
        ASSERT_EQ(get_prop_max(names[size_t(i)].c_str(), out, l.pairs.data(), n, sizeof out), out);
        EXPECT_EQ(strip_escape(out, raw), std::string_view(kShellValues[size_t(i)]));
    }
}

// A writer killed at any moment leaves the old or the new file, whole.
TEST(PropSave, KilledWriterLeavesAWholeFile) {
    wmtest::TempRoot root;
    std::string path = root.path("/var/big.conf"), initial;
    const int n = 400;
    std::vector<std::string> names, first, second;
    for (int i = 0; i < n; ++i) {
        names.push_back("KEY_" + std::to_string(i));
        first.push_back(std::string(100, 'f') + std::to_string(i));
        second.push_back(std::string(120, 's') + std::to_string(i));
        initial += names.back() + "=0\n";
    }
    write_file(path, initial);
    const std::vector<prop_pair> a = pairs_of(names, first), b = pairs_of(names, second);
    ASSERT_EQ(save_prop('=', path.c_str(), b.data(), n), 1);
    const std::string text_b = read_file(path);
    ASSERT_EQ(save_prop('=', path.c_str(), a.data(), n), 1);
    const std::string text_a = read_file(path);

    std::mt19937 random(20240611);
    for (int round = 0; round < 20; ++round) {
        int progress[2];
        ASSERT_EQ(pipe(progress), 0);
        pid_t pid = fork();
        ASSERT_GE(pid, 0);
        if (pid == 0) {
            close(progress[0]);
            for (;;) {
                for (const auto *pairs : {b.data(), a.data()})
                    if (save_prop('=', path.c_str(), pairs, n) != 1 ||
                        write(progress[1], "x", 1) != 1)
                        _exit(1);
            }
        }
        close(progress[1]);
        char seen;
        for (unsigned i = random() % 4; i > 0; --i)
            ASSERT_EQ(read(progress[0], &seen, 1), 1);
        volatile unsigned spin = 0; // a busy pause of random length, not a wait
        for (unsigned pause = random() % 300000; pause > 0; --pause)
            spin = spin + 1;
        kill(pid, SIGKILL);
        int status;
        waitpid(pid, &status, 0);
        close(progress[0]);
        std::string now = read_file(path);
        ASSERT_TRUE(now == text_a || now == text_b)
            << "round " << round << ", " << now.size() << " bytes";
    }
}
