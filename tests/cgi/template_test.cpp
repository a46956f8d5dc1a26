// Template variables and the HTML renderer: marker expansion, consumption of variables,
// long lines and expansions that outgrow the line buffer.
#include <cstdlib>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "support/harness.h"
#include "webmgmt.h"

using wmtest::run_in_child;
using Vars = std::vector<std::pair<std::string, std::string>>;

namespace {

var_node *make_list(const Vars &vars) {
    var_node *head = nullptr;
    for (const auto &[name, value] : vars)
        add_str(&head, name.c_str(), value.c_str());
    return head;
}

std::string names_of(const var_node *head) {
    std::string out;
    for (; head; head = head->next)
        out += std::string(head->name) + ";";
    return out;
}

struct Rendered {
    std::string out;       // what print_html printed
    std::string remaining; // names left in the list afterwards, each followed by ';'
    int result = -1;
};

// Renders `path` in a child (print_html writes to standard output).
Rendered render(const std::string &path, const Vars &vars) {
    auto res = run_in_child([&] {
        var_node *head = make_list(vars);
        int rc = print_html(path.c_str(), &head);
        std::fflush(stdout);
        std::fprintf(stderr, "%d\n%s", rc, names_of(head).c_str());
        free_list(&head);
        return 0;
    });
    Rendered r;
    r.out = res.out;
    size_t nl = res.err.find('\n');
    r.result = std::atoi(res.err.substr(0, nl).c_str());
    r.remaining = nl == std::string::npos ? "" : res.err.substr(nl + 1);
    return r;
}

class Template : public ::testing::Test {
  protected:
    std::string write_template(const std::string &text) {
        std::string path = root_.path("/tmp/page.htm");
        wmtest::write_file(path, text);
        return path;
    }
    wmtest::TempRoot root_;
};

TEST_F(Template, ExpandsMarkers) {
    struct Case {
        const char *label;
        std::string text;
        Vars vars;
        std::string want;
        std::string remaining;
    } cases[] = {
        {"empty list", "<p>$x and $y</p>\n", {}, "<p>$x and $y</p>\n", ""},
        {"first marker only", "a $x b $x\n", {{"x", "1"}}, "a 1 b $x\n", ""},
        {"list order settles ties",
         "$ipmask\n",
         {{"ip", "10"}, {"ipmask", "24"}},
         "10mask\n",
         "ipmask;"},
        {"marker inside a value", "[$x]\n", {{"x", "<$y>"}, {"y", "Y"}}, "[<Y>]\n", ""},
        {"value marker consumes a later line's variable",
         "$x\n$y\n",
         {{"x", "1$y"}, {"y", "2"}},
         "12\n$y\n",
         ""},
        {"duplicate names fill successive markers",
         "$x,$x,$x\n",
         {{"x", "1"}, {"x", "2"}},
         "1,2,$x\n",
         ""},
        {"double dollar", "$$x\n", {{"x", "1"}}, "$1\n", ""},
        {"unknown marker stays", "cost: 5$ $zz\n", {{"x", "1"}}, "cost: 5$ $zz\n", "x;"},
        {"dollar at the end without newline", "a$", {{"x", "1"}}, "a$", "x;"},
        {"empty value at the line's end", "a$x", {{"x", ""}}, "a", ""},
        {"variables consumed across lines",
         "$a\n$b\n$a\n",
         {{"a", "1"}, {"b", "2"}},
         "1\n2\n$a\n",
         ""},
        {"value naming itself expands once", "$x.\n", {{"x", "$x"}}, "$x.\n", ""},
        {"value naming a second node of its name", "$x\n", {{"x", "a$x"}, {"x", "b"}}, "ab\n", ""},
        {"empty name matches any marker", "a$b\n", {{"", "V"}}, "aVb\n", ""},
        {"unused variables stay", "hi\n", {{"x", "1"}, {"y", "2"}}, "hi\n", "x;y;"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.label);
        Rendered r = render(write_template(c.text), c.vars);
        EXPECT_EQ(r.out, c.want);
        EXPECT_EQ(r.remaining, c.remaining);
        EXPECT_EQ(r.result, 0);
    }
}

TEST_F(Template, MissingTemplatePrintsNothingAndKeepsTheList) {
    Rendered r = render(root_.path("/tmp/absent.htm"), {{"x", "1"}, {"y", "2"}});
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(r.result, 0);
    EXPECT_EQ(r.remaining, "x;y;");
}

TEST_F(Template, LongLinesAreReadInPieces) {
    // A 10,000-character line is read 1023 characters at a time: a marker whose name starts
    // a new piece is not recognised; markers inside a piece are.
    std::string line = "$x" + std::string(1018, 'a') + "bb" + "$y" + std::string(8976, 'c') + "$z";
    ASSERT_EQ(line.find("$y"), 1022u);
    ASSERT_GE(line.size(), 10000u);
    std::string want = line;
    want.replace(want.find("$z"), 2, "ZZ");
    want.replace(0, 2, "XX");
    Rendered r = render(write_template(line + "\nend\n"), {{"x", "XX"}, {"y", "YY"}, {"z", "ZZ"}});
    EXPECT_EQ(r.out, want + "\nend\n");
    EXPECT_EQ(r.remaining, "y;");
}

TEST_F(Template, ExpansionIsCutAtTheLineBuffer) {
    Vars vars;
    std::string full;
    for (char c : std::string("abcde")) {
        vars.emplace_back(std::string(1, c), std::string(1000, char(c - 32)));
        full += vars.back().second;
    }
    Rendered r = render(write_template("$a$b$c$d$e tail\nnext $a\n"), vars);
    // The first line keeps 4095 characters (its newline is lost); the next is untouched.
    EXPECT_EQ(r.out, full.substr(0, 4095) + "next $a\n");

    // Values of the largest size, the second expanded inside the first: each is cut to the
    // room left behind its '$'.
    Vars big = {{"m", "q$m" + std::string(4093, 'q')}, {"m", std::string(4096, 'r')}};
    r = render(write_template("x$m y\n"), big);
    EXPECT_EQ(r.out, "xq" + std::string(4093, 'r'));
}

TEST(TemplateList, AddStrCutsAndReturnsTheValueDeleteStringTakesTheFirstMatch) {
    var_node *head = nullptr;
    std::string long_name(300, 'n'), long_value(5000, 'v');
    char *value = add_str(&head, long_name.c_str(), long_value.c_str());
    ASSERT_NE(head, nullptr);
    EXPECT_EQ(value, head->value);
    EXPECT_EQ(std::string(head->name), long_name.substr(0, 254));
    EXPECT_EQ(std::string(head->value), long_value.substr(0, 4096));
    std::strcpy(add_str(&head, "late", ""), "written later");
    EXPECT_STREQ(head->next->value, "written later");
    free_list(&head);
    EXPECT_EQ(head, nullptr);

    head = make_list({{"a", "1"}, {"b", "2"}, {"a", "3"}, {"c", "4"}});
    struct Step {
        const char *name;
        const char *left;
    } steps[] = {{"a", "b;a;c;"}, {"zz", "b;a;c;"}, {"A", "b;a;c;"}, {"c", "b;a;"},
                 {"b", "a;"},     {"a", ""},        {"a", ""}};
    for (const auto &s : steps) {
        delete_string(&head, s.name);
        EXPECT_EQ(names_of(head), s.left) << s.name;
    }
    EXPECT_EQ(head, nullptr);
    head = make_list({{"a", "1"}, {"a", "3"}});
    delete_string(&head, "a");
    EXPECT_STREQ(head->value, "3");
    free_list(&head);
}

TEST(TemplateList, FindAndChangeKeyword) {
    var_node *head = make_list({{"ip", "10"}, {"ipmask", "24"}, {"gw", "192.168.1.1"}});
    EXPECT_EQ(find_keyword("ipmask rest", head), head);
    EXPECT_EQ(find_keyword("gw", head), head->next->next);
    EXPECT_EQ(find_keyword("g", head), nullptr);
    EXPECT_EQ(find_keyword("", head), nullptr);

    char line[64] = "via $gw now\n";
    change_keyword(std::strchr(line, '$'), head->next->next);
    EXPECT_STREQ(line, "via 192.168.1.1 now\n");
    char shorter[64] = "<$ipmask>";
    change_keyword(shorter + 1, head->next);
    EXPECT_STREQ(shorter, "<24>");
    free_list(&head);
}

TEST_F(Template, HiddenFieldsAndListDump) {
    Vars vars = {{"ip", "10.0.0.1"}, {"mask", "255.0.0.0"}};
    auto res = run_in_child([&] {
        var_node *head = make_list(vars);
        generate_hidder_from_list(head);
        print_list(head);
        free_list(&head);
        return 0;
    });
    std::string hidden = "<input type=\"hidden\" name=\"ip\" value=\"$ip\">\n"
                         "<input type=\"hidden\" name=\"mask\" value=\"$mask\">\n";
    EXPECT_EQ(res.out, hidden + "<br>ip=10.0.0.1</br>\n<br>mask=255.0.0.0</br>\n");
    // The hidden fields are template text: rendering them fills in the values.
    Rendered r = render(write_template(hidden), vars);
    EXPECT_EQ(r.out, "<input type=\"hidden\" name=\"ip\" value=\"10.0.0.1\">\n"
                     "<input type=\"hidden\" name=\"mask\" value=\"255.0.0.0\">\n");
}

} // namespace
