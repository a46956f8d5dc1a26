/*
 * webmgmt: the wireless and system records (the device's radios, the default AP
 * template, product information, system settings, the global access list) and their
 * field-table builders.
 */
#ifndef WEBMGMT_WIRELESS_H
#define WEBMGMT_WIRELESS_H

#include <stdint.h>

#include "webmgmt/common.h"
#include "webmgmt/fields.h"
#include "webmgmt/record_types.h"

WEBMGMT_BEGIN_DECLS

/* ===================================================================================== */
/* Wireless and system record catalogue                                                  */
/* ===================================================================================== */

/* --- wifi_config: the device's own radios ----------------------------------------------- */

#define WEBMGMT_WIFI_RADIO_COUNT 3
#define WEBMGMT_WIFI_VAP_COUNT 4
#define WEBMGMT_WIFI_ACL_COUNT 32

/* A virtual access point; the repeater (client) interface has the same layout. */
#define WEBMGMT_WIFI_VAP_MEMBERS(X)                                                                \
    X(4, uint8_t, m_wlan_enable, )                                                                 \
    X(0, uint8_t, pad_m_mode, [3])                                                                 \
    X(1, int32_t, m_mode, )                                                                        \
    X(4, char, m_ifname, [16])                                                                     \
    X(4, uint8_t, m_wlan_hide_ssid, )                                                              \
    X(4, char, m_ssid, [64])                                                                       \
    X(0, uint8_t, pad_m_vlanid, [1])                                                               \
    X(2, int16_t, m_vlanid, )                                                                      \
    X(4, uint8_t, m_lockbssid, )                                                                   \
    X(5, mac_field, m_bssid, )                                                                     \
    X(4, uint8_t, m_security, )                                                                    \
    X(4, uint8_t, m_securitycipher, )                                                              \
    X(4, uint8_t, m_authmode, )                                                                    \
    X(4, uint8_t, m_wep_keytype, )                                                                 \
    X(4, char, m_wep_keystr, [30])                                                                 \
    X(4, uint8_t, m_psk_keytype, )                                                                 \
    X(4, char, m_psk_keystr, [64])                                                                 \
    X(0, uint8_t, pad_m_radius_serverip, [2])                                                      \
    X(6, ipaddr_field, m_radius_serverip, )                                                        \
    X(2, int16_t, m_radius_serverport, )                                                           \
    X(4, char, m_radius_sharekey, [64])                                                            \
    X(0, uint8_t, pad_m_tx_pkts, [2])                                                              \
    X(9, uint32_t, m_tx_pkts, )                                                                    \
    X(9, uint32_t, m_rx_pkts, )                                                                    \
    X(0, uint8_t, pad_m_tx_bytes, [4])                                                             \
    X(8, uint64_t, m_tx_bytes, )                                                                   \
    X(8, uint64_t, m_rx_bytes, )                                                                   \
    X(4, char, m_bind_eth, [16])                                                                   \
    X(4, uint8_t, m_p2p, )                                                                         \
    X(4, uint8_t, m_vlan_tag_enable, )                                                             \
    X(5, char, resved, [499])                                                                      \
    X(0, uint8_t, pad_end, [3])
typedef struct wifi_vap {
    WEBMGMT_WIFI_VAP_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} wifi_vap;
WEBMGMT_STATIC_ASSERT(sizeof(wifi_vap) == 832, "wifi_vap layout");
WEBMGMT_STATIC_ASSERT(offsetof(wifi_vap, m_tx_bytes) == 296, "wifi_vap layout");
WEBMGMT_STATIC_ASSERT(offsetof(wifi_vap, m_rx_bytes) == 304, "wifi_vap layout");

#define WEBMGMT_WIFI_ACLLIST_MEMBERS(X)                                                            \
    X(2, int32_t, mode, )                                                                          \
    X(2, int16_t, count, )                                                                         \
    X(0, uint8_t, pad_element, [2])                                                                \
    X(0, acl_entry, element, [WEBMGMT_WIFI_ACL_COUNT])
typedef struct wifi_acllist {
    WEBMGMT_WIFI_ACLLIST_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} wifi_acllist;
WEBMGMT_STATIC_ASSERT(sizeof(wifi_acllist) == 29704, "wifi_acllist layout");

