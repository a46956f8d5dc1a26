// Field tables of the system records: product information, misc settings, the global
// client access list.
#include "conf/field_rows.h"
#include "conf/record_head.h"

namespace {

WM_CODES(product_codes, WEBMGMT_PRODUCTINFO_CONFIG_MEMBERS(WM_CODE_OF));
WM_CODES(dev_spec_codes, WEBMGMT_PRODUCT_DEV_SPEC_MEMBERS(WM_CODE_OF));
WM_CODES(cloud_codes, WEBMGMT_PRODUCT_CLOUD_MEMBERS(WM_CODE_OF));
WM_CODES(port_codes, WEBMGMT_PRODUCT_PORT_MEMBERS(WM_CODE_OF));
WM_CODES(misc_codes, WEBMGMT_MISC_CONFIG_MEMBERS(WM_CODE_OF));
WM_CODES(user_codes, WEBMGMT_MISC_USER_MEMBERS(WM_CODE_OF));
WM_CODES(remote_codes, WEBMGMT_MISC_REMOTE_MEMBERS(WM_CODE_OF));
WM_CODES(nat_codes, WEBMGMT_MISC_NAT_MEMBERS(WM_CODE_OF));
WM_CODES(ext_acl_codes, WEBMGMT_MISC_EXT_ACL_MEMBERS(WM_CODE_OF));

void radio_spec_rows(wm::RowWriter &w_, product_radio_spec &o_) {
    WEBMGMT_PRODUCT_RADIO_SPEC_MEMBERS(WM_ROW_X)
}
void port_spec_rows(wm::RowWriter &w_, product_port_spec &o_) {
    WEBMGMT_PRODUCT_PORT_SPEC_MEMBERS(WM_ROW_X)
}

void product_identity_rows(wm::RowWriter &w, productinfo_config &p) {
    w.no_prefix();
    WM_ROW(w, product_codes, p, productname);
    WM_ROW(w, product_codes, p, device_sn);
    WM_ROW(w, product_codes, p, default_language);
    WM_ROW(w, product_codes, p, device_name);
    WM_ROW(w, product_codes, p, device_position);
    WM_ROW(w, product_codes, p, upgrade_reset);
    WM_ROW(w, product_codes, p, device_cpu);
    WM_ROW(w, product_codes, p, device_flash_size);
    WM_ROW(w, product_codes, p, device_ram_size);
    WM_ROW(w, product_codes, p, resved);
    WM_ROW(w, product_codes, p, remote_server_addr);
    WM_ROW(w, product_codes, p, remote_web_config_domain);
    WM_ROW(w, product_codes, p, config_ac_rom_update_url);
    WM_ROW(w, product_codes, p, config_ap_rom_update_url);
    WM_ROW(w, product_codes, p, config_get_telnet_port_url);
    WM_ROW(w, product_codes, p, run_first);
    WM_ROW(w, product_codes, p, is_first);
    WM_ROW(w, product_codes, p, fit_to_fat);
    WM_ROW(w, product_codes, p, add_mac2ssid);
    WM_ROW(w, product_codes, p, add_mac_len);
    WM_ROW(w, product_codes, p, ap_mode);
    WM_ROW(w, product_codes, p, gateway_use_defipaddr);
    WM_ROW(w, product_codes, p, max_device_ap);
    WM_ROW(w, product_codes, p, dev_opmode);
    WM_ROW(w, product_codes, p, web_lock_time);
    WM_ROW(w, product_codes, p, profile_suffix);
    WM_ROW(w, product_codes, p, timed_wifi_led_enable);
}

void dev_spec_switch_rows(wm::RowWriter &w, productinfo_config &p) {
    product_dev_spec &s = p.dev_spec;
    w.prefix("dev_spec.");
    WM_ROW(w, dev_spec_codes, s, support_radio_count);
    WM_ROW(w, dev_spec_codes, s, support_eth_type);
    WM_ROW(w, dev_spec_codes, s, support_tpc);
    WM_ROW(w, dev_spec_codes, s, support_iptv);
    WM_ROW(w, dev_spec_codes, s, led_on_val);
    WM_ROW(w, dev_spec_codes, s, led_off_val);
    WM_ROW(w, dev_spec_codes, s, dev_2g5g_control_same_led);
    WM_ROW(w, dev_spec_codes, s, support_8337);
    WM_ROW(w, dev_spec_codes, s, support_hwatchdog);
    WM_ROW(w, dev_spec_codes, s, sysled_on_after_wifi_up);
    WM_ROW(w, dev_spec_codes, s, support_vap_count);
    WM_ROW(w, dev_spec_codes, s, have_wireless1_mac);
    WM_ROW(w, dev_spec_codes, s, have_wireless2_mac);
    WM_ROW(w, dev_spec_codes, s, have_wireless3_mac);
    WM_ROW(w, dev_spec_codes, s, support_btn_led);
    w.no_prefix();
    WM_ROW(w, product_codes, p, btn_led_off_status);
    w.prefix("dev_spec.");
    WM_ROW(w, dev_spec_codes, s, support_ac_led_onoff);
    WM_ROW(w, dev_spec_codes, s, support_sysled_qflash);
    WM_ROW(w, dev_spec_codes, s, support_fit_sysled_qflash);
    WM_ROW(w, dev_spec_codes, s, disable_tkip);
    WM_ROW(w, dev_spec_codes, s, auto_channel_is_list);
    WM_ROW(w, dev_spec_codes, s, support_high_low_frequency);
    WM_ROW(w, dev_spec_codes, s, support_change_wanport);
    WM_ROW(w, dev_spec_codes, s, sysupgrade_encrypto_type);
    WM_ROW(w, dev_spec_codes, s, sfp_port);
    WM_ROW(w, dev_spec_codes, s, wan_phy_addr);
}

void dev_spec_list_rows(wm::RowWriter &w, product_dev_spec &s) {
    for (int i = 0; i < WEBMGMT_WIFI_RADIO_COUNT; ++i) {
        w.prefix("dev_spec.support_radio_spec[%d].", i);
        radio_spec_rows(w, s.support_radio_spec[i]);
    }
    w.prefix("dev_spec.");
    WM_ROW(w, dev_spec_codes, s, support_opmode);
    WM_ROW(w, dev_spec_codes, s, support_eth_speed);
    WM_ROW(w, dev_spec_codes, s, support_eth_count);
    WM_ROW(w, dev_spec_codes, s, support_languagelist);
    WM_ROW(w, dev_spec_codes, s, support_eth_list);
    WM_ROW(w, dev_spec_codes, s, countrydesclist);
    WM_ROW(w, dev_spec_codes, s, opmode_lan_devlist);
}

void port_rows(wm::RowWriter &w, productinfo_config &p) {
    w.prefix("dev_spec.");
    WM_ROW(w, dev_spec_codes, p.dev_spec, support_eth_port_config);
    for (int i = 0; i < WEBMGMT_PRODUCT_PORTS; ++i) {
        w.prefix("dev_spec.port_spec[%d].", i);
        port_spec_rows(w, p.dev_spec.port_spec[i]);
    }
    for (int i = 0; i < WEBMGMT_PRODUCT_PORTS; ++i) {
        product_port &port = p.port[i];
        w.prefix("port[%d].", i);
        WM_ROW(w, port_codes, port, m_enable);
        WM_ROW(w, port_codes, port, m_portname);
        WM_ROW(w, port_codes, port, m_mode);
        WM_ROW(w, port_codes, port, m_auto_negotiation);
        WM_ROW(w, port_codes, port, m_duplex);
        WM_ROW(w, port_codes, port, m_speed_10);
        WM_ROW(w, port_codes, port, m_speed_100);
        WM_ROW(w, port_codes, port, m_speed_1000);
        WM_ROW(w, port_codes, port, m_speed_2500);
        WM_ROW(w, port_codes, port, m_speed_10000);
    }
}

void cloud_rows(wm::RowWriter &w_, product_cloud &o_) {
    w_.prefix("config_cloud.");
    WEBMGMT_PRODUCT_CLOUD_MEMBERS(WM_ROW_X)
}

void product_tail_rows(wm::RowWriter &w, productinfo_config &p) {
    w.no_prefix();
    WM_ROW(w, product_codes, p, test_mode);
    w.prefix("dev_spec.");
    WM_ROW(w, dev_spec_codes, p.dev_spec, support_rs_feature);
    WM_ROW(w, dev_spec_codes, p.dev_spec, support_set_acktimeout_reg);
    WM_ROW(w, dev_spec_codes, p.dev_spec, support_ac_find_ap);
    WM_ROW(w, dev_spec_codes, p.dev_spec, support_ac_find_ap_led_showtime);
    WM_ROW(w, dev_spec_codes, p.dev_spec, support_ac_find_ap_led_showinterval);
    w.no_prefix();
    WM_ROW(w, product_codes, p, disable_switch_vlan);
    WM_ROW(w, product_codes, p, support_up_wifi);
    WM_ROW(w, product_codes, p, support_TOVAN_cl);
}

void user_rows(wm::RowWriter &w, misc_user &u) {
    w.prefix("sys_user.");
    WM_ROW(w, user_codes, u, lock_location);
    WM_ROW(w, user_codes, u, rootname);
    WM_ROW(w, user_codes, u, rootpwd);
    WM_ROW(w, user_codes, u, root_type);
    WM_ROW(w, user_codes, u, username);
    WM_ROW(w, user_codes, u, userpwd);
    WM_ROW(w, user_codes, u, pwd_random);
    WM_ROW(w, user_codes, u, is_sup_pwdPro);
    WM_ROW(w, user_codes, u, user_type);
    WM_ROW(w, user_codes, u, userpwdaswifipwd);
    WM_ROW(w, user_codes, u, userpwd_encrypt);
    WM_ROW(w, user_codes, u, userpwd_encrypt_type);
    WM_ROW(w, user_codes, u, resved);
}

WM_BLOCK_ROWS(actimer_rows, misc_actimer, WEBMGMT_MISC_ACTIMER_MEMBERS)
WM_BLOCK_ROWS(dmz_rows, misc_dmz, WEBMGMT_MISC_DMZ_MEMBERS)
WM_BLOCK_ROWS(log_rows, misc_log, WEBMGMT_MISC_LOG_MEMBERS)
WM_BLOCK_ROWS(ntp_rows, misc_ntp, WEBMGMT_MISC_NTP_MEMBERS)
WM_BLOCK_ROWS(misc_cloud_rows, misc_cloud, WEBMGMT_MISC_CLOUD_MEMBERS)
WM_BLOCK_ROWS(timereboot_rows, timereboot_config, WEBMGMT_TIMEREBOOT_MEMBERS)
WM_BLOCK_ROWS(ddns_rows, misc_ddns, WEBMGMT_MISC_DDNS_MEMBERS)
WM_BLOCK_ROWS(alarm_rows, misc_alarm, WEBMGMT_MISC_ALARM_MEMBERS)
WM_BLOCK_ROWS(acl_entry_rows, acl_entry, WEBMGMT_ACL_ENTRY_MEMBERS)

} // namespace

