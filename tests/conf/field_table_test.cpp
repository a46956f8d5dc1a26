// Field tables: set_value by dotted name for every type code, defaults files, builders.
#include <arpa/inet.h>
#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/harness.h"
#include "webmgmt.h"

namespace {

// A small record with one member for each type code, and an array like the catalogue's.
struct TestRadio {
    int16_t m_channel;
    char m_ssid[32];
};
struct TestRecord {
    int32_t i32;    // 1
    int16_t i16;    // 2
    int32_t l3;     // 3
    uint8_t byte4;  // 4
    char text4[32]; // 4
    uint8_t byte5;  // 5
    char text5[8];  // 5
    uint8_t v4[16]; // 6
    int32_t l7;     // 7
    int64_t i64;    // 8
    int32_t i9;     // 9
    uint8_t mac[6]; // 10
    int16_t s11;    // 11
    uint8_t v6[28]; // 12
    TestRadio m_radio[2];
};

// A table over `record` as a builder writes it, zeroed first.
struct Table {
    std::vector<field_desc> rows = std::vector<field_desc>(WEBMGMT_FIELD_ROWS);
    size_t n = 0;
    explicit Table(TestRecord &r) {
        clean_points(rows.data());
#define ROW(member, code) add(#member, &r.member, code, sizeof r.member)
        ROW(i32, 1), ROW(i16, 2), ROW(l3, 3), ROW(byte4, 4), ROW(text4, 4), ROW(byte5, 5);
        ROW(text5, 5), ROW(v4, 6), ROW(l7, 7), ROW(i64, 8), ROW(i9, 9), ROW(mac, 10);
        ROW(s11, 11), ROW(v6, 12), ROW(m_radio[0].m_channel, 2), ROW(m_radio[0].m_ssid, 4);
        ROW(m_radio[1].m_channel, 2), ROW(m_radio[1].m_ssid, 4);
#undef ROW
    }
    void add(const char *name, void *address, int16_t type, size_t size) {
        snprintf(rows[n].name, sizeof rows[n].name, "%s", name);
        rows[n].address = address;
        rows[n].type = type;
        rows[n++].size = uint16_t(size);
    }
};

std::vector<unsigned char> bytes_of(const void *p, size_t n) {
    auto *b = static_cast<const unsigned char *>(p);
    return {b, b + n};
}
template <typename T> std::vector<unsigned char> bytes_of_value(T v) {
    return bytes_of(&v, sizeof v);
}

struct SetCase {
    const char *name, *text;
    size_t offset, size;                 // the bytes expected to change
    std::vector<unsigned char> expected; // their new content
};

std::vector<unsigned char> text_member(const std::string &text, size_t size) {
    std::vector<unsigned char> v(size, 0);
    memcpy(v.data(), text.data(), std::min(text.size(), size));
    return v;
}

} // namespace

// Each case changes exactly its member's bytes and leaves the rest of the record alone.
TEST(FieldTable, SetValueEachTypeCode) {
    unsigned char v6[16];
    inet_pton(AF_INET6, "fe80::1:2", v6);
    const std::vector<unsigned char> none;
    const SetCase cases[] = {
        {"i32", "-123456", offsetof(TestRecord, i32), 4, bytes_of_value(int32_t(-123456))},
        {"i32", "99999999999", offsetof(TestRecord, i32), 4, bytes_of_value(INT32_MAX)},
        {"i16", "70000", offsetof(TestRecord, i16), 2, bytes_of_value(int16_t(70000 - 65536))},
        {"l3", "-7", offsetof(TestRecord, l3), 4, bytes_of_value(int32_t(-7))},
        {"byte4", "7", offsetof(TestRecord, byte4), 1, {7}},
        {"byte5", "258", offsetof(TestRecord, byte5), 1, {2}},
        {"text4", "abc", offsetof(TestRecord, text4), 32, text_member("abc", 32)},
        {"text5", "exactly8", offsetof(TestRecord, text5), 8, text_member("exactly8", 8)},
        {"text5", "much too long", offsetof(TestRecord, text5), 8, text_member("much too", 8)},
        {"v4", "192.168.1.1", offsetof(TestRecord, v4) + 4, 4, {192, 168, 1, 1}},
        {"v4", "not an address", offsetof(TestRecord, v4) + 4, 4, {255, 255, 255, 255}},
        {"l7", "2147483647", offsetof(TestRecord, l7), 4, bytes_of_value(INT32_MAX)},
        {"i64", "-9000000000", offsetof(TestRecord, i64), 8, bytes_of_value(-9000000000LL)},
        {"i9", "42", offsetof(TestRecord, i9), 4, bytes_of_value(int32_t(42))},
        {"mac", "00:11:22:33:44:55", 0, 0, none},
        {"s11", "5", 0, 0, none},
        {"v6", "fe80::1:2", offsetof(TestRecord, v6) + 8, 16, bytes_of(v6, 16)},
        {"v6", "fe80::zz", 0, 0, none},
        {"v6", "10.0.0.1", 0, 0, none},
        {"m_radio[1].m_channel", "6", offsetof(TestRecord, m_radio[1].m_channel), 2,
         bytes_of_value(int16_t(6))},
        {"m_radio[0].m_ssid", "net", offsetof(TestRecord, m_radio[0].m_ssid), 32,
         text_member("net", 32)},
        {"m_radio[2].m_ssid", "absent", 0, 0, none},
        {"I32", "1", 0, 0, none},
    };
    for (const auto &c : cases) {
        TestRecord record;
        memset(&record, 0xA5, sizeof record);
        Table table(record);
        std::vector<unsigned char> want = bytes_of(&record, sizeof record);
        std::copy(c.expected.begin(), c.expected.end(), want.begin() + long(c.offset));
        // The text lies in a block of its own length, so a copy past it would be caught.
        std::vector<char> text(c.text, c.text + strlen(c.text) + 1);
        EXPECT_EQ(set_value(table.rows.data(), c.name, text.data()), 0);
        EXPECT_EQ(bytes_of(&record, sizeof record), want) << c.name << " = " << c.text;
    }
}

