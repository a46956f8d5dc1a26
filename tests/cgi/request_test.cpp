// Form decoding: the library against Python's urllib on generated requests, a table of
// malformed requests, the query-string lookup and the URL helpers.
#include <cstdlib>
#include <cstring>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "support/harness.h"
#include "webmgmt.h"

using wmtest::run_in_child;
using Pairs = std::vector<std::pair<std::string, std::string>>;

namespace {

std::string to_hex(const std::string &s) {
    std::string out;
    for (unsigned char c : s)
        out += "0123456789ABCDEF"[c >> 4], out += "0123456789ABCDEF"[c & 15];
    return out;
}

std::string from_hex(const std::string &h) {
    std::string out;
    for (size_t i = 0; i + 1 < h.size(); i += 2)
        out += char(std::stoi(h.substr(i, 2), nullptr, 16));
    return out;
}

// Pairs written as hex(name):hex(value) separated by blanks, as the reference prints them.
Pairs parse_pairs(const std::string &line) {
    Pairs out;
    std::istringstream in(line);
    std::string item;
    while (in >> item) {
        size_t colon = item.find(':');
        out.emplace_back(from_hex(item.substr(0, colon)), from_hex(item.substr(colon + 1)));
    }
    return out;
}

// CONTENT_LENGTH left out of the environment.
const char *const kUnset = "(unset)";

struct Request {
    const char *method = "POST";
    const char *length = nullptr; // CONTENT_LENGTH; null: the body's length
    std::string body;
    const char *query = nullptr;
    int capacity = 512; // < 0: use the plain process_queue()
};

struct Decoded {
    Pairs pairs;
    bool query_left = false;   // QUERY_STRING still in the environment afterwards
    bool referer_left = false; // HTTP_REFERER too
    int count = -1;
};

void set_or_unset(const char *name, const char *value) {
    if (value)
        setenv(name, value, 1);
    else
        unsetenv(name);
}

// Runs the decoder in a child with the request's environment and body on standard input.
Decoded decode_in_child(const Request &r) {
    std::string length = r.length ? r.length : std::to_string(r.body.size());
    auto res = run_in_child(
        [&] {
            set_or_unset("REQUEST_METHOD", r.method);
            set_or_unset("CONTENT_LENGTH", r.length == kUnset ? nullptr : length.c_str());
            set_or_unset("QUERY_STRING", r.query);
            setenv("HTTP_REFERER", "http://192.168.1.1/index.html", 1);
            std::vector<form_pair> pairs(600, form_pair{nullptr, nullptr});
            int n = r.capacity < 0 ? process_queue(pairs.data())
                                   : process_queue_n(pairs.data(), r.capacity);
            std::printf("%d %d %d ", n, getenv("QUERY_STRING") != nullptr,
                        getenv("HTTP_REFERER") != nullptr);
            for (int i = 0; i < n; ++i) {
                std::printf("%s:%s ", to_hex(pairs[i].name).c_str(),
                            to_hex(pairs[i].value).c_str());
                std::free(pairs[i].name);
                std::free(pairs[i].value);
            }
            std::printf("\n");
            return 0;
        },
        r.body);
    Decoded d;
    EXPECT_EQ(res.exit_code(), 0) << res.err;
    std::istringstream in(res.out);
    in >> d.count >> d.query_left >> d.referer_left;
    std::string rest;
    std::getline(in, rest);
    d.pairs = parse_pairs(rest);
    return d;
}

// Random request text: names and values made of plain characters, '+', %XX of any byte
// but NUL, and the encoded separators that must survive decoding.
class RequestGenerator {
  public:
    explicit RequestGenerator(unsigned seed) : rng_(seed) {}

    std::string component(int max_tokens) {
        std::string out;
        int tokens = pick(0, max_tokens);
        static const char *const encoded[] = {"%2B", "%26", "%3D", "%25", "%2b", "%20"};
        static const char plain[] =
            "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_.*~";
        for (int i = 0; i < tokens; ++i) {
            int kind = pick(0, 5);
            char hex[4];
            std::snprintf(hex, sizeof hex, pick(0, 1) ? "%%%02X" : "%%%02x", pick(1, 255));
            out += kind == 0   ? std::string("+")
                   : kind == 1 ? std::string(encoded[pick(0, 5)])
                   : kind == 2 ? std::string(hex)
                               : std::string(1, plain[pick(0, int(sizeof plain) - 2)]);
        }
        return out;
    }