extern "C" {

void productinfo_field(field_desc *table, productinfo_config *config) {
    wm::RowWriter w(table);
    wm::head_rows(w, *config);
    product_identity_rows(w, *config);
    dev_spec_switch_rows(w, *config);
    dev_spec_list_rows(w, config->dev_spec);
    w.no_prefix();
    WM_ROW(w, product_codes, *config, device_cpu_freq);
    port_rows(w, *config);
    cloud_rows(w, config->config_cloud);
    product_tail_rows(w, *config);
}

void misc_field(field_desc *table, misc_config *config) {
    wm::RowWriter w(table);
    wm::head_rows(w, *config);
    user_rows(w, config->sys_user);
    w.prefix("sys_actimer.");
    actimer_rows(w, config->sys_actimer);
    w.prefix("sys_dzm.");
    dmz_rows(w, config->sys_dzm);
    w.prefix("sys_log.");
    log_rows(w, config->sys_log);
    w.prefix("sys_ntp.");
    ntp_rows(w, config->sys_ntp);
    w.no_prefix();
    WM_ROW(w, misc_codes, *config, resved);
    WM_ROW(w, misc_codes, *config, enable_telnet);
    w.prefix("sys_remote.");
    WM_ROW(w, remote_codes, config->sys_remote, enable_web);
    w.prefix("sys_cloud.");
    misc_cloud_rows(w, config->sys_cloud);
    w.prefix("sys_timereboot.");
    timereboot_rows(w, config->sys_timereboot);
    w.prefix("sys_nat.");
    WM_ROW(w, nat_codes, config->sys_nat, enable);
    w.prefix("sys_ddns.");
    ddns_rows(w, config->sys_ddns);
    w.no_prefix();
    WM_ROW(w, misc_codes, *config, need_filter_firewall);
    w.prefix("custom_alarm.");
    alarm_rows(w, config->custom_alarm);
    w.no_prefix();
    WM_ROW(w, misc_codes, *config, custom_dbg);
}

void misc_ext_field(field_desc *table, misc_ext_config *config) {
    wm::RowWriter w(table);
    wm::head_rows(w, *config);
    w.prefix("acl_info.");
    WM_ROW(w, ext_acl_codes, config->acl_info, count);
    for (int i = 0; i < WEBMGMT_MISC_EXT_ACL_COUNT; ++i) {
        w.prefix("acl_info.info[%d].", i);
        acl_entry_rows(w, config->acl_info.info[i]);
    }
}

} // extern "C"
