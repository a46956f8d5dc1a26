// Whole-catalogue round trips: every row of every table is written through set_value (and
// through defaults files read by load_default) and read back from the member itself, which
// catches a wrong offset, type code or size anywhere in the catalogue.
#include <gtest/gtest.h>

#include <arpa/inet.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <sstream>
#include <string>
#include <vector>

#include "support/harness.h"
#include "tests/conf/record_layout.h"

namespace {

using wmtest::BuiltTable;
using wmtest::CatalogueTable;
using wmtest::kCatalogue;

bool is_text(const field_desc &row) {
    return (row.type == 4 || row.type == 5) && row.size > 1;
}

// A value for row `i` that differs from its neighbours' and, for texts, fills the member
// but for its terminator.
std::string value_for(const field_desc &row, int i) {
    char text[64];
    if (is_text(row)) {
        std::string s(row.size - 1u, 'a');
        for (size_t k = 0; k < s.size(); ++k)
            s[k] = char('a' + (i + int(k)) % 26);
        return s;
    }
    switch (row.type) {
    case 2:
        snprintf(text, sizeof text, "%d", (i * 37) % 60000 - 30000);
        break;
    case 8:
        snprintf(text, sizeof text, "%lld", 5000000000LL * (i + 1));
        break;
    case 6:
        snprintf(text, sizeof text, "10.%d.%d.%d", i / 65536 % 256, i / 256 % 256, i % 256);
        break;
    case 12:
        snprintf(text, sizeof text, "2001:db8::%x:beef", i);
        break;
    case 4:
    case 5:
        snprintf(text, sizeof text, "%d", i % 254 + 1);
        break;
    default:
        snprintf(text, sizeof text, "%d", -1000003 * (i + 1));
    }
    return text;
}

// The member of `row` at `m` as text, read independently of the library: numbers through
// their C types, addresses through inet_ntop.
std::string render(const field_desc &row, const unsigned char *m) {
    if (is_text(row))
        return std::string(reinterpret_cast<const char *>(m), strnlen((const char *)m, row.size));
    char out[INET6_ADDRSTRLEN];
    int16_t i16;
    int32_t i32;
    int64_t i64;
    switch (row.type) {
    case 2:
        return std::to_string((memcpy(&i16, m, 2), i16));
    case 8:
        return std::to_string((memcpy(&i64, m, 8), i64));
    case 4:
    case 5:
        return std::to_string(m[0]);
    case 6:
        return inet_ntop(AF_INET, m + 4, out, sizeof out);
    case 12:
        return inet_ntop(AF_INET6, m + 8, out, sizeof out);
    default:
        return std::to_string((memcpy(&i32, m, 4), i32));
    }
}

// The same rendering of what set_value should store for `text`.
std::string expected(const field_desc &row, const std::string &text) {
    unsigned char m[600] = {};
    const long long v = strtoll(text.c_str(), nullptr, 10);
    const int16_t i16 = int16_t(v);
    const int32_t i32 = int32_t(v);
    if (is_text(row))
        memcpy(m, text.data(), std::min<size_t>(text.size(), row.size));
    else if (row.type == 6 && inet_pton(AF_INET, text.c_str(), m + 4) != 1)
        return "bad test address";
    else if (row.type == 12 && inet_pton(AF_INET6, text.c_str(), m + 8) != 1)
        return "bad test address";
    else if (row.type == 2)
        memcpy(m, &i16, 2);
    else if (row.type == 8)
        memcpy(m, &v, 8);
    else if (row.type == 4 || row.type == 5)
        m[0] = uint8_t(v);
    else if (row.type != 6 && row.type != 12)
        memcpy(m, &i32, 4);
    return render(row, m);
}

#define EXPECT_HOLDS(row, text)                                                                    \
    EXPECT_EQ(render(row, static_cast<const unsigned char *>((row).address)), expected(row, text)) \
        << (row).name

// set_value changes exactly the bytes of the named element's member, and every member then
// keeps its value while all the others are written.
TEST(CatalogueRoundTrip, SetValueReachesEveryRow) {
    for (const CatalogueTable &t : kCatalogue) {
        SCOPED_TRACE(t.builder);
        BuiltTable built(t);
        std::vector<std::string> values;
        for (int i = 0; i < built.count; ++i) {
            const field_desc &row = built.rows[i];
            values.push_back(value_for(row, i));
            std::vector<unsigned char> want(built.record, built.record + t.record_size);
            ASSERT_EQ(set_value(built.rows, row.name, values.back().c_str()), 0);
            EXPECT_HOLDS(row, values.back());
            // Nothing outside the member moved.
            memcpy(want.data() + built.offset(i), row.address, row.size);
            EXPECT_EQ(memcmp(want.data(), built.record, t.record_size), 0) << row.name;
        }
        for (int i = 0; i < built.count; ++i)
            EXPECT_HOLDS(built.rows[i], values[size_t(i)]);
    }
}

// The same through defaults files: every row's NAME="value" line, in files of at most the
// 500 pairs one load takes, loaded onto a zeroed record.
TEST(CatalogueRoundTrip, LoadDefaultReachesEveryRow) {
    wmtest::TempRoot root;
    for (const CatalogueTable &t : kCatalogue) {
        SCOPED_TRACE(t.builder);
        BuiltTable built(t);
        std::vector<std::string> values;
        std::string file;
        for (int i = 0; i < built.count; ++i) {
            // Values differ from the set_value test's so a stale record cannot pass.
            values.push_back(value_for(built.rows[i], i + 7));
            // load_default reads a value through a 500-byte buffer, quotes included: the
            // longest texts (499 characters) go in bare, the others in double quotes.
            const std::string &v = values.back();
            file +=
                std::string(built.rows[i].name) + "=" + (v.size() > 497 ? v : '"' + v + '"') + "\n";
            if ((i + 1) % WEBMGMT_PROP_PAIRS == 0 || i + 1 == built.count) {
                std::string path = root.path("/tmp/") + t.builder + std::to_string(i) + ".conf";
                wmtest::write_file(path, file);
                EXPECT_EQ(load_default(built.rows, path.c_str()), 0);
                file.clear();
            }
        }
        for (int i = 0; i < built.count; ++i)
            EXPECT_HOLDS(built.rows[i], values[size_t(i)]);
    }
}

// The factory defaults, loaded as the configuration store does: every name they give is a
// row of their record's table, every text fits its member, every member they name gets its
// value, one load takes the whole file, and they describe a working router.
TEST(CatalogueRoundTrip, FactoryDefaultsLoad) {
    for (const CatalogueTable &t : kCatalogue) {
        SCOPED_TRACE(t.defaults);
        BuiltTable built(t);
        std::string path = wmtest::source_dir() + "/conf/defaults/" + t.defaults;
        ASSERT_EQ(load_default(built.rows, path.c_str()), 0);
        std::istringstream lines(wmtest::read_file(path));
        int pairs = 0;
        for (std::string line; std::getline(lines, line);) {
            if (line.empty() || line[0] == '#') continue;
            size_t eq = line.find('=');
            ASSERT_NE(eq, std::string::npos) << line;
            std::string value = line.substr(eq + 1);
            if (value.size() >= 2 && value.front() == '"' && value.back() == '"')
                value = value.substr(1, value.size() - 2);
            const field_desc *row = wmtest::row_named(built, line.substr(0, eq));
            ASSERT_NE(row, nullptr) << line;
            EXPECT_TRUE(!is_text(*row) || value.size() < row->size) << line;
            EXPECT_HOLDS(*row, value);
            ++pairs;
        }
        EXPECT_TRUE(pairs > 0 && pairs <= WEBMGMT_PROP_PAIRS) << pairs;
        if (strcmp(t.defaults, "lan.conf") == 0) {
            const auto *lan = reinterpret_cast<const lan_config *>(built.record);
            EXPECT_EQ(lan->ipaddr.v4, inet_addr("192.168.1.1"));
            EXPECT_EQ(lan->subnet.v4, inet_addr("255.255.255.0"));
            EXPECT_EQ(lan->dev_dhcpserver.dhcp_server_enable, 1);
            EXPECT_EQ(lan->dev_dhcpserver.dhcp_server_start_ipaddr.v4, inet_addr("192.168.1.100"));
            EXPECT_EQ(lan->dev_dhcpserver.dhcp_server_end_ipaddr.v4, inet_addr("192.168.1.200"));
        } else if (strcmp(t.defaults, "wifi.conf") == 0) {
            const auto *wifi = reinterpret_cast<const wifi_config *>(built.record);
            for (int r = 0; r < 2; ++r) {
                EXPECT_EQ(wifi->m_radio[r].m_enable, 1);
                EXPECT_EQ(wifi->m_radio[r].m_vap[0].m_wlan_enable, 1);
                EXPECT_GE(strlen(wifi->m_radio[r].m_vap[0].m_psk_keystr), 8u);
                EXPECT_EQ(wifi->m_radio[r].m_vap[1].m_wlan_enable, 0);
            }
            EXPECT_EQ(wifi->m_radio[2].m_enable, 0);
        } else if (strcmp(t.defaults, "misc.conf") == 0) {
            const auto *misc = reinterpret_cast<const misc_config *>(built.record);
            EXPECT_STREQ(misc->sys_user.rootname, "admin");
            EXPECT_EQ(misc->sys_ntp.enable, 1);
            EXPECT_STRNE(misc->sys_ntp.ntp_server_addr, "");
        }
    }
}

} // namespace
