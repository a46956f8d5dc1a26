// wmconfig: look at and change the configuration store from a shell.
//
//   wmconfig sections                       the section names
//   wmconfig show SECTION [NAME...]         members by dotted name: NAME=value
//   wmconfig get SECTION NAME               one member's value alone
//   wmconfig set [--flash] SECTION NAME=VALUE...
//                                           set members (as a defaults file would) and save
//                                           to memory, or to memory and flash
//   wmconfig reset SECTION|all [--flash]    back to the factory defaults (read anew when next
//                                           needed; with --flash written to both copies now)
//
// Exit status: 0 done, 1 refused (unknown section or member, store error), 2 usage.
#include <arpa/inet.h>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "config_data_api.h"

namespace {

int usage() {
    std::fprintf(stderr, "usage: wmconfig sections\n"
                         "       wmconfig show SECTION [NAME...]\n"
                         "       wmconfig get SECTION NAME\n"
                         "       wmconfig set [--flash] SECTION NAME=VALUE...\n"
                         "       wmconfig reset SECTION|all [--flash]\n");
    return 2;
}

// The field table of the section's record in this process; every section has one (the
// store's own large lists have more rows than the catalogue's tables hold).
struct Table {
    field_desc *rows = nullptr;
    int count = 0;
    void *record = nullptr;
    ~Table() { std::free(rows); }
    const field_desc *find(const char *name) const {
        for (int r = 0; r < count && rows[r].name[0]; ++r)
            if (std::strcmp(rows[r].name, name) == 0) return &rows[r];
        return nullptr;
    }
};

bool open_table(const char *section, Table &t) {
    uint32_t size = 0;
    t.record = SC_Get_Config_By_Name(section, &size);
    if (!t.record) {
        std::fprintf(stderr, "wmconfig: no section %s\n", section);
        return false;
    }
    int need = SC_Config_Field_Table(section, t.record, nullptr, 0);
    if (need < 0) return false;
    t.count = need + 1;
    t.rows = static_cast<field_desc *>(std::calloc(size_t(t.count), sizeof(field_desc)));
    if (!t.rows) return false;
    SC_Config_Field_Table(section, t.record, t.rows, t.count);
    return true;
}

void print_text(const char *p, size_t size) {
    for (size_t i = 0; i < size && p[i]; ++i) {
        auto c = static_cast<unsigned char>(p[i]);
        if (c < 0x20 || c == 0x7f || c == '\\')
            std::printf("\\x%02x", c);
        else
            std::putchar(c);
    }
}

template <typename T> T member(const void *address) {
    T v;
    std::memcpy(&v, address, sizeof v);
    return v;
}

// The value as the field table's type code reads it.
void print_value(const field_desc &row) {
    const void *a = row.address;
    switch (row.type) {
    case 1:
    case 3:
    case 7:
    case 9:
        std::printf("%d", member<int32_t>(a));
        break;
    case 2:
    case 11:
        std::printf("%d", member<int16_t>(a));
        break;
    case 8:
        std::printf("%lld", static_cast<long long>(member<int64_t>(a)));
        break;
    case 6: {
        in_addr in{member<uint32_t>(static_cast<const char *>(a) + 4)};
        std::printf("%s", inet_ntoa(in));
        break;
    }
    case 12: {
        char text[INET6_ADDRSTRLEN] = "";
        inet_ntop(AF_INET6, static_cast<const char *>(a) + 8, text, sizeof text);
        std::printf("%s", text);
        break;
    }
    case 4:
    case 5:
        if (row.size < 2)
            std::printf("%d", *static_cast<const uint8_t *>(a));
        else
            print_text(static_cast<const char *>(a), row.size);
        break;
    default:
        break;
    }
}

bool wanted(const char *name, int count, char **names) {
    if (count == 0) return true;
    for (int i = 0; i < count; ++i)
        if (std::strcmp(names[i], name) == 0) return true;
    return false;
}

int show(const char *section, int count, char **names) {
    Table t;
    if (!open_table(section, t)) return 1;
    for (int r = 0; r < t.count && t.rows[r].name[0]; ++r) {
        if (!wanted(t.rows[r].name, count, names)) continue;
        std::printf("%s=", t.rows[r].name);
        print_value(t.rows[r]);
        std::putchar('\n');
    }
    return 0;
}

int get(const char *section, const char *name) {
    Table t;
    if (!open_table(section, t)) return 1;
    if (const field_desc *row = t.find(name)) {
        print_value(*row);
        std::putchar('\n');
        return 0;
    }
    std::fprintf(stderr, "wmconfig: %s has no member %s\n", section, name);
    return 1;
}

int set(bool flash, const char *section, int count, char **assignments) {
    Table t;
    if (!open_table(section, t)) return 1;
    for (int i = 0; i < count; ++i) {
        char *eq = std::strchr(assignments[i], '=');
        if (!eq) return usage();
        *eq = '\0';
        const field_desc *row = t.find(assignments[i]);
        if (!row) {
            std::fprintf(stderr, "wmconfig: %s has no member %s\n", section, assignments[i]);
            return 1;
        }
        // From the row itself: a large table's later rows lie beyond set_value's reach.
        set_value(const_cast<field_desc *>(row), assignments[i], eq + 1);
    }
    int rc = SC_Save_Config_By_Name(section, t.record, flash);
    if (rc != CONFIG_OK) {
        std::fprintf(stderr, "wmconfig: saving %s failed (%d)\n", section, rc);
        return 1;
    }
    return 0;
}

// Writes the section's factory defaults (what the getter now builds) to both copies.
int store_defaults(const char *section) {
    uint32_t size = 0;
    void *record = SC_Get_Config_By_Name(section, &size);
    return record ? SC_Save_Config_By_Name(section, record, 1) : CONFIG_ERR_IO;
}

int reset(const char *section, bool flash) {
    bool all = std::strcmp(section, "all") == 0;
    int rc = SC_Reset_Config(section);
    if (rc == CONFIG_OK && flash && !all) rc = store_defaults(section);
    for (int i = 0; rc == CONFIG_OK && flash && all && SC_Config_Section_Name(i); ++i)
        rc = store_defaults(SC_Config_Section_Name(i));
    if (rc != CONFIG_OK) std::fprintf(stderr, "wmconfig: resetting %s failed (%d)\n", section, rc);
    return rc == CONFIG_OK ? 0 : 1;
}

} // namespace

int main(int argc, char **argv) {
    if (argc < 2) return usage();
    const char *verb = argv[1];
    if (std::strcmp(verb, "sections") == 0) {
        for (int i = 0; SC_Config_Section_Name(i); ++i)
            std::printf("%s\n", SC_Config_Section_Name(i));
        return 0;
    }
    if (std::strcmp(verb, "show") == 0 && argc >= 3) return show(argv[2], argc - 3, argv + 3);
    if (std::strcmp(verb, "get") == 0 && argc == 4) return get(argv[2], argv[3]);
    if (std::strcmp(verb, "reset") == 0 && argc == 3) return reset(argv[2], false);
    if (std::strcmp(verb, "reset") == 0 && argc == 4 && std::strcmp(argv[3], "--flash") == 0)
        return reset(argv[2], true);
    if (std::strcmp(verb, "set") == 0) {
        bool flash = argc >= 3 && std::strcmp(argv[2], "--flash") == 0;
        int first = flash ? 3 : 2;
        if (argc < first + 2) return usage();
        return set(flash, argv[first], argc - first - 1, argv + first + 1);
    }
    return usage();
}
