// Whole-catalogue round trips: every row of every table is written through set_value (and
// through defaults files read by load_default) and read back from the member itself, which
// catches a wrong offset, type code or size anywhere in the catalogue.
#include <gtest/gtest.h>

#include <arpa/inet.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "support/harness.h"
#include "tests/conf/record_layout.h"

namespace {

using wmtest::BuiltTable;
using wmtest::CatalogueTable;
using wmtest::kCatalogue;

// A value for row `i` that differs from its neighbours' and, for texts, fills the member
// but for its terminator.
std::string value_for(const field_desc &row, int i) {
    char text[64];
    switch (row.type) {
    case 1:
    case 3:
    case 7:
    case 9:
        snprintf(text, sizeof text, "%d", -1000003 * (i + 1));
        return text;
    case 2:
        snprintf(text, sizeof text, "%d", (i * 37) % 60000 - 30000);
        return text;
    case 8:
        snprintf(text, sizeof text, "%llu", 5000000000ULL * static_cast<unsigned long long>(i + 1));
        return text;
    case 6:
        snprintf(text, sizeof text, "10.%d.%d.%d", i / 65536 % 256, i / 256 % 256, i % 256);
        return text;
    case 12:
        snprintf(text, sizeof text, "2001:db8::%x:%x", i, 0xbeef);
        return text;
    default: // 4 and 5
        if (row.size < 2) {
            snprintf(text, sizeof text, "%d", i % 254 + 1);
            return text;
        }
        std::string s(row.size - 1u, 'a');
        for (size_t k = 0; k < s.size(); ++k)
            s[k] = static_cast<char>('a' + (i + static_cast<int>(k)) % 26);
        return s;
    }
}

// Whether the member of `row` holds what set_value stores for `text`, read independently of
// the library: numbers through their C types, addresses through inet_pton.
::testing::AssertionResult holds(const field_desc &row, const std::string &text) {
    const auto *m = static_cast<const unsigned char *>(row.address);
    auto mismatch = [&](const std::string &got) {
        return ::testing::AssertionFailure()
               << row.name << " (type " << row.type << ") holds " << got << ", not " << text;
    };
    switch (row.type) {
    case 1:
    case 3:
    case 7:
    case 9: {
        int32_t v;
        memcpy(&v, m, sizeof v);
        return v == atoi(text.c_str()) ? ::testing::AssertionSuccess()
                                       : mismatch(std::to_string(v));
    }
    case 2: {
        int16_t v;
        memcpy(&v, m, sizeof v);
        return v == static_cast<int16_t>(atoi(text.c_str())) ? ::testing::AssertionSuccess()
                                                             : mismatch(std::to_string(v));
    }
    case 8: {
        uint64_t v;
        memcpy(&v, m, sizeof v);
        return v == strtoull(text.c_str(), nullptr, 10) ? ::testing::AssertionSuccess()
                                                        : mismatch(std::to_string(v));
    }
    case 6: {
        unsigned char want[4];
        if (inet_pton(AF_INET, text.c_str(), want) != 1)
            return ::testing::AssertionFailure() << "bad test address " << text;
        return memcmp(m + 4, want, 4) == 0 ? ::testing::AssertionSuccess() : mismatch("other");
    }
    case 12: {
        unsigned char want[16];
        if (inet_pton(AF_INET6, text.c_str(), want) != 1)
            return ::testing::AssertionFailure() << "bad test address " << text;
        return memcmp(m + 8, want, 16) == 0 ? ::testing::AssertionSuccess() : mismatch("other");
    }
    default:
        if (row.size < 2)
            return m[0] == atoi(text.c_str()) ? ::testing::AssertionSuccess()
                                              : mismatch(std::to_string(m[0]));
        std::string got(reinterpret_cast<const char *>(m), strnlen((const char *)m, row.size));
        return got == text ? ::testing::AssertionSuccess() : mismatch(got);
    }
}

// set_value changes exactly the bytes of the named element's member, and every member then
// keeps its value while all the others are written.
TEST(CatalogueRoundTrip, SetValueReachesEveryRow) {
    for (const CatalogueTable &t : kCatalogue) {
        BuiltTable built(t);
        std::vector<unsigned char> zero(t.record_size, 0);
        std::vector<std::string> values;
        for (int i = 0; i < built.count; ++i) {
            const field_desc &row = built.rows[i];
            values.push_back(value_for(row, i));
            std::vector<unsigned char> before(built.record, built.record + t.record_size);
            ASSERT_EQ(set_value(built.rows, row.name, values.back().c_str()), 0);
            EXPECT_TRUE(holds(row, values.back())) << t.builder;
            // Nothing outside the member moved.
            const long at = built.offset(i);
            EXPECT_EQ(memcmp(before.data(), built.record, at), 0) << row.name;
            EXPECT_EQ(memcmp(before.data() + at + row.size, built.record + at + row.size,
                             t.record_size - at - row.size),
                      0)
                << row.name;
        }
        for (int i = 0; i < built.count; ++i)
            EXPECT_TRUE(holds(built.rows[i], values[i])) << t.builder << " after all writes";
    }
}

// The same through defaults files: every row's NAME="value" line, in files of at most the
// 500 pairs one load takes, loaded onto a zeroed record.
TEST(CatalogueRoundTrip, LoadDefaultReachesEveryRow) {
    wmtest::TempRoot root;
    for (const CatalogueTable &t : kCatalogue) {
        BuiltTable built(t);
        std::vector<std::string> values;
        std::string file;
        int in_file = 0;
        int part = 0;
        auto load = [&] {
            std::string path = root.path("/tmp/") + t.builder + std::to_string(part++) + ".conf";
            wmtest::write_file(path, file);
            EXPECT_EQ(load_default(built.rows, path.c_str()), 0);
            file.clear();
            in_file = 0;
        };
        for (int i = 0; i < built.count; ++i) {
            // Values differ from the set_value test's so a stale record cannot pass.
            values.push_back(value_for(built.rows[i], i + 7));
            // load_default reads a value through a 500-byte buffer, quotes included: the
            // longest texts (499 characters) go in bare, the others in double quotes.
            const std::string &v = values.back();
            file += std::string(built.rows[i].name) + "=" + (v.size() > 497 ? v : "\"" + v + "\"") +
                    "\n";
            if (++in_file == WEBMGMT_PROP_PAIRS) load();
        }
        if (in_file) load();
        for (int i = 0; i < built.count; ++i)
            EXPECT_TRUE(holds(built.rows[i], values[i])) << t.builder;
    }
}

// The factory defaults, loaded as the configuration store does, give every member they
// name its value, and the router they describe.
TEST(CatalogueRoundTrip, FactoryDefaultsLoad) {
    const struct {
        const char *file;
        const char *builder;
    } files[] = {
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
    for (const auto &f : files) {
        const CatalogueTable *t = nullptr;
        for (const CatalogueTable &c : kCatalogue)
            if (strcmp(c.builder, f.builder) == 0) t = &c;
        ASSERT_NE(t, nullptr);
        BuiltTable built(*t);
        std::string path = wmtest::source_dir() + "/conf/defaults/" + f.file;
        ASSERT_EQ(load_default(built.rows, path.c_str()), 0);
        // Read the file independently and compare each named member.
        std::string text = wmtest::read_file(path);
        size_t start = 0;
        while (start < text.size()) {
            size_t end = text.find('\n', start);
            std::string line = text.substr(start, end - start);
            start = end == std::string::npos ? text.size() : end + 1;
            size_t eq = line.find('=');
            if (line.empty() || line[0] == '#' || eq == std::string::npos) continue;
            std::string name = line.substr(0, eq), value = line.substr(eq + 1);
            if (value.size() >= 2 && value.front() == '"' && value.back() == '"')
                value = value.substr(1, value.size() - 2);
            for (int i = 0; i < built.count; ++i) {
                if (name == built.rows[i].name) {
                    EXPECT_TRUE(holds(built.rows[i], value)) << f.file;
                }
            }
        }
        if (strcmp(f.file, "lan.conf") == 0) {
            const auto *lan = reinterpret_cast<const lan_config *>(built.record);
            EXPECT_EQ(lan->ipaddr.v4, inet_addr("192.168.1.1"));
            EXPECT_EQ(lan->subnet.v4, inet_addr("255.255.255.0"));
            EXPECT_EQ(lan->dev_dhcpserver.dhcp_server_enable, 1);
            EXPECT_EQ(lan->dev_dhcpserver.dhcp_server_start_ipaddr.v4, inet_addr("192.168.1.100"));
            EXPECT_EQ(lan->dev_dhcpserver.dhcp_server_end_ipaddr.v4, inet_addr("192.168.1.200"));
        }
        if (strcmp(f.file, "wifi.conf") == 0) {
            const auto *wifi = reinterpret_cast<const wifi_config *>(built.record);
            for (int r = 0; r < 2; ++r) {
                EXPECT_EQ(wifi->m_radio[r].m_enable, 1);
                EXPECT_EQ(wifi->m_radio[r].m_vap[0].m_wlan_enable, 1);
                EXPECT_GE(strlen(wifi->m_radio[r].m_vap[0].m_psk_keystr), 8u);
                EXPECT_EQ(wifi->m_radio[r].m_vap[1].m_wlan_enable, 0);
            }
            EXPECT_EQ(wifi->m_radio[2].m_enable, 0);
        }
        if (strcmp(f.file, "misc.conf") == 0) {
            const auto *misc = reinterpret_cast<const misc_config *>(built.record);
            EXPECT_STREQ(misc->sys_user.rootname, "admin");
            EXPECT_EQ(misc->sys_ntp.enable, 1);
            EXPECT_STRNE(misc->sys_ntp.ntp_server_addr, "");
        }
    }
}

} // namespace
