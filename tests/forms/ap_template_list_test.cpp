// The template list's element form step by step (add, duplicate names, modify, unknown ids,
// a full list, delete one, delete all), binding a managed AP to a template and unbinding it,
// and two processes adding one name at once.
#include "tests/forms/ap_forms_util.h"

using namespace aptest;
using wmtest::TempRoot;

namespace {

int element(int op, const std::string &body) {
    return request(body, [op](Records &r, const form_pair *p, int n) {
        return save_apTemplate_config_element(r.list, op, p, n);
    });
}

// "id:name" of every stored template, then the count.
std::string templates() {
    return stored([](const Records &r) {
        std::string out;
        for (const auto &t : r.list->m_template)
            if (t.m_wlan_group_id > 0)
                out += std::to_string(t.m_wlan_group_id) + ":" + text(t.m_wlan_group_name) + " ";
        return out + "count " + std::to_string(r.list->count);
    });
}

int template_id(const char *name) {
    return std::atoi(stored([name](const Records &r) {
                         const ap_template_entry *t = find_named(*r.list, name);
                         return std::to_string(t ? t->m_wlan_group_id : 0);
                     }).c_str());
}

TEST(ApTemplateList, ElementFormStepByStep) {
    TempRoot root;
    struct Step {
        const char *label;
        int op;
        std::string body;
        int rc;
        const char *after;
    } steps[] = {
        {"add", 0, "m_wlan_group_name=office&m_channel0=6", 0, "1:office count 1"},
        {"add another", 0, "m_wlan_group_name=lobby", 0, "1:office 2:lobby count 2"},
        {"add a taken name", 0, "m_wlan_group_name=office", WEBMGMT_FORM_DUPLICATE,
         "1:office 2:lobby count 2"},
        {"modify to a taken name", 1, "m_wlan_group_id=2&m_wlan_group_name=office",
         WEBMGMT_FORM_DUPLICATE, "1:office 2:lobby count 2"},
        {"modify keeping its own name", 1,
         "m_wlan_group_id=2&m_wlan_group_name=lobby&m_channel1=44", 0, "1:office 2:lobby count 2"},
        {"modify renames", 1, "m_wlan_group_id=2&m_wlan_group_name=hall", 0,
         "1:office 2:hall count 2"},
        {"modify an unknown id", 1, "m_wlan_group_id=9&m_wlan_group_name=x", -1,
         "1:office 2:hall count 2"},
        {"modify without an id", 5, "m_wlan_group_name=x", -1, "1:office 2:hall count 2"},
        {"fill the list", 0, "m_wlan_group_name=t3", 0, "1:office 2:hall 3:t3 count 3"},
        {"fill the list", 0, "m_wlan_group_name=t4", 0, "1:office 2:hall 3:t3 4:t4 count 4"},
        {"add to a full list", 0, "m_wlan_group_name=t5", -1, "1:office 2:hall 3:t3 4:t4 count 4"},
        {"delete one", -1, "m_wlan_group_id=2", 0, "1:office 3:t3 4:t4 count 3"},
        {"delete an unknown id", -1, "m_wlan_group_id=7", 0, "1:office 3:t3 4:t4 count 3"},
        {"the freed name is free", 0, "m_wlan_group_name=hall", 0,
         "1:office 3:t3 4:t4 2:hall count 4"},
        {"delete all", -2, "", 0, "count 0"},
    };
    for (const auto &s : steps) {
        SCOPED_TRACE(s.label);
        EXPECT_EQ(element(s.op, s.body), s.rc);
        EXPECT_EQ(templates(), s.after);
    }
}

// A new template starts from the default template, not from zeros.
TEST(ApTemplateList, AddStartsFromTheDefaultTemplate) {
    TempRoot root;
    ASSERT_EQ(request("m_channel2=149&m_ssid21=guest&m_timereboot.m_TimeReboot_Hour=4",
                      [](Records &r, const form_pair *p, int n) {
                          int rc = save_defap_radio_config(r.def, p, n);
                          return rc ? rc : save_defap_timereboot_config(r.def, p, n);
                      }),
              0);
    ASSERT_EQ(element(0, "m_wlan_group_name=new&m_channel0=1"), 0);
    EXPECT_EQ(stored([](const Records &r) {
                  const ap_template_entry &t = *find_named(*r.list, "new");
                  return std::to_string(t.m_radio[0].m_channel) + " " +
                         std::to_string(t.m_radio[2].m_channel) + " " +
                         text(t.m_radio[2].m_vap[1].m_ssid) + " " +
                         std::to_string(t.m_timereboot.m_TimeReboot_Hour);
              }),
              "1 149 guest 4");
}

int bind(int op, const std::string &body) {
    return request(body, [op](Records &r, const form_pair *p, int n) {
        return save_ap_template_bind(r.aps, r.list, op, p, n);
    });
}

TEST(ApTemplateList, BindAndUnbind) {
    TempRoot root;
    seed_ap();
    ASSERT_EQ(element(0, "m_wlan_group_name=office&m_channel1=36&m_ssid10=corp"
                         "&m_weblogin.m_username=admin&m_iptv.m_vlanid=85"),
              0);
    ASSERT_EQ(element(0, "m_wlan_group_name=other"), 0);
    int id = template_id("office");
    ASSERT_GT(id, 0);
    std::string sel = "m_wlan_group_id=" + std::to_string(id) + "&m_dev_mac=" + kApMac;
    auto state = [] {
        return stored([](const Records &r) {
            const ap_template_entry &t = *find_named(*r.list, "office");
            const ap_device_record &ap = r.aps->m_ap[0];
            return mac_text(t.m_bind_mac) + " " + mac_text(t.m_member_mac) + " [" +
                   text(ap.m_group_name) + "] " + std::to_string(ap.m_conf.m_radio[1].m_channel) +
                   " " + text(ap.m_conf.m_radio[1].m_vap[0].m_ssid) + " " +
                   text(ap.m_conf.m_weblogin.m_username) + " " +
                   std::to_string(ap.m_conf.m_iptv.m_vlanid) + " " +
                   std::to_string(ap.m_conf.m_radio[0].m_channel_config) + " " +
                   mac_text(find_named(*r.list, "other")->m_bind_mac);
        });
    };
    const std::string kZero = "00:00:00:00:00:00";
    EXPECT_EQ(state(), kZero + " " + kZero + " [] 0  " + " 0 11 " + kZero);

    EXPECT_EQ(bind(0, sel), 0);
    // The AP takes the template's name and configuration; what it chose stays its own.
    EXPECT_EQ(state(),
              std::string(kApMac) + " " + kApMac + " [office] 36 corp admin 85 11 " + kZero);

    EXPECT_EQ(bind(-1, sel), 0);
    EXPECT_EQ(state(), kZero + " " + kZero + " [] 36 corp admin 85 11 " + kZero);

    struct Refused {
        const char *label;
        int op;
        std::string body;
    } refused[] = {
        {"unknown template", 0, std::string("m_wlan_group_id=9&m_dev_mac=") + kApMac},
        {"no template", 0, std::string("m_dev_mac=") + kApMac},
        {"unknown AP", 0, "m_wlan_group_id=" + std::to_string(id) + "&m_dev_mac=00:11:22:33:44:00"},
        {"no AP", 0, "m_wlan_group_id=" + std::to_string(id)},
        {"unknown op", 3, sel},
    };
    for (const auto &r : refused) {
        SCOPED_TRACE(r.label);
        EXPECT_EQ(bind(r.op, r.body), -1);
        EXPECT_EQ(state(), kZero + " " + kZero + " [] 36 corp admin 85 11 " + kZero);
    }
}

// Both processes load the list (empty of the name) before either adds, then add at once:
// one template is stored, one process gets the duplicate code.
TEST(ApTemplateList, SameNameFromTwoProcesses) {
    TempRoot root;
    for (int round = 0; round < 3; ++round) {
        SCOPED_TRACE(round);
        std::string name = "same" + std::to_string(round);
        auto adder = [&](const std::function<bool()> &go) {
            ap_template_list_config *list = SC_Get_ApTemplateList_System_Config();
            if (!go()) return -1;
            std::string n = "m_wlan_group_name", v = name;
            form_pair pairs[] = {{n.data(), v.data()}};
            return save_apTemplate_config_element(list, 0, pairs, 1);
        };
        auto [ra, rb] = wmtest::run_together(adder, adder);
        EXPECT_EQ(std::min(ra, rb), 0);
        EXPECT_EQ(std::max(ra, rb), WEBMGMT_FORM_DUPLICATE);
        std::string list = templates();
        size_t named = 0;
        for (size_t at = list.find(":" + name + " "); at != std::string::npos;
             at = list.find(":" + name + " ", at + 1))
            ++named;
        EXPECT_EQ(named, 1u) << list;
        EXPECT_NE(list.find("count " + std::to_string(round + 1)), std::string::npos) << list;
    }
}

// An add waits while another process holds the list's lock file.
TEST(ApTemplateList, AddWaitsForTheListLock) {
    TempRoot root;
    std::string path = stored([](const Records &r) { return text(r.list->lock_file); });
    ASSERT_FALSE(path.empty());
    int result = wmtest::result_after_lock_wait(
        path,
        [] {
            std::string n = "m_wlan_group_name", v = "waited";
            form_pair pairs[] = {{n.data(), v.data()}};
            return save_apTemplate_config_element(SC_Get_ApTemplateList_System_Config(), 0, pairs,
                                                  1);
        },
        [] { EXPECT_EQ(templates(), "count 0"); });
    EXPECT_EQ(result, 0);
    EXPECT_EQ(templates(), "1:waited count 1");
}

} // namespace
