// The managed access point as the device-management pages show it: the dashboard summary,
// the list row with its radio summary, the devices of a template, the full configuration,
// and the firmware-update schedule with the DHCP-check messages.
#include <unistd.h>

#include <algorithm>
#include <cstring>

#include "sys/support/paths.h"
#include "views/wireless_print.h"

namespace wm {
namespace {

using json::Sep;

// The paging members exist in the format but the controller manages one device.
constexpr int kMaxCount = 1;

int radio_count(const ap_device_record &ap) {
    return std::min<int>(ap.m_wlan_radio_num, WEBMGMT_AP_RADIOS);
}

int station_total(const ap_device_record &ap) {
    int total = 0;
    for (int i = 0; i < radio_count(ap); ++i)
        total += ap.m_conf.m_radio[i].m_stanum;
    return total;
}

json::DottedText dotted(uint32_t network_order) {
    return json::dotted_text(network_order);
}

struct RuntimeText {
    char text[30];
};
RuntimeText runtime_text(uint32_t seconds) {
    RuntimeText r{};
    get_runtime_web(seconds, r.text);
    return r;
}

// The identity members from the group name to the model name, shared by every shape.
void identity_tail(json::Inline &row, const ap_device_record &ap) {
    row.member("m_group_name", ap.m_group_name);
    row.member("m_dev_name", ap.m_dev_name);
    row.text("m_dev_ip", dotted(ap.m_ip).text);
    row.text("m_dev_mac", json::mac_text(ap.m_dev_mac.mac).text);
    row.text("m_onlinetime", runtime_text(ap.m_onlinetime).text);
    // The pages read the version under both names.
    row.member("m_sw_ver", ap.m_sw_ver);
    row.member("m_sw_name", ap.m_sw_ver);
    row.number("m_stanum", station_total(ap));
    row.number("m_dev_status", ap.m_dev_status);
    row.number("m_dev_upgrade_status", ap.m_dev_upgrade_status);
    row.member("m_wlan_group_name", ap.m_group_name);
    row.number("m_wlan_radio_num", ap.m_wlan_radio_num);
    row.number("m_TimeRebootEnable", ap.m_TimeRebootEnable);
    row.member("m_RebootTime", ap.m_RebootTime);
    row.number("m_CurrentTime", ap.m_onlinetime);
    row.member("m_dev_modelname", ap.m_dev_modelname);
}

void summary_vap(const defap_vap &v) {
    json::number("m_wlan_enable", v.m_wlan_enable);
    json::number("m_wlan_hide_ssid", v.m_wlan_hide_ssid);
    json::text("m_ssid", v.m_ssid);
    json::number("m_vlanid", v.m_vlanid);
    json::mac("m_bssid", v.m_bssid);
    json::number("m_authmode", v.m_authmode, Sep::Last);
}

// `"m_radio":[` and the radios the AP has, each with its power as the page shows it.
void radio_summary(const ap_device_record &ap) {
    json::raw("\"m_radio\":[");
    const int radios = radio_count(ap);
    for (int i = 0; i < radios; ++i) {
        const ap_radio &r = ap.m_conf.m_radio[i];
        json::raw("{\n");
        json::number("m_radio_type", r.m_radio_type);
        json::number("m_wlan_txpower", get_power_web(r.m_wlan_txpower));
        json::number("m_wlan_max_txpower", r.m_wlan_max_txpower);
        json::number("m_channel", r.m_channel);
        json::number("m_channel_config", r.m_channel_config);
        json::number("m_stanum", r.m_stanum);
        json::number("m_MaxStanum", r.m_MaxStanum);
        json::vap_list(r.m_vap, summary_vap);
        json::raw(i + 1 < radios ? std::string_view{"},"} : std::string_view{"}"});
    }
    json::raw("]},");
}

struct Totals {
    int count = 0;
    int sumcount = 0;
    int onlinecount = 0;
    int stasumnum = 0;
};

// The `{}` sentinel, the row count and the paging members.
void close_list(const Totals &t) {
    json::raw("{}],");
    json::pair_number("count", t.count, ",");
    json::pair_number("pagenum", 1, ",");
    json::pair_number("pagecount", 1, ",");
    json::pair_number("sumcount", t.sumcount, ",");
    json::pair_number("onlinecount", t.onlinecount, ",");
    json::pair_number("stasumnum", t.stasumnum, ",");
    json::pair_number("max_count", kMaxCount, "}}");
}

bool contains(const char *text, const char *filter) {
    return !filter || !*filter || std::strstr(text, filter);
}

// The row of the template page: no index, address number or id up front, the id as m_sn,
// and the object closed before its radios, which the page reads outside it.
void template_row(const ap_device_record &ap) {
    json::Inline row;
    json::raw('{');
    row.number("m_lock_src", ap.m_lock_src);
    row.number("m_sn", ap.m_id);
    identity_tail(row, ap);
    json::raw("},");
    radio_summary(ap);
}

void deleted_row(const mac_field &bound) {
    json::raw(
        "{\"m_sn\":\"0\",\"m_group_name\":\"\",\"m_dev_name\":\"Deleted\",\"m_dev_ip\":\"0\",");
    json::pair("m_dev_mac", json::mac_text(bound.mac).text, ",");
    json::raw("\"m_onlinetime\":\"\",\"m_sw_ver\":\"\",\"m_sw_name\":\"\","
              "\"m_stanum\":\"0\",\"m_dev_status\":\"0\",\"m_dev_upgrade_status\":\"0\","
              "\"m_wlan_group_name\":\"\",\"m_wlan_radio_num\":\"0\","
              "\"m_TimeRebootEnable\":\"0\",\"m_RebootTime\":\"\",\"m_CurrentTime\":\"\","
              "\"m_dev_modelname\":\"\"},");
}

// Every radio whatever m_wlan_radio_num says; the keys and passwords as stored (the page is
// the administrator's). It ends in "}]}": the caller opens an object and an array first.
void full_configuration(const ap_device_record &ap) {
    json::open_document();
    json::raw("\"index_ap\":\"0\",\n\"m_radio\":[");
    for (int i = 0; i < WEBMGMT_AP_RADIOS; ++i) {
        json::template_radio(ap.m_conf.m_radio[i]);
        json::raw('}');
        if (i + 1 < WEBMGMT_AP_RADIOS) json::raw(',');
    }
    json::raw("],");
    json::device_blocks(ap.m_conf.m_timereboot, ap.m_conf.m_weblogin, ap.m_conf.m_iptv);
    json::number("m_id", ap.m_id);
    json::text("resved", ap.m_conf.resved, Sep::Last);
    json::Inline row;
    row.first = false; // the line begins with a comma
    row.number("m_ip", ap.m_ip);
    row.number("m_lock_src", ap.m_lock_src);
    row.number("m_sn", ap.m_id);
    identity_tail(row, ap);
    json::raw("}]}");
}

} // namespace
} // namespace wm

