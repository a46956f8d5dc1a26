// Running a view and checking its document: byte for byte against a committed golden file,
// and as JSON through python3's parser (tests/views/json_flatten.py).
#pragma once

#include <gtest/gtest.h>

#include <arpa/inet.h>

#include <algorithm>

#include <cstdlib>
#include <cstring>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <sstream>
#include <string>
#include <vector>

#include "support/harness.h"
#include "webmgmt.h"

namespace viewtest {

// The records every view is printed for: factory defaults, every slot and member filled,
// edge values (full-width texts without terminator, extreme numbers).
enum class Case { Defaults, Full, Edge };
inline const char *const kCaseNames[] = {"defaults", "full", "edge"};

// What a view prints on standard output, run in a child as a CGI program would.
template <typename Record> std::string print(void (*view)(const Record *), const Record &r) {
    return wmtest::run_in_child([&] {
               view(&r);
               return 0;
           })
        .out;
}

// Golden documents change only on purpose: WEBMGMT_UPDATE_GOLDEN=1 rewrites them.
inline void expect_golden(const std::string &name, const std::string &document) {
    std::string path = wmtest::source_dir() + "/tests/views/golden/" + name;
    const char *update = std::getenv("WEBMGMT_UPDATE_GOLDEN");
    if (update && std::strcmp(update, "1") == 0) return wmtest::write_file(path, document);
    ASSERT_TRUE(wmtest::file_exists(path)) << path << " missing (WEBMGMT_UPDATE_GOLDEN=1)";
    std::string golden = wmtest::read_file(path);
    size_t at =
        std::mismatch(golden.begin(), golden.end(), document.begin(), document.end()).first -
        golden.begin();
    EXPECT_EQ(golden, document) << name << " differs from its golden document at byte " << at;
}

// A document as python3's json module reads it: every leaf by its dotted path ("#len" for
// the size of an array), or the parser's verdict when it is refused.
struct Parsed {
    int status = -1; // 0 valid; 3 not JSON; 4 a value that is not a string; 5 a repeated key
    std::string message;
    std::map<std::string, std::string> values;
    const std::string &at(const std::string &path) const {
        static const std::string missing = "<missing>";
        auto it = values.find(path);
        return it == values.end() ? missing : it->second;
    }
};

// `options` name the departures a view is allowed (see the script).
inline Parsed parse(const std::string &document, const std::string &options = "") {
    wmtest::ChildResult r = wmtest::run_shell(
        "python3 '" + wmtest::source_dir() + "/tests/views/json_flatten.py' " + options, document);
    Parsed p;
    p.status = r.exit_code();
    p.message = r.out + r.err;
    if (p.status != 0) return p;
    std::istringstream lines(r.out);
    std::string line;
    while (std::getline(lines, line)) {
        size_t tab = line.find('\t');
        if (tab != std::string::npos) p.values[line.substr(0, tab)] = line.substr(tab + 1);
    }
    return p;
}

// Each "path=value" (the value after the first '=') as python3 read the document.
inline void expect_at(const Parsed &p, std::initializer_list<const char *> expected) {
    for (std::string e : expected) {
        size_t eq = e.find('=');
        EXPECT_EQ(p.at(e.substr(0, eq)), e.substr(eq + 1)) << e;
    }
}

// One value of a view's document for one record, as python3 reads it.
struct Expect {
    const char *view;
    Case record;
    const char *path;
    std::string value;
};

// Checks every expectation, running python3 once per document.
inline void expect_values(std::span<const Expect> expected,
                          const std::function<std::string(const std::string &, Case)> &print) {
    std::map<std::string, Parsed> parsed;
    for (const Expect &e : expected) {
        std::string key = std::string(e.view) + "-" + kCaseNames[int(e.record)];
        if (!parsed.count(key)) parsed[key] = parse(print(e.view, e.record));
        EXPECT_EQ(parsed[key].at(e.path), e.value)
            << key << " " << e.path << ": " << parsed[key].message;
    }
}

// A record filled from its factory defaults file through its field table, as the device
// does on first start.
template <typename Record>
std::unique_ptr<Record> from_defaults(void (*builder)(field_desc *, Record *), const char *file) {
    auto record = std::make_unique<Record>();
    std::vector<field_desc> table(WEBMGMT_FIELD_ROWS);
    clean_points(table.data());
    builder(table.data(), record.get());
    std::string path = wmtest::source_dir() + "/conf/defaults/" + file;
    EXPECT_TRUE(wmtest::file_exists(path)) << path;
    load_default(table.data(), path.c_str());
    return record;
}

using wmtest::put;
template <size_t N> void fill_full(char (&member)[N], char c) {
    std::memset(member, c, N);
}

inline uint32_t ipv4(const char *dotted) {
    uint32_t a = 0;
    inet_pton(AF_INET, dotted, &a);
    return a;
}

} // namespace viewtest
