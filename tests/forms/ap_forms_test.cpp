// The AP-template and managed-AP forms, each through a real POST body and process_queue in
// its own process, the store read back in a fresh one: every member a form lists is sent a
// distinct value (bytes past 255, texts longer than their members, dotted addresses), and
// the stored member must hold what the device's conversion makes of it.
#include <sstream>

#include "tests/forms/ap_forms_util.h"

using namespace aptest;
using wmtest::TempRoot;

namespace {

enum Kind { kByte, kNum16, kNum32, kText, kIpv4 };

// One variable of a form and the member it fills.
struct Row {
    std::string var, sent, expected;
    std::function<std::string(const Records &)> read;
};

// Distinct values, one per row.
struct Values {
    int k = 0;
    void next(Kind kind, size_t size, std::string &sent, std::string &expected) {
        ++k;
        switch (kind) {
        case kByte: // get_prop_char keeps the low byte
            sent = std::to_string(256 + k % 250 + 1);
            expected = std::to_string(k % 250 + 1);
            break;
        case kNum16:
            sent = expected = std::to_string(1000 + k);
            break;
        case kNum32:
            sent = expected = std::to_string(100000 + k);
            break;
        case kText: // decoded, then cut at the member
            sent = "t" + std::to_string(k) + " &=%+" + std::string(120, char('a' + k % 26));
            expected = sent.substr(0, size - 1);
            break;
        case kIpv4:
            sent = expected = "10.0." + std::to_string(k % 250) + ".9";
            break;
        }
    }
};

std::string ipv4_text(const ipaddr_field &a) {
    in_addr in{};
    in.s_addr = a.v4;
    return inet_ntoa(in);
}

template <typename T> struct Member {
    const char *name;
    Kind kind;
    size_t size;
    std::function<std::string(const T &)> read;
};

#define WM_BYTE(T, m)                                                                              \
    {                                                                                              \
#m, kByte, 1, [](const T &x) { return std::to_string(unsigned(x.m)); }                     \
    }
#define WM_NUM16(T, m)                                                                             \
    {                                                                                              \
#m, kNum16, 2, [](const T &x) { return std::to_string(int(x.m)); }                         \
    }
#define WM_NUM32(T, m)                                                                             \
    {                                                                                              \
#m, kNum32, 4, [](const T &x) { return std::to_string(x.m); }                              \
    }
#define WM_TEXT(T, m)                                                                              \
    {                                                                                              \
#m, kText, sizeof(T::m), [](const T &x) { return text(x.m); }                              \
    }

template <typename Radio> std::vector<Member<Radio>> radio_members() {
    return {
        WM_BYTE(Radio, m_radio_type),
        WM_BYTE(Radio, m_wirelessmode),
        WM_BYTE(Radio, m_wirelessbwmode),
        WM_BYTE(Radio, m_ampduenable),
        WM_BYTE(Radio, m_wlan_isolate),
        WM_BYTE(Radio, m_wlan_rate),
        WM_NUM16(Radio, m_wlan_beacon_interval),
        WM_NUM16(Radio, m_wlan_rts),
        WM_NUM16(Radio, m_wlan_frag),
        WM_NUM16(Radio, m_wlan_shortGI),
        WM_NUM16(Radio, m_wlan_txpower),
        WM_NUM16(Radio, m_wlan_max_txpower),
        WM_NUM16(Radio, m_channel),
        WM_NUM16(Radio, m_rev_option),
        WM_NUM16(Radio, m_coverage_threshold),
        WM_NUM16(Radio, m_MaxStanum),
        WM_TEXT(Radio, contrystr),
    };
}

std::vector<Member<defap_vap>> vap_members() {
    using V = defap_vap;
    return {
        WM_BYTE(V, m_wlan_enable),
        WM_BYTE(V, m_wlan_hide_ssid),
        WM_TEXT(V, m_ssid),
        WM_NUM16(V, m_vlanid),
        WM_BYTE(V, m_security),
        WM_BYTE(V, m_securitycipher),
        WM_BYTE(V, m_authmode),
        WM_BYTE(V, m_wep_keytype),
        WM_TEXT(V, m_wep_keystr),
        WM_BYTE(V, m_psk_keytype),
        WM_TEXT(V, m_psk_keystr),
        {"m_radius_serverip", kIpv4, 16, [](const V &x) { return ipv4_text(x.m_radius_serverip); }},
        WM_NUM16(V, m_radius_serverport),
        WM_TEXT(V, m_radius_sharekey),
    };
}

// The rows of radios 0..2 and their VAPs, "m_channel1", "m_ssid12", ...
template <typename Radio>
std::vector<Row> radio_rows(Values &values,
                            std::function<const Radio &(const Records &, int)> radio) {
    std::vector<Row> rows;
    for (int r = 0; r < WEBMGMT_AP_RADIOS; ++r) {
        for (const auto &m : radio_members<Radio>()) {
            Row row;
            row.var = m.name + std::to_string(r);
            values.next(m.kind, m.size, row.sent, row.expected);
            row.read = [m, radio, r](const Records &rec) { return m.read(radio(rec, r)); };
            rows.push_back(row);
        }
        for (int v = 0; v < WEBMGMT_AP_VAPS; ++v)
            for (const auto &m : vap_members()) {
                Row row;
                row.var = m.name + std::to_string(r) + std::to_string(v);
                values.next(m.kind, m.size, row.sent, row.expected);
                row.read = [m, radio, r, v](const Records &rec) {
                    return m.read(radio(rec, r).m_vap[v]);
                };
                rows.push_back(row);
            }
    }
    return rows;
}

// Rows of one member list under a prefix ("m_timereboot." or none).
template <typename T>
std::vector<Row> block_rows(Values &values, const std::string &prefix,
                            const std::vector<Member<T>> &members,
                            std::function<const T &(const Records &)> block) {
    std::vector<Row> rows;
    for (const auto &m : members) {
        Row row;
        row.var = prefix + m.name;
        values.next(m.kind, m.size, row.sent, row.expected);
        row.read = [m, block](const Records &rec) { return m.read(block(rec)); };
        rows.push_back(row);
    }
    return rows;
}

std::vector<Member<timereboot_config>> timereboot_members() {
    using T = timereboot_config;
    return {WM_BYTE(T, m_TimeRebootEnable), WM_BYTE(T, m_TimeRebootType),
            WM_BYTE(T, m_TimeReboot_Hour),  WM_BYTE(T, m_TimeReboot_Day),
            WM_BYTE(T, m_TimeReboot_Month), WM_BYTE(T, m_TimeReboot_Week)};
}
std::vector<Member<defap_weblogin>> weblogin_members() {
    using T = defap_weblogin;
    return {WM_BYTE(T, m_enable), WM_BYTE(T, m_usertype), WM_TEXT(T, m_username),
            WM_TEXT(T, m_userpwd)};
}
std::vector<Member<defap_iptv>> iptv_members() {
    using T = defap_iptv;
    return {WM_BYTE(T, m_enable), WM_NUM32(T, m_vlanid)};
}
std::vector<Member<ap_device_record>> ap_members() {
    using T = ap_device_record;
    return {WM_TEXT(T, m_dev_name), WM_TEXT(T, m_group_name), WM_BYTE(T, m_TimeRebootEnable),
            WM_TEXT(T, m_RebootTime)};
}

void append(std::vector<Row> &to, const std::vector<Row> &rows) {
    to.insert(to.end(), rows.begin(), rows.end());
}

// The blocks of a template-shaped record, under their dotted names.
template <typename Owner>
void add_blocks(std::vector<Row> &rows, Values &values,
                std::function<const Owner &(const Records &)> owner) {
    append(rows,
           block_rows<timereboot_config>(values, "m_timereboot.", timereboot_members(),
                                         [owner](const Records &r) -> const timereboot_config & {
                                             return owner(r).m_timereboot;
                                         }));
    append(rows, block_rows<defap_weblogin>(values, "m_weblogin.", weblogin_members(),
                                            [owner](const Records &r) -> const defap_weblogin & {
                                                return owner(r).m_weblogin;
                                            }));
    append(rows, block_rows<defap_iptv>(
                     values, "m_iptv.", iptv_members(),
                     [owner](const Records &r) -> const defap_iptv & { return owner(r).m_iptv; }));
}

const ap_template_entry &named(const Records &rec, const char *name) {
    static const ap_template_entry kNone{};
    const ap_template_entry *t = find_named(*rec.list, name);
    return t ? *t : kNone;
}

const ap_device_record &the_ap(const Records &rec) {
    return rec.aps->m_ap[0];
}

struct FormCase {
    const char *label;
    Form form;
    std::vector<std::pair<std::string, std::string>> fixed; // variables besides the rows
    std::vector<Row> rows;
};

// Sends every row's variable in one request, checks the result, reads every member back.
void round_trip(const FormCase &c) {
    SCOPED_TRACE(c.label);
    auto vars = c.fixed;
    for (const auto &r : c.rows)
        if (!r.var.empty()) vars.emplace_back(r.var, r.sent);
    ASSERT_EQ(request(body_of(vars), c.form), 0);
    std::string back = stored([&](const Records &rec) {
        std::string out;
        for (const auto &r : c.rows)
            out += r.read(rec) + "\n";
        return out;
    });
    std::istringstream in(back);
    for (const auto &r : c.rows) {
        std::string line;
        std::getline(in, line);
        EXPECT_EQ(line, r.expected) << r.var << "=" << r.sent;
    }
}

TEST(ApForms, EveryMemberRoundTrips) {
    TempRoot root;
    seed_ap();
    Values values;
    std::vector<FormCase> cases;

    cases.push_back(
        {"default template: radios and VAPs",
         [](Records &r, const form_pair *p, int n) { return save_defap_radio_config(r.def, p, n); },
         {},
         radio_rows<defap_radio>(values, [](const Records &r, int i) -> const defap_radio & {
             return r.def->m_radio[i];
         })});
    cases.push_back(
        {"default template: reboot schedule",
         [](Records &r, const form_pair *p, int n) {
             return save_defap_timereboot_config(r.def, p, n);
         },
         {},
         block_rows<timereboot_config>(
             values, "m_timereboot.", timereboot_members(),
             [](const Records &r) -> const timereboot_config & { return r.def->m_timereboot; })});
    cases.push_back({"default template: web login",
                     [](Records &r, const form_pair *p, int n) {
                         return save_defap_weblogin_config(r.def, p, n);
                     },
                     {},
                     block_rows<defap_weblogin>(values, "m_weblogin.", weblogin_members(),
                                                [](const Records &r) -> const defap_weblogin & {
                                                    return r.def->m_weblogin;
                                                })});
    cases.push_back(
        {"default template: IPTV",
         [](Records &r, const form_pair *p, int n) { return save_defap_iptv_config(r.def, p, n); },
         {},
         block_rows<defap_iptv>(
             values, "m_iptv.", iptv_members(),
             [](const Records &r) -> const defap_iptv & { return r.def->m_iptv; })});

    // A template added with every variable, then modified with new values for every one.
    for (const char *name : {"tmpl-a", "tmpl-b"}) {
        FormCase c;
        bool add = std::string(name) == "tmpl-a";
        c.label = add ? "template list: add" : "template list: modify";
        c.form = [add](Records &r, const form_pair *p, int n) {
            return save_apTemplate_config_element(r.list, add ? 0 : 1, p, n);
        };
        c.fixed = {{"m_wlan_group_name", name}};
        if (!add) c.fixed.emplace_back("m_wlan_group_id", "1");
        auto tmpl = [name](const Records &r) -> const ap_template_entry & {
            return named(r, name);
        };
        c.rows.push_back({"m_modelname", add ? "MODEL-1" : "MODEL-2", add ? "MODEL-1" : "MODEL-2",
                          [tmpl](const Records &r) { return text(tmpl(r).m_modelname); }});
        c.rows.push_back({"", "", "1", [tmpl](const Records &r) {
                              return std::to_string(tmpl(r).m_wlan_group_id);
                          }});
        append(c.rows, radio_rows<defap_radio>(
                           values, [tmpl](const Records &r, int i) -> const defap_radio & {
                               return tmpl(r).m_radio[i];
                           }));
        add_blocks<ap_template_entry>(c.rows, values, tmpl);
        cases.push_back(c);
    }

    {
        FormCase c{
            "managed AP: its own settings",
            [](Records &r, const form_pair *p, int n) { return save_ap_config(r.aps, p, n); },
            {{"m_dev_mac", kApMac}},
            block_rows<ap_device_record>(values, "", ap_members(), the_ap)};
        c.rows.push_back({"m_dev_position", "Floor 2, room 12 & the hall",
                          "Floor 2, room 12 & the hall",
                          [](const Records &r) { return text(the_ap(r).m_conf.m_dev_position); }});
        append(c.rows,
               block_rows<timereboot_config>(values, "m_timereboot.", timereboot_members(),
                                             [](const Records &r) -> const timereboot_config & {
                                                 return the_ap(r).m_conf.m_timereboot;
                                             }));
        cases.push_back(c);
    }
    {
        FormCase c{
            "managed AP: radios and VAPs",
            [](Records &r, const form_pair *p, int n) { return save_ap_radio_config(r.aps, p, n); },
            {{"m_dev_mac", "00-11-22-33-44-55"}},
            radio_rows<ap_radio>(values, [](const Records &r, int i) -> const ap_radio & {
                return the_ap(r).m_conf.m_radio[i];
            })};
        // What the AP reports is no form's to change.
        c.rows.push_back({"", "", "11 3", [](const Records &r) {
                              const ap_radio &x = the_ap(r).m_conf.m_radio[0];
                              return std::to_string(x.m_channel_config) + " " +
                                     std::to_string(x.m_stanum);
                          }});
        cases.push_back(c);
    }
    for (const auto &c : cases)
        round_trip(c);
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
