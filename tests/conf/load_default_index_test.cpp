// load_default() finds rows through an index: whatever the defaults file and the table hold,
// it assigns exactly what calling set_value() (which scans the whole table) for each line
// in file order assigns.
#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "support/harness.h"
#include "webmgmt.h"

namespace {

std::unique_ptr<field_desc[]> table_of(qos_config *record) {
    std::unique_ptr<field_desc[]> table(new field_desc[WEBMGMT_FIELD_ROWS]);
    clean_points(table.get());
    qos_field(table.get(), record);
    return table;
}

int rows_of(const field_desc *table) {
    int n = 0;
    while (n < WEBMGMT_FIELD_ROWS && table[n].name[0])
        ++n;
    return n;
}

// The value a defaults line gives, as set_value() gets it from load_default(): one leading
// and one trailing double quote removed.
std::string unquoted(const std::string &value) {
    std::string v = value;
    if (!v.empty() && v.front() == '"') v.erase(0, 1);
    if (!v.empty() && v.back() == '"') v.pop_back();
    return v;
}

TEST(LoadDefaultIndex, AssignsWhatSetValueAssignsLineByLine) {
    wmtest::TempRoot root;
    wmtest::SeededRandom rng;
    auto by_index = std::make_unique<qos_config>();
    auto by_scan = std::make_unique<qos_config>();
    auto table = table_of(by_index.get());
    auto reference = table_of(by_scan.get());
    int rows = rows_of(table.get());
    ASSERT_GT(rows, 500);
    const char *values[] = {"7", "-3", "\"12\"", "300000", "10.1.2.3", "\"text value\"", "", "x"};
    for (int round = 0; round < 3; ++round) {
        std::memset(by_index.get(), 0, sizeof *by_index);
        std::memset(by_scan.get(), 0, sizeof *by_scan);
        std::string file;
        std::vector<std::pair<std::string, std::string>> lines;
        for (int i = 0; i < 400; ++i) {
            std::string name = table[rng() % unsigned(rows)].name;
            if (rng() % 10 == 0) name += "x";                  // a name the table lacks
            if (rng() % 50 == 0) name = std::string(120, 'n'); // longer than any row
            std::string value = values[rng() % std::size(values)];
            lines.emplace_back(name, value);
            file += name + "=" + value + "\n";
        }
        // The same member named twice: the later line wins in both.
        lines.emplace_back(table[0].name, "5");
        lines.emplace_back(table[0].name, "6");
        file += std::string(table[0].name) + "=5\n" + table[0].name + "=6\n";
        std::string path = root.path("/tmp/qos.conf");
        wmtest::write_file(path, file);
        EXPECT_EQ(load_default(table.get(), path.c_str()), 0);
        for (auto &[name, value] : lines) {
            std::string text = unquoted(value);
            std::vector<char> buffer(500, '\0'); // set_value may read `size` bytes of it
            std::memcpy(buffer.data(), text.data(), text.size());
            set_value(reference.get(), name.c_str(), buffer.data());
        }
        EXPECT_EQ(std::memcmp(by_index.get(), by_scan.get(), sizeof *by_index), 0);
    }
}

// Rows that share a name are all assigned, in table order; rows without an address and the
// rows after the empty one are not.
TEST(LoadDefaultIndex, SharedNamesAreAllAssignedAndTheTableEndsAtItsEmptyRow) {
    wmtest::TempRoot root;
    int32_t a = 0, b = 0, c = 0, after_end = 0;
    std::unique_ptr<field_desc[]> table(new field_desc[WEBMGMT_FIELD_ROWS]);
    clean_points(table.get());
    auto row = [&](int i, const char *name, void *address) {
        std::snprintf(table[i].name, sizeof table[i].name, "%s", name);
        table[i].address = address;
        table[i].type = 1;
        table[i].size = 4;
    };
    row(0, "same", &a);
    row(1, "other", &b);
    row(2, "same", &c);
    row(3, "same", nullptr);
    // Row 4 is empty: the table ends there.
    row(5, "same", &after_end);
    std::string path = root.path("/tmp/d.conf");
    wmtest::write_file(path, "same=\"41\"\nother=2\n");
    load_default(table.get(), path.c_str());
    EXPECT_EQ(a, 41);
    EXPECT_EQ(b, 2);
    EXPECT_EQ(c, 41);
    EXPECT_EQ(after_end, 0);
}

} // namespace