extern "C" {

void printf_Mian_Info_json(const ap_device_record *ap) {
    const int links = get_current_link_count();
    const int links_max = get_current_link_count_max();
    const bool registered = ap && ap->m_id >= 1;
    const int n = registered ? 1 : 0;
    using wm::json::pair_number;
    wm::json::raw("{\"ApDevList\":{");
    pair_number("count", n, ",");
    pair_number("linkcount", links, ",");
    pair_number("linkcountmax", links_max, ",");
    pair_number("sumcount", n, ",");
    pair_number("onlinecount", n, ",");
    pair_number("stasumnum", registered ? wm::station_total(*ap) : 0, ",");
    pair_number("max_count", wm::kMaxCount, "}}");
}

void printf_ManageApList_json(const ap_device_record *ap, int mode, const char *ip_filter,
                              const char *mac_filter) {
    using namespace wm;
    if (!ap) {
        json::raw("{\"ApDevList\":{\"count\":\"0\",\"pagenum\":\"1\",\"pagecount\":\"0\","
                  "\"sumcount\":\"0\",\"onlinecount\":\"0\",\"stasumnum\":\"0\","
                  "\"max_count\":\"1\"}}");
        return;
    }
    json::raw("{\"ApDevList\":{\"data\":[");
    Totals t;
    if (ap->m_id >= 1) {
        t.sumcount = t.onlinecount = 1;
        t.stasumnum = station_total(*ap);
        bool row = mode != 2;
        if (mode == 3)
            row = contains(dotted(ap->m_ip).text, ip_filter) &&
                  contains(json::mac_text(ap->m_dev_mac.mac).text, mac_filter);
        if (row) {
            json::Inline head;
            json::raw('{');
            head.text("m_index", "0");
            head.number("m_ip", ap->m_ip);
            head.number("m_lock_src", ap->m_lock_src);
            head.number("m_id", ap->m_id);
            identity_tail(head, *ap);
            json::raw(',');
            radio_summary(*ap);
            t.count = 1;
        }
    }
    close_list(t);
}

void printf_ApTemplateList_mac_json(const ap_device_record *ap, const ap_template_entry *templates,
                                    int index, int mode) {
    using namespace wm;
    // A missing device, or a template the array does not hold, gets the empty list.
    if (!ap || !templates || index < 0 || index >= WEBMGMT_AP_TEMPLATES) {
        json::raw("{\"ApDevList\":{\"max_count\":\"1\",\"count\":\"0\",\"pagenum\":\"1\","
                  "\"pagecount\":\"0\",\"sumcount\":\"0\",\"onlinecount\":\"0\","
                  "\"stasumnum\":\"0\"}}");
        return;
    }
    const ap_template_entry &group = templates[index];
    json::raw("{\"ApDevList\":{\"data\":[");
    Totals t;
    if (mode == 1) {
        // A candidate to bind: registered, not the template's member, in no group yet.
        if (ap->m_id >= 1 && !have_grop_conf_macs6(&group, ap->m_dev_mac.mac) &&
            ap->m_group_name[0] == '\0') {
            template_row(*ap);
            t = {1, 1, 1, station_total(*ap)};
        }
    } else if (mode == 2) {
        static constexpr uint8_t kNone[6] = {};
        if (std::memcmp(group.m_bind_mac.mac, kNone, 6) == 0) {
            // nothing bound
        } else if (std::memcmp(group.m_bind_mac.mac, ap->m_dev_mac.mac, 6) == 0) {
            template_row(*ap);
            t = {1, 1, 1, station_total(*ap)};
        } else {
            deleted_row(group.m_bind_mac); // bound to a device the controller no longer has
            t = {1, 1, 0, 0};
        }
    }
    close_list(t);
}

void printf_Ap_mode_json(const ap_device_record *ap, const char *model) {
    if (!ap || !model || !*model) return;
    if (wm::member_text(ap->m_dev_modelname, sizeof ap->m_dev_modelname) != model) return;
    wm::full_configuration(*ap);
}

void printf_Ap_cf_json(const ap_device_record *ap, const char *mac) {
    if (!ap || !mac) return;
    // Exact: a lower-case MAC text selects nothing.
    if (std::strcmp(wm::json::mac_text(ap->m_dev_mac.mac).text, mac) != 0) return;
    wm::full_configuration(*ap);
}

void printf_update_online_time_json(const update_config *config) {
    using namespace wm;
    json::open_document();
    json::number("m_enable", config->m_enable);
    json::number("m_type", config->m_type);
    json::number("m_hour", config->m_hour);
    json::number("m_min", config->m_min);
    json::number("m_isreset", config->m_isreset);
    json::text("m_dev_modelname", config->m_dev_modelname);
    json::text("m_dev_array_index", config->m_dev_array_index);
    // access()'s own result: "0" when the image is there, "-1" when not.
    json::number("m_have_ac_rom", access(device_path(fixed::kAcFirmwareImage).c_str(), F_OK));
    json::number("m_have_ap_rom", access(device_path(fixed::kApFirmwareImage).c_str(), F_OK),
                 Sep::Last);
    json::close_document();
}

void printf_dhcp_check_json(const update_config *config) {
    using namespace wm;
    json::raw("{\"info\":[");
    for (int i = 0; i < WEBMGMT_DHCP_CHECK_MSGS; ++i) {
        const dhcp_check_msg &m = config->m_dhcp_check[i];
        json::raw("{\n");
        json::text("msg", m.msg);
        json::number("id", m.id, Sep::Last);
        json::raw(i + 1 < WEBMGMT_DHCP_CHECK_MSGS ? std::string_view{"},"} : std::string_view{"}"});
    }
    json::raw("]}");
}

} // extern "C"
