// The site survey a managed AP reported for one of its radios, as the XML the survey page
// reads (the two views keep their JSON names).
#include <array>
#include <cstdlib>
#include <span>
#include <string_view>

#include "views/wireless_print.h"

namespace wm {
namespace {

constexpr std::array<const char *, 13> k24Channels{"1", "2", "3",  "4",  "5",  "6", "7",
                                                   "8", "9", "10", "11", "12", "13"};
// The 5 GHz channels the device knows; the page offers only the first eight and the five
// from 149 (the rest are not allowed where the device is sold).
constexpr std::array<const char *, 28> k58Channels{"36",  "40",  "44",  "48",  "52",  "56",  "60",
                                                   "64",  "100", "104", "108", "112", "116", "120",
                                                   "124", "128", "132", "136", "140", "149", "153",
                                                   "157", "161", "165", "34",  "38",  "42",  "46"};
constexpr size_t k58LowCount = 8;
constexpr size_t k58HighFirst = 19;
constexpr size_t k58HighCount = 5;
static_assert(std::string_view(k58Channels[k58HighFirst]) == "149");

// The AP's configuration entry and scan list, or null when an index lies outside the tables.
struct Survey {
    const ap_device_record *ap;
    const ap_scan_slot *slots;
};
Survey find(const ap_scan_context *context, int ap_index, int radio) {
    if (!context || !context->ap_list || !context->runtime) return {nullptr, nullptr};
    if (ap_index < 0 || ap_index >= WEBMGMT_AP_MAX) return {nullptr, nullptr};
    if (radio < 0 || radio >= WEBMGMT_AP_RADIOS) return {nullptr, nullptr};
    return {&context->ap_list->m_ap[ap_index], context->runtime->m_ap[ap_index].m_scan[radio]};
}

void channel_line(const ap_device_record &ap, const char *channel) {
    const long number = std::strtol(channel, nullptr, 10);
    bool current = false;
    for (const ap_radio &r : ap.m_conf.m_radio)
        current = current || r.m_channel == number;
    // The page reads the element under this spelling.
    json::raw(current ? "<chnel curr=\"1\">" : "<chnel>");
    json::raw(channel);
    json::raw("</chnel>\n");
}

void print_slots(const ap_scan_slot *slots) {
    for (int i = 0; i < WEBMGMT_SCAN_SLOTS; ++i) {
        const ap_scan_slot &s = slots[i];
        if (s.m_channel == 0 || s.m_signal == 0) continue;
        // The name stops at its 32-byte field. Only "unknown" is quoted: the page reads the
        // other names from the attribute's raw text.
        std::string_view name = member_text(s.m_name, sizeof s.m_name);
        const char *quote = name == "unknown" ? "\"" : "";
        json::raw("<data id=\"");
        json::raw_number(i);
        json::raw("\" channel=\"");
        json::raw_number(s.m_channel);
        json::raw("\" value=\"");
        json::raw_number(s.m_signal);
        json::raw("\" name=");
        json::raw(quote);
        json::raw(name);
        json::raw(quote);
        json::raw(" bssid=\"");
        json::raw(json::mac_text(s.m_bssid.mac).text);
        json::raw("\" quality=\"");
        json::raw(s.m_quality);
        json::raw("\"> </data>\n");
    }
}

void print_survey(const ap_scan_context *context, int ap_index, int radio,
                  std::span<const char *const> low, std::span<const char *const> high) {
    Survey survey = find(context, ap_index, radio);
    if (!survey.ap) return;
    json::raw("<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n\n<datas>\n");
    for (const char *c : low)
        channel_line(*survey.ap, c);
    for (const char *c : high)
        channel_line(*survey.ap, c);
    print_slots(survey.slots);
    json::raw("</datas>\n");
}

} // namespace
} // namespace wm

extern "C" {

void printf_ApScan24_json(const ap_scan_context *context, int ap_index, int radio) {
    wm::print_survey(context, ap_index, radio, wm::k24Channels, {});
}

void printf_ApScan58_json(const ap_scan_context *context, int ap_index, int radio) {
    std::span<const char *const> all(wm::k58Channels);
    wm::print_survey(context, ap_index, radio, all.first(wm::k58LowCount),
                     all.subspan(wm::k58HighFirst, wm::k58HighCount));
}

} // extern "C"