#define WEBMGMT_WIFI_RADIO_MEMBERS(X)                                                              \
    X(4, uint8_t, m_radio_type, )                                                                  \
    X(4, char, m_phyname, [16])                                                                    \
    X(4, uint8_t, m_enable, )                                                                      \
    X(4, uint8_t, m_phymode, )                                                                     \
    X(4, uint8_t, m_wirelessmode, )                                                                \
    X(4, uint8_t, m_wirelessbwmode, )                                                              \
    X(4, uint8_t, m_ampduenable, )                                                                 \
    X(4, uint8_t, m_wlan_isolate, )                                                                \
    X(4, uint8_t, m_wlan_rate, )                                                                   \
    X(2, int16_t, m_wlan_beacon_interval, )                                                        \
    X(2, int16_t, m_wlan_rts, )                                                                    \
    X(2, int16_t, m_wlan_frag, )                                                                   \
    X(2, int16_t, m_wlan_shortGI, )                                                                \
    X(2, int16_t, m_wlan_txpower, )                                                                \
    X(2, int16_t, m_wlan_max_txpower, )                                                            \
    X(2, int16_t, m_channel, )                                                                     \
    X(2, int16_t, m_channel_config, )                                                              \
    X(2, int16_t, m_rev_option, )                                                                  \
    X(2, int16_t, m_coverage_threshold, )                                                          \
    X(2, int16_t, m_MaxStanum, )                                                                   \
    X(4, char, contrystr, [4])                                                                     \
    X(2, int16_t, m_dfs_enable, )                                                                  \
    X(0, uint8_t, pad_m_vap, [4])                                                                  \
    X(0, wifi_vap, m_vap, [WEBMGMT_WIFI_VAP_COUNT])                                                \
    X(0, wifi_vap, m_repeater, )                                                                   \
    X(0, wifi_acllist, m_acllist, )                                                                \
    X(2, int16_t, m_stanum, )                                                                      \
    X(0, uint8_t, pad_m_acktimeout, [2])                                                           \
    X(1, int32_t, m_acktimeout, )                                                                  \
    X(1, int32_t, m_wmm, )                                                                         \
    X(4, uint8_t, m_txchainmask, )                                                                 \
    X(4, uint8_t, m_rxchainmask, )                                                                 \
    X(4, uint8_t, m_support_6E, )                                                                  \
    X(4, uint8_t, m_no_support_160M, )                                                             \
    X(4, uint8_t, channel_limit_enable, )                                                          \
    X(4, char, resved, [497])                                                                      \
    X(0, uint8_t, pad_end, [6])
typedef struct wifi_radio {
    WEBMGMT_WIFI_RADIO_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} wifi_radio;
WEBMGMT_STATIC_ASSERT(sizeof(wifi_radio) == 34440, "wifi_radio layout");
WEBMGMT_STATIC_ASSERT(offsetof(wifi_radio, m_vap) == 56, "wifi_radio layout");
WEBMGMT_STATIC_ASSERT(offsetof(wifi_radio, m_repeater) == 3384, "wifi_radio layout");

#define WEBMGMT_WIFI_TIMECLOSE_MEMBERS(X)                                                          \
    X(4, uint8_t, m_enable, )                                                                      \
    X(4, char, m_start_time, [10])                                                                 \
    X(4, char, m_end_time, [10])
typedef struct wifi_timeclose {
    WEBMGMT_WIFI_TIMECLOSE_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} wifi_timeclose;
WEBMGMT_STATIC_ASSERT(sizeof(wifi_timeclose) == 21, "wifi_timeclose layout");

#define WEBMGMT_WIFI_CONFIG_MEMBERS(X)                                                             \
    WEBMGMT_RECORD_HEAD(X)                                                                         \
    X(1, int32_t, m_repeater_radio_id, )                                                           \
    X(0, uint8_t, pad_m_radio, [4])                                                                \
    X(0, wifi_radio, m_radio, [WEBMGMT_WIFI_RADIO_COUNT])                                          \
    X(0, wifi_timeclose, m_timeclosectrl, )                                                        \
    X(0, uint8_t, pad_kvr_2g_rssi_thr, [1])                                                        \
    X(2, int16_t, kvr_2g_rssi_thr, )                                                               \
    X(2, int16_t, kvr_5g_rssi_thr, )                                                               \
    X(4, uint8_t, is_5g_first, )                                                                   \
    X(4, uint8_t, kvr_enable, )                                                                    \
    X(5, char, resved, [494])                                                                      \
    X(0, uint8_t, pad_end, [6])
typedef struct wifi_config {
    WEBMGMT_WIFI_CONFIG_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} wifi_config;
WEBMGMT_STATIC_ASSERT(sizeof(wifi_config) == 103992, "wifi_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(wifi_config, lock_location) == 132, "wifi_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(wifi_config, m_radio) == 144, "wifi_config layout");

/* --- defap_config: the default AP template ---------------------------------------------- */

