// The factory defaults files: every name they give is a row of their record's table, every
// text fits its member, every address parses.
#include <gtest/gtest.h>

#include <arpa/inet.h>

#include <cstring>
#include <sstream>
#include <string>

#include "support/harness.h"
#include "tests/conf/record_layout.h"

namespace {

struct DefaultsFile {
    const char *file;
    const char *builder;
};

const DefaultsFile kDefaults[] = {
    {"wifi.conf", "WiFi_field"},
    {"defap.conf", "defap_field"},
    {"productinfo.conf", "productinfo_field"},
    {"misc.conf", "misc_field"},
    {"misc_ext.conf", "misc_ext_field"},
    {"lan.conf", "lan_field"},
    {"wan.conf", "wan_field"},
    {"qos.conf", "qos_field"},
    {"fwurl.conf", "fwurl_field"},
    {"fwmac.conf", "fwmac_field"},
    {"timegroup.conf", "timegroup_field"},
    {"ipport.conf", "ipport_field"},
    {"vsipport.conf", "vsipport_field"},
    {"fwipport.conf", "fwipport_field"},
};

std::string defaults_path(const char *file) {
    return wmtest::source_dir() + "/conf/defaults/" + file;
}

const wmtest::CatalogueTable &catalogue_table(const char *builder) {
    for (const auto &t : wmtest::kCatalogue)
        if (strcmp(t.builder, builder) == 0) return t;
    return wmtest::kCatalogue[0];
}

std::string unquoted(std::string value) {
    if (!value.empty() && value.front() == '"') value.erase(0, 1);
    if (!value.empty() && value.back() == '"') value.pop_back();
    return value;
}

TEST(Defaults, EveryNameIsARowAndEveryValueFits) {
    for (const DefaultsFile &d : kDefaults) {
        wmtest::BuiltTable built(catalogue_table(d.builder));
        std::string text = wmtest::read_file(defaults_path(d.file));
        ASSERT_FALSE(text.empty()) << d.file;
        std::istringstream lines(text);
        std::string line;
        int pairs = 0;
        while (std::getline(lines, line)) {
            if (line.empty() || line[0] == '#') continue;
            size_t eq = line.find('=');
            ASSERT_NE(eq, std::string::npos) << d.file << ": " << line;
            std::string name = line.substr(0, eq);
            std::string value = unquoted(line.substr(eq + 1));
            ++pairs;
            const field_desc *row = nullptr;
            for (int i = 0; i < built.count && !row; ++i) {
                if (name == built.rows[i].name) row = &built.rows[i];
            }
            ASSERT_NE(row, nullptr) << d.file << " names " << name;
            if ((row->type == 4 || row->type == 5) && row->size > 1) {
                EXPECT_LT(value.size(), row->size) << d.file << ": " << name;
            }
            if (row->type == 6) {
                in_addr a{};
                EXPECT_EQ(inet_pton(AF_INET, value.c_str(), &a), 1) << d.file << ": " << name;
            }
        }
        EXPECT_LE(pairs, 500) << d.file << " holds more pairs than one load takes";
        EXPECT_GT(pairs, 0) << d.file;
    }
}

} // namespace
