/*
 * webmgmt: the form framework (binding tables, conversion), the duplicate filters and
 * the forms that apply a request to a configuration section.
 */
#ifndef WEBMGMT_FORMS_H
#define WEBMGMT_FORMS_H

#include <stdint.h>

#include "webmgmt/common.h"
#include "webmgmt/device.h"
#include "webmgmt/fields.h"
#include "webmgmt/network.h"
#include "webmgmt/request.h"
#include "webmgmt/wireless.h"

WEBMGMT_BEGIN_DECLS

/* ===================================================================================== */
/* Form framework, list filters and forms                                                */
/* ===================================================================================== */

/* The rows of a form's binding table: no form binds more variables than this. */
#define WEBMGMT_FORM_ROWS 150

/* Result of an element form refused for a duplicate name or duplicate content. */
#define WEBMGMT_FORM_DUPLICATE 10

/* Converts `value` by row.type into the member row.address (row.size bytes wide); see the
 * conversion codes of field_desc. Returns the converted number (0 for texts and MACs). A
 * member narrower than its code needs is left untouched. */
WEBMGMT_API int save_data_base(field_desc row, const char *value);

/* --- Working elements of the rule-list forms ---------------------------------------------
 * One zero-filled element per add or modify: one member per form variable. Ids, switches,
 * ports, flags are 32-bit numbers (code 1); names and marks 200-byte texts, dotted IPv4
 * addresses 16-byte texts, times of day 10-byte texts (code 4). The store's Add and Modify
 * calls take them and fill the list's slot from them. */
#define WEBMGMT_ITEM_NAME 200
#define WEBMGMT_ITEM_IP 16
#define WEBMGMT_ITEM_TIME 10
#define WEBMGMT_ITEM_MAC 20
#define WEBMGMT_ITEM_URL 128
#define WEBMGMT_WEEKDAY_COUNT 7

/* The copy of a time group that the filter forms carry ("t_id", "t_name", ...). */
typedef struct rule_timegroup_copy {
    int32_t id;
    char name[WEBMGMT_ITEM_NAME];
    int32_t weekday[WEBMGMT_WEEKDAY_COUNT]; /* Monday .. Sunday */
    char start_time[WEBMGMT_ITEM_TIME];
    char end_time[WEBMGMT_ITEM_TIME];
    char mark[WEBMGMT_ITEM_NAME];
    int32_t enable;
} rule_timegroup_copy;
WEBMGMT_STATIC_ASSERT(sizeof(rule_timegroup_copy) == 456, "rule_timegroup_copy layout");

/* The copy of an IP group ("ip_id", "ip_name", ... or "ipgroup_name", ...). */
typedef struct rule_ipgroup_copy {
    int32_t id;
    char name[WEBMGMT_ITEM_NAME];
    char start_ip[WEBMGMT_ITEM_IP];
    char end_ip[WEBMGMT_ITEM_IP];
    char mark[WEBMGMT_ITEM_NAME];
    int32_t enable;
} rule_ipgroup_copy;
WEBMGMT_STATIC_ASSERT(sizeof(rule_ipgroup_copy) == 440, "rule_ipgroup_copy layout");

/* Port forwarding ("extren_Port_From" and "extren_Port_To" fill the external range). */
typedef struct vsipport_item {
    int32_t id;
    char name[WEBMGMT_ITEM_NAME];
    char devname[WEBMGMT_ITEM_NAME];
    int32_t protocol;
    char innerip[WEBMGMT_ITEM_IP];
    int32_t extern_port_from;
    int32_t extern_port_to;
    int32_t inner_port_from;
    int32_t inner_port_to;
    int32_t status;
    char mark[WEBMGMT_ITEM_NAME];
    int32_t wanid;
    int32_t enable;
} vsipport_item;
WEBMGMT_STATIC_ASSERT(sizeof(vsipport_item) == 652, "vsipport_item layout");