#define WEBMGMT_DEFAP_VAP_MEMBERS(X)                                                               \
    X(4, uint8_t, m_wlan_enable, )                                                                 \
    X(4, uint8_t, m_wlan_hide_ssid, )                                                              \
    X(4, char, m_ssid, [64])                                                                       \
    X(2, int16_t, m_vlanid, )                                                                      \
    X(5, mac_field, m_bssid, )                                                                     \
    X(4, uint8_t, m_security, )                                                                    \
    X(4, uint8_t, m_securitycipher, )                                                              \
    X(4, uint8_t, m_authmode, )                                                                    \
    X(4, uint8_t, m_wep_keytype, )                                                                 \
    X(4, char, m_wep_keystr, [30])                                                                 \
    X(4, uint8_t, m_psk_keytype, )                                                                 \
    X(4, char, m_psk_keystr, [64])                                                                 \
    X(0, uint8_t, pad_m_radius_serverip, [3])                                                      \
    X(9, ipaddr_field, m_radius_serverip, )                                                        \
    X(2, int16_t, m_radius_serverport, )                                                           \
    X(4, char, m_radius_sharekey, [64])                                                            \
    X(0, uint8_t, pad_m_tx_pkts, [2])                                                              \
    X(9, uint32_t, m_tx_pkts, )                                                                    \
    X(9, uint32_t, m_rx_pkts, )                                                                    \
    X(0, uint8_t, pad_m_tx_bytes, [4])                                                             \
    X(8, uint64_t, m_tx_bytes, )                                                                   \
    X(8, uint64_t, m_rx_bytes, )
typedef struct defap_vap {
    WEBMGMT_DEFAP_VAP_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} defap_vap;
WEBMGMT_STATIC_ASSERT(sizeof(defap_vap) == 288, "defap_vap layout");
WEBMGMT_STATIC_ASSERT(offsetof(defap_vap, m_tx_bytes) == 272, "defap_vap layout");
WEBMGMT_STATIC_ASSERT(offsetof(defap_vap, m_rx_bytes) == 280, "defap_vap layout");

#define WEBMGMT_DEFAP_RADIO_MEMBERS(X)                                                             \
    X(4, uint8_t, m_radio_type, )                                                                  \
    X(4, uint8_t, m_wirelessmode, )                                                                \
    X(4, uint8_t, m_wirelessbwmode, )                                                              \
    X(4, uint8_t, m_ampduenable, )                                                                 \
    X(4, uint8_t, m_wlan_isolate, )                                                                \
    X(4, uint8_t, m_wlan_rate, )                                                                   \
    X(2, int16_t, m_wlan_beacon_interval, )                                                        \
    X(2, int16_t, m_wlan_rts, )                                                                    \
    X(2, int16_t, m_wlan_frag, )                                                                   \
    X(2, int16_t, m_wlan_shortGI, )                                                                \
    X(2, int16_t, m_wlan_txpower, )                                                                \
    X(2, int16_t, m_wlan_max_txpower, )                                                            \
    X(2, int16_t, m_channel, )                                                                     \
    X(2, int16_t, m_rev_option, )                                                                  \
    X(2, int16_t, m_coverage_threshold, )                                                          \
    X(4, int16_t, m_MaxStanum, )                                                                   \
    X(4, char, contrystr, [4])                                                                     \
    X(0, uint8_t, pad_m_vap, [2])                                                                  \
    X(0, defap_vap, m_vap, [WEBMGMT_WIFI_VAP_COUNT])
typedef struct defap_radio {
    WEBMGMT_DEFAP_RADIO_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} defap_radio;
WEBMGMT_STATIC_ASSERT(sizeof(defap_radio) == 1184, "defap_radio layout");
WEBMGMT_STATIC_ASSERT(offsetof(defap_radio, m_vap) == 32, "defap_radio layout");

#define WEBMGMT_DEFAP_WEBLOGIN_MEMBERS(X)                                                          \
    X(4, uint8_t, m_enable, )                                                                      \
    X(4, uint8_t, m_usertype, )                                                                    \
    X(4, char, m_username, [32])                                                                   \
    X(4, char, m_userpwd, [32])
typedef struct defap_weblogin {
    WEBMGMT_DEFAP_WEBLOGIN_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} defap_weblogin;
WEBMGMT_STATIC_ASSERT(sizeof(defap_weblogin) == 66, "defap_weblogin layout");

#define WEBMGMT_DEFAP_IPTV_MEMBERS(X)                                                              \
    X(4, uint8_t, m_enable, )                                                                      \
    X(0, uint8_t, pad_m_vlanid, [3])                                                               \
    X(9, uint32_t, m_vlanid, )
typedef struct defap_iptv {
    WEBMGMT_DEFAP_IPTV_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} defap_iptv;
WEBMGMT_STATIC_ASSERT(sizeof(defap_iptv) == 8, "defap_iptv layout");

#define WEBMGMT_DEFAP_CONFIG_MEMBERS(X)                                                            \
    WEBMGMT_RECORD_HEAD(X)                                                                         \
    X(4, uint8_t, m_wlan_group_id, )                                                               \
    X(0, uint8_t, pad_m_radio, [7])                                                                \
    X(0, defap_radio, m_radio, [WEBMGMT_WIFI_RADIO_COUNT])                                         \
    X(0, timereboot_config, m_timereboot, )                                                        \
    X(0, defap_weblogin, m_weblogin, )                                                             \
    X(0, defap_iptv, m_iptv, )                                                                     \
    X(5, char, resved, [500])                                                                      \
    X(0, uint8_t, pad_end, [4])
typedef struct defap_config {
    WEBMGMT_DEFAP_CONFIG_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} defap_config;
