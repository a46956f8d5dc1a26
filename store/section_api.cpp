// The section getters and savers, and the by-name calls of the maintenance tool.
#include <cstring>

#include "store/internal/section.h"

using wm::store::SectionId;

namespace {

template <typename T> T *get_as(SectionId id) {
    return static_cast<T *>(wm::store::get(id));
}

} // namespace

// One getter and its two savers per section.
#define SECTION_CALLS(Get, Save, SaveFlash, type, id)                                              \
    type *Get(void) {                                                                              \
        return get_as<type>(wm::store::id);                                                        \
    }                                                                                              \
    int Save(type *record) {                                                                       \
        return wm::store::save(wm::store::id, record, false);                                      \
    }                                                                                              \
    int SaveFlash(type *record) {                                                                  \
        return wm::store::save(wm::store::id, record, true);                                       \
    }
#define SYSTEM_SECTION_CALLS(Name, type, id)                                                       \
    SECTION_CALLS(SC_Get_##Name##_System_Config, SC_Save_System_##Name##_Config,                   \
                  SC_Save_System_##Name##_Config2Flash, type, id)

extern "C" {

SECTION_CALLS(SC_Get_SC_WiFi_Config, SC_Save_SC_WiFi_Config, SC_Save_SC_WiFi_Config2Flash,
              wifi_config, kWiFi)
SYSTEM_SECTION_CALLS(Lan, lan_config, kLan)
SYSTEM_SECTION_CALLS(Wan, wan_config, kWan)
SYSTEM_SECTION_CALLS(Misc, misc_config, kMisc)
SYSTEM_SECTION_CALLS(Misc_Ext, misc_ext_config, kMiscExt)
SYSTEM_SECTION_CALLS(ProductInfo, productinfo_config, kProductInfo)
SYSTEM_SECTION_CALLS(DefApTemplate, defap_config, kDefAp)
SYSTEM_SECTION_CALLS(Qos, qos_config, kQos)
SYSTEM_SECTION_CALLS(FwUrl, fwurl_config, kFwUrl)
SYSTEM_SECTION_CALLS(FwMac, fwmac_config, kFwMac)
SYSTEM_SECTION_CALLS(TimeGroup, timegroup_config, kTimeGroup)
SYSTEM_SECTION_CALLS(IpGroup, ipport_config, kIpGroup)
SYSTEM_SECTION_CALLS(VsIpport, vsipport_config, kVsIpport)
SYSTEM_SECTION_CALLS(FwIpport, fwipport_config, kFwIpport)
SYSTEM_SECTION_CALLS(Clients, clients_config, kClients)
SYSTEM_SECTION_CALLS(Clients_Groups, clients_groups_config, kClientGroups)
SYSTEM_SECTION_CALLS(ManageApList, manage_ap_list_config, kManageAp)
SYSTEM_SECTION_CALLS(ApTemplateList, ap_template_list_config, kApTemplates)
SYSTEM_SECTION_CALLS(ApRuntime, ap_runtime_config, kApRuntime)
SYSTEM_SECTION_CALLS(ApUser, ap_user_config, kApUser)
SYSTEM_SECTION_CALLS(Update, update_config, kUpdate)

const char *SC_Config_Section_Name(int index) {
    if (index < 0 || index >= wm::store::kSectionCount) return nullptr;
    return wm::store::section(SectionId(index)).name;
}

void *SC_Get_Config_By_Name(const char *name, uint32_t *size) {
    int i = wm::store::section_index(name);
    if (i < 0) return nullptr;
    if (size) *size = wm::store::section(SectionId(i)).size;
    return wm::store::get(SectionId(i));
}

int SC_Save_Config_By_Name(const char *name, const void *record, int to_flash) {
    int i = wm::store::section_index(name);
    if (i < 0) return CONFIG_ERR_ARGUMENT;
    return wm::store::save(SectionId(i), record, to_flash != 0);
}

int SC_Config_Field_Table(const char *name, void *record, field_desc *table, int capacity) {
    int i = wm::store::section_index(name);
    if (i < 0 || !record) return -1;
    if (!table) capacity = 0;
    return wm::store::section(SectionId(i)).builder(table, capacity, record);
}

int SC_Reset_Config(const char *name) {
    if (name && std::strcmp(name, "all") == 0) {
        int rc = CONFIG_OK;
        for (int i = 0; i < wm::store::kSectionCount; ++i)
            if (wm::store::reset(SectionId(i)) != CONFIG_OK) rc = CONFIG_ERR_IO;
        return rc;
    }
    int i = wm::store::section_index(name);
    return i < 0 ? CONFIG_ERR_ARGUMENT : wm::store::reset(SectionId(i));
}

} // extern "C"