/* IP/port filter. */
typedef struct fwipport_item {
    int32_t id;
    char name[WEBMGMT_ITEM_NAME];
    char devname[WEBMGMT_ITEM_NAME];
    int32_t ipcontrol; /* 1: the IP group ipgroup_id, else the own range startip..endip */
    int32_t ipgroup_id;
    char ipname[WEBMGMT_ITEM_NAME];
    int32_t timecontrol; /* 0 always, 1 the time group timegroup_id, else the own schedule */
    int32_t timegroup_id;
    char timename[WEBMGMT_ITEM_NAME];
    rule_timegroup_copy t;
    rule_ipgroup_copy ip;
    int32_t weekday[WEBMGMT_WEEKDAY_COUNT];
    char start_time[WEBMGMT_ITEM_TIME];
    char end_time[WEBMGMT_ITEM_TIME];
    char startip[WEBMGMT_ITEM_IP];
    char endip[WEBMGMT_ITEM_IP];
    int32_t startport;
    int32_t endport;
    int32_t protocol;
    char mark[WEBMGMT_ITEM_NAME];
    int32_t enable;
    int32_t status;
} fwipport_item;
WEBMGMT_STATIC_ASSERT(sizeof(fwipport_item) == 2016, "fwipport_item layout");

/* IP group. */
typedef struct ipgroup_item {
    int32_t id;
    char name[WEBMGMT_ITEM_NAME];
    char start_ip[WEBMGMT_ITEM_IP];
    char end_ip[WEBMGMT_ITEM_IP];
    char mark[WEBMGMT_ITEM_NAME];
    int32_t enable;
} ipgroup_item;
WEBMGMT_STATIC_ASSERT(sizeof(ipgroup_item) == 440, "ipgroup_item layout");

/* Time group. */
typedef struct timegroup_item {
    int32_t id;
    char name[WEBMGMT_ITEM_NAME];
    int32_t weekday[WEBMGMT_WEEKDAY_COUNT];
    char start_time[WEBMGMT_ITEM_TIME];
    char end_time[WEBMGMT_ITEM_TIME];
    char mark[WEBMGMT_ITEM_NAME];
    int32_t enable;
} timegroup_item;
WEBMGMT_STATIC_ASSERT(sizeof(timegroup_item) == 456, "timegroup_item layout");

/* MAC filter; `devmac` is the MAC as text. */
typedef struct fwmac_item {
    int32_t id;
    char name[WEBMGMT_ITEM_NAME];
    char devname[WEBMGMT_ITEM_NAME];
    char devmac[WEBMGMT_ITEM_MAC];
    int32_t timecontrol;
    int32_t timegroup_id;
    char timename[WEBMGMT_ITEM_NAME];
    int32_t weekday[WEBMGMT_WEEKDAY_COUNT];
    char start_time[WEBMGMT_ITEM_TIME];
    char end_time[WEBMGMT_ITEM_TIME];
    int32_t status;
    char mark[WEBMGMT_ITEM_NAME];
    rule_timegroup_copy t;
} fwmac_item;
WEBMGMT_STATIC_ASSERT(sizeof(fwmac_item) == 1340, "fwmac_item layout");

/* URL filter; the IP group copy comes as "ipgroup_name", ... (its id is not sent). */
typedef struct fwurl_item {
    int32_t id;
    char name[WEBMGMT_ITEM_NAME];
    char devname[WEBMGMT_ITEM_NAME];
    char url[WEBMGMT_ITEM_URL];
    int32_t ipgroup_id;
    rule_ipgroup_copy ipgroup;
    rule_timegroup_copy t;
    int32_t timecontrol;
    int32_t timegroup_id;
    char timename[WEBMGMT_ITEM_NAME];
    int32_t weekday[WEBMGMT_WEEKDAY_COUNT];
    char start_time[WEBMGMT_ITEM_TIME];
    char end_time[WEBMGMT_ITEM_TIME];
    int32_t status;
    int32_t enable;
    char mark[WEBMGMT_ITEM_NAME];
} fwurl_item;
WEBMGMT_STATIC_ASSERT(sizeof(fwurl_item) == 1896, "fwurl_item layout");

/* QoS; "bw_share_mode" fills bw_share_mode. */
typedef struct qos_item {
    int32_t id;
    char name[WEBMGMT_ITEM_NAME];
    char devname[WEBMGMT_ITEM_NAME];
    int32_t control_type;
    int32_t ipcontrol;
    int32_t ipgroup_id;
    char ipname[WEBMGMT_ITEM_NAME];
    rule_ipgroup_copy ip;
    int32_t timecontrol;
    int32_t timegroup_id;
    char timename[WEBMGMT_ITEM_NAME];
    rule_timegroup_copy t;
    char devmac[WEBMGMT_ITEM_MAC];
    char startip[WEBMGMT_ITEM_IP];
    char endip[WEBMGMT_ITEM_IP];
    int32_t bw_up;
    int32_t bw_down;
    int32_t bw_share_mode;
    int32_t weekday[WEBMGMT_WEEKDAY_COUNT];
    char start_time[WEBMGMT_ITEM_TIME];
    char end_time[WEBMGMT_ITEM_TIME];
    int32_t status;
    int32_t enable;
    char mark[WEBMGMT_ITEM_NAME];
} qos_item;
WEBMGMT_STATIC_ASSERT(sizeof(qos_item) == 2040, "qos_item layout");