WEBMGMT_STATIC_ASSERT(sizeof(defap_config) == 4280, "defap_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(defap_config, lock_location) == 132, "defap_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(defap_config, m_radio) == 144, "defap_config layout");

/* --- productinfo_config: product identity and hardware capabilities --------------------- */

#define WEBMGMT_PRODUCT_RADIO_SPEC_MEMBERS(X)                                                      \
    X(1, int32_t, radio_type, )                                                                    \
    X(1, int32_t, txpowerlist, [5])                                                                \
    X(4, char, countrylist, [15][10])                                                              \
    X(0, uint8_t, pad_phymodelist, [2])                                                            \
    X(1, int32_t, phymodelist, [30])                                                               \
    X(1, int32_t, ap_authlist, [15])                                                               \
    X(1, int32_t, repeater_authlist, [20])                                                         \
    X(1, int32_t, max_sta, )
typedef struct product_radio_spec {
    WEBMGMT_PRODUCT_RADIO_SPEC_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} product_radio_spec;
WEBMGMT_STATIC_ASSERT(sizeof(product_radio_spec) == 440, "product_radio_spec layout");

#define WEBMGMT_PRODUCT_PORT_SPEC_MEMBERS(X)                                                       \
    X(4, uint8_t, eth_is_phy, )                                                                    \
    X(4, uint8_t, eth_phy_num, )                                                                   \
    X(4, uint8_t, switchid, )                                                                      \
    X(4, uint8_t, portid, )
typedef struct product_port_spec {
    WEBMGMT_PRODUCT_PORT_SPEC_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} product_port_spec;
WEBMGMT_STATIC_ASSERT(sizeof(product_port_spec) == 4, "product_port_spec layout");

#define WEBMGMT_PRODUCT_PORTS 12

#define WEBMGMT_PRODUCT_DEV_SPEC_MEMBERS(X)                                                        \
    X(1, int32_t, support_radio_count, )                                                           \
    X(1, int32_t, support_vap_count, )                                                             \
    X(0, product_radio_spec, support_radio_spec, [WEBMGMT_WIFI_RADIO_COUNT])                       \
    X(1, int32_t, support_opmode, [6])                                                             \
    X(4, char, opmode_lan_devlist, [6][100])                                                       \
    X(1, int32_t, support_eth_count, )                                                             \
    X(4, char, support_languagelist, [5][10])                                                      \
    X(0, uint8_t, pad_support_eth_speed, [2])                                                      \
    X(1, int32_t, support_eth_speed, [WEBMGMT_PRODUCT_PORTS])                                      \
    X(4, char, support_eth_list, [WEBMGMT_PRODUCT_PORTS][10])                                      \
    X(4, char, countrydesclist, [15][80])                                                          \
    X(4, char, support_eth_type, [12])                                                             \
    X(1, int32_t, support_tpc, )                                                                   \
    X(1, int32_t, support_iptv, )                                                                  \
    X(5, uint8_t, support_8337, )                                                                  \
    X(5, uint8_t, support_hwatchdog, )                                                             \
    X(4, uint8_t, sysled_on_after_wifi_up, )                                                       \
    X(4, uint8_t, have_wireless1_mac, )                                                            \
    X(4, uint8_t, have_wireless2_mac, )                                                            \
    X(4, uint8_t, have_wireless3_mac, )                                                            \
    X(4, uint8_t, support_btn_led, )                                                               \
    X(4, uint8_t, support_ac_led_onoff, )                                                          \
    X(4, uint8_t, support_sysled_qflash, )                                                         \
    X(4, uint8_t, disable_tkip, )                                                                  \
    X(4, uint8_t, support_high_low_frequency, )                                                    \
    X(5, uint8_t, support_rs_feature, )                                                            \
    X(4, uint8_t, support_change_wanport, )                                                        \
    X(4, uint8_t, sysupgrade_encrypto_type, )                                                      \
    X(4, uint8_t, wan_phy_addr, )                                                                  \
    X(5, uint8_t, support_set_acktimeout_reg, )                                                    \
    X(4, uint8_t, sfp_port, )                                                                      \
    X(4, uint8_t, support_eth_port_config, )                                                       \
    X(0, product_port_spec, port_spec, [WEBMGMT_PRODUCT_PORTS])                                    \
    X(4, uint8_t, support_ac_find_ap, )                                                            \
    X(4, uint8_t, support_ac_find_ap_led_showtime, )                                               \
    X(1, int32_t, support_ac_find_ap_led_showinterval, )                                           \
    X(5, uint8_t, led_on_val, )                                                                    \
    X(5, uint8_t, led_off_val, )                                                                   \
    X(4, uint8_t, dev_2g5g_control_same_led, )                                                     \
    X(4, uint8_t, support_fit_sysled_qflash, )                                                     \
    X(4, uint8_t, auto_channel_is_list, )                                                          \
    X(0, uint8_t, pad_end, [3])