    std::string pairs_text(int max_pairs) {
        std::string out;
        int n = pick(0, max_pairs);
        for (int i = 0; i < n; ++i) {
            if (i) out += '&';
            out += component(12) + "=" + (pick(0, 5) == 0 ? "" : component(30));
        }
        return out;
    }

  private:
    int pick(int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng_); }
    std::mt19937 rng_;
};

// Each request (body, query string) decodes as Python's urllib decodes it
// (tests/cgi/urldecode_ref.py); the decoder leaves neither variable behind.
void expect_urllib_agrees(const std::vector<std::pair<std::string, std::string>> &requests) {
    std::string reference_input;
    for (const auto &[body, query] : requests)
        reference_input += (body.empty() ? "-" : to_hex(body)) + " " +
                           (query.empty() ? "-" : to_hex(query)) + "\n";
    auto ref = wmtest::run_shell(
        "python3 '" + wmtest::source_dir() + "/tests/cgi/urldecode_ref.py'", reference_input);
    ASSERT_EQ(ref.exit_code(), 0) << ref.err;
    std::istringstream lines(ref.out);
    for (const auto &[body, query] : requests) {
        std::string line;
        ASSERT_TRUE(std::getline(lines, line)) << "reference ended early";
        Request r;
        r.body = body;
        r.query = query.c_str();
        Decoded got = decode_in_child(r);
        ASSERT_EQ(got.pairs, parse_pairs(line)) << "body: " << body << "\nquery: " << query;
        EXPECT_FALSE(got.query_left);
        EXPECT_FALSE(got.referer_left);
    }
}

TEST(ProcessQueue, AgreesWithUrllibOnGeneratedRequests) {
    RequestGenerator gen(20240611);
    std::vector<std::pair<std::string, std::string>> requests; // body, query string
    for (int i = 0; i < 300; ++i)
        requests.emplace_back(gen.pairs_text(8), gen.pairs_text(5));
    expect_urllib_agrees(requests);
}

// A component of plain runs of 0 to `longest_run` characters, each followed by '+' or %XX.
std::string component_of_runs(std::mt19937 &rng, size_t length, size_t longest_run) {
    static const char plain[] =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_.*~";
    std::string out;
    while (out.size() < length) {
        size_t run = rng() % (longest_run + 1);
        for (size_t i = 0; i < run; ++i)
            out += plain[rng() % (sizeof plain - 1)];
        char hex[4];
        std::snprintf(hex, sizeof hex, "%%%02X", unsigned(1 + rng() % 255));
        out += rng() % 3 == 0 ? "+" : rng() % 2 ? hex : ""; // "": the run goes on
    }
    return out;
}

// The decoder copies runs of plain characters several at a time: long plain runs with '+'
// and %XX at every offset, and components that cross the 127- and 4095-byte cuts.
TEST(ProcessQueue, LongPlainRunsAndCutsAgreeWithUrllib) {
    wmtest::SeededRandom rng;
    std::vector<std::pair<std::string, std::string>> requests;
    for (int i = 0; i < 40; ++i) {
        std::string body;
        int pairs = 1 + int(rng() % 6);
        for (int p = 0; p < pairs; ++p) {
            bool long_one = rng() % 4 == 0;
            size_t name_length = long_one ? 110 + rng() % 40 : rng() % 20;
            size_t value_length = long_one ? 4070 + rng() % 60 : rng() % 200;
            body += (p ? "&" : "") + component_of_runs(rng, name_length, 1 + rng() % 40) + "=" +
                    component_of_runs(rng, value_length, 1 + rng() % 40);
        }
        requests.emplace_back(body, "");
    }
    expect_urllib_agrees(requests);
}

struct MalformedCase {
    const char *label;
    Request request;
    Pairs want;
    bool query_left = false;
};

