// List operations: ids, slots, counts, capacities and result codes of every list; group
// deletions; savers that keep other processes' adds; access lists; the forms' lock.
#include <arpa/inet.h>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <set>
#include <unistd.h>

#include "store_test_util.h"

using namespace storetest;
using wmtest::TempRoot;

namespace {

// One list seen through the public calls: add an element named `name`, modify by id,
// delete by id text, delete all, and read the stored state back.
struct ListCase {
    const char *name;
    int capacity;
    std::function<int(const char *name, int32_t *id)> add;
    std::function<int(int32_t id, const char *name)> modify;
    std::function<int(const char *key)> del;
    std::function<int()> del_all;
    std::function<int()> count;                             // the record's count member
    std::function<std::string(int slot, int32_t *id)> slot; // name and id of a slot
};

template <typename E> auto &id_of(E &e) {
    return e.id;
}
template <typename E> auto &name_of(E &e) {
    return e.name;
}
auto &id_of(client_account &e) {
    return e.m_id;
}
auto &name_of(client_account &e) {
    return e.m_name;
}

// `add` and `modify` take an element, `list` gives the stored count and elements.
template <typename E, typename Add, typename Modify, typename List>
ListCase list_case(const char *label, int capacity, Add add, Modify modify,
                   std::function<int(const char *)> del, std::function<int()> del_all, List list) {
    auto element = [](const char *n, int32_t id) {
        E e{};
        std::snprintf(name_of(e), sizeof name_of(e), "%s", n);
        id_of(e) = id;
        return e;
    };
    return {label,
            capacity,
            [=](const char *n, int32_t *id) {
                E e = element(n, 0);
                int rc = add(&e);
                *id = id_of(e);
                return rc;
            },
            [=](int32_t id, const char *n) {
                E e = element(n, id);
                return modify(&e);
            },
            del,
            del_all,
            [=] { return int(list().first); },
            [=](int slot, int32_t *id) {
                E &e = list().second[slot];
                *id = id_of(e);
                return std::string(name_of(e));
            }};
}

#define RULE_CASE(label, Name, list, rule, get)                                                    \
    list_case<rule>(                                                                               \
        label, 32, [](rule *e) { return Add##Name##Item(get(), e); },                              \
        [](rule *e) { return Modify##Name##Item(get(), e); },                                      \
        [](const char *key) { return Del##Name##Item(get(), key); },                               \
        [] { return DelAll##Name##Item(); },                                                       \
        [] { return std::pair(get()->list.count, get()->list.element); })

std::vector<ListCase> all_lists() {
    auto ipgroups = SC_Get_IpGroup_System_Config;
    auto clients = SC_Get_Clients_System_Config;
    auto wifi = SC_Get_SC_WiFi_Config;
    return {
        RULE_CASE("port forwarding", PortFw, vsipport, vsipport_rule,
                  SC_Get_VsIpport_System_Config),
        RULE_CASE("IP/port filter", IpFilter, fwipport, fwipport_rule,
                  SC_Get_FwIpport_System_Config),
        RULE_CASE("URL filter", UrlFilter, fwurl, fwurl_rule, SC_Get_FwUrl_System_Config),
        RULE_CASE("MAC filter", MacFilter, fwmac, fwmac_rule, SC_Get_FwMac_System_Config),
        RULE_CASE("QoS", Qos, qos, qos_rule, SC_Get_Qos_System_Config),
        list_case<ipgroup_entry>(
            "IP groups", 16, [=](ipgroup_entry *e) { return AddIpGroupItem(ipgroups(), e); },
            [=](ipgroup_entry *e) { return ModifyIpGroupItem(ipgroups(), e); },
            [=](const char *key) { return DelIpGroupItem(ipgroups(), nullptr, nullptr, key); },
            [=] { return DelAllIpGroupItem(ipgroups()); },
            [=] {
                return std::pair(ipgroups()->useripgroup.count, ipgroups()->useripgroup.element);
            }),
        list_case<client_account>(
            "client accounts", 300, [=](client_account *e) { return AddClientsItem(clients(), e); },
            [=](client_account *e) { return ModifyClientsItem(clients(), e); },
            [=](const char *key) { return DelClientsItem(clients(), key); },
            [] { return DelAllClientsItem(); },
            [=] { return std::pair(clients()->count, clients()->m_client); }),
        list_case<acl_entry>(
            "radio 2 access list", 32, [=](acl_entry *e) { return AddAclItem(wifi(), e, 2); },
            [=](acl_entry *e) { return ModifyAclItem(wifi(), e, 2); },
            [=](const char *key) { return DelAclItem(wifi(), key, 2); },
            [=] { return DelAllAclItem(wifi(), 2); },
            [=] {
                return std::pair(wifi()->m_radio[2].m_acllist.count,
                                 wifi()->m_radio[2].m_acllist.element);
            }),
    };
}

class Lists : public ::testing::Test {
  protected:
    TempRoot root;
};

TEST_F(Lists, EveryListFillsToItsCapacityWithUniqueIdsAndKeepsItsCount) {
    for (const ListCase &l : all_lists()) {
        SCOPED_TRACE(l.name);
        std::set<int32_t> ids;
        for (int i = 0; i < l.capacity; ++i) {
            int32_t id = 0;
            ASSERT_EQ(l.add(("e" + std::to_string(i)).c_str(), &id), CONFIG_OK);
            EXPECT_EQ(id, i + 1); // the smallest unused id, in the first free slot
            ids.insert(id);
        }
        EXPECT_EQ(int(ids.size()), l.capacity);
        int32_t id = 0;
        EXPECT_EQ(l.add("one too many", &id), CONFIG_ERR_FULL);
        EXPECT_EQ(l.count(), l.capacity);

        // Delete the third: the rest move up, its id is free again and the next add takes it.
        EXPECT_EQ(l.del("3"), CONFIG_OK);
        EXPECT_EQ(l.count(), l.capacity - 1);
        int32_t slot_id = 0;
        EXPECT_EQ(l.slot(2, &slot_id), "e3");
        EXPECT_EQ(slot_id, 4);
        EXPECT_EQ(l.slot(l.capacity - 1, &slot_id), "");
        EXPECT_EQ(slot_id, 0);
        EXPECT_EQ(l.add("back", &id), CONFIG_OK);
        EXPECT_EQ(id, 3);
        EXPECT_EQ(l.slot(l.capacity - 1, &slot_id), "back");

        EXPECT_EQ(l.modify(5, "renamed"), CONFIG_OK);
        EXPECT_EQ(l.slot(3, &slot_id), "renamed");
        EXPECT_EQ(slot_id, 5);
        EXPECT_EQ(l.modify(l.capacity + 7, "x"), CONFIG_ERR_NO_ID);
        EXPECT_EQ(l.modify(0, "x"), CONFIG_ERR_NO_ID);
        EXPECT_EQ(l.del("9999"), CONFIG_ERR_NO_ID);
        EXPECT_EQ(l.del(""), CONFIG_ERR_NO_ID);
        EXPECT_EQ(l.del(nullptr), CONFIG_ERR_ARGUMENT);

        EXPECT_EQ(l.del_all(), CONFIG_OK);
        EXPECT_EQ(l.count(), 0);
        // Every operation also reached the stored section.
        EXPECT_EQ(in_new_process([&] { return l.count(); }), 0);
    }
}

TEST_F(Lists, OperationsOnListsThatShareASectionLeaveEachOtherAlone) {
    lan_config *lan = SC_Get_Lan_System_Config();
    lan_bind e{};
    std::snprintf(e.mac, sizeof e.mac, "00:11:22:33:44:55");
    ASSERT_EQ(AddDhcpStaticItem(lan, &e), CONFIG_OK);
    ASSERT_EQ(AC_AddDhcpStaticItem(lan, &e), CONFIG_OK);
    ASSERT_EQ(AC_AddDhcpStaticItem(lan, &e), CONFIG_OK);
    lan->stp = 4; // an unsaved change outside the lists is not stored by a list operation
    ASSERT_EQ(AC_DelAllDhcpStaticItem(), CONFIG_OK);
    EXPECT_EQ(lan->dhcp_server_bindlist.count, 1);
    EXPECT_EQ(lan->dhcp_server_acbindlist.count, 0);
    EXPECT_EQ(lan->stp, 4);
    EXPECT_EQ(in_new_process([] {
                  lan_config *l = SC_Get_Lan_System_Config();
                  return l->dhcp_server_bindlist.count * 10 + l->stp;
              }),
              10);
    EXPECT_EQ(AddAclItem(SC_Get_SC_WiFi_Config(), nullptr, 0), CONFIG_ERR_ARGUMENT);
    acl_entry a{};
    EXPECT_EQ(AddAclItem(SC_Get_SC_WiFi_Config(), &a, 3), CONFIG_ERR_ARGUMENT);
    EXPECT_EQ(DelAllAclItem(SC_Get_SC_WiFi_Config(), -1), CONFIG_ERR_ARGUMENT);
}

TEST_F(Lists, DeletingAGroupClearsTheRulesThatUsedIt) {
    timegroup_entry g{};
    std::snprintf(g.name, sizeof g.name, "office hours");
    ASSERT_EQ(AddTimeGroupItem(SC_Get_TimeGroup_System_Config(), &g), CONFIG_OK);
    ASSERT_EQ(AddTimeGroupItem(SC_Get_TimeGroup_System_Config(), &g), CONFIG_OK);
    ASSERT_EQ(g.id, 2);
    // Rule 1 runs on group 2, rule 2 on group 1, rule 3 has its own schedule but a stale id.
    struct {
        uint8_t control, group;
    } uses[] = {{1, 2}, {1, 1}, {2, 2}};
    for (auto u : uses) {
        fwmac_rule r{};
        r.timecontrol = u.control;
        r.timegroup_id = u.group;
        r.status = 1;
        ASSERT_EQ(AddMacFilterItem(SC_Get_FwMac_System_Config(), &r), CONFIG_OK);
    }
    fwmac_config mine{}; // a caller's copy passed along is brought up to date too
    ASSERT_EQ(
        DelTimeGroupItem(SC_Get_TimeGroup_System_Config(), nullptr, &mine, nullptr, nullptr, "2"),
        CONFIG_OK);
    for (const fwmac_config *c : {&mine, SC_Get_FwMac_System_Config()}) {
        const auto &e = c->fwmac.element;
        EXPECT_EQ(e[0].timegroup_id, 0);
        EXPECT_EQ(e[0].timecontrol, 0);
        EXPECT_EQ(e[0].status, 0);
        EXPECT_EQ(e[1].timegroup_id, 1);
        EXPECT_EQ(e[1].status, 1);
        EXPECT_EQ(e[2].timegroup_id, 0);
        EXPECT_EQ(e[2].timecontrol, 2);
        EXPECT_EQ(e[2].status, 1);
    }
    EXPECT_EQ(
        in_new_process([] { return int(SC_Get_FwMac_System_Config()->fwmac.element[0].status); }),
        0);

    ipgroup_entry ip{};
    ASSERT_EQ(AddIpGroupItem(SC_Get_IpGroup_System_Config(), &ip), CONFIG_OK);
    qos_rule q{};
    q.ipcontrol = 1;
    q.ipgroup_id = int16_t(ip.id);
    q.status = 1;
    ASSERT_EQ(AddQosItem(SC_Get_Qos_System_Config(), &q), CONFIG_OK);
    ASSERT_EQ(DelAllIpGroupItem(SC_Get_IpGroup_System_Config()), CONFIG_OK);
    EXPECT_EQ(SC_Get_Qos_System_Config()->qos.element[0].ipgroup_id, 0);
    EXPECT_EQ(SC_Get_Qos_System_Config()->qos.element[0].status, 0);
}

TEST_F(Lists, ASaverKeepsWhatOtherProcessesAddedUnlessTheCallerChangedTheList) {
    qos_config *qos = SC_Get_Qos_System_Config();
    ASSERT_EQ(in_new_process([] {
                  qos_rule r{};
                  return AddQosItem(SC_Get_Qos_System_Config(), &r);
              }),
              0);
    qos->mode = 1; // this process still holds the empty list it read first
    ASSERT_EQ(SC_Save_System_Qos_Config(qos), CONFIG_OK);
    EXPECT_EQ(qos->qos.count, 1); // and now sees the other process's rule
    EXPECT_EQ(in_new_process([] {
                  qos_config *q = SC_Get_Qos_System_Config();
                  return q->mode * 10 + q->qos.count;
              }),
              11);
    // A caller that edits the list itself (as wmconfig does) stores its list.
    std::snprintf(qos->qos.element[0].name, sizeof qos->qos.element[0].name, "edited");
    ASSERT_EQ(SC_Save_System_Qos_Config(qos), CONFIG_OK);
    EXPECT_EQ(in_new_process([] {
                  return std::strcmp(SC_Get_Qos_System_Config()->qos.element[0].name, "edited");
              }),
              0);
}

TEST_F(Lists, AccessListReadersAndByMacLookups) {
    misc_ext_acl buffer;
    std::memset(&buffer, 0x5a, sizeof buffer);
    acl_entry e{};
    std::snprintf(e.mac, sizeof e.mac, "AA:BB:CC:DD:EE:FF");
    ASSERT_EQ(AddAclItem(SC_Get_SC_WiFi_Config(), &e, 1), CONFIG_OK);
    ASSERT_EQ(GetAclItemList(nullptr, &buffer, 1), 0);
    EXPECT_EQ(buffer.count, 1);
    EXPECT_STREQ(buffer.info[0].mac, "AA:BB:CC:DD:EE:FF");
    EXPECT_EQ(buffer.info[1].id, 0); // cleared before the fill
    EXPECT_EQ(GetAclItemList(nullptr, &buffer, 0), 0);
    EXPECT_EQ(buffer.count, 0);
    EXPECT_EQ(GetAclItemList(nullptr, &buffer, 3), -1);
    EXPECT_EQ(GetAclItemList(nullptr, nullptr, 0), -1);
    ASSERT_EQ(AddAclItem_Ext(SC_Get_Misc_Ext_System_Config(), &e), CONFIG_OK);
    ASSERT_EQ(AddAclItem_Ext(SC_Get_Misc_Ext_System_Config(), &e), CONFIG_OK);
    ASSERT_EQ(DelAclItem_Ext(SC_Get_Misc_Ext_System_Config(), "1"), CONFIG_OK);
    ASSERT_EQ(GetAclItemList_Ext(nullptr, &buffer), 0);
    EXPECT_EQ(buffer.count, 1);
    EXPECT_EQ(buffer.info[0].id, 2);

    manage_ap_list_config *aps = SC_Get_ManageApList_System_Config();
    const uint8_t mac[6] = {0, 0x11, 0x22, 0x33, 0x44, 0x55};
    EXPECT_EQ(SC_Get_Ap_Info_By_Mac(aps, mac), -1);
    aps->count = 1;
    std::memcpy(aps->m_ap[0].m_dev_mac, mac, 6);
    EXPECT_EQ(SC_Get_Ap_Info_By_Mac(aps, mac), 0);
    aps->count = 1000; // a count beyond the table is cut to it
    EXPECT_EQ(SC_Get_Ap_Info_By_Mac(aps, mac), 0);
    EXPECT_EQ(SC_Get_Ap_Info_By_Mac(aps, nullptr), -1);
    ap_user_config *users = SC_Get_ApUser_System_Config();
    users->count = 1;
    std::memcpy(users->m_ap[0].m_ap_mac, mac, 6);
    EXPECT_EQ(SC_Get_ApUser_Info_By_Mac(users, mac), 0);
    const uint8_t other[6] = {1, 2, 3, 4, 5, 6};
    EXPECT_EQ(SC_Get_ApUser_Info_By_Mac(users, other), -1);
}

// Whether another process sees a write lock on the file (F_GETLK from outside).
bool locked_from_outside(const std::string &path) {
    return in_new_process([&] {
               int fd = open(path.c_str(), O_RDWR);
               struct flock fl {};
               fl.l_type = F_WRLCK;
               fl.l_whence = SEEK_SET;
               if (fd < 0 || fcntl(fd, F_GETLK, &fl) != 0) return 2;
               return fl.l_type == F_UNLCK ? 0 : 1;
           }) == 1;
}

TEST_F(Lists, TheFormsLockSurvivesStoreCallsMadeWhileItIsHeld) {
    wifi_config *wifi = SC_Get_SC_WiFi_Config();
    std::string path = wifi->lock_file;
    int fd = open(path.c_str(), O_RDWR | O_CREAT, 0644);
    ASSERT_GE(fd, 0);
    ASSERT_EQ(sc_lock_reg(fd, 14, 1, 0, 1, 0, 0), 0); // as the access-list form takes it
    EXPECT_TRUE(locked_from_outside(path));
    acl_entry e{};
    ASSERT_EQ(AddAclItem(wifi, &e, 0), CONFIG_OK);
    ASSERT_EQ(SC_Save_SC_WiFi_Config(wifi), CONFIG_OK);
    (void)SC_Get_Misc_Ext_System_Config();
    EXPECT_TRUE(locked_from_outside(path)); // no store call dropped the form's lock
    ASSERT_EQ(sc_lock_reg(fd, 13, 2, 0, 1, 0, 0), 0);
    EXPECT_FALSE(locked_from_outside(path));
    EXPECT_EQ(sc_lock_reg(fd, 99, 1, 0, 1, 0, 0), -1);
    EXPECT_EQ(sc_lock_reg(fd, 14, 7, 0, 1, 0, 0), -1);
    close(fd);
}

} // namespace
