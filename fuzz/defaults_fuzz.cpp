// Defaults files from arbitrary bytes, loaded into a table over a record: every member
// assignment must stay inside its member.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "fuzz_files.h"
#include "webmgmt.h"

namespace {

struct FuzzRecord {
    int32_t i32;
    int16_t i16;
    uint8_t byte;
    char text[8];
    uint8_t v4[16];
    int64_t i64;
    uint8_t mac[6];
    uint8_t v6[28];
    char names[3][2][5];
};

struct RowSpec {
    const char *name;
    size_t offset;
    int16_t type;
    uint16_t size;
};
const RowSpec kRows[] = {
    {"i32", offsetof(FuzzRecord, i32), 1, 4},    {"i16", offsetof(FuzzRecord, i16), 2, 2},
    {"l3", offsetof(FuzzRecord, i32), 3, 4},     {"byte", offsetof(FuzzRecord, byte), 4, 1},
    {"text", offsetof(FuzzRecord, text), 4, 8},  {"byte5", offsetof(FuzzRecord, byte), 5, 1},
    {"text5", offsetof(FuzzRecord, text), 5, 8}, {"v4", offsetof(FuzzRecord, v4), 6, 16},
    {"l7", offsetof(FuzzRecord, i32), 7, 4},     {"i64", offsetof(FuzzRecord, i64), 8, 8},
    {"i9", offsetof(FuzzRecord, i32), 9, 4},     {"mac", offsetof(FuzzRecord, mac), 10, 6},
    {"s11", offsetof(FuzzRecord, i16), 11, 2},   {"v6", offsetof(FuzzRecord, v6), 12, 28},
};

void build_table(field_desc *table, FuzzRecord *record) {
    clean_points(table);
    auto *base = reinterpret_cast<char *>(record);
    int n = 0;
    for (const auto &r : kRows) {
        std::snprintf(table[n].name, sizeof table[n].name, "%s", r.name);
        table[n].address = base + r.offset;
        table[n].type = r.type;
        table[n].size = r.size;
        ++n;
    }
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 2; ++j) {
            std::snprintf(table[n].name, sizeof table[n].name, "m_radio[%d].m_vap[%d].m_ssid", i,
                          j);
            table[n].address = record->names[i][j];
            table[n].type = 5;
            table[n].size = sizeof record->names[i][j];
            ++n;
        }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static const std::string path = fuzzsupport::scratch_path("defaults");
    fuzzsupport::write_bytes(path, data, size);
    // Heap blocks of exact size, so that a write past the record or the table is caught.
    auto *record = static_cast<FuzzRecord *>(std::malloc(sizeof(FuzzRecord)));
    static auto *table =
        static_cast<field_desc *>(std::malloc(sizeof(field_desc) * WEBMGMT_FIELD_ROWS));
    std::memset(record, 0, sizeof *record);
    build_table(table, record);
    load_default(table, path.c_str());
    ShowVar_field(table, record->names);
    std::free(record);
    return 0;
}
