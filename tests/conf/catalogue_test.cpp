// The field tables of the record catalogue: row counts, rows inside their records, no two
// rows over the same bytes, and the layout every target must share.
#include <gtest/gtest.h>

#include <algorithm>
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

const CatalogueTable &table_of(const char *builder) {
    for (const CatalogueTable &t : kCatalogue)
        if (strcmp(t.builder, builder) == 0) return t;
    ADD_FAILURE() << "no builder " << builder;
    return kCatalogue[0];
}

// Rows of each table as the catalogue lists them. The LAN table's listed rows are 533
// although its heading says 535: the listed rows are what the builder writes.
TEST(Catalogue, RowCounts) {
    const struct {
        const char *builder;
        int rows;
    } cases[] = {
        {"WiFi_field", 1078},    {"defap_field", 297},     {"productinfo_field", 676},
        {"misc_field", 80},      {"misc_ext_field", 773},  {"lan_field", 533},
        {"wan_field", 161},      {"qos_field", 840},       {"fwurl_field", 584},
        {"fwmac_field", 584},    {"timegroup_field", 231}, {"ipport_field", 17},
        {"vsipport_field", 424}, {"fwipport_field", 775},
    };
    for (const auto &c : cases) {
        BuiltTable built(table_of(c.builder));
        EXPECT_EQ(built.count, c.rows) << c.builder;
    }
}

TEST(Catalogue, EveryTableBeginsWithTheCommonMembers) {
    for (const CatalogueTable &t : kCatalogue) {
        BuiltTable built(t);
        ASSERT_GE(built.count, 4) << t.builder;
        EXPECT_STREQ(built.rows[0].name, "config_ver.main_version") << t.builder;
        EXPECT_EQ(built.offset(0), 0) << t.builder;
        EXPECT_STREQ(built.rows[1].name, "config_ver.sub_version") << t.builder;
        EXPECT_EQ(built.offset(1), 1) << t.builder;
        EXPECT_STREQ(built.rows[2].name, "lock_file") << t.builder;
        EXPECT_EQ(built.rows[2].size, 128) << t.builder;
        EXPECT_STREQ(built.rows[3].name, "lock_location") << t.builder;
        EXPECT_EQ(built.offset(3), 132) << t.builder;
    }
}

// Every row lies inside its record, carries a type code the setter acts on, and no two
// rows cover the same byte (the one deliberate alias, the IP-group mark named for group
// 15 but placed on group 0, covers bytes no other row of that table covers).
TEST(Catalogue, RowsLieInsideTheirRecordsWithoutOverlap) {
    for (const CatalogueTable &t : kCatalogue) {
        BuiltTable built(t);
        std::vector<std::pair<long, long>> spans;
        std::set<std::string> names;
        for (int i = 0; i < built.count; ++i) {
            const field_desc &row = built.rows[i];
            long at = built.offset(i);
            EXPECT_GE(at, 0) << t.builder << " " << row.name;
            EXPECT_LE(at + row.size, static_cast<long>(t.record_size))
                << t.builder << " " << row.name;
            EXPECT_GE(row.type, 1) << row.name;
            EXPECT_LE(row.type, 12) << row.name;
            EXPECT_GT(row.size, 0) << row.name;
            EXPECT_TRUE(names.insert(row.name).second) << t.builder << " repeats " << row.name;
            spans.emplace_back(at, at + row.size);
        }
        std::sort(spans.begin(), spans.end());
        for (size_t i = 1; i < spans.size(); ++i)
            EXPECT_LE(spans[i - 1].second, spans[i].first)
                << t.builder << " overlap at " << spans[i].first;
        // The row after the last is the empty terminator.
        EXPECT_EQ(built.rows[built.count].name[0], '\0') << t.builder;
        EXPECT_EQ(built.rows[built.count].address, nullptr) << t.builder;
    }
}

// Rows of one array element follow the declaration order of the element's members: within
// each table, rows that share a name prefix up to their last '.' and whose member names
// are listed in declaration order lie at increasing addresses; checked on the blocks
// the tables list in declaration order.
TEST(Catalogue, DeclarationOrderRowsLieAtIncreasingAddresses) {
    const struct {
        const char *builder;
        const char *prefix;
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
        const size_t n = strlen(b.prefix);
        for (int i = 0; i < built.count; ++i)
            if (strncmp(built.rows[i].name, b.prefix, n) == 0)
                offsets.push_back(built.offset(i));
        EXPECT_EQ(static_cast<int>(offsets.size()), b.rows) << b.prefix;
        EXPECT_TRUE(std::is_sorted(offsets.begin(), offsets.end())) << b.prefix;
        EXPECT_EQ(std::adjacent_find(offsets.begin(), offsets.end()), offsets.end()) << b.prefix;
    }
}

// A table built for one record instance addresses that instance: two instances give the
// same rows shifted by the distance between them.
TEST(Catalogue, RowsFollowTheRecordInstance) {
    for (const CatalogueTable &t : kCatalogue) {
        BuiltTable a(t);
        BuiltTable b(t);
        ASSERT_EQ(a.count, b.count);
        for (int i = 0; i < a.count; ++i) {
            EXPECT_STREQ(a.rows[i].name, b.rows[i].name);
            EXPECT_EQ(a.offset(i), b.offset(i)) << a.rows[i].name;
        }
    }
}

// The catalogue names the members the pages and defaults files use; a few spot checks of
// rows whose place or name is out of the ordinary.
TEST(Catalogue, OutOfTheOrdinaryRows) {
    BuiltTable wifi(table_of("WiFi_field"));
    wifi_config *w = reinterpret_cast<wifi_config *>(wifi.record);
    auto find = [](BuiltTable &t, const char *name) -> const field_desc * {
        for (int i = 0; i < t.count; ++i)
            if (strcmp(t.rows[i].name, name) == 0) return &t.rows[i];
        return nullptr;
    };
    const field_desc *bssid = find(wifi, "m_radio[2].m_vap[3].m_bssid.mac");
    ASSERT_NE(bssid, nullptr);
    EXPECT_EQ(bssid->address, w->m_radio[2].m_vap[3].m_bssid.mac);
    EXPECT_EQ(bssid->size, 6);
    const field_desc *p2p = find(wifi, "m_radio[1].m_vap[2].m_p2p");
    ASSERT_NE(p2p, nullptr);
    EXPECT_EQ(p2p->address, &w->m_radio[1].m_vap[2].m_p2p);

    BuiltTable defap(table_of("defap_field"));
    defap_config *d = reinterpret_cast<defap_config *>(defap.record);
    const field_desc *radius = find(defap, "m_radio[0].m_vap[1].m_radius_serverip");
    ASSERT_NE(radius, nullptr);
    EXPECT_EQ(radius->type, 9);
    EXPECT_EQ(radius->size, 16);
    EXPECT_EQ(radius->address, &d->m_radio[0].m_vap[1].m_radius_serverip);

    BuiltTable ipport(table_of("ipport_field"));
    ipport_config *ip = reinterpret_cast<ipport_config *>(ipport.record);
    const field_desc *mark = find(ipport, "useripgroup.element[15].mark");
    ASSERT_NE(mark, nullptr);
    EXPECT_EQ(mark->address, ip->useripgroup.element[0].mark);
    EXPECT_EQ(find(ipport, "useripgroup.element[2].name"), nullptr);
}

TEST(Catalogue, ApTemplateBuilderWritesNoRows) {
    std::vector<field_desc> table(WEBMGMT_FIELD_ROWS);
    unsigned char record[64] = {};
    aptemp_field(table.data(), record);
    EXPECT_EQ(table[0].name[0], '\0');
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
