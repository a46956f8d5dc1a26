// The station, client and access-list views: whole documents against golden files, and
// their values as python3 reads them. The client views' objects end in a comma and the
// station view repeats "mark": those documents are read by tests/views/json_flatten.py with
// the option that accepts exactly that departure (keep-last for the repeated key).

#include <cstring>
#include <ctime>
#include <memory>
#include <string>

#include "store/config_data_api.h"
#include "tests/views/view_check.h"

namespace {

using viewtest::expect_golden;
using viewtest::fill_full;
using viewtest::Parsed;
using viewtest::put;

// What a view prints, run in a child as a CGI program runs it.
constexpr auto printed = wmtest::output_of;

// The document as the lenient reader takes it, with the departures the view is allowed.
Parsed lenient(const std::string &document, const std::string &options) {
    return viewtest::parse(document, options);
}

void set_mac(mac_field &m, int a, int b, int c, int d, int e, int f) {
    const int bytes[] = {a, b, c, d, e, f};
    for (int i = 0; i < 6; ++i)
        m.mac[i] = uint8_t(bytes[i]);
}

// ---- client accounts and groups -----------------------------------------------------------

std::unique_ptr<clients_config> empty_clients() {
    auto c = std::make_unique<clients_config>();
    std::memset(c.get(), 0, sizeof *c);
    return c;
}

// Every account in use, each member a value of its own; every third on the blacklist.
std::unique_ptr<clients_config> full_clients() {
    auto c = empty_clients();
    c->count = WEBMGMT_CLIENTS;
    for (int i = 0; i < WEBMGMT_CLIENTS; ++i) {
        client_account &a = c->m_client[i];
        a.m_id = i + 1;
        set_mac(a.m_haddr, 0x02, 0xAB, 0, 0, i >> 8, i & 0xff);
        a.m_max_conn = int16_t(i), a.m_limit_up = int16_t(-i), a.m_limit_down = int16_t(2 * i);
        a.m_allow_time = int16_t(i + 60);
        a.m_is_deny = uint8_t(i % 3 == 0), a.m_is_attck = uint8_t(i % 2);
        a.m_auth_type = 1, a.m_group_id = uint8_t(i % 10), a.m_state = 2, a.m_role = 3;
        a.m_is_bindmac = uint8_t(i % 2), a.m_vlan = uint16_t(i + 100);
        a.m_max_on_line = 3600u * i, a.m_start_time = 1700000000u + i;
        a.m_end_time = 1800000000u + i, a.m_last_time = 4000000000u;
        put(a.m_open_id, "open-" + std::to_string(i));
        put(a.m_card_id, "card-" + std::to_string(i));
        put(a.m_name, "user-" + std::to_string(i));
        put(a.m_account, "acct-" + std::to_string(i));
        put(a.m_pass, "pass-" + std::to_string(i));
        put(a.m_tel, "555-" + std::to_string(i));
        put(a.m_mark, "mark of " + std::to_string(i));
    }
    return c;
}

// Texts a page should never have stored (quotes, backslashes, markup), texts that fill
// their members without a terminator, extreme numbers, ids that mark free slots.
std::unique_ptr<clients_config> hostile_clients() {
    auto c = empty_clients();
    client_account &a = c->m_client[0];
    a.m_id = INT32_MAX;
    set_mac(a.m_haddr, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff);
    a.m_max_conn = INT16_MIN, a.m_limit_up = INT16_MAX, a.m_allow_time = -1;
    a.m_is_deny = 1, a.m_is_attck = 255, a.m_vlan = 65535, a.m_last_time = UINT32_MAX;
    fill_full(a.m_open_id, 'O');
    fill_full(a.m_name, 'N');
    fill_full(a.m_mark, 'M');
    put(a.m_pass, "p\"w\\");
    put(a.m_tel, "<script>");
    put(a.m_account, "$(reboot)");
    c->m_client[1].m_id = 0; // free
    put(c->m_client[1].m_name, "free slot");
    c->m_client[2].m_id = -5; // free too
    c->m_client[3].m_id = 1;
    c->m_client[3].m_is_deny = 2; // not the blacklist: only 1 is
    return c;
}

std::unique_ptr<clients_groups_config> groups(bool full, bool hostile) {
    auto g = std::make_unique<clients_groups_config>();
    std::memset(g.get(), 0, sizeof *g);
    for (int i = 0; full && i < WEBMGMT_CLIENT_GROUPS; ++i) {
        g->m_group[i].m_id = i + 1;
        put(g->m_group[i].m_name, "group " + std::to_string(i));
    }
    if (hostile) {
        g->m_group[0].m_id = 7;
        fill_full(g->m_group[0].m_name, 'G');
        g->m_group[4].m_id = -1;
        put(g->m_group[4].m_name, "hidden");
        g->m_group[9].m_id = 3;
        put(g->m_group[9].m_name, "a\"b");
    }
    return g;
}

// The goldens pin what the pages rely on: the blacklist and the single account print
// m_max_conn before m_id, the full list the other way round; every object ends in a comma.
TEST(ClientViews, Golden) {
    auto empty = empty_clients(), full = full_clients(), hostile = hostile_clients();
    struct Row {
        const char *name;
        std::function<void()> view;
    };
    const Row rows[] = {
        {"Clients-null", [] { printf_Clients_json(nullptr); }},
        {"Clients-empty", [&] { printf_Clients_json(empty.get()); }},
        {"Clients-full", [&] { printf_Clients_json(full.get()); }},
        {"Clients-hostile", [&] { printf_Clients_json(hostile.get()); }},
        {"Clients_black-null", [] { printf_Clients_black_json(nullptr); }},
        {"Clients_black-full", [&] { printf_Clients_black_json(full.get()); }},
        {"Clients_black-hostile", [&] { printf_Clients_black_json(hostile.get()); }},
        {"Client-found", [&] { printf_Client_json(full.get(), "02:AB:00:00:01:0A"); }},
        {"Client-lowercase", [&] { printf_Client_json(full.get(), "02:ab:00:00:01:0a"); }},
        {"Client-empty-text", [&] { printf_Client_json(full.get(), ""); }},
        {"Client-zero-mac", [&] { printf_Client_json(hostile.get(), "00:00:00:00:00:00"); }},
        {"Client-null", [] { printf_Client_json(nullptr, "02:AB:00:00:00:01"); }},
        {"Clients_Groups-null", [] { printf_Clients_Groups_json(nullptr); }},
        {"Clients_Groups-empty", [] { printf_Clients_Groups_json(groups(false, false).get()); }},
        {"Clients_Groups-full", [] { printf_Clients_Groups_json(groups(true, false).get()); }},
        {"Clients_Groups-hostile", [] { printf_Clients_Groups_json(groups(false, true).get()); }},
    };
    for (const Row &r : rows)
        expect_golden(std::string(r.name) + ".json", printed(r.view));
}

// The empty forms are JSON as they stand; the filled ones only once the trailing commas
// before "}" are accepted.
TEST(ClientViews, EmptyFormsAreJson) {
    for (auto view : {printf_Clients_json, printf_Clients_black_json}) {
        Parsed p = viewtest::parse(printed([view] { view(nullptr); }));
        ASSERT_EQ(p.status, 0) << p.message;
        EXPECT_EQ(p.at("Clients.max_count"), "300");
        EXPECT_EQ(p.at("Clients.sumcount"), "0");
    }
    Parsed g = viewtest::parse(printed([] { printf_Clients_Groups_json(nullptr); }));
    ASSERT_EQ(g.status, 0) << g.message;
    EXPECT_EQ(g.at("Groups.max_count"), "10");
    Parsed none = viewtest::parse(printed([] { printf_Client_json(nullptr, "x"); }));
    EXPECT_EQ(none.at("m_id"), "-1");
}

TEST(ClientViews, FullTableReadsBack) {
    auto full = full_clients();
    std::string doc = printed([&] { printf_Clients_json(full.get()); });
    EXPECT_EQ(viewtest::parse(doc).status, 3) << "the trailing commas make it invalid JSON";
    Parsed p = lenient(doc, "--trailing-commas");
    ASSERT_EQ(p.status, 0) << p.message;
    viewtest::expect_at(
        p, {"Clients.data#len=301", // 300 accounts and the {} sentinel
            "Clients.count=300", "Clients.onlinecount=300", "Clients.sumcount=<missing>",
            "Clients.data[299].m_index=299", "Clients.data[299].m_haddr=02:AB:00:00:01:2B",
            "Clients.data[299].m_limit_up=-299", "Clients.data[299].m_last_time=4000000000",
            "Clients.data[299].m_mark=mark of 299", "Clients.data[300].m_id=<missing>"});

    Parsed black =
        lenient(printed([&] { printf_Clients_black_json(full.get()); }), "--trailing-commas");
    ASSERT_EQ(black.status, 0) << black.message;
    viewtest::expect_at(black, {"Clients.count=100", // every third account
                                "Clients.data[1].m_index=3", "Clients.data[1].m_is_deny=1"});

    Parsed one = lenient(printed([&] { printf_Client_json(full.get(), "02:AB:00:00:01:0A"); }),
                         "--trailing-commas");
    ASSERT_EQ(one.status, 0) << one.message;
    EXPECT_EQ(one.at("m_index"), "266");
    EXPECT_EQ(one.at("m_name"), "user-266");
}

// Stored text is printed raw: a name holding a quote breaks the document, which the view
// does not repair (the console refuses such names before they are stored).
TEST(ClientViews, GroupsReadBack) {
    auto g = groups(false, true);
    Parsed broken =
        lenient(printed([&] { printf_Clients_Groups_json(g.get()); }), "--trailing-commas");
    EXPECT_EQ(broken.status, 3) << broken.message;
    put(g->m_group[9].m_name, "plain");
    Parsed p = lenient(printed([&] { printf_Clients_Groups_json(g.get()); }), "--trailing-commas");
    ASSERT_EQ(p.status, 0) << p.message;
    viewtest::expect_at(p, {"Groups.count=2", "Groups.onlinecount=2", "Groups.data#len=3"});
    EXPECT_EQ(p.at("Groups.data[0].m_name"), std::string(20, 'G'));
    EXPECT_EQ(p.at("Groups.data[1].m_index"), "9");
    EXPECT_EQ(p.at("Groups.data[1].m_name"), "plain");
}

// ---- access lists -------------------------------------------------------------------------

std::unique_ptr<wifi_config> acl_wifi() {
    auto w = std::make_unique<wifi_config>();
    std::memset(w.get(), 0, sizeof *w);
    for (int r = 0; r < WEBMGMT_WIFI_RADIO_COUNT; ++r) {
        wifi_acllist &l = w->m_radio[r].m_acllist;
        l.mode = r;
        for (int i = 0; i < r * 2; ++i) {
            acl_entry &e = l.element[i];
            e.id = i + 1;
            put(e.name, "r" + std::to_string(r) + "-" + std::to_string(i));
            put(e.mac, "00:11:22:33:44:" + std::to_string(10 + i));
            e.status = uint8_t(i % 2);
            put(e.mark, "mark " + std::to_string(i));
        }
        l.count = int16_t(r * 2);
    }
    // A free slot between entries is not listed.
    w->m_radio[2].m_acllist.element[2].id = 0;
    fill_full(w->m_radio[2].m_acllist.element[1].name, 'N');
    return w;
}

std::unique_ptr<misc_ext_config> acl_ext(int entries) {
    auto e = std::make_unique<misc_ext_config>();
    std::memset(e.get(), 0, sizeof *e);
    for (int i = 0; i < entries; ++i) {
        acl_entry &a = e->acl_info.info[i];
        a.id = i + 1;
        put(a.name, "global-" + std::to_string(i));
        put(a.mac, "02:00:00:00:00:" + std::to_string(10 + i % 90));
    }
    e->acl_info.count = entries;
    return e;
}

TEST(AclView, Golden) {
    auto wifi = acl_wifi();
    auto ext = acl_ext(3), full_ext = acl_ext(WEBMGMT_MISC_EXT_ACL_COUNT);
    const uint8_t on = 1, off = 0, other = 2;
    expect_golden("WiFi_ACL-radios.json",
                  printed([&] { printf_WiFi_ACL_json(wifi.get(), &off, ext.get()); }));
    expect_golden("WiFi_ACL-no-flag.json",
                  printed([&] { printf_WiFi_ACL_json(wifi.get(), nullptr, ext.get()); }));
    expect_golden("WiFi_ACL-flag-2.json",
                  printed([&] { printf_WiFi_ACL_json(wifi.get(), &other, ext.get()); }));
    expect_golden("WiFi_ACL-extended.json",
                  printed([&] { printf_WiFi_ACL_json(wifi.get(), &on, ext.get()); }));
    expect_golden("WiFi_ACL-extended-full.json",
                  printed([&] { printf_WiFi_ACL_json(wifi.get(), &on, full_ext.get()); }));
}

TEST(AclView, IsJson) {
    auto wifi = acl_wifi();
    auto ext = acl_ext(WEBMGMT_MISC_EXT_ACL_COUNT);
    const uint8_t off = 0, on = 1;
    Parsed p = viewtest::parse(printed([&] { printf_WiFi_ACL_json(wifi.get(), &off, ext.get()); }));
    ASSERT_EQ(p.status, 0) << p.message;
    viewtest::expect_at(p,
                        {"acl#len=4", // three radios and the {} sentinel
                         "max_count=32", "acl[1].mode=1", "acl[1].count=2", "acl[1].element#len=3",
                         "acl[1].element[1].mac=00:11:22:33:44:11", "acl[2].count=3"});
    EXPECT_EQ(p.at("acl[2].element[1].name"), std::string(200, 'N'));
    EXPECT_EQ(p.at("acl[0].element#len"), "1");

    Parsed x = viewtest::parse(printed([&] { printf_WiFi_ACL_json(wifi.get(), &on, ext.get()); }));
    ASSERT_EQ(x.status, 0) << x.message;
    EXPECT_EQ(x.at("max_count"), "128");
    for (int r = 0; r < WEBMGMT_WIFI_RADIO_COUNT; ++r) {
        std::string at = "acl[" + std::to_string(r) + "]";
        EXPECT_EQ(x.at(at + ".count"), "128");
        EXPECT_EQ(x.at(at + ".mode"), std::to_string(r)); // the radio's own mode
        EXPECT_EQ(x.at(at + ".element#len"), "129");
        EXPECT_EQ(x.at(at + ".element[127].name"), "global-127");
    }
}

// ---- stations -----------------------------------------------------------------------------

// A lease file in the address-server layout: an 8-byte header, 36-byte records.
void write_leases(const wmtest::TempRoot &root,
                  const std::vector<std::pair<mac_field, std::string>> &hosts) {
    std::string file(8, '\0');
    for (const auto &[mac, name] : hosts)
        file += wmtest::lease_record(3600, "192.168.1.0", mac.mac, name);
    wmtest::write_file(root.path("/var/udhcpd.leases"), file);
}

sta_entry station(int i) {
    sta_entry s;
    std::memset(&s, 0, sizeof s);
    s.m_radioid = uint8_t(i % 3 + 1), s.m_wlanid = uint8_t(i % 4);
    set_mac(s.m_mac, 0x02, 0x5A, 0, 0, i >> 8, i & 0xff);
    put(s.m_ip, "192.168.1." + std::to_string(i % 250 + 2));
    s.m_signal = -30 - i % 60, s.m_tx_rate = 1000 * i, s.m_rx_rate = 500 * i;
    s.m_time = i * 7;
    return s;
}

std::unique_ptr<sta_table> stations(int n) {
    auto t = std::make_unique<sta_table>();
    std::memset(t.get(), 0, sizeof *t);
    for (int i = 0; i < n; ++i)
        t->m_sta[i] = station(i);
    return t;
}

TEST(StationView, Golden256StationsNoAccounts) {
    wmtest::TempRoot root;
    auto table = stations(WEBMGMT_STATIONS);
    write_leases(root, {{table->m_sta[0].m_mac, "host-zero"},
                        {table->m_sta[255].m_mac, "host-last"},
                        {table->m_sta[255].m_mac, "host-last-renewed"}});
    expect_golden("WiFi_user-256.json",
                  printed([&] { printf_WiFi_user_json(table.get(), 1, nullptr); }));
    expect_golden("WiFi_user-empty.json", printed([&] {
                      auto none = stations(0);
                      printf_WiFi_user_json(none.get(), 0, nullptr);
                  }));
}

// Six stations: with an account early, late, at 255 (the last searched), at 256 (not
// searched), with none, and entries that are not shown (signal 0, negative time, zero MAC).
struct StationCase {
    std::unique_ptr<sta_table> table = stations(6);
    std::unique_ptr<clients_config> clients = empty_clients();
    StationCase() {
        auto account = [&](int slot, int sta, const char *mark) {
            clients->m_client[slot].m_id = slot + 1;
            clients->m_client[slot].m_haddr = table->m_sta[sta].m_mac;
            put(clients->m_client[slot].m_mark, mark);
        };
        account(0, 0, "first");
        account(7, 1, "seventh");
        account(255, 2, "last searched");
        account(256, 3, "never seen");
        account(9, 0, "second account of station 0");
        table->m_sta[6] = station(6), table->m_sta[6].m_signal = 0;
        table->m_sta[7] = station(7), table->m_sta[7].m_time = -1;
        table->m_sta[8] = station(8), std::memset(table->m_sta[8].m_mac.mac, 0, 6);
        fill_full(table->m_sta[5].m_ip, '9');
        put(table->m_sta[4].m_ip, "\"quoted\"");
    }
};

TEST(StationView, GoldenWithAndWithoutAccounts) {
    wmtest::TempRoot root;
    StationCase c;
    write_leases(root, {{c.table->m_sta[1].m_mac, std::string(20, 'h')}});
    expect_golden("WiFi_user-accounts.json",
                  printed([&] { printf_WiFi_user_json(c.table.get(), 2, c.clients.get()); }));
}

TEST(StationView, RepeatedMarkReadsAsTheAccountsMark) {
    wmtest::TempRoot root;
    StationCase c;
    c.table->m_sta[4].m_ip[0] = '\0'; // the hostile address is the golden test's business
    write_leases(root, {{c.table->m_sta[1].m_mac, "laptop"}});
    std::string doc = printed([&] { printf_WiFi_user_json(c.table.get(), 2, c.clients.get()); });
    EXPECT_EQ(viewtest::parse(doc).status, 5) << "\"mark\" repeats on purpose";
    Parsed p = lenient(doc, "--keep-last");
    ASSERT_EQ(p.status, 0) << p.message;
    viewtest::expect_at(p, {"DevStalist.count=6", "DevStalist.radio=2", "DevStalist.sta#len=7",
                            "DevStalist.sta[0].mark=first",
                            "DevStalist.sta[0].mark#repeats=<missing>", // matched at once
                            "DevStalist.sta[1].mark=seventh", "DevStalist.sta[1].mark#repeats=8",
                            "DevStalist.sta[1].name=laptop", "DevStalist.sta[2].mark=last searched",
                            "DevStalist.sta[2].mark#repeats=256",
                            "DevStalist.sta[3].mark=", "DevStalist.sta[3].mark#repeats=256",
                            "DevStalist.sta[5].mark=", "DevStalist.sta[5].radio_type=0",
                            "DevStalist.sta[5].time=35"});
}

// ---- stations of the managed AP -----------------------------------------------------------

struct ApCase {
    std::unique_ptr<manage_ap_list_config> aps = std::make_unique<manage_ap_list_config>();
    std::unique_ptr<ap_user_config> users = std::make_unique<ap_user_config>();
    ApCase() {
        std::memset(aps.get(), 0, sizeof *aps);
        std::memset(users.get(), 0, sizeof *users);
        aps->count = 1;
        aps->m_ap[0].m_id = 1;
        set_mac(aps->m_ap[0].m_dev_mac, 0x0A, 0, 0, 0, 0, 0x01);
        aps->m_ap[0].m_conf.m_radio[0].m_radio_type = 2;
        aps->m_ap[0].m_conf.m_radio[1].m_radio_type = 5;
        aps->m_ap[0].m_conf.m_radio[2].m_radio_type = 6;
        users->count = 1;
        users->m_ap[0].m_ap_mac = aps->m_ap[0].m_dev_mac;
        for (int i = 0; i < 8; ++i) {
            sta_entry &s = users->m_ap[0].m_sta[i];
            s = station(i);
            s.m_radioid = uint8_t(i % 5); // 0 and 4 lie outside the AP's radios
            s.m_time = i % 2;             // 0 and the first second of 1970: 30 seconds
        }
        users->m_ap[0].m_sta[3].m_signal = 0; // counted, not shown
        users->m_ap[0].m_sta[5].m_time = -1;  // neither
        std::memset(users->m_ap[0].m_sta[6].m_mac.mac, 0, 6);
    }
};

TEST(ApStationView, Golden) {
    ApCase c;
    expect_golden("ApUserList_user-stations.json",
                  printed([&] { printf_ApUserList_user_json(c.aps.get(), c.users.get()); }));
    expect_golden("ApUserList_user-null.json",
                  printed([] { printf_ApUserList_user_json(nullptr, nullptr); }));
    ApCase other;
    set_mac(other.users->m_ap[0].m_ap_mac, 0x0A, 0, 0, 0, 0, 0x02);
    expect_golden("ApUserList_user-no-table.json", printed([&] {
                      printf_ApUserList_user_json(other.aps.get(), other.users.get());
                  }));
}

TEST(ApStationView, CountsUnprintedStationsAndCapsTimes) {
    ApCase c;
    std::time_t now = std::time(nullptr);
    c.users->m_ap[0].m_sta[2].m_time = int32_t(now - 3600);        // an hour ago
    c.users->m_ap[0].m_sta[4].m_time = int32_t(now - 864000 - 60); // over ten days
    c.users->m_ap[0].m_sta[7].m_time = int32_t(now + 3600);        // in the future
    std::string doc = printed([&] { printf_ApUserList_user_json(c.aps.get(), c.users.get()); });
    std::time_t after = std::time(nullptr);
    Parsed p = viewtest::parse(doc);
    ASSERT_EQ(p.status, 0) << p.message;
    EXPECT_EQ(p.at("DevStalist.count"), "6"); // station 3 is counted though not shown
    EXPECT_EQ(p.at("DevStalist.sta#len"), "6");
    EXPECT_EQ(p.at("DevStalist.sta[5].mac"), "") << "the placeholder station";
    viewtest::expect_at(p, {"DevStalist.sta[5].signal=", "DevStalist.sta[0].time=0:00:30",
                            "DevStalist.sta[0].radio_type=0", // radio id 0
                            "DevStalist.sta[1].radio_type=2", "DevStalist.sta[2].radio_type=5"});
    // An hour, give or take the seconds the run took.
    std::string hour = p.at("DevStalist.sta[2].time");
    bool in_range = false;
    for (std::time_t d = 0; d <= after - now; ++d) {
        char t[32];
        get_runtime_web(uint32_t(3600 + d), t);
        in_range = in_range || hour == t;
    }
    EXPECT_TRUE(in_range) << hour;
    viewtest::expect_at(p, {"DevStalist.sta[3].time=0:00:30",   // station 4, over ten days
                            "DevStalist.sta[3].radio_type=0",   // radio id 4
                            "DevStalist.sta[4].time=0:00:30"}); // station 7, in the future
}

} // namespace
