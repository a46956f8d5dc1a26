/*
 * libconfig_data_api: the configuration store.
 *
 * Every configuration section is a fixed-layout record. A getter returns this process's copy
 * of a section (loaded once per process: the memory copy, else the flash copy, else the
 * factory defaults); a plain saver writes the memory copy (lost at reboot), a `2Flash` saver
 * writes the memory copy and the flash copy. The list operations (Add, Modify, Del, DelAll)
 * read, change and write their section in one step under the section's lock, write both
 * copies, and bring the list in the caller's record up to date.
 *
 * On the device the platform's own store provides these calls; this header is the contract
 * libwebmgmt is built against. All calls have C linkage. Records are built from fixed-width
 * types with the same layout on the 32-bit ARM device and on x86-64 hosts.
 */
#ifndef CONFIG_DATA_API_H
#define CONFIG_DATA_API_H

#include <stdint.h>

#include "webmgmt.h"

#if defined(__GNUC__)
#define CONFIG_API __attribute__((visibility("default")))
#else
#define CONFIG_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ===================================================================================== */
/* Results of the list operations and savers                                             */
/* ===================================================================================== */

#define CONFIG_OK 0
#define CONFIG_ERR_IO (-1)    /* the section could not be written */
#define CONFIG_ERR_FULL 3     /* add: every slot of the list is taken */
#define CONFIG_ERR_NO_ID 4    /* modify or delete: no element bears that id */
#define CONFIG_ERR_ARGUMENT 5 /* null record or element, radio index out of range */

/* ===================================================================================== */
/* Records                                                                               */
/* ===================================================================================== */

/* Every section record, and every element the list operations take, is declared in the
 * public headers of libwebmgmt (webmgmt.h): the catalogue's records, the device records of
 * webmgmt/device.h. `lock_file` in the head of each names the file that the forms lock
 * (through sc_lock_reg) around a duplicate check of the section's list. GetAclItemList and
 * GetAclItemList_Ext fill a misc_ext_acl buffer (119,292 bytes): the count, the list's mode
 * word, 128 acl_entry slots, reserved room. */

/* ===================================================================================== */
/* Section getters and savers                                                            */
/* ===================================================================================== */

/* Each getter returns this process's record (null only when memory runs out). The savers
 * write the record whole and return CONFIG_OK or CONFIG_ERR_IO; a list the caller did not
 * change since it read the section keeps what other processes stored meanwhile. */
CONFIG_API wifi_config *SC_Get_SC_WiFi_Config(void);
CONFIG_API int SC_Save_SC_WiFi_Config(wifi_config *record);
CONFIG_API int SC_Save_SC_WiFi_Config2Flash(wifi_config *record);

CONFIG_API lan_config *SC_Get_Lan_System_Config(void);
CONFIG_API int SC_Save_System_Lan_Config(lan_config *record);
CONFIG_API int SC_Save_System_Lan_Config2Flash(lan_config *record);
CONFIG_API wan_config *SC_Get_Wan_System_Config(void);
CONFIG_API int SC_Save_System_Wan_Config(wan_config *record);
CONFIG_API int SC_Save_System_Wan_Config2Flash(wan_config *record);
CONFIG_API misc_config *SC_Get_Misc_System_Config(void);
CONFIG_API int SC_Save_System_Misc_Config(misc_config *record);
CONFIG_API int SC_Save_System_Misc_Config2Flash(misc_config *record);
CONFIG_API misc_ext_config *SC_Get_Misc_Ext_System_Config(void);
CONFIG_API int SC_Save_System_Misc_Ext_Config(misc_ext_config *record);
CONFIG_API int SC_Save_System_Misc_Ext_Config2Flash(misc_ext_config *record);
CONFIG_API productinfo_config *SC_Get_ProductInfo_System_Config(void);
CONFIG_API int SC_Save_System_ProductInfo_Config(productinfo_config *record);
CONFIG_API int SC_Save_System_ProductInfo_Config2Flash(productinfo_config *record);
CONFIG_API defap_config *SC_Get_DefApTemplate_System_Config(void);
CONFIG_API int SC_Save_System_DefApTemplate_Config(defap_config *record);
CONFIG_API int SC_Save_System_DefApTemplate_Config2Flash(defap_config *record);
CONFIG_API qos_config *SC_Get_Qos_System_Config(void);
CONFIG_API int SC_Save_System_Qos_Config(qos_config *record);
CONFIG_API int SC_Save_System_Qos_Config2Flash(qos_config *record);
CONFIG_API fwurl_config *SC_Get_FwUrl_System_Config(void);
CONFIG_API int SC_Save_System_FwUrl_Config(fwurl_config *record);
CONFIG_API int SC_Save_System_FwUrl_Config2Flash(fwurl_config *record);
CONFIG_API fwmac_config *SC_Get_FwMac_System_Config(void);
CONFIG_API int SC_Save_System_FwMac_Config(fwmac_config *record);
CONFIG_API int SC_Save_System_FwMac_Config2Flash(fwmac_config *record);
CONFIG_API timegroup_config *SC_Get_TimeGroup_System_Config(void);
CONFIG_API int SC_Save_System_TimeGroup_Config(timegroup_config *record);
CONFIG_API int SC_Save_System_TimeGroup_Config2Flash(timegroup_config *record);
CONFIG_API ipport_config *SC_Get_IpGroup_System_Config(void);
CONFIG_API int SC_Save_System_IpGroup_Config(ipport_config *record);
CONFIG_API int SC_Save_System_IpGroup_Config2Flash(ipport_config *record);
CONFIG_API vsipport_config *SC_Get_VsIpport_System_Config(void);
CONFIG_API int SC_Save_System_VsIpport_Config(vsipport_config *record);
CONFIG_API int SC_Save_System_VsIpport_Config2Flash(vsipport_config *record);
CONFIG_API fwipport_config *SC_Get_FwIpport_System_Config(void);
CONFIG_API int SC_Save_System_FwIpport_Config(fwipport_config *record);
CONFIG_API int SC_Save_System_FwIpport_Config2Flash(fwipport_config *record);

