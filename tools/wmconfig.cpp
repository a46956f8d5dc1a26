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

using Builder = void (*)(field_desc *, void *);

struct Known {
    const char *section;
    Builder build;
};

template <typename T, void (*F)(field_desc *, T *)> void thunk(field_desc *t, void *r) {
    F(t, static_cast<T *>(r));
}

// The sections that have a field table (the store's own records have none).
constexpr Known kKnown[] = {
    {"lan", thunk<lan_config, lan_field>},
    {"wan", thunk<wan_config, wan_field>},
    {"misc", thunk<misc_config, misc_field>},
    {"misc_ext", thunk<misc_ext_config, misc_ext_field>},
    {"productinfo", thunk<productinfo_config, productinfo_field>},
    {"wifi", thunk<wifi_config, WiFi_field>},
    {"defap", thunk<defap_config, defap_field>},
    {"qos", thunk<qos_config, qos_field>},
    {"fwurl", thunk<fwurl_config, fwurl_field>},
    {"fwmac", thunk<fwmac_config, fwmac_field>},
    {"timegroup", thunk<timegroup_config, timegroup_field>},
    {"ipport", thunk<ipport_config, ipport_field>},
    {"vsipport", thunk<vsipport_config, vsipport_field>},
    {"fwipport", thunk<fwipport_config, fwipport_field>},
};

int usage() {
    std::fprintf(stderr, "usage: wmconfig sections\n"
                         "       wmconfig show SECTION [NAME...]\n"
                         "       wmconfig get SECTION NAME\n"
                         "       wmconfig set [--flash] SECTION NAME=VALUE...\n"
                         "       wmconfig reset SECTION|all [--flash]\n");
    return 2;
}

// The field table of the section's record in this process, or null.
struct Table {
    field_desc *rows = nullptr;
    void *record = nullptr;
    ~Table() { std::free(rows); }
};

bool open_table(const char *section, Table &t) {
    uint32_t size = 0;
    t.record = SC_Get_Config_By_Name(section, &size);
    if (!t.record) {
        std::fprintf(stderr, "wmconfig: no section %s\n", section);
        return false;
    }
    for (const Known &k : kKnown)
        if (std::strcmp(k.section, section) == 0) {
            t.rows =
                static_cast<field_desc *>(std::calloc(WEBMGMT_FIELD_ROWS + 1, sizeof(field_desc)));
            if (!t.rows) return false;
            clean_points(t.rows);
            k.build(t.rows, t.record);
            return true;
        }
    std::fprintf(stderr, "wmconfig: section %s has no field table\n", section);
    return false;
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
    for (int r = 0; r < WEBMGMT_FIELD_ROWS && t.rows[r].name[0]; ++r) {
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
    for (int r = 0; r < WEBMGMT_FIELD_ROWS && t.rows[r].name[0]; ++r)
        if (std::strcmp(t.rows[r].name, name) == 0) {
            print_value(t.rows[r]);
            std::putchar('\n');
            return 0;
        }
    std::fprintf(stderr, "wmconfig: %s has no member %s\n", section, name);
    return 1;
}

bool has_row(const Table &t, const char *name) {
    for (int r = 0; r < WEBMGMT_FIELD_ROWS && t.rows[r].name[0]; ++r)
        if (std::strcmp(t.rows[r].name, name) == 0) return true;
    return false;
}

int set(bool flash, const char *section, int count, char **assignments) {
    Table t;
    if (!open_table(section, t)) return 1;
    for (int i = 0; i < count; ++i) {
        char *eq = std::strchr(assignments[i], '=');
        if (!eq) return usage();
        *eq = '\0';
        if (!has_row(t, assignments[i])) {
            std::fprintf(stderr, "wmconfig: %s has no member %s\n", section, assignments[i]);
            return 1;
        }
        set_value(t.rows, assignments[i], eq + 1);
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
