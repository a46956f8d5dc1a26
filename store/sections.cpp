// The table of sections and of the lists inside them.
#include "store/internal/section.h"
#include "store/internal/lists.h"

#include <cstddef>

#include "conf/member_list.h"

namespace wm::store {
namespace {

// A catalogue section: its field table is the catalogue's builder's (which fits the
// catalogue's table size).
#define CATALOGUE_SECTION(stem, type, builder)                                                     \
    Section {                                                                                      \
        stem, sizeof(type), [](field_desc *table, int capacity, void *record) {                    \
            if (capacity >= WEBMGMT_FIELD_ROWS) builder(table, static_cast<type *>(record));       \
            return WEBMGMT_FIELD_ROWS;                                                             \
        }                                                                                          \
    }
// A section only the store knows: its field table is made from the record's member list.
#define STORE_SECTION(stem, type)                                                                  \
    Section {                                                                                      \
        stem, sizeof(type), [](field_desc *table, int capacity, void *record) {                    \
            return record_rows(table, capacity, *static_cast<type *>(record));                     \
        }                                                                                          \
    }

constexpr Section kSections[kSectionCount] = {
    CATALOGUE_SECTION("lan", lan_config, lan_field),
    CATALOGUE_SECTION("wan", wan_config, wan_field),
    CATALOGUE_SECTION("misc", misc_config, misc_field),
    CATALOGUE_SECTION("misc_ext", misc_ext_config, misc_ext_field),
    CATALOGUE_SECTION("productinfo", productinfo_config, productinfo_field),
    CATALOGUE_SECTION("wifi", wifi_config, WiFi_field),
    CATALOGUE_SECTION("defap", defap_config, defap_field),
    CATALOGUE_SECTION("qos", qos_config, qos_field),
    CATALOGUE_SECTION("fwurl", fwurl_config, fwurl_field),
    CATALOGUE_SECTION("fwmac", fwmac_config, fwmac_field),
    CATALOGUE_SECTION("timegroup", timegroup_config, timegroup_field),
    CATALOGUE_SECTION("ipport", ipport_config, ipport_field),
    CATALOGUE_SECTION("vsipport", vsipport_config, vsipport_field),
    CATALOGUE_SECTION("fwipport", fwipport_config, fwipport_field),
    STORE_SECTION("clients", clients_config),
    STORE_SECTION("clients_groups", clients_groups_config),
    STORE_SECTION("manage_ap", manage_ap_list_config),
    STORE_SECTION("ap_templates", ap_template_list_config),
    STORE_SECTION("ap_runtime", ap_runtime_config),
    STORE_SECTION("ap_users", ap_user_config),
    STORE_SECTION("update", update_config),
};

constexpr const ListDesc *kAllLists[] = {
    &lists::kPortFwList,     &lists::kIpFilterList,   &lists::kUrlFilterList,
    &lists::kMacFilterList,  &lists::kQosList,        &lists::kIpGroupList,
    &lists::kTimeGroupList,  &lists::kDhcpStaticList, &lists::kAcDhcpStaticList,
    &lists::kAclLists[0],    &lists::kAclLists[1],    &lists::kAclLists[2],
    &lists::kAclExtList,     &lists::kClientsList,    &lists::kClientGroupsList,
    &lists::kApTemplateList,
};

} // namespace

const Section &section(SectionId id) {
    return kSections[id];
}

const ListDesc *const *all_lists(size_t *count) {
    *count = sizeof kAllLists / sizeof kAllLists[0];
    return kAllLists;
}

} // namespace wm::store