CONFIG_API clients_config *SC_Get_Clients_System_Config(void);
CONFIG_API int SC_Save_System_Clients_Config(clients_config *record);
CONFIG_API int SC_Save_System_Clients_Config2Flash(clients_config *record);
CONFIG_API clients_groups_config *SC_Get_Clients_Groups_System_Config(void);
CONFIG_API int SC_Save_System_Clients_Groups_Config(clients_groups_config *record);
CONFIG_API int SC_Save_System_Clients_Groups_Config2Flash(clients_groups_config *record);
CONFIG_API manage_ap_list_config *SC_Get_ManageApList_System_Config(void);
CONFIG_API int SC_Save_System_ManageApList_Config(manage_ap_list_config *record);
CONFIG_API int SC_Save_System_ManageApList_Config2Flash(manage_ap_list_config *record);
CONFIG_API ap_template_list_config *SC_Get_ApTemplateList_System_Config(void);
CONFIG_API int SC_Save_System_ApTemplateList_Config(ap_template_list_config *record);
CONFIG_API int SC_Save_System_ApTemplateList_Config2Flash(ap_template_list_config *record);
CONFIG_API ap_runtime_config *SC_Get_ApRuntime_System_Config(void);
CONFIG_API int SC_Save_System_ApRuntime_Config(ap_runtime_config *record);
CONFIG_API int SC_Save_System_ApRuntime_Config2Flash(ap_runtime_config *record);
CONFIG_API ap_user_config *SC_Get_ApUser_System_Config(void);
CONFIG_API int SC_Save_System_ApUser_Config(ap_user_config *record);
CONFIG_API int SC_Save_System_ApUser_Config2Flash(ap_user_config *record);
CONFIG_API update_config *SC_Get_Update_System_Config(void);
CONFIG_API int SC_Save_System_Update_Config(update_config *record);
CONFIG_API int SC_Save_System_Update_Config2Flash(update_config *record);

/* ===================================================================================== */
/* List operations                                                                       */
/* ===================================================================================== */

/*
 * Each operation locks the stored section, applies itself to the stored list, writes the
 * section to memory and to flash, and copies the list (count and elements) into `list`
 * and into this process's record. Members outside the list are neither read from `list`
 * nor stored: the saver that the forms call afterwards stores those.
 *
 * Add: the element gets the smallest id not in use (ids are never 0 and unique in a list)
 *      and the first free slot; the id is written back into `element`.
 * Modify: replaces the element whose id equals element->id (its slot is kept).
 * Del: `key` is the id as text, read up to its terminator or 5 bytes (the forms copy the
 *      "id" variable into a zeroed 32-bit word and byte); the elements after it move up,
 *      so the elements in use are always slots 0 to count - 1.
 * DelAll: empties the stored list.
 * Results: CONFIG_OK; CONFIG_ERR_FULL (add to a full list); CONFIG_ERR_NO_ID (modify or
 * delete of an id not in the list); CONFIG_ERR_ARGUMENT (null element or key, radio index
 * outside 0 to 2); CONFIG_ERR_IO (the section could not be written; nothing changed).
 */
