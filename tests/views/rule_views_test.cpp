// The rule-list views: whole documents against golden files for factory, filled and edge
// tables; every slot as python3's json module reads it; the shapes the pages rely on.
#include <iterator>
#include <string>

#include "tests/views/view_check.h"

namespace {

using viewtest::Case;
using viewtest::fill_full;
using viewtest::put;

std::string slot_text(const std::string &list, const char *what, int i) {
    return list + "-" + what + "-" + std::to_string(i);
}
std::string slot_address(int net, int i, int host) {
    return std::to_string(net) + ".16." + std::to_string(i) + "." + std::to_string(host);
}

// Slot i of a filled table: every member a value of its own.
template <typename Slot> void fill_slot(Slot &s, const std::string &list, int i) {
    s.lock_location = 100 + i;
    s.id = i + 1;
    put(s.name, slot_text(list, "name", i));
    put(s.mark, slot_text(list, "mark", i));
    put(s.resved, slot_text(list, "resved", i));
    if constexpr (requires { s.status; }) s.status = uint8_t(i % 2);
    if constexpr (requires { s.weekday1; }) {
        s.weekday1 = 1, s.weekday3 = uint8_t(i % 2), s.weekday7 = 7;
        put(s.start_time, "08:" + std::to_string(10 + i));
        put(s.end_time, "18:" + std::to_string(10 + i));
    }
    if constexpr (requires { s.timecontrol; }) s.timecontrol = 1, s.timegroup_id = uint8_t(i);
    if constexpr (requires { s.ipgroup_id; }) {
        s.ipcontrol = 2;
        s.ipgroup_id = int16_t(i - 16);
        s.devstartip.v4 = viewtest::ipv4(slot_address(10, i, 1).c_str());
        s.devendip.v4 = viewtest::ipv4(slot_address(10, i, 254).c_str());
    }
    if constexpr (requires { s.startip; }) {
        s.startip.v4 = viewtest::ipv4(slot_address(172, i, 1).c_str());
        s.endip.v4 = viewtest::ipv4(slot_address(172, i, 100).c_str());
    }
    if constexpr (requires { s.devip; }) {
        s.devip.v4 = viewtest::ipv4(slot_address(192, i, 2).c_str());
        s.devinnerfromport = 1000 + i, s.devinnertoport = 2000 + i;
        s.devexternfromport = 3000 + i, s.devexterntoport = 4000 + i;
        s.wanid = uint8_t(i % 4);
    }
    if constexpr (requires { s.protocol; }) s.protocol = uint8_t(i % 3);
    if constexpr (requires { s.devfromport; }) s.devfromport = 20 + i, s.devtoport = 30 + i;
    if constexpr (requires { s.url; }) put(s.url, slot_text(list, "url", i));
    if constexpr (requires { s.devmac; }) put(s.devmac, slot_text(list, "mac", i));
    if constexpr (requires { s.bw_up; }) {
        s.control_type = 1;
        s.bw_up = 1000 * (i + 1), s.bw_down = -i, s.bw_shared_mode = 1;
    }
}

// An edge slot: texts that fill their members without a terminator, extreme numbers, the
// broadcast address.
template <typename Slot> void edge_slot(Slot &s) {
    s.lock_location = -1;
    s.id = INT32_MIN;
    fill_full(s.name, 'N');
    fill_full(s.mark, 'M');
    fill_full(s.resved, 'R');
    if constexpr (requires { s.status; }) s.status = 255;
    if constexpr (requires { s.weekday1; }) {
        s.weekday1 = 255;
        fill_full(s.start_time, 'S');
        fill_full(s.end_time, 'E');
    }
    if constexpr (requires { s.ipgroup_id; }) {
        s.ipgroup_id = INT16_MIN;
        s.devstartip.v4 = viewtest::ipv4("255.255.255.255");
    }
    if constexpr (requires { s.startip; }) s.startip.v4 = viewtest::ipv4("255.255.255.255");
    if constexpr (requires { s.devip; }) s.devinnertoport = INT32_MAX;
    if constexpr (requires { s.url; }) fill_full(s.url, 'U');
    if constexpr (requires { s.devmac; }) fill_full(s.devmac, 'D');
}

template <typename Record, typename List>
std::unique_ptr<Record> make(Case c, List Record::*list_of, void (*builder)(field_desc *, Record *),
                             const char *file, const std::string &key) {
    if (c == Case::Defaults) return viewtest::from_defaults(builder, file);
    auto r = std::make_unique<Record>();
    List &list = (*r).*list_of;
    int n = int(std::size(list.element));
    bool full = c == Case::Full;
    if constexpr (requires { r->mode; }) r->mode = full ? 1 : 255;
    if constexpr (requires { r->enable; }) r->enable = full ? 1 : 255;
    list.count = full ? decltype(list.count)(n) : 0; // an edge table says it is empty
    if (full) {
        for (int i = 0; i < n; ++i)
            fill_slot(list.element[i], key, i);
    } else {
        edge_slot(list.element[0]);
        edge_slot(list.element[n - 1]);
    }
    if constexpr (requires { list.resved; })
        full ? put(list.resved, "list") : fill_full(list.resved, 'L');
    full ? put(r->resved, "record") : fill_full(r->resved, 'Z');
    return r;
}

struct RuleView {
    const char *name; // golden files are <name>-<case>.json
    const char *list; // the list object's key
    const char *file; // its factory defaults
    int capacity;
    std::string (*run)(const RuleView &, Case, int count); // count < -1: as made
};

template <auto View, auto ListOf, auto Builder>
std::string run(const RuleView &v, Case c, int count) {
    auto r = make(c, ListOf, Builder, v.file, v.list);
    if (count >= -1) ((*r).*ListOf).count = decltype(((*r).*ListOf).count)(count);
    return viewtest::print(View, *r);
}

const RuleView kViews[] = {
    {"VsIpport", "vsipport", "vsipport.conf", 32,
     run<printf_VsIpport_json, &vsipport_config::vsipport, vsipport_field>},
    {"FwIpport", "fwipport", "fwipport.conf", 32,
     run<printf_FwIpport_json, &fwipport_config::fwipport, fwipport_field>},
    {"IpGroup", "useripgroup", "ipport.conf", 16,
     run<printf_IpGroup_json, &ipport_config::useripgroup, ipport_field>},
    {"TimeGroup", "usertimegroup", "timegroup.conf", 16,
     run<printf_TimeGroup_json, &timegroup_config::usertimegroup, timegroup_field>},
    {"FwMac", "fwmac", "fwmac.conf", 32, run<printf_FwMac_json, &fwmac_config::fwmac, fwmac_field>},
    {"FwUrl", "fwurl", "fwurl.conf", 32, run<printf_FwUrl_json, &fwurl_config::fwurl, fwurl_field>},
    {"Qos", "qos", "qos.conf", 32, run<printf_Qos_json, &qos_config::qos, qos_field>},
};

constexpr int kAsMade = -2;

// The goldens pin how each document closes (the IP/port filter list has no "resved" and
// closes with `}]},`) and how one slot follows another (`},{` on a line of its own).
TEST(RuleViews, WholeDocumentsMatchTheirGoldenFiles) {
    for (const RuleView &v : kViews)
        for (Case c : {Case::Defaults, Case::Full, Case::Edge})
            viewtest::expect_golden(std::string(v.name) + "-" + viewtest::kCaseNames[int(c)] +
                                        ".json",
                                    v.run(v, c, kAsMade));
}

// Through python3's json module: the stored count printed as it stands (even a negative
// one), the capacity as max_count, every slot whatever the count, and a filled table's
// slots each with its own values.
TEST(RuleViews, EverySlotParsesWhateverTheCount) {
    for (const RuleView &v : kViews) {
        for (int count : {kAsMade, -1}) {
            viewtest::Parsed p = viewtest::parse(v.run(v, Case::Full, count));
            ASSERT_EQ(p.status, 0) << v.name << ": " << p.message;
            std::string list = v.list, capacity = std::to_string(v.capacity);
            EXPECT_EQ(p.at(list + ".count"), count == -1 ? "-1" : capacity) << v.name;
            EXPECT_EQ(p.at(list + ".max_count"), capacity) << v.name;
            EXPECT_EQ(p.at(list + ".element#len"), capacity) << v.name;
            for (int i = 0; i < v.capacity; ++i) {
                std::string slot = list + ".element[" + std::to_string(i) + "].";
                EXPECT_EQ(p.at(slot + "lock_location"), std::to_string(100 + i)) << slot;
                EXPECT_EQ(p.at(slot + "id"), std::to_string(i + 1)) << slot;
                for (const char *text : {"name", "mark", "resved"})
                    EXPECT_EQ(p.at(slot + text), slot_text(list, text, i)) << slot;
            }
            EXPECT_EQ(p.at(list + ".resved"), list == "fwipport" ? "<missing>" : "list");
            EXPECT_EQ(p.at("resved"), "record") << v.name;
        }
    }
}

using viewtest::Expect;
const Expect kExpected[] = {
    {"VsIpport", Case::Full, "vsipport.element[5].devip", "192.16.5.2"},
    {"VsIpport", Case::Edge, "vsipport.element[0].devinnertoport", "2147483647"},
    {"FwIpport", Case::Full, "fwipport.element[3].ipgroup_id", "-13"}, // %hd
    {"FwIpport", Case::Edge, "fwipport.element[0].ipgroup_id", "-32768"},
    {"FwIpport", Case::Edge, "fwipport.element[0].devstartip", "255.255.255.255"},
    {"FwIpport", Case::Edge, "fwipport.element[1].devstartip", "0.0.0.0"},
    {"FwIpport", Case::Edge, "mode", "255"},
    {"IpGroup", Case::Full, "useripgroup.element[15].endip", "172.16.15.100"},
    {"TimeGroup", Case::Full, "usertimegroup.element[4].start_time", "08:14"},
    {"TimeGroup", Case::Edge, "usertimegroup.element[0].end_time", std::string(10, 'E')},
    {"FwMac", Case::Edge, "fwmac.element[31].name", std::string(200, 'N')},
    {"FwMac", Case::Edge, "fwmac.resved", std::string(500, 'L')},
    {"FwUrl", Case::Edge, "fwurl.element[0].url", std::string(128, 'U')},
    {"FwUrl", Case::Edge, "fwurl.element[0].id", "-2147483648"},
    {"Qos", Case::Full, "qos.element[1].bw_down", "-1"},
    {"Qos", Case::Edge, "qos.element[0].devmac", std::string(20, 'D')},
    {"Qos", Case::Defaults, "qos.element[0].devstartip", "0.0.0.0"},
};

TEST(RuleViews, JsonValues) {
    viewtest::expect_values(kExpected, [](const std::string &name, Case c) {
        for (const RuleView &v : kViews)
            if (name == v.name) return v.run(v, c, kAsMade);
        return std::string();
    });
}

} // namespace
