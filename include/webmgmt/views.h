/*
 * webmgmt: the views that print a configuration section or live state as JSON (or
 * XML) on standard output.
 */
#ifndef WEBMGMT_VIEWS_H
#define WEBMGMT_VIEWS_H

#include "webmgmt/common.h"
#include "webmgmt/device.h"
#include "webmgmt/network.h"
#include "webmgmt/wireless.h"

WEBMGMT_BEGIN_DECLS

/* ===================================================================================== */
/* Configuration views                                                                   */
/* ===================================================================================== */

/* Views print one configuration section as a JSON document on standard output. They only
 * read the record the caller fetched from the configuration store, and report nothing. */

/* System views. */
WEBMGMT_API void printf_ProductInfo_json(const productinfo_config *config);
WEBMGMT_API void printf_Misc_json(const misc_config *config);
WEBMGMT_API void printf_Dmz_json(const misc_config *config);
WEBMGMT_API void printf_DDNS_json(const misc_config *config);
WEBMGMT_API void printf_NAT_json(const misc_config *config);
/* The roaming settings of the wireless record. */
WEBMGMT_API void printf_kvr_json(const wifi_config *config);

/* Rule-list views: every slot of the table is printed, whatever the count. */
WEBMGMT_API void printf_VsIpport_json(const vsipport_config *config);
WEBMGMT_API void printf_FwIpport_json(const fwipport_config *config);
WEBMGMT_API void printf_IpGroup_json(const ipport_config *config);
WEBMGMT_API void printf_TimeGroup_json(const timegroup_config *config);
WEBMGMT_API void printf_FwMac_json(const fwmac_config *config);
WEBMGMT_API void printf_FwUrl_json(const fwurl_config *config);
WEBMGMT_API void printf_Qos_json(const qos_config *config);

/* Online times as the pages show them: "H:MM:SS" below a day, "1Day H:MM:SS" on the
 * second day, "<n>Days H:MM:SS" from then on. `out` has room for at least 30 bytes; returns
 * the formatted length. */
WEBMGMT_API int get_runtime_web(uint32_t seconds, char *out);

/* LAN and WAN views: the LAN section with both DHCP servers, the static leases of the
 * device's server and the IPv6 settings; the four WAN lines; the bypass addressing of the
 * misc section. */
WEBMGMT_API void printf_Lan_json(const lan_config *config);
WEBMGMT_API void printf_Wan_json(const wan_config *config);
WEBMGMT_API void printf_Bypass_json(const misc_config *config);

/* ===================================================================================== */
/* Wireless, AP-template, scan-result and managed-AP views                               */
/* ===================================================================================== */

/* The device's own radios: the first `radio_count` radios (none for 0 or less; the record
 * holds three, and a larger count prints those three), then the timed switch-off. */
WEBMGMT_API void printf_WiFi_json(const wifi_config *config, int32_t radio_count);
WEBMGMT_API void printf_WiFi_Timeclosectrl_json(const wifi_config *config);
/* The default AP template; the reboot, login and IPTV objects stand inside the third radio. */
WEBMGMT_API void printf_DefApTemplate_json(const defap_config *config);
/* Template `index` of the template array `templates` (WEBMGMT_AP_TEMPLATES of them, each
 * WEBMGMT_AP_TEMPLATE_SIZE bytes); an index outside the array prints nothing. */
WEBMGMT_API void printf_ApTemplateList_cf_json(const ap_template_entry *templates, int index);
/* One template as a row of the template list (nothing for null); "count" is a bare number. */
WEBMGMT_API void printf_ApTemplateList_json(const ap_template_entry *entry);