typedef struct product_dev_spec {
    WEBMGMT_PRODUCT_DEV_SPEC_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} product_dev_spec;
WEBMGMT_STATIC_ASSERT(sizeof(product_dev_spec) == 3476, "product_dev_spec layout");

#define WEBMGMT_PRODUCT_CLOUD_MEMBERS(X)                                                           \
    X(5, char, dev_captbl_mask, [40][40])                                                          \
    X(5, char, dev_captbl_mask_gw, [20][40])                                                       \
    X(5, char, dev_captbl_mask_repeater, [20][40])                                                 \
    X(5, char, dev_captbl_mask_ap, [20][40])                                                       \
    X(5, uint8_t, cloudclient_service_type, )                                                      \
    X(5, uint8_t, cloudclient_product_type, )                                                      \
    X(5, char, cloudclient_chip_product_type, [20])                                                \
    X(5, char, cloudclient_up_mac_devname, [10])                                                   \
    X(5, uint8_t, dev_support_led_onoff, )                                                         \
    X(5, char, dev_support_ac, [10])                                                               \
    X(5, char, dev_support_manage_ap, [10])                                                        \
    X(5, uint8_t, dev_support_max_user, )                                                          \
    X(5, char, dev_support_auth, [10])                                                             \
    X(5, uint8_t, dev_support_radio_num, )                                                         \
    X(5, uint8_t, dev_support_vap_num, )                                                           \
    X(5, uint8_t, dev_support_behavior, )                                                          \
    X(5, uint8_t, dev_support_famliy_member, )                                                     \
    X(5, char, dev_support_remote_manage, [10])                                                    \
    X(5, uint8_t, dev_support_sta_wchat_tip, )                                                     \
    X(5, char, dev_support_time_reboot, [10])                                                      \
    X(5, uint8_t, dev_support_batch_upgrade, )                                                     \
    X(5, uint8_t, dev_support_ghcp, )                                                              \
    X(5, uint8_t, dev_support_reboot, )                                                            \
    X(5, uint8_t, dev_support_upgrade, )                                                           \
    X(5, char, dev_support_remote_switch, [10])                                                    \
    X(5, char, dev_support_feature_libup, [10])
typedef struct product_cloud {
    WEBMGMT_PRODUCT_CLOUD_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} product_cloud;
WEBMGMT_STATIC_ASSERT(sizeof(product_cloud) == 4113, "product_cloud layout");

/* One switch port's settings. */
#define WEBMGMT_PRODUCT_PORT_MEMBERS(X)                                                            \
    X(4, char, m_portname, [16])                                                                   \
    X(4, uint8_t, m_enable, )                                                                      \
    X(4, uint8_t, m_mode, )                                                                        \
    X(4, uint8_t, m_auto_negotiation, )                                                            \
    X(4, uint8_t, m_duplex, )                                                                      \
    X(4, uint8_t, m_speed_10, )                                                                    \
    X(4, uint8_t, m_speed_100, )                                                                   \
    X(4, uint8_t, m_speed_1000, )                                                                  \
    X(4, uint8_t, m_speed_2500, )                                                                  \
    X(4, uint8_t, m_speed_10000, )
typedef struct product_port {
    WEBMGMT_PRODUCT_PORT_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} product_port;
WEBMGMT_STATIC_ASSERT(sizeof(product_port) == 25, "product_port layout");

#define WEBMGMT_PRODUCTINFO_CONFIG_MEMBERS(X)                                                      \
    WEBMGMT_RECORD_HEAD(X)                                                                         \
    X(5, char, productname, [50])                                                                  \
    X(5, char, device_sn, [50])                                                                    \
    X(1, int32_t, dev_opmode, )                                                                    \
    X(5, char, default_language, [10])                                                             \
    X(5, char, device_name, [100])                                                                 \
    X(5, char, device_position, [100])                                                             \
    X(5, uint8_t, upgrade_reset, )                                                                 \
    X(5, char, device_cpu, [10])                                                                   \
    X(0, uint8_t, pad_device_flash_size, [1])                                                      \
    X(2, int16_t, device_flash_size, )                                                             \
    X(2, int16_t, device_ram_size, )                                                               \
    X(2, int16_t, max_device_ap, )                                                                 \
    X(5, char, remote_server_addr, [200])                                                          \
    X(5, char, remote_web_config_domain, [200])                                                    \
    X(5, char, config_ac_rom_update_url, [200])                                                    \
    X(5, char, config_ap_rom_update_url, [200])                                                    \
    X(5, char, config_get_telnet_port_url, [200])                                                  \
    X(0, product_dev_spec, dev_spec, )                                                             \
    X(5, uint8_t, run_first, )                                                                     \
    X(5, uint8_t, add_mac2ssid, )                                                                  \
    X(5, uint8_t, add_mac_len, )                                                                   \
    X(5, uint8_t, ap_mode, )                                                                       \
    X(5, char, device_cpu_freq, [10])                                                              \
    X(0, product_cloud, config_cloud, )                                                            \
    X(4, uint8_t, test_mode, )                                                                     \
    X(5, uint8_t, is_first, )                                                                      \
    X(5, uint8_t, fit_to_fat, )                                                                    \
    X(4, uint8_t, btn_led_off_status, )                                                            \
    X(5, char, web_lock_time, [10])                                                                \
    X(5, uint8_t, profile_suffix, )                                                                \
    X(4, uint8_t, timed_wifi_led_enable, )                                                         \
    X(5, uint8_t, gateway_use_defipaddr, )                                                         \
    X(0, product_port, port, [WEBMGMT_PRODUCT_PORTS])                                              \
    X(5, uint8_t, support_up_wifi, )                                                               \
    X(5, uint8_t, support_TOVAN_cl, )                                                              \
    X(5, uint8_t, disable_switch_vlan, )                                                           \
    X(5, char, resved, [96])                                                                       \
    X(0, uint8_t, pad_end, [1])
