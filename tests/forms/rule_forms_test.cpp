// The rule-list forms as a CGI program drives them: each request runs in its own process
// with a real CGI environment (POST body on standard input, decoded by process_queue), takes
// its records from the configuration store, calls a form and reports the form's result.
#include <arpa/inet.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "store/config_data_api.h"
#include "support/harness.h"
#include "tests/views/view_check.h"

using wmtest::TempRoot;

namespace {

rule_config_set fetch_records() {
    rule_config_set s{};
    s.misc = SC_Get_Misc_System_Config();
    s.vsipport = SC_Get_VsIpport_System_Config();
    s.fwipport = SC_Get_FwIpport_System_Config();
    s.ipgroup = SC_Get_IpGroup_System_Config();
    s.timegroup = SC_Get_TimeGroup_System_Config();
    s.fwurl = SC_Get_FwUrl_System_Config();
    s.fwmac = SC_Get_FwMac_System_Config();
    s.qos = SC_Get_Qos_System_Config();
    return s;
}

using Form = std::function<int(rule_config_set &, const form_pair *, int)>;

// One request: the form's result, as the CGI program would send it back.
int request(const std::string &body, const Form &form, bool duplicate_check = true) {
    return wmtest::post_form(body, [&](const form_pair *p, int n) {
        rule_config_set set = fetch_records();
        set.misc->need_filter_firewall = duplicate_check ? 1 : 0;
        return form(set, p, n);
    });
}

// What a fresh process reads back from the store, printed by `print`.
std::string stored(const std::function<void(rule_config_set &)> &print) {
    return wmtest::output_of([&] {
        rule_config_set set = fetch_records();
        print(set);
    });
}

std::string ntoa(const ipaddr_field &a) {
    in_addr in{};
    in.s_addr = a.v4;
    return inet_ntoa(in);
}

using wmtest::text;

// A rule list as its pages edit it.
struct ListCase {
    const char *label;
    int capacity;
    bool name_checked;    // duplicate names refused (all but QoS)
    bool content_checked; // it has a content filter
    std::function<int(rule_config_set &, int, const form_pair *, int)> element;
    // The form variables of content number k (distinct k, distinct content).
    std::function<std::string(int)> content;
    // "id name content" of every element in use, one per line, content as it was sent.
    std::function<void(rule_config_set &)> print;
    const char *list; // the list's key in its view
    void (*view)(const rule_config_set &);
};

void PrintTo(const ListCase &c, std::ostream *os) {
    *os << c.label;
}

template <typename Slot> void print_slot(const Slot &s, const std::string &content) {
    if (s.id > 0) std::printf("%d %s %s\n", s.id, text(s.name).c_str(), content.c_str());
}

std::vector<ListCase> list_cases() {
    return {
        {"port forwarding", WEBMGMT_RULE_COUNT, true, true,
         [](rule_config_set &s, int op, const form_pair *p, int n) {
             return save_vsipport_config_element(s.vsipport, op, p, n, &s);
         },
         [](int k) {
             return "innerip=192.168.1." + std::to_string(k) +
                    "&extren_Port_From=8000&extren_Port_To=8001&inner_Port_From=80"
                    "&inner_Port_To=81&protocol=1";
         },
         [](rule_config_set &s) {
             for (const auto &e : s.vsipport->vsipport.element)
                 print_slot(e, "innerip=" + ntoa(e.devip) +
                                   "&extren_Port_From=" + std::to_string(e.devexternfromport) +
                                   "&extren_Port_To=" + std::to_string(e.devexterntoport) +
                                   "&inner_Port_From=" + std::to_string(e.devinnerfromport) +
                                   "&inner_Port_To=" + std::to_string(e.devinnertoport) +
                                   "&protocol=" + std::to_string(e.protocol));
         },
         "vsipport", [](const rule_config_set &s) { printf_VsIpport_json(s.vsipport); }},
        {"IP/port filter", WEBMGMT_RULE_COUNT, true, true,
         [](rule_config_set &s, int op, const form_pair *p, int n) {
             return save_fwipport_config_element(s.fwipport, op, p, n, &s);
         },
         [](int k) {
             return "startip=10.0.0." + std::to_string(k) + "&endip=10.0.1." + std::to_string(k) +
                    "&protocol=6&startport=20&endport=21";
         },
         [](rule_config_set &s) {
             for (const auto &e : s.fwipport->fwipport.element)
                 print_slot(e, "startip=" + ntoa(e.devstartip) + "&endip=" + ntoa(e.devendip) +
                                   "&protocol=" + std::to_string(e.protocol) +
                                   "&startport=" + std::to_string(e.devfromport) +
                                   "&endport=" + std::to_string(e.devtoport));
         },
         "fwipport", [](const rule_config_set &s) { printf_FwIpport_json(s.fwipport); }},
        {"IP group", WEBMGMT_GROUP_COUNT, true, true,
         [](rule_config_set &s, int op, const form_pair *p, int n) {
             return save_ipgroup_config_element(&s, op, p, n);
         },
         [](int k) {
             return "start_ip=172.16.0." + std::to_string(k) + "&end_ip=172.16.1." +
                    std::to_string(k);
         },
         [](rule_config_set &s) {
             for (const auto &e : s.ipgroup->useripgroup.element)
                 print_slot(e, "start_ip=" + ntoa(e.startip) + "&end_ip=" + ntoa(e.endip));
         },
         "useripgroup", [](const rule_config_set &s) { printf_IpGroup_json(s.ipgroup); }},
        {"time group", WEBMGMT_GROUP_COUNT, true, true,
         [](rule_config_set &s, int op, const form_pair *p, int n) {
             return save_timegroup_config_element(&s, op, p, n);
         },
         [](int k) {
             char t[64];
             std::snprintf(t, sizeof t, "start_time=%02d:00&end_time=23:59&weekday3=1", k);
             return std::string(t);
         },
         [](rule_config_set &s) {
             for (const auto &e : s.timegroup->usertimegroup.element)
                 print_slot(e, "start_time=" + text(e.start_time) + "&end_time=" +
                                   text(e.end_time) + "&weekday3=" + std::to_string(e.weekday3));
         },
         "usertimegroup", [](const rule_config_set &s) { printf_TimeGroup_json(s.timegroup); }},
        {"URL filter", WEBMGMT_RULE_COUNT, true, false,
         [](rule_config_set &s, int op, const form_pair *p, int n) {
             return save_fwurl_config_element(s.fwurl, op, p, n, &s);
         },
         [](int k) { return "url=www.example" + std::to_string(k) + ".com"; },
         [](rule_config_set &s) {
             for (const auto &e : s.fwurl->fwurl.element)
                 print_slot(e, "url=" + text(e.url));
         },
         "fwurl", [](const rule_config_set &s) { printf_FwUrl_json(s.fwurl); }},
        {"MAC filter", WEBMGMT_RULE_COUNT, true, true,
         [](rule_config_set &s, int op, const form_pair *p, int n) {
             return save_fwmac_config_element(s.fwmac, op, p, n, &s);
         },
         [](int k) {
             char t[64];
             std::snprintf(t, sizeof t, "devmac=00:11:22:33:44:%02X", k);
             return std::string(t);
         },
         [](rule_config_set &s) {
             for (const auto &e : s.fwmac->fwmac.element)
                 print_slot(e, "devmac=" + text(e.devmac));
         },
         "fwmac", [](const rule_config_set &s) { printf_FwMac_json(s.fwmac); }},
        {"QoS", WEBMGMT_RULE_COUNT, false, false,
         [](rule_config_set &s, int op, const form_pair *p, int n) {
             return save_qos_config_element(s.qos, op, p, n, &s);
         },
         [](int k) {
             return "startip=10.9.0." + std::to_string(k) + "&bw_up=" + std::to_string(100 + k);
         },
         [](rule_config_set &s) {
             for (const auto &e : s.qos->qos.element)
                 print_slot(e,
                            "startip=" + ntoa(e.devstartip) + "&bw_up=" + std::to_string(e.bw_up));
         },
         "qos", [](const rule_config_set &s) { printf_Qos_json(s.qos); }},
    };
}

struct Element {
    int id;
    std::string name, content;
    bool operator==(const Element &) const = default;
};

std::vector<Element> elements(const ListCase &c) {
    std::vector<Element> out;
    std::istringstream in(stored(c.print));
    Element e;
    while (in >> e.id >> e.name >> e.content)
        out.push_back(e);
    return out;
}

class RuleListForms : public ::testing::TestWithParam<ListCase> {
  protected:
    TempRoot root;
    int form(int op, const std::string &body, bool check = true) {
        const ListCase &c = GetParam();
        return request(
            body,
            [&](rule_config_set &s, const form_pair *p, int n) { return c.element(s, op, p, n); },
            check);
    }
    int add(const std::string &name, int k, bool check = true) {
        return form(0, "name=" + name + "&" + GetParam().content(k), check);
    }
};

// Add, refuse duplicates (name, then content) while the switch is on, modify, store a
// duplicate with the switch off, delete one, delete all.
TEST_P(RuleListForms, ElementLifecycle) {
    const ListCase &c = GetParam();
    // A repeated variable: its last value is stored.
    ASSERT_EQ(form(0, "name=zero&name=first&" + c.content(2) + "&" + c.content(1)), CONFIG_OK);
    std::vector<Element> list = elements(c);
    ASSERT_EQ(list.size(), 1u);
    const int first = list[0].id;
    EXPECT_EQ(list[0], (Element{first, "first", c.content(1)}));

    // The same name with other content: refused unless the list is QoS.
    EXPECT_EQ(add("first", 2), c.name_checked ? WEBMGMT_FORM_DUPLICATE : CONFIG_OK);
    // Another name with the same content: refused where the list has a content filter.
    EXPECT_EQ(add("second", 1), c.content_checked ? WEBMGMT_FORM_DUPLICATE : CONFIG_OK);
    size_t expected = 1 + (c.name_checked ? 0 : 1) + (c.content_checked ? 0 : 1);
    EXPECT_EQ(elements(c).size(), expected);

    // Modifying the element under its own name and content is no duplicate of itself.
    std::string id = "id=" + std::to_string(first) + "&";
    EXPECT_EQ(form(1, id + "name=first&" + c.content(1)), CONFIG_OK);
    EXPECT_EQ(form(1, id + "name=renamed&" + c.content(3)), CONFIG_OK);
    list = elements(c);
    ASSERT_FALSE(list.empty());
    EXPECT_EQ(list[0], (Element{first, "renamed", c.content(3)}));

    // With the switch off an identical element is stored.
    EXPECT_EQ(add("renamed", 3, false), CONFIG_OK);
    list = elements(c);
    ASSERT_EQ(list.size(), expected + 1);
    EXPECT_EQ(list.back().name, "renamed");
    EXPECT_NE(list.back().id, first);

    // The list's view, printed by a fresh process, parses and shows the stored elements.
    viewtest::Parsed view = viewtest::parse(stored([&](rule_config_set &s) { c.view(s); }));
    ASSERT_EQ(view.status, 0) << view.message;
    std::string key = std::string(c.list) + ".";
    EXPECT_EQ(view.at(key + "count"), std::to_string(list.size()));
    std::vector<Element> shown;
    for (int i = 0; i < c.capacity; ++i) {
        std::string slot = key + "element[" + std::to_string(i) + "].";
        if (int n = std::atoi(view.at(slot + "id").c_str()); n > 0)
            shown.push_back({n, view.at(slot + "name"), ""});
    }
    ASSERT_EQ(shown.size(), list.size());
    for (size_t i = 0; i < list.size(); ++i)
        EXPECT_EQ(shown[i], (Element{list[i].id, list[i].name, ""}));

    // Delete without "id": the store gets an all-zero key and deletes nothing.
    EXPECT_EQ(form(-1, "name=renamed"), 0);
    EXPECT_EQ(elements(c).size(), expected + 1);
    EXPECT_EQ(form(-1, "id=" + std::to_string(first)), 0);
    list = elements(c);
    ASSERT_EQ(list.size(), expected);
    for (const Element &e : list)
        EXPECT_NE(e.id, first);
    EXPECT_EQ(form(-2, ""), 0);
    EXPECT_TRUE(elements(c).empty());
}

// A full list: the store's code passes through the form unchanged.
TEST_P(RuleListForms, FullListPassesTheStoresCode) {
    const int capacity = GetParam().capacity;
    for (int k = 1; k <= capacity; ++k)
        ASSERT_EQ(add("n" + std::to_string(k), k), CONFIG_OK) << k;
    EXPECT_EQ(add("more", capacity + 1), CONFIG_ERR_FULL);
    EXPECT_EQ(elements(GetParam()).size(), size_t(capacity));
}

INSTANTIATE_TEST_SUITE_P(SevenLists, RuleListForms, ::testing::ValuesIn(list_cases()),
                         [](const auto &p) { return wmtest::param_name(p.param.label); });

// The switch forms: "enable" or "mode" into the list's one-byte switch, which an absent
// variable leaves as it was, and a repeated one sets to its last value.
TEST(SwitchForms, SetTheMasterSwitch) {
    struct Case {
        const char *label;
        std::function<int(rule_config_set &, const form_pair *, int)> form;
        std::function<int(rule_config_set &)> value;
        const char *variable;
    } cases[] = {
        {"port forwarding",
         [](rule_config_set &s, const form_pair *p, int n) {
             return save_vsipport_config(s.vsipport, p, n);
         },
         [](rule_config_set &s) { return int(s.vsipport->enable); }, "enable"},
        {"IP/port filter",
         [](rule_config_set &s, const form_pair *p, int n) {
             return save_fwipport_config(s.fwipport, p, n);
         },
         [](rule_config_set &s) { return int(s.fwipport->mode); }, "mode"},
        {"URL filter",
         [](rule_config_set &s, const form_pair *p, int n) {
             return save_fwurl_config(s.fwurl, p, n);
         },
         [](rule_config_set &s) { return int(s.fwurl->mode); }, "mode"},
        {"MAC filter",
         [](rule_config_set &s, const form_pair *p, int n) {
             return save_fwmac_config(s.fwmac, p, n);
         },
         [](rule_config_set &s) { return int(s.fwmac->mode); }, "mode"},
        {"QoS",
         [](rule_config_set &s, const form_pair *p, int n) { return save_qos_config(s.qos, p, n); },
         [](rule_config_set &s) { return int(s.qos->mode); }, "mode"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.label);
        TempRoot root;
        auto read = [&] {
            return std::atoi(
                stored([&](rule_config_set &s) { std::printf("%d", c.value(s)); }).c_str());
        };
        std::string v = c.variable;
        const std::pair<std::string, int> steps[] = {
            {v + "=1", 1}, {"other=0", 1}, {v + "=3&" + v + "=2", 2}, {v + "=0", 0}};
        for (const auto &[body, value] : steps) {
            EXPECT_EQ(request(body, c.form), 0) << body;
            EXPECT_EQ(read(), value) << body;
        }
    }
}

// Deleting a time group hands the store the lists that refer to it: the rule that used the
// group no longer names it.
TEST(GroupForms, DeletingATimeGroupClearsItsUsers) {
    TempRoot root;
    auto group_form = [](int op) {
        return [op](rule_config_set &s, const form_pair *p, int n) {
            return save_timegroup_config_element(&s, op, p, n);
        };
    };
    ASSERT_EQ(request("name=work&start_time=09:00&end_time=17:00&weekday1=1", group_form(0)), 0);
    int group = std::atoi(stored([](rule_config_set &s) {
                              std::printf("%d", s.timegroup->usertimegroup.element[0].id);
                          }).c_str());
    ASSERT_GT(group, 0);
    ASSERT_EQ(request("name=web&url=a.com&timecontrol=1&timegroup_id=" + std::to_string(group),
                      [](rule_config_set &s, const form_pair *p, int n) {
                          return save_fwurl_config_element(s.fwurl, 0, p, n, &s);
                      }),
              0);
    auto user = [] {
        return stored(
            [](rule_config_set &s) { std::printf("%d", s.fwurl->fwurl.element[0].timegroup_id); });
    };
    EXPECT_EQ(user(), std::to_string(group));
    EXPECT_EQ(request("id=" + std::to_string(group), group_form(-1)), 0);
    EXPECT_EQ(user(), "0");
}

} // namespace