/* --- Working elements of the LAN, client and access-list forms --------------------------
 * A static lease as its form binds it: the lease's id, the device name, the device type as
 * text, the MAC and the address as text, the mark. The form turns it into the lan_bind the
 * store adds or modifies. The client and client-group forms fill client_account and
 * client_group, and the access-list forms acl_entry, directly. */
#define WEBMGMT_DHCP_STATIC_ITEM_MEMBERS(X)                                                        \
    X(1, int32_t, id, )                                                                            \
    X(4, char, devname, [WEBMGMT_ITEM_NAME])                                                       \
    X(4, char, devtype, [4])                                                                       \
    X(4, char, mac, [WEBMGMT_ITEM_MAC])                                                            \
    X(4, char, ip, [WEBMGMT_ITEM_IP])                                                              \
    X(4, char, mark, [WEBMGMT_ITEM_NAME])
typedef struct dhcp_static_item {
    WEBMGMT_DHCP_STATIC_ITEM_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} dhcp_static_item;
WEBMGMT_STATIC_ASSERT(sizeof(dhcp_static_item) == 444, "dhcp_static_item layout");

/* The section records of the rule lists, as the CGI program fetched them from the store.
 * `misc->need_filter_firewall` is the duplicate-check switch (0: no check); a null misc
 * record means no check. Members the called form does not use may be null. */
typedef struct rule_config_set {
    misc_config *misc;
    vsipport_config *vsipport;
    fwipport_config *fwipport;
    ipport_config *ipgroup;
    timegroup_config *timegroup;
    fwurl_config *fwurl;
    fwmac_config *fwmac;
    qos_config *qos;
} rule_config_set;

/* --- Duplicate filters ------------------------------------------------------------------ */

/* List kinds of filterate_name(): which record `list` points to. */
#define WEBMGMT_KIND_TIMEGROUP 1 /* timegroup_config */
#define WEBMGMT_KIND_IPGROUP 2   /* ipport_config */
#define WEBMGMT_KIND_QOS 3       /* qos_config: never a duplicate */
#define WEBMGMT_KIND_FWURL 4     /* fwurl_config */
#define WEBMGMT_KIND_FWMAC 5     /* fwmac_config */
#define WEBMGMT_KIND_FWIPPORT 6  /* fwipport_config */
#define WEBMGMT_KIND_VSIPPORT 7  /* vsipport_config */
#define WEBMGMT_KIND_ACL 8       /* wifi_acllist of one radio; the caller holds the lock */

/* 0 when no element of the list other than the one with id `id` bears `name`, -1 when one
 * does, when the list's lock file cannot be opened (after printing "Cannot Lock file %s")
 * or for an unknown kind. The scan runs under a write lock on the list's lock file. */
WEBMGMT_API int filterate_name(const void *list, const char *name, int id, int kind);
/* 1 when a1 == b1 and a2 == b2 (a protocol and its sub-value), else 0. */
WEBMGMT_API int filterate_prot(int a1, int a2, int b1, int b2);
/* 1 when the texts a1 and b1, and a2 and b2, are equal (the ends of an address range). */
WEBMGMT_API int filterate_ip(const char *a1, const char *a2, const char *b1, const char *b2);

/* A rule's time restriction in a comparable form; zero it before filling it. */
typedef struct schedule_block {
    int32_t weekday[WEBMGMT_WEEKDAY_COUNT]; /* Monday .. Sunday, 0 or 1 */
    char start_time[WEBMGMT_ITEM_TIME];
    char end_time[WEBMGMT_ITEM_TIME];
} schedule_block;
WEBMGMT_STATIC_ASSERT(sizeof(schedule_block) == 48, "schedule_block layout");

/* Fills `block` from the time group(s) with id `group_id` of config->timegroup (the last
 * such group wins); leaves it as it is when there is none. Returns 0. */
