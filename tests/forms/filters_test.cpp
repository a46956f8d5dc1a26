// The duplicate filters on lists built in memory: names per list kind, the content of each
// list, schedules from time groups, and the lock file.
#include <arpa/inet.h>
#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>

#include "support/harness.h"
#include "webmgmt.h"

using wmtest::TempRoot;

namespace {

// Records come from std::make_unique<T>(): value-initialised, all zero.

using wmtest::put;

uint32_t ip(const char *dotted) {
    return inet_addr(dotted);
}

// A record of each list kind with slot 1 (index) bearing `name` under id 5.
struct Lists {
    std::unique_ptr<timegroup_config> timegroup = std::make_unique<timegroup_config>();
    std::unique_ptr<ipport_config> ipgroup = std::make_unique<ipport_config>();
    std::unique_ptr<qos_config> qos = std::make_unique<qos_config>();
    std::unique_ptr<fwurl_config> fwurl = std::make_unique<fwurl_config>();
    std::unique_ptr<fwmac_config> fwmac = std::make_unique<fwmac_config>();
    std::unique_ptr<fwipport_config> fwipport = std::make_unique<fwipport_config>();
    std::unique_ptr<vsipport_config> vsipport = std::make_unique<vsipport_config>();
    std::unique_ptr<wifi_acllist> acl = std::make_unique<wifi_acllist>();

