// The station views: the stations of the device's own radios and of the managed AP.
#include <cstring>
#include <ctime>

#include "config_data_api.h"
#include "sys/support/paths.h"
#include "views/json_print.h"

namespace {

using namespace wm::json;

bool mac_zero(const mac_field &mac) {
    for (uint8_t b : mac.mac)
        if (b) return false;
    return true;
}

// After a station's own members: "mark" once for every account before the first with the
// station's MAC, empty, then that account's mark; or 256 empty ones when none has it.
void marks(const sta_entry &s, const clients_config *clients) {
    constexpr int kAccountsSearched = 256;
    for (int i = 0; clients && i < kAccountsSearched; ++i) {
        const client_account &c = clients->m_client[i];
        if (std::memcmp(c.m_haddr.mac, s.m_mac.mac, sizeof s.m_mac.mac) != 0) {
            raw(",\"mark\":\"\"");
            continue;
        }
        raw(',');
        pair_text("mark", c.m_mark);
        return;
    }
}

// Seconds a managed AP's station has been online: 30 for a time of 0, for more than ten
// days, and for a time in the future.
uint32_t online_seconds(int32_t since) {
    constexpr double kTenDays = 864000;
    if (since == 0) return 30;
    // The difference of two whole times is whole: no rounding to do.
    double seconds = std::difftime(std::time(nullptr), time_t(since));
    if (seconds > kTenDays || seconds < 0) return 30;
    return uint32_t(seconds);
}

} // namespace

extern "C" {

void printf_WiFi_user_json(const sta_table *stations, int radio, const clients_config *clients) {
    raw("{\"DevStalist\":\n{\"sta\":[");
    int count = 0;
    for (int i = 0; stations && i < WEBMGMT_STATIONS; ++i) {
        const sta_entry &s = stations->m_sta[i];
        if (s.m_time < 0 || mac_zero(s.m_mac) || s.m_signal == 0) continue;
        MacText mac = mac_text(s.m_mac.mac);
        char name[64] = "";
        get_DevnamebyMacfromLease(wm::fixed::kLeaseFile, mac.text, name);
        raw('{');
        pair("mac", mac.text, ",");
        pair_text("name", name, ",");
        pair_number("time", s.m_time, ",");
        pair_number("signal", s.m_signal, ",");
        pair_number("radioid", s.m_radioid, ",");
        pair_number("wlanid", s.m_wlanid, ",");
        pair_text("ip", s.m_ip, ",");
        pair_number("radio_type", 0, ",");
        pair_number("tx_rate", s.m_tx_rate, ",");
        pair_number("rx_rate", s.m_rx_rate);
        marks(s, clients);
        raw("},");
        ++count;
    }
    raw("{}],");
    pair_number("count", count, ",");
    pair_number("radio", radio, "}}\n");
}

void printf_ApUserList_user_json(const manage_ap_list_config *aps, const ap_user_config *stations) {
    // The controller manages one device: its stations are the ones shown.
    const uint8_t *ap_mac = aps ? aps->m_ap[0].m_dev_mac.mac : nullptr;
    int table = ap_mac && stations ? SC_Get_ApUser_Info_By_Mac(stations, ap_mac) : -1;
    int device = ap_mac ? SC_Get_Ap_Info_By_Mac(aps, ap_mac) : -1;
    raw("{\"DevStalist\":\n{\"sta\":[");
    int count = 0;
    for (int i = 0; table >= 0 && i < WEBMGMT_STATIONS; ++i) {
        const sta_entry &s = stations->m_ap[table].m_sta[i];
        if (s.m_time < 0 || mac_zero(s.m_mac)) continue;
        ++count; // counted even when not shown
        if (s.m_signal == 0) continue;
        char online[32];
        get_runtime_web(online_seconds(s.m_time), online);
        int radio_type = 0;
        if (device >= 0 && s.m_radioid >= 1 && s.m_radioid <= WEBMGMT_AP_RADIOS)
            radio_type = aps->m_ap[device].m_conf.m_radio[s.m_radioid - 1].m_radio_type;
        raw('{');
        pair("mac", mac_text(s.m_mac.mac).text, ",");
        pair_text("time", online, ",");
        pair_number("signal", s.m_signal, ",");
        pair_number("radioid", s.m_radioid, ",");
        pair_number("wlanid", s.m_wlanid, ",");
        pair_text("ip", s.m_ip, ",");
        pair_number("radio_type", radio_type, "},");
    }
    raw("{\"mac\":\"\",\"time\":\"\",\"signal\":\"\"}],");
    pair_number("count", count, "}}\n");
}

} // extern "C"
