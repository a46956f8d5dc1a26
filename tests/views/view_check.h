// Running a view and checking its document: byte for byte against a committed golden file,
// and as JSON through python3's parser (tests/views/json_flatten.py).
#pragma once

#include <gtest/gtest.h>

#include <arpa/inet.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "support/harness.h"
#include "webmgmt.h"

namespace viewtest {

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
    if (update && std::strcmp(update, "1") == 0) {
        wmtest::write_file(path, document);
        return;
    }
    ASSERT_TRUE(wmtest::file_exists(path)) << path << " missing (WEBMGMT_UPDATE_GOLDEN=1)";
    std::string golden = wmtest::read_file(path);
    if (golden == document) return;
    size_t at = 0;
    while (at < golden.size() && at < document.size() && golden[at] == document[at])
        ++at;
    ADD_FAILURE() << name << " differs from its golden document at byte " << at << ": got\n"
                  << document.substr(at > 80 ? at - 80 : 0, 160) << "\nexpected\n"
                  << golden.substr(at > 80 ? at - 80 : 0, 160);
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

inline Parsed parse(const std::string &document) {
    wmtest::ChildResult r = wmtest::run_shell(
        "python3 '" + wmtest::source_dir() + "/tests/views/json_flatten.py'", document);
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

// Writes `text` into a member; a text as long as the member leaves no terminator.
template <size_t N> void put(char (&member)[N], const std::string &text) {
    std::memset(member, 0, N);
    std::memcpy(member, text.data(), text.size() < N ? text.size() : N);
}
template <size_t N> void fill_full(char (&member)[N], char c) {
    std::memset(member, c, N);
}

inline uint32_t ipv4(const char *dotted) {
    uint32_t a = 0;
    inet_pton(AF_INET, dotted, &a);
    return a;
}

} // namespace viewtest
