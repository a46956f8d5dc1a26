// The layout of every field table: one line per row with the row's name, its offset in the
// record, type code and size. Both targets must print the same text.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "webmgmt.h"

namespace wmtest {

// One builder with the record type it fills and its factory defaults file; `build` runs it
// on a zeroed record.
struct CatalogueTable {
    const char *builder;
    size_t record_size;
    void (*build)(field_desc *table, void *record);
    const char *defaults;
    // The rows the catalogue lists. The LAN table's listed rows are 533 although its heading
    // says 535: the listed rows are what the builder writes.
    int listed_rows;
};

template <class Record, void (*Builder)(field_desc *, Record *)>
void build_as(field_desc *table, void *record) {
    Builder(table, static_cast<Record *>(record));
}

inline const CatalogueTable kCatalogue[] = {
    {"WiFi_field", sizeof(wifi_config), build_as<wifi_config, WiFi_field>, "wifi.conf", 1078},
    {"defap_field", sizeof(defap_config), build_as<defap_config, defap_field>, "defap.conf", 297},
    {"productinfo_field", sizeof(productinfo_config),
     build_as<productinfo_config, productinfo_field>, "productinfo.conf", 676},
    {"misc_field", sizeof(misc_config), build_as<misc_config, misc_field>, "misc.conf", 80},
    {"misc_ext_field", sizeof(misc_ext_config), build_as<misc_ext_config, misc_ext_field>,
     "misc_ext.conf", 773},
    {"lan_field", sizeof(lan_config), build_as<lan_config, lan_field>, "lan.conf", 533},
    {"wan_field", sizeof(wan_config), build_as<wan_config, wan_field>, "wan.conf", 161},
    {"qos_field", sizeof(qos_config), build_as<qos_config, qos_field>, "qos.conf", 840},
    {"fwurl_field", sizeof(fwurl_config), build_as<fwurl_config, fwurl_field>, "fwurl.conf", 584},
    {"fwmac_field", sizeof(fwmac_config), build_as<fwmac_config, fwmac_field>, "fwmac.conf", 584},
    {"timegroup_field", sizeof(timegroup_config), build_as<timegroup_config, timegroup_field>,
     "timegroup.conf", 231},
    {"ipport_field", sizeof(ipport_config), build_as<ipport_config, ipport_field>, "ipport.conf",
     17},
    {"vsipport_field", sizeof(vsipport_config), build_as<vsipport_config, vsipport_field>,
     "vsipport.conf", 424},
    {"fwipport_field", sizeof(fwipport_config), build_as<fwipport_config, fwipport_field>,
     "fwipport.conf", 775},
};

// A zeroed table of the full row capacity and a zeroed record, freed together.
struct BuiltTable {
    field_desc *rows = nullptr;
    unsigned char *record = nullptr;
    int count = 0;
    explicit BuiltTable(const CatalogueTable &t) {
        rows = static_cast<field_desc *>(calloc(WEBMGMT_FIELD_ROWS, sizeof(field_desc)));
        record = static_cast<unsigned char *>(calloc(1, t.record_size));
        t.build(rows, record);
        while (count < WEBMGMT_FIELD_ROWS && rows[count].name[0] != '\0')
            ++count;
    }
    ~BuiltTable() {
        free(rows);
        free(record);
    }
    BuiltTable(const BuiltTable &) = delete;
    BuiltTable &operator=(const BuiltTable &) = delete;
    long offset(int i) const {
        return static_cast<long>(static_cast<unsigned char *>(rows[i].address) - record);
    }
};

inline const CatalogueTable &table_of(const char *builder) {
    for (const CatalogueTable &t : kCatalogue)
        if (strcmp(t.builder, builder) == 0) return t;
    abort();
}

inline const field_desc *row_named(const BuiltTable &built, const std::string &name) {
    for (int i = 0; i < built.count; ++i)
        if (name == built.rows[i].name) return &built.rows[i];
    return nullptr;
}

inline std::string catalogue_layout() {
    std::string text;
    char line[256];
    for (const CatalogueTable &t : kCatalogue) {
        BuiltTable built(t);
        snprintf(line, sizeof line, "%s record %zu rows %d\n", t.builder, t.record_size,
                 built.count);
        text += line;
        for (int i = 0; i < built.count; ++i) {
            snprintf(line, sizeof line, "%s %ld %d %u\n", built.rows[i].name, built.offset(i),
                     built.rows[i].type, built.rows[i].size);
            text += line;
        }
    }
    return text;
}

} // namespace wmtest
