// The field tables of the record catalogue: row counts, rows inside their records, no two
// rows over the same bytes, and the layout every target must share.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <set>
#include <string>
#include <vector>

#include "support/harness.h"
#include "tests/conf/record_layout.h"

namespace {

using wmtest::BuiltTable;
using wmtest::CatalogueTable;
using wmtest::kCatalogue;
using wmtest::table_of;

// Every table lists the catalogue's rows, begins with the members all records share, and
// each row lies inside its record with a type code the setter acts on; no two rows cover
// the same byte (the one deliberate alias, the IP-group mark named for group 15 but placed
// on group 0, covers bytes no other row of that table covers).
TEST(Catalogue, RowsLieInsideTheirRecordsWithoutOverlap) {
    for (const CatalogueTable &t : kCatalogue) {
        SCOPED_TRACE(t.builder);
        BuiltTable built(t);
        ASSERT_EQ(built.count, t.listed_rows);
        EXPECT_STREQ(built.rows[0].name, "config_ver.main_version");
        EXPECT_STREQ(built.rows[2].name, "lock_file");
        EXPECT_EQ(built.offset(3), 132); // lock_location, after the 128-byte lock_file
        std::vector<std::pair<long, long>> spans;
        std::set<std::string> names;
        for (int i = 0; i < built.count; ++i) {
            const field_desc &row = built.rows[i];
            long at = built.offset(i);
            EXPECT_TRUE(at >= 0 && at + row.size <= long(t.record_size)) << row.name;
            EXPECT_TRUE(row.type >= 1 && row.type <= 12 && row.size > 0) << row.name;
            EXPECT_TRUE(names.insert(row.name).second) << "repeats " << row.name;
            spans.emplace_back(at, at + row.size);
        }
        std::sort(spans.begin(), spans.end());
        for (size_t i = 1; i < spans.size(); ++i)
            EXPECT_LE(spans[i - 1].second, spans[i].first) << "overlap at " << spans[i].first;
        // The row after the last is the empty terminator.
        EXPECT_EQ(built.rows[built.count].address, nullptr);
    }
}

// Rows of one array element, listed in declaration order, lie at increasing addresses.
TEST(Catalogue, DeclarationOrderRowsLieAtIncreasingAddresses) {
    const struct {
        const char *builder, *prefix;
        int rows;
    } blocks[] = {
        {"WiFi_field", "m_radio[1].m_vap[2].", 26},
        {"WiFi_field", "m_radio[2].m_acllist.element[31].", 6},
        {"defap_field", "m_radio[1].m_vap[3].", 19},
        {"misc_field", "sys_cloud.", 14},
        {"misc_field", "sys_ddns.", 10},
        {"qos_field", "qos.element[7].", 26},
        {"fwipport_field", "fwipport.element[31].", 24},
        {"vsipport_field", "vsipport.element[0].", 13},
        {"timegroup_field", "usertimegroup.element[15].", 14},
        {"misc_ext_field", "acl_info.info[127].", 6},
        {"lan_field", "dhcp_server_acbindlist.element[5].", 7},
    };
    for (const auto &b : blocks) {
        BuiltTable built(table_of(b.builder));
        std::vector<long> offsets;
        for (int i = 0; i < built.count; ++i)
            if (strncmp(built.rows[i].name, b.prefix, strlen(b.prefix)) == 0)
                offsets.push_back(built.offset(i));
        EXPECT_EQ(int(offsets.size()), b.rows) << b.prefix;
        EXPECT_TRUE(std::adjacent_find(offsets.begin(), offsets.end(),
                                       [](long a, long c) { return a >= c; }) == offsets.end())
            << b.prefix;
    }
}

// Rows whose place, type or name is out of the ordinary, against the members themselves.
TEST(Catalogue, OutOfTheOrdinaryRows) {
    const struct {
        const char *builder, *name;
        long offset;
        int type, size;
    } cases[] = {
        {"WiFi_field", "m_radio[2].m_vap[3].m_bssid.mac",
         long(offsetof(wifi_config, m_radio[2].m_vap[3].m_bssid.mac)), -1, 6},
        {"defap_field", "m_radio[0].m_vap[1].m_radius_serverip",
         long(offsetof(defap_config, m_radio[0].m_vap[1].m_radius_serverip)), 9, 16},
        // The mark named for group 15 lies on group 0's.
        {"ipport_field", "useripgroup.element[15].mark",
         long(offsetof(ipport_config, useripgroup.element[0].mark)), -1, -1},
        {"ipport_field", "useripgroup.element[2].name", -1, -1, -1}, // not listed
    };
    for (const auto &c : cases) {
        BuiltTable built(table_of(c.builder));
        const field_desc *row = wmtest::row_named(built, c.name);
        if (c.offset < 0) {
            EXPECT_EQ(row, nullptr) << c.name;
            continue;
        }
        ASSERT_NE(row, nullptr) << c.name;
        EXPECT_EQ(built.offset(int(row - built.rows)), c.offset) << c.name;
        EXPECT_TRUE(c.type < 0 || row->type == c.type) << c.name;
        EXPECT_TRUE(c.size < 0 || row->size == c.size) << c.name;
    }
    // The AP template builder writes no rows at all.
    std::vector<field_desc> table(WEBMGMT_FIELD_ROWS);
    unsigned char record[64] = {};
    aptemp_field(table.data(), record);
    EXPECT_EQ(table[0].address, nullptr);
}

// Both targets must compute the same layout: the committed golden file is the layout
// every build is compared with (regenerate it with tools/record-layout after a reviewed
// change of a record).
TEST(Catalogue, LayoutMatchesTheGoldenFile) {
    std::string golden = wmtest::read_file(wmtest::source_dir() + "/tests/conf/golden/layout.txt");
    std::string actual = wmtest::catalogue_layout();
    ASSERT_FALSE(golden.empty());
    if (golden != actual) {
        std::string out = wmtest::binary_dir() + "/layout.actual.txt";
        wmtest::write_file(out, actual);
        FAIL() << "layout differs from the golden file; this build's layout is in " << out;
    }
}

} // namespace
