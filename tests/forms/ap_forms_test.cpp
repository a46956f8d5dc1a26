// The AP-template and managed-AP forms, each through a real POST body and process_queue in
// its own process, the store read back in a fresh one: what a form leaves alone (variables
// not sent), and an AP or record that is not there. That every member a form lists is
// stored and shown is the view round trip's (ap_forms_view_roundtrip_test.cpp).
#include "tests/forms/ap_forms_util.h"

using namespace aptest;
using wmtest::TempRoot;

namespace {

const ap_device_record &the_ap(const Records &rec) {
    return rec.aps->m_ap[0];
}

// A variable that is not sent leaves its member as it was.
TEST(ApForms, AbsentVariablesKeepTheirMembers) {
    TempRoot root;
    seed_ap();
    auto form = [](Records &r, const form_pair *p, int n) { return save_ap_config(r.aps, p, n); };
    ASSERT_EQ(request("m_dev_mac=00:11:22:33:44:55&m_dev_position=lobby", form), 0);
    EXPECT_EQ(stored([](const Records &r) {
                  return text(the_ap(r).m_dev_name) + "|" + text(the_ap(r).m_conf.m_dev_position);
              }),
              "ap-first|lobby");
    auto radios = [](Records &r, const form_pair *p, int n) {
        return save_defap_radio_config(r.def, p, n);
    };
    std::string before = stored([](const Records &r) {
        return std::to_string(r.def->m_radio[0].m_channel) + " " +
               text(r.def->m_radio[1].m_vap[0].m_ssid);
    });
    ASSERT_EQ(request("m_ssid12=only-this", radios), 0);
    EXPECT_EQ(stored([](const Records &r) {
                  return std::to_string(r.def->m_radio[0].m_channel) + " " +
                         text(r.def->m_radio[1].m_vap[0].m_ssid) + " " +
                         text(r.def->m_radio[1].m_vap[2].m_ssid);
              }),
              before + " only-this");
}

TEST(ApForms, UnknownApOrNoRecord) {
    TempRoot root;
    seed_ap();
    for (const char *body : {"m_dev_mac=00:11:22:33:44:56&m_dev_name=x", "m_dev_name=x",
                             "m_dev_mac=zz:11:22:33:44:55&m_dev_name=x", "m_dev_mac=00:11:22"}) {
        SCOPED_TRACE(body);
        EXPECT_EQ(request(body, [](Records &r, const form_pair *p,
                                   int n) { return save_ap_config(r.aps, p, n); }),
                  -1);
        EXPECT_EQ(request(body, [](Records &r, const form_pair *p,
                                   int n) { return save_ap_radio_config(r.aps, p, n); }),
                  -1);
    }
    EXPECT_EQ(stored([](const Records &r) { return text(the_ap(r).m_dev_name); }), "ap-first");
    EXPECT_EQ(save_ap_config(nullptr, nullptr, 0), -1);
    EXPECT_EQ(save_ap_radio_config(nullptr, nullptr, 0), -1);
    EXPECT_EQ(save_defap_radio_config(nullptr, nullptr, 0), -1);
    EXPECT_EQ(save_defap_timereboot_config(nullptr, nullptr, 0), -1);
    EXPECT_EQ(save_defap_weblogin_config(nullptr, nullptr, 0), -1);
    EXPECT_EQ(save_defap_iptv_config(nullptr, nullptr, 0), -1);
    EXPECT_EQ(save_apTemplate_config_element(nullptr, 0, nullptr, 0), -1);
    EXPECT_EQ(save_ap_template_bind(nullptr, nullptr, 0, nullptr, 0), -1);
}

} // namespace