WEBMGMT_API int get_time_from_timegroup(schedule_block *block, int group_id,
                                        const rule_config_set *config);
/* Fills `block` from seven one-byte weekday flags and the 10-byte start and end texts. */
WEBMGMT_API void copy_time_from_config(schedule_block *block, const uint8_t *weekdays,
                                       const char *start_time, const char *end_time);

/* Content filters: 0 when `item` duplicates no other element of the list, -1 when it does. */
WEBMGMT_API int filterate_vsipport_data(const vsipport_config *list, const vsipport_item *item);
WEBMGMT_API int filterate_ipgroup_data(const ipport_config *list, const ipgroup_item *item);
WEBMGMT_API int filterate_timegroup_data(const timegroup_config *list, const timegroup_item *item);
WEBMGMT_API int filterate_fwipport_data(const fwipport_config *list, const fwipport_item *item,
                                        const rule_config_set *config);
WEBMGMT_API int filterate_fwmac_data(const fwmac_config *list, const fwmac_item *item,
                                     const rule_config_set *config);

/* --- Rule-list forms ---------------------------------------------------------------------
 * Switch forms set the list's master switch ("enable" or "mode") and save the list; they
 * return 0. Element forms: op -1 deletes the element named by "id", -2 deletes all (both
 * return 0 and make no save call), 0 adds, any other op modifies. An add or modify returns
 * WEBMGMT_FORM_DUPLICATE (nothing stored) for a duplicate name or content while the
 * duplicate-check switch is on, else the store's result of the add or modify. */
WEBMGMT_API int save_vsipport_config(vsipport_config *list, const form_pair *pairs, int count);
WEBMGMT_API int save_vsipport_config_element(vsipport_config *list, int op, const form_pair *pairs,
                                             int count, rule_config_set *config);
WEBMGMT_API int save_fwipport_config(fwipport_config *list, const form_pair *pairs, int count);
WEBMGMT_API int save_fwipport_config_element(fwipport_config *list, int op, const form_pair *pairs,
                                             int count, rule_config_set *config);
/* The two group lists are taken from the config set (config->ipgroup, config->timegroup). */
WEBMGMT_API int save_ipgroup_config_element(rule_config_set *config, int op, const form_pair *pairs,
                                            int count);
WEBMGMT_API int save_timegroup_config_element(rule_config_set *config, int op,
                                              const form_pair *pairs, int count);
WEBMGMT_API int save_fwurl_config(fwurl_config *list, const form_pair *pairs, int count);
WEBMGMT_API int save_fwurl_config_element(fwurl_config *list, int op, const form_pair *pairs,
                                          int count, rule_config_set *config);
WEBMGMT_API int save_fwmac_config(fwmac_config *list, const form_pair *pairs, int count);
WEBMGMT_API int save_fwmac_config_element(fwmac_config *list, int op, const form_pair *pairs,
                                          int count, rule_config_set *config);
WEBMGMT_API int save_qos_config(qos_config *list, const form_pair *pairs, int count);
WEBMGMT_API int save_qos_config_element(qos_config *list, int op, const form_pair *pairs, int count,
                                        rule_config_set *config);

/* --- LAN, DHCP server, static-lease and WAN forms ----------------------------------------
 * Each applies the page's variables to its section and writes the section to flash; none
 * validates an address, a range or a lease time. The static-lease forms take op as the
 * rule-list element forms do (-1 delete the lease named by "id", -2 delete all, both
 * without a save; 0 add; any other op modify) and return the store's result of the add or
 * modify. The controller's forms fetch the LAN record themselves. */
WEBMGMT_API void save_lan_base(lan_config *lan, const form_pair *pairs, int count);
WEBMGMT_API int save_lan_dev_dhcpserver(lan_config *lan, const form_pair *pairs, int count);
/* Switching the controller off ("ac_enable" 0) marks the managed-AP list with 254. */
WEBMGMT_API int save_lan_ac_dhcpserver(const form_pair *pairs, int count);
WEBMGMT_API int save_lan_dhcp_server_bindlist(lan_config *lan, int op, const form_pair *pairs,
                                              int count);
WEBMGMT_API int save_lan_dhcp_server_acbindlist(int op, const form_pair *pairs, int count);
/* Edits WAN line `line` (0 to WEBMGMT_WAN_LINES - 1) and returns 0; a line outside the
 * record is refused with -1 and nothing is written. */
