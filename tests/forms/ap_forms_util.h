// Driving the AP-template and managed-AP forms as a CGI program does: each request runs in
// its own process with a real POST body decoded by process_queue, takes its records from the
// configuration store and reports the form's result; what was stored is read back in a
// fresh process.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "store/config_data_api.h"
#include "support/harness.h"

namespace aptest {

// The managed AP the tests seed the store with.
inline constexpr char kApMac[] = "00:11:22:33:44:55";

// The store's records of one process.
struct Records {
    defap_config *def;
    ap_template_list_config *list;
    manage_ap_list_config *aps;
};

inline Records fetch() {
    return {SC_Get_DefApTemplate_System_Config(), SC_Get_ApTemplateList_System_Config(),
            SC_Get_ManageApList_System_Config()};
}

using Form = std::function<int(Records &, const form_pair *, int)>;

inline std::string body_of(const std::vector<std::pair<std::string, std::string>> &vars) {
    std::string body;
    for (const auto &[name, value] : vars)
        body +=
            (body.empty() ? "" : "&") + wmtest::url_encode(name) + "=" + wmtest::url_encode(value);
    return body;
}

// One request: the form's result.
inline int request(const std::string &body, const Form &form) {
    return wmtest::post_form(body, [&](const form_pair *p, int n) {
        Records rec = fetch();
        return form(rec, p, n);
    });
}

// What a fresh process reads back, printed by `print`.
inline std::string stored(const std::function<std::string(const Records &)> &print) {
    return wmtest::output_of([&] {
        std::string s = print(fetch());
        std::fwrite(s.data(), 1, s.size(), stdout);
    });
}

// Puts one managed AP in the store, as the controller registers it.
inline void seed_ap() {
    auto r = wmtest::run_in_child([] {
        manage_ap_list_config *aps = SC_Get_ManageApList_System_Config();
        aps->count = 1;
        ap_device_record &ap = aps->m_ap[0];
        ap.m_id = 1;
        str2mac(kApMac, ap.m_dev_mac.mac);
        std::snprintf(ap.m_dev_name, sizeof ap.m_dev_name, "%s", "ap-first");
        ap.m_conf.m_radio[0].m_channel_config = 11; // what the AP chose
        ap.m_conf.m_radio[0].m_stanum = 3;
        return SC_Save_System_ManageApList_Config2Flash(aps);
    });
    ASSERT_EQ(r.exit_code(), 0);
}

using wmtest::text;

inline std::string mac_text(const mac_field &m) {
    return wmtest::mac_text(m.mac, false);
}

inline const ap_template_entry *find_named(const ap_template_list_config &l, const char *name) {
    for (const auto &t : l.m_template)
        if (t.m_wlan_group_id > 0 && text(t.m_wlan_group_name) == name) return &t;
    return nullptr;
}

} // namespace aptest
