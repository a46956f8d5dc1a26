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
