// The station-mark table of the clients section: marking a station and clearing its mark.
#include <cstdio>
#include <cstring>

#include "config_data_api.h"
#include "forms/binding.h"

namespace wm {
namespace {

// An entry is in use when the first byte of its MAC is non-zero (so a MAC starting with 00
// counts as free, as on the device).
int used_marks(const clients_config &c) {
    int used = 0;
    for (const sta_mark &m : c.m_sta_mark)
        if (m.mac.mac[0] != 0) ++used;
    return used;
}

} // namespace
} // namespace wm

using namespace wm;

extern "C" {

int save_user_mark(clients_config *clients, const form_pair *pairs, int count, int index,
                   const char *mac) {
    if (!clients) return -1;
    if (used_marks(*clients) > WEBMGMT_STA_MARKS_USABLE - 1) return WEBMGMT_MARK_TABLE_FULL;
    // The device wrote to whatever entry it was given.
    if (index < 0 || index >= WEBMGMT_STA_MARKS) return -1;
    sta_mark &entry = clients->m_sta_mark[index];
    if (mac) {
        uint8_t *m = entry.mac.mac;
        std::sscanf(mac, "%hhX:%hhX:%hhX:%hhX:%hhX:%hhX", &m[0], &m[1], &m[2], &m[3], &m[4], &m[5]);
    }
    Bindings b;
    b.add<conv::kTextN>("mark", entry.mark);
    b.apply(pairs, count);
    SC_Save_System_Clients_Config2Flash(clients);
    return 0;
}

int del_user_mark(clients_config *clients, const char *mac) {
    if (!clients) return -1;
    for (sta_mark &entry : clients->m_sta_mark) {
        const uint8_t *m = entry.mac.mac;
        char text[18];
        std::snprintf(text, sizeof text, "%02X:%02X:%02X:%02X:%02X:%02X", m[0], m[1], m[2], m[3],
                      m[4], m[5]);
        // Case matters: a lower-case MAC text matches nothing.
        if (mac && std::strcmp(text, mac) == 0) {
            std::memset(&entry, 0, sizeof entry);
            break;
        }
    }
    SC_Save_System_Clients_Config2Flash(clients);
    return 0;
}

} // extern "C"
