// The layout of every field table: one line per row with the row's name, its offset in the
// record, type code and size. Both targets must print the same text.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "conf/member_list.h"
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

// The members of one record declared in the one-list style: "<type> size <bytes>", then
// "<member> <offset> <size>" per member of its list, padding included (nested blocks are
// listed under their own type). A pointer member prints "pointer" and its record no size:
// those differ between the 32-bit device and 64-bit hosts by design.
template <class T> void member_layout(std::string &text) {
    T *o = static_cast<T *>(calloc(1, sizeof(T)));
    std::string body;
    bool pointers = false;
    char line[256];
    wm::MemberList<T>::visit(*o, [&](const char *name, int16_t code, auto &m) {
        using M = std::remove_reference_t<decltype(m)>;
        long offset =
            long(reinterpret_cast<unsigned char *>(&m) - reinterpret_cast<unsigned char *>(o));
        if constexpr (std::is_pointer_v<M>) {
            pointers = true;
            snprintf(line, sizeof line, "  %s pointer\n", name);
        } else {
            snprintf(line, sizeof line, "  %s %ld %zu code %d\n", name, offset, sizeof(M), code);
        }
        body += line;
    });
    if (pointers)
        snprintf(line, sizeof line, "%s size pointer-dependent\n", wm::MemberList<T>::type_name);
    else
        snprintf(line, sizeof line, "%s size %zu\n", wm::MemberList<T>::type_name, sizeof(T));
    text += line + body;
    free(o);
}

template <class... T> std::string member_layouts() {
    std::string text;
    (member_layout<T>(text), ...);
    return text;
}

// The records outside the catalogue: device management, the probes' records, the
// static-lease form's working element.
inline std::string device_layout() {
    return member_layouts<
        ap_radio, ap_config_body, ap_device_record, manage_ap_list_config, ap_template_entry,
        ap_template_list_config, ap_scan_slot, ap_runtime_entry, ap_runtime_config, sta_entry,
        sta_table, ap_user_config, client_account, sta_mark, clients_config, client_group,
        clients_groups_config, dhcp_check_msg, update_config, dhcp_static_item, port_status,
        mem_sample, cpu_sample, cpu_previous, sys_status, arp_host, arp_host_table, lease_entry,
        port_map, ipv6_addr_entry, ipv6_route_entry>();
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
    return text + device_layout();
}

} // namespace wmtest