typedef struct productinfo_config {
    WEBMGMT_PRODUCTINFO_CONFIG_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} productinfo_config;
WEBMGMT_STATIC_ASSERT(sizeof(productinfo_config) == 9488, "productinfo_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(productinfo_config, lock_location) == 132,
                      "productinfo_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(productinfo_config, dev_spec) == 1468, "productinfo_config layout");

/* --- misc_config: system settings ------------------------------------------------------- */

#define WEBMGMT_MISC_USER_MEMBERS(X)                                                               \
    X(1, int32_t, lock_location, )                                                                 \
    X(5, char, rootname, [64])                                                                     \
    X(5, char, rootpwd, [64])                                                                      \
    X(9, uint32_t, root_type, )                                                                    \
    X(5, char, username, [64])                                                                     \
    X(5, char, userpwd, [64])                                                                      \
    X(9, uint32_t, user_type, )                                                                    \
    X(5, uint8_t, userpwdaswifipwd, )                                                              \
    X(5, uint8_t, userpwd_encrypt, )                                                               \
    X(5, uint8_t, userpwd_encrypt_type, )                                                          \
    X(4, char, pwd_random, [8])                                                                    \
    X(4, uint8_t, is_sup_pwdPro, )                                                                 \
    X(5, char, resved, [489])                                                                      \
    X(0, uint8_t, pad_end, [3])
typedef struct misc_user {
    WEBMGMT_MISC_USER_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} misc_user;
WEBMGMT_STATIC_ASSERT(sizeof(misc_user) == 772, "misc_user layout");

#define WEBMGMT_MISC_ACTIMER_MEMBERS(X)                                                            \
    X(1, int32_t, lock_location, )                                                                 \
    X(5, uint8_t, sys_ac_discovery_timeout, )                                                      \
    X(5, uint8_t, sys_ac_echo_interval, )                                                          \
    X(5, char, resved, [500])                                                                      \
    X(0, uint8_t, pad_end, [2])
typedef struct misc_actimer {
    WEBMGMT_MISC_ACTIMER_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} misc_actimer;
WEBMGMT_STATIC_ASSERT(sizeof(misc_actimer) == 508, "misc_actimer layout");

#define WEBMGMT_MISC_DMZ_MEMBERS(X)                                                                \
    X(1, int32_t, lock_location, )                                                                 \
    X(5, uint8_t, dmz_enable, )                                                                    \
    X(5, char, dmz_host, [20])                                                                     \
    X(5, char, resved, [500])                                                                      \
    X(0, uint8_t, pad_end, [3])
typedef struct misc_dmz {
    WEBMGMT_MISC_DMZ_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} misc_dmz;
WEBMGMT_STATIC_ASSERT(sizeof(misc_dmz) == 528, "misc_dmz layout");

#define WEBMGMT_MISC_LOG_MEMBERS(X)                                                                \
    X(1, int32_t, lock_location, )                                                                 \
    X(5, uint8_t, log_enable, )                                                                    \
    X(5, uint8_t, remote_log_enable, )                                                             \
    X(5, char, remote_log_server_host, [50])                                                       \
    X(5, char, resved, [500])
typedef struct misc_log {
    WEBMGMT_MISC_LOG_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} misc_log;
WEBMGMT_STATIC_ASSERT(sizeof(misc_log) == 556, "misc_log layout");

#define WEBMGMT_MISC_NTP_MEMBERS(X)                                                                \
    X(1, int32_t, lock_location, )                                                                 \
    X(5, uint8_t, enable, )                                                                        \
    X(5, char, ntp_tz, [20])                                                                       \
    X(5, uint8_t, ntp_server_mode, )                                                               \
    X(5, char, ntp_server_addr, [128])                                                             \
    X(5, char, resved, [500])                                                                      \
    X(0, uint8_t, pad_end, [2])
typedef struct misc_ntp {
    WEBMGMT_MISC_NTP_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} misc_ntp;
WEBMGMT_STATIC_ASSERT(sizeof(misc_ntp) == 656, "misc_ntp layout");

/* Remote management: the web switch is listed; the telnet switch, port, the remote host
 * name ("<host>.remote"), the remote URL ("http://<remote host><product text>") and the
 * server address are set by the remote-access form and printed by the misc view. */
#define WEBMGMT_MISC_REMOTE_MEMBERS(X)                                                             \
    X(5, uint8_t, enable_web, )                                                                    \
    X(0, uint8_t, enable_telnet, )                                                                 \
    X(0, uint16_t, remote_port, )                                                                  \
    X(0, char, subdomain, [128])                                                                   \
    X(0, char, web_url, [512])                                                                     \
    X(0, char, server_addr, [128])
typedef struct misc_remote {
    WEBMGMT_MISC_REMOTE_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} misc_remote;
WEBMGMT_STATIC_ASSERT(sizeof(misc_remote) == 772, "misc_remote layout");

#define WEBMGMT_MISC_CLOUD_MEMBERS(X)                                                              \
    X(5, uint8_t, enable, )                                                                        \
    X(5, char, server, [100])                                                                      \
    X(5, char, bind_code, [100])                                                                   \
    X(5, char, location_x, [50])                                                                   \
    X(5, char, location_y, [50])                                                                   \
    X(5, uint8_t, cloud_updata_ok, )                                                               \
    X(5, char, desc, [100])                                                                        \
    X(5, char, last_sw_ver, [256])                                                                 \
    X(5, char, sw_up_orderid, [100])                                                               \
    X(5, char, user_name, [32])                                                                    \
    X(5, char, user_pwd, [32])                                                                     \
    X(5, char, appid, [48])                                                                        \
    X(5, char, appsecret, [48])                                                                    \
    X(5, char, productid, [40])
typedef struct misc_cloud {
    WEBMGMT_MISC_CLOUD_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} misc_cloud;
WEBMGMT_STATIC_ASSERT(sizeof(misc_cloud) == 958, "misc_cloud layout");

#define WEBMGMT_MISC_NAT_MEMBERS(X) X(5, uint8_t, enable, )
typedef struct misc_nat {
    WEBMGMT_MISC_NAT_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} misc_nat;
WEBMGMT_STATIC_ASSERT(sizeof(misc_nat) == 1, "misc_nat layout");

#define WEBMGMT_MISC_DDNS_MEMBERS(X)                                                               \
    X(5, uint8_t, enable, )                                                                        \
    X(5, char, user, [100])                                                                        \
    X(5, char, pwd, [100])                                                                         \
    X(5, char, ip, [50])                                                                           \
    X(5, char, domain, [128])                                                                      \
    X(5, uint8_t, usertype, )                                                                      \
    X(5, uint8_t, conn_status, )                                                                   \
    X(5, uint8_t, support_planet, )                                                                \
    X(5, uint8_t, wanid, )                                                                         \
    X(5, char, resved, [500])
typedef struct misc_ddns {
    WEBMGMT_MISC_DDNS_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} misc_ddns;
WEBMGMT_STATIC_ASSERT(sizeof(misc_ddns) == 883, "misc_ddns layout");

#define WEBMGMT_MISC_ALARM_MEMBERS(X)                                                              \
    X(5, uint8_t, alarm_suppression_enable, )                                                      \
    X(5, uint8_t, alarm_suppression_time, )                                                        \
    X(5, uint8_t, cpu_alarm_enable, )                                                              \
    X(5, uint8_t, mem_alarm_enable, )                                                              \
    X(5, uint8_t, alarm_cpu_rate, )                                                                \
    X(5, uint8_t, alarm_mem_rate, )                                                                \
    X(5, uint8_t, cpu_alarm_cumulative_max, )                                                      \
    X(5, uint8_t, mem_alarm_cumulative_max, )
typedef struct misc_alarm {
    WEBMGMT_MISC_ALARM_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} misc_alarm;
WEBMGMT_STATIC_ASSERT(sizeof(misc_alarm) == 8, "misc_alarm layout");

/* Speed-up switches (hardware NAT, software cache, no-mangle), printed by the misc view. */
#define WEBMGMT_MISC_SPEEDUP_MEMBERS(X)                                                            \
    X(0, uint8_t, enable_hand, )                                                                   \
    X(0, uint8_t, enable_soft_cache, )                                                             \
    X(0, uint8_t, enable_soft_nomangle, )
typedef struct misc_speedup {
    WEBMGMT_MISC_SPEEDUP_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} misc_speedup;
WEBMGMT_STATIC_ASSERT(sizeof(misc_speedup) == 3, "misc_speedup layout");

/* The device's own addressing when it is not the router (bypass mode); the switch is
 * stored before the addresses. */
#define WEBMGMT_MISC_BYPASS_MEMBERS(X)                                                             \
    X(0, uint8_t, enable, )                                                                        \
    X(0, uint8_t, stp, )                                                                           \
    X(0, uint8_t, conn_type, )                                                                     \
    X(0, uint8_t, pad_ipaddr, [1])                                                                 \
    X(0, ipaddr_field, ipaddr, )                                                                   \
    X(0, ipaddr_field, subnet, )                                                                   \
    X(0, ipaddr_field, gateway, )                                                                  \
    X(0, ipaddr_field, dns1, )                                                                     \
    X(0, ipaddr_field, dns2, )                                                                     \
    X(0, char, resved, [200])
typedef struct misc_bypass {
    WEBMGMT_MISC_BYPASS_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} misc_bypass;
WEBMGMT_STATIC_ASSERT(sizeof(misc_bypass) == 284, "misc_bypass layout");

/* `need_filter_firewall` is the switch of the duplicate checks of the rule-list forms. */
#define WEBMGMT_MISC_CONFIG_MEMBERS(X)                                                             \
    WEBMGMT_RECORD_HEAD(X)                                                                         \
    X(0, misc_user, sys_user, )                                                                    \
    X(0, misc_actimer, sys_actimer, )                                                              \
    X(0, misc_dmz, sys_dzm, )                                                                      \
    X(0, misc_log, sys_log, )                                                                      \
    X(0, misc_ntp, sys_ntp, )                                                                      \
    X(0, timereboot_config, sys_timereboot, )                                                      \
    X(0, misc_remote, sys_remote, )                                                                \
    X(5, uint8_t, enable_telnet, )                                                                 \
    X(0, misc_cloud, sys_cloud, )                                                                  \
    X(0, misc_ddns, sys_ddns, )                                                                    \
    X(0, misc_nat, sys_nat, )                                                                      \
    X(5, uint8_t, need_filter_firewall, )                                                          \
    X(0, misc_alarm, custom_alarm, )                                                               \
    X(5, uint8_t, custom_dbg, )                                                                    \
    X(0, misc_speedup, sys_speedup, )                                                              \
    X(0, uint8_t, pad_sys_bypass, [2])                                                             \
    X(0, misc_bypass, sys_bypass, )                                                                \
    X(0, char, room, [512])                                                                        \
    X(5, char, resved, [490])                                                                      \
    X(0, uint8_t, pad_end, [2])
typedef struct misc_config {
    WEBMGMT_MISC_CONFIG_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} misc_config;
WEBMGMT_STATIC_ASSERT(sizeof(misc_config) == 7080, "misc_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(misc_config, lock_location) == 132, "misc_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(misc_config, sys_user) == 136, "misc_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(misc_config, sys_actimer) == 908, "misc_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(misc_config, sys_dzm) == 1416, "misc_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(misc_config, sys_log) == 1944, "misc_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(misc_config, sys_ntp) == 2500, "misc_config layout");

/* --- misc_ext_config: the global client access list ------------------------------------- */

#define WEBMGMT_MISC_EXT_ACL_COUNT 128

#define WEBMGMT_MISC_EXT_ACL_MEMBERS(X)                                                            \
    X(1, int32_t, count, )                                                                         \
    X(0, int32_t, mode, )                                                                          \
    X(0, acl_entry, info, [WEBMGMT_MISC_EXT_ACL_COUNT])                                            \
    X(0, char, resved, [500])
typedef struct misc_ext_acl {
    WEBMGMT_MISC_EXT_ACL_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} misc_ext_acl;
WEBMGMT_STATIC_ASSERT(sizeof(misc_ext_acl) == 119292, "the access list the store fills");

#define WEBMGMT_MISC_EXT_CONFIG_MEMBERS(X)                                                         \
    WEBMGMT_RECORD_HEAD(X)                                                                         \
    X(0, misc_ext_acl, acl_info, )                                                                 \
    X(0, char, resved, [500])
typedef struct misc_ext_config {
    WEBMGMT_MISC_EXT_CONFIG_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} misc_ext_config;
WEBMGMT_STATIC_ASSERT(sizeof(misc_ext_config) == 119928, "misc_ext_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(misc_ext_config, lock_location) == 132, "misc_ext_config layout");
WEBMGMT_STATIC_ASSERT(offsetof(misc_ext_config, acl_info) == 136, "misc_ext_config layout");

/* Builders: each fills a table zeroed with clean_points() with the rows of one record
 * instance, in the order the pages and defaults files know them. */
WEBMGMT_API void WiFi_field(field_desc *table, wifi_config *config);
WEBMGMT_API void defap_field(field_desc *table, defap_config *config);
WEBMGMT_API void productinfo_field(field_desc *table, productinfo_config *config);
WEBMGMT_API void misc_field(field_desc *table, misc_config *config);
WEBMGMT_API void misc_ext_field(field_desc *table, misc_ext_config *config);
/* The AP template has no rows: the table is left as it is. */
WEBMGMT_API void aptemp_field(field_desc *table, void *config);

WEBMGMT_END_DECLS
#endif /* WEBMGMT_WIRELESS_H */
