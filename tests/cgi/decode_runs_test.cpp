// The decoder copies runs of plain characters several at a time: requests made of long
// plain runs with '+' and %XX at every offset, and components that cross the 127- and
// 4095-byte cuts, decode as Python's urllib decodes them (tests/cgi/urldecode_ref.py).
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "support/harness.h"
#include "webmgmt.h"

namespace {

std::string hex_of(const std::string &s) {
    static const char digits[] = "0123456789ABCDEF";
    std::string out;
    for (unsigned char c : s) {
        out += digits[c >> 4];
        out += digits[c & 15];
    }
    return out;
}

// A component of plain runs of 0 to `longest_run` characters, each followed by '+' or %XX.
std::string component(std::mt19937 &rng, size_t length, size_t longest_run) {
    static const char plain[] =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_.*~";
    std::string out;
    while (out.size() < length) {
        size_t run = rng() % (longest_run + 1);
        for (size_t i = 0; i < run; ++i)
            out += plain[rng() % (sizeof plain - 1)];
        switch (rng() % 3) {
        case 0:
            out += '+';
            break;
        case 1: {
            char hex[4];
            std::snprintf(hex, sizeof hex, "%%%02X", unsigned(1 + rng() % 255));
            out += hex;
            break;
        }
        default:
            break; // the run goes on into the next one
        }
    }
    return out;
}

// The decoder's pairs in the reference's line format, decoded in a child as a CGI request.
std::string decoded_line(const std::string &body) {
    auto r = wmtest::run_in_child(
        [&] {
            setenv("REQUEST_METHOD", "POST", 1);
            setenv("CONTENT_LENGTH", std::to_string(body.size()).c_str(), 1);
            unsetenv("QUERY_STRING");
            std::vector<form_pair> pairs(64);
            int n = process_queue_n(pairs.data(), int(pairs.size()));
            for (int i = 0; i < n; ++i) {
                std::printf("%s%s:%s", i ? " " : "", hex_of(pairs[i].name).c_str(),
                            hex_of(pairs[i].value).c_str());
                std::free(pairs[i].name);
                std::free(pairs[i].value);
            }
            std::printf("\n");
            return 0;
        },
        body);
    EXPECT_EQ(r.exit_code(), 0) << r.err;
    return r.out;
}

TEST(DecodeRuns, LongPlainRunsAndCutsAgreeWithUrllib) {
    std::random_device seed_source;
    unsigned seed = seed_source();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 rng(seed);
    std::vector<std::string> bodies;
    std::string input;
    for (int i = 0; i < 40; ++i) {
        std::string body;
        int pairs = 1 + int(rng() % 6);
        for (int p = 0; p < pairs; ++p) {
            bool long_one = rng() % 4 == 0;
            size_t name_length = long_one ? 110 + rng() % 40 : rng() % 20;
            size_t value_length = long_one ? 4070 + rng() % 60 : rng() % 200;
            body += (p ? "&" : "") + component(rng, name_length, 1 + rng() % 40) + "=" +
                    component(rng, value_length, 1 + rng() % 40);
        }
        bodies.push_back(body);
        input += hex_of(body) + " -\n";
    }
    auto ref = wmtest::run_shell(
        "python3 '" + wmtest::source_dir() + "/tests/cgi/urldecode_ref.py'", input);
    ASSERT_EQ(ref.exit_code(), 0) << ref.err;
    size_t at = 0;
    for (const std::string &body : bodies) {
        size_t end = ref.out.find('\n', at);
        ASSERT_NE(end, std::string::npos) << "the reference ended early";
        EXPECT_EQ(decoded_line(body), ref.out.substr(at, end + 1 - at)) << body;
        at = end + 1;
    }
}

} // namespace