TEST(FieldTable, DuplicateRowsAndTableEnd) {
    int32_t first = 0, second = 0, beyond = 0;
    std::vector<field_desc> rows(WEBMGMT_FIELD_ROWS + 1);
    auto fill = [](field_desc &row, const char *name, int32_t *target) {
        snprintf(row.name, sizeof row.name, "%s", name);
        row.address = target;
        row.type = 1;
        row.size = 4;
    };
    fill(rows[0], "x", &first);
    fill(rows[1], "x", &second);
    EXPECT_EQ(set_value(rows.data(), "x", "5"), 0);
    EXPECT_EQ(first, 5);
    EXPECT_EQ(second, 5);
    // Rows after an empty name are not part of the table.
    fill(rows[3], "y", &beyond);
    set_value(rows.data(), "y", "9");
    EXPECT_EQ(beyond, 0);
    // A table with no empty row is read up to its 2,000 rows.
    for (int i = 0; i < WEBMGMT_FIELD_ROWS; ++i)
        fill(rows[size_t(i)], "z", &first);
    fill(rows[WEBMGMT_FIELD_ROWS], "z", &beyond);
    set_value(rows.data(), "z", "3");
    EXPECT_EQ(first, 3);
    EXPECT_EQ(beyond, 0);
    std::string long_name(WEBMGMT_FIELD_NAME_SIZE + 20, 'z');
    EXPECT_EQ(set_value(rows.data(), long_name.c_str(), "4"), 0);
    EXPECT_EQ(first, 3);
}

// What the catalogue round trips do not reach: comments, unknown names, a value longer
// than the loader's buffer, an empty value, a missing file.
TEST(FieldTable, LoadDefaultFile) {
    wmtest::TempRoot root;
    std::string path = root.path("/etc/defaults");
    wmtest::write_file(path, "# factory settings\nunknown.member=1\ni32=42\ntext4=\"" +
                                 std::string(600, 'q') + "\"\nbyte4=\"\"\n");
    TestRecord record{};
    record.byte4 = 9;
    Table table(record);
    EXPECT_EQ(load_default(table.rows.data(), path.c_str()), 0);
    EXPECT_EQ(record.i32, 42);
    // Values are cut to the 499 characters of the loader's buffer, then to the member.
    EXPECT_EQ(std::string(record.text4, 32), std::string(32, 'q'));
    EXPECT_EQ(record.byte4, 0);
    EXPECT_EQ(load_default(table.rows.data(), root.path("/etc/none").c_str()), 0);
}

TEST(FieldTable, ShowVarFieldAndCleanPoints) {
    unsigned char product[52] = {};
    std::vector<field_desc> rows(WEBMGMT_FIELD_ROWS);
    memset(rows.data(), 0xFF, rows.size() * sizeof rows[0]);
    clean_points(rows.data());
    for (const auto &row : rows)
        ASSERT_EQ(bytes_of(&row, sizeof row), std::vector<unsigned char>(sizeof row, 0));
    EXPECT_EQ(ShowVar_field(rows.data(), product), 3);
    EXPECT_STREQ(rows[0].name, "product_internal_name");
    EXPECT_EQ(rows[0].size, 50);
    EXPECT_STREQ(rows[2].name, "eth_ra_o");
    EXPECT_EQ(rows[3].name[0], '\0');
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(rows[size_t(i)].type, 5);
    set_value(rows.data(), "product_internal_name", "WR-1200");
    set_value(rows.data(), "eth_ra_m", "1");
    set_value(rows.data(), "eth_ra_o", "2");
    EXPECT_STREQ(reinterpret_cast<char *>(product), "WR-1200");
    EXPECT_EQ(product[50], 1);
    EXPECT_EQ(product[51], 2);
}