WEBMGMT_API int save_wan_base(wan_config *wan, int line, const form_pair *pairs, int count);
/* The bypass addressing and the cloud binding of the misc section; both return 0. */
WEBMGMT_API int save_bypass_base(const form_pair *pairs, int count);
WEBMGMT_API int save_cloud_base(misc_config *misc, const form_pair *pairs, int count);

/* --- System and wireless settings forms --------------------------------------------------
 * Each applies the request's variables to one section and saves it to flash (the roaming
 * form saves nothing). Absent variables leave their members as they were; nothing is
 * validated. They return 0 whatever the save gives, or -1 when the record is null (a
 * getter that found no memory). The forms without a record argument fetch the section
 * themselves. Passwords ("rootpwd", "userpwd", "pwd") are stored as they are sent. */
WEBMGMT_API int save_sys_user(const form_pair *pairs, int count);
WEBMGMT_API int save_sys_actimer(const form_pair *pairs, int count);
/* The roaming settings ("m_kvr_enable", "m_is_5g_first", "m_kvr_2g_rssi_thr",
 * "m_kvr_5g_rssi_thr") applied to this process's wireless record only, never saved. */
WEBMGMT_API int save_sys_aproaming(const form_pair *pairs, int count);
WEBMGMT_API int save_sys_dzm(misc_config *record, const form_pair *pairs, int count);
WEBMGMT_API int save_sys_nat(misc_config *record, const form_pair *pairs, int count);
WEBMGMT_API int save_sys_kvr(wifi_config *record, const form_pair *pairs, int count);
WEBMGMT_API int save_sys_ddns(misc_config *record, const form_pair *pairs, int count);
WEBMGMT_API int save_sys_log(const form_pair *pairs, int count);
WEBMGMT_API int save_sys_ntp(misc_config *record, const form_pair *pairs, int count);
/* Also writes sys_remote.subdomain ("<host>.remote", at most 127 characters) and
 * sys_remote.web_url ("http://<subdomain><remote_web_config_domain>", at most 511), then
 * saves the system record and the product information. */
WEBMGMT_API int save_sys_remote(const form_pair *pairs, int count, const char *host);
WEBMGMT_API int save_sys_timereboot(misc_config *record, const form_pair *pairs, int count);
WEBMGMT_API int save_product_Info(const form_pair *pairs, int count);

/* The device's radios: "<member><radio>" for radio members, "<member><radio><vap>" for VAP
 * members (m_ssid12: radio 1, VAP 2), every radio 0 to 2 and VAP 0 to 3. Text members are
 * filled up to their size (a value as long as the member leaves no terminator). */
WEBMGMT_API int save_wifi_all_radio_config(wifi_config *record, const form_pair *pairs, int count);
/* The repeater block of radio `radio` (0 to 2), bare member names; "m_phymode" sets the
 * radio's own PHY mode. m_repeater_radio_id becomes `radio` even when nothing is sent; a
 * radio outside 0 to 2 changes nothing, saves nothing and returns -1. */
WEBMGMT_API int save_wifi_repeater_config(wifi_config *record, const form_pair *pairs, int count,
                                          int radio);
/* "m_enable", "m_start_time", "m_end_time" of m_timeclosectrl; `ignored` is not used: the
 * form fetches the wireless record itself. */
WEBMGMT_API int save_wifi_timeclose_config(void *ignored, const form_pair *pairs, int count);

/* ===================================================================================== */
/* Client, access-list and station-mark forms                                            */
/* ===================================================================================== */

/* Result of save_user_mark() when more than WEBMGMT_STA_MARKS_USABLE - 1 marks are in use. */
#define WEBMGMT_MARK_TABLE_FULL 2

/* Marks the station `mac` ("AA:BB:CC:DD:EE:FF") with the form's "mark" in entry `index` of
 * the station-mark table of `clients`, then saves the clients section to flash. 2 (nothing
 * changed) when 256 entries are already in use, -1 (nothing changed) for an index outside
 * the table, else 0. */
WEBMGMT_API int save_user_mark(clients_config *clients, const form_pair *pairs, int count,
                               int index, const char *mac);
/* Clears the first mark entry whose MAC, printed in upper case with colons, equals `mac`
 * exactly (a lower-case text matches nothing), and saves the clients section to flash
 * whether or not one matched. Returns 0. */