/* Codes between the pages and the stored configuration (constant tables). */
WEBMGMT_API int get_authmode_obj(int enable, int web_code);
WEBMGMT_API int get_ciphertype_obj(int web_code);
WEBMGMT_API int get_power_obj(int web_code);
/* Only the low 16 bits of `level` are compared. */
WEBMGMT_API int get_power_web(int level);
WEBMGMT_API int get_authmode_web(int code);
WEBMGMT_API int get_security_web(int code);
WEBMGMT_API int get_securitycipher_web(int code);
/* 1 when the template's member MAC equals `mac` (6 bytes), else 0 (0 for a null pointer). */
WEBMGMT_API int have_grop_conf_macs6(const ap_template_entry *group, const uint8_t *mac);
/* The AP's configuration when its MAC equals `mac` (6 bytes), else null. */
WEBMGMT_API const ap_config_body *get_ap_conf_by_mac6(const ap_device_record *ap,
                                                      const uint8_t *mac);

/* The site survey of radio `radio` of managed AP `ap_index` as XML: the 2.4 GHz and the
 * 5 GHz channels. Indexes outside the tables print nothing. */
WEBMGMT_API void printf_ApScan24_json(const ap_scan_context *context, int ap_index, int radio);
WEBMGMT_API void printf_ApScan58_json(const ap_scan_context *context, int ap_index, int radio);

/* The managed AP (or null for none): the dashboard summary, the list row (mode 2: counts
 * only; mode 3: filtered by IP and MAC substrings), the devices of template `index` (mode 1:
 * candidates to bind; mode 2: the bound device), the full configuration selected by model
 * name or MAC text. The full configuration ends in "}]}": the caller prints the enclosing
 * object and array first. */
WEBMGMT_API void printf_Mian_Info_json(const ap_device_record *ap);
WEBMGMT_API void printf_ManageApList_json(const ap_device_record *ap, int mode,
                                          const char *ip_filter, const char *mac_filter);
WEBMGMT_API void printf_ApTemplateList_mac_json(const ap_device_record *ap,
                                                const ap_template_entry *templates, int index,
                                                int mode);
WEBMGMT_API void printf_Ap_mode_json(const ap_device_record *ap, const char *model);
WEBMGMT_API void printf_Ap_cf_json(const ap_device_record *ap, const char *mac);
/* The firmware-update schedule, and whether the controller and AP images are present. */
WEBMGMT_API void printf_update_online_time_json(const update_config *config);
WEBMGMT_API void printf_dhcp_check_json(const update_config *config);

/* ===================================================================================== */
/* Station, client and access-list views                                                 */
/* ===================================================================================== */

/* The stations of the device's own radios: host names from the DHCP leases, then the
 * member "mark" once per client account up to the one with the station's MAC (a reader
 * that keeps the last of repeated keys sees that account's mark, or ""). */
WEBMGMT_API void printf_WiFi_user_json(const sta_table *stations, int radio,
                                       const clients_config *clients);
/* The stations of the managed AP of `aps` (its first device), from its table in `stations`;
 * online times through get_runtime_web(). The document ends in a placeholder station. */
WEBMGMT_API void printf_ApUserList_user_json(const manage_ap_list_config *aps,
                                             const ap_user_config *stations);
/* Client groups, accounts, the blacklist and one account by MAC; a null table prints the
 * empty form. The account objects end in a comma before their closing brace. */
WEBMGMT_API void printf_Clients_Groups_json(const clients_groups_config *groups);
WEBMGMT_API void printf_Clients_json(const clients_config *clients);
WEBMGMT_API void printf_Clients_black_json(const clients_config *clients);
WEBMGMT_API void printf_Client_json(const clients_config *clients, const char *mac);
/* The access lists of the three radios, or, when `*use_ext` is 1, the global list of `ext`
 * (null: this process's misc-ext record) shown for every radio; a null flag counts as 0. */
WEBMGMT_API void printf_WiFi_ACL_json(const wifi_config *wifi, const uint8_t *use_ext,
                                      const misc_ext_config *ext);

WEBMGMT_END_DECLS
#endif /* WEBMGMT_VIEWS_H */