    template <typename Slot> static void name_slot(Slot &s, int id, const std::string &name) {
        s.id = id;
        put(s.name, name);
    }
    void name_everywhere(size_t slot, int id, const std::string &name) {
        name_slot(timegroup->usertimegroup.element[slot], id, name);
        name_slot(ipgroup->useripgroup.element[slot], id, name);
        name_slot(qos->qos.element[slot], id, name);
        name_slot(fwurl->fwurl.element[slot], id, name);
        name_slot(fwmac->fwmac.element[slot], id, name);
        name_slot(fwipport->fwipport.element[slot], id, name);
        name_slot(vsipport->vsipport.element[slot], id, name);
        name_slot(acl->element[slot], id, name);
    }
    void lock_all(const std::string &path) {
        for (char *lock :
             {timegroup->lock_file, ipgroup->lock_file, qos->lock_file, fwurl->lock_file,
              fwmac->lock_file, fwipport->lock_file, vsipport->lock_file})
            std::strcpy(lock, path.c_str());
    }
    const void *of_kind(int kind) const { // the access list (8) for any other kind
        const void *all[] = {acl.get(),   timegroup.get(), ipgroup.get(),  qos.get(),
                             fwurl.get(), fwmac.get(),     fwipport.get(), vsipport.get()};
        return all[kind >= 1 && kind <= 7 ? kind : 0];
    }
};

// Kinds 1, 2, 4 to 8 compare names; QoS (3) never finds a duplicate. The rule lists scan
// 32 slots, the groups 16. The check creates the list's lock file.
TEST(FilterateName, NamesPerKind) {
    TempRoot root;
    Lists l;
    std::string lock = root.path("/var/list.lock");
    l.lock_all(lock);
    l.name_everywhere(1, 5, "office");
    l.name_everywhere(3, 0, "empty slot"); // id 0: an unused slot never collides
    l.name_everywhere(WEBMGMT_GROUP_COUNT - 1, 9, "last group slot");
    struct Case {
        const char *name;
        int id;
        int expect;
    } cases[] = {
        {"office", 0, -1}, // adding a second "office"
        {"office", 7, -1}, // renaming element 7 to "office"
        {"office", 5, 0},  // modifying "office" under its own id
        {"Office", 0, 0},  // names compare exactly
        {"office ", 0, 0}, {"", 0, 0}, {"empty slot", 0, 0}, {"last group slot", 0, -1},
    };
    for (int kind = 1; kind <= 8; ++kind) {
        for (const Case &c : cases) {
            SCOPED_TRACE("kind " + std::to_string(kind) + " name '" + c.name + "' id " +
                         std::to_string(c.id));
            EXPECT_EQ(filterate_name(l.of_kind(kind), c.name, c.id, kind),
                      kind == 3 ? 0 : c.expect);
        }
    }
    EXPECT_TRUE(wmtest::file_exists(lock));
    Lists::name_slot(l.fwurl->fwurl.element[31], 40, "far");
    Lists::name_slot(l.vsipport->vsipport.element[31], 40, "far");
    EXPECT_EQ(filterate_name(l.fwurl.get(), "far", 0, 4), -1);
    EXPECT_EQ(filterate_name(l.vsipport.get(), "far", 0, 7), -1);
}

// A lock file that cannot be opened, and an unknown kind (whose path stays empty), print the
// message and count as a duplicate; a lock-file member full to its last byte is read no
// further than the member. The access-list kind opens nothing.
TEST(FilterateName, LockFailuresAreDuplicates) {
    TempRoot root;
    Lists l;
    std::string missing = root.path("/no/such/dir/list.lock"), dir = root.path("/no/such/");
    l.lock_all(missing);
    ASSERT_LT(dir.size(), 100u);
    std::memset(l.qos->lock_file, 'x', sizeof l.qos->lock_file);
    std::memcpy(l.qos->lock_file, dir.data(), dir.size());
    std::string message = "Cannot Lock file ";
    struct Case {
        const void *list;
        int kind, result;
        std::string out;
    } cases[] = {
        {l.fwurl.get(), 4, -1, message + missing},
        {l.fwurl.get(), 0, -1, message},
        {l.fwurl.get(), 9, -1, message},
        {l.fwurl.get(), -1, -1, message},
        {l.acl.get(), 8, 0, ""},
        {l.qos.get(), 3, -1, message + dir + std::string(127 - dir.size(), 'x')},
    };
    for (const Case &c : cases) {
        auto r =
            wmtest::run_in_child([&] { return filterate_name(c.list, "free", 0, c.kind) + 10; });
        EXPECT_EQ(r.exit_code(), c.result + 10) << c.kind;
        EXPECT_EQ(r.out, c.out) << c.kind;
    }
    EXPECT_FALSE(wmtest::file_exists(missing));
}

TEST(FilterateHelpers, ProtocolAndRange) {
    EXPECT_EQ(filterate_prot(6, 80, 6, 80), 1);
    EXPECT_EQ(filterate_prot(6, 80, 17, 80), 0);
    EXPECT_EQ(filterate_prot(6, 80, 6, 81), 0);
    EXPECT_EQ(filterate_ip("1.1.1.1", "1.1.1.9", "1.1.1.1", "1.1.1.9"), 1);
    EXPECT_EQ(filterate_ip("1.1.1.1", "1.1.1.9", "1.1.1.1", "1.1.1.8"), 0);
    EXPECT_EQ(filterate_ip("1.1.1.1", "1.1.1.9", "1.1.1.01", "1.1.1.9"), 0); // texts, not numbers
    EXPECT_EQ(filterate_ip(nullptr, "a", "a", "a"), 0);
}

// Port forwarding: same inner address, external and internal ranges; the protocol is not
// compared; the item's own id and empty slots are skipped.
TEST(ContentFilters, PortForwarding) {
    auto list = std::make_unique<vsipport_config>();
    vsipport_rule &s = list->vsipport.element[2];
    s.id = 4;
    s.devip.v4 = ip("192.168.1.20");
    s.protocol = 1;
    s.devexternfromport = 8080;
    s.devexterntoport = 8081;
    s.devinnerfromport = 80;
    s.devinnertoport = 81;
    vsipport_item item{};
    std::strcpy(item.innerip, "192.168.1.20");
    item.extern_port_from = 8080;
    item.extern_port_to = 8081;
    item.inner_port_from = 80;
    item.inner_port_to = 81;
    item.protocol = 2;
    EXPECT_EQ(filterate_vsipport_data(list.get(), &item), -1);
    item.id = 4;
    EXPECT_EQ(filterate_vsipport_data(list.get(), &item), 0);
    item.id = 0;
    for (int32_t *field : {&item.extern_port_from, &item.extern_port_to, &item.inner_port_from,
                           &item.inner_port_to}) {
        ++*field;
        EXPECT_EQ(filterate_vsipport_data(list.get(), &item), 0);
        --*field;
    }
    std::strcpy(item.innerip, "192.168.1.21");
    EXPECT_EQ(filterate_vsipport_data(list.get(), &item), 0);
    // An all-zero item never matches the empty slots.
    vsipport_item zero{};
    std::strcpy(zero.innerip, "0.0.0.0");
    EXPECT_EQ(filterate_vsipport_data(list.get(), &zero), 0);
}

TEST(ContentFilters, IpAndTimeGroups) {
    auto groups = std::make_unique<ipport_config>();
    ipgroup_entry &g = groups->useripgroup.element[15];
    g.id = 3;
    g.startip.v4 = ip("10.0.0.1");
    g.endip.v4 = ip("10.0.0.50");
    ipgroup_item gi{};
    std::strcpy(gi.start_ip, "10.0.0.1");
    std::strcpy(gi.end_ip, "10.0.0.50");
    EXPECT_EQ(filterate_ipgroup_data(groups.get(), &gi), -1);
    std::strcpy(gi.end_ip, "10.0.0.51");
    EXPECT_EQ(filterate_ipgroup_data(groups.get(), &gi), 0);

    auto times = std::make_unique<timegroup_config>();
    timegroup_entry &t = times->usertimegroup.element[0];
    t.id = 2;
    t.weekday1 = t.weekday3 = 1;
    put(t.start_time, "08:00");
    put(t.end_time, "17:30");
    timegroup_item ti{};
    ti.weekday[0] = ti.weekday[2] = 1;
    std::strcpy(ti.start_time, "08:00");
    std::strcpy(ti.end_time, "17:30");
    EXPECT_EQ(filterate_timegroup_data(times.get(), &ti), -1);
    ti.id = 2;
    EXPECT_EQ(filterate_timegroup_data(times.get(), &ti), 0);
    ti.id = 0;
    ti.weekday[6] = 1;
    EXPECT_EQ(filterate_timegroup_data(times.get(), &ti), 0);
    ti.weekday[6] = 0;
    std::strcpy(ti.end_time, "17:31");
    EXPECT_EQ(filterate_timegroup_data(times.get(), &ti), 0);
}

// The schedule of a rule comes from its time group (the last group with the id wins) or
// from its own flags and times; two "always" rules have equal schedules at once.
TEST(Schedules, FromGroupsAndOwnFields) {
    auto times = std::make_unique<timegroup_config>();
    times->usertimegroup.count = 3;
    timegroup_entry *e = times->usertimegroup.element;
    e[0].id = 7;
    put(e[0].start_time, "01:00");
    e[1].id = 7;
    e[1].weekday2 = 1;
    put(e[1].start_time, "02:00");
    put(e[1].end_time, "0123456789"); // full width, no terminator
    e[3].id = 8;                      // beyond the count: not scanned
    rule_config_set config{};
    config.timegroup = times.get();

    schedule_block b{};
    EXPECT_EQ(get_time_from_timegroup(&b, 7, &config), 0);
    schedule_block expect{};
    expect.weekday[1] = 1;
    std::strcpy(expect.start_time, "02:00");
    std::memcpy(expect.end_time, "0123456789", 10);
    EXPECT_EQ(std::memcmp(&b, &expect, sizeof b), 0);

    schedule_block untouched;
    std::memset(&untouched, 0x3C, sizeof untouched);
    schedule_block c = untouched;
    get_time_from_timegroup(&c, 8, &config);
    EXPECT_EQ(std::memcmp(&c, &untouched, sizeof c), 0);
    times->usertimegroup.count = 0;
    get_time_from_timegroup(&c, 7, &config);
    EXPECT_EQ(std::memcmp(&c, &untouched, sizeof c), 0);
    times->usertimegroup.count = 1000; // a bad count is bounded by the 16 slots
    get_time_from_timegroup(&c, 7, &config);
    EXPECT_EQ(std::memcmp(&c, &expect, sizeof c), 0);
    EXPECT_EQ(get_time_from_timegroup(&c, 7, nullptr), 0);

    schedule_block own{};
    const uint8_t days[7] = {1, 0, 1, 0, 1, 0, 1};
    copy_time_from_config(&own, days, "06:00", "07:00");
    EXPECT_EQ(own.weekday[0], 1);
    EXPECT_EQ(own.weekday[1], 0);
    EXPECT_EQ(own.weekday[6], 1);
    EXPECT_STREQ(own.start_time, "06:00");
    EXPECT_STREQ(own.end_time, "07:00");
}

struct FilterFixture {
    std::unique_ptr<timegroup_config> times = std::make_unique<timegroup_config>();
    rule_config_set config{};
    FilterFixture() {
        times->usertimegroup.count = 1;
        timegroup_entry &g = times->usertimegroup.element[0];
        g.id = 4;
        g.weekday6 = g.weekday7 = 1;
        put(g.start_time, "10:00");
        put(g.end_time, "12:00");
        config.timegroup = times.get();
    }
};

// IP/port filter: schedule, protocol with its port range, and address range must all match.
// Unlike the other filters, a slot with id 0 is compared; negative ids are skipped.
TEST(ContentFilters, IpPortFilterWithSchedules) {
    FilterFixture f;
    auto list = std::make_unique<fwipport_config>();
    fwipport_rule &s = list->fwipport.element[5];
    s.id = 11;
    s.protocol = 6;
    s.devfromport = 20;
    s.devtoport = 21;
    s.devstartip.v4 = ip("192.168.0.10");
    s.devendip.v4 = ip("192.168.0.20");
    s.timecontrol = 1;
    s.timegroup_id = 4;

    fwipport_item item{};
    item.protocol = 6;
    item.startport = 20;
    item.endport = 21;
    std::strcpy(item.startip, "192.168.0.10");
    std::strcpy(item.endip, "192.168.0.20");
    item.timecontrol = 2; // an own schedule equal to group 4's
    item.weekday[5] = item.weekday[6] = 1;
    std::strcpy(item.start_time, "10:00");
    std::strcpy(item.end_time, "12:00");
    using Change = void (*)(fwipport_item &);
    struct Case {
        const char *what;
        Change change;
        int expect;
    } cases[] = {
        {"the same own schedule", [](fwipport_item &) {}, -1},
        {"the group itself", [](fwipport_item &i) { i.timecontrol = 1, i.timegroup_id = 4; }, -1},
        // "Always" compares the item's own schedule: empty, it differs; kept, it matches.
        {"always, no own days",
         [](fwipport_item &i) { i.timecontrol = 0, std::memset(i.weekday, 0, sizeof i.weekday); },
         0},
        {"always, own days kept", [](fwipport_item &i) { i.timecontrol = 0; }, -1},
        {"own days as bytes", [](fwipport_item &i) { i.weekday[5] = 257; }, -1},
        {"other end port", [](fwipport_item &i) { i.endport = 22; }, 0},
        {"other protocol", [](fwipport_item &i) { i.protocol = 17; }, 0},
        {"other end address", [](fwipport_item &i) { std::strcpy(i.endip, "192.168.0.21"); }, 0},
        {"its own slot", [](fwipport_item &i) { i.id = 11; }, 0},
    };
    for (const Case &c : cases) {
        fwipport_item changed = item;
        c.change(changed);
        EXPECT_EQ(filterate_fwipport_data(list.get(), &changed, &f.config), c.expect) << c.what;
    }
    s.id = -1; // a negative id is skipped
    EXPECT_EQ(filterate_fwipport_data(list.get(), &item, &f.config), 0);
    // An empty slot (id 0, always, all zero) matches an all-zero "always" item: deliberate.
    fwipport_item zero{};
    std::strcpy(zero.startip, "0.0.0.0");
    std::strcpy(zero.endip, "0.0.0.0");
    zero.id = 3;
    EXPECT_EQ(filterate_fwipport_data(list.get(), &zero, &f.config), -1);
}

TEST(ContentFilters, MacFilterWithSchedules) {
    FilterFixture f;
    auto list = std::make_unique<fwmac_config>();
    for (auto &slot : list->fwmac.element)
        slot.id = -1; // no slot compared unless set below
    fwmac_rule &s = list->fwmac.element[31];
    s.id = 2;
    put(s.devmac, "00:11:22:33:44:55");
    fwmac_item item{};
    std::strcpy(item.devmac, "00:11:22:33:44:55");
    EXPECT_EQ(filterate_fwmac_data(list.get(), &item, &f.config), -1);
    std::strcpy(item.devmac, "00:11:22:33:44:56");
    EXPECT_EQ(filterate_fwmac_data(list.get(), &item, &f.config), 0);
    std::strcpy(item.devmac, "00:11:22:33:44:55");
    item.timecontrol = 1;
    item.timegroup_id = 4;
    EXPECT_EQ(filterate_fwmac_data(list.get(), &item, &f.config), 0);
    s.timecontrol = 2;
    s.weekday6 = s.weekday7 = 1;
    put(s.start_time, "10:00");
    put(s.end_time, "12:00");
    EXPECT_EQ(filterate_fwmac_data(list.get(), &item, &f.config), -1);
    // Without the config set the group's schedule is empty: no longer the same.
    EXPECT_EQ(filterate_fwmac_data(list.get(), &item, nullptr), 0);
}

} // namespace