WEBMGMT_API int del_user_mark(clients_config *clients, const char *mac);
/* Sets the access-control mode of all three radios and saves the wireless section. 0. */
WEBMGMT_API int save_wifi_acl_mode_config(int mode);
/* The access list of radio `radio` (0 to 2): "id", "name", "mac", "status", "mark". Add (op
 * 0) and modify check the name under the access-list lock, which the form holds around the
 * check and the store; 10 for a name another entry bears (or a lock file that cannot be
 * opened), else the store's result, then the wireless section is saved. Deletes (-1 by
 * "id", -2 all) return 0. -1 for a radio outside 0 to 2. */
WEBMGMT_API int save_wifi_acl_config(int op, const form_pair *pairs, int count, int radio);
/* The global access list of the misc-ext section: -1 deletes by "id", 0 adds, any other op
 * (-2 included: the list has no delete-all) modifies; no name check. The section is saved
 * after each; the store's result, 0 for a delete. */
WEBMGMT_API int save_wifi_acl_config_ext(int op, const form_pair *pairs, int count);
/* Client groups ("m_id", "m_name"): -1 delete by "id", -2 delete all, 0 add, else modify.
 * The store's result (0 for deletes); the form makes no save call of its own. */
WEBMGMT_API int save_clients_groups_config(int op, const form_pair *pairs, int count);
/* Client accounts (the members of client_account, by their names): -1 deletes by "id" and
 * tells /proc/mac that the "m_haddr" station is unbound, -2 deletes all, 0 adds, else
 * modifies. After an add or modify the store accepted, a well-formed "m_haddr" is written to
 * /proc/mac: bound (the MAC alone) when m_is_bindmac is 1, else unbound (the MAC and eleven
 * dashes). The store's result (0 for deletes). */
WEBMGMT_API int save_clients_config(int op, const form_pair *pairs, int count);

/* --- AP-template and managed-AP forms ----------------------------------------------------
 * Radio and VAP variables are named as in the device's own all-radio wireless form: the
 * member with the radio index ("m_channel1"), VAP members with the radio and the VAP index
 * ("m_ssid12"). The device blocks use their dotted names ("m_timereboot.m_TimeReboot_Hour",
 * "m_weblogin.m_enable", "m_iptv.m_vlanid"). Texts are cut at their members' sizes.
 * The default template's forms, one per panel, return the save's result. */
WEBMGMT_API int save_defap_radio_config(defap_config *record, const form_pair *pairs, int count);
WEBMGMT_API int save_defap_timereboot_config(defap_config *record, const form_pair *pairs,
                                             int count);
WEBMGMT_API int save_defap_weblogin_config(defap_config *record, const form_pair *pairs, int count);
WEBMGMT_API int save_defap_iptv_config(defap_config *record, const form_pair *pairs, int count);
/* The template list: op -1 deletes the template "m_wlan_group_id", -2 deletes all (both
 * return 0); op 0 adds a template made from the default template and the request; any other
 * op modifies the template "m_wlan_group_id". WEBMGMT_FORM_DUPLICATE when another template
 * bears the name (nothing stored), -1 for an unknown id or a full list, else the store's
 * result. */
WEBMGMT_API int save_apTemplate_config_element(ap_template_list_config *list, int op,
                                               const form_pair *pairs, int count);
/* Op 0 binds the AP "m_dev_mac" to the template "m_wlan_group_id" (the AP takes the
 * template's name as its group and its radios and blocks as its configuration), op -1
 * unbinds it. 0, or -1 when the AP or the template is not found. */
WEBMGMT_API int save_ap_template_bind(manage_ap_list_config *aps, ap_template_list_config *list,
                                      int op, const form_pair *pairs, int count);
/* The settings of the AP "m_dev_mac": "m_dev_name", "m_group_name", "m_dev_position",
 * "m_TimeRebootEnable", "m_RebootTime" and the "m_timereboot.*" block of its configuration;
 * and its radios and VAPs. The save's result, or -1 when no AP has that MAC. */
WEBMGMT_API int save_ap_config(manage_ap_list_config *aps, const form_pair *pairs, int count);
WEBMGMT_API int save_ap_radio_config(manage_ap_list_config *aps, const form_pair *pairs, int count);

WEBMGMT_END_DECLS
#endif /* WEBMGMT_FORMS_H */
