// List operations: ids, slots, counts, capacities and result codes of every list; group
// deletions; savers that keep other processes' adds; access lists; the forms' lock.
#include <cstring>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "store_test_util.h"

using namespace storetest;
using wmtest::TempRoot;

namespace {

// One list through its public calls: `add` and `modify` take an element, `del` an id text,
// `list` gives the stored count and elements. Ids and names are the members Id and Name.
template <typename E, auto Id, auto Name, typename Add, typename Modify, typename Del,
          typename DelAll, typename List>
void exercise_list(const char *label, int capacity, Add add, Modify modify, Del del, DelAll del_all,
                   List list) {
    SCOPED_TRACE(label);
    auto element = [](const std::string &name, int32_t id) {
        E e{};
        std::snprintf(e.*Name, sizeof(e.*Name), "%s", name.c_str());
        e.*Id = id;
        return e;
    };
    auto added = [&](const std::string &name) { // the result and the id given
        E e = element(name, 0);
        int rc = add(&e);
        return std::pair(rc, int32_t(e.*Id));
    };
    auto slot = [&](int i) { // the name and id in a slot
        E &e = list().second[i];
        return std::pair(std::string(e.*Name), int32_t(e.*Id));
    };
    auto count = [&] { return int(list().first); };
    // Ids are the smallest unused ones, in the first free slot.
    for (int i = 0; i < capacity; ++i)
        ASSERT_EQ(added("e" + std::to_string(i)), std::pair(int(CONFIG_OK), i + 1));
    EXPECT_EQ(added("one too many").first, CONFIG_ERR_FULL);
    EXPECT_EQ(count(), capacity);

    // Delete the third: the rest move up, its id is free again and the next add takes it.
    EXPECT_EQ(del("3"), CONFIG_OK);
    EXPECT_EQ(count(), capacity - 1);
    EXPECT_EQ(slot(2), std::pair(std::string("e3"), 4));
    EXPECT_EQ(slot(capacity - 1), std::pair(std::string(), 0));
    EXPECT_EQ(added("back"), std::pair(int(CONFIG_OK), 3));
    EXPECT_EQ(slot(capacity - 1), std::pair(std::string("back"), 3));

    E renamed = element("renamed", 5), absent = element("x", capacity + 7), zero = element("x", 0);
    EXPECT_EQ(modify(&renamed), CONFIG_OK);
    EXPECT_EQ(slot(3), std::pair(std::string("renamed"), 5));
    EXPECT_EQ(modify(&absent), CONFIG_ERR_NO_ID);
    EXPECT_EQ(modify(&zero), CONFIG_ERR_NO_ID);
    EXPECT_EQ(del("9999"), CONFIG_ERR_NO_ID);
    EXPECT_EQ(del(""), CONFIG_ERR_NO_ID);
    EXPECT_EQ(del(nullptr), CONFIG_ERR_ARGUMENT);

    EXPECT_EQ(del_all(), CONFIG_OK);
    EXPECT_EQ(count(), 0);
    // Every operation also reached the stored section.
    EXPECT_EQ(in_new_process([&] { return count(); }), 0);
}

class Lists : public ::testing::Test {
  protected:
    TempRoot root;
};

#define RULE_LIST(Name, list, get)                                                                 \
    exercise_list<list##_rule, &list##_rule::id, &list##_rule::name>(                              \
        #list, 32, [](list##_rule *e) { return Add##Name##Item(get(), e); },                       \
        [](list##_rule *e) { return Modify##Name##Item(get(), e); },                               \
        [](const char *key) { return Del##Name##Item(get(), key); },                               \
        [] { return DelAll##Name##Item(); },                                                       \
        [] { return std::pair(get()->list.count, get()->list.element); })

TEST_F(Lists, EveryListFillsToItsCapacityWithUniqueIdsAndKeepsItsCount) {
    RULE_LIST(PortFw, vsipport, SC_Get_VsIpport_System_Config);
    RULE_LIST(IpFilter, fwipport, SC_Get_FwIpport_System_Config);
    RULE_LIST(UrlFilter, fwurl, SC_Get_FwUrl_System_Config);
    RULE_LIST(MacFilter, fwmac, SC_Get_FwMac_System_Config);
    RULE_LIST(Qos, qos, SC_Get_Qos_System_Config);
    auto groups = SC_Get_IpGroup_System_Config;
    exercise_list<ipgroup_entry, &ipgroup_entry::id, &ipgroup_entry::name>(
        "IP groups", 16, [=](ipgroup_entry *e) { return AddIpGroupItem(groups(), e); },
        [=](ipgroup_entry *e) { return ModifyIpGroupItem(groups(), e); },
        [=](const char *key) { return DelIpGroupItem(groups(), nullptr, nullptr, key); },
        [=] { return DelAllIpGroupItem(groups()); },
        [=] { return std::pair(groups()->useripgroup.count, groups()->useripgroup.element); });
    auto clients = SC_Get_Clients_System_Config;
    exercise_list<client_account, &client_account::m_id, &client_account::m_name>(
        "client accounts", 300, [=](client_account *e) { return AddClientsItem(clients(), e); },
        [=](client_account *e) { return ModifyClientsItem(clients(), e); },
        [=](const char *key) { return DelClientsItem(clients(), key); },
        [] { return DelAllClientsItem(); },
        [=] { return std::pair(clients()->count, clients()->m_client); });
    auto acl = [] { return &SC_Get_SC_WiFi_Config()->m_radio[2].m_acllist; };
    exercise_list<acl_entry, &acl_entry::id, &acl_entry::name>(
        "radio 2 access list", 32,
        [](acl_entry *e) { return AddAclItem(SC_Get_SC_WiFi_Config(), e, 2); },
        [](acl_entry *e) { return ModifyAclItem(SC_Get_SC_WiFi_Config(), e, 2); },
        [](const char *key) { return DelAclItem(SC_Get_SC_WiFi_Config(), key, 2); },
        [] { return DelAllAclItem(SC_Get_SC_WiFi_Config(), 2); },
        [=] { return std::pair(acl()->count, acl()->element); });
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
    // A list saved with a gap is closed up by the next operation: the page shows 0 .. count - 1.
    std::memset(&qos->qos, 0, sizeof qos->qos);
    qos->qos.element[5].id = 7;
    ASSERT_EQ(SC_Save_System_Qos_Config(qos), CONFIG_OK);
    qos_rule r{};
    ASSERT_EQ(AddQosItem(qos, &r), CONFIG_OK);
    EXPECT_EQ(qos->qos.count, 2);
    EXPECT_EQ(qos->qos.element[0].id, r.id);
    EXPECT_EQ(qos->qos.element[1].id, 7);
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
    std::memcpy(aps->m_ap[0].m_dev_mac.mac, mac, 6);
    EXPECT_EQ(SC_Get_Ap_Info_By_Mac(aps, mac), 0);
    aps->count = 1000; // a count beyond the table is cut to it
    EXPECT_EQ(SC_Get_Ap_Info_By_Mac(aps, mac), 0);
    EXPECT_EQ(SC_Get_Ap_Info_By_Mac(aps, nullptr), -1);
    ap_user_config *users = SC_Get_ApUser_System_Config();
    users->count = 1;
    std::memcpy(users->m_ap[0].m_ap_mac.mac, mac, 6);
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