CONFIG_API int AddPortFwItem(vsipport_config *list, vsipport_rule *element);
CONFIG_API int ModifyPortFwItem(vsipport_config *list, vsipport_rule *element);
CONFIG_API int DelPortFwItem(vsipport_config *list, const void *key);
CONFIG_API int DelAllPortFwItem(void);

CONFIG_API int AddIpFilterItem(fwipport_config *list, fwipport_rule *element);
CONFIG_API int ModifyIpFilterItem(fwipport_config *list, fwipport_rule *element);
CONFIG_API int DelIpFilterItem(fwipport_config *list, const void *key);
CONFIG_API int DelAllIpFilterItem(void);

CONFIG_API int AddUrlFilterItem(fwurl_config *list, fwurl_rule *element);
CONFIG_API int ModifyUrlFilterItem(fwurl_config *list, fwurl_rule *element);
CONFIG_API int DelUrlFilterItem(fwurl_config *list, const void *key);
CONFIG_API int DelAllUrlFilterItem(void);

CONFIG_API int AddMacFilterItem(fwmac_config *list, fwmac_rule *element);
CONFIG_API int ModifyMacFilterItem(fwmac_config *list, fwmac_rule *element);
CONFIG_API int DelMacFilterItem(fwmac_config *list, const void *key);
CONFIG_API int DelAllMacFilterItem(void);

CONFIG_API int AddQosItem(qos_config *list, qos_rule *element);
CONFIG_API int ModifyQosItem(qos_config *list, qos_rule *element);
CONFIG_API int DelQosItem(qos_config *list, const void *key);
CONFIG_API int DelAllQosItem(void);

/* Deleting a group also clears every reference to it in the stored rule lists named (and in
 * the records passed, any of which may be null): the rule's group id becomes 0, and a rule
 * that used the group (ipcontrol or timecontrol 1) is set to its own range or "always" and
 * switched off (status 0), so that it neither points at a later group that reuses the id
 * nor silently widens. DelAll*GroupItem clears the references of every group alike. */
CONFIG_API int AddIpGroupItem(ipport_config *list, ipgroup_entry *element);
CONFIG_API int ModifyIpGroupItem(ipport_config *list, ipgroup_entry *element);
CONFIG_API int DelIpGroupItem(ipport_config *list, fwipport_config *ipfilter, qos_config *qos,
                              const void *key);
CONFIG_API int DelAllIpGroupItem(ipport_config *list);

CONFIG_API int AddTimeGroupItem(timegroup_config *list, timegroup_entry *element);
CONFIG_API int ModifyTimeGroupItem(timegroup_config *list, timegroup_entry *element);
CONFIG_API int DelTimeGroupItem(timegroup_config *list, fwipport_config *ipfilter,
                                fwmac_config *macfilter, fwurl_config *urlfilter, qos_config *qos,
                                const void *key);
CONFIG_API int DelAllTimeGroupItem(timegroup_config *list);

/* Static leases of the device's DHCP server and of the controller's. */
CONFIG_API int AddDhcpStaticItem(lan_config *lan, lan_bind *element);
CONFIG_API int ModifyDhcpStaticItem(lan_config *lan, lan_bind *element);
CONFIG_API int DelDhcpStaticItem(lan_config *lan, const void *key);
CONFIG_API int DelAllDhcpStaticItem(void);
CONFIG_API int AC_AddDhcpStaticItem(lan_config *lan, lan_bind *element);
CONFIG_API int AC_ModifyDhcpStaticItem(lan_config *lan, lan_bind *element);
CONFIG_API int AC_DelDhcpStaticItem(lan_config *lan, const void *key);
CONFIG_API int AC_DelAllDhcpStaticItem(void);

/* The access list of radio `radio` (0 to 2) in the wireless section. */
CONFIG_API int AddAclItem(wifi_config *wifi, acl_entry *element, int radio);
CONFIG_API int ModifyAclItem(wifi_config *wifi, acl_entry *element, int radio);
CONFIG_API int DelAclItem(wifi_config *wifi, const void *key, int radio);
CONFIG_API int DelAllAclItem(wifi_config *wifi, int radio);
/* The global access list of the misc-ext section (128 entries). */
CONFIG_API int AddAclItem_Ext(misc_ext_config *record, acl_entry *element);
CONFIG_API int ModifyAclItem_Ext(misc_ext_config *record, acl_entry *element);
CONFIG_API int DelAclItem_Ext(misc_ext_config *record, const void *key);

