// The round trip form -> store -> view: every member the template and managed-AP forms list
// is sent a distinct value (bytes past 255, texts longer than their members, dotted
// addresses) through a real POST and process_queue, and the view that shows the member,
// printed by a fresh process from the store and read by Python's json parser, must show
// what the device's conversion makes of it. The few members no view shows (the AP's
// position, what the AP reports) are read from the store in the same fresh process.
#include <regex>
#include <sstream>

#include "tests/forms/ap_forms_util.h"
#include "tests/views/view_check.h"

using namespace aptest;
using wmtest::TempRoot;

namespace {

// One variable (none for a member no form sets), the value sent, and where the view shows
// it with what value; or, for a member no view shows, how the stored record holds it.
struct ViewRow {
    std::string var, sent, path, expected;
    std::function<std::string(const Records &)> read = nullptr;
};

struct Counter {
    int k = 0;
    ViewRow byte(const std::string &var, const std::string &path) {
        ++k;
        return {var, std::to_string(256 + k % 250 + 1), path, std::to_string(k % 250 + 1)};
    }
    ViewRow number(const std::string &var, const std::string &path) {
        ++k;
        return {var, std::to_string(1000 + k), path, std::to_string(1000 + k)};
    }
    ViewRow number32(const std::string &var, const std::string &path) {
        ++k;
        return {var, std::to_string(100000 + k), path, std::to_string(100000 + k)};
    }
    ViewRow text(const std::string &var, const std::string &path, size_t size) {
        ++k;
        std::string sent = "t" + std::to_string(k) + " &=%+" + std::string(120, char('a' + k % 26));
        return {var, sent, path, sent.substr(0, size - 1)};
    }
    ViewRow ipv4(const std::string &var, const std::string &path) {
        ++k;
        std::string a = "10.1." + std::to_string(k % 250) + ".7";
        return {var, a, path, a};
    }
};

// The radio and VAP variables of radios 0..2 and where a template-shaped view shows them
// (`radio` is the path of the radio array: "m_radio", or "data[0].m_radio").
std::vector<ViewRow> radio_rows(Counter &c, const std::string &radio) {
    std::vector<ViewRow> rows;
    for (int r = 0; r < 3; ++r) {
        std::string at = radio + "[" + std::to_string(r) + "].";
        auto var = [r](const char *m) { return m + std::to_string(r); };
        for (const char *m : {"m_radio_type", "m_wirelessmode", "m_wirelessbwmode", "m_ampduenable",
                              "m_wlan_isolate", "m_wlan_rate"})
            rows.push_back(c.byte(var(m), at + m));
        for (const char *m : {"m_wlan_beacon_interval", "m_wlan_rts", "m_wlan_frag",
                              "m_wlan_shortGI", "m_wlan_txpower", "m_wlan_max_txpower", "m_channel",
                              "m_rev_option", "m_coverage_threshold", "m_MaxStanum"})
            rows.push_back(c.number(var(m), at + m));
        rows.push_back(c.text(var("contrystr"), at + "contrystr", 4));
        for (int v = 0; v < 4; ++v) {
            std::string vat = at + "m_vap[" + std::to_string(v) + "].";
            auto vvar = [r, v](const char *m) { return m + std::to_string(r) + std::to_string(v); };
            for (const char *m :
                 {"m_wlan_enable", "m_wlan_hide_ssid", "m_security", "m_securitycipher",
                  "m_authmode", "m_wep_keytype", "m_psk_keytype"})
                rows.push_back(c.byte(vvar(m), vat + m));
            rows.push_back(c.text(vvar("m_ssid"), vat + "m_ssid", 64));
            rows.push_back(c.number(vvar("m_vlanid"), vat + "m_vlanid"));
            rows.push_back(c.text(vvar("m_wep_keystr"), vat + "m_wep_keystr", 30));
            rows.push_back(c.text(vvar("m_psk_keystr"), vat + "m_psk_keystr", 64));
            rows.push_back(c.ipv4(vvar("m_radius_serverip"), vat + "m_radius_serverip"));
            rows.push_back(c.number(vvar("m_radius_serverport"), vat + "m_radius_serverport"));
            rows.push_back(c.text(vvar("m_radius_sharekey"), vat + "m_radius_sharekey", 64));
        }
    }
    return rows;
}

// The three device blocks under `at`: the template views print them inside the third radio
// ("m_radio[2]."), the managed-AP view beside the radios ("data[0].").
std::vector<ViewRow> block_rows(Counter &c, const std::string &at) {
    std::vector<ViewRow> rows;
    for (const char *m : {"m_TimeRebootEnable", "m_TimeRebootType", "m_TimeReboot_Hour",
                          "m_TimeReboot_Day", "m_TimeReboot_Month", "m_TimeReboot_Week"})
        rows.push_back(c.byte(std::string("m_timereboot.") + m, at + "m_timereboot." + m));
    rows.push_back(c.byte("m_weblogin.m_enable", at + "m_weblogin.m_enable"));
    rows.push_back(c.byte("m_weblogin.m_usertype", at + "m_weblogin.m_usertype"));
    rows.push_back(c.text("m_weblogin.m_username", at + "m_weblogin.m_username", 32));
    rows.push_back(c.text("m_weblogin.m_userpwd", at + "m_weblogin.m_userpwd", 32));
    rows.push_back(c.byte("m_iptv.m_enable", at + "m_iptv.m_enable"));
    rows.push_back(c.number32("m_iptv.m_vlanid", at + "m_iptv.m_vlanid"));
    return rows;
}

struct ViewCase {
    const char *label;
    Form form;
    std::vector<std::pair<std::string, std::string>> fixed;
    std::vector<ViewRow> rows;
    std::function<void(const Records &)> view; // prints the document in a fresh process
};

void round_trip(const ViewCase &c) {
    SCOPED_TRACE(c.label);
    auto vars = c.fixed;
    for (const auto &r : c.rows)
        if (!r.var.empty()) vars.emplace_back(r.var, r.sent);
    ASSERT_EQ(request(body_of(vars), c.form), 0);
    // The view's document, then one line per member read from the record.
    std::string out = stored([&](const Records &rec) {
        c.view(rec);
        std::string members = "\x1e";
        for (const auto &r : c.rows)
            if (r.read) members += r.read(rec) + "\n";
        return members;
    });
    std::string document = out.substr(0, out.find('\x1e'));
    std::istringstream members(out.substr(document.size() + 1));
    // The template list's row prints its count as a bare number; every other value is text.
    viewtest::Parsed p = viewtest::parse(
        std::regex_replace(document, std::regex("\"count\":(-?[0-9]+)"), "\"count\":\"$1\""));
    ASSERT_EQ(p.status, 0) << p.message << document;
    for (const auto &r : c.rows) {
        std::string line;
        if (r.read) std::getline(members, line);
        EXPECT_EQ(r.read ? line : p.at(r.path), r.expected) << r.var << " -> " << r.path;
    }
}

TEST(ApFormsViews, EveryMemberRoundTripsThroughItsView) {
    TempRoot root;
    seed_ap();
    Counter c;
    std::vector<ViewCase> cases;

    {
        ViewCase v{"default template",
                   [](Records &r, const form_pair *p, int n) {
                       int rc = save_defap_radio_config(r.def, p, n);
                       rc = rc ? rc : save_defap_timereboot_config(r.def, p, n);
                       rc = rc ? rc : save_defap_weblogin_config(r.def, p, n);
                       return rc ? rc : save_defap_iptv_config(r.def, p, n);
                   },
                   {},
                   radio_rows(c, "m_radio"),
                   [](const Records &r) { printf_DefApTemplate_json(r.def); }};
        auto blocks = block_rows(c, "m_radio[2].");
        v.rows.insert(v.rows.end(), blocks.begin(), blocks.end());
        cases.push_back(v);
    }
    // A template added with every variable, then modified with new values for every one;
    // the settings view and the list's row view printed as one document.
    for (int op : {0, 1}) {
        ViewCase v{op == 0 ? "template added" : "template modified",
                   [op](Records &r, const form_pair *p, int n) {
                       return save_apTemplate_config_element(r.list, op, p, n);
                   },
                   {{"m_wlan_group_name", "office"}},
                   radio_rows(c, "cf.m_radio"),
                   [](const Records &r) {
                       const ap_template_entry *t = find_named(*r.list, "office");
                       int i = t ? int(t - r.list->m_template) : 0;
                       std::printf("{\"cf\":");
                       printf_ApTemplateList_cf_json(r.list->m_template, i);
                       std::printf(",\"row\":");
                       printf_ApTemplateList_json(&r.list->m_template[i]);
                       std::printf("}");
                   }};
        if (op == 1) v.fixed.emplace_back("m_wlan_group_id", "1");
        const std::string row = "row.WlanGroupList.data[0].";
        v.rows.push_back(c.text("m_modelname", row + "WlanGroup_ModelName", 64));
        v.rows.push_back({"", "", row + "WlanGroup_Id", "1"});
        v.rows.push_back({"", "", row + "WlanGroup_Name", "office"});
        auto blocks = block_rows(c, "cf.m_radio[2].");
        v.rows.insert(v.rows.end(), blocks.begin(), blocks.end());
        cases.push_back(v);
    }
    {
        // The device view is opened by its caller: an object with an array member.
        ViewCase v{
            "managed AP settings",
            [](Records &r, const form_pair *p, int n) { return save_ap_config(r.aps, p, n); },
            {{"m_dev_mac", kApMac}},
            {},
            [](const Records &r) {
                std::printf("{\"data\":[");
                printf_Ap_cf_json(&r.aps->m_ap[0], "00:11:22:33:44:55");
            }};
        v.rows.push_back(c.text("m_dev_name", "data[0].m_dev_name", 64));
        v.rows.push_back(c.text("m_group_name", "data[0].m_group_name", 64));
        v.rows.push_back(c.byte("m_TimeRebootEnable", "data[0].m_TimeRebootEnable"));
        v.rows.push_back(c.text("m_RebootTime", "data[0].m_RebootTime", 32));
        v.rows.push_back(c.text("m_dev_position", "", 64));
        v.rows.back().read = [](const Records &r) {
            return text(r.aps->m_ap[0].m_conf.m_dev_position);
        };
        auto blocks = block_rows(c, "data[0].");
        v.rows.insert(v.rows.end(), blocks.begin(), blocks.begin() + 6); // the schedule only
        cases.push_back(v);
    }
    {
        // The AP named as the pages may write its MAC; what the AP reports stays.
        ViewCase v{
            "managed AP radios",
            [](Records &r, const form_pair *p, int n) { return save_ap_radio_config(r.aps, p, n); },
            {{"m_dev_mac", "00-11-22-33-44-55"}},
            radio_rows(c, "data[0].m_radio"),
            [](const Records &r) {
                std::printf("{\"data\":[");
                printf_Ap_cf_json(&r.aps->m_ap[0], "00:11:22:33:44:55");
            }};
        v.rows.push_back({"", "", "data[0].m_radio[0].m_channel_config", "11"});
        v.rows.push_back({"", "", "", "3", [](const Records &r) {
                              return std::to_string(r.aps->m_ap[0].m_conf.m_radio[0].m_stanum);
                          }});
        cases.push_back(v);
    }
    for (const auto &v : cases)
        round_trip(v);
}

// Binding from the candidates list: mode 1 lists the AP before, mode 2 shows it after.
TEST(ApFormsViews, BindingMovesTheApFromCandidatesToBound) {
    TempRoot root;
    seed_ap();
    ASSERT_EQ(request("m_wlan_group_name=office",
                      [](Records &r, const form_pair *p, int n) {
                          return save_apTemplate_config_element(r.list, 0, p, n);
                      }),
              0);
    // The view prints the row's radios outside the row object, as the device's page reads
    // them; put back inside, the document is JSON.
    auto view = [](int mode) {
        std::string doc = stored([mode](const Records &r) {
            printf_ApTemplateList_mac_json(&r.aps->m_ap[0], r.list->m_template, 0, mode);
            std::fflush(stdout);
            return std::string();
        });
        for (size_t at; (at = doc.find("\"},\"m_radio\":[")) != std::string::npos;)
            doc.replace(at, 3, "\",");
        return viewtest::parse(doc);
    };
    EXPECT_EQ(view(1).at("ApDevList.count"), "1");
    EXPECT_EQ(view(2).at("ApDevList.count"), "0");
    ASSERT_EQ(request(std::string("m_wlan_group_id=1&m_dev_mac=") + kApMac,
                      [](Records &r, const form_pair *p, int n) {
                          return save_ap_template_bind(r.aps, r.list, 0, p, n);
                      }),
              0);
    EXPECT_EQ(view(1).at("ApDevList.count"), "0");
    EXPECT_EQ(view(2).at("ApDevList.count"), "1");
}

} // namespace
