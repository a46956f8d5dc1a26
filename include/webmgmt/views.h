/*
 * webmgmt: the views that print a configuration section or live state as JSON (or
 * XML) on standard output.
 */
#ifndef WEBMGMT_VIEWS_H
#define WEBMGMT_VIEWS_H

#include "webmgmt/common.h"
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

WEBMGMT_END_DECLS
#endif /* WEBMGMT_VIEWS_H */
