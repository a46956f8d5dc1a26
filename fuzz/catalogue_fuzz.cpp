// Defaults files from arbitrary bytes loaded onto the real configuration records: the
// first byte chooses the record, the rest is the file. Records and tables are heap blocks
// of exact size, so any write outside a member's record is caught.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "fuzz_files.h"
#include "webmgmt.h"

namespace {

struct Catalogue {
    size_t size;
    void (*build)(field_desc *, void *);
};

template <class Record, void (*Builder)(field_desc *, Record *)>
void build_as(field_desc *table, void *record) {
    Builder(table, static_cast<Record *>(record));
}

const Catalogue kRecords[] = {
    {sizeof(wifi_config), build_as<wifi_config, WiFi_field>},
    {sizeof(defap_config), build_as<defap_config, defap_field>},
    {sizeof(productinfo_config), build_as<productinfo_config, productinfo_field>},
    {sizeof(misc_config), build_as<misc_config, misc_field>},
    {sizeof(misc_ext_config), build_as<misc_ext_config, misc_ext_field>},
    {sizeof(lan_config), build_as<lan_config, lan_field>},
    {sizeof(wan_config), build_as<wan_config, wan_field>},
    {sizeof(qos_config), build_as<qos_config, qos_field>},
    {sizeof(fwurl_config), build_as<fwurl_config, fwurl_field>},
    {sizeof(fwmac_config), build_as<fwmac_config, fwmac_field>},
    {sizeof(timegroup_config), build_as<timegroup_config, timegroup_field>},
    {sizeof(ipport_config), build_as<ipport_config, ipport_field>},
    {sizeof(vsipport_config), build_as<vsipport_config, vsipport_field>},
    {sizeof(fwipport_config), build_as<fwipport_config, fwipport_field>},
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (size < 1 || size > 65536) return 0;
    static const std::string path = fuzzsupport::scratch_path("catalogue");
    static auto *table =
        static_cast<field_desc *>(std::malloc(sizeof(field_desc) * WEBMGMT_FIELD_ROWS));
    const Catalogue &c = kRecords[data[0] % (sizeof kRecords / sizeof kRecords[0])];
    fuzzsupport::write_bytes(path, data + 1, size - 1);
    void *record = std::calloc(1, c.size);
    clean_points(table);
    c.build(table, record);
    load_default(table, path.c_str());
    std::free(record);
    return 0;
}