TEST(ProcessQueue, MalformedRequests) {
    const std::string long_name(200, 'N');
    const std::string long_value(5000, 'V');
    const std::string long_query = "q=" + long_value;
    std::string encoded_name;
    for (int i = 0; i < 200; ++i)
        encoded_name += "%41";
    const MalformedCase cases[] = {
        {"percent at the end of a value", {"POST", nullptr, "a=%"}, {{"a", "%"}}},
        {"percent and one digit at the end", {"POST", nullptr, "a=%4"}, {{"a", "%4"}}},
        {"percent at the end of a name", {"POST", nullptr, "a%=1"}, {{"a%", "1"}}},
        {"plus inside an escape",
         {"POST", nullptr, "a=%+41"},
         {{"a", "\x04"
                "1"}}},
        {"body without '='", {"POST", nullptr, "abc"}, {{"abc", ""}}},
        {"pair without '=' merges into the next name",
         {"POST", nullptr, "abc&d=1"},
         {{"abc&d", "1"}}},
        {"trailing '&' in the body", {"POST", nullptr, "a=1&"}, {{"a", "1"}, {"", ""}}},
        {"double '&' in the body", {"POST", nullptr, "a=1&&b=2"}, {{"a", "1"}, {"&b", "2"}}},
        {"lone '='", {"POST", nullptr, "="}, {{"", ""}}},
        {"encoded NUL ends the value", {"POST", nullptr, "a=x%00y"}, {{"a", "x"}}},
        {"name in both is stored twice",
         {"POST", nullptr, "a=body", "a=query"},
         {{"a", "body"}, {"a", "query"}}},
        {"empty body", {"POST", "0", "", "c=3"}, {{"c", "3"}}},
        {"length larger than the body", {"POST", "10", "a=1", "q=1"}, {{"q", "1"}}},
        {"length shorter than the body", {"POST", "3", "a=1&b=2"}, {{"a", "1"}}},
        {"negative length", {"POST", "-5", "a=1", "q=1"}, {{"q", "1"}}},
        {"length not a number", {"POST", "abc", "a=1", "q=1"}, {{"q", "1"}}},
        {"length unset", {"POST", kUnset, "a=1", "q=1"}, {{"q", "1"}}},
        {"lower-case get stores nothing", {"get", "3", "a=1", "c=3"}, {}, true},
        {"GET stores nothing", {"GET", nullptr, "", "c=3"}, {}, true},
        {"no method: the query string only", {nullptr, "3", "a=1", "c=3"}, {{"c", "3"}}},
        {"trailing '&' in the query", {"POST", "0", "", "c=3&"}, {{"c", "3"}}},
        {"empty query", {"POST", "0", "", ""}, {}},
        {"capacity stops the body",
         {"POST", nullptr, "a=1&b=2&c=3&d=4", "e=5", 2},
         {{"a", "1"}, {"b", "2"}}},
        {"capacity stops the query",
         {"POST", nullptr, "a=1", "b=2&c=3&d=4", 3},
         {{"a", "1"}, {"b", "2"}, {"c", "3"}}},
        {"capacity zero", {"POST", nullptr, "a=1", "b=2", 0}, {}},
        {"long name cut at 127",
         {"POST", nullptr, long_name + "=v"},
         {{long_name.substr(0, 127), "v"}}},
        {"encoded long name cut at 127 decoded bytes",
         {"POST", nullptr, encoded_name + "=v"},
         {{std::string(127, 'A'), "v"}}},
        {"long value cut at 4095",
         {"POST", nullptr, "v=" + long_value + "&w=1"},
         {{"v", long_value.substr(0, 4095)}, {"w", "1"}}},
        {"long query value cut at 4095",
         {"POST", "0", "", long_query.c_str()},
         {{"q", long_value.substr(0, 4095)}}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.label);
        Decoded got = decode_in_child(c.request);
        EXPECT_EQ(got.pairs, c.want);
        EXPECT_EQ(got.count, int(c.want.size()));
        EXPECT_EQ(got.query_left, c.query_left && c.request.query);
        EXPECT_EQ(got.referer_left, c.query_left);
    }
}