/* Fill `buffer` (cleared first) with the access list of radio `radio` of `wifi`, or with
 * the global list of `record`; a null record means this process's record. 0, or -1 for a
 * null buffer or a radio outside 0 to 2. */
CONFIG_API int GetAclItemList(const wifi_config *wifi, misc_ext_acl *buffer, int radio);
CONFIG_API int GetAclItemList_Ext(const misc_ext_config *record, misc_ext_acl *buffer);

CONFIG_API int AddClientsItem(clients_config *list, client_account *element);
CONFIG_API int ModifyClientsItem(clients_config *list, client_account *element);
CONFIG_API int DelClientsItem(clients_config *list, const void *key);
CONFIG_API int DelAllClientsItem(void);

CONFIG_API int AddClientsGroupsItem(clients_groups_config *list, client_group *element);
CONFIG_API int ModifyClientsGroupsItem(clients_groups_config *list, client_group *element);
CONFIG_API int DelClientsGroupsItem(clients_groups_config *list, const void *key);
CONFIG_API int DelAllClientsGroupsItem(void);

/* The templates of the AP-template list, keyed on m_wlan_group_id: each operation changes
 * one template of the stored list (or, DelAll, empties it) without touching the others, so
 * two programs editing different templates at once both keep their change. */
CONFIG_API int AddApTemplateItem(ap_template_list_config *list, ap_template_entry *element);
CONFIG_API int ModifyApTemplateItem(ap_template_list_config *list, ap_template_entry *element);
CONFIG_API int DelApTemplateItem(ap_template_list_config *list, const void *key);
CONFIG_API int DelAllApTemplateItem(void);

/* ===================================================================================== */
/* Lookups and the list lock                                                             */
/* ===================================================================================== */

/* The index of the managed AP whose MAC equals `mac` (6 bytes) in `list` (this process's
 * record when null), or -1. */
CONFIG_API int SC_Get_Ap_Info_By_Mac(const manage_ap_list_config *list, const uint8_t *mac);
/* The index into tables->m_ap of the station table of the AP whose MAC equals `mac`, or -1. */
CONFIG_API int SC_Get_ApUser_Info_By_Mac(const ap_user_config *tables, const uint8_t *mac);

/* A whole-file fcntl record lock on `fd`, as the forms take it around a duplicate check:
 * sc_lock_reg(fd, 14, 1, 0, 1, 0, 0) locks for writing and waits, sc_lock_reg(fd, 13, 2, 0,
 * 1, 0, 0) releases. `cmd` is the device's 64-bit lock command (12 get, 13 set, 14 set and
 * wait) or the host's F_GETLK/F_SETLK/F_SETLKW; `type` is 0 read, 1 write, 2 unlock.
 * Returns fcntl's result (-1 with errno EINVAL for an unknown command or type). */
CONFIG_API int sc_lock_reg(int fd, int cmd, int type, int64_t offset, int whence, int64_t len,
                           int32_t reserved);

/* ===================================================================================== */
/* Maintenance (the wmconfig tool)                                                       */
/* ===================================================================================== */

/* The file name stem of section `index` ("lan", "wifi", ...), or null past the last. */
CONFIG_API const char *SC_Config_Section_Name(int index);
/* This process's record of the named section and its size, or null for an unknown name. */
CONFIG_API void *SC_Get_Config_By_Name(const char *section, uint32_t *size);
/* Saves the named section from `record` (its size as the getter gave it). */
CONFIG_API int SC_Save_Config_By_Name(const char *section, const void *record, int to_flash);
/* Fills `table` (at most `capacity` rows, the last left empty) with the field table of the
 * named section over `record`: every member by its dotted name, as the defaults files name
 * them. Returns the number of rows the whole table needs (which may exceed
 * WEBMGMT_FIELD_ROWS for the store's large lists), or -1 for an unknown section. */
CONFIG_API int SC_Config_Field_Table(const char *section, void *record, field_desc *table,
                                     int capacity);
/* Returns the named section, or every section for "all", to its factory defaults: both
 * copies are removed and the next getter rebuilds the section from the defaults files. */
CONFIG_API int SC_Reset_Config(const char *section);

#ifdef __cplusplus
}
#endif
#endif /* CONFIG_DATA_API_H */
