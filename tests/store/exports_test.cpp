// The store library exports exactly the calls its header declares and needs nothing at run
// time but the C library: the library code it carries stays private.
#include <gtest/gtest.h>
#include <set>
#include <sstream>

#include "store_test_util.h"

namespace {

std::set<std::string> words(const std::string &text) {
    std::set<std::string> out;
    std::istringstream in(text);
    for (std::string w; in >> w;)
        out.insert(w);
    return out;
}

TEST(Exports, TheStoreExportsItsHeaderAndNeedsOnlyTheCLibrary) {
    std::string lib = WEBMGMT_STORE_LIBRARY;
    std::string header = wmtest::source_dir() + "/store/config_data_api.h";
    auto declared = wmtest::run_shell(
        "sed -n 's/^CONFIG_API .*[ *]\\([A-Za-z_0-9]*\\)(.*/\\1/p' '" + header + "'");
    auto exported =
        wmtest::run_shell("nm -D --defined-only '" + lib + "' | awk '$2 ~ /[TDBRVW]/ {print $3}'");
    ASSERT_EQ(exported.exit_code(), 0) << exported.err;
    EXPECT_EQ(words(exported.out), words(declared.out));
    EXPECT_GT(words(declared.out).size(), 100u);
    auto needed =
        wmtest::run_shell("readelf -d '" + lib + "' | sed -n 's/.*(NEEDED).*\\[\\(.*\\)\\]/\\1/p'");
    if (needed.out.find("libasan") != std::string::npos)
        GTEST_SKIP() << "the sanitizer build links its runtime";
    for (const std::string &n : words(needed.out))
        EXPECT_TRUE(n.rfind("libc.so", 0) == 0 || n.rfind("ld-linux", 0) == 0) << n;
}

} // namespace