TEST(ProcessQueue, PlainEntryPointStopsAtDocumentedCapacity) {
    std::string body;
    for (int i = 0; i < WEBMGMT_FORM_PAIRS + 44; ++i)
        body += (i ? "&p" : "p") + std::to_string(i) + "=" + std::to_string(i);
    Request r;
    r.body = body;
    r.capacity = -1;
    Decoded got = decode_in_child(r);
    ASSERT_EQ(got.count, WEBMGMT_FORM_PAIRS);
    EXPECT_EQ(got.pairs.back(), std::make_pair("p" + std::to_string(WEBMGMT_FORM_PAIRS - 1),
                                               std::to_string(WEBMGMT_FORM_PAIRS - 1)));
}

// Sets QUERY_STRING for one lookup and removes it again.
struct QueryString {
    explicit QueryString(const char *q) { set_or_unset("QUERY_STRING", q); }
    ~QueryString() { unsetenv("QUERY_STRING"); }
};

TEST(GetContentFromQuerystring, LooksUpOneVariable) {
    const std::string long_value(2000, 'v');
    const std::string long_query = "page=" + long_value;
    struct Case {
        const char *query, *name;
        int result;
        std::string value;
    } cases[] = {
        {"page=status&x=1", "PAGE", 0, "status"},
        {"PAGE=a&page=b", "page", 0, "a"},
        {"x=1&y=a+b%2Bc", "y", 0, "a b+c"},
        {"x=1", "y", -1, ""},
        {nullptr, "x", -1, ""},
        {"", "x", -1, ""},
        {"x=%", "x", 0, "%"},
        {"x", "x", 0, ""},
        {"x=1&", "", -1, ""},
        {"a%3Db=1", "a=b", 0, "1"},
        {long_query.c_str(), "page", 0, long_value.substr(0, 1023)},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(std::string(c.query ? c.query : "(unset)").substr(0, 40));
        QueryString q(c.query);
        char out[1024] = "untouched";
        EXPECT_EQ(get_content_from_querystring(c.name, out), c.result);
        EXPECT_EQ(out, c.result == 0 ? c.value : std::string("untouched"));
        // The lookup leaves the query string in place.
        EXPECT_EQ(getenv("QUERY_STRING") != nullptr, c.query != nullptr);
    }
}

TEST(UrlHelpers, X2cReadsEveryByteInBothCases) {
    for (int b = 0; b < 512; ++b) {
        char hex[3];
        std::snprintf(hex, sizeof hex, b < 256 ? "%02X" : "%02x", b & 255);
        EXPECT_EQ(static_cast<unsigned char>(x2c(hex)), b & 255) << hex;
    }
}

TEST(UrlHelpers, UnescapeAndPlusInPlace) {
    struct Case {
        const char *in, *plus, *unescaped;
    } cases[] = {
        {"a+b", "a b", "a+b"}, {"%41%42", "%41%42", "AB"},   {"%", "%", "%"},
        {"%4", "%4", "%4"},    {"x%41%", "x%41%", "xA%"},    {"%2B+", "%2B ", "++"},
        {"", "", ""},          {"100%25", "100%25", "100%"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.in);
        // Exact-size heap copies, so that a read past the terminator is caught by ASan.
        size_t n = std::strlen(c.in) + 1;
        std::unique_ptr<char[]> a(new char[n]), b(new char[n]);
        std::memcpy(a.get(), c.in, n);
        std::memcpy(b.get(), c.in, n);
        EXPECT_STREQ(plustospace(a.get()), c.plus);
        EXPECT_STREQ(unescape_url(b.get()), c.unescaped);
    }
}

TEST(UrlHelpers, MakewordSplitsAtStop) {
    struct Case {
        const char *line;
        char stop;
        const char *word;
        const char *rest; // null: no rest
    } cases[] = {
        {"a=b", '=', "a", "b"}, {"abc", '=', "abc", nullptr}, {"=x", '=', "", "x"},
        {"a=", '=', "a", ""},   {"", '&', "", nullptr},       {"1&2&3", '&', "1", "2&3"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.line);
        char word[16];
        char *rest = word;
        EXPECT_EQ(makeword(word, c.line, c.stop, &rest), word);
        EXPECT_STREQ(word, c.word);
        if (c.rest)
            EXPECT_STREQ(rest, c.rest);
        else
            EXPECT_EQ(rest, nullptr);
    }
}

} // namespace
